// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/Image.h>
#include <KXFoundation/Platform/UI/RangeControl.h>
#include <KXFoundation/Platform/UI/View.h>

#include <functional>
#include <memory>

namespace kx {
class KeyboardFocus;
}

/// A slider, horizontal or vertical: a thin track, filled up to a knob that the user drags. With segments, the value is
/// the nearest of their ends, which are marked.
///
/// The position is a fraction of the way, from the left or from the bottom; the value is in the host's own units, from
/// minValue() to maxValue(). Both are kept as given; what makes no sense paints nothing. Arrow keys, page up, page
/// down, home and end move the knob as a finished drag does. Main thread only; handlers may delete the slider.
class KX_UI_EXPORT PNProgressSlider : public kx::View, public kx::RangeControl {
    Q_OBJECT
    Q_INTERFACES(kx::RangeControl)
    Q_PROPERTY(double progressValue READ progressValue WRITE setProgressValue NOTIFY progressValueChanged)
    Q_PROPERTY(double currentValue READ currentValue WRITE setCurrentValue NOTIFY progressValueChanged)
    Q_PROPERTY(double minValue READ minValue WRITE setMinValue NOTIFY minValueChanged)
    Q_PROPERTY(double maxValue READ maxValue WRITE setMaxValue NOTIFY maxValueChanged)
    Q_PROPERTY(qint64 segementCount READ segementCount WRITE setSegementCount)
    Q_PROPERTY(QColor mainColor READ designerMainColor WRITE setMainColor)
    Q_PROPERTY(QColor bgColor READ designerBgColor WRITE setBgColor)
    Q_PROPERTY(QColor segementColor READ designerSegementColor WRITE setSegementColor)
    Q_PROPERTY(bool useVertical READ useVertical WRITE setUseVertical)
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged)

