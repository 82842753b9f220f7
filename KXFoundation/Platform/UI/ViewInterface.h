// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Autoresizing.h>
#include <KXFoundation/Platform/UI/Responder.h>
#include <KXFoundation/Platform/UI/TrackingArea.h>

#include <QtCore/QEvent>
#include <QtCore/QList>
#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtWidgets/QWidget>

#include <memory>
#include <optional>

class QImage;
class QPaintEvent;
class QPainter;

namespace kx {

class ConstraintLayout;
class Event;
class ViewController;
class Layer;
class LayerShadow;

/// What a view adds to the widget that it is: coordinates with y growing upwards, subviews, hit testing, events of the
/// pointer and the keyboard, tracking areas and drawing.
///
/// Lengths are logical pixels in double precision; the widget's whole-number geometry is the truth behind them. A view
/// placed by a QLayout takes what the layout gives. Main thread only.
class KX_UI_EXPORT ViewInterface : public Responder {
public:
    ~ViewInterface() override;
    Q_DISABLE_COPY_MOVE(ViewInterface)

    /// The widget that this view is. Never null.
    [[nodiscard]] QWidget *widget() const { return m_widget; }
    /// The view that the widget is, or null for a plain widget.
    [[nodiscard]] static ViewInterface *of(QWidget *widget);

    /// The place in the superview, in that one's coordinates, or in a plain parent widget, from its bottom left.
    /// Without either there is nothing to count upwards from: the origin is then the widget's position as Qt has it.
    /// Empty for a new view.
    [[nodiscard]] QRectF frame() const;
    /// Moves each edge to the nearest whole pixel.
    void setFrame(const QRectF &frame);
    /// The view's own area: (0, 0) and its size.
    [[nodiscard]] QRectF bounds() const;

    [[nodiscard]] AutoresizingMask autoresizingMask() const { return m_autoresizingMask; }
    void setAutoresizingMask(AutoresizingMask mask) { m_autoresizingMask = mask; }
    /// Whether the mask acts. Unless set: when no QLayout places the view. Layout constraints act in any case, and win.
    [[nodiscard]] bool translatesAutoresizingMaskIntoConstraints() const;
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates) { m_translatesMask = translates; }

    /// The size that the content asks for; a length below 0 asks for none, as both do here. The next whole numbers are
    /// the widget's size hint.
    [[nodiscard]] virtual QSizeF intrinsicContentSize() const;
    /// To be called when that size has changed: the layout that the view is in asks again.
    void invalidateIntrinsicContentSize();

    /// The view that this one is a subview of; null in a plain widget.
    [[nodiscard]] ViewInterface *superview() const;
    /// From the lowest to the topmost.
    [[nodiscard]] QList<ViewInterface *> subviews() const;
    /// Puts a view on top, with the frame that it has, and makes this view its owner. It is shown unless it was
    /// explicitly hidden.
    void addSubview(ViewInterface &view);
    /// Takes the view off its parent, with the frame that it has; the caller becomes its owner. Does nothing without a
    /// parent.
    void removeFromSuperview();

    /// The view's controller if it has one, else what is next above the view: the nearest view or window among the
    /// widgets that it is in, or null.
    [[nodiscard]] Responder *nextResponder() const override;

    /// Whether the view was hidden on purpose. Qt's isHidden() is also true for a view that nobody has shown yet.
    [[nodiscard]] bool isExplicitlyHidden() const;

    /// The topmost view at `point`, this one or one below it, or null when the point meets none. The point counts in
    /// the superview's coordinates and is the place of a device pixel, as locationInView() has it. Hidden views are not
    /// met. Override it to give the view another shape.
    [[nodiscard]] virtual ViewInterface *hitTest(const QPointF &point);

    // --- coordinates ---------------------------------------------------------------------------------------------

    /// Whether y grows downwards from the top in this view's own coordinates. False unless overridden; it never changes
    /// in the life of a view.
    [[nodiscard]] virtual bool isFlipped() const;
    /// A point of the coordinates of `view`, or of the window when that is null, in this view's own.
    [[nodiscard]] QPointF convertPointFromView(const QPointF &point, const ViewInterface *view = nullptr) const;
    /// Where an event of the pointer is, in this view's own coordinates: within bounds() for every pixel of the view.
    /// (Converting its location in the window gives that as well, except that flipped views get each pixel's lower
    /// edge.)
    [[nodiscard]] QPointF locationInView(const Event &event) const;
    /// A rectangle of this view's coordinates in those of `view`, or of the window when that is null.
    [[nodiscard]] QRectF convertRectToView(const QRectF &rect, const ViewInterface *view = nullptr) const;
    /// Between this view's coordinates and its widget's; its own inverse. What drawRect() paints goes through it.
    [[nodiscard]] QRectF widgetRect(const QRectF &rect) const;

