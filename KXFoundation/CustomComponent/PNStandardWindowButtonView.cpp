// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>

#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/UI/Application.h>
#include <KXFoundation/Platform/UI/LayoutConstraint.h>
#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

using kx::LayoutAttribute;
using kx::LayoutConstraint;
using kx::TrackingOption;

namespace {

constexpr double gap = 6;

} // namespace

PNStandardWindowButtonView::PNStandardWindowButtonView(QWidget *parent)
{
    prepareStandardButtons();
    if (parent)
        setParent(parent);
}

PNStandardWindowButtonView::~PNStandardWindowButtonView()
{
    kx::NotificationCenter::defaultCenter().removeObserver(this);
}

std::unique_ptr<PNStandardWindowButtonView> PNStandardWindowButtonView::standardWindowButtonView()
{
    return std::make_unique<PNStandardWindowButtonView>();
}

void PNStandardWindowButtonView::prepareStandardButtons()
{
    for (kx::StandardWindowButton *old : {closeBtn(), miniBtn(), fullScreenBtn()})
        delete old;

    m_closeBtn = addButton(kx::WindowButton::Close);
    const QSizeF size = m_closeBtn->bounds().size();
    m_closeBtn->setFrame({QPointF(0, 0), size});
    double x = size.width() + gap;
    m_miniBtn = addButton(kx::WindowButton::Miniaturize);
    m_miniBtn->setFrame({QPointF(x, 0), size});
    x += m_miniBtn->bounds().width() + gap;
    m_fullScreenBtn = addButton(kx::WindowButton::Zoom);
    m_fullScreenBtn->setFrame({QPointF(x, 0), size});
    if (m_contentSize == QSizeF(0, 0)) {
        // Deliberate: the last width is the minimise button's, should the two ever differ.
        const QSizeF total(x + m_miniBtn->bounds().width(), size.height());
        setFrame({QPointF(0, 0), total});
        setContentSize(total);
    }
    bindButtons(size.width());
    observe();
}

kx::StandardWindowButton *PNStandardWindowButtonView::addButton(kx::WindowButton kind)
{
    using kx::WindowStyle;
    kx::StandardWindowButton *button = kx::standardWindowButton(
        kind, WindowStyle::Titled | WindowStyle::Closable | WindowStyle::Miniaturizable | WindowStyle::Resizable)
                                           .release();
    addSubview(*button);
    return button;
}

void PNStandardWindowButtonView::bindButtons(double width)
{
    const QString format =
        kx::format("H:|-0-[closeBtn(==%f)]-%f-[miniBtn(==%f)]-%f-[zoomBtn(==%f)]", width, gap, width, gap, width);
    auto constraints = LayoutConstraint::constraintsWithVisualFormat(format, {},
        {
            {QStringLiteral("closeBtn"), closeBtn()},
            {QStringLiteral("miniBtn"), miniBtn()},
            {QStringLiteral("zoomBtn"), fullScreenBtn()},
        });
    const auto alignCenters = [&constraints](kx::ViewInterface *view, kx::ViewInterface *with) {
        constraints << LayoutConstraint::constraintWithItem(
            view, LayoutAttribute::CenterY, kx::LayoutRelation::Equal, with, LayoutAttribute::CenterY, 1, 0);
    };
    alignCenters(closeBtn(), this);
    alignCenters(miniBtn(), closeBtn());
    alignCenters(fullScreenBtn(), closeBtn());
    LayoutConstraint::activateConstraints(constraints);
}

void PNStandardWindowButtonView::observe()
{
    using Self = PNStandardWindowButtonView;
    kx::NotificationCenter &center = kx::NotificationCenter::defaultCenter();
    center.removeObserver(this);
    const QObject *window = shownWindow();
    center.addObserver(this, &Self::applicationWillBecomeActive, kx::ApplicationWillBecomeActiveNotification, window);
    center.addObserver(this, &Self::applicationDidResignActive, kx::ApplicationDidResignActiveNotification, window);
    center.addObserver(this, &Self::windowActiveChanged, kx::WindowDidBecomeMainNotification, window);
    center.addObserver(this, &Self::windowSizeChanged, kx::WindowDidResizeNotification);
    center.addObserver(this, &Self::willEnterFullScreenNotification, kx::WindowWillEnterFullScreenNotification, window);
    center.addObserver(this, &Self::willExistFullScreenNotification, kx::WindowDidExitFullScreenNotification, window);
}

