// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointer>
#include <QtGui/QCursor>
#include <QtGui/QWindow>
#include <QtWidgets/QWidget>

#include <optional>

namespace kx {

/// The cursor that was set over the widget beneath the pointer. Qt keeps cursors for widgets and sets that of the
/// widget whenever the pointer enters one, so what is to show instead is set again after each event.
class HoverCursor {
public:
    /// To be called for the events with which Qt tells widgets that the pointer comes and goes.
    void widgetEntered(QWidget &widget) { m_hovered = &widget; }
    void widgetLeft(QWidget &widget);
    /// The widget that the pointer is over, or null.
    [[nodiscard]] QWidget *hovered() const { return m_hovered; }

    void set(const QCursor &cursor);
    void reset();
    [[nodiscard]] QCursor current() const;

    /// Drops the cursor when the pointer has gone on to another widget since the last call. What is set before this
    /// call belongs to the widget that was left, and does not show any more.
    void settle();
    /// Shows the cursor again if Qt has set another one.
    void renew();

private:
    [[nodiscard]] QWindow *window() const;

    QPointer<QWidget> m_hovered;
    QPointer<QWidget> m_settled; // the widget over which the cursor was set
    std::optional<QCursor> m_cursor;
    QPointer<QWindow> m_window; // that shows it
};

} // namespace kx
