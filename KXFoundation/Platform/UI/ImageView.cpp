// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageView.h>

#include <KXFoundation/Platform/UI/AccessibleImage.h>
#include <KXFoundation/Platform/UI/ButtonContent.h>

#include <QtGui/QPaintEvent>

namespace kx {

ImageView::ImageView(QWidget *parent)
    : ViewOn<QWidget>(parent)
{
    AccessibleImage::install();
}

ImageView::~ImageView() = default;

void ImageView::setImage(const Image &image)
{
    if (m_image == image)
        return;
    const bool takesOtherRoom = !takeTheSameRoom(m_image, image);
    m_image = image;
    if (takesOtherRoom)
        invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

QRectF ImageView::imageRect() const
{
    return fittedDown(m_image.size(), QRectF(rect()));
}

bool ImageView::isPressable() const
{
    return false;
}

void ImageView::press() { }

QSizeF ImageView::intrinsicContentSize() const
{
    return m_image ? m_image.size() : QSizeF(-1, -1);
}

void ImageView::drawRect(QPainter &painter, const QRectF &)
{
    m_image.draw(painter, onWholePixel(imageRect(), painter));
}

void ImageView::paintEvent(QPaintEvent *event)
{
    paint(*event);
}

} // namespace kx
