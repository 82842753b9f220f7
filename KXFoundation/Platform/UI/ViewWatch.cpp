// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewWatch.h>

#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtCore/QEvent>
#include <QtGui/QCursor>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <utility>

namespace kx {

namespace {

QPointer<ViewWatch> theWatch;

const auto updateRequest = static_cast<QEvent::Type>(QEvent::registerEventType());

// The views at and below a widget, parents first; only those below hidden widgets unless all are wanted.
void collect(QWidget &widget, bool all, QList<QPointer<QWidget>> &views)
{
    if (ViewInterface::of(&widget))
        views.append(&widget);
    for (QObject *child : widget.children()) {
        auto *inner = qobject_cast<QWidget *>(child);
        if (inner && !inner->isWindow() && (all || !inner->isVisible()))
            collect(*inner, all, views);
    }
}

// Whether Qt looks for a widget beneath the pointer in order to deliver the event. While a button is down, the widget
// that was pressed gets everything.
bool looksForWidget(const QSinglePointEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseMove: return !event.buttons();
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return event.buttons() == event.button();
    case QEvent::Enter:
    case QEvent::Wheel: return true;
    default: return false;
    }
}

} // namespace

/// Where an event of the pointer is among the widgets.
struct ViewWatch::Place {
    Place(QWidget &target, const QSinglePointEvent &event)
        : Place(target, event, QApplication::activePopupWidget())
    {
    }

    QWidget &host; // that Qt looks in
    QPointF position; // in it
    QWidget &window;
    QPointF positionInWindow;

private:
    // An open popup gets the events of all windows.
    Place(QWidget &target, const QSinglePointEvent &event, QWidget *popup)
        : host(popup ? *popup : target)
        , position(popup ? popup->mapFromGlobal(event.globalPosition()) : event.position())
        , window(*host.window())
        , positionInWindow(host.mapTo(&window, position))
    {
    }
};

ViewWatch &ViewWatch::instance()
{
    if (!theWatch)
        theWatch = new ViewWatch(*QCoreApplication::instance());
    return *theWatch;
}

ViewWatch *ViewWatch::existing()
{
    return theWatch;
}

ViewWatch::ViewWatch(QObject &application)
    : QObject(&application)
    , m_tap(*this)
{
    application.installEventFilter(this);
    for (QWindow *window : QGuiApplication::allWindows())
        tap(*window);
}

void ViewWatch::updateTrackingAreasOf(ViewInterface &view, bool entered)
{
    addDue(view, entered ? ViewInterface::TrackingUpdate::Entered : ViewInterface::TrackingUpdate::Resized);
    if (entered)
        postUpdate();
}

// A view says itself whether it is in the list already: searching would take too long where many views enter a window.
void ViewWatch::addDue(ViewInterface &view, ViewInterface::TrackingUpdate update)
{
    if (view.m_trackingUpdate == ViewInterface::TrackingUpdate::None)
        m_due.append(view.widget());
    view.m_trackingUpdate = std::max(view.m_trackingUpdate, update);
}

bool ViewWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (watched->isWidgetType())
        widgetEvent(static_cast<QWidget &>(*watched), *event);
    else if (event->type() == QEvent::PlatformSurface && watched->isWindowType())
        tap(static_cast<QWindow &>(*watched));
    else if (event->type() == QEvent::ApplicationStateChange && watched == parent())
        m_tracker.activityChanged();
    return false;
}

void ViewWatch::widgetEvent(QWidget &widget, const QEvent &event)
{
    switch (event.type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ZOrderChange: m_tracker.views().invalidate(); break;
    case QEvent::Hide:
        m_tracker.views().invalidate();
        if (&widget == m_pressed && widget.isHidden()) // not with its parent: then it still gets the release
            losePress();
        break;
    case QEvent::Show:
        m_tracker.views().invalidate();
        settleWindows(widget, false); // what is visible below it has had an event of its own
        break;
    case QEvent::ParentChange:
        m_tracker.views().invalidate();
        settleWindows(widget, true);
        break;
    case QEvent::Enter:
        m_hitTesting.restore();
        m_tracker.cursor().widgetEntered(widget);
        break;
    case QEvent::Leave:
        m_hitTesting.restore();
        m_tracker.cursor().widgetLeft(widget);
        break;
    case QEvent::MouseMove:
        m_hitTesting.restore();
        if (!m_tracker.cursor().hovered()) // its "enter" event was spared, since one of its children is gone
            m_tracker.cursor().widgetEntered(widget);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel: m_hitTesting.restore(); break;
    default: break;
    }
}

