// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Color.h>

#include <QtGui/QImage>

/// The colours from one to another, left to right, as pixels of any width. Keeps the last ones it was asked for.
class ColorRamp {
public:
    /// Both must be colours. Nothing happens for the same ones as before.
    void setColors(const kx::Color &start, const kx::Color &end);
    [[nodiscard]] bool isOpaque() const { return m_row.format() == QImage::Format_RGB32; }
    /// One pixel high, and as wide as there are shades.
    [[nodiscard]] const QImage &row() const { return m_row; }
    /// The ramp over `width` pixels of each row; the image may be wider, up to `room`. All are above 0. Null when
    /// memory is short. Valid until the next call.
    [[nodiscard]] const QImage &stretched(int width, int height, int room);

private:
    kx::Color m_start;
    kx::Color m_end;
    QImage m_row;
    QImage m_stretched;
    int m_stretchedWidth = 0; // of the ramp in it
};
