// SPDX-License-Identifier: MIT
#include "PlayerWindow.h"

#include "../Look.h"
#include "../clips/ClipFolder.h"
#include "../page/ClipPage.h"
#include "../player/ControlBar.h"
#include "../player/Stage.h"
#include "../player/TitleLine.h"
#include "TitleBar.h"

#include <KXFoundation/ActionKit/KXActionManager.h>
#include <KXFoundation/CustomComponent/PNAlphBtn.h>
#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>
#include <KXFoundation/Platform/UI/WindowStyle.h>
#include <KXFoundation/RichTextView/KXLabel.h>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>

using namespace Qt::StringLiterals;

namespace {

using Style = kx::WindowStyle;
constexpr kx::WindowStyleMask ownChrome =
    Style::Titled | Style::Closable | Style::Miniaturizable | Style::Resizable | Style::FullSizeContentView;
constexpr int pageWidth = 320;
constexpr int statusHeight = 26;
constexpr double resizeCorner = 20; // where PNBaseWindow resizes

} // namespace

PlayerWindow::PlayerWindow(const ClipFolder &folder)
    : PNBaseWindow(QRectF(120, 120, 1200, 561), ownChrome)
    , m_folder(folder)
    , m_titleBar(new TitleBar)
    , m_stage(new Stage)
    , m_page(new ClipPage(folder))
    , m_statusBar(new PNBaseView)
    , m_notice(new KXLabel)
{
    setWindowTitle(tr("KXFoundation showcase"));
    setMinSize({760, 420});
    setAppearance(kx::Appearance::Inherited); // the application is dark as a whole
    setIgnoreDragRect(false);
    buildContent();
    joinParts();
    m_titleBar->setTitle(windowTitle());

    // In full screen the title bar is gone; then the window's own buttons show in the corner.
    setUseCustomStandardView(true);
    setSystemStandardSuperView(standardWindowButton(kx::WindowButton::Close)->superview());
    systemStandardSuperView()->widget()->hide();
}

void PlayerWindow::buildContent()
{
    m_notice->setTextColor(look::faintText);
    m_notice->setFontSize(12);
    m_statusBar->setBackgroundColor(look::chrome);
    m_statusBar->setFixedHeight(statusHeight);
    auto *status = new QHBoxLayout(m_statusBar);
    status->setContentsMargins(14, 0, 14, 0);
    status->addWidget(m_notice, 0, Qt::AlignVCenter);
    status->addStretch();

    m_page->setFixedWidth(pageWidth);
    auto *middle = new QHBoxLayout;
    middle->setSpacing(0);
    middle->addWidget(m_stage, 1);
    middle->addWidget(m_page);
    auto *content = new PNBaseView;
    content->setBackgroundColor(look::window);
    auto *rows = new QVBoxLayout(content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_titleBar);
    rows->addLayout(middle, 1);
    rows->addWidget(m_statusBar);
    setCentralWidget(content);
}

void PlayerWindow::joinParts()
{
    connect(m_page, &ClipPage::actionRequested, this, &PlayerWindow::act);
    connect(&m_stage->title(), &TitleLine::actionRequested, this, &PlayerWindow::act);
    connect(m_titleBar, &TitleBar::listToggled, this, [this] {
        m_listWanted = !m_listWanted;
        m_page->setVisible(m_listWanted);
    });
    Player &player = m_stage->player();
    connect(&player, &Player::playingChanged, this, [this](bool playing) { m_page->showPlaying(m_clipId, playing); });
    connect(&player, &Player::positionChanged, this, [this, &player](double position) {
        if (player.duration() > 0)
            m_page->showPosition(position / player.duration());
    });
    connect(&player, &Player::reachedEnd, this, &PlayerWindow::playNext);
    connect(&player, &Player::failed, this, &PlayerWindow::notice);
    const Highlights &highlights = m_stage->highlights();
    connect(&highlights, &Highlights::willEnd, this,
        [this](int index) { notice(tr("Highlight %1 is about to end").arg(index + 1)); });
    connect(&highlights, &Highlights::didEnd, this,
        [this](int index) { notice(tr("Highlight %1 is over").arg(index + 1)); });
}

void PlayerWindow::play(int clipId)
{
    const Clip clip = m_folder.clip(clipId);
    if (clip.isNull())
        return;
    m_clipId = clipId;
    m_stage->play(clip);
    m_titleBar->setTitle(clip.title);
    notice(clip.path);
    m_page->showPlaying(clipId, true);
    KXLogger::sharedLogger().writeLogFormat(1, "player", "play %@", clip.path);
}

void PlayerWindow::playNext()
{
    m_page->findNext(m_clipId, [this](int id) { play(id); });
}

void PlayerWindow::showTag(const QString &tag)
{
    m_page->showTag(tag);
}

void PlayerWindow::notice(const QString &text)
{
    m_notice->setText(text);
}

QString PlayerWindow::noticeShown() const
{
    return m_notice->text();
}

void PlayerWindow::act(const QString &url)
{
    KXError error;
    if (KXActionManager::handleActionWithURL(url, &error))
        return;
    notice(tr("There is no such command: %1").arg(url));
    KXLogger::sharedLogger().writeLogFormat(2, "player", "refused %@: %@", url, error.localizedDescription);
}

void PlayerWindow::changeEvent(QEvent *event)
{
    PNBaseWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) {
        m_titleBar->setVisible(!isFullScreen());
        m_statusBar->setVisible(!isFullScreen());
        m_page->setVisible(!isFullScreen() && m_listWanted);
    }
}

void PlayerWindow::keyPressEvent(QKeyEvent *event)
{
    Player &player = m_stage->player();
    switch (event->key()) {
    case Qt::Key_Space: player.togglePlaying(); break;
    case Qt::Key_Left: player.seek(player.position() - 5); break;
    case Qt::Key_Right: player.seek(player.position() + 5); break;
    case Qt::Key_N: playNext(); break;
    case Qt::Key_F: kx::setFullScreen(*this, !isFullScreen()); break;
    case Qt::Key_Escape: kx::setFullScreen(*this, false); break;
    default: PNBaseWindow::keyPressEvent(event);
    }
}

// The areas do not follow the window's size by themselves.
void PlayerWindow::resizeEvent(QResizeEvent *event)
{
    PNBaseWindow::resizeEvent(event);
    const double bottom = height() - TitleBar::barHeight;
    const QRectF title(0, bottom, width(), TitleBar::barHeight);
    const QRectF button(width() - TitleBar::listButtonWidth, bottom, TitleBar::listButtonWidth, TitleBar::barHeight);
    updateMoveExcludeRect({{u"mainRect"_s, title}, {u"exclude"_s, QVariantList{button}}});
    updateMoveIncludeRect({QRectF(width() - resizeCorner, 0, resizeCorner, resizeCorner)});
}
