// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/StandardWindowButtonGroup.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QPointer>
#include <QtCore/QSizeF>

#include <memory>

namespace kx {
struct Notification;
}
class PNBaseWindow;

/// The close, minimise and zoom buttons of a window, in a row wherever the application puts this view, for example into
/// a title area of its own. In a PNBaseWindow it makes itself known as that window's customStandardSuperView, so that
/// the window never takes a press on it for a move, and gives way to the window's systemStandardSuperView in full
/// screen: see switchFullScreenMode().
///
/// All three buttons show their symbols while the pointer is over the group. Main thread only. See
/// docs/window-buttons.md.
class KX_UI_EXPORT PNStandardWindowButtonView : public kx::View, public kx::StandardWindowButtonGroup {
    Q_OBJECT
    Q_PROPERTY(bool mouseInside READ isMouseInside WRITE setMouseInside NOTIFY mouseInsideChanged DESIGNABLE false)
    Q_PROPERTY(QSizeF contentSize READ contentSize WRITE setContentSize NOTIFY contentSizeChanged)

public:
    /// The buttons are made before the view gets its parent: it hears of every window and of the application.
    explicit PNStandardWindowButtonView(QWidget *parent = nullptr);
    ~PNStandardWindowButtonView() override;
    [[nodiscard]] static std::unique_ptr<PNStandardWindowButtonView> standardWindowButtonView();

    /// Called by the constructor. Makes the buttons, in place of those there are, and lays them out in the view's
    /// middle height from its left edge, 6 apart, in right-to-left layouts too. While contentSize is zero, that and the
    /// view's frame become their size. From then on the view hears of its window alone if it is in one (not of the
    /// application either, which is no window), and of every sender otherwise; of resized windows always all.
    void prepareStandardButtons();

    /// Borrowed; null when somebody deleted it.
    [[nodiscard]] kx::StandardWindowButton *closeBtn() const { return m_closeBtn; }
    [[nodiscard]] kx::StandardWindowButton *miniBtn() const { return m_miniBtn; }
    [[nodiscard]] kx::StandardWindowButton *fullScreenBtn() const { return m_fullScreenBtn; }

    /// Whether the pointer is over the group. Also set to false when the application or the window gives up the
    /// keyboard or gets it, and when any window is resized. Setting it repaints nothing.
    [[nodiscard]] bool isMouseInside() const { return m_mouseInside; }
    void setMouseInside(bool mouseInside);
    /// The buttons' answer: isMouseInside().
    [[nodiscard]] bool _mouseInGroup(const kx::StandardWindowButton *button) const override;
    /// Repaints every subview.
    void setNeedsDisplayForStandardWindowButtons();

    /// The size of the row, which is also the view's intrinsicContentSize(): 54 x 16.
    [[nodiscard]] QSizeF contentSize() const { return m_contentSize; }
    void setContentSize(const QSizeF &contentSize);
    [[nodiscard]] QSizeF intrinsicContentSize() const override { return m_contentSize; }

    /// The window that this view is registered with, held weakly: the PNBaseWindow that it was last moved to, none once
    /// it was moved elsewhere.
    [[nodiscard]] PNBaseWindow *ownerWin() const;
    void viewWillMoveToWindow(QWidget *window) override;

    /// Shows this view and hides the window's systemStandardSuperView when the window leaves full screen and its
    /// useCustomStandardView is set; in every other case the other way round. Does nothing unless `window` is this
    /// view's window and a PNBaseWindow.
    void switchFullScreenMode(bool entering, QWidget *window);

    // What the default notification centre calls.

    void applicationWillBecomeActive(const kx::Notification &notification);
    void applicationDidResignActive(const kx::Notification &notification);
    void windowActiveChanged(const kx::Notification &notification);
    void windowSizeChanged(const kx::Notification &notification);
    void willEnterFullScreenNotification(const kx::Notification &notification);
    /// Deliberate: called when the window did leave full screen, whatever its name says.
    void willExistFullScreenNotification(const kx::Notification &notification);

    void updateTrackingAreas() override;
    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;

Q_SIGNALS:
    void mouseInsideChanged(bool mouseInside);
    void contentSizeChanged(const QSizeF &contentSize);

private:
    kx::StandardWindowButton *addButton(kx::WindowButton kind);
    void bindButtons(double width);
    void observe();
    void setHovered(bool hovered);

    QPointer<kx::StandardWindowButton> m_closeBtn;
    QPointer<kx::StandardWindowButton> m_miniBtn;
    QPointer<kx::StandardWindowButton> m_fullScreenBtn;
    QPointer<QWidget> m_ownerWin;
    QSizeF m_contentSize{0, 0};
    bool m_mouseInside = false;
};
