// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageView.h>

#include <KXFoundation/Platform/UI/ButtonContent.h>

#include <QtGui/QPaintEvent>

namespace kx {

ImageView::ImageView(QWidget *parent)
    : ViewOn<QWidget>(parent)
{
}

ImageView::~ImageView() = default;

void ImageView::setImage(const Image &image)
{
    if (m_image == image)
        return;
    m_image = image;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

QSizeF ImageView::intrinsicContentSize() const
{
    return m_image ? m_image.size() : QSizeF(-1, -1);
}

void ImageView::drawRect(QPainter &painter, const QRectF &)
{
    m_image.draw(painter, onWholePixel(fittedDown(m_image.size(), QRectF(rect())), painter));
}

void ImageView::paintEvent(QPaintEvent *event)
{
    paint(*event);
}

} // namespace kx
