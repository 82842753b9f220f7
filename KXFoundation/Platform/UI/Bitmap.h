// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/PixelLayout.h>
#include <KXFoundation/Platform/UI/Ref.h>

#include <QtCore/QByteArray>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

namespace kx {

/// What a bitmap refers to.
struct KX_UI_EXPORT BitmapContent {
    PixelLayout layout;
    QSizeF size;
    QByteArray bytes; ///< null when `image` holds the buffer
    QImage image; ///< null when Qt cannot read the pixels

    [[nodiscard]] const uchar *data() const;
    [[nodiscard]] qint64 dataSize() const;
    bool operator==(const BitmapContent &other) const;
};

/// A buffer of pixels with its layout and its size in points, with identity: see Ref.
class KX_UI_EXPORT Bitmap : public Ref<BitmapContent> {
public:
    using Ref::Ref;
    /// The pixels of the image, shared and not copied where they are whole samples of 8 or 16 bits (or 16-bit and
    /// 32-bit floats) in rows without padding; every image of 32 bits a pixel is. Rows with padding are packed, other
    /// formats converted to 32 bits. The size in points is the image's without its device pixel ratio. None for a null
    /// image.
    Bitmap(const QImage &image); // NOLINT(google-explicit-constructor): an image may be given wherever one is wanted
    /// The same with a size in points of its own.
    Bitmap(const QImage &image, const QSizeF &size);

    /// None when nothing can lie like that (PixelLayout::isValid()). `bytes` may be shorter than the layout says: such
    /// a bitmap keeps its layout, but Qt cannot read it. Longer ones are good, too.
    [[nodiscard]] static Bitmap create(const PixelLayout &layout, const QSizeF &size, const QByteArray &bytes);

    /// All zero for none.
    [[nodiscard]] const PixelLayout &layout() const;
    /// In points.
    [[nodiscard]] QSizeF size() const;
    /// The buffer, and its real length. Null for none.
    [[nodiscard]] const uchar *data() const;
    [[nodiscard]] qint64 dataSize() const;

    /// The same pixels for Qt, shared unless they lie at odd addresses. Null when the buffer is too short or Qt cannot
    /// read its format (PixelLayout::resolvedFormat()).
    [[nodiscard]] QImage toQImage() const;
};

} // namespace kx
