// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QVarLengthArray>
#include <QtWidgets/QWidget>

#include <vector>

namespace kx {

class ViewInterface;

/// A view that the pointer is over.
struct ViewSpot {
    ViewInterface *view;
    QPointF point; ///< Of the pointer, in the view's own coordinates.
    qsizetype superview = -1; ///< Its index in the list; -1 for a view in a plain widget.
    qsizetype topSubview = -1; ///< The topmost of its subviews in the list; -1 without one.
};

/// Where the visible views of a window are. Remembered until something moves, so that a move of the pointer costs no
/// walk through the widgets.
class ViewMap {
public:
    /// From the outermost and lowest to the innermost and topmost.
    using Spots = QVarLengthArray<ViewSpot, 8>;

    /// To be called when a widget was moved, resized, shown, hidden, raised or given another parent, and when a view is
    /// destroyed.
    void invalidate() { m_valid = false; }

    /// The views that have the point in their visible part. `position` is the pointer's, from the top left of the
    /// window. The list is valid until the next call.
    [[nodiscard]] const Spots &viewsAt(QWidget &window, const QPointF &position);

private:
    struct Place {
        ViewInterface *view;
        QRect visible; // in the window, y growing upwards: its top is the lowest row
        QPointF origin; // the view's bottom left
        qsizetype superview; // its index here, or -1
    };

    void findViews(QWidget &window, const QPointF &position);
    void fill(QWidget &window);
    void add(QWidget &widget, const QPoint &topLeft, const QRect &clip, qsizetype superview);

    QPointer<QWidget> m_window;
    QSize m_size; // of the window
    bool m_valid = false;
    QPointF m_position; // asked for last
    Spots m_spots; // there
    std::vector<Place> m_places;
    std::vector<std::vector<qsizetype>> m_bands; // for each stripe of rows the places in it, in their order
};

} // namespace kx
