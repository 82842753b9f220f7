// SPDX-License-Identifier: MIT
#include "HoverPreview.h"

#include "../Look.h"
#include "../clips/PreviewSheet.h"

#include <KXFoundation/Platform/UI/ImageView.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/RichTextView/KXLabel.h>

#include <algorithm>

namespace {

constexpr double border = 4;
constexpr double line = 18; // of the time

} // namespace

HoverPreview::HoverPreview(QWidget *parent)
    : PNBaseView(parent)
    , m_frame(new kx::ImageView)
    , m_time(new KXLabel)
{
    hide();
    setUserInteraction(false); // the pointer stays with the bar
    setBackgroundColor(look::overlay);
    layer()->setCornerRadius(6);
    m_frame->setFrame(QRectF(QPointF(border, border + line), PreviewSheet::frameSize));
    addSubview(*m_frame);
    m_time->setTextColor(look::text);
    m_time->setFontSize(12);
    addSubview(*m_time);
}

void HoverPreview::showAt(double x, double y, const kx::Image &frame, double seconds)
{
    m_frame->setImage(frame);
    m_frame->setVisible(frame != nullptr);
    m_time->setText(look::time(seconds));
    const QSizeF timeSize = m_time->fittingSize();
    const QSizeF inner = frame ? PreviewSheet::frameSize : QSizeF(timeSize.width() + 2 * border, 0);
    const QSizeF size(inner.width() + 2 * border, inner.height() + line + (frame ? 2 : 1) * border);
    m_time->setFrame(QRectF(QPointF((size.width() - timeSize.width()) / 2, border), timeSize));
    const double room = superview() ? superview()->bounds().width() : size.width();
    setFrame(QRectF(QPointF(std::clamp(x - size.width() / 2, 0.0, std::max(0.0, room - size.width())), y), size));
    show();
}

bool HoverPreview::hasFrame() const
{
    return m_frame->image() != nullptr;
}

QString HoverPreview::time() const
{
    return m_time->text();
}