void ViewWatch::settleWindows(QWidget &widget, bool all)
{
    QList<QPointer<QWidget>> views;
    collect(widget, all, views);
    for (const QPointer<QWidget> &view : std::as_const(views)) {
        if (view)
            ViewInterface::of(view)->settleWindow();
    }
}

void ViewWatch::tap(QWindow &window)
{
    if (window.inherits("QWidgetWindow"))
        window.installEventFilter(&m_tap);
}

bool ViewWatch::Tap::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::Enter:
    case QEvent::Leave: return m_watch.deliver(static_cast<QWindow &>(*watched), *event);
    case QEvent::Expose: m_watch.postUpdate(); return false;
    case QEvent::WindowBlocked:
        if (m_watch.m_pressed && m_watch.m_pressed->window()->windowHandle() == watched)
            m_watch.losePress();
        return false;
    default: return false;
    }
}

bool ViewWatch::deliver(QWindow &window, QEvent &event)
{
    if (!m_due.isEmpty()) {
        const QPointer<QWindow> alive(&window);
        updateTrackingAreas(false);
        if (!alive)
            return true;
    }
    const QPointer<QWidget> host(QWidget::find(window.winId()));
    if (!host)
        return false;
    const auto *pointer = event.isSinglePointEvent() ? static_cast<QSinglePointEvent *>(&event) : nullptr;
    if (pointer && looksForWidget(*pointer))
        prepareHitTesting(Place(*host, *pointer));
    QObject &receiver = window; // through the base class, where this function is public
    receiver.event(&event);
    m_hitTesting.restore();
    if (!host || host->windowHandle() != &window) // one of them is gone
        return true;
    if (pointer) {
        const Place place(*host, *pointer);
        m_tracker.pointerAt(place.window, place.positionInWindow, *pointer);
    } else if (host->isWindow() || !host->window()->geometry().contains(QCursor::pos())) {
        // (From a native widget within the window, the pointer mostly goes on to the window itself.)
        m_tracker.pointerLeft(*host->window());
    }
    return true;
}

void ViewWatch::prepareHitTesting(const Place &place)
{
    const ViewMap::Spots spots = m_tracker.views().viewsAt(place.window, place.positionInWindow);
    m_hitTesting.prepare(place.host, place.position.toPoint(), spots);
}

QWidget *ViewWatch::widgetAt(QWindow &window, const QMouseEvent &press)
{
    if (QWidget *grabber = QWidget::mouseGrabber())
        return grabber;
    QWidget *target = QWidget::find(window.winId());
    if (!target)
        return nullptr;
    const Place place(*target, press);
    prepareHitTesting(place);
    QWidget *found = place.host.childAt(place.position.toPoint());
    m_hitTesting.restore();
    return found ? found : &place.host;
}

void ViewWatch::updateTrackingAreas(bool onlyEntered)
{
    using Update = ViewInterface::TrackingUpdate;
    struct Due {
        QPointer<QWidget> widget;
        Update update;
    };
    QList<Due> taken; // before the first is updated, which may ask for more
    for (const QPointer<QWidget> &widget : std::exchange(m_due, {})) {
        if (ViewInterface *view = widget ? ViewInterface::of(widget) : nullptr)
            taken.append({widget, std::exchange(view->m_trackingUpdate, Update::None)});
    }
    for (const Due &due : std::as_const(taken)) {
        ViewInterface *view = due.widget ? ViewInterface::of(due.widget) : nullptr;
        const QWindow *window = view && view->shownWindow() ? view->shownWindow()->windowHandle() : nullptr;
        if (!window)
            continue;
        if (onlyEntered && !(due.update == Update::Entered && window->isExposed()))
            addDue(*view, due.update);
        else
            view->updateTrackingAreas();
    }
}

void ViewWatch::postUpdate()
{
    if (m_due.isEmpty() || std::exchange(m_updatePosted, true))
        return;
    // Behind the requests of layouts, also those that are still to come: views get the place they stay in first.
    QCoreApplication::postEvent(this, new QEvent(updateRequest), Qt::LowEventPriority);
}

void ViewWatch::losePress()
{
    QEvent ungrab(QEvent::UngrabMouse);
    QCoreApplication::sendEvent(std::exchange(m_pressed, nullptr), &ungrab);
}

bool ViewWatch::event(QEvent *event)
{
    if (event->type() != updateRequest)
        return QObject::event(event);
    m_updatePosted = false;
    updateTrackingAreas(true);
    return true;
}

} // namespace kx
