// SPDX-License-Identifier: MIT
#include "Daemon.h"
#include "EndSignals.h"
#include "InputLines.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"KXFoundation daemon"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"A background program: logs at an interval, and obeys the action URLs that it is "
                                     "given as arguments and as lines of its input. Ends with its input."_s);
    parser.addHelpOption();
    const QCommandLineOption interval(
        u"interval"_s, u"How often it logs, in seconds; 10 by default, 0 for never."_s, u"seconds"_s, u"10"_s);
    parser.addOption(interval);
    parser.addPositionalArgument(u"url"_s, u"Obeyed at the start, one after the other."_s, u"[url...]"_s);
    parser.process(application);

    KXActionItem::setDecodePassLimit(8); // anybody may write into a pipe
    KXUtil::setApplicationGroup(u"example.kxfoundation"_s); // shared with the showcase
    KXLogger &logger = KXLogger::sharedLogger();
    logger.setLogBaseDirectory(KXUtil::deamonLogDirPath());
    logger.cleanOldLogIfNeed();
    logger.writeLogFormat(1, "daemon", "started as process %lld", QCoreApplication::applicationPid());

    const EndSignals endSignals;
    const InputLines input;
    Daemon daemon(parser.value(interval).toDouble());
    const auto end = [&logger](const QString &reason) {
        logger.writeLogFormat(1, "daemon", "ends: %@", reason);
        QCoreApplication::quit();
    };
    QObject::connect(&endSignals, &EndSignals::arrived, &application, end);
    QObject::connect(&input, &InputLines::line, &daemon, &Daemon::obey);
    QObject::connect(&input, &InputLines::ended, &application, [end] { end(u"end of input"_s); });
    QObject::connect(
        &daemon, &Daemon::quitRequested, &application, [end] { end(u"asked to"_s); }, Qt::QueuedConnection);
    for (const QString &url : parser.positionalArguments())
        daemon.obey(url);
    const int result = QCoreApplication::exec();
    logger.save(); // nothing is written by itself at the end
    return result;
}
