// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Button.h>
#include <KXFoundation/Platform/UI/Color.h>

#include <functional>

/// A text button whose title and background take a colour for each state.
///
/// | enabled | hovered | selected | title               | background, unless absent |
/// |---------|---------|----------|---------------------|---------------------------|
/// | yes     | yes     | yes      | selectedTextColor() | hoverBackgroundColor()    |
/// | yes     | yes     | no       | hoverTextColor()    | hoverBackgroundColor()    |
/// | yes     | no      | yes      | selectedTextColor() | normalBackgroundColor()   |
/// | yes     | no      | no       | normalTextColor()   | normalBackgroundColor()   |
/// | no      |         |          | as it is            | disableBackgroundColor()  |
///
/// An absent background leaves the one that is there. Title colours are drawn opaque; their alpha becomes that of the
/// whole button. The title is set in "PingFangSC-Regular" or what the host has put in its place (QFont's substitutes);
/// without either, in the application's font at the same size. The action is performed at the release that follows a
/// press, wherever the pointer is by then. Main thread only.
class KX_UI_EXPORT PNTextColorButton : public kx::Button {
    Q_OBJECT
    Q_PROPERTY(QColor normalTextColor READ designerNormalTextColor WRITE setNormalTextColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor hoverTextColor READ designerHoverTextColor WRITE setHoverTextColor NOTIFY colorsChanged)
    Q_PROPERTY(
        QColor highLightTextColor READ designerHighLightTextColor WRITE setHighLightTextColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor selectedTextColor READ designerSelectedTextColor WRITE setSelectedTextColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor normalBackgroundColor READ designerNormalBackgroundColor WRITE setNormalBackgroundColor NOTIFY
            colorsChanged)
    Q_PROPERTY(QColor hoverBackgroundColor READ designerHoverBackgroundColor WRITE setHoverBackgroundColor NOTIFY
            colorsChanged)
    Q_PROPERTY(QColor highLightBackgroundColor READ designerHighLightBackgroundColor WRITE setHighLightBackgroundColor
            NOTIFY colorsChanged)
    Q_PROPERTY(QColor disableBackgroundColor READ designerDisableBackgroundColor WRITE setDisableBackgroundColor NOTIFY
            colorsChanged)
    Q_PROPERTY(
        QColor currentTitleColor READ designerCurrentTitleColor NOTIFY titleChanged DESIGNABLE false STORED false)
    Q_PROPERTY(bool mouseEventAble READ mouseEventAble WRITE setMouseEventAble NOTIFY mouseEventAbleChanged)
    Q_PROPERTY(double baseline READ baseline WRITE setBaseline NOTIFY baselineChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius WRITE setCornerRadius NOTIFY cornerRadiusChanged)
    Q_PROPERTY(bool selected READ isSelected WRITE setSelected NOTIFY selectedChanged)

public:
    explicit PNTextColorButton(QWidget *parent = nullptr);
    explicit PNTextColorButton(const QRectF &frame, QWidget *parent = nullptr);
    ~PNTextColorButton() override;

    /// Sets the two colours that a button has at first: white at alpha 0.85, and red (255, 46, 67) for a hover.
    void initViews();
    /// Shows the title and the colours of the present state, and applies cornerRadius(). Buttons that are made in code
    /// call it once they are set up.
    void awakeFromNib() override;

    /// Setting it shows the title in it at once, whatever the state.
    [[nodiscard]] kx::Color normalTextColor() const { return m_normalTextColor; }
    void setNormalTextColor(const kx::Color &color);
    /// Also the colour after a release.
    [[nodiscard]] kx::Color hoverTextColor() const { return m_hoverTextColor; }
    void setHoverTextColor(const kx::Color &color);
    /// While pressed; absent for no change.
    [[nodiscard]] kx::Color highLightTextColor() const { return m_highLightTextColor; }
    void setHighLightTextColor(const kx::Color &color);
    /// Absent gives way to the normal one.
    [[nodiscard]] kx::Color selectedTextColor() const { return m_selectedTextColor; }
    void setSelectedTextColor(const kx::Color &color);
    /// Setting it applies it at once, whatever the state; none takes the background away.
    [[nodiscard]] kx::Color normalBackgroundColor() const { return m_normalBackgroundColor; }
    void setNormalBackgroundColor(const kx::Color &color);
    [[nodiscard]] kx::Color hoverBackgroundColor() const { return m_hoverBackgroundColor; }
    void setHoverBackgroundColor(const kx::Color &color);
    [[nodiscard]] kx::Color highLightBackgroundColor() const { return m_highLightBackgroundColor; }
    void setHighLightBackgroundColor(const kx::Color &color);
    [[nodiscard]] kx::Color disableBackgroundColor() const { return m_disableBackgroundColor; }
    void setDisableBackgroundColor(const kx::Color &color);
    /// The colour that the title was last rendered with, as it was given; none at first.
    [[nodiscard]] kx::Color currentTitleColor() const { return m_currentTitleColor; }

