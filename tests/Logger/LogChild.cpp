// SPDX-License-Identifier: MIT
// A program that logs, for tests that need a process of its own. It carries out its arguments one after the other.
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/Core/SerialQueue.h>

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <algorithm>
#include <cstdio>
#include <string>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// A host's message handler that logs, as hosts like to have it. Console lines of the logger must not come back here.
void logMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    KXLogger::sharedLogger().writeLog(0, "message", message);
}

// Gives the rights of root up; others stay who they are.
bool becomeUser(const QString &user)
{
    if (::geteuid() != 0)
        return true;
    if (::setgid(gid_t(user.toUInt())) != 0 || ::setuid(uid_t(user.toUInt())) != 0)
        return false;
    return ::prctl(PR_SET_DUMPABLE, 1) == 0; // a leak checker has to look into the process at its end
}

bool limitFileSize(rlim_t bytes)
{
    rlimit limit;
    if (::getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return false;
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    qInstallMessageHandler(logMessage);
    KXLogger &logger = KXLogger::sharedLogger();
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string verb = argv[i];
        const QString value = QString::fromLocal8Bit(argv[i + 1]);
        bool done = true;
        if (verb == "base")
            logger.setLogBaseDirectory(value);
        else if (verb == "minimum")
            logger.setFileLogMinType(value.toInt());
        else if (verb == "line") // of type 2
            logger.writeLog(2, value);
        else if (verb == "lines") // that many
            for (int n = 0; n < value.toInt(); ++n)
                logger.writeLogFormat(2, "child", "line %d", n);
        else if (verb == "save")
            logger.save();
        else if (verb == "path") // makes the file and tells its name
            std::printf("%s\n", qPrintable(logger.logPath()));
        else if (verb == "limit")
            done = limitFileSize(value.toULong());
        else if (verb == "user")
            done = becomeUser(value);
        else if (verb == "say")
            std::printf("%s\n", qPrintable(value));
        else if (verb == "pause") { // until a line comes in
            for (int c = std::getchar(); c != '\n' && c != EOF;)
                c = std::getchar();
        } else
            done = false;
        std::fflush(stdout);
        if (!done)
            return i;
    }
    limitFileSize(RLIM_INFINITY); // where the lines are counted that tests reach, their counts are written at the end
    return 0;
}
