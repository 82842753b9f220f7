// SPDX-License-Identifier: MIT
#include "Stage.h"

#include "ControlBar.h"
#include "HoverPreview.h"
#include "TitleLine.h"

#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>

Stage::Stage(QWidget *parent)
    : VideoView(parent)
    , m_player(sink())
    , m_controls(new ControlBar)
    , m_title(new TitleLine)
    , m_hoverPreview(new HoverPreview)
    , m_highlights(m_controls->bar(), m_player)
{
    setNeedTracking(true);
    addSubview(*m_title);
    addSubview(*m_controls);
    addSubview(*m_hoverPreview);
    m_title->hide();
    joinControls();
    joinPlayer();
    m_controls->volume().setCurrentValue(m_player.volume());
}

void Stage::play(const Clip &clip)
{
    m_readAhead.open(clip.path);
    m_previews.prepare(clip);
    m_title->showClip(clip);
    place();
    m_player.open(clip.path);
}

void Stage::setVolume(double volume)
{
    m_player.setVolume(volume);
    m_player.setMuted(volume <= 0);
    m_controls->setMuted(m_player.isMuted());
}

void Stage::joinControls()
{
    connect(this, &PNBaseView::pressed, &m_player, &Player::togglePlaying);
    connect(this, &PNBaseView::entered, this, [this] { setPointerInside(true); });
    connect(this, &PNBaseView::exited, this, [this] { setPointerInside(false); });
    connect(m_controls, &ControlBar::playToggled, &m_player, &Player::togglePlaying);
    connect(m_controls, &ControlBar::seekRequested, &m_player, &Player::seek);
    connect(m_controls, &ControlBar::volumeRequested, this, &Stage::setVolume);
    connect(m_controls, &ControlBar::muteToggled, this, [this] {
        m_player.setMuted(!m_player.isMuted());
        m_controls->setMuted(m_player.isMuted());
    });
    connect(m_controls, &ControlBar::highlightsToggled, this, [this] { m_highlights.setOn(!m_highlights.isOn()); });
    connect(&m_highlights, &Highlights::onChanged, m_controls, &ControlBar::setHighlightsOn);
    connect(m_controls, &ControlBar::hovered, this, [this](double fraction) {
        const PNProgressIndicator &bar = m_controls->bar();
        m_hoverPreview->showAt(m_controls->barX(fraction), m_controls->frame().height() + 4,
            m_previews.frameAt(fraction), fraction * bar.maxValue());
    });
    connect(m_controls, &ControlBar::hoverEnded, m_hoverPreview, &QWidget::hide);
}

void Stage::joinPlayer()
{
    connect(&m_player, &Player::durationChanged, m_controls, &ControlBar::setDuration);
    connect(&m_player, &Player::playingChanged, this, [this](bool playing) {
        m_controls->setPlaying(playing);
        showControls();
    });
    connect(&m_player, &Player::positionChanged, this, [this](double position) {
        m_controls->setPosition(position);
        m_controls->setPreloaded(m_readAhead.advance(position, m_player.duration()));
    });
}

void Stage::setPointerInside(bool inside)
{
    m_pointerInside = inside;
    showControls();
}

void Stage::showControls()
{
    const bool shown = m_pointerInside || !m_player.isPlaying();
    m_controls->setVisible(shown);
    m_title->setVisible(shown && !m_title->contentSizeRect().isEmpty());
}

void Stage::resizeEvent(QResizeEvent *event)
{
    VideoView::resizeEvent(event);
    place();
}

void Stage::place()
{
    const QRectF area = bounds();
    m_controls->setFrame(QRectF(0, 0, area.width(), m_controls->sizeHint().height()));
    const QSizeF title = m_title->fittingSize();
    const double above = window()->isFullScreen() ? 44 : 14; // the window's buttons are in the corner then
    m_title->setFrame(QRectF(QPointF(0, area.height() - title.height() - above), title));
}
