// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Color.h>

#include <QtCore/QSizeF>

#include <functional>

class QPainter;

namespace kx {

/// What is painted behind and around a view's own drawing: background, border, rounded corners and a shadow.
///
/// Lengths are logical pixels. Colours are absent at first, everything else is 0. A change asks for a repaint of the
/// view, an equal value does not, so that ViewInterface::updateLayer() may set everything each time. The layer covers
/// the view's own drawing, not its subviews. Main thread only.
class KX_UI_EXPORT Layer {
public:
    explicit Layer(std::function<void()> changed);

    /// Fills the layer behind the drawing, blending over what is below; absent for none.
    [[nodiscard]] Color backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const Color &color);

    /// Rounds the background and the border, and the drawing too with masksToBounds(). Radii beyond half a side count
    /// as half of it; what is not above 0 leaves the corners square.
    [[nodiscard]] double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

    /// A frame within the layer's edge, above the drawing. Absent colours and widths that are not above 0 paint none.
    [[nodiscard]] Color borderColor() const { return m_borderColor; }
    void setBorderColor(const Color &color);
    [[nodiscard]] double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);

    /// Whether the drawing is cut at the rounded corners; there is no shadow then.
    [[nodiscard]] bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);

    /// The shadow of what is painted, the background as well as the drawing, outside of the view too, but for a view
    /// that is a window. The offset's height counts upwards, what is no number as 0; the radius is the standard
    /// deviation of the blur. Absent colours and opacities that are not above 0 cast none.
    [[nodiscard]] Color shadowColor() const { return m_shadowColor; }
    void setShadowColor(const Color &color);
    [[nodiscard]] QSizeF shadowOffset() const { return m_shadowOffset; }
    void setShadowOffset(const QSizeF &offset);
    [[nodiscard]] double shadowRadius() const { return m_shadowRadius; }
    void setShadowRadius(double radius);
    [[nodiscard]] double shadowOpacity() const { return m_shadowOpacity; }
    void setShadowOpacity(double opacity);
    [[nodiscard]] bool castsShadow() const;

    /// Paints background, what `drawing` paints, and border into an area of `size` whose top left is the painter's
    /// origin.
    void paint(QPainter &painter, const QSizeF &size, const std::function<void()> &drawing) const;

private:
    template <class Value> void store(Value &field, const Value &value);

    std::function<void()> m_changed;
    Color m_backgroundColor;
    Color m_borderColor;
    Color m_shadowColor;
    QSizeF m_shadowOffset{0, 0};
    double m_cornerRadius = 0;
    double m_borderWidth = 0;
    double m_shadowRadius = 0;
    double m_shadowOpacity = 0;
    bool m_masksToBounds = false;
};

} // namespace kx
