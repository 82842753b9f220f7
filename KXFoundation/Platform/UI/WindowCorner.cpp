// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowCorner.h>

#include <KXFoundation/Platform/UI/Application.h>

#include <QtCore/QEvent>

namespace kx {

WindowCorner::WindowCorner(QWidget &window, WindowStyleMask styleMask)
    : View(&window)
{
    setGeometry(0, 0, 80, 35);
    constexpr double fromTheLeft = 7;
    constexpr double fromTheTop = 3;
    constexpr double pitch = 20;
    double x = fromTheLeft;
    for (const WindowButton kind : {WindowButton::Close, WindowButton::Miniaturize, WindowButton::Zoom}) {
        auto *button = new StandardWindowButton(kind, styleMask);
        const QSizeF size = button->bounds().size();
        button->setFrame({QPointF(x, bounds().height() - fromTheTop - size.height()), size});
        addSubview(*button);
        x += pitch;
    }
    window.installEventFilter(this);
    raise();
    show();
}

StandardWindowButton *WindowCorner::button(WindowButton kind) const
{
    for (auto *button : findChildren<StandardWindowButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (button->kind() == kind)
            return button;
    }
    return nullptr;
}

bool WindowCorner::_mouseInGroup(const StandardWindowButton *) const
{
    return m_mouseInside;
}

ViewInterface *WindowCorner::hitTest(const QPointF &point)
{
    ViewInterface *hit = View::hitTest(point);
    return hit == this ? nullptr : hit;
}

void WindowCorner::updateTrackingAreas()
{
    View::updateTrackingAreas();
    const auto areas = trackingAreas();
    for (const TrackingAreaRef &area : areas)
        removeTrackingArea(area);
    addTrackingArea(std::make_shared<TrackingArea>(bounds(),
        TrackingOption::MouseEnteredAndExited | TrackingOption::ActiveAlways | TrackingOption::InVisibleRect, this));
}

void WindowCorner::mouseEntered(Event *event)
{
    View::mouseEntered(event);
    if (!modalWindow())
        setMouseInside(true);
}

void WindowCorner::mouseExited(Event *event)
{
    View::mouseExited(event);
    setMouseInside(false);
}

void WindowCorner::setMouseInside(bool inside)
{
    m_mouseInside = inside;
    for (ViewInterface *button : subviews())
        button->setNeedsDisplay();
}

// Stays above what is put into the window later.
bool WindowCorner::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::ChildAdded)
        raise();
    return View::eventFilter(watched, event);
}

} // namespace kx
