// SPDX-License-Identifier: MIT
#include "LogFiles.h"

#include "LogStamp.h"

#include <KXFoundation/Platform/Core/FileTree.h>
#include <KXFoundation/Platform/Core/Strings.h>
#include <KXFoundation/Platform/Core/Threads.h>
#include <KXFoundation/Platform/Core/UpdateFile.h>

#include <QtCore/QDir>

#include <utility>

namespace {

void removeExpiredEntries(const QString &directory, double interval)
{
    for (const QString &name : kx::entryNames(directory)) {
        const QString path = kx::childPath(directory, name);
        const auto modified = kx::modificationTime(path);
        if (modified && std::chrono::duration<double>(std::chrono::system_clock::now() - *modified).count() > interval)
            kx::removeTree(path);
    }
}

void removeExpiredInBackground(const QString &directory, double interval)
{
    kx::runDetached(
        kx::ThreadPriority::Background, [directory, interval] { removeExpiredEntries(directory, interval); });
}

} // namespace

LogFiles::LogFiles() = default;
LogFiles::~LogFiles() = default;

QString LogFiles::basePath() const
{
    const std::lock_guard lock(m_mutex);
    return base();
}

void LogFiles::setBasePath(const QString &directory)
{
    const std::lock_guard lock(m_mutex);
    m_basePath = directory;
}

QString LogFiles::path()
{
    const std::lock_guard lock(m_mutex);
    return ensurePath();
}

void LogFiles::setPath(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    m_path = path;
    m_freshFile.reset();
}

QString LogFiles::previousPath()
{
    const std::lock_guard lock(m_mutex);
    return ensurePrevious();
}

void LogFiles::setPreviousPath(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    m_previousPath = path;
}

std::shared_ptr<kx::UpdateFile> LogFiles::file()
{
    const std::lock_guard lock(m_mutex);
    if (!m_file) {
        const QString path = ensurePath();
        m_file = m_freshFile ? std::move(m_freshFile) : kx::UpdateFile::open(path);
        m_freshFile.reset();
    }
    return m_file;
}

void LogFiles::setFile(std::shared_ptr<kx::UpdateFile> file)
{
    const std::lock_guard lock(m_mutex);
    forgetFile();
    m_file = std::move(file);
}

void LogFiles::release(const std::shared_ptr<kx::UpdateFile> &file)
{
    const std::lock_guard lock(m_mutex);
    if (m_file == file)
        m_file.reset();
}

// One lock over all steps: no batch can make this run's file before the earlier run's newest file is known.
void LogFiles::switchTo(const QString &directory, double expireInterval)
{
    const std::lock_guard lock(m_mutex);
    m_previousPath = QString();
    m_path = QString();
    forgetFile();
    m_basePath = directory;
    removeExpiredInBackground(base(), expireInterval);
    ensurePrevious();
}

void LogFiles::removeExpired(double interval) const
{
    removeExpiredInBackground(basePath(), interval);
}

void LogFiles::removeAll()
{
    const std::lock_guard lock(m_mutex);
    forgetFile();
    kx::runDetached(kx::ThreadPriority::Default, [directory = base()] { kx::removeTree(directory); });
}

QString LogFiles::makePath()
{
    std::shared_ptr<kx::UpdateFile> file;
    return makeFile(basePath(), file);
}

QString LogFiles::makeFile(const QString &directory, std::shared_ptr<kx::UpdateFile> &file)
{
    const LocalTime now = LocalTime::now();
    const QString dayFolder = kx::childPath(directory, now.day());
    if (!kx::somethingExists(dayFolder))
        kx::makeDirectories(dayFolder);
    QString path = kx::childPath(dayFolder, now.timeOfDay()) + u".log";
    file = kx::UpdateFile::create(path);
    return path;
}

QString LogFiles::newestEntry(const QString &directory)
{
    QString newest;
    if (directory.isEmpty())
        return newest;
    const auto isBefore = [](const QString &a, const QString &b) {
        const int order = kx::compareNumeric(a, b);
        return order ? order < 0 : a < b; // "1" and "01": any fixed order will do
    };
    for (const QString &name : kx::entryNames(directory)) {
        if (!name.startsWith(u'.') && (newest.isNull() || isBefore(newest, name)))
            newest = name;
    }
    return newest.isNull() ? newest : kx::childPath(directory, newest);
}

void LogFiles::forgetFile()
{
    m_file.reset();
    m_freshFile.reset();
}

QString LogFiles::base() const
{
    return m_basePath.isNull() ? QDir::tempPath() + u"/Log" : m_basePath;
}

QString LogFiles::ensurePath()
{
    if (m_path.isNull())
        m_path = makeFile(base(), m_freshFile);
    return m_path;
}

QString LogFiles::ensurePrevious()
{
    if (m_previousPath.isNull())
        m_previousPath = newestEntry(newestEntry(base()));
    return m_previousPath;
}
