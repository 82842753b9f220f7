// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/HitTesting.h>
#include <KXFoundation/Platform/UI/PointerTracker.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtCore/QObject>

class QMouseEvent;
class QSinglePointEvent;
class QWindow;

namespace kx {

/// Sees what happens to all widgets before they do, for the sake of the views among them: that they come into a window
/// or into another place, and where the pointer is. There is one for the application object, which it goes with.
///
/// Events of the pointer are taken where Qt sends them to a native window, after every filter of the application; this
/// delivers them itself, so that something can be done before and after.
class ViewWatch : public QObject {
    Q_OBJECT

public:
    /// Made on first use, which must not be before there is an application object.
    [[nodiscard]] static ViewWatch &instance();
    /// Null when none was made, or when it is gone with the application object.
    [[nodiscard]] static ViewWatch *existing();

    [[nodiscard]] PointerTracker &tracker() { return m_tracker; }

    /// The view that has had a left press and no release yet; null for none. When Qt forgets it, so that none will
    /// come, it hears QEvent::UngrabMouse.
    void setPressed(QWidget *view) { m_pressed = view; }

    /// Has the view's updateTrackingAreas() called before the next event of the pointer, however often this was asked
    /// by then. For a view that has entered a window, not later than when that is on the screen and the events at hand
    /// are handled.
    void updateTrackingAreasOf(ViewInterface &view, bool entered);

    /// The widget that Qt will find for a press on a native window, when that is delivered; null without one.
    [[nodiscard]] QWidget *widgetAt(QWindow &window, const QMouseEvent &press);

    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Place;
    /// The filter of native windows. Filters of the application see an event first.
    class Tap : public QObject {
    public:
        explicit Tap(ViewWatch &watch)
            : m_watch(watch)
        {
        }
        bool eventFilter(QObject *watched, QEvent *event) override;

    private:
        ViewWatch &m_watch;
    };

    explicit ViewWatch(QObject &application);

    void widgetEvent(QWidget &widget, const QEvent &event);
    static void settleWindows(QWidget &widget, bool all);
    void tap(QWindow &window);
    bool deliver(QWindow &window, QEvent &event);
    void prepareHitTesting(const Place &place);
    void addDue(ViewInterface &view, ViewInterface::TrackingUpdate update);
    void updateTrackingAreas(bool onlyEntered);
    void postUpdate();
    void losePress();

    Tap m_tap;
    PointerTracker m_tracker;
    HitTesting m_hitTesting;
    QList<QPointer<QWidget>> m_due; // views with a tracking update ahead, each once
    QPointer<QWidget> m_pressed;
    bool m_updatePosted = false;
};

} // namespace kx
