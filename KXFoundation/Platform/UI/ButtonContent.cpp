// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ButtonContent.h>

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace kx {

namespace {

constexpr double gap = 4; // between the image and the title

} // namespace

QSizeF ButtonContent::titleSize()
{
    m_container.setWidth(qInf());
    const QSizeF used = m_layout.usedRect().size();
    return {std::ceil(used.width()), used.height()};
}

QSizeF ButtonContent::naturalSize()
{
    const QSizeF image = m_image.size();
    if (!hasTitle())
        return image;
    const QSizeF title = titleSize();
    const double imageWidth = m_image ? image.width() + gap : 0;
    return {imageWidth + title.width(), std::max(image.height(), title.height())};
}

void ButtonContent::draw(QPainter &painter, const QRectF &area)
{
    if (!hasTitle()) {
        m_image.draw(painter, onWholePixel(fittedDown(m_image.size(), area), painter));
        return;
    }
    QRectF titleArea = area;
    if (m_image) {
        const QSizeF image = fittedDown(m_image.size(), area).size();
        const double width = std::min(area.width(), image.width() + gap + titleSize().width());
        const QRectF group(area.center().x() - width / 2, area.y(), width, area.height());
        const QRectF place(QPointF(group.x(), area.center().y() - image.height() / 2), image);
        m_image.draw(painter, onWholePixel(place, painter));
        titleArea = group.adjusted(image.width() + gap, 0, 0, 0);
    }
    if (!(titleArea.width() > 0))
        return;
    m_container.setWidth(titleArea.width());
    const double top = titleArea.center().y() - m_layout.usedRect().height() / 2;
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    m_layout.drawGlyphsForGlyphRange(painter, m_layout.glyphRange(), {titleArea.x(), top});
    painter.restore();
}

bool takeTheSameRoom(const Image &a, const Image &b)
{
    return bool(a) == bool(b) && a.size() == b.size();
}

bool takeTheSameRoom(const AttributedString &a, const AttributedString &b)
{
    using Run = AttributedString::Run;
    const auto differInColoursAlone = [](const Run &first, const Run &second) {
        const TextAttributes &x = first.attributes;
        const TextAttributes &y = second.attributes;
        return first.start == second.start && x.font.sameValue(y.font) && !x.attachment && !y.attachment
            && x.paragraphStyle == y.paragraphStyle && x.baselineOffset == y.baselineOffset;
    };
    return a.string() == b.string()
        && std::equal(a.runs().begin(), a.runs().end(), b.runs().begin(), b.runs().end(), differInColoursAlone);
}

QRectF fittedDown(const QSizeF &size, const QRectF &area)
{
    if (size.isEmpty() || area.isEmpty())
        return {};
    const double scale = std::min({1.0, area.width() / size.width(), area.height() / size.height()});
    const QSizeF fitted = size * scale;
    return {area.center() - QPointF(fitted.width() / 2, fitted.height() / 2), fitted};
}

QRectF onWholePixel(const QRectF &rect, const QPainter &painter)
{
    const QTransform transform = painter.deviceTransform();
    if (transform.type() > QTransform::TxScale || !transform.isInvertible())
        return rect;
    const QPointF corner = transform.map(rect.topLeft());
    const QPointF pixel(std::floor(corner.x() + 0.5), std::floor(corner.y() + 0.5));
    return rect.translated(transform.inverted().map(pixel) - rect.topLeft());
}

} // namespace kx
