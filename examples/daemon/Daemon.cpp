// SPDX-License-Identifier: MIT
#include "Daemon.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>
#include <KXFoundation/Category/TimerUtil.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QPointer>
#include <QtCore/QUrl>

#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

Daemon::Daemon(double interval)
{
    registerActions();
    setInterval(interval);
}

Daemon::~Daemon()
{
    setInterval(0);
}

void Daemon::obey(const QString &url)
{
    KXError error;
    if (KXActionManager::handleActionWithURL(url, &error))
        std::printf("done %s\n", qPrintable(url));
    else
        std::printf("refused %s: %s\n", qPrintable(url), qPrintable(error.localizedDescription));
    std::fflush(stdout);
}

void Daemon::registerActions()
{
    auto processor = std::make_shared<KXActionProcessor>(u"kx"_s);
    processor->registerHandler(
        [](const KXActionItem &item) {
            const QHash<QString, QString> &query = item.queryMap();
            KXLogger::sharedLogger().writeLog(query.value(u"type"_s, u"1"_s).toInt(), "action", query.value(u"text"_s));
        },
        u"/log"_s);
    processor->registerHandler(
        [](const KXActionItem &item) {
            const QString path = item.queryMap().value(u"path"_s);
            KXLogger::sharedLogger().writeLogFormat(
                1, "action", "%@ plays for %lld s", path, KXUtil::getVideoDuration(QUrl::fromLocalFile(path)));
        },
        u"/duration"_s);
    processor->registerHandler([](const KXActionItem &) { KXLogger::sharedLogger().save(); }, u"/save"_s);
    processor->registerHandler(
        [daemon = QPointer(this)](const KXActionItem &item) {
            if (daemon)
                daemon->setInterval(item.queryMap().value(u"seconds"_s).toDouble());
        },
        u"/interval"_s);
    processor->registerHandler(
        [daemon = QPointer(this)](const KXActionItem &) {
            if (daemon)
                Q_EMIT daemon->quitRequested();
        },
        u"/quit"_s);
    KXActionManager::registerProcessor(processor);
}

void Daemon::setInterval(double seconds)
{
    if (const std::shared_ptr<kx::Timer> former = std::exchange(m_beat, nullptr))
        former->invalidate();
    if (seconds > 0)
        m_beat = zq_scheduledTimerWithTimeInterval(
            seconds, [this](const auto &) { logBeat(); }, true);
}

void Daemon::logBeat()
{
    KXLogger::sharedLogger().writeLogFormat(
        1, "daemon", "beat %d, disk %@", ++m_beats, KXLogger::volumeAvailableCapacity());
}
