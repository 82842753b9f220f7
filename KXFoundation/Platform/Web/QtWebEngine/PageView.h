// SPDX-License-Identifier: MIT
#pragma once

#include <QtWebEngineWidgets/QWebEngineView>

#include <memory>

namespace kx {

/// The widget that shows a page.
class PageView final : public QWebEngineView {
public:
    PageView();
    ~PageView() override;

    /// Keeps moves, enters, leaves and left presses of the mouse from the page.
    void setIgnoresMouseEvents(bool ignores) { m_ignoresMouseEvents = ignores; }

    /// Shows the page on the whole screen, in a window of its own, or brings it back into this view.
    void setFullScreen(bool on);

protected:
    void childEvent(QChildEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_ignoresMouseEvents = false;
    std::unique_ptr<QWebEngineView> m_fullScreenView; // shows the page while it exists
};

} // namespace kx
