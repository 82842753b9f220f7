// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QList>
#include <QtCore/QMarginsF>
#include <QtCore/QRectF>

#include <atomic>
#include <memory>

class KXAttributedString;
class RichTextBody;

/// Shows runs of attributed text one after another, as one block of text as large as they need: lines end only where
/// the text says so. A click on a run calls its onClick(). The view is flipped: points count from its top left, y
/// growing downwards.
///
/// Characters without a colour or a font take the palette's text colour and the widget's font. Runs with an onClick()
/// are links: the keyboard reaches them by Tab and follows them by Return or Space, and assistive technology finds them
/// as links in a text that it can select. For this the view takes the focus policy TabFocus while it shows any, unless
/// the host sets another policy. So set onClick() before the runs are shown, and QWidget::setTabOrder() afterwards.
///
/// Main thread only, but for the tag.
class KX_UI_EXPORT KXRichTextView : public kx::View {
    Q_OBJECT
    Q_PROPERTY(bool useRoundCorner READ useRoundCorner WRITE setUseRoundCorner NOTIFY useRoundCornerChanged)
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged)
    Q_PROPERTY(bool userCursor READ userCursor WRITE setUserCursor NOTIFY userCursorChanged)
    Q_PROPERTY(qint64 tag READ tag WRITE setTag)
    Q_PROPERTY(
        QColor backgroundColor READ designerBackgroundColor WRITE setBackgroundColor NOTIFY backgroundColorChanged)
    Q_PROPERTY(QMarginsF insets READ insets WRITE setInsets NOTIFY insetsChanged DESIGNABLE false)

public:
    using Runs = QList<std::shared_ptr<KXAttributedString>>;

    explicit KXRichTextView(QWidget *parent = nullptr);
    explicit KXRichTextView(const QRectF &frame, QWidget *parent = nullptr);
    ~KXRichTextView() override;

    /// Replaces the text and asks for a repaint. Runs are copied as they are now, and kept for their onClick(); those
    /// that are none are left out. The images of their attachments are wrapped each time (TextAttachment::wrapImage()).
    void setKXAttributedStrings(const Runs &runs);

    // These are stored only. Set them before the runs, or call update(), and updateGeometry() for the insets.

    /// Clips what is drawn to an outline with a rounded top left, a half circle as its right end and a square bottom
    /// left. Deliberate: it is made for the size of the part that is repainted, from the view's origin.
    [[nodiscard]] bool useRoundCorner() const { return m_useRoundCorner; }
    void setUseRoundCorner(bool useRoundCorner);
    /// True at first. When false, the mouse acts on what is beneath, and the keyboard on no link.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    void setUserInteraction(bool userInteraction);
    /// Whether a pointing hand shows over the view; takes effect with the next update of the tracking areas.
    [[nodiscard]] bool userCursor() const { return m_userCursor; }
    void setUserCursor(bool userCursor);
    /// Of the caller's own. Any thread.
    [[nodiscard]] qint64 tag() const { return m_tag; }
    void setTag(qint64 tag) { m_tag = tag; }
    /// Fills the view; none does not. A translucent colour lets what is beneath show through.
    [[nodiscard]] kx::Color backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const kx::Color &backgroundColor);
    /// Left and top are where the text starts, all are added to the size of the text. Deliberate: background colours of
    /// the text are drawn without them, from the view's origin.
    [[nodiscard]] QMarginsF insets() const;
    void setInsets(const QMarginsF &insets);

    /// What the text takes up, without insets; a null rectangle without runs.
    [[nodiscard]] QRectF contentSizeRect() const;
    /// The size of the text and the insets.
    [[nodiscard]] QSizeF intrinsicContentSize() const override;
    [[nodiscard]] QSizeF fittingSize() const { return intrinsicContentSize(); }
    [[nodiscard]] bool _isAutoLayout() const { return !translatesAutoresizingMaskIntoConstraints(); }

    [[nodiscard]] bool isFlipped() const override { return true; }
    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;
    /// Calls each run at the point whose rectangle contains it: one that goes over several lines may overlap others. A
    /// handler may replace the runs or delete the view; then the old runs, or none, are gone on with.
    void mouseUp(kx::Event *event) override;
    void keyDown(kx::Event *event) override;
    void cursorUpdate(kx::Event *event) override;
    /// Deliberate: adds an area at each call and removes none.
    void updateTrackingAreas() override;

Q_SIGNALS:
    /// After the run's onClick().
    void runClicked(const std::shared_ptr<KXAttributedString> &run);
    void useRoundCornerChanged(bool useRoundCorner);
    void userInteractionChanged(bool userInteraction);
    void userCursorChanged(bool userCursor);
    void backgroundColorChanged(const kx::Color &backgroundColor);
    void insetsChanged(const QMarginsF &insets);

protected:
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    friend class AccessibleRichText;

    void _init();
    [[nodiscard]] QColor designerBackgroundColor() const { return m_backgroundColor.toQColor(); }
    void updateFocusPolicy();
    [[nodiscard]] bool isAtLink() const;
    void setCurrentLink(qsizetype index);
    /// Does what a click on the run does. The view may be gone afterwards.
    void clickRun(const std::shared_ptr<KXAttributedString> &run);

    const std::unique_ptr<RichTextBody> m_body;
    bool m_useRoundCorner = false;
    bool m_userInteraction = true;
    bool m_userCursor = false;
    std::atomic<qint64> m_tag = 0;
    kx::Color m_backgroundColor;
    Qt::FocusPolicy m_ownFocusPolicy = Qt::NoFocus; // the one that the view has given itself
};
