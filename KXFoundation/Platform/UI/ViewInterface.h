// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Autoresizing.h>

#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QRectF>

class QEvent;
class QWidget;

namespace kx {

/// What a view adds to the widget that it is: coordinates with y growing upwards, subviews and hit testing.
///
/// Lengths are logical pixels in double precision; the widget's whole-number geometry is the truth behind them. A view
/// placed by a QLayout takes what the layout gives. Main thread only.
class KX_UI_EXPORT ViewInterface {
public:
    virtual ~ViewInterface();
    Q_DISABLE_COPY_MOVE(ViewInterface)

    /// The widget that this view is. Never null.
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    /// The view that the widget is, or null for a plain widget.
    [[nodiscard]] static ViewInterface *of(QWidget *widget);

    /// The place in the superview (or in a plain parent widget), from its bottom left. Without either there is nothing
    /// to count upwards from: the origin is then the widget's position as Qt has it. Empty for a new view.
    [[nodiscard]] QRectF frame() const;
    /// Moves each edge to the nearest whole pixel.
    void setFrame(const QRectF &frame);
    /// The view's own area: (0, 0) and its size.
    [[nodiscard]] QRectF bounds() const;

    [[nodiscard]] AutoresizingMask autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(AutoresizingMask mask) { m_autoresizingMask = mask; }

    /// The view that this one is a subview of; null in a plain widget.
    [[nodiscard]] ViewInterface *superview() const;
    /// From the lowest to the topmost.
    [[nodiscard]] QList<ViewInterface *> subviews() const;
    /// Puts a view on top, with the frame that it has, and makes this view its owner. It is shown unless it was
    /// explicitly hidden.
    void addSubview(ViewInterface &view);
    /// Takes the view off its parent, with the frame that it has; the caller becomes its owner. Does nothing without a
    /// parent.
    void removeFromSuperview();

    /// Whether the view was hidden on purpose. Qt's isHidden() is also true for a view that nobody has shown yet.
    [[nodiscard]] bool isExplicitlyHidden() const;

    /// The topmost view at `point`, this one or one below it, or null when the point meets none. The point counts in
    /// the superview's coordinates. Hidden views are not met. Override it to give the view another shape.
    [[nodiscard]] virtual ViewInterface *hitTest(const QPointF &point);

protected:
    explicit ViewInterface(QWidget &widget);

    /// To be called after the base class has handled an event.
    void viewEvent(const QEvent &event);

private:
    void settleSubviews();

    QWidget *const m_widget;
    AutoresizingMask m_autoresizingMask = Autoresizing::None;
    QSizeF m_settledSize; // the size that the subviews are placed for
};

} // namespace kx
