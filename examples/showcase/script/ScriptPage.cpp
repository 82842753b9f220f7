// SPDX-License-Identifier: MIT
#include "../clips/ClipFolder.h"
#include "../page/ClipPage.h"
#include "../player/ControlBar.h"
#include "../player/Stage.h"
#include "../window/PlayerWindow.h"
#include "Script.h"

#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWebView.h>

#include <QtCore/QJsonObject>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

const QString posters = u"[...document.images].filter(image => image.naturalWidth > 0).length"_s;
const QString current = u"document.querySelector('li.current .title')?.textContent"_s;

} // namespace

QJsonValue Script::ask(const QString &javaScript) const
{
    struct Answer {
        bool arrived = false;
        QJsonValue value;
    };
    const auto answer = std::make_shared<Answer>();
    m_window.page().wkWebView()->evaluateJavaScript(
        javaScript, [answer](const QJsonValue &value, const std::optional<KXError> &) {
            *answer = {true, value};
        });
    Check::waitUntil([&] { return answer->arrived; });
    return answer->value;
}

void Script::clickInPage(const QString &selector)
{
    const QJsonValue middle =
        ask(u"(() => { const box = document.querySelector('%1').getBoundingClientRect();"
            " return {x: box.x + box.width / 2, y: box.y + box.height / 2}; })()"_s.arg(selector));
    m_hand.click(m_window.page(), QPointF(middle[u"x"].toDouble(), middle[u"y"].toDouble()).toPoint());
}

void Script::clipsAreMade()
{
    m_check.that(
        u"the empty folder is given clips"_s,
        [this]() -> QString {
            const bool isComplete = m_folder.state() == ClipFolder::State::Complete;
            return QString::number(m_folder.clips().size()) + (isComplete ? u" in all"_s : u" so far"_s);
        },
        u"3 in all"_s);
    m_check.that(
        u"the page lists them with their posters"_s, [this] { return QString::number(ask(posters).toInt()); }, u"3"_s);
    m_check.that(
        u"with how long they play"_s,
        [this] { return ask(u"document.querySelector('li:last-child .time').textContent"_s).toString(); }, u"0:30"_s);
    m_check.picture(u"clips"_s);
}

void Script::clipIsStartedInThePage()
{
    clickInPage(u"li:last-child button"_s);
    m_check.that(u"a click in the page plays a clip"_s, [this] { return m_stage.player().isPlaying(); });
    m_check.that(u"the clock advances"_s, [this] { return m_stage.player().position() > 1; });
    m_check.that(u"frames arrive"_s, [this] { return !m_stage.frameShown().isNull(); });
    const QImage first = m_stage.frameShown();
    m_check.that(u"and change"_s, [&] { return m_stage.frameShown() != first; });
    m_check.that(
        u"the page marks the clip"_s, [this] { return ask(current).toString(); }, u"Test card"_s);
    m_check.that(u"and follows its position"_s, [this] {
        return ask(u"document.querySelector('li.current .progress').getBoundingClientRect().width"_s).toDouble() > 1;
    });
    m_check.picture(u"playing"_s);
}

void Script::linkPlaysTheNext()
{
    clickInPage(u"#next"_s);
    m_check.that(
        u"a link of the page is an action: the next clip"_s, [this] { return m_folder.clip(m_window.clipId()).title; },
        u"Colour drift"_s);
    m_check.that(
        u"the page marks that one"_s, [this] { return ask(current).toString(); }, u"Colour drift"_s);
    m_check.that(u"its frames arrive"_s, [this] { return m_stage.player().position() > 0.5; });
    m_check.picture(u"next"_s);
    m_hand.drag(m_stage.controls().bar(), onBar(0.5), onBar(0.98));
    m_check.that(
        u"at its end follows the one below it in the list"_s, [this] { return m_folder.clip(m_window.clipId()).title; },
        u"Game of life"_s);
}

void Script::unknownActionIsRefused()
{
    (void)ask(u"_vexa.invokeNative('act', 'kx://action.cmd/teleport'), 0"_s);
    m_check.that(
        u"an action that nobody knows is refused"_s, [this] { return m_window.noticeShown(); },
        u"There is no such command: kx://action.cmd/teleport"_s);
}

void Script::pageComesBackAfterACrash()
{
    const qint64 renderer = m_window.page().wkWebView()->page().rendererProcessId();
    if (renderer > 0)
        ::kill(pid_t(renderer), SIGKILL);
    m_check.that(u"the page's process dies"_s,
        [&] { return m_window.page().wkWebView()->page().rendererProcessId() != renderer; });
    m_check.that(
        u"and the page is back, as it was"_s, [this] { return ask(current).toString(); }, u"Game of life"_s);
}
