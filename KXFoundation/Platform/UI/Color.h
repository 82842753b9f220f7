// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Ref.h>

#include <QtGui/QColor>

namespace kx {

/// The components of a colour in sRGB, not premultiplied, from 0 to 1. They are kept as they were given, unclamped.
struct Rgba {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 0;

    bool operator==(const Rgba &other) const = default;
};

/// A colour with identity: see Ref. Unlike QColor it keeps its components in double precision.
class KX_UI_EXPORT Color : public Ref<Rgba> {
public:
    using Ref::Ref;
    // NOLINTBEGIN(google-explicit-constructor): Qt's colours may be given wherever a Color is wanted
    /// An invalid QColor gives none.
    Color(const QColor &color);
    Color(Qt::GlobalColor color);
    // NOLINTEND(google-explicit-constructor)

    [[nodiscard]] static Color rgba(double red, double green, double blue, double alpha = 1);
    [[nodiscard]] static Color white(double white, double alpha = 1);
    /// Black with alpha 0. A new object at each call, as from the other factories.
    [[nodiscard]] static Color clear();

    // The components of none are 0.
    [[nodiscard]] double redComponent() const;
    [[nodiscard]] double greenComponent() const;
    [[nodiscard]] double blueComponent() const;
    [[nodiscard]] double alphaComponent() const;
    /// A new colour with this alpha; none stays none.
    [[nodiscard]] Color withAlphaComponent(double alpha) const;

    /// For painting: components are clamped to 0 ... 1, and what is no number counts as 0. None gives an invalid
    /// QColor.
    [[nodiscard]] QColor toQColor() const;
};

} // namespace kx
