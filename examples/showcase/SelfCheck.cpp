// SPDX-License-Identifier: MIT
#include "SelfCheck.h"

#include "ShowcaseWindow.h"
#include "SlowPage.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWebView.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/Web/WebEngine.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDirIterator>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTimer>
#include <QtGui/QPixmap>

#include <csignal>
#include <cstdio>

namespace {

constexpr int patienceInMilliseconds = 20'000;

// Runs the event loop until the condition holds or patience ends.
bool waitUntil(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(patienceInMilliseconds);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

} // namespace

SelfCheck::SelfCheck(ShowcaseWindow &window, const QString &logFolder, const QString &screenshotFile)
    : m_window(window)
    , m_logFolder(logFolder)
    , m_screenshotFile(screenshotFile)
{
}

bool SelfCheck::run()
{
    m_window.openClips();
    step(
        QStringLiteral("the page loads and lists its clips"),
        [this] { return ask(QStringLiteral("document.getElementById('status')?.textContent")).toString(); },
        QStringLiteral("3 clips"));
    step(
        QStringLiteral("the owner hears of the finished load"),
        [this] { return m_window.loads() > 0 ? QStringLiteral("yes") : QStringLiteral("no"); }, QStringLiteral("yes"));
    pageCallsNative();
    nativeCallsPage();
    linkFiresAction();
    frameIsRefused();
    missingPageIsReported();
    saveScreenshot();
    failedLoadIsRebuilt();
    logIsOnDisk();
    return m_allPassed;
}

// Waits until `happened` gives the expected text, and says what it gave.
void SelfCheck::step(const QString &name, const std::function<QString()> &happened, const QString &expected)
{
    QString seen;
    const bool passed = waitUntil([&] { return (seen = happened()) == expected; });
    std::printf("%s  %s: %s\n", passed ? "ok  " : "FAIL", qPrintable(name), qPrintable(seen));
    if (!passed)
        std::printf("      expected: %s\n", qPrintable(expected));
    std::fflush(stdout);
    m_allPassed = m_allPassed && passed;
}

QJsonValue SelfCheck::ask(const QString &script) const
{
    struct Answer {
        bool arrived = false;
        QJsonValue value;
    };
    auto answer = std::make_shared<Answer>();
    m_window.host().wkWebView()->evaluateJavaScript(
        script, [answer](const QJsonValue &value, const std::optional<KXError> &) {
            *answer = {true, value};
        });
    waitUntil([&] { return answer->arrived; });
    return answer->value;
}

void SelfCheck::click(const QString &selector) const
{
    (void)ask(QStringLiteral("document.querySelector('%1').click()").arg(selector));
}

QString SelfCheck::logText() const
{
    KXLogger::sharedLogger().save();
    QString text;
    QDirIterator files(m_logFolder, {QStringLiteral("*.log")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            text += QString::fromUtf8(file.readAll());
    }
    return text;
}

void SelfCheck::pageCallsNative()
{
    click(QStringLiteral("#play"));
    step(
        QStringLiteral("the page calls native once and gets its answer"),
        [this] { return ask(QStringLiteral("document.body.dataset.play")).toString(); },
        QStringLiteral(R"({"title":"First clip"})"));
    click(QStringLiteral("#watch"));
    step(
        QStringLiteral("one call is answered many times"),
        [this] { return ask(QStringLiteral("document.body.dataset.progress")).toString(); },
        QStringLiteral("[33,66,100]"));
    click(QStringLiteral("#probe"));
    step(
        QStringLiteral("the page asks which methods exist"),
        [this] { return ask(QStringLiteral("document.body.dataset.probe")).toString(); },
        QStringLiteral(R"({"play":"1","teleport":"0"})"));
}

void SelfCheck::nativeCallsPage()
{
    int marked = -1;
    m_window.markPlaying(3, [&marked](int count) { marked = count; });
    step(
        QStringLiteral("native calls the page and gets its answer"), [&] { return QString::number(marked); },
        QStringLiteral("1"));
    step(
        QStringLiteral("the page shows what native said"),
        [this] {
            return ask(QStringLiteral("document.querySelector('li.playing').firstChild.textContent")).toString();
        },
        QStringLiteral("Third clip"));
}

void SelfCheck::linkFiresAction()
{
    click(QStringLiteral("#action"));
    step(
        QStringLiteral("a link fires an action URL"), [this] { return m_window.playedTitles().value(1); },
        QStringLiteral("Second clip"));
}

void SelfCheck::frameIsRefused()
{
    (void)ask(QStringLiteral("document.getElementById('guest').contentDocument.getElementById('takeover').click()"));
    step(
        QStringLiteral("a frame tries to take over the window and is refused"),
        [this] {
            return logText().contains(QStringLiteral("[wk] forbidden host:forbidden.example"))
                ? QStringLiteral("forbidden")
                : QStringLiteral("not refused");
        },
        QStringLiteral("forbidden"));
    step(
        QStringLiteral("the page is still there"),
        [this] {
            return QString::number(ask(QStringLiteral("document.querySelectorAll('#clips li').length")).toInt());
        },
        QStringLiteral("3"));
}

void SelfCheck::missingPageIsReported()
{
    click(QStringLiteral("#missing"));
    step(
        QStringLiteral("a link to a missing page is reported"),
        [this] {
            return m_window.missingPages().isEmpty() ? QString() : QFileInfo(m_window.missingPages().last()).fileName();
        },
        QStringLiteral("missing.html"));
    step(
        QStringLiteral("the page recovers and says so"),
        [this] { return ask(QStringLiteral("document.getElementById('status')?.textContent")).toString(); },
        QStringLiteral("Not found: missing.html"));
}

void SelfCheck::failedLoadIsRebuilt()
{
    KXWKWebView &host = m_window.host();
    const kx::WebView *before = host.wkWebView();
    host.updateURL(SlowPage::url());
    waitUntil([] { return SlowPage::requests() == 1; });
    const qint64 renderer = host.wkWebView()->page().rendererProcessId();
    if (renderer > 0)
        ::kill(pid_t(renderer), SIGKILL);
    step(
        QStringLiteral("the engine's process dies in the middle of a load: the web view is rebuilt"),
        [&]() -> QString { // a sum of strings refers to its parts; the type makes it one string
            return QString::number(host.autoRebuildCount())
                + (host.wkWebView() != before ? QStringLiteral(" new view") : QStringLiteral(" old view"));
        },
        QStringLiteral("1 new view"));
    SlowPage::release();
    step(
        QStringLiteral("the rebuilt web view loads the page again"),
        [this] { return ask(QStringLiteral("document.getElementById('arrived')?.textContent")).toString(); },
        QStringLiteral("Here at last"));
}

void SelfCheck::logIsOnDisk()
{
    step(
        QStringLiteral("the log on disk tells of the rebuild"),
        [this] {
            return logText().contains(QStringLiteral("[wk] will rebuild after occur error:showcase://slow/index.html"))
                ? QStringLiteral("yes")
                : QStringLiteral("no");
        },
        QStringLiteral("yes"));
}

void SelfCheck::saveScreenshot()
{
    if (m_screenshotFile.isEmpty())
        return;
    step(
        QStringLiteral("a screenshot is saved"),
        [this] {
            return m_window.grab().save(m_screenshotFile) ? QStringLiteral("saved") : QStringLiteral("not saved");
        },
        QStringLiteral("saved"));
}
