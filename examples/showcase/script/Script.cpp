// SPDX-License-Identifier: MIT
#include "Script.h"

#include "../window/PlayerWindow.h"

#include <cstdio>

Script::Script(PlayerWindow &window, const ClipFolder &folder, const QDir &pictures)
    : m_window(window)
    , m_folder(folder)
    , m_stage(window.stage())
    , m_check(window, pictures)
    , m_hand(window)
{
}

bool Script::play()
{
    clipsAreMade();
    clipIsStartedInThePage();
    playingPauses();
    hoverShowsAFrame();
    barSeeks();
    volumeIsDragged();
    tagFiltersTheList();
    highlightsArePlayed();
    linkPlaysTheNext();
    unknownActionIsRefused();
    pageComesBackAfterACrash();
    titleBarMovesTheWindow();
    cornerResizesTheWindow();
    listIsHidden();
    fullScreenAndBack();
    logIsOnDisk();
    closeButtonCloses();
    std::printf("%s\n", m_check.allPassed() ? "every check passed" : "a check failed");
    return m_check.allPassed();
}
