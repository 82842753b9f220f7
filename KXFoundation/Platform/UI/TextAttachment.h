// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QChar>
#include <QtCore/QRectF>
#include <QtCore/QString>

#include <memory>

namespace kx {

/// An image that stands in a text, in the place of one `attachmentCharacter`. Texts share it: a change shows in each of
/// them, once it is laid out again. Main thread only.
class KX_UI_EXPORT TextAttachment {
public:
    explicit TextAttachment(Image image = {});
    Q_DISABLE_COPY_MOVE(TextAttachment)

    [[nodiscard]] Image image() const { return m_image; }
    void setImage(const Image &image) { m_image = image; }

    /// Puts a new image of the same size in the place of the present one, which it draws. Wrapping again draws that
    /// same one: wrappers do not pile up.
    void wrapImage();

    /// The place of the image, from the point on the baseline where it stands, y growing upwards: a negative y lets it
    /// hang below. Empty (the default) for the image's own size, on the baseline.
    [[nodiscard]] QRectF bounds() const { return m_bounds; }
    void setBounds(const QRectF &bounds) { m_bounds = bounds; }

    /// What the image shows, in words: read by assistive technology, and the name of a link of this image alone. Empty
    /// at first, for an image that is not read.
    [[nodiscard]] QString description() const { return m_description; }
    void setDescription(const QString &description) { m_description = description; }

    /// The place that the image takes: bounds() or what stands for them. What is no size is taken as 0.
    [[nodiscard]] QRectF place() const;

private:
    Image m_image;
    Image m_wrapper; // the image that stands in for m_wrapped
    Image m_wrapped;
    QRectF m_bounds;
    QString m_description;
};

using TextAttachmentRef = std::shared_ptr<TextAttachment>;

inline constexpr QChar attachmentCharacter = QChar::ObjectReplacementCharacter;

} // namespace kx
