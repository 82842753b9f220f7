// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Color.h>

#include <QtGui/QRgba64>

#include <algorithm>
#include <cmath>

namespace kx {

namespace {

Rgba components(const QColor &color)
{
    if (color.spec() == QColor::ExtendedRgb)
        return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
    // The floats of redF() and its like are coarser than the 16 bits divided here.
    const QRgba64 bits = color.rgba64();
    constexpr double full = 65535;
    return {bits.red() / full, bits.green() / full, bits.blue() / full, bits.alpha() / full};
}

float forPainting(double component)
{
    return std::isnan(component) ? 0.0F : float(std::clamp(component, 0.0, 1.0));
}

} // namespace

Color::Color(const QColor &color)
    : Color(color.isValid() ? Color(components(color)) : Color())
{
}

Color::Color(Qt::GlobalColor color)
    : Color(QColor(color))
{
}

Color Color::rgba(double red, double green, double blue, double alpha)
{
    return Color(Rgba{red, green, blue, alpha});
}

Color Color::white(double white, double alpha)
{
    return rgba(white, white, white, alpha);
}

Color Color::clear()
{
    return white(0, 0);
}

double Color::redComponent() const
{
    return *this ? (*this)->red : 0;
}

double Color::greenComponent() const
{
    return *this ? (*this)->green : 0;
}

double Color::blueComponent() const
{
    return *this ? (*this)->blue : 0;
}

double Color::alphaComponent() const
{
    return *this ? (*this)->alpha : 0;
}

Color Color::withAlphaComponent(double alpha) const
{
    return *this ? rgba((*this)->red, (*this)->green, (*this)->blue, alpha) : Color();
}

QColor Color::toQColor() const
{
    if (!*this)
        return {};
    const Rgba &color = **this;
    return QColor::fromRgbF(
        forPainting(color.red), forPainting(color.green), forPainting(color.blue), forPainting(color.alpha));
}

} // namespace kx
