// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/PageView.h>

#include <KXFoundation/Platform/Web/QtWebEngine/RealEngine.h>

#include <QtCore/QChildEvent>
#include <QtGui/QAction>
#include <QtGui/QMouseEvent>
#include <QtGui/QScreen>
#include <QtWebEngineCore/QWebEnginePage>

#include <utility>

namespace kx {

namespace {

/// The page on the whole screen. Escape and closing the window end it, through the page.
class FullScreenView final : public QWebEngineView {
public:
    FullScreenView()
    {
        auto *leave = new QAction(this);
        leave->setShortcut(Qt::Key_Escape);
        connect(leave, &QAction::triggered, this, [this] { page()->triggerAction(QWebEnginePage::ExitFullScreen); });
        addAction(leave);
    }

protected:
    void closeEvent(QCloseEvent *event) override
    {
        event->ignore();
        page()->triggerAction(QWebEnginePage::ExitFullScreen);
    }
};

bool isSwallowed(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::HoverEnter:
    case QEvent::HoverMove:
    case QEvent::HoverLeave:
    case QEvent::MouseMove: return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return static_cast<const QMouseEvent &>(event).button() == Qt::LeftButton;
    default: return false;
    }
}

} // namespace

PageView::PageView() = default;

PageView::~PageView() = default;

// The engine makes the widget that gets the input anew for each renderer; every such widget is a child.
void PageView::childEvent(QChildEvent *event)
{
    if (event->added()) {
        event->child()->installEventFilter(this);
        RealEngine::endFirst(); // it draws with what has to outlive it
    } else if (event->removed()) {
        event->child()->removeEventFilter(this);
    }
    QWebEngineView::childEvent(event);
}

bool PageView::eventFilter(QObject *watched, QEvent *event)
{
    if (m_ignoresMouseEvents && isSwallowed(*event))
        return true;
    return QWebEngineView::eventFilter(watched, event);
}

void PageView::setFullScreen(bool on)
{
    if (on == bool(m_fullScreenView))
        return;
    if (on) {
        m_fullScreenView = std::make_unique<FullScreenView>();
        m_fullScreenView->setWindowTitle(window()->windowTitle());
        m_fullScreenView->setScreen(screen());
        m_fullScreenView->setGeometry(screen()->geometry());
        m_fullScreenView->setPage(page());
        m_fullScreenView->showFullScreen();
    } else {
        const auto leaving = std::exchange(m_fullScreenView, nullptr);
        setPage(leaving->page());
        leaving->hide();
    }
}

} // namespace kx
