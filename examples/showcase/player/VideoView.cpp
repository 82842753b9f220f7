// SPDX-License-Identifier: MIT
#include "VideoView.h"

#include <QtGui/QPainter>
#include <QtMultimedia/QVideoFrame>

VideoView::VideoView(QWidget *parent)
    : PNBaseView(parent)
{
    connect(&m_sink, &QVideoSink::videoFrameChanged, this, [this](const QVideoFrame &frame) {
        if (!frame.isValid())
            return;
        m_frame = frame.toImage();
        setNeedsDisplay();
    });
}

void VideoView::drawRect(QPainter &painter, const QRectF & /*dirtyRect*/)
{
    const QRectF area = rect();
    painter.fillRect(area, Qt::black);
    if (m_frame.isNull())
        return;
    QRectF picture(QPointF(), QSizeF(m_frame.size()).scaled(area.size(), Qt::KeepAspectRatio));
    picture.moveCenter(area.center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(picture, m_frame);
}
