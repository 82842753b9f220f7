// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

#include <memory>
#include <mutex>

namespace kx {
class UpdateFile;
}

/// Where a logger's files are: the base directory, the path and the open file of this run, the newest file before it.
/// Every member may be called from any thread; none holds up a caller that only logs.
class LogFiles {
public:
    LogFiles();
    ~LogFiles();

    [[nodiscard]] QString basePath() const;
    void setBasePath(const QString &directory);
    [[nodiscard]] QString path();
    void setPath(const QString &path);
    [[nodiscard]] QString previousPath();
    void setPreviousPath(const QString &path);
    [[nodiscard]] std::shared_ptr<kx::UpdateFile> file();
    void setFile(std::shared_ptr<kx::UpdateFile> file);
    /// Lets go of the file if it is still this one.
    void release(const std::shared_ptr<kx::UpdateFile> &file);

    /// Starts over in another directory; entries older than `expireInterval` seconds go in the background.
    void switchTo(const QString &directory, double expireInterval);
    void removeExpired(double interval) const;
    void removeAll();

    QString makePath();
    [[nodiscard]] static QString newestEntry(const QString &directory);

private:
    static QString makeFile(const QString &directory, std::shared_ptr<kx::UpdateFile> &file);
    // These run with m_mutex held.
    void forgetFile();
    QString base() const;
    QString ensurePath();
    QString ensurePrevious();

    mutable std::mutex m_mutex;
    QString m_basePath; // null: the default
    QString m_path;
    QString m_previousPath;
    std::shared_ptr<kx::UpdateFile> m_file;
    // The file of m_path as it was made, until it is first asked for. Opened by its name it could be another run's by
    // then.
    std::shared_ptr<kx::UpdateFile> m_freshFile;
};
