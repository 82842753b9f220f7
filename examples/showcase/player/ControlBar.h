// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/View/PNBaseView.h>

class KXLabel;
class PNButton;
class PNProgressIndicator;
class PNProgressSlider;
class PNTextColorButton;

/// The controls along the lower edge of the picture: the playback bar, and below it the buttons, the time and the
/// volume. It shows what it is told and says what the user wants.
class ControlBar : public PNBaseView {
    Q_OBJECT
public:
    explicit ControlBar(QWidget *parent = nullptr);

    [[nodiscard]] PNProgressIndicator &bar() const { return *m_bar; }
    [[nodiscard]] PNProgressSlider &volume() const { return *m_volume; }
    [[nodiscard]] PNButton &playButton() const { return *m_play; }
    [[nodiscard]] PNButton &muteButton() const { return *m_mute; }
    [[nodiscard]] PNTextColorButton &highlightsButton() const { return *m_highlights; }

    /// Where this part of the way is on the playback bar, from its left.
    [[nodiscard]] double barX(double fraction) const;

    void setDuration(double seconds);
    void setPosition(double seconds);
    void setPreloaded(double seconds);
    void setPlaying(bool playing);
    void setMuted(bool muted);
    void setHighlightsOn(bool on);

Q_SIGNALS:
    void playToggled();
    void muteToggled();
    void highlightsToggled();
    void seekRequested(double seconds);
    void volumeRequested(double volume);
    /// The pointer is over the bar, at this part of the way, and has left it.
    void hovered(double fraction);
    void hoverEnded();

private:
    QWidget *makeBar();
    void makeButtons();
    void makeVolume();
    void showTime();

    PNProgressIndicator *m_bar;
    PNButton *m_play;
    PNButton *m_mute;
    PNTextColorButton *m_highlights;
    PNProgressSlider *m_volume;
    KXLabel *m_time;
};
