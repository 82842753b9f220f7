// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QString>
#include <QtCore/QVariantMap>

/// Why an operation failed: a domain, a code that is meaningful in that domain, a text for people and further facts.
/// Plain values; copies are cheap.
struct KX_CORE_EXPORT KXError {
    QString domain;
    qint64 code = 0;
    QString localizedDescription;
    QVariantMap userInfo; ///< Further facts by key, such as kx::FailingURLStringKey; empty when there are none.

    /// The failure that `errorNumber` (an errno value) stands for, in kx::POSIXErrorDomain, with the system's text.
    [[nodiscard]] static KXError fromErrno(int errorNumber);

    friend bool operator==(const KXError &, const KXError &) = default;
};

namespace kx {
/// Failures of system calls; the code is the errno value.
inline const QString POSIXErrorDomain = QStringLiteral("NSPOSIXErrorDomain");
/// Failures of file and process helpers.
inline const QString CocoaErrorDomain = QStringLiteral("NSCocoaErrorDomain");

/// "Error Domain=… Code=… "…"", the one-line text that a log shows.
[[nodiscard]] KX_CORE_EXPORT QString describe(const KXError &error);
} // namespace kx
