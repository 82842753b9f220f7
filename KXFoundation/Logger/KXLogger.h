// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>
#include <KXFoundation/Platform/Core/Format.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

namespace kx {
class SerialQueue;
class TextBuffer;
class UpdateFile;
} // namespace kx

/// Writes lines to one file per run: `<logBasePath>/<yyyy-MM-dd>/<HH-mm-ss>.log`, in UTF-8, named by the local time at
/// which the file was made.
///
/// A line carries a type, a plain number; it is recorded when logType() is not above it, both read as unsigned.
/// Recorded lines gather in memory. Each fiftieth one sends its batch to the disk on logQueue(), with one flush for the
/// whole batch; the caller formats its line and goes on, it never waits for the disk. Whoever ends or dies loses what
/// the last batch or save() did not cover; nothing is written at exit.
///
/// While a batch waits or is being written, further lines wait behind it in logQueue(). Changing the base directory and
/// deleting all logs drop those lines; lines that already stand in memoryLogs() stay and go to the new file.
///
/// No operation reports a failure: a line that cannot be written is lost, and setLogBaseDirectory() starts afresh.
///
/// Two runs that make their file in the same directory within the same second share its name: the later one puts its
/// own empty file in the place of the earlier one, which goes on writing to its own file, now without a name. No file
/// ever mixes the lines of two runs unless the earlier one has to open the name again after maxFileSize().
///
/// Every member may be called from any thread. Loggers of one's own work beside the shared one; with the logger go the
/// lines that are not written.
class KX_CORE_EXPORT KXLogger {
public:
    KXLogger();
    /// Waits for a batch that is being written; what else stands or waits is lost.
    ~KXLogger();
    Q_DISABLE_COPY_MOVE(KXLogger)

    /// The logger of the process, made at the first call and never destroyed.
    [[nodiscard]] static KXLogger &sharedLogger();

    // --- writing -------------------------------------------------------------------------------------------------

    /// Records a line made by kx::format() from a UTF-8 (or UTF-16) format. The tag is UTF-8; null and "" mean none.
    /// Arguments of a line that is not recorded are not turned into text.
    template <class... Values>
    void writeLogFormat(qint32 type, const char *tag, const char *format, const Values &...values)
    {
        if (isRecorded(type)) {
            const std::array<kx::FormatArgument, sizeof...(Values)> list{kx::FormatArgument(values)...};
            writeArguments(tag, format, list);
        }
    }
    template <class... Values>
    void writeLogFormat(qint32 type, const char *tag, QStringView format, const Values &...values)
    {
        if (isRecorded(type)) {
            const std::array<kx::FormatArgument, sizeof...(Values)> list{kx::FormatArgument(values)...};
            writeArguments(tag, format, list);
        }
    }

    /// Records "[MM-dd HH:mm:ss] [tag] log", without the second bracket when there is no tag. The text is no format.
    void writeLog(qint32 type, const char *tag, const QString &log);

    /// Records a finished line; adds the line feed unless the line ends with one. When standard output is a terminal
    /// (looked at again every second), a recorded line also goes to standard error. An empty line is not recorded.
    void writeLog(qint32 type, const QString &line);

    /// Queues a line as it is, whatever its type; with `force` everything gathered so far is written with it.
    void addLogToMemoryQueue(const QString &line, bool force);

    /// Writes everything queued before the call, then the line "force eof", and returns when it is on the disk.
    void save();

    // --- files ---------------------------------------------------------------------------------------------------

    /// Starts a new run's file in another directory, made with the next batch. In this order: drops the lines behind an
    /// unwritten batch, forgets both paths, lets go of the open file (a batch under way ends in it), deletes expired
    /// day folders in the background, and looks up previousLogPath() before this run has a file.
    void setLogBaseDirectory(const QString &directory);

    /// Deletes, in the background, every entry of the base directory that was last changed more than expireInterval()
    /// ago. A link ages and goes by itself; what it leads to stays.
    void cleanOldLogIfNeed();

