// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/ImageIcon.h>
#include <KXFoundation/Platform/UI/ViewOn.h>

#include <QtWidgets/QWidget>

namespace kx {

/// Shows an image in its middle, scaled down in proportion where it does not fit and never up.
class KX_UI_EXPORT ImageView : public ViewOn<QWidget> {
    Q_OBJECT
    Q_PROPERTY(QIcon image READ imageIcon WRITE setImage)
    Q_PROPERTY(bool awakesFromNib READ awakesFromNib WRITE setAwakesFromNib DESIGNABLE false)

public:
    explicit ImageView(QWidget *parent = nullptr);
    ~ImageView() override;

    [[nodiscard]] Image image() const { return m_image; }
    void setImage(const Image &image);

    /// Where the image is, in the widget's coordinates. Empty without an image.
    [[nodiscard]] QRectF imageRect() const;
    /// Whether assistive technology may press the view, and what a press does. Not here.
    [[nodiscard]] virtual bool isPressable() const;
    virtual void press();

    /// The image's size; none without an image.
    [[nodiscard]] QSizeF intrinsicContentSize() const override;

protected:
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;
    void paintEvent(QPaintEvent *event) override;

private:
    // As properties, images are what was set: reading them makes none.

    [[nodiscard]] QIcon imageIcon() const { return iconFromImage(m_image); }

    Image m_image;
};

} // namespace kx
