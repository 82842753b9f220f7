// SPDX-License-Identifier: MIT
#include "../player/ControlBar.h"
#include "../player/HoverPreview.h"
#include "../player/Stage.h"
#include "../player/TitleLine.h"
#include "Script.h"

#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>

#include <QtGui/QAccessible>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

// A pixel of the bar is a part of a second.
bool isNear(double position, double seconds)
{
    return std::abs(position - seconds) < 0.3;
}

} // namespace

// The lower part of the bar takes the pointer.
QPoint Script::onBar(double fraction) const
{
    const PNProgressIndicator &bar = m_stage.controls().bar();
    return {int(m_stage.controls().barX(fraction)), bar.height() - 16};
}

void Script::playingPauses()
{
    Player &player = m_stage.player();
    m_check.that(u"the controls are out of the way while the pointer is"_s,
        [this] { return m_stage.controls().isHidden() && m_stage.title().isHidden(); });
    m_hand.click(m_stage, m_stage.rect().center());
    m_check.that(
        u"they come with it"_s, [this] { return m_stage.controls().isVisible() && m_stage.title().isVisible(); });
    m_check.that(u"a click on the picture pauses"_s, [&] { return !player.isPlaying(); });
    m_hand.pressKey(Qt::Key_Space);
    m_check.that(u"the space bar goes on"_s, [&] { return player.isPlaying(); });
    m_hand.click(m_stage.controls().playButton());
    m_check.that(u"the button pauses"_s, [&] { return !player.isPlaying(); });
    m_check.picture(u"paused"_s);
}

void Script::hoverShowsAFrame()
{
    m_check.that(u"the bar shows what has been read ahead"_s, [this] {
        const PNProgressIndicator &bar = m_stage.controls().bar();
        return bar.preloadValue() > bar.playedValue() + 1 && bar.preloadValue() < bar.maxValue();
    });
    m_check.that(u"frames for the preview are made"_s, [this] { return m_stage.previews().isReady(); });
    m_hand.moveTo(m_stage.controls().bar(), onBar(0.5));
    const HoverPreview &preview = m_stage.hoverPreview();
    m_check.that(u"a hover over the bar shows a frame"_s, [&] { return preview.isVisible() && preview.hasFrame(); });
    m_check.that(
        u"and its time"_s, [&] { return preview.time(); }, u"0:15"_s);
    m_check.picture(u"hover"_s);
}

void Script::barSeeks()
{
    const Player &player = m_stage.player();
    const QImage before = m_stage.frameShown();
    m_hand.click(m_stage.controls().bar(), onBar(0.7));
    m_check.that(u"a click on the bar goes there"_s, [&] { return isNear(player.position(), 21); });
    m_check.that(u"and shows the frame"_s, [&] { return m_stage.frameShown() != before; });
    m_hand.drag(m_stage.controls().bar(), onBar(0.7), onBar(0.3));
    m_check.that(u"a drag goes to where it ends"_s, [&] { return isNear(player.position(), 9); });
    m_hand.moveTo(m_stage, m_stage.rect().center());
    m_check.that(u"the preview goes with the pointer"_s, [this] { return m_stage.hoverPreview().isHidden(); });
    m_hand.pressKey(Qt::Key_Right);
    m_check.that(u"an arrow key goes five seconds on"_s, [&] { return isNear(player.position(), 14); });
    m_check.picture(u"seek"_s);
}

void Script::volumeIsDragged()
{
    const PNProgressSlider &slider = m_stage.controls().volume();
    const auto at = [&slider](double fraction) { return QPoint(int(slider.width() * fraction), slider.height() / 2); };
    m_hand.drag(slider, at(0.6), at(0.25));
    m_check.that(u"the slider sets the volume"_s,
        [this] { return m_stage.player().volume() > 0.1 && m_stage.player().volume() < 0.3; });
    m_hand.click(m_stage.controls().muteButton());
    m_check.that(u"the button mutes"_s, [this] { return m_stage.player().isMuted(); });
    m_check.picture(u"muted"_s);
    m_hand.click(m_stage.controls().muteButton());
    m_check.that(u"and lets it sound again"_s, [this] { return !m_stage.player().isMuted(); });
}

void Script::tagFiltersTheList()
{
    // The first link of the title is the file's kind, the second one how long the clip is.
    QAccessibleInterface *title = QAccessible::queryAccessibleInterface(&m_stage.title());
    const QRect tag = title->child(1)->rect();
    m_hand.click(m_stage.title(), m_stage.title().mapFromGlobal(tag.center()));
    m_check.that(
        u"a tag in the title filters the list"_s,
        [this] { return QString::number(ask(u"document.querySelectorAll('li:not([hidden])').length"_s).toInt()); },
        u"2"_s);
    m_check.that(u"and does not touch the picture"_s, [this] { return !m_stage.player().isPlaying(); });
    m_check.picture(u"tag"_s);
    clickInPage(u"#filter"_s);
    m_check.that(
        u"the page takes the filter away"_s,
        [this] { return QString::number(ask(u"document.querySelectorAll('li:not([hidden])').length"_s).toInt()); },
        u"3"_s);
}

void Script::highlightsArePlayed()
{
    Player &player = m_stage.player();
    QStringList notices;
    bool playedBetween = false;
    QObject heard;
    QObject::connect(&m_stage.highlights(), &Highlights::willEnd, &heard,
        [&](int index) { notices.append(u"%1 ends"_s.arg(index + 1)); });
    QObject::connect(&m_stage.highlights(), &Highlights::didEnd, &heard,
        [&](int index) { notices.append(u"%1 is over"_s.arg(index + 1)); });
    QObject::connect(&player, &Player::positionChanged, &heard,
        [&](double position) { playedBetween = playedBetween || (position > 8.5 && position < 13.4); });
    const auto told = [&] { return notices.join(u", "); };

    m_hand.click(m_stage.controls().highlightsButton());
    m_check.that(u"the highlights go to the next one"_s, [&] { return isNear(player.position(), 13.5); });
    m_hand.click(m_stage.controls().bar(), onBar(0.18));
    m_check.that(u"the bar goes into the first"_s, [&] { return isNear(player.position(), 5.4); });
    playedBetween = false;
    m_check.picture(u"highlights"_s);
    m_hand.click(m_stage.controls().playButton());
    m_check.that(u"its end is announced"_s, told, u"1 ends"_s);
    m_check.picture(u"highlight-ends"_s);
    m_check.that(u"and comes"_s, told, u"1 ends, 1 is over"_s);
    m_check.that(u"the second one follows"_s, [&] { return player.position() > 13.4; });
    m_check.that(u"without what is between"_s, [&] { return !playedBetween; });
    m_check.picture(u"next-highlight"_s);
    m_hand.click(m_stage.controls().highlightsButton());
    m_check.that(u"and the whole clip is back"_s, [this] { return !m_stage.highlights().isOn(); });
}
