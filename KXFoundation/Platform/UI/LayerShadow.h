// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointer>
#include <QtGui/QImage>
#include <QtWidgets/QWidget>

namespace kx {

class Layer;

/// The shadow that a layer casts outside of its view: a widget right behind the view, as a painting ends at its
/// widget's edge. It takes no events and no place in layouts and splitters, and follows the view around. Blurred only
/// when what casts it has changed.
class LayerShadow : public QWidget {
    Q_OBJECT

public:
    /// The view must have a parent.
    explicit LayerShadow(QWidget &view);

    /// Shows the shadow of `caster`, the whole picture of the view, premultiplied, at an opacity. May be called while
    /// the view paints.
    void cast(const QImage &caster, const Layer &layer, double alpha);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void enter(QWidget *parent);
    void follow();

    QPointer<QWidget> m_view;
    QImage m_caster;
    QImage m_shadow;
    QRect m_place; // relative to the view
    QPointF m_corner; // of the picture, in this widget
    double m_radius = 0;
    QColor m_color;
};

/// A picture of `color` as opaque as `image` is, blurred by a Gaussian of the standard deviation `radius`, in device
/// pixels, approximated by three box filters. It is larger by blurMargin() on every side.
[[nodiscard]] QImage blurredShadow(const QImage &image, const QColor &color, double radius);
[[nodiscard]] int blurMargin(double radius);

} // namespace kx
