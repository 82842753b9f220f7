// SPDX-License-Identifier: MIT
#pragma once

#include "../clips/PreviewSheet.h"
#include "Highlights.h"
#include "Player.h"
#include "ReadAhead.h"
#include "VideoView.h"

class ControlBar;
class HoverPreview;
class TitleLine;

/// The picture with all that lies on it, joined to the player. The controls show while the pointer is over it, and
/// while nothing is playing.
class Stage : public VideoView {
    Q_OBJECT
public:
    explicit Stage(QWidget *parent = nullptr);

    void play(const Clip &clip);

    [[nodiscard]] Player &player() { return m_player; }
    [[nodiscard]] Highlights &highlights() { return m_highlights; }
    [[nodiscard]] PreviewSheet &previews() { return m_previews; }
    [[nodiscard]] ControlBar &controls() const { return *m_controls; }
    [[nodiscard]] HoverPreview &hoverPreview() const { return *m_hoverPreview; }
    [[nodiscard]] TitleLine &title() const { return *m_title; }

    void setVolume(double volume);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void joinControls();
    void joinPlayer();
    void setPointerInside(bool inside);
    void showControls();
    void place();

    Player m_player;
    PreviewSheet m_previews;
    ReadAhead m_readAhead;
    ControlBar *m_controls;
    TitleLine *m_title;
    HoverPreview *m_hoverPreview;
    Highlights m_highlights;
    bool m_pointerInside = false;
};
