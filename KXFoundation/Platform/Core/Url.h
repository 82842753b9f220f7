// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QString>
#include <QtCore/QStringView>

#include <optional>

class QUrl;

namespace kx {

/// The components of a URL or relative reference as RFC 3986 divides it, kept as they were written: unlike QUrl it
/// changes no case, normalises no escapes and mends nothing. User information and fragment are checked and dropped.
struct KX_CORE_EXPORT Url {
    /// Null in a relative reference. The case is kept.
    QString scheme;
    /// Null without an authority ("kx:/p"), empty when it is there but blank ("kx:///p"). Still percent-encoded;
    /// without the brackets of an IP literal.
    QString host;
    /// None when missing or blank ("kx://h:/"). Larger numbers than int holds become the largest int.
    std::optional<int> port;
    /// Percent-decoded, and without its trailing "/" (one of them) unless it is "/" itself; "" when there is none. Null
    /// when its escapes do not spell UTF-8.
    QString path;
    /// Without the "?", still percent-encoded. Null without a "?".
    QString query;

    Url() = default;
    /// QUrl has already lower-cased the scheme and the host, and normalised escapes. An invalid one gives an empty Url.
    Url(const QUrl &url); // NOLINT(google-explicit-constructor): a QUrl may be given wherever a Url is wanted

    /// Reads a URI-reference by the grammar of RFC 3986, appendix A, in one pass. None when the text does not follow
    /// it: a character that must be escaped, a "%" without two hex digits, a bad scheme, host or port.
    [[nodiscard]] static std::optional<Url> parse(QStringView text);

    /// Absent and empty components differ.
    bool operator==(const Url &other) const;
};

} // namespace kx