    /// Drops the lines behind an unwritten batch, lets go of the open file and deletes the whole base directory in the
    /// background. Later lines are lost until setLogBaseDirectory() is called.
    void cleanLogFiles();

    /// Path of the directory's last entry in numeric-aware order of the names, hidden ones left out; null if there is
    /// none.
    [[nodiscard]] static QString previousFileWithDir(const QString &directory);

    /// Makes the day folder and an empty file named by the present second, and returns the file's path, also when that
    /// failed. Does not change logPath().
    QString makeLogFilePath();

    /// "<free>G/<total>G" of the volume with the user's documents (with the nearest folder above them that exists), in
    /// GiB with two decimals, such as "123.45G/465.63G"; "--/--" when the system does not tell.
    [[nodiscard]] static QString volumeAvailableCapacity();
    /// The same for the volume that holds `path`.
    [[nodiscard]] static QString volumeAvailableCapacity(const QString &path);

    // --- settings and state --------------------------------------------------------------------------------------

    /// Size in MiB from which a file is written again from its beginning, older bytes behind staying in place; 10 at
    /// first. Deliberate: the limit in bytes is this shifted left by 20 in 32 bits and then widened with its sign, so
    /// 2048 to 4095 and -2048 to -1 never wrap, 0 and 4096 start over with every batch, and 4097 counts as 1.
    [[nodiscard]] qint32 maxFileSize() const;
    void setMaxFileSize(qint32 mebibytes);

    /// Smallest type that is recorded; 0, everything, at first. As types compare unsigned, -1 silences all but -1
    /// itself.
    [[nodiscard]] qint32 logType() const;
    void setLogType(qint32 type);
    void setFileLogMinType(qint32 type) { setLogType(type); }

    /// Seconds; 14 days at first.
    [[nodiscard]] double expireInterval() const;
    void setExpireInterval(double seconds);

    /// The lines gathered for the next batch, at this moment.
    [[nodiscard]] QStringList memoryLogs() const;
    void setMemoryLogs(const QStringList &lines);

    /// The file of this run, opened at the first use (which makes logPath()); null when it cannot be opened.
    [[nodiscard]] std::shared_ptr<kx::UpdateFile> logFile();
    /// None lets go of the file; the next batch opens logPath() again, at its beginning.
    void setLogFile(std::shared_ptr<kx::UpdateFile> file);

    /// Where every file is written. Never null.
    [[nodiscard]] std::shared_ptr<kx::SerialQueue> logQueue();
    /// Several loggers may share a queue; one that cancels then cancels for all. For the time before the first line:
    /// lines in the old queue and in the new one are in no order, and a queue that nobody else holds goes with the
    /// lines that wait in it. None gives a queue of its own.
    void setLogQueue(std::shared_ptr<kx::SerialQueue> queue);

    /// Path of this run's file; the first use makes the file. A null path has it made anew.
    [[nodiscard]] QString logPath();
    void setLogPath(const QString &path);

    /// Newest file of an earlier run: the last one in the last day folder, looked up by setLogBaseDirectory() or by the
    /// first use and then kept. Null when there is none; only a path is kept, so without an earlier run a later call
    /// looks again and finds the file of this run once that is made.
    [[nodiscard]] QString previousLogPath();
    void setPreviousLogPath(const QString &path);

    /// Directory of the day folders; "Log" in the directory for temporary files at first.
    [[nodiscard]] QString logBasePath() const;
    /// Only stores the path; setLogBaseDirectory() is what switches. Null brings back the default.
    void setLogBasePath(const QString &directory);

private:
    using Arguments = std::span<const kx::FormatArgument>;

    [[nodiscard]] bool isRecorded(qint32 type) const;
    void writeArguments(const char *tag, const char *format, Arguments arguments);
    void writeArguments(const char *tag, QStringView format, Arguments arguments);
    template <class Format> void writeFormatted(const char *tag, Format format, Arguments arguments);
    void record(kx::TextBuffer &line, bool terminal);

    struct Private;
    std::unique_ptr<Private> m_private;
};
