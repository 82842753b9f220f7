// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/LoadErrors.h>

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <algorithm>
#include <iterator>

namespace kx {

namespace {

struct Meaning {
    int netError;
    URLErrorCode code;
    const char *text;
};

// Sorted by the engine's number. The numbers are fixed in the engine's net_error_list.h.
constexpr Meaning meanings[] = {
    {-355, URLErrorNetworkConnectionLost, "The connection ended inside the body."}, // INCOMPLETE_CHUNKED_ENCODING
    {-354, URLErrorNetworkConnectionLost, "The connection ended inside the body."}, // CONTENT_LENGTH_MISMATCH
    {-330, URLErrorBadServerResponse, "The body could not be decoded."}, // CONTENT_DECODING_FAILED
    {-324, URLErrorNetworkConnectionLost, "The server sent nothing."}, // EMPTY_RESPONSE
    {-320, URLErrorBadServerResponse, "The response makes no sense."}, // INVALID_RESPONSE
    {-310, URLErrorHTTPTooManyRedirects, "There are too many redirects."}, // TOO_MANY_REDIRECTS
    {-302, URLErrorUnsupportedURL, "The scheme is not known."}, // UNKNOWN_URL_SCHEME
    {-301, URLErrorUnsupportedURL, "The scheme is not allowed."}, // DISALLOWED_URL_SCHEME
    {-300, URLErrorUnsupportedURL, "The URL is not valid."}, // INVALID_URL
    {-137, URLErrorCannotFindHost, "The host was not found."}, // NAME_RESOLUTION_FAILED
    {-118, URLErrorTimedOut, "The connection timed out."}, // CONNECTION_TIMED_OUT
    {-109, URLErrorCannotConnectToHost, "The host cannot be reached."}, // ADDRESS_UNREACHABLE
    {-108, URLErrorCannotConnectToHost, "The address is not valid."}, // ADDRESS_INVALID
    {-107, URLErrorSecureConnectionFailed, "A secure connection could not be made."}, // SSL_PROTOCOL_ERROR
    {-106, URLErrorNotConnectedToInternet, "There is no network."}, // INTERNET_DISCONNECTED
    {-105, URLErrorCannotFindHost, "The host was not found."}, // NAME_NOT_RESOLVED
    {-104, URLErrorCannotConnectToHost, "The connection failed."}, // CONNECTION_FAILED
    {-103, URLErrorNetworkConnectionLost, "The connection was aborted."}, // CONNECTION_ABORTED
    {-102, URLErrorCannotConnectToHost, "The connection was refused."}, // CONNECTION_REFUSED
    {-101, URLErrorNetworkConnectionLost, "The connection was reset."}, // CONNECTION_RESET
    {-100, URLErrorNetworkConnectionLost, "The connection was closed."}, // CONNECTION_CLOSED
    {-21, URLErrorNetworkConnectionLost, "The network changed."}, // NETWORK_CHANGED
    {-20, URLErrorNoPermissionsToReadFile, "The page may not read this file."}, // BLOCKED_BY_CLIENT
    {-15, URLErrorNetworkConnectionLost, "The connection is gone."}, // SOCKET_NOT_CONNECTED
    {-10, URLErrorNoPermissionsToReadFile, "The file may not be read."}, // ACCESS_DENIED
    {-7, URLErrorTimedOut, "The load timed out."}, // TIMED_OUT
    {-6, URLErrorFileDoesNotExist, "The file does not exist."}, // FILE_NOT_FOUND
    {-3, URLErrorCancelled, "The load was stopped."}, // ABORTED
};

KXError failure(const QString &domain, qint64 code, const char *text, const QUrl &url)
{
    return {domain, code, QString::fromLatin1(text),
        {{FailingURLStringKey, QString::fromLatin1(url.toEncoded(QUrl::FullyEncoded))}}};
}

} // namespace

KXError networkError(int netError, const QUrl &url)
{
    if (netError <= -200 && netError > -300)
        return failure(
            URLErrorDomain, URLErrorServerCertificateUntrusted, "The server's certificate is not good.", url);
    const auto *known = std::find_if(
        std::begin(meanings), std::end(meanings), [netError](const Meaning &m) { return m.netError == netError; });
    if (known == std::end(meanings))
        return failure(URLErrorDomain, URLErrorUnknown, "The load failed.", url);
    return failure(URLErrorDomain, known->code, known->text, url);
}

KXError cancelledError(const QUrl &url)
{
    return networkError(-3, url);
}

KXError interruptedError(const QUrl &url)
{
    return failure(WebErrorDomain, WebErrorFrameLoadInterrupted, "The load was interrupted by a decision.", url);
}

KXError unsupportedURLError(const QUrl &url)
{
    return networkError(-302, url);
}

KXError processDiedError(const QUrl &url)
{
    return failure(CFNetworkErrorDomain, ProcessDiedDuringLoad, "The page's process died during the load.", url);
}

} // namespace kx
