// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/RangeControl.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QList>

#include <functional>
#include <memory>

class PlaybackBarGeometry;
class PlaybackBarPainter;
class StarClips;
struct PlaybackBarLook;
namespace kx {
class KeyboardFocus;
}

/// The progress bar of a player: what is loaded, what has been played, ticks, and a knob at the present position. It
/// grows under the pointer and tells where the pointer is; the knob can be dragged. In star mode it shows highlighted
/// clips instead, and tells when the clip that is being played is about to end and has ended.
///
/// Values are in the host's own units, seconds for example; lengths are logical pixels. The knob's images are the named
/// images "indicator" and "indicator_hover", see kx::Image::setNamed(); without them there is no knob to see. Values
/// are kept as given; those that make no sense paint nothing. Left, right, page up, page down, home and end move the
/// position as a finished drag does.
///
/// A press counts where the tracking rectangle and the bar overlap as seen by the superview: put the bar at (0, 0) of a
/// view of its own, by a layout without margins for instance. The knob's image reaches 3 below the view: leave a margin
/// in it. Main thread only; handlers may delete the bar.
class KX_UI_EXPORT PNProgressIndicator : public kx::View, public kx::RangeControl {
    Q_OBJECT
    Q_INTERFACES(kx::RangeControl)
    Q_PROPERTY(double playedValue READ playedValue WRITE setPlayedValue NOTIFY playedValueChanged)
    Q_PROPERTY(double preloadValue READ preloadValue WRITE setPreloadValue NOTIFY preloadValueChanged)
    Q_PROPERTY(double minValue READ minValue WRITE setMinValue NOTIFY minValueChanged)
    Q_PROPERTY(double maxValue READ maxValue WRITE setMaxValue NOTIFY maxValueChanged)
    Q_PROPERTY(double normalHeight READ normalHeight WRITE setNormalHeight)
    Q_PROPERTY(double hoverHeight READ hoverHeight WRITE setHoverHeight)
    Q_PROPERTY(double horizontalPadding READ horizontalPadding WRITE setHorizontalPadding)
    Q_PROPERTY(double starClipEndingAdvance READ starClipEndingAdvance WRITE setStarClipEndingAdvance)
    Q_PROPERTY(QColor stopColor READ designerStopColor WRITE setStopColor)
    Q_PROPERTY(QColor playedStartColor READ designerPlayedStartColor WRITE setPlayedStartColor)
    Q_PROPERTY(QColor playedEndColor READ designerPlayedEndColor WRITE setPlayedEndColor)
    Q_PROPERTY(QColor preloadColor READ designerPreloadColor WRITE setPreloadColor)
    Q_PROPERTY(QColor unLoadColor READ designerUnLoadColor WRITE setUnLoadColor)
    Q_PROPERTY(QColor starClipsColor READ designerStarClipsColor WRITE setStarClipsColor)
    Q_PROPERTY(bool rounded READ rounded WRITE setRounded)
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged)

