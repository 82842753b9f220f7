// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Ref.h>

#include <QtCore/QString>
#include <QtGui/QFont>

namespace kx {

/// A font with identity: see Ref. Sizes are in points, and a point is a logical pixel of Qt's (not 1/72 inch), as for
/// every other length here. Fractions are kept, though Qt draws hinted fonts with whole numbers of pixels.
class KX_UI_EXPORT Font : public Ref<QFont> {
public:
    using Ref::Ref;
    Font(QFont font); // NOLINT(google-explicit-constructor): Qt's fonts may be given wherever a Font is wanted

    /// A face by its name: that of a family ("DejaVu Sans"), or of one face as font files have it ("DejaVuSans-Bold").
    /// Where it is not installed, the first installed one of QFont::substitutes(name), by which the host chooses a
    /// replacement, or else none. None, too, for a size that is not positive and finite. Main thread only.
    [[nodiscard]] static Font named(const QString &name, double size);

    /// 0 for none.
    [[nodiscard]] double pointSize() const;
    /// A new font of the same face; none for none, or for a size that is not positive and finite.
    [[nodiscard]] Font withSize(double size) const;

    /// None gives the application's font.
    [[nodiscard]] QFont toQFont() const;
};

} // namespace kx
