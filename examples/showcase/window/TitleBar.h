// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/UIBase/View/PNBaseView.h>

class KXLabel;
class PNAlphBtn;
class PNStandardWindowButtonView;

/// The window's own title bar: its buttons, its title, and a button for the list of clips.
class TitleBar : public PNBaseView {
    Q_OBJECT
public:
    static constexpr int barHeight = 40;
    static constexpr int listButtonWidth = 48; ///< At the right end, where a press does not move the window.

    explicit TitleBar(QWidget *parent = nullptr);

    void setTitle(const QString &title);
    [[nodiscard]] PNStandardWindowButtonView &windowButtons() const { return *m_windowButtons; }
    [[nodiscard]] PNAlphBtn &listButton() const { return *m_list; }

Q_SIGNALS:
    void listToggled();

private:
    PNStandardWindowButtonView *m_windowButtons;
    KXLabel *m_title;
    PNAlphBtn *m_list;
};
