// SPDX-License-Identifier: MIT
#include "ShowcaseWindow.h"

#include <KXFoundation/ActionKit/KXActionItem.h>
#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/ActionKit/KXActionProcessor.h>
#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>
#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

namespace {

QJsonObject clip(int id, const QString &title, int seconds)
{
    return {{QStringLiteral("id"), id}, {QStringLiteral("title"), title}, {QStringLiteral("seconds"), seconds}};
}

} // namespace

ShowcaseWindow::ShowcaseWindow(const QString &pageFolder, QWidget *parent)
    : QMainWindow(parent)
    , m_pageFolder(pageFolder)
    , m_host(new KXWKWebView(QRectF(0, 0, 960, 540)))
    , m_clips{clip(1, QStringLiteral("First clip"), 42), clip(2, QStringLiteral("Second clip"), 77),
          clip(3, QStringLiteral("Third clip"), 12)}
{
    setWindowTitle(QStringLiteral("KXFoundation showcase"));
    setCentralWidget(m_host);
    resize(960, 540);

    // The main page: frames may not take the window over.
    m_host->setName(QStringLiteral("root"));
    m_host->onFinishNavigation([this](KXWebView *) { ++m_loads; });
    m_host->loadLocalH5NotExsit([this](const QString &path) {
        m_missingPages.append(path);
        const QString text = QStringLiteral("Not found: ") + QFileInfo(path).fileName();
        m_host->invokeH5(QStringLiteral("showNotice"), QJsonObject{{QStringLiteral("text"), text}}, {});
    });
    // A link with target=_blank asks for a window; the showcase takes it as a command instead.
    m_host->onWebViewNavigationAction(
        [this](const kx::NavigationAction &action, const kx::WindowFeatures &) { openAction(action.url); });

    registerNativeMethods();
    registerActions();
}

void ShowcaseWindow::openClips()
{
    m_host->updateURL(QUrl::fromLocalFile(QDir(m_pageFolder).filePath(QStringLiteral("index.html"))));
}

void ShowcaseWindow::markPlaying(int id, const std::function<void(int)> &marked)
{
    m_host->invokeH5Once(
        QStringLiteral("markPlaying"), QJsonObject{{QStringLiteral("id"), id}}, [marked](const QJsonValue &answer) {
            if (marked)
                marked(answer[u"marked"].toInt());
        });
}

void ShowcaseWindow::registerNativeMethods()
{
    KXWebViewJSBridge &bridge = *m_host->jsBridge();
    bridge.registerMethod(QStringLiteral("listClips"),
        [this](const QJsonValue &, const KXWebViewJSBridge::Completion &completion) { completion(m_clips); });
    bridge.registerMethod(
        QStringLiteral("play"), [this](const QJsonValue &request, const KXWebViewJSBridge::Completion &completion) {
            const int id = request[u"id"].toInt();
            const QString title = m_clips.at(id - 1)[u"title"].toString();
            m_playedTitles.append(title);
            markPlaying(id);
            completion(QJsonObject{{QStringLiteral("title"), title}});
        });
    // Answers several times: the page's callback stays registered because the call is not a one-shot.
    bridge.registerMethod(QStringLiteral("watchProgress"),
        [this](const QJsonValue &request, const KXWebViewJSBridge::Completion &completion) {
            const int steps = request[u"steps"].toInt();
            for (int step = 1; step <= steps; ++step) {
                QTimer::singleShot(step * 20, this, [completion, step, steps] {
                    completion(QJsonObject{{QStringLiteral("percent"), 100 * step / steps}});
                });
            }
        });
}

void ShowcaseWindow::registerActions()
{
    auto player = std::make_shared<KXActionProcessor>(QStringLiteral("kx"));
    player->registerHandler(
        [window = QPointer(this)](const KXActionItem &item) {
            if (!window)
                return;
            window->m_playedTitles.append(item.queryMap().value(QStringLiteral("title")));
            window->markPlaying(item.queryMap().value(QStringLiteral("id")).toInt());
        },
        QStringLiteral("/play"));
    KXActionManager::registerProcessor(player);
}

void ShowcaseWindow::openAction(const QUrl &url)
{
    KXError error;
    if (!KXActionManager::handleActionWithURL(url.toString(QUrl::FullyEncoded), &error))
        KXLogger::sharedLogger().writeLogFormat(2, "show", "action refused: %@", error.localizedDescription);
}
