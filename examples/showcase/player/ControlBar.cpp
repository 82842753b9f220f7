// SPDX-License-Identifier: MIT
#include "ControlBar.h"

#include "../Look.h"
#include "common/Icons.h"

#include <KXFoundation/CustomComponent/PNButton.h>
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>
#include <KXFoundation/CustomComponent/PNProgressSlider.h>
#include <KXFoundation/CustomComponent/PNTextColorButton.h>
#include <KXFoundation/RichTextView/KXLabel.h>

#include <QtWidgets/QBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int barPadding = 14; // left and right

} // namespace

ControlBar::ControlBar(QWidget *parent)
    : PNBaseView(parent)
    , m_bar(new PNProgressIndicator)
    , m_play(new PNButton)
    , m_mute(new PNButton)
    , m_highlights(new PNTextColorButton)
    , m_volume(new PNProgressSlider)
    , m_time(new KXLabel)
{
    setBackgroundColor(look::overlay);
    makeButtons();
    makeVolume();
    m_time->setTextColor(look::text);
    m_time->setFontSize(12);
    showTime();

    auto *row = new QHBoxLayout;
    row->setContentsMargins(barPadding, 0, barPadding, 10);
    row->setSpacing(14);
    row->addWidget(m_play);
    row->addWidget(m_time, 0, Qt::AlignVCenter);
    row->addStretch();
    row->addWidget(m_highlights);
    row->addWidget(m_mute);
    row->addWidget(m_volume);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(makeBar());
    rows->addLayout(row);
}

// Presses count where the bar is at (0, 0) of a view of its own.
QWidget *ControlBar::makeBar()
{
    m_bar->setNormalHeight(32); // 4 for the bar itself
    m_bar->setHoverHeight(36);
    m_bar->setHorizontalPadding(barPadding);
    m_bar->setRounded(true);
    m_bar->setPlayedStartColor(look::accentDark);
    m_bar->setPlayedEndColor(look::accent);
    m_bar->setStarClipsColor(look::gold);
    m_bar->setAccessibleName(tr("Position"));
    m_bar->onDraggedIndicator(
        [this](PNProgressIndicator *bar, bool, double fraction) { Q_EMIT seekRequested(fraction * bar->maxValue()); });
    m_bar->onHoveredBar([this](PNProgressIndicator *, double fraction) { Q_EMIT hovered(fraction); },
        [this](PNProgressIndicator *) { Q_EMIT hoverEnded(); });
    auto *holder = new kx::View;
    auto *layout = new QVBoxLayout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_bar);
    return holder;
}

double ControlBar::barX(double fraction) const
{
    return barPadding + fraction * (m_bar->width() - 2 * barPadding);
}

void ControlBar::makeButtons()
{
    m_play->setNormalImage(icons::play(look::text));
    m_play->setSelectedNormalImage(icons::pause(look::text));
    m_play->setToolTips(tr("Play"));
    m_play->setSelectToolTips(tr("Pause"));
    m_play->setAccessibleName(tr("Play"));
    connect(m_play, &QAbstractButton::clicked, this, &ControlBar::playToggled);

    m_mute->setNormalImage(icons::speaker(look::text, true));
    m_mute->setSelectedNormalImage(icons::speaker(look::text, false));
    m_mute->setToolTips(tr("Mute"));
    m_mute->setSelectToolTips(tr("Unmute"));
    m_mute->setAccessibleName(tr("Mute"));
    connect(m_mute, &QAbstractButton::clicked, this, &ControlBar::muteToggled);

    m_highlights->setFont(kx::Font::named(look::fontName, 12));
    m_highlights->setNormalTextColor(look::text);
    m_highlights->setHoverTextColor(look::gold);
    m_highlights->setSelectedTextColor(look::gold);
    m_highlights->setNormalBackgroundColor(look::raised);
    m_highlights->setHoverBackgroundColor(look::raisedMore);
    m_highlights->changBtnTitleAndColor(tr("Highlights"), look::text);
    m_highlights->setCornerRadius(4);
    m_highlights->awakeFromNib();
    m_highlights->setFixedSize(84, 24);
    connect(m_highlights, &QAbstractButton::clicked, this, &ControlBar::highlightsToggled);
}

void ControlBar::makeVolume()
{
    m_volume->setMaxValue(1);
    m_volume->setKnobImage(icons::disc(10, look::text));
    m_volume->setMainColor(look::accent);
    m_volume->setFixedSize(96, 20);
    m_volume->setAccessibleName(tr("Volume"));
    m_volume->onDraggedIndicator([this](PNProgressSlider *, bool, double volume) { Q_EMIT volumeRequested(volume); });
}

void ControlBar::setDuration(double seconds)
{
    m_bar->setMaxValue(seconds);
    showTime();
}

void ControlBar::setPosition(double seconds)
{
    m_bar->setPlayedValue(seconds);
    showTime();
}

void ControlBar::setPreloaded(double seconds)
{
    m_bar->setPreloadValue(seconds);
}

void ControlBar::setPlaying(bool playing)
{
    m_play->setSelected(playing);
    m_play->setAccessibleName(playing ? tr("Pause") : tr("Play"));
}

void ControlBar::setMuted(bool muted)
{
    m_mute->setSelected(muted);
    m_mute->setAccessibleName(muted ? tr("Unmute") : tr("Mute"));
}

void ControlBar::setHighlightsOn(bool on)
{
    m_highlights->setSelected(on);
}

void ControlBar::showTime()
{
    m_time->setText(look::time(m_bar->playedValue()) + u" / "_s + look::time(m_bar->maxValue()));
}
