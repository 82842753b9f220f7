// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/AttributedString.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/LayoutManager.h>
#include <KXFoundation/Platform/UI/TextContainer.h>
#include <KXFoundation/Platform/UI/TextStorage.h>

#include <QtCore/QRectF>
#include <QtGui/QFont>

class QPainter;

namespace kx {

/// What a button shows: an image and, right of it, a title, centred together. Coordinates are the painter's. Titles are
/// laid out once, until they change.
class ButtonContent {
public:
    void setImage(const Image &image) { m_image = image; }
    /// Every paragraph has a style.
    void setTitle(const AttributedString &title) { m_storage.setAttributedString(title); }
    /// For characters without one.
    void setDefaultFont(const QFont &font) { m_layout.setDefaultFont(font); }

    /// The image at its own size and the title in one line for each paragraph.
    [[nodiscard]] QSizeF naturalSize();
    /// Characters without a colour get the painter's pen.
    void draw(QPainter &painter, const QRectF &area);

private:
    [[nodiscard]] bool hasTitle() const { return m_storage.attributedString().length() > 0; }
    [[nodiscard]] QSizeF titleSize();

    Image m_image;
    TextStorage m_storage;
    TextContainer m_container;
    LayoutManager m_layout{m_storage, m_container};
};

/// Whether one may stand for the other without a new layout. Titles that differ in colours alone do; those with
/// attachments do not, as these may have changed meanwhile.
[[nodiscard]] bool takeTheSameRoom(const Image &a, const Image &b);
[[nodiscard]] bool takeTheSameRoom(const AttributedString &a, const AttributedString &b);

/// The place of something of this size in the middle of an area: scaled down in proportion to fit, never up.
[[nodiscard]] QRectF fittedDown(const QSizeF &size, const QRectF &area);
/// The same place with its top left corner on a whole pixel of the painter's device, half a pixel away at most: an
/// image between two pixels would be blurred.
[[nodiscard]] QRectF onWholePixel(const QRectF &rect, const QPainter &painter);

} // namespace kx
