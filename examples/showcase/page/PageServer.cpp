// SPDX-License-Identifier: MIT
#include "PageServer.h"

#include "../clips/ClipFolder.h"
#include "../clips/FfmpegRun.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QFile>
#include <QtCore/QMimeDatabase>

using namespace Qt::StringLiterals;

namespace {

const QString scheme = u"showcase"_s;
const QString posterFolder = u"/poster/"_s;

void answerFile(const kx::URLSchemeTaskPtr &task, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        task->didFailWithError({kx::URLErrorDomain, kx::URLErrorFileDoesNotExist, {}, {}});
        return;
    }
    const QString type = QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension).name();
    task->didReceiveResponse(type.toUtf8() + (type.startsWith(u"text/") ? ";charset=utf-8" : ""));
    task->didReceiveData(file.readAll());
    task->didFinish();
}

} // namespace

void PageServer::registerScheme()
{
    KXURLSchemeManager::sharedManager().setProxySchemes({scheme});
}

QUrl PageServer::pageUrl()
{
    return QUrl(scheme + u"://player/index.html"_s);
}

QString PageServer::posterUrl(int clipId)
{
    return posterFolder + QString::number(clipId);
}

PageServer::PageServer(const ClipFolder &folder, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
{
    KXURLSchemeManager::sharedManager().onComingRequest([this](const kx::URLSchemeTaskPtr &task) { answer(task); });
}

PageServer::~PageServer()
{
    KXURLSchemeManager::sharedManager().onComingRequest({});
}

void PageServer::answer(const kx::URLSchemeTaskPtr &task)
{
    const QString path = task->url().path();
    if (path.startsWith(posterFolder))
        answerPoster(task, path.mid(posterFolder.size()).toInt());
    else
        answerFile(task, u":/page"_s + path);
}

void PageServer::answerPoster(const kx::URLSchemeTaskPtr &task, int clipId)
{
    const Clip clip = m_folder.clip(clipId);
    const QString poster = m_posters.filePath(u"%1.jpg"_s.arg(clipId));
    const bool isBeingMade = m_waiting.contains(clipId);
    if (clip.isNull() || (!isBeingMade && QFile::exists(poster)))
        return answerFile(task, poster);
    // The page waits; should it go meanwhile, the answer goes nowhere.
    m_waiting[clipId].append(task);
    if (isBeingMade)
        return;
    auto *run = new FfmpegRun({u"-ss"_s, QString::number(clip.seconds / 3), u"-i"_s, clip.path, u"-frames:v"_s, u"1"_s,
                                  u"-vf"_s, u"scale=256:-2"_s, u"-q:v"_s, u"3"_s, poster},
        this);
    connect(run, &FfmpegRun::ended, this, [this, run, clipId, poster] {
        run->deleteLater();
        for (const kx::URLSchemeTaskPtr &waiting : m_waiting.take(clipId))
            answerFile(waiting, poster);
    });
    run->start();
}
