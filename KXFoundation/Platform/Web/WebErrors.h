// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

/// The domains, codes and user-information keys of what can go wrong in a web view. The numbers never change.
namespace kx {

/// Failures of loading a URL; codes are URLErrorCode.
inline const QString URLErrorDomain = QStringLiteral("NSURLErrorDomain");
/// Failures below the loader; the only code is ProcessDiedDuringLoad.
inline const QString CFNetworkErrorDomain = QStringLiteral("kCFErrorDomainCFNetwork");
/// Failures of the web view itself; codes are WebErrorCode.
inline const QString WebErrorDomain = QStringLiteral("WebKitErrorDomain");

/// User-information key: the URL string (percent-encoded) whose load failed.
inline const QString FailingURLStringKey = QStringLiteral("NSErrorFailingURLStringKey");

/// In CFNetworkErrorDomain: the engine's renderer process died while a load was under way.
inline constexpr qint64 ProcessDiedDuringLoad = 1;

enum URLErrorCode : qint64 {
    URLErrorUnknown = -1,
    URLErrorCancelled = -999, ///< The load was stopped.
    URLErrorTimedOut = -1001,
    URLErrorUnsupportedURL = -1002,
    URLErrorCannotFindHost = -1003,
    URLErrorCannotConnectToHost = -1004,
    URLErrorNetworkConnectionLost = -1005,
    URLErrorHTTPTooManyRedirects = -1007,
    URLErrorNotConnectedToInternet = -1009,
    URLErrorBadServerResponse = -1011,
    URLErrorFileDoesNotExist = -1100,
    URLErrorFileIsDirectory = -1101,
    URLErrorNoPermissionsToReadFile = -1102, ///< Also: the file lies outside the directory that was granted.
    URLErrorSecureConnectionFailed = -1200,
    URLErrorServerCertificateUntrusted = -1202,
};

enum WebErrorCode : qint64 {
    WebErrorJavaScriptException = 4, ///< The description is the script's error text.
    WebErrorViewInvalidated = 5, ///< The page or its process went away before it answered.
    WebErrorFrameLoadInterrupted = 102, ///< A navigation decision cancelled the load.
};

} // namespace kx
