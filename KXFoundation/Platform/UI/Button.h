// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/AttributedString.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/ImageIcon.h>
#include <KXFoundation/Platform/UI/ViewOn.h>

#include <QtCore/QByteArray>
#include <QtCore/QPointer>
#include <QtWidgets/QAbstractButton>

#include <memory>
#include <optional>

namespace kx {

class ButtonContent;
class KeyboardFocus;

/// A button without a border of its own: an image, scaled down to fit but never up, beside its title. What is absent
/// takes no room. It has an "off" and an "on" state; the "on" state may bring an image and a title of its own.
///
/// A press performs the action: the target's method of that name is called with the button, and clicked() is emitted,
/// by mouse, keyboard, click() or assistive technology alike. The keyboard reaches the button by Tab and shows that by
/// a ring; neither a click nor a window that becomes active takes the focus to it. A disabled button looks the same.
class KX_UI_EXPORT Button : public ViewOn<QAbstractButton> {
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(QString alternateTitle READ alternateTitle WRITE setAlternateTitle NOTIFY titleChanged)
    Q_PROPERTY(QIcon image READ imageIcon WRITE setImage)
    Q_PROPERTY(QIcon alternateImage READ alternateImageIcon WRITE setAlternateImage)
    Q_PROPERTY(int state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(bool awakesFromNib READ awakesFromNib WRITE setAwakesFromNib DESIGNABLE false)

public:
    explicit Button(QWidget *parent = nullptr);
    ~Button() override;

    /// Null unless set. A title without attributes is drawn in the button's font and the palette's text colour.
    [[nodiscard]] QString title() const { return m_title.string(); }
    /// The title, without attributes.
    void setTitle(const QString &title);
    [[nodiscard]] QString alternateTitle() const { return m_alternateTitle.string(); }
    void setAlternateTitle(const QString &title);
    /// The title with its attributes; setting it sets the plain title as well.
    [[nodiscard]] AttributedString attributedTitle() const { return m_title; }
    void setAttributedTitle(const AttributedString &title);
    [[nodiscard]] AttributedString attributedAlternateTitle() const { return m_alternateTitle; }
    void setAttributedAlternateTitle(const AttributedString &title);

    [[nodiscard]] Image image() const { return m_image; }
    void setImage(const Image &image);
    [[nodiscard]] Image alternateImage() const { return m_alternateImage; }
    void setAlternateImage(const Image &image);

    /// 0 for off, 1 for on.
    [[nodiscard]] int state() const { return m_state; }
    virtual void setState(int state);

    /// The font of titles without one: the widget's until it is set here. None stands for the application's font at
    /// fontSize().
    [[nodiscard]] Font font() const { return m_font; }
    void setFont(const Font &font);
    /// The size of the last font that was one, in points.
    [[nodiscard]] double fontSize() const { return m_fontSize; }
    [[nodiscard]] TextAlignment alignment() const { return m_alignment; }
    void setAlignment(TextAlignment alignment);
    /// Of titles; word wrapping (0) at first.
    [[nodiscard]] LineBreakMode lineBreakMode() const { return m_lineBreakMode; }
    void setLineBreakMode(LineBreakMode mode);

    /// The object that performs the action, held weakly.
    [[nodiscard]] QObject *target() const { return m_target; }
    void setTarget(QObject *target) { m_target = target; }
    /// The name of an invokable method of the target that takes the button as a `QObject *`, or nothing. Empty for
    /// none.
    [[nodiscard]] QByteArray action() const { return m_action; }
    void setAction(const QByteArray &action) { m_action = action; }

    // What assistive technology reads.

    /// The name of a button that has no accessibleName(): the title that it shows, else its tool tip.
    [[nodiscard]] virtual QString spokenName() const;
    /// Whether the button is checked; absent for one that only performs its action. Here: whether it is in the "on"
    /// state, if that has a look of its own.
    [[nodiscard]] virtual std::optional<bool> checkedState() const;

    /// That of the image at its own size beside the title.
    [[nodiscard]] QSizeF intrinsicContentSize() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// False: a press belongs to the button.
    [[nodiscard]] bool mouseDownCanMoveWindow() const override { return false; }

    void pressCancelled() override;

Q_SIGNALS:
    void titleChanged();
    void stateChanged(int state);

protected:
    /// Performs the action and emits clicked(), as a click does. The button may be gone afterwards.
    void performAction() { Q_EMIT clicked(); }
    /// Tells assistive technology that checkedState() changed.
    void checkedStateWasChanged();

    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;
    /// Draws the ring of a button that has the focus by the keyboard, above all else and never translucent.
    virtual void drawFocusRing(QPainter &painter);
    /// Called when the button was enabled or disabled, itself or with its parent.
    virtual void enabledChanged();

    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    // As properties, images are what was set: reading them makes none.

    [[nodiscard]] QIcon imageIcon() const { return iconFromImage(m_image); }
    [[nodiscard]] QIcon alternateImageIcon() const { return iconFromImage(m_alternateImage); }

    [[nodiscard]] bool showsAlternateTitle() const;
    void contentChanged(bool takesOtherRoom = true);
    void applyFont(const Font &font);
    void sendAction();
    [[nodiscard]] ButtonContent &content() const;

    AttributedString m_title;
    AttributedString m_alternateTitle;
    Image m_image;
    Image m_alternateImage;
    Font m_font;
    bool m_hasOwnFont = false; // and not the widget's
    TextAlignment m_alignment = TextAlignment::Center;
    LineBreakMode m_lineBreakMode = LineBreakMode::WordWrapping;
    int m_state = 0;
    double m_fontSize = 0;
    QPointer<QObject> m_target;
    QByteArray m_action;
    std::unique_ptr<ButtonContent> m_content; // what the state shows
    mutable bool m_contentIsStale = true;
    std::unique_ptr<KeyboardFocus> m_keyboardFocus;
};

} // namespace kx
