// SPDX-License-Identifier: MIT
#include <KXFoundation/Logger/KXLogger.h>

#include "LogBatches.h"
#include "LogStamp.h"

#include <KXFoundation/Platform/Core/FileTree.h>
#include <KXFoundation/Platform/Core/FormatText.h>
#include <KXFoundation/Platform/Core/SerialQueue.h>
#include <KXFoundation/Platform/Core/Terminal.h>

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

struct KXLogger::Private {
    std::shared_ptr<LogBatches> batches = std::make_shared<LogBatches>();
    std::atomic<qint32> logType = 0;
    std::atomic<double> expireInterval = 0;
};

namespace {

constexpr double fourteenDays = 1209600.0;

void startLine(kx::TextBuffer &line, const LogStamp &stamp, const char *tag)
{
    line.append(QStringView(stamp.text));
    if (tag && *tag) {
        line.append(u'[');
        line.appendUtf8(tag);
        line.append(u"] ");
    }
}

} // namespace

KXLogger::KXLogger()
    : m_private(std::make_unique<Private>())
{
    setMaxFileSize(10);
    setExpireInterval(fourteenDays);
}

KXLogger::~KXLogger()
{
    const std::shared_ptr<kx::SerialQueue> queue = m_private->batches->queue();
    m_private.reset(); // operations that have not started find nobody
    queue->waitUntilAllOperationsAreFinished();
}

KXLogger &KXLogger::sharedLogger()
{
    static auto *const logger = new KXLogger; // never destroyed: threads may log until the very end
    return *logger;
}

bool KXLogger::isRecorded(qint32 type) const
{
    return quint32(logType()) <= quint32(type);
}

template <class Format> void KXLogger::writeFormatted(const char *tag, Format format, Arguments arguments)
{
    const LogStamp &stamp = LogStamp::now();
    kx::TextBuffer line;
    startLine(line, stamp, tag);
    kx::appendFormatted(line, format, arguments);
    record(line, stamp.terminal);
}

void KXLogger::writeArguments(const char *tag, const char *format, Arguments arguments)
{
    writeFormatted(tag, format, arguments);
}

void KXLogger::writeArguments(const char *tag, QStringView format, Arguments arguments)
{
    writeFormatted(tag, format, arguments);
}

void KXLogger::writeLog(qint32 type, const char *tag, const QString &log)
{
    if (!isRecorded(type))
        return;
    const LogStamp &stamp = LogStamp::now();
    kx::TextBuffer line;
    startLine(line, stamp, tag);
    line.append(log.isNull() ? QStringView(u"(null)") : QStringView(log));
    record(line, stamp.terminal);
}

void KXLogger::writeLog(qint32 type, const QString &line)
{
    if (!isRecorded(type))
        return;
    kx::TextBuffer copy;
    copy.append(QStringView(line));
    record(copy, LogStamp::now().terminal);
}

void KXLogger::record(kx::TextBuffer &line, bool terminal)
{
    if (terminal)
        kx::writeLineToStandardError(line.view());
    if (line.view().isEmpty())
        return;
    if (line.view().back() != u'\n')
        line.append(u'\n');
    m_private->batches->add(line.view(), false);
}

void KXLogger::addLogToMemoryQueue(const QString &line, bool force)
{
    m_private->batches->add(line, force);
}

void KXLogger::save()
{
    m_private->batches->save();
}

void KXLogger::setLogBaseDirectory(const QString &directory)
{
    m_private->batches->cancelWaiting();
    m_private->batches->files.switchTo(directory, expireInterval());
}

void KXLogger::cleanOldLogIfNeed()
{
    m_private->batches->files.removeExpired(expireInterval());
}

void KXLogger::cleanLogFiles()
{
    m_private->batches->cancelWaiting();
    m_private->batches->files.removeAll();
}

QString KXLogger::previousFileWithDir(const QString &directory)
{
    return LogFiles::newestEntry(directory);
}

QString KXLogger::makeLogFilePath()
{
    return m_private->batches->files.makePath();
}

QString KXLogger::volumeAvailableCapacity()
{
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation);
    QString folder = folders.isEmpty() ? QString() : folders.last();
    while (!folder.isEmpty() && folder != u"/" && !kx::somethingExists(folder))
        folder = QFileInfo(folder).path();
    return volumeAvailableCapacity(folder);
}

QString KXLogger::volumeAvailableCapacity(const QString &path)
{
    const std::optional<kx::VolumeSpace> space = kx::volumeSpace(path);
    if (!space)
        return QStringLiteral("--/--");
    const auto inGiB = [](quint64 bytes) { return float(double(bytes) * 0x1p-30); };
    return kx::format(u"%0.2fG/%0.2fG", inGiB(space->freeInBytes), inGiB(space->totalInBytes));
}

qint32 KXLogger::maxFileSize() const
{
    return m_private->batches->maxFileSize.load(std::memory_order_relaxed);
}

void KXLogger::setMaxFileSize(qint32 mebibytes)
{
    m_private->batches->maxFileSize.store(mebibytes, std::memory_order_relaxed);
}

qint32 KXLogger::logType() const
{
    return m_private->logType.load(std::memory_order_relaxed);
}

void KXLogger::setLogType(qint32 type)
{
    m_private->logType.store(type, std::memory_order_relaxed);
}

double KXLogger::expireInterval() const
{
    return m_private->expireInterval.load(std::memory_order_relaxed);
}

void KXLogger::setExpireInterval(double seconds)
{
    m_private->expireInterval.store(seconds, std::memory_order_relaxed);
}

QStringList KXLogger::memoryLogs() const
{
    return m_private->batches->memory();
}

void KXLogger::setMemoryLogs(const QStringList &lines)
{
    m_private->batches->setMemory(lines);
}

std::shared_ptr<kx::UpdateFile> KXLogger::logFile()
{
    return m_private->batches->files.file();
}

void KXLogger::setLogFile(std::shared_ptr<kx::UpdateFile> file)
{
    m_private->batches->files.setFile(std::move(file));
}

std::shared_ptr<kx::SerialQueue> KXLogger::logQueue()
{
    return m_private->batches->queue();
}

void KXLogger::setLogQueue(std::shared_ptr<kx::SerialQueue> queue)
{
    m_private->batches->setQueue(std::move(queue));
}

QString KXLogger::logPath()
{
    return m_private->batches->files.path();
}

void KXLogger::setLogPath(const QString &path)
{
    m_private->batches->files.setPath(path);
}

QString KXLogger::previousLogPath()
{
    return m_private->batches->files.previousPath();
}

void KXLogger::setPreviousLogPath(const QString &path)
{
    m_private->batches->files.setPreviousPath(path);
}

QString KXLogger::logBasePath() const
{
    return m_private->batches->files.basePath();
}

void KXLogger::setLogBasePath(const QString &directory)
{
    m_private->batches->files.setBasePath(directory);
}
