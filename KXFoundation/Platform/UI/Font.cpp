// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Font.h>

#include <QtCore/QHash>
#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace kx {

namespace {

using Face = std::optional<QFont>;

double pixelsPerQtPoint()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    constexpr double pointsPerInch = 72;
    return (screen ? screen->logicalDotsPerInchY() : 96) / pointsPerInch;
}

bool isSize(double size)
{
    return std::isfinite(size) && size > 0;
}

void setSize(QFont &font, double size)
{
    // Qt keeps whole numbers of pixels only. The largest size is beyond every screen and within what Qt can lay out.
    constexpr double largest = 10000;
    const double pixels = std::min(size, largest);
    if (pixels == std::floor(pixels))
        font.setPixelSize(int(pixels));
    else
        font.setPointSizeF(pixels / pixelsPerQtPoint());
}

bool sameWithoutSpaces(const QString &text, QStringView other)
{
    return QString(text).remove(u' ').compare(other, Qt::CaseInsensitive) == 0;
}

// "Family", or "Family-Style" with the spaces left out of both.
Face searchFace(const QString &name)
{
    const QStringList families = QFontDatabase::families();
    for (const QString &family : families) {
        if (family.compare(name, Qt::CaseInsensitive) == 0)
            return QFont(family);
    }
    const qsizetype hyphen = name.lastIndexOf(u'-');
    if (hyphen < 0)
        return {};
    const QStringView wantedFamily = QStringView(name).first(hyphen);
    const QStringView wantedStyle = QStringView(name).sliced(hyphen + 1);
    for (const QString &family : families) {
        if (!sameWithoutSpaces(family, wantedFamily))
            continue;
        const QStringList styles = QFontDatabase::styles(family);
        for (const QString &style : styles) {
            if (sameWithoutSpaces(style, wantedStyle))
                return QFontDatabase::font(family, style, 12);
        }
    }
    return {};
}

// Searching walks all families, and controls ask again and again for a face that is not there.
Face installedFace(const QString &name)
{
    static QHash<QString, Face> known;
    static QMetaObject::Connection forgetting;
    if (!forgetting) { // at first, and for a new application object
        known.clear();
        forgetting = QObject::connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, qGuiApp, [] { known.clear(); });
    }
    const auto found = known.constFind(name);
    return found != known.cend() ? *found : *known.insert(name, searchFace(name));
}

} // namespace

Font::Font(QFont font)
    : Ref(std::move(font))
{
}

Font Font::named(const QString &name, double size)
{
    Face face = installedFace(name);
    const QStringList substitutes = face ? QStringList() : QFont::substitutes(name);
    for (auto substitute = substitutes.begin(); !face && substitute != substitutes.end(); ++substitute)
        face = installedFace(*substitute);
    return face ? Font(*face).withSize(size) : Font();
}

double Font::pointSize() const
{
    if (!*this)
        return 0;
    const QFont &font = **this;
    return font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF() * pixelsPerQtPoint();
}

Font Font::withSize(double size) const
{
    if (!*this || !isSize(size))
        return {};
    QFont font = **this;
    setSize(font, size);
    return font;
}

QFont Font::toQFont() const
{
    return *this ? **this : QFont();
}

} // namespace kx
