// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/FileManagerSandbox.h>

#include <KXFoundation/Platform/Core/FileTree.h>

#include <cerrno>
#include <system_error>

std::optional<KXError> kx_mkdirP(const QString &directoryPath)
{
    if (!kx::canNameAFile(directoryPath))
        return KXError::fromErrno(EINVAL);
    const QString path = kx::withoutTrailingSlashes(directoryPath);
    if (kx::isDirectory(path))
        return std::nullopt;
    if (kx::somethingExists(path))
        kx::removeTree(path);
    if (const std::error_code failure = kx::makeDirectories(path))
        return KXError::fromErrno(failure.default_error_condition().value());
    return std::nullopt;
}

std::optional<KXError> kx_rm_mkdirP(const QString &directoryPath)
{
    if (!kx::canNameAFile(directoryPath))
        return KXError::fromErrno(EINVAL);
    kx::removeTree(directoryPath);
    return kx_mkdirP(directoryPath);
}

QString kx_DirWithTypeWithPathComponents(QStandardPaths::StandardLocation type, const QStringList &withPathComponents)
{
    QString path = QStandardPaths::writableLocation(type);
    if (path.isEmpty())
        return {};
    for (QStringView component : withPathComponents) {
        while (component.startsWith(u'/'))
            component = component.sliced(1);
        path = kx::withoutTrailingSlashes(kx::childPath(path, component));
    }
    return kx_mkdirP(path) ? QString() : path;
}

QString kx_DirWithTypeWithPathComponent(QStandardPaths::StandardLocation type, const QString &withPathComponent)
{
    return kx_DirWithTypeWithPathComponents(
        type, withPathComponent.isNull() ? QStringList() : QStringList{withPathComponent});
}
