// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Bitmap.h>
#include <KXFoundation/Platform/UI/Ref.h>

#include <QtCore/QList>
#include <QtCore/QMarginsF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QImage>

#include <functional>

class QIcon;
class QPainter;
class QPixmap;

namespace kx {

/// How what is drawn meets what is there.
enum class CompositingOperation {
    Copy = 1, ///< takes its place, transparency included
    SourceOver = 2, ///< lies on it
    SourceAtop = 5, ///< lies on it only where it is opaque, and leaves its alpha
};

/// What happens to the parts between the caps of an image that is drawn at another size.
enum class ResizingMode {
    Tile = 0,
    Stretch = 1,
};

/// Paints an image: `rect` is (0, 0) and the image's size. The painter counts points from the image's top left, y
/// downwards, so that text and images stand upright; it is antialiased, and otherwise in any state. False for failure;
/// such a handler should have painted nothing. Called on the thread of each drawing.
using DrawingHandler = std::function<bool(QPainter &painter, const QRectF &rect)>;

/// What an image refers to.
struct KX_UI_EXPORT ImageContent {
    QSizeF size;
    QList<Bitmap> representations;
    DrawingHandler drawingHandler;
    bool flipped = false;
    QMarginsF capInsets;
    ResizingMode resizingMode = ResizingMode::Stretch;

    /// Handlers cannot be compared: no two contents with handlers are equal.
    bool operator==(const ImageContent &other) const;
};

/// A picture with a size in points, made of bitmaps or painted by a handler, with identity: see Ref. It never changes,
/// so operations on images return new ones; any thread may draw it.
class KX_UI_EXPORT Image : public Ref<ImageContent> {
public:
    using Ref::Ref;
    // NOLINTBEGIN(google-explicit-constructor): Qt's images may be given wherever an Image is wanted
    /// One representation, with the size in points that the device pixel ratio gives. Null images give none.
    Image(const QImage &image);
    Image(const QPixmap &pixmap);
    /// An image of the icon's smallest size in points, with all of its sizes as representations. An icon that has none
    /// of its own, such as a scalable one, gives 32 x 32 points. A null icon gives none. Main thread only.
    Image(const QIcon &icon);
    // NOLINTEND(google-explicit-constructor)

    /// An image that the handler paints afresh at each drawing, at the resolution of the place. `flipped` is kept for
    /// handlers that ask for it: whether they count y downwards. The painter always does.
    [[nodiscard]] static Image imageWithSize(const QSizeF &size, bool flipped, DrawingHandler drawingHandler);
    /// An image of this size, over which each of the bitmaps extends. Those that are none are left out; without any,
    /// the image is empty and draws nothing.
    [[nodiscard]] static Image withRepresentations(const QSizeF &size, const QList<Bitmap> &representations);

    /// The image that the host gave for a name; none without one. Any thread.
    [[nodiscard]] static Image named(const QString &name);
    /// None takes the name away.
    static void setNamed(const QString &name, const Image &image);

    /// In points; (0, 0) for none.
    [[nodiscard]] QSizeF size() const;
    /// Largest number of pixels per point among the representations, in width; 0 without any.
    [[nodiscard]] double pixelScale() const;
    [[nodiscard]] QList<Bitmap> representations() const;
    [[nodiscard]] bool hasDrawingHandler() const;
    [[nodiscard]] bool isFlipped() const;
    [[nodiscard]] QMarginsF capInsets() const;
    [[nodiscard]] ResizingMode resizingMode() const;

    /// A new image which keeps its edges, as wide as the insets, at their size when it is drawn at another one.
    [[nodiscard]] Image withCapInsets(const QMarginsF &capInsets, ResizingMode resizingMode) const;

    /// Draws into `destination`, in the painter's coordinates. `source` is a part of the image in points from its top
    /// left, y downwards; QRectF() stands for all of it, and only then caps are kept. What lies outside the image is
    /// left out, with its part of the destination. Smooth at every size. `fraction` is the opacity, from 0 to 1.
    /// Rectangles without a positive, finite size draw nothing.
    void draw(QPainter &painter, const QRectF &destination, const QRectF &source = {},
        CompositingOperation operation = CompositingOperation::SourceOver, double fraction = 1) const;

    /// The whole picture with `scale` pixels per point, which is the result's device pixel ratio: a representation of
    /// that resolution as it is, else drawn. Null for none, for an empty image, for a scale that is not positive
    /// and finite, and where a side would be above 32767 pixels or all of them above 2^28.
    [[nodiscard]] QImage toQImage(double scale) const;
};

} // namespace kx