public:
    /// A drag under way (`finished` is false) or at its end.
    using DragHandler = std::function<void(PNProgressSlider *slider, bool finished, double value)>;

    explicit PNProgressSlider(QWidget *parent = nullptr);
    explicit PNProgressSlider(const QRectF &frame, QWidget *parent = nullptr);
    ~PNProgressSlider() override;

    // --- values ------------------------------------------------------------------------------------------------------

    /// The part of the way, 0 to 1.
    [[nodiscard]] double progressValue() const { return m_progressValue; }
    void setProgressValue(double fraction);
    /// The value there, or the nearest end of a segment; 0 without a range.
    [[nodiscard]] double currentValue() const;
    /// Ignored during a drag and without a range.
    void setCurrentValue(double value);
    /// The number of segments below the current value; 0 without segments.
    [[nodiscard]] qint64 currentIndex() const;
    [[nodiscard]] double minValue() const { return m_minValue; }
    void setMinValue(double value);
    [[nodiscard]] double maxValue() const { return m_maxValue; }
    void setMaxValue(double value);
    /// More than 1 for a slider with segments. Setting it asks for no repaint.
    [[nodiscard]] qint64 segementCount() const { return m_segementCount; }
    void setSegementCount(qint64 count) { m_segementCount = count; }
    [[nodiscard]] bool isSegment() const { return m_segementCount > 1; }

    // --- looks -------------------------------------------------------------------------------------------------------

    /// The filled part.
    [[nodiscard]] kx::Color mainColor() const { return m_mainColor; }
    void setMainColor(const kx::Color &color);
    [[nodiscard]] kx::Color bgColor() const { return m_bgColor; }
    /// Deliberate: asks for a repaint and keeps the colour that the track has.
    void setBgColor(const kx::Color &color);

    // Setting these asks for no repaint.

    /// Of the marks; absent for white at alpha 0.9.
    [[nodiscard]] kx::Color segementColor() const { return m_segementColor; }
    void setSegementColor(const kx::Color &color) { m_segementColor = color; }
    [[nodiscard]] kx::Image knobImage() const { return m_knobImage; }
    void setKnobImage(const kx::Image &image) { m_knobImage = image; }
    /// While the pointer is over the slider; absent for the same one, which grows during a drag instead.
    [[nodiscard]] kx::Image hoverknobImage() const { return m_hoverknobImage; }
    void setHoverknobImage(const kx::Image &image) { m_hoverknobImage = image; }
    [[nodiscard]] bool useVertical() const { return m_useVertical; }
    void setUseVertical(bool vertical) { m_useVertical = vertical; }

    // --- the user ----------------------------------------------------------------------------------------------------

    /// False makes the slider transparent to the mouse. True at first.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    void setUserInteraction(bool interacts);
    /// A free number for the owner.
    [[nodiscard]] qint64 tag() const { return m_tag; }
    void setTag(qint64 tag) { m_tag = tag; }
    [[nodiscard]] bool isMouseDown() const { return m_isMouseDown; }
    [[nodiscard]] bool isHover() const { return m_isHover; }
    /// Empty for none. At the end of a drag that anybody hears of, by this or by indicatorDragged(), a slider with
    /// segments moves its knob to the nearest end of one.
    void onDraggedIndicator(const DragHandler &handler) { m_draggedIndicatorHandler = handler; }
    /// Ends a drag as its release does. Does nothing without one.
    void draggedIndicatorHandler();
    /// Where the knob was last drawn, in the view's coordinates; empty before that. A press counts there, too.
    [[nodiscard]] QRectF knobRect() const { return m_knobRect; }
    /// What assistive technology reads for a value. Empty for the default, the number itself.
    void setValueFormatter(const std::function<QString(double value)> &formatter) { m_valueFormatter = formatter; }

    // --- kx::View and kx::RangeControl -------------------------------------------------------------------------------

    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;
    [[nodiscard]] bool mouseDownCanMoveWindow() const override { return false; }
    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void mouseDown(kx::Event *event) override;
    void mouseDragged(kx::Event *event) override;
    void mouseUp(kx::Event *event) override;
    void pressCancelled() override;
    void cursorUpdate(kx::Event *event) override;
    void keyDown(kx::Event *event) override;
    /// Deliberate: every call but the first leaves the slider without a tracking area.
    void updateTrackingAreas() override;

    [[nodiscard]] kx::RangeState rangeState() const override;
    void setByUser(double value) override;
    [[nodiscard]] double keptValue(double value) const override;
    [[nodiscard]] QString valueText() const override;

Q_SIGNALS:
    void progressValueChanged(double fraction);
    void minValueChanged(double value);
    void maxValueChanged(double value);
    void userInteractionChanged(bool interacts);
    /// After the handler was called.
    void indicatorDragged(bool finished, double value);

protected:
    bool event(QEvent *event) override;
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;

private:
    [[nodiscard]] double range() const { return m_maxValue - m_minValue; }
    [[nodiscard]] double valueAt(double fraction) const;
    [[nodiscard]] double fractionOf(double value) const { return (value - m_minValue) / range(); }
    [[nodiscard]] QColor designerMainColor() const { return m_mainColor.toQColor(); }
    [[nodiscard]] QColor designerBgColor() const { return m_bgColor.toQColor(); }
    [[nodiscard]] QColor designerSegementColor() const { return m_segementColor.toQColor(); }
    void drawMarks(QPainter &painter) const;
    void settle();
    void report(bool finished);
    [[nodiscard]] bool isHeard() const;

    double m_progressValue = 0;
    double m_minValue = 0;
    double m_maxValue = 0;
    qint64 m_segementCount = 0;
    qint64 m_tag = 0;
    bool m_useVertical = false;
    bool m_userInteraction = true;
    bool m_isMouseDown = false;
    bool m_isHover = false;
    QRectF m_knobRect;
    kx::Color m_mainColor;
    kx::Color m_bgColor;
    kx::Color m_segementColor;
    kx::Image m_knobImage;
    kx::Image m_hoverknobImage;
    kx::TrackingAreaRef m_trackingArea;
    DragHandler m_draggedIndicatorHandler;
    std::function<QString(double)> m_valueFormatter;
    std::unique_ptr<kx::KeyboardFocus> m_keyboardFocus;
};
