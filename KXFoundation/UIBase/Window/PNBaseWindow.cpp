// SPDX-License-Identifier: MIT
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <algorithm>
#include <utility>

namespace {

constexpr kx::EventMask dragOrUp =
    kx::eventMask(kx::EventType::LeftMouseDragged) | kx::eventMask(kx::EventType::LeftMouseUp);

// Exactly: QRectF's own comparison is a fuzzy one.
bool isZero(const QRectF &rect)
{
    return rect.x() == 0 && rect.y() == 0 && rect.width() == 0 && rect.height() == 0;
}

kx::ViewInterface *viewOf(const QPointer<QWidget> &widget)
{
    return widget ? kx::ViewInterface::of(widget) : nullptr;
}

} // namespace

PNBaseWindow::PNBaseWindow(QWidget *parent, Qt::WindowFlags flags)
    : kx::Window(parent, flags)
{
    setUp();
}

PNBaseWindow::PNBaseWindow(
    const QRectF &contentRect, kx::WindowStyleMask styleMask, kx::BackingStore backing, bool defer, QScreen *screen)
    : kx::Window(contentRect, styleMask, backing, defer, screen)
{
    setUp();
}

PNBaseWindow::~PNBaseWindow() = default;

void PNBaseWindow::setUp()
{
    setIgnoreDragRect(true);
    setAppearance(kx::Appearance::VibrantLight);
}

void PNBaseWindow::setIgnoreDragRect(bool ignores)
{
    if (std::exchange(m_ignoreDragRect, ignores) != ignores)
        Q_EMIT ignoreDragRectChanged(ignores);
}

void PNBaseWindow::setSpecialMovableRect(const QRectF &rect)
{
    m_specialMovableRect = rect;
    Q_EMIT specialMovableRectChanged(rect);
}

void PNBaseWindow::setIncludeArr(const QList<QRectF> &rects)
{
    m_includeArr = rects;
    Q_EMIT includeArrChanged(rects);
}

void PNBaseWindow::setExcludeDic(const QVariantMap &rects)
{
    m_excludeDic = rects;
    Q_EMIT excludeDicChanged(rects);
}

QList<QRectF> PNBaseWindow::noNeedToInterventionRects() const
{
    const QSizeF size = frame().size();
    return {QRectF(0, size.height() - 3, size.width(), 3), QRectF(size.width() - 3, 0, 3, size.height()),
        QRectF(size.width() - 12, size.height() - 12, 12, 12)};
}

bool PNBaseWindow::isInNoNeedToInterventionRects(const QPointF &point) const
{
    const QList<QRectF> rects = noNeedToInterventionRects();
    return std::any_of(rects.begin(), rects.end(), [&](const QRectF &rect) { return kx::pointInRect(point, rect); });
}

QRectF PNBaseWindow::resizeAreaRect() const
{
    return {frame().width() - 20, 0, 20, 20};
}

void PNBaseWindow::sendEvent(kx::Event *event)
{
    const bool taken = event && event->type() == kx::EventType::LeftMouseDown && !leavesAlone(*event)
        && isMovableAt(event->locationInWindow());
    if (taken)
        trackMoveOrResize(*event);
    else
        kx::Window::sendEvent(event);
}

// Whether a press is none of this class's business, wherever the movable areas are.
bool PNBaseWindow::leavesAlone(const kx::Event &event) const
{
    if (isZero(m_specialMovableRect) && m_ignoreDragRect)
        return true;
    const QPointF point = event.locationInWindow();
    const double height = event.window() ? kx::screenFrame(*event.window()).height() : 0;
    if (kx::pointInRect(point, QRectF(0, height - 35, 80, 35)))
        return true;
    const kx::ViewInterface *buttons = customStandardSuperView();
    return buttons && buttons->shownWindow() == event.window()
        && kx::pointInRect(point, buttons->convertRectToView(buttons->bounds()));
}

