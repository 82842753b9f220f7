// SPDX-License-Identifier: MIT
#include "../page/ClipPage.h"
#include "../player/Stage.h"
#include "../window/PlayerWindow.h"
#include "../window/TitleBar.h"
#include "Script.h"

#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QFile>

using namespace Qt::StringLiterals;

void Script::titleBarMovesTheWindow()
{
    const QPoint before = m_window.pos();
    const QPoint from(400, 20);
    m_hand.drag(m_window.titleBar(), from, from + QPoint(-60, 30));
    m_check.that(u"the title bar moves the window"_s, [&] { return m_window.pos() == before + QPoint(-60, 30); });
}

void Script::cornerResizesTheWindow()
{
    const QSize before = m_window.size();
    const QPoint corner = m_window.rect().bottomRight() - QPoint(8, 8);
    m_hand.drag(m_window, corner, corner + QPoint(-90, -60));
    m_check.that(u"the corner resizes it"_s, [&] { return m_window.size() == before - QSize(90, 60); });
    m_check.picture(u"resized"_s);
}

void Script::listIsHidden()
{
    m_hand.click(m_window.titleBar().listButton());
    m_check.that(u"the list is hidden"_s, [this] { return m_window.page().isHidden(); });
    m_check.picture(u"without-list"_s);
    m_hand.click(m_window.titleBar().listButton());
    m_check.that(u"and shown again"_s, [this] { return !m_window.page().isHidden(); });
}

void Script::fullScreenAndBack()
{
    m_hand.click(*m_window.titleBar().windowButtons().fullScreenBtn());
    m_check.that(u"the green button makes it full screen"_s, [this] { return m_window.isFullScreen(); });
    m_check.that(u"without the title bar"_s, [this] { return m_window.titleBar().isHidden(); });
    m_check.picture(u"full-screen"_s);
    m_hand.pressKey(Qt::Key_Escape);
    m_check.that(u"Escape brings the window back"_s,
        [this] { return !m_window.isFullScreen() && m_window.titleBar().windowButtons().isVisible(); });
}

void Script::logIsOnDisk()
{
    m_check.that(u"the log on disk, in the group's directory, tells of it all"_s, [] {
        KXLogger &logger = KXLogger::sharedLogger();
        logger.save();
        QFile file(logger.logPath());
        if (!logger.logPath().startsWith(KXUtil::mainLogDirPath()) || !file.open(QIODevice::ReadOnly))
            return false;
        const QByteArray text = file.readAll();
        return text.contains("[player] play ") && text.contains("[player] refused kx://action.cmd/teleport");
    });
}

void Script::closeButtonCloses()
{
    m_hand.click(*m_window.titleBar().windowButtons().closeBtn());
    m_check.that(u"the red button closes the window"_s, [this] { return !m_window.isVisible(); });
}
