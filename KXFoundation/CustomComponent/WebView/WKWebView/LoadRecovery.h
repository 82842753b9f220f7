// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QString>
#include <QtCore/QUrl>

#include <functional>

namespace kx {

/// What a load that failed before its document began stands for.
struct LoadFailure {
    enum class Kind {
        ProcessDied, ///< The engine's process died: a new web view may help.
        BlankLocalPage, ///< A local page that is no page; not worth more than a line in the log.
        LocalPageExists, ///< A local file is called missing though it is there: a new web view may help.
        LocalPageMissing,
        Other,
    };
    Kind kind = Kind::Other;
    QString url; ///< The failing URL, as the error has it; null when it does not tell.
    /// The file of a local page, exactly as the URL spells it: still percent-encoded, a fragment included. Null for the
    /// other kinds.
    QString path;
};

/// `fileExists` is asked about a local page's path, at most once.
[[nodiscard]] LoadFailure classifyLoadFailure(
    const KXError &error, const std::function<bool(const QString &path)> &fileExists);

/// Whether a host that has rebuilt its web view this many times may do it once more. It may twice in its life.
[[nodiscard]] constexpr bool mayRebuild(qint32 autoRebuildCount)
{
    return autoRebuildCount <= 1;
}

/// The directory that a local page may read: two levels above its file, so that pages in folders side by side share
/// files. "/" at the least.
[[nodiscard]] QString readAccessDirectory(const QUrl &fileUrl);

} // namespace kx
