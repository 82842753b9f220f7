// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Bitmap.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QRectF>
#include <QtCore/QString>

/// A large JPEG file, decoded once, that hands out parts of it. A value type, cheap to copy: copies share the pixels.
/// Use one from one thread at a time; decoding takes its time, so make it on a thread that may wait.
class KX_UI_EXPORT KXBigImageThumb {
public:
    /// Decodes the file. Anything but a readable JPEG file, or one that needs more than the memory limit, leaves width
    /// and height at 0 and no bitmap: see docs/image-tools.md for what counts as one. Whatever orientation or colour
    /// profile the file names, the pixels stay as they lie in it.
    explicit KXBigImageThumb(const QString &imageFilePath);

    /// The size of the decoded image in pixels.
    [[nodiscard]] double width() const { return m_width; }
    void setWidth(double width) { m_width = width; }
    [[nodiscard]] double height() const { return m_height; }
    void setHeight(double height) { m_height = height; }

    /// The decoded pixels, of which one is a point: 8 bits grey for a grey file, else 32 bits RGB. None when there are
    /// none.
    [[nodiscard]] const kx::Bitmap &bitmap() const { return m_bitmap; }
    void setBitmap(const kx::Bitmap &bitmap) { m_bitmap = bitmap; }

    /// The part of the bitmap in `rect`, counted in pixels from the top left: kx::imageFromRect(). Copies no more than
    /// these pixels. None without a bitmap.
    [[nodiscard]] kx::Image thumbFromRect(const QRectF &rect) const;

    /// The most memory that decoding a file may take, in bytes: its pixels, 4 bytes each, and for progressive files
    /// their coefficients, up to 6 bytes a pixel. 1 GiB unless the host sets another limit; 0 is none, and so are
    /// negative numbers. For objects that are made from then on; may be called from any thread.
    static void setMemoryLimitInBytes(qint64 limit);
    [[nodiscard]] static qint64 memoryLimitInBytes();

private:
    double m_width = 0;
    double m_height = 0;
    kx::Bitmap m_bitmap;
};
