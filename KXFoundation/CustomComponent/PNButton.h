// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Button.h>

#include <functional>

/// An image button with a look for each state: normal, hovered, pressed, selected and disabled.
///
/// | enabled | selected | hovered | image                                     |
/// |---------|----------|---------|-------------------------------------------|
/// | no      |          |         | disableImage(), else normalImage()        |
/// | yes     | yes      | yes     | selectedHoverImage()                      |
/// | yes     | yes      | no      | selectedNormalImage()                     |
/// | yes     | no       | yes     | hoverImage()                              |
/// | yes     | no       | no      | normalImage()                             |
///
/// A button without a hover image gets one by tinting. It performs its action at the release that follows a press on
/// it. Deliberate: wherever the pointer is by then, and whether or not the button is enabled. A hover is neither begun
/// nor ended while the application shows a modal window. Right clicks are swallowed. Main thread only.
class KX_UI_EXPORT PNButton : public kx::Button {
    Q_OBJECT
    Q_PROPERTY(QIcon normalImage READ normalImageIcon WRITE setNormalImage)
    Q_PROPERTY(QIcon hoverImage READ hoverImageIcon WRITE setHoverImage)
    Q_PROPERTY(QIcon pressedImage READ pressedImageIcon WRITE setPressedImage)
    Q_PROPERTY(QIcon selectedNormalImage READ selectedNormalImageIcon WRITE setSelectedNormalImage)
    Q_PROPERTY(QIcon selectedHoverImage READ selectedHoverImageIcon WRITE setSelectedHoverImage)
    Q_PROPERTY(QIcon selectedPressedImage READ selectedPressedImageIcon WRITE setSelectedPressedImage)
    Q_PROPERTY(QIcon disableImage READ disableImageIcon WRITE setDisableImage)
    Q_PROPERTY(QString toolTips READ toolTips WRITE setToolTips)
    Q_PROPERTY(QString selectToolTips READ selectToolTips WRITE setSelectToolTips)
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected NOTIFY selectedChanged)
    // Designer does not offer it: awakeFromNib() would undo it.
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged
            DESIGNABLE false)
    Q_PROPERTY(bool isIgnoreHover READ isIgnoreHover WRITE setIsIgnoreHover NOTIFY isIgnoreHoverChanged)

public:
    explicit PNButton(QWidget *parent = nullptr);
    explicit PNButton(const QRectF &frame, QWidget *parent = nullptr);
    ~PNButton() override;

    /// Takes the button's image as the normal one if there is none.
    void awakeFromNib() override;

    // Setting an image shows it at once where the state asks for it.

    [[nodiscard]] kx::Image normalImage() const { return m_normalImage; }
    void setNormalImage(const kx::Image &image);
    /// Made on first use by tinting the normal image, unless set; kept then, also when that one changes.
    [[nodiscard]] kx::Image hoverImage();
    void setHoverImage(const kx::Image &image);
    /// Shown while the button is pressed, by the mouse or the space bar, selected or not; absent for no change.
    [[nodiscard]] kx::Image pressedImage() const { return m_pressedImage; }
    void setPressedImage(const kx::Image &image) { m_pressedImage = image; }
    [[nodiscard]] kx::Image selectedNormalImage() const { return m_selectedNormalImage; }
    void setSelectedNormalImage(const kx::Image &image);
    /// Made on first use by tinting the selected image, unless set; kept then.
    [[nodiscard]] kx::Image selectedHoverImage();
    void setSelectedHoverImage(const kx::Image &image);
    /// Deliberate: kept, but never shown. A press shows pressedImage(), selected or not.
    [[nodiscard]] kx::Image selectedPressedImage() const { return m_selectedPressedImage; }
    void setSelectedPressedImage(const kx::Image &image) { m_selectedPressedImage = image; }
    [[nodiscard]] kx::Image disableImage() const { return m_disableImage; }
    void setDisableImage(const kx::Image &image);

    /// Tool tips while not selected, and while selected. Null leaves the button's tool tip as it is.
    [[nodiscard]] QString toolTips() const { return m_toolTips; }
    void setToolTips(const QString &text);
    [[nodiscard]] QString selectToolTips() const { return m_selectToolTips; }
    void setSelectToolTips(const QString &text);

    /// A hover that is ignored does not take away a tool tip that is the button's name.
    [[nodiscard]] QString spokenName() const override;

    /// Up to the host: a click does not select.
    [[nodiscard]] bool isSelected() const { return m_selected; }
    void setSelected(bool selected);
    /// Whether it is selected, if that has a look of its own.
    [[nodiscard]] std::optional<bool> checkedState() const override;
    /// False makes the button transparent to the mouse. True at first.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    void setUserInteraction(bool interacts);
    /// Whether a hover changes nothing: no look, no report, no cursor; it only clears the tool tip.
    [[nodiscard]] bool isIgnoreHover() const { return m_ignoresHover; }
    void setIsIgnoreHover(bool ignores);

    /// Called with the new state when a hover begins or ends; empty for none.
    void setHoverStateListener(const std::function<void(bool)> &listener) { m_hoverStateListener = listener; }
    /// Shows the look of a button that is not hovered, without a report.
    void restBtnState();
    /// Shows the image and the tool tip of the present state.
    void updateImage();

    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;
    void mouseDown(kx::Event *event) override;
    void mouseUp(kx::Event *event) override;
    void pressCancelled() override;
    void rightMouseDown(kx::Event *event) override;
    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void cursorUpdate(kx::Event *event) override;
    void updateTrackingAreas() override;

Q_SIGNALS:
    void selectedChanged(bool selected);
    void userInteractionChanged(bool interacts);
    void isIgnoreHoverChanged(bool ignores);
    /// After the listener was called.
    void hoverStateChanged(bool hovered);

protected:
    void enabledChanged() override;

private:
    // As properties, images are what was set: reading them makes none.

    [[nodiscard]] QIcon normalImageIcon() const { return kx::iconFromImage(m_normalImage); }
    [[nodiscard]] QIcon hoverImageIcon() const { return kx::iconFromImage(m_hoverImage); }
    [[nodiscard]] QIcon pressedImageIcon() const { return kx::iconFromImage(m_pressedImage); }
    [[nodiscard]] QIcon selectedNormalImageIcon() const { return kx::iconFromImage(m_selectedNormalImage); }
    [[nodiscard]] QIcon selectedHoverImageIcon() const { return kx::iconFromImage(m_selectedHoverImage); }
    [[nodiscard]] QIcon selectedPressedImageIcon() const { return kx::iconFromImage(m_selectedPressedImage); }
    [[nodiscard]] QIcon disableImageIcon() const { return kx::iconFromImage(m_disableImage); }

    void setHovered(bool hovered);
    [[nodiscard]] kx::Image lookOfState();
    void showToolTip();
    void showPressed();
    void setLook(kx::Image &field, const kx::Image &image);

    kx::Image m_normalImage;
    kx::Image m_hoverImage;
    kx::Image m_pressedImage;
    kx::Image m_selectedNormalImage;
    kx::Image m_selectedHoverImage;
    kx::Image m_selectedPressedImage;
    kx::Image m_disableImage;
    QString m_toolTips;
    QString m_selectToolTips;
    std::function<void(bool)> m_hoverStateListener;
    kx::TrackingAreaRef m_trackingArea;
    bool m_selected = false;
    bool m_userInteraction = true;
    bool m_ignoresHover = false;
    bool m_hovered = false;
    bool m_mouseDown = false; // a press is in progress
};
