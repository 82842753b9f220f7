// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPoint>
#include <QtCore/Qt>

#include <functional>

class QWidget;

/// A hand on the mouse and the keyboard of one window. Every event takes the way through Qt's window system interface,
/// as a device's would, and from the event loop, so that a window may wait for the next one in the midst of a drag.
///
/// Positions are logical pixels from the top left of a widget in the window.
class Hand {
public:
    explicit Hand(QWidget &window);

    void moveTo(const QWidget &widget, const QPoint &position);
    void click(const QWidget &widget, const QPoint &position);
    /// In its middle.
    void click(const QWidget &widget);
    void drag(const QWidget &widget, const QPoint &from, const QPoint &to);
    void pressKey(Qt::Key key);

private:
    /// Does these one after the other, each from the event loop, and returns after the last one.
    void perform(const QList<std::function<void()>> &acts);
    [[nodiscard]] QPoint inWindow(const QWidget &widget, const QPoint &position) const;

    QWidget &m_window;
};
