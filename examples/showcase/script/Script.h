// SPDX-License-Identifier: MIT
#pragma once

#include "Check.h"
#include "Hand.h"

#include <QtCore/QJsonValue>

class ClipFolder;
class PlayerWindow;
class Stage;

/// Uses the player as a person would, by mouse and keyboard, and checks what comes of it.
class Script {
public:
    Script(PlayerWindow &window, const ClipFolder &folder, const QDir &pictures);

    /// True when every check passed.
    bool play();

private:
    // ScriptPage.cpp

    void clipsAreMade();
    void clipIsStartedInThePage();
    void linkPlaysTheNext();
    void pageComesBackAfterACrash();
    void unknownActionIsRefused();
    [[nodiscard]] QJsonValue ask(const QString &javaScript) const;
    void clickInPage(const QString &selector);

    // ScriptPlayer.cpp

    void playingPauses();
    void hoverShowsAFrame();
    void barSeeks();
    void volumeIsDragged();
    void highlightsArePlayed();
    void tagFiltersTheList();
    [[nodiscard]] QPoint onBar(double fraction) const;

    // ScriptWindow.cpp

    void titleBarMovesTheWindow();
    void cornerResizesTheWindow();
    void listIsHidden();
    void fullScreenAndBack();
    void logIsOnDisk();
    void closeButtonCloses();

    PlayerWindow &m_window;
    const ClipFolder &m_folder;
    Stage &m_stage;
    Check m_check;
    Hand m_hand;
};
