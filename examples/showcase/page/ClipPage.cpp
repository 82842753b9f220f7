// SPDX-License-Identifier: MIT
#include "ClipPage.h"

#include "../Look.h"
#include "../clips/ClipFolder.h"
#include "PageServer.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

using namespace Qt::StringLiterals;

ClipPage::ClipPage(const ClipFolder &folder, QWidget *parent)
    : KXWKWebView(parent)
    , m_folder(folder)
{
    setName(u"root"_s); // the main page: its frames are kept in check
    registerNativeMethods();
    connect(&m_folder, &ClipFolder::changed, this, &ClipPage::showClips);
    // A link with target=_blank asks for a window; here it is a command to the player.
    onWebViewNavigationAction([this](const kx::NavigationAction &action, const kx::WindowFeatures &) {
        Q_EMIT actionRequested(action.url.toString(QUrl::FullyEncoded));
    });
    // The page's process died at rest. It asks for everything again when it is loaded.
    connect(this, &KXWKWebView::webContentProcessTerminated, this, [this] {
        m_watcher = nullptr;
        reloadCurrentURL();
    });
}

void ClipPage::open()
{
    updateURL(PageServer::pageUrl());
}

void ClipPage::showClips()
{
    invokeH5(u"showClips"_s, QJsonObject{{u"clips"_s, clipList()}, {u"status"_s, status()}});
}

void ClipPage::showPlaying(int clipId, bool playing)
{
    m_clipId = clipId;
    m_playing = playing;
    invokeH5(u"showPlaying"_s, QJsonObject{{u"id"_s, clipId}, {u"playing"_s, playing}});
}

void ClipPage::showTag(const QString &tag)
{
    m_tag = tag;
    invokeH5(u"showTag"_s, QJsonObject{{u"tag"_s, tag}});
}

void ClipPage::findNext(int clipId, const std::function<void(int)> &found)
{
    invokeH5Once(u"nextClip"_s, QJsonObject{{u"id"_s, clipId}},
        [found](const QJsonValue &answer) { found(answer[u"id"].toInt()); });
}

void ClipPage::showPosition(double fraction)
{
    if (m_watcher)
        m_watcher(QJsonObject{{u"fraction"_s, fraction}});
}

void ClipPage::registerNativeMethods()
{
    using Answer = KXWebViewJSBridge::Completion;
    jsBridge()->registerMethod(u"open"_s, [this](const QJsonValue &, const Answer &answer) {
        answer(QJsonObject{{u"clips"_s, clipList()}, {u"status"_s, status()}, {u"id"_s, m_clipId},
            {u"playing"_s, m_playing}, {u"tag"_s, m_tag}});
    });
    jsBridge()->registerMethod(
        u"act"_s, [this](const QJsonValue &url, const Answer &) { Q_EMIT actionRequested(url.toString()); });
    // Answered many times: the page's callback stays, because the call is not a one-shot.
    jsBridge()->registerMethod(
        u"watchPosition"_s, [this](const QJsonValue &, const Answer &answer) { m_watcher = answer; });
}

QString ClipPage::status() const
{
    if (!m_folder.clips().isEmpty())
        return u""_s;
    switch (m_folder.state()) {
    case ClipFolder::State::Looking: return tr("Looking for clips…");
    case ClipFolder::State::MakingSamples: return tr("Making some clips…");
    case ClipFolder::State::Complete: break;
    }
    return tr("There are no videos in %1.").arg(m_folder.path());
}

QJsonArray ClipPage::clipList() const
{
    QJsonArray list;
    for (const Clip &clip : m_folder.clips()) {
        list.append(
            QJsonObject{{u"id"_s, clip.id}, {u"title"_s, clip.title}, {u"time"_s, look::time(double(clip.seconds))},
                {u"tags"_s, QJsonArray::fromStringList(clip.tags)}, {u"poster"_s, PageServer::posterUrl(clip.id)}});
    }
    return list;
}
