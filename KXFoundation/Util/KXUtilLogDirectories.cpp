// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <KXFoundation/Category/FileManagerSandbox.h>
#include <KXFoundation/Platform/Core/FileTree.h>

#include <QtCore/QStandardPaths>

#include <mutex>
#include <tuple>

namespace {

struct Group {
    std::mutex mutex;
    QString identifier;
};

Group &group()
{
    static auto &group = *new Group; // for threads that outlive main() too
    return group;
}

// Null stays null: a name appended to nothing would be a path below the working directory.
QString logDirectory(QStringView name)
{
    const QString base = KXUtil::logBaseDirPath();
    if (base.isNull())
        return {};
    QString path = kx::childPath(base, name);
    std::ignore = kx_mkdirP(path); // whoever writes there will find out
    return path;
}

} // namespace

QString KXUtil::applicationGroup()
{
    const std::scoped_lock lock(group().mutex);
    return group().identifier;
}

void KXUtil::setApplicationGroup(const QString &identifier)
{
    const std::scoped_lock lock(group().mutex);
    group().identifier = identifier;
}

QString KXUtil::logBaseDirPath()
{
    const QString identifier = applicationGroup();
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (identifier.isEmpty() || data.isEmpty())
        return {};
    return kx::childPath(kx::childPath(data, identifier), u"Logs");
}

QString KXUtil::mainLogDirPath()
{
    return logDirectory(u"Main");
}

QString KXUtil::deamonLogDirPath()
{
    return logDirectory(u"Deamon");
}