    /// False: no tracking area, hover or hand cursor. True at first.
    [[nodiscard]] bool mouseEventAble() const { return m_mouseEventAble; }
    void setMouseEventAble(bool able);
    /// Pixels by which the title stands above its line; takes effect when the title is next rendered.
    [[nodiscard]] double baseline() const { return m_baseline; }
    void setBaseline(double baseline);
    /// Logical pixels; takes effect at awakeFromNib(), when above 0.
    [[nodiscard]] double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);
    [[nodiscard]] bool isSelected() const { return m_selected; }
    void setSelected(bool selected);
    /// Whether it is selected, if that has a look of its own.
    [[nodiscard]] std::optional<bool> checkedState() const override;

    /// Also renders the title of the new state.
    void setState(int state) override;
    /// The alternate title in the "on" state, unless it is empty; otherwise the title.
    [[nodiscard]] QString currentTitle() const;
    /// The alternate image in the "on" state, unless it is absent; otherwise the image.
    [[nodiscard]] kx::Image currentImage() const;
    /// Sets the alternate image in the "on" state, otherwise the image; likewise for the title.
    void setCurrentImage(const kx::Image &image);
    void updateCurrentAttributeTitle(const kx::AttributedString &title);
    /// The text of the attributed title, if it has one, or currentTitle().
    [[nodiscard]] QString plainTitle() const;

    /// Shows another title in the colour of the last one. (setTitle() alone leaves it without colour and font.)
    void changeBtnTitle(const QString &title);
    /// Shows a title in a colour; none stands for normalTextColor(). The current image is tinted with it for good.
    /// Deliberate: the colour's alpha goes to the whole button, background and all; without any colour it is 0. An
    /// empty title changes nothing but the title.
    void changBtnTitleAndColor(const QString &title, const kx::Color &textColor);
    /// Shows the colours of the present state.
    void updateCoclor();

    /// A thin white frame with round corners. Taking it off leaves the corners round.
    void addBtnBorder();
    void removeBtnBorder();
    /// Ends a hover, with its report.
    void reset2Normal();
    /// Called with the new state when a hover begins or ends; empty for none.
    void setHoverStateListener(const std::function<void(bool)> &listener) { m_hoverStateListener = listener; }

    void mouseDown(kx::Event *event) override;
    void mouseUp(kx::Event *event) override;
    void pressCancelled() override;
    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void mouseMoved(kx::Event *event) override;
    void cursorUpdate(kx::Event *event) override;
    void updateTrackingAreas() override;

Q_SIGNALS:
    /// One of the colours that are set was set.
    void colorsChanged();
    void baselineChanged(double baseline);
    void cornerRadiusChanged(double radius);
    void mouseEventAbleChanged(bool able);
    void selectedChanged(bool selected);
    /// After the listener was called.
    void hoverStateChanged(bool hovered);

protected:
    void enabledChanged() override;

private:
    [[nodiscard]] QColor designerNormalTextColor() const { return m_normalTextColor.toQColor(); }
    [[nodiscard]] QColor designerHoverTextColor() const { return m_hoverTextColor.toQColor(); }
    [[nodiscard]] QColor designerHighLightTextColor() const { return m_highLightTextColor.toQColor(); }
    [[nodiscard]] QColor designerSelectedTextColor() const { return m_selectedTextColor.toQColor(); }
    [[nodiscard]] QColor designerNormalBackgroundColor() const { return m_normalBackgroundColor.toQColor(); }
    [[nodiscard]] QColor designerHoverBackgroundColor() const { return m_hoverBackgroundColor.toQColor(); }
    [[nodiscard]] QColor designerHighLightBackgroundColor() const { return m_highLightBackgroundColor.toQColor(); }
    [[nodiscard]] QColor designerDisableBackgroundColor() const { return m_disableBackgroundColor.toQColor(); }
    [[nodiscard]] QColor designerCurrentTitleColor() const { return m_currentTitleColor.toQColor(); }
    [[nodiscard]] bool isUnderForeignModalWindow() const;
    void setHovered(bool hovered);
    void applyBackground(const kx::Color &color);
    void store(kx::Color &field, const kx::Color &color);

    kx::Color m_normalTextColor;
    kx::Color m_hoverTextColor;
    kx::Color m_highLightTextColor;
    kx::Color m_selectedTextColor;
    kx::Color m_normalBackgroundColor;
    kx::Color m_hoverBackgroundColor;
    kx::Color m_highLightBackgroundColor;
    kx::Color m_disableBackgroundColor;
    kx::Color m_currentTitleColor;
    std::function<void(bool)> m_hoverStateListener;
    kx::TrackingAreaRef m_trackingArea;
    double m_baseline = 0;
    double m_cornerRadius = 0;
    bool m_mouseEventAble = true;
    bool m_selected = false;
    bool m_hovered = false;
    bool m_mouseDown = false; // a press is in progress
    bool m_mouseExist = false; // the pointer has left
};
