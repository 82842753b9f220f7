// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/LayoutManager.h>
#include <KXFoundation/Platform/UI/MutableAttributedString.h>
#include <KXFoundation/Platform/UI/TextContainer.h>
#include <KXFoundation/Platform/UI/TextStorage.h>

#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtGui/QPainter>

/// A text with the objects that lay it out. Its default font has 20 pixels.
struct LaidOutText {
    explicit LaidOutText(const kx::AttributedString &text)
    {
        storage.setAttributedString(text);
        manager.setDefaultFont(font());
    }
    explicit LaidOutText(const QString &text)
        : LaidOutText(kx::AttributedString(text))
    {
    }

    static QFont font(int pixels = 20)
    {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(pixels);
        return font;
    }

    QRectF rectOf(quint64 location, quint64 length) { return manager.boundingRectForGlyphRange({location, length}); }

    /// Black on white where the text has no colours.
    QImage drawn(const QSize &size, double scale = 1, const QPointF &at = {}, const QRectF &dirty = {})
    {
        return drawnRange({0, storage.attributedString().length()}, size, scale, at, dirty);
    }
    QImage drawnRange(const kx::TextRange &range, const QSize &size, double scale = 1, const QPointF &at = {},
        const QRectF &dirty = {})
    {
        QImage image = blank(size, scale);
        QPainter painter(&image);
        manager.drawBackgroundForGlyphRange(painter, range, at, dirty);
        manager.drawGlyphsForGlyphRange(painter, range, at, dirty);
        return image;
    }
    static QImage blank(const QSize &size, double scale = 1)
    {
        QImage image((QSizeF(size) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        return image;
    }

    kx::TextStorage storage;
    kx::TextContainer container;
    kx::LayoutManager manager{storage, container};
};
