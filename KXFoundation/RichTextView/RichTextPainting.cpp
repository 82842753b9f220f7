// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/RichTextPainting.h>

#include <KXFoundation/Platform/UI/KeyboardFocus.h>
#include <KXFoundation/Platform/UI/PaintableRect.h>
#include <KXFoundation/RichTextView/RichTextBody.h>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QWidget>

#include <utility>

void clipToRoundCorner(QPainter &painter, const QSizeF &size)
{
    const double radius = size.height() * 0.5;
    const double right = size.width();
    if (!(radius > 0 && right > 0))
        return;
    // 1. the rounded top left, 2. the top edge, 3. the half circle at the right, 4. the bottom edge to a square corner,
    // 5. back up along the left edge. Qt's angles grow counter-clockwise as one sees them.
    QPainterPath outline(QPointF(0, radius));
    outline.arcTo(QRectF(0, 0, 2 * radius, 2 * radius), 180, -90);
    outline.lineTo(right - radius, 0);
    outline.arcTo(QRectF(right - 2 * radius, 0, 2 * radius, 2 * radius), 90, -180);
    outline.lineTo(0, size.height());
    outline.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(outline, Qt::IntersectClip);
}

void drawBody(QPainter &painter, RichTextBody &body, const QColor &selectionColor, const QRectF &dirtyRect)
{
    kx::LayoutManager &layoutManager = body.layoutManager;
    // Deliberate: at the origin, not where the text starts.
    for (const _KXAttributedItem &item : std::as_const(body.items)) {
        const auto backgrounds = item.bgRangArr().value_or(QList<_KXOtherAttributedItem>());
        for (const _KXOtherAttributedItem &background : backgrounds)
            layoutManager.drawBackgroundForGlyphRange(painter, background.bgColorRange(), QPointF(0, 0), dirtyRect);
    }
    for (const QRectF &rect : body.rectsOf(body.selection)) {
        if (kx::pixelsAround(rect))
            painter.fillRect(rect, selectionColor);
    }
    const kx::TextRange glyphs = layoutManager.glyphRange();
    if (glyphs.location == kx::notFound)
        return;
    layoutManager.drawGlyphsForGlyphRange(painter, glyphs, QPointF(body.insets.left(), body.insets.top()), dirtyRect);
}

void drawFocusRings(QPainter &painter, const QWidget &widget, const QList<QRectF> &rects)
{
    // Around the letters rather than on them, and around those of the line alone.
    constexpr QMargins ring(3, 1, 3, 1);
    for (const QRectF &rect : rects) {
        const std::optional<QRect> line = kx::pixelsAround(rect);
        const QRect area = line ? line->marginsAdded(ring) & widget.rect() : QRect();
        if (!area.isEmpty())
            kx::drawFocusRing(painter, widget.palette(), QRectF(area));
    }
}