bool PNBaseWindow::isMovableAt(const QPointF &point) const
{
    const auto holdsPoint = [&](const QRectF &rect) { return kx::pointInRect(point, rect); };
    if (!isZero(m_specialMovableRect))
        return holdsPoint(m_specialMovableRect);
    if (std::any_of(m_includeArr.begin(), m_includeArr.end(), holdsPoint))
        return true;
    if (!holdsPoint(m_excludeDic.value(QStringLiteral("mainRect")).toRectF()) || isInNoNeedToInterventionRects(point))
        return false;
    const QVariantList excluded = m_excludeDic.value(QStringLiteral("exclude")).toList();
    return std::none_of(
        excluded.begin(), excluded.end(), [&](const QVariant &rect) { return holdsPoint(rect.toRectF()); });
}

void PNBaseWindow::trackMoveOrResize(kx::Event &press)
{
    m_mouseDraggedForMoveOrResize = false;
    m_mouseDownLocation = convertRectToScreen(QRectF(press.locationInWindow(), QSizeF())).topLeft();
    m_mouseDownWindowFrame = frame();
    m_mouseDownInResizeArea = kx::pointInRect(press.locationInWindow(), resizeAreaRect());

    // Every call from here on may end with the window gone.
    const QPointer<PNBaseWindow> alive(this);
    if (const NativeEatEventBlock block = m_onNativeEatEventBlock)
        block(&press);
    if (alive)
        Q_EMIT nativeEatEvent(&press);

    auto last = kx::EventType::Other;
    while (alive) {
        std::optional<kx::Event> next = nextEvent(dragOrUp, false);
        last = next ? next->type() : kx::EventType::Other;
        if (last != kx::EventType::LeftMouseDragged)
            break; // a release stays where it is, to be delivered after this
        handleMoveOrResize(&*next);
        if (!alive)
            return;
        static_cast<void>(nextEvent(dragOrUp));
        m_mouseDraggedForMoveOrResize = true;
    }

    // Deliberate: views get the press of a mere click twice.
    if (alive && last == kx::EventType::LeftMouseUp && !m_mouseDraggedForMoveOrResize)
        kx::Window::sendEvent(&press);
    if (alive)
        kx::Window::sendEvent(&press);
}

void PNBaseWindow::handleMoveOrResize(kx::Event *event)
{
    if (!event)
        return;
    if (!canPlaceItself()) {
        if (m_mouseDownInResizeArea)
            handDragToSystemResize(Qt::RightEdge | Qt::BottomEdge);
        else
            handDragToSystemMove();
        return;
    }
    const QPointF location = convertRectToScreen(QRectF(event->locationInWindow(), QSizeF())).topLeft();
    const QPointF shift = location - m_mouseDownLocation;
    if (m_mouseDownInResizeArea)
        resizeBy(shift);
    else
        setFrame(m_mouseDownWindowFrame.translated(shift), true, false);
}

void PNBaseWindow::resizeBy(const QPointF &shift)
{
    const QSizeF least = minSize();
    const QSizeF most = maxSize();
    const QRectF &from = m_mouseDownWindowFrame;
    const double width = std::min(std::max(least.width(), from.width() + shift.x()), most.width());
    const double height = std::min(std::max(least.height(), from.height() - shift.y()), most.height());
    setFrame(QRectF(from.x(), from.y() - (height - from.height()), width, height), true, false);
}

void PNBaseWindow::center() { }

bool PNBaseWindow::canBecomeKeyWindow() const
{
    return true;
}

bool PNBaseWindow::canBecomeMainWindow() const
{
    return true;
}

kx::ViewInterface *PNBaseWindow::systemStandardSuperView() const
{
    return viewOf(m_systemStandardSuperView);
}

void PNBaseWindow::setSystemStandardSuperView(kx::ViewInterface *view)
{
    m_systemStandardSuperView = view ? view->widget() : nullptr;
}

kx::ViewInterface *PNBaseWindow::customStandardSuperView() const
{
    return viewOf(m_customStandardSuperView);
}

void PNBaseWindow::setCustomStandardSuperView(kx::ViewInterface *view)
{
    m_customStandardSuperView = view ? view->widget() : nullptr;
}

void PNBaseWindow::setUseCustomStandardView(bool uses)
{
    if (std::exchange(m_useCustomStandardView, uses) != uses)
        Q_EMIT useCustomStandardViewChanged(uses);
}
