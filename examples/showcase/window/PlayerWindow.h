// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

class ClipFolder;
class ClipPage;
class KXLabel;
class PNBaseView;
class Stage;
class TitleBar;

/// The player: a window with its own chrome, the picture, and the page with the clips.
class PlayerWindow : public PNBaseWindow {
    Q_OBJECT
public:
    /// The folder must outlive the window.
    explicit PlayerWindow(const ClipFolder &folder);

    /// Does nothing for an id that there is not.
    void play(int clipId);
    /// The next one that the page lists; also happens at a clip's end.
    void playNext();
    /// Shows the clips with this tag, or all for an empty one.
    void showTag(const QString &tag);
    void notice(const QString &text);

    [[nodiscard]] Stage &stage() const { return *m_stage; }
    [[nodiscard]] ClipPage &page() const { return *m_page; }
    [[nodiscard]] TitleBar &titleBar() const { return *m_titleBar; }
    [[nodiscard]] int clipId() const { return m_clipId; }
    [[nodiscard]] QString noticeShown() const;

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildContent();
    void joinParts();
    void act(const QString &url);

    const ClipFolder &m_folder;
    TitleBar *m_titleBar;
    Stage *m_stage;
    ClipPage *m_page;
    PNBaseView *m_statusBar;
    KXLabel *m_notice;
    int m_clipId = 0;
    bool m_listWanted = true;
};