    // --- the window ----------------------------------------------------------------------------------------------

    /// The top-level widget that the view is in, from the moment at which it is shown there; null until then. Stays
    /// while the window is hidden. A view on its own is its own window.
    [[nodiscard]] QWidget *shownWindow() const { return m_window; }
    /// Called around a change of shownWindow(), by the view or by anything that it is in; null for none. Not called
    /// when the view or the window is destroyed. They must leave deleting the view to deleteLater(): Qt is in the midst
    /// of showing or moving it. They do nothing here.
    virtual void viewWillMoveToWindow(QWidget *window);
    virtual void viewDidMoveToWindow();

    /// Whether a click makes the view the one that gets the keyboard. Here: if its focus policy says so. An override
    /// that returns true need not set a policy.
    [[nodiscard]] virtual bool acceptsFirstResponder() const;
    /// Whether a press on the view may move a window that is movable by its background. Here: unless the widget says
    /// that it paints all of its area.
    [[nodiscard]] virtual bool mouseDownCanMoveWindow() const;

    // --- forms ---------------------------------------------------------------------------------------------------

    /// Called once for a view that a form has made and set up: see setAwakesFromNib(). Does nothing here. It may delete
    /// the view by deleteLater() alone.
    virtual void awakeFromNib();
    /// Whether the view comes from a form of Qt Designer, whose plugin has the form set this. awakeFromNib() is then
    /// called when the form has set all that it sets: at the latest before the view is seen for the first time. False
    /// at first.
    [[nodiscard]] bool awakesFromNib() const { return m_awakesFromNib; }
    void setAwakesFromNib(bool awakes) { m_awakesFromNib = awakes; }
    /// Whether that call is still to come.
    [[nodiscard]] bool isAsleep() const { return m_awakesFromNib && !m_isAwake; }

    // --- events --------------------------------------------------------------------------------------------------

    // The event may be null: some are sent by the view to itself, to end what is in progress. The implementations here
    // hand the event to the widget class beneath, which may let it go on to the parent; an override that does not call
    // them swallows the event, a right press together with the context menu that it would bring. Disabled views get
    // events too. The second press of a double click is a press with a click count of 2. A handler may delete the view,
    // except that rightMouseDown() must leave that to deleteLater(): Qt still asks the widget for its context menu.

    virtual void mouseDown(Event *event);
    virtual void mouseUp(Event *event);
    virtual void mouseDragged(Event *event);
    /// The left press that the view got is taken back: no release will come, because the view was hidden, a modal
    /// window has come up, or the window's wait for a drag was cut short. To be shown as no longer pressed; nothing is
    /// performed. Does nothing here.
    virtual void pressCancelled();
    virtual void rightMouseDown(Event *event);
    virtual void rightMouseUp(Event *event);
    virtual void rightMouseDragged(Event *event);
    virtual void otherMouseDown(Event *event);
    virtual void otherMouseUp(Event *event);
    virtual void otherMouseDragged(Event *event);
    virtual void scrollWheel(Event *event);
    virtual void keyDown(Event *event);
    virtual void keyUp(Event *event);

    // Sent for tracking areas alone. The first three do nothing here, cursorUpdate() shows the widget's own cursor.

    virtual void mouseEntered(Event *event);
    virtual void mouseExited(Event *event);
    virtual void mouseMoved(Event *event);
    virtual void cursorUpdate(Event *event);

    // --- tracking areas ------------------------------------------------------------------------------------------

    /// An area that says the same as one that the view has already is kept as a further copy of that one: it is
    /// reported, but owners hear once of all copies. Null is ignored.
    void addTrackingArea(const TrackingAreaRef &area);
    /// Takes off one copy. Does nothing for an area that the view does not have.
    void removeTrackingArea(const TrackingAreaRef &area);
    /// In the order in which they were added, each with its copies.
    [[nodiscard]] QList<TrackingAreaRef> trackingAreas() const;
    /// Called when the areas may need to be replaced: once when the view has entered a window, as soon as that is on
    /// the screen and the events at hand are handled; then after changes of the view's size, once for all of them
    /// before the next event of the pointer. Never for a plain move. Does nothing here.
    virtual void updateTrackingAreas();