public:
    /// A finished drag; `fraction` is the value divided by the range.
    using DragHandler = std::function<void(PNProgressIndicator *indicator, bool finished, double fraction)>;
    /// The part of the way at which the pointer is, 0 to 1.
    using HoverHandler = std::function<void(PNProgressIndicator *indicator, double fraction)>;
    using ExitHandler = std::function<void(PNProgressIndicator *indicator)>;
    using ClipHandler = std::function<void(qint32 index, PNProgressIndicator *indicator)>;

    explicit PNProgressIndicator(QWidget *parent = nullptr);
    explicit PNProgressIndicator(const QRectF &frame, QWidget *parent = nullptr);
    ~PNProgressIndicator() override;

    // --- values ------------------------------------------------------------------------------------------------------

    [[nodiscard]] double playedValue() const { return m_playedValue; }
    /// Ignored during a drag: the released value wins. In star mode it also gives the notices that are due.
    void setPlayedValue(double value);
    [[nodiscard]] double preloadValue() const { return m_preloadValue; }
    void setPreloadValue(double value);
    [[nodiscard]] double minValue() const { return m_minValue; }
    void setMinValue(double value);
    /// With 0 as the largest and the played value, the bar is stopped: one plain rectangle.
    [[nodiscard]] double maxValue() const { return m_maxValue; }
    void setMaxValue(double value);
    /// Positions of ticks. Setting them asks for no repaint.
    [[nodiscard]] QList<double> tags() const;
    void setTags(const QList<double> &tags);

    // --- looks -------------------------------------------------------------------------------------------------------

    /// What is painted while the bar is stopped. Setting it asks for no repaint.
    [[nodiscard]] kx::Color stopColor() const;
    void setStopColor(const kx::Color &color);
    [[nodiscard]] kx::Color playedStartColor() const;
    void setPlayedStartColor(const kx::Color &color);
    [[nodiscard]] kx::Color playedEndColor() const;
    void setPlayedEndColor(const kx::Color &color);
    [[nodiscard]] kx::Color preloadColor() const;
    void setPreloadColor(const kx::Color &color);
    [[nodiscard]] kx::Color unLoadColor() const;
    /// Deliberate: asks for a repaint and keeps the colour that the track has.
    void setUnLoadColor(const kx::Color &color);
    /// Setting it asks for no repaint.
    [[nodiscard]] kx::Color starClipsColor() const;
    void setStarClipsColor(const kx::Color &color);
    /// Round ends for the bar and its parts.
    [[nodiscard]] bool rounded() const;
    void setRounded(bool rounded);
    /// The knob's height, and 28 more than the bar's thickness: while not hovered (at first the view's own height, or
    /// 18) and while hovered (at first twice the other).
    [[nodiscard]] double normalHeight() const { return m_normalHeight; }
    void setNormalHeight(double height);
    [[nodiscard]] double hoverHeight() const { return m_hoverHeight; }
    void setHoverHeight(double height);
    /// Left and right of the bar; never below 0.
    [[nodiscard]] double horizontalPadding() const { return m_horizontalPadding; }
    void setHorizontalPadding(double padding);
    /// Draws knob and bar at another height until the next hover begins or ends.
    void updateDrawHeight(double height);
    [[nodiscard]] double indicatorHeight() const { return m_drawHeight; }
    [[nodiscard]] double progressHeight() const;

    // --- the user ----------------------------------------------------------------------------------------------------

    /// False makes the bar transparent to the mouse and ends a hover or drag. True at first.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    void setUserInteraction(bool interacts);
    /// A free number for the owner.
    [[nodiscard]] qint64 tag() const { return m_tag; }
    void setTag(qint64 tag) { m_tag = tag; }
    /// Whether the user drags the knob, or the pointer is over the bar.
    [[nodiscard]] bool isMouseDown() const { return m_isMouseDown; }
    [[nodiscard]] bool isMouseEnter() const { return m_isMouseEnter; }
    /// The value under the knob while it is dragged.
    [[nodiscard]] float draggedValue() const { return m_draggedValue; }

    // Empty for none. Each has a signal beside it, which comes after it.

    void onDraggedIndicator(const DragHandler &handler) { m_draggedIndicatorHandler = handler; }
    void onHoveredBar(const HoverHandler &handler, const ExitHandler &onExit);

    /// What assistive technology reads for a value. Empty for the default, hours, minutes and seconds.
    void setValueFormatter(const std::function<QString(double value)> &formatter) { m_valueFormatter = formatter; }

    // --- star mode ---------------------------------------------------------------------------------------------------

    /// Shows clips from `starts` to `ends`. A start without an end is not shown.
    void switch2StarMode(const QList<double> &starts, const QList<double> &ends);
    void reset2NormalMode();
    [[nodiscard]] bool isStarMode() const;
    /// As they were given; empty outside of star mode.
    [[nodiscard]] QList<double> starClipStarts() const;
    [[nodiscard]] QList<double> starClipEnds() const;
    [[nodiscard]] qint32 currentClipIdx() const;
    [[nodiscard]] double lastClipEnd() const;
    [[nodiscard]] double currentClipEnd() const;
    /// How long before its end a clip is about to end. Deliberate: the notice comes one unit earlier still.
    [[nodiscard]] double starClipEndingAdvance() const { return m_starClipEndingAdvance; }
    void setStarClipEndingAdvance(double advance) { m_starClipEndingAdvance = advance; }
    // Both come again with every new position inside their time; the host takes the first of them.
    void onStarClipDurationWillEnd(const ClipHandler &handler) { m_starClipWillEndHandler = handler; }
    void onStarClipDurationDidEnd(const ClipHandler &handler) { m_starClipDidEndHandler = handler; }

    // --- kx::View and kx::RangeControl -------------------------------------------------------------------------------

    /// As high as the higher of both heights, so that a hover does not move what is around the bar.
    [[nodiscard]] QSizeF intrinsicContentSize() const override;
    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;
    [[nodiscard]] bool mouseDownCanMoveWindow() const override { return false; }
    void mouseEntered(kx::Event *event) override;
    void mouseMoved(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void mouseDown(kx::Event *event) override;
    void mouseDragged(kx::Event *event) override;
    void mouseUp(kx::Event *event) override;
    void pressCancelled() override;
    void keyDown(kx::Event *event) override;
    void updateTrackingAreas() override;

    [[nodiscard]] kx::RangeState rangeState() const override;
    void setByUser(double value) override;
    [[nodiscard]] double keptValue(double value) const override { return static_cast<float>(value); }
    [[nodiscard]] QString valueText() const override;

Q_SIGNALS:
    void playedValueChanged(double value);
    void preloadValueChanged(double value);
    void minValueChanged(double value);
    void maxValueChanged(double value);
    void userInteractionChanged(bool interacts);
    void indicatorDragged(bool finished, double fraction);
    void barHovered(double fraction);
    void barHoverExited();
    void starClipDurationWillEnd(qint32 index);
    void starClipDurationDidEnd(qint32 index);

protected:
    bool event(QEvent *event) override;
    void drawRect(QPainter &painter, const QRectF &dirtyRect) override;
    /// Leaves painters their own pen and font: the bar needs no others, and the widget's are a tenth of a repaint.
    void initPainter(QPainter *painter) const override;

private:
    [[nodiscard]] PlaybackBarGeometry barGeometry() const;
    [[nodiscard]] QRectF trackingRect() const;
    [[nodiscard]] double range() const { return m_maxValue - m_minValue; }
    [[nodiscard]] QColor designerStopColor() const { return stopColor().toQColor(); }
    [[nodiscard]] QColor designerPlayedStartColor() const { return playedStartColor().toQColor(); }
    [[nodiscard]] QColor designerPlayedEndColor() const { return playedEndColor().toQColor(); }
    [[nodiscard]] QColor designerPreloadColor() const { return preloadColor().toQColor(); }
    [[nodiscard]] QColor designerUnLoadColor() const { return unLoadColor().toQColor(); }
    [[nodiscard]] QColor designerStarClipsColor() const { return starClipsColor().toQColor(); }
    void setColor(kx::Color &field, const kx::Color &color);
    void displayMove(const PlaybackBarGeometry &before);
    void endHover();
    void reportDrag();
    void giveNotices();
    void tellOfClip(ClipHandler handler, void (PNProgressIndicator::*signal)(qint32));

    double m_playedValue = 0;
    double m_preloadValue = 0;
    double m_minValue = 0;
    double m_maxValue = 0;
    double m_normalHeight = 0;
    double m_hoverHeight = 0;
    double m_drawHeight = 0;
    double m_horizontalPadding = 0;
    double m_starClipEndingAdvance = 4.0;
    float m_draggedValue = 0;
    bool m_isMouseDown = false;
    bool m_isMouseEnter = false;
    bool m_userInteraction = true;
    qint64 m_tag = 0;
    DragHandler m_draggedIndicatorHandler;
    HoverHandler m_hoveredBarHandler;
    ExitHandler m_exitHoveredBarHandler;
    ClipHandler m_starClipWillEndHandler;
    ClipHandler m_starClipDidEndHandler;
    std::function<QString(double)> m_valueFormatter;
    std::unique_ptr<kx::KeyboardFocus> m_keyboardFocus;
    std::unique_ptr<PlaybackBarLook> m_look;
    std::unique_ptr<StarClips> m_clips;
    std::unique_ptr<PlaybackBarPainter> m_painter;
};
