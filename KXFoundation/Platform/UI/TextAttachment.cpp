// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextAttachment.h>

#include <KXFoundation/Platform/UI/TextLayout/Finite.h>

#include <algorithm>
#include <utility>

namespace kx {

namespace {

double length(double value)
{
    return std::max(coordinate(value), 0.0);
}

} // namespace

TextAttachment::TextAttachment(Image image)
    : m_image(std::move(image))
{
}

void TextAttachment::wrapImage()
{
    if (m_image != m_wrapper || !m_wrapper)
        m_wrapped = m_image;
    m_wrapper = Image::imageWithSize(m_image.size(), true, [source = m_wrapped](QPainter &painter, const QRectF &rect) {
        source.draw(painter, rect, QRectF(), CompositingOperation::SourceOver, 1);
        return true;
    });
    m_image = m_wrapper;
}

QRectF TextAttachment::place() const
{
    const QRectF place = m_bounds.isNull() ? QRectF(QPointF(0, 0), m_image.size()) : m_bounds;
    return {coordinate(place.x()), coordinate(place.y()), length(place.width()), length(place.height())};
}

} // namespace kx