    // --- drawing -------------------------------------------------------------------------------------------------

    /// Paints the part of the view within `dirtyRect`, which counts in the view's coordinates, while the painter counts
    /// in the widget's: see widgetRect(). Paints nothing here.
    virtual void drawRect(QPainter &painter, const QRectF &dirtyRect);
    /// Asks for a repaint of everything, or of a part in the view's coordinates.
    void setNeedsDisplay();
    void setNeedsDisplayInRect(const QRectF &rect);

    /// What is painted behind and around the drawing. Made on first use, owned by the view, never null.
    [[nodiscard]] Layer *layer();
    /// Stored only: a view has its layer whenever it is asked for.
    [[nodiscard]] bool wantsLayer() const { return m_wantsLayer; }
    void setWantsLayer(bool wants) { m_wantsLayer = wants; }
    /// Whether updateLayer() is called before each painting, to set the look of layer(). False unless overridden.
    [[nodiscard]] virtual bool wantsUpdateLayer() const;
    virtual void updateLayer();

    /// The opacity of the whole view, 1 at first: its layer and drawing are composed first and blended then. Subviews
    /// blend by the product of their own value and those above them. Stored as given; values outside of 0 to 1 paint as
    /// the nearest, what is no number as 1. A view at 0 still takes clicks.
    [[nodiscard]] double alphaValue() const { return m_alphaValue; }
    void setAlphaValue(double alpha);

protected:
    explicit ViewInterface(QWidget &widget);

    /// Lets a mouse, wheel or key event reach its handler. False when it has none; then it is the base class's. The
    /// view may be gone afterwards.
    [[nodiscard]] bool routeEvent(QEvent &event);
    /// To be called for QEvent::UngrabMouse.
    void mouseUngrabbed();
    /// Calls awakeFromNib() if the event says that it is time.
    void awakenAt(QEvent::Type type);
    /// What the widget class beneath does with an event.
    virtual bool baseEvent(QEvent &event) = 0;
    /// Paints the view, within a paint event of its widget.
    void paint(const QPaintEvent &event);
    /// To be called after the base class has handled a move or resize event.
    void geometryChanged();
    /// The size hint of a view whose class beneath hints at `base`.
    [[nodiscard]] QSize hintedSize(const QSize &base) const;

private:
    friend class ConstraintLayout;
    friend class PointerTracker;
    friend class ViewController;
    friend class ViewWatch;

    struct CountedArea {
        TrackingAreaRef area;
        qsizetype count;
    };

    [[nodiscard]] Responder *responderAbove() const;
    [[nodiscard]] QRectF inSuperview(const QRectF &rect) const;
    [[nodiscard]] QPointF pointFromSuperview(const QPointF &point) const;
    void settleSubviews();
    void settleWindow();
    void takeFocusByClick();
    void awaken();
    void handToBase(Event *event);
    [[nodiscard]] bool hasTrackingArea(const TrackingAreaRef &area) const;
    void compose(QPainter &painter, const QRect &area);
    [[nodiscard]] double alphaOnScreen() const;
    [[nodiscard]] QImage composed(const QRect &area);
    void castShadow(double alpha);

    QWidget *const m_widget;
    ViewController *m_controller = nullptr; // set and cleared by the controller
    QList<CountedArea> m_trackingAreas;
    enum class TrackingUpdate { None, Resized, Entered };
    TrackingUpdate m_trackingUpdate = TrackingUpdate::None; // that is due: kept by ViewWatch
    QSize m_trackedSize; // that updateTrackingAreas() was last called for, or will be
    QPointer<QWidget> m_window;
    struct Live {
        QEvent *event;
        Live *outer;
        bool handedToBase = false;
        bool viewIsGone = false;
    };
    Live *m_live = nullptr; // the event that is being routed, and those around it
    bool m_rightPressSwallowed = false;
    std::unique_ptr<Layer> m_layer;
    QPointer<LayerShadow> m_shadow; // its parent's
    double m_alphaValue = 1;
    bool m_wantsLayer = false;
    bool m_awakesFromNib = false;
    bool m_isAwake = false;
    AutoresizingMask m_autoresizingMask = Autoresizing::None;
    std::optional<bool> m_translatesMask;
    std::unique_ptr<ConstraintLayout> m_constraints; // of the subviews; null without any
    QSizeF m_settledSize; // the size that the subviews are placed for
    QRect m_placed; // the widget's geometry for that size of the superview
};

} // namespace kx
