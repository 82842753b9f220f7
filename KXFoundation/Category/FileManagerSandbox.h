// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QStandardPaths>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

/// Directories that are there when they are needed. Callable from any thread. What stands in the way is removed for
/// good; a link is removed itself, never what it leads to.

/// Makes sure that a directory is at the path, with its missing parents and the system's default permissions. A
/// directory that is there, be it through a link, is left as it is; anything else, a link that leads nowhere included,
/// is replaced. None on success, else why the directory could not be made (kx::POSIXErrorDomain). An absent or empty
/// path is an error.
[[nodiscard]] KX_CORE_EXPORT std::optional<KXError> kx_mkdirP(const QString &directoryPath);

/// Removes whatever is at the path, a directory with all its contents, and makes an empty directory there. Failures to
/// remove are not reported.
[[nodiscard]] KX_CORE_EXPORT std::optional<KXError> kx_rm_mkdirP(const QString &directoryPath);

/// The user's own directory of the kind (QStandardPaths::writableLocation) with the components appended in order, made
/// if it was missing. Null when there is no such kind or the directory cannot be made.
[[nodiscard]] KX_CORE_EXPORT QString kx_DirWithTypeWithPathComponents(
    QStandardPaths::StandardLocation type, const QStringList &withPathComponents);

/// The same with one component; null for the directory of the kind itself.
[[nodiscard]] KX_CORE_EXPORT QString kx_DirWithTypeWithPathComponent(
    QStandardPaths::StandardLocation type, const QString &withPathComponent);