// Handlers of the signal may delete the view.
void PNStandardWindowButtonView::setHovered(bool hovered)
{
    const QPointer<PNStandardWindowButtonView> alive(this);
    setMouseInside(hovered);
    if (alive)
        setNeedsDisplayForStandardWindowButtons();
}

void PNStandardWindowButtonView::setMouseInside(bool mouseInside)
{
    if (m_mouseInside == mouseInside)
        return;
    m_mouseInside = mouseInside;
    Q_EMIT mouseInsideChanged(mouseInside);
}

bool PNStandardWindowButtonView::_mouseInGroup(const kx::StandardWindowButton *) const
{
    return m_mouseInside;
}

void PNStandardWindowButtonView::setNeedsDisplayForStandardWindowButtons()
{
    for (kx::ViewInterface *view : subviews())
        view->setNeedsDisplay();
}

void PNStandardWindowButtonView::setContentSize(const QSizeF &contentSize)
{
    if (m_contentSize == contentSize)
        return;
    m_contentSize = contentSize;
    invalidateIntrinsicContentSize();
    Q_EMIT contentSizeChanged(contentSize);
}

PNBaseWindow *PNStandardWindowButtonView::ownerWin() const
{
    return qobject_cast<PNBaseWindow *>(m_ownerWin);
}

void PNStandardWindowButtonView::viewWillMoveToWindow(QWidget *window)
{
    kx::View::viewWillMoveToWindow(window);
    if (auto *next = qobject_cast<PNBaseWindow *>(window)) {
        m_ownerWin = next;
        next->setCustomStandardSuperView(this);
    } else {
        if (PNBaseWindow *owner = ownerWin())
            owner->setCustomStandardSuperView(nullptr);
        m_ownerWin = nullptr;
    }
}

void PNStandardWindowButtonView::switchFullScreenMode(bool entering, QWidget *window)
{
    const auto *own = window == shownWindow() ? qobject_cast<PNBaseWindow *>(window) : nullptr;
    if (!own)
        return;
    const bool showsThis = !entering && own->useCustomStandardView();
    setVisible(showsThis);
    if (kx::ViewInterface *system = own->systemStandardSuperView())
        system->widget()->setVisible(!showsThis);
}

void PNStandardWindowButtonView::applicationWillBecomeActive(const kx::Notification &)
{
    // Deliberate: there and back, so that the buttons draw themselves anew when the application comes back.
    const QPointer<PNStandardWindowButtonView> alive(this);
    setHovered(true);
    if (alive)
        setHovered(false);
}

void PNStandardWindowButtonView::applicationDidResignActive(const kx::Notification &)
{
    setHovered(false);
}

void PNStandardWindowButtonView::windowActiveChanged(const kx::Notification &)
{
    setHovered(false);
}

void PNStandardWindowButtonView::windowSizeChanged(const kx::Notification &)
{
    setHovered(false);
}

void PNStandardWindowButtonView::willEnterFullScreenNotification(const kx::Notification &notification)
{
    switchFullScreenMode(true, qobject_cast<QWidget *>(notification.object));
}

void PNStandardWindowButtonView::willExistFullScreenNotification(const kx::Notification &notification)
{
    switchFullScreenMode(false, qobject_cast<QWidget *>(notification.object));
}

void PNStandardWindowButtonView::updateTrackingAreas()
{
    kx::View::updateTrackingAreas();
    const auto areas = trackingAreas();
    for (const kx::TrackingAreaRef &area : areas)
        removeTrackingArea(area);
    addTrackingArea(std::make_shared<kx::TrackingArea>(bounds(),
        TrackingOption::MouseEnteredAndExited | TrackingOption::ActiveAlways | TrackingOption::InVisibleRect, this));
}

void PNStandardWindowButtonView::mouseEntered(kx::Event *event)
{
    if (kx::modalWindow())
        return;
    kx::View::mouseEntered(event);
    setHovered(true);
}

void PNStandardWindowButtonView::mouseExited(kx::Event *event)
{
    if (kx::modalWindow())
        return;
    const QPointer<PNStandardWindowButtonView> alive(this);
    setMouseInside(false);
    if (!alive)
        return;
    kx::View::mouseExited(event);
    setNeedsDisplayForStandardWindowButtons();
}
