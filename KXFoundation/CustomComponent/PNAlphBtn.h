// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Button.h>

#include <QtCore/QSizeF>

#include <functional>

/// An image button that makes its looks from one image by opacity: faint at rest, full under the pointer. It can cast a
/// soft shadow. Presses are an ordinary button's. The states are those of PNButton's table, with the images that the
/// getters here return; a disabled button shows normalImage(). Main thread only.
class KX_UI_EXPORT PNAlphBtn : public kx::Button {
    Q_OBJECT
    Q_PROPERTY(QIcon normalImage READ normalImageIcon WRITE setNormalImage)
    Q_PROPERTY(QIcon hoverImage READ hoverImageIcon WRITE setHoverImage)
    Q_PROPERTY(QIcon selectedNormalImage READ selectedNormalImageIcon WRITE setSelectedNormalImage)
    Q_PROPERTY(QIcon selectedHoverImage READ selectedHoverImageIcon WRITE setSelectedHoverImage)
    Q_PROPERTY(QString toolTips READ toolTips WRITE setToolTips)
    Q_PROPERTY(QString selectToolTips READ selectToolTips WRITE setSelectToolTips)
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected NOTIFY selectedChanged)
    Q_PROPERTY(QSizeF shadowOffset READ shadowOffset WRITE setShadowOffset NOTIFY shadowOffsetChanged)

public:
    explicit PNAlphBtn(QWidget *parent = nullptr);
    explicit PNAlphBtn(const QRectF &frame, QWidget *parent = nullptr);
    ~PNAlphBtn() override;

    /// Takes the button's image as the normal one if there is none.
    void awakeFromNib() override;

    // Deliberate: the getters return looks, not what was set. Setting an image shows it at once where the state asks
    // for it.

    /// What was set, at opacity 0.45; without it, the hover image as it was set.
    [[nodiscard]] kx::Image normalImage() const;
    void setNormalImage(const kx::Image &image);
    /// What was set; without it, the normal image as it was set.
    [[nodiscard]] kx::Image hoverImage() const;
    void setHoverImage(const kx::Image &image);
    /// What was set, at opacity 0.45. Deliberate: nothing stands in for it, unlike for the normal image.
    [[nodiscard]] kx::Image selectedNormalImage() const;
    void setSelectedNormalImage(const kx::Image &image);
    /// What was set; without it, the selected image as it was set.
    [[nodiscard]] kx::Image selectedHoverImage() const;
    void setSelectedHoverImage(const kx::Image &image);

    /// Tool tips while not selected, and while selected. Null leaves the button's tool tip as it is.
    [[nodiscard]] QString toolTips() const { return m_toolTips; }
    void setToolTips(const QString &text);
    [[nodiscard]] QString selectToolTips() const { return m_selectToolTips; }
    void setSelectToolTips(const QString &text);

    [[nodiscard]] bool isSelected() const { return m_selected; }
    void setSelected(bool selected);
    /// Whether it is selected, if that has a look of its own.
    [[nodiscard]] std::optional<bool> checkedState() const override;
    /// Where the shadow lies, in logical pixels, its height counting upwards; (0, 0) for none. Takes effect at the next
    /// display.
    [[nodiscard]] QSizeF shadowOffset() const { return m_shadowOffset; }
    void setShadowOffset(const QSizeF &offset);

    /// Called with the new state when a hover begins or ends; empty for none.
    void setHoverStateListener(const std::function<void(bool)> &listener) { m_hoverStateListener = listener; }
    /// Shows the look of a button that is not hovered, without a report.
    void restBtnState();
    /// Shows the image and the tool tip of the present state.
    void updateImage();

    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void cursorUpdate(kx::Event *event) override;
    void updateTrackingAreas() override;
    [[nodiscard]] bool wantsUpdateLayer() const override { return true; }
    void updateLayer() override;

Q_SIGNALS:
    void selectedChanged(bool selected);
    void shadowOffsetChanged(const QSizeF &offset);
    /// After the listener was called.
    void hoverStateChanged(bool hovered);

private:
    // As properties, images are what was set: reading them makes none.

    [[nodiscard]] QIcon normalImageIcon() const { return kx::iconFromImage(m_normal.image); }
    [[nodiscard]] QIcon hoverImageIcon() const { return kx::iconFromImage(m_hoverImage); }
    [[nodiscard]] QIcon selectedNormalImageIcon() const { return kx::iconFromImage(m_selectedNormal.image); }
    [[nodiscard]] QIcon selectedHoverImageIcon() const { return kx::iconFromImage(m_selectedHoverImage); }

    /// An image and its faint look, made when it is first shown.
    struct Look {
        kx::Image image;
        mutable kx::Image faint;

        void set(const kx::Image &newImage) { *this = {newImage, nullptr}; }
        [[nodiscard]] kx::Image atRest() const;
    };

    void setHovered(bool hovered);
    [[nodiscard]] kx::Image lookOfState() const;
    void showToolTip();

    Look m_normal;
    Look m_selectedNormal;
    kx::Image m_hoverImage;
    kx::Image m_selectedHoverImage;
    QString m_toolTips;
    QString m_selectToolTips;
    QSizeF m_shadowOffset{0, 0};
    std::function<void(bool)> m_hoverStateListener;
    kx::TrackingAreaRef m_trackingArea;
    bool m_selected = false;
    bool m_hovered = false;
};
