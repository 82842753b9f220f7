// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

namespace kx::test {

/// Lets the process's logger write into a directory of its own, from the smallest type on.
class SharedLog {
public:
    SharedLog()
    {
        KXLogger::sharedLogger().setMemoryLogs({});
        KXLogger::sharedLogger().setLogBaseDirectory(m_directory.filePath(QStringLiteral("log")));
        KXLogger::sharedLogger().setLogType(0);
    }

    /// Everything logged so far, as it stands in the file, without time stamps: "[wk] text".
    [[nodiscard]] QStringList lines() const
    {
        KXLogger::sharedLogger().save();
        QFile file(KXLogger::sharedLogger().logPath());
        QStringList lines;
        if (!file.open(QIODevice::ReadOnly))
            return {QStringLiteral("no log file")};
        for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
            if (line != u"force eof")
                lines.append(line.mid(QStringLiteral("[MM-dd HH:mm:ss] ").size()));
        }
        return lines;
    }

private:
    QTemporaryDir m_directory;
};

} // namespace kx::test
