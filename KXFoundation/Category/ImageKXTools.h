// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Bitmap.h>
#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

/// Making, scaling, tinting and fading images.
///
/// Sizes and rectangles are in points, y upwards from the bottom left. A new image is drawn with as many pixels per
/// point as the screen with the highest device pixel ratio has, one without screens; sides above 32767 pixels, or more
/// than 2^28 pixels, cannot be drawn. Scaling is smooth: reducing reads every pixel. Results are none (a null QImage)
/// on failure: for an image that is none, or without a size or readable pixels, and for a size that is not positive and
/// finite or too large. Main thread.

namespace kx {

/// A black rounded rectangle on nothing, to serve as a mask of any size: its corners keep their size when it is drawn
/// larger, and what is between them is tiled. A radius above half a side is cut to it; a negative one, or one that is
/// no number, paints nothing, like a size without area.
[[nodiscard]] KX_UI_EXPORT Image imageWithSize(const QSizeF &size, float maskCornerRadius);

/// The pixels of the image: its first readable representation as it is, shared; what a drawing handler paints at the
/// largest device pixel ratio.
[[nodiscard]] KX_UI_EXPORT QImage CGImageRef(const Image &image);
/// The image with `scale` pixels per point, which is the result's device pixel ratio; at exactly 1 the same as
/// CGImageRef().
[[nodiscard]] KX_UI_EXPORT QImage CGImageRefWithScale(const Image &image, float scale);
/// CGImageRefWithScale() at the largest device pixel ratio of all screens, at least 1.
[[nodiscard]] KX_UI_EXPORT QImage CGImageRef4PDF(const Image &image);

/// A new image with this opacity, from 0 to 1, and without the caps of the old one. At exactly 1 the image itself.
[[nodiscard]] KX_UI_EXPORT Image imageWithAlpha(const Image &image, double alpha);
/// A copy whose opaque parts take the colour, as far as the colour is opaque; caps and scales of the representations
/// stay. Without a colour the image itself.
[[nodiscard]] KX_UI_EXPORT Image imageWithTintColor(const Image &image, const Color &color);

/// The whole image as large as fits into the target size, centred on a ground of `bgColor`, or of nothing when that is
/// none.
[[nodiscard]] KX_UI_EXPORT Image resizeAspect(
    const Image &image, const QSizeF &targetSize, const Color &bgColor = nullptr);
/// The image filling the target size, what sticks out on two opposite sides cut off.
[[nodiscard]] KX_UI_EXPORT Image resize(const Image &image, const QSizeF &targetSize);
/// An image of the target rectangle's size, with a part of the image in it. Deliberate: the part is drawn at the
/// target's origin, so one that is not (0, 0) moves it within the new image, and part of it out. QRectF() as the
/// source is the whole image.
[[nodiscard]] KX_UI_EXPORT Image fromRect(const Image &image, const QRectF &rect, const QRectF &targetRect);

/// The whole image as a bitmap of its size in points: its finest representation as it is, shared; what a drawing
/// handler paints at the largest device pixel ratio.
[[nodiscard]] KX_UI_EXPORT Bitmap bitmap(const Image &image);

} // namespace kx
