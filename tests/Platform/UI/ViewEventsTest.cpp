// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/View.h>

#include "Support/Pointer.h"

#include <QtGui/QContextMenuEvent>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMainWindow>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using kx::EventType;

namespace {

/// Notes the handlers that are called. Those in `passed` call the implementation that they replace.
template <class Base> class Noting : public Base {
public:
    using Base::Base;

    QStringList calls;
    QStringList passed;
    QList<int> clickCounts;
    std::function<void()> onCall;
    bool wantsKeys = false;

    void mouseDown(kx::Event *event) override
    {
        if (note(u"down"_qs, event))
            Base::mouseDown(event);
    }
    void mouseUp(kx::Event *event) override
    {
        if (note(u"up"_qs, event))
            Base::mouseUp(event);
    }
    void mouseDragged(kx::Event *event) override
    {
        if (note(u"dragged"_qs, event))
            Base::mouseDragged(event);
    }
    void rightMouseDown(kx::Event *event) override
    {
        if (note(u"right down"_qs, event))
            Base::rightMouseDown(event);
    }
    void rightMouseUp(kx::Event *event) override
    {
        if (note(u"right up"_qs, event))
            Base::rightMouseUp(event);
    }
    void rightMouseDragged(kx::Event *event) override
    {
        if (note(u"right dragged"_qs, event))
            Base::rightMouseDragged(event);
    }
    void otherMouseDown(kx::Event *event) override
    {
        if (note(u"other down"_qs, event))
            Base::otherMouseDown(event);
    }
    void otherMouseUp(kx::Event *event) override
    {
        if (note(u"other up"_qs, event))
            Base::otherMouseUp(event);
    }
    void otherMouseDragged(kx::Event *event) override
    {
        if (note(u"other dragged"_qs, event))
            Base::otherMouseDragged(event);
    }
    void scrollWheel(kx::Event *event) override
    {
        if (note(u"wheel"_qs, event))
            Base::scrollWheel(event);
    }
    void keyDown(kx::Event *event) override
    {
        if (note(u"key down"_qs, event))
            Base::keyDown(event);
    }
    void pressCancelled() override
    {
        if (note(u"cancelled"_qs, nullptr))
            Base::pressCancelled();
    }
    void keyUp(kx::Event *event) override
    {
        if (note(u"key up"_qs, event))
            Base::keyUp(event);
    }
    bool acceptsFirstResponder() const override { return wantsKeys || Base::acceptsFirstResponder(); }

private:
    bool note(const QString &name, kx::Event *event)
    {
        calls << name;
        if (event)
            clickCounts << event->clickCount();
        const bool passes = passed.contains(name);
        if (const auto act = onCall)
            act(); // may delete this
        return passes;
    }
};

/// A plain widget that takes what reaches it.
class Beneath : public QWidget {
public:
    using QWidget::QWidget;
    QList<QEvent::Type> received;

protected:
    bool event(QEvent *event) override
    {
        if (event->isInputEvent())
            received << event->type();
        return event->isInputEvent() || QWidget::event(event);
    }
};

class PushView : public kx::ViewOn<QAbstractButton> {
protected:
    void paintEvent(QPaintEvent *) override { }
};

using NotingView = Noting<kx::View>;
using NotingButton = Noting<PushView>;
using Happening = std::function<void(QWidget &view, QDialog &dialog)>;

} // namespace

class ViewEventsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void routesPressDragAndRelease_data();
    void routesPressDragAndRelease();
    void movesWithoutAButtonReachNoHandler();
    void doubleClicksAreTwoPresses();
    void routesTheWheel();
    void routesKeys();
    void leavesModifierKeysToTheWidget();
    void overridesSwallow();
    void whatIsHandedOnReachesTheParent();
    void handsOnToTheClassBeneath();
    void nullIsHandedToNobody();
    void disabledViewsAreToldToo();
    void disabledViewsHandOn();
    void swallowedRightPressesBringNoMenu();
    void handedOnRightPressesBringTheMenu();
    void menusByKeyboardAreLeftAlone();
    void survivesBeingDeletedByAHandler_data();
    void survivesBeingDeletedByAHandler();
    void hearsWhenAPressComesToNothing_data();
    void hearsWhenAPressComesToNothing();
    void hearsNothingOfAPressThatIsOver();
    void takesTheFocusByClickIfItAccepts();
    void followsItsFocusPolicyOtherwise();
    void movesTheWindowUnlessItIsOpaque();
    void aKeptEventOutlivesItsHandler();
    void locatesEventsWithinItsBounds();

private:
    std::unique_ptr<QMainWindow> m_window;
    Beneath *m_beneath = nullptr;
    QPointer<NotingView> m_view;
};

void ViewEventsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QMainWindow>();
    m_beneath = new Beneath;
    m_window->setCentralWidget(m_beneath);
    m_view = new NotingView(m_beneath);
    m_view->setGeometry(10, 10, 100, 50);
    m_window->resize(300, 200);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void ViewEventsTest::cleanup()
{
    m_window.reset();
}

void ViewEventsTest::routesPressDragAndRelease_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("left") << Qt::LeftButton << QStringList{u"down"_qs, u"dragged"_qs, u"dragged"_qs, u"up"_qs};
    QTest::newRow("right") << Qt::RightButton
                           << QStringList{u"right down"_qs, u"right dragged"_qs, u"right dragged"_qs, u"right up"_qs};
    QTest::newRow("middle") << Qt::MiddleButton
                            << QStringList{u"other down"_qs, u"other dragged"_qs, u"other dragged"_qs, u"other up"_qs};
}

void ViewEventsTest::routesPressDragAndRelease()
{
    QFETCH(Qt::MouseButton, button);
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    pointer.press(button);
    pointer.moveTo(QPointF(30, 20));
    pointer.moveTo(QPointF(500, 20)); // outside: the view keeps the drag
    pointer.release(button);
    QTEST(m_view->calls, "calls");
    QVERIFY(!m_beneath->received.contains(QEvent::MouseButtonPress));
}

void ViewEventsTest::movesWithoutAButtonReachNoHandler()
{
    m_view->setMouseTracking(true);
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    pointer.moveTo(QPointF(21, 20));
    QCOMPARE(m_view->calls, QStringList());
}

void ViewEventsTest::doubleClicksAreTwoPresses()
{
    Pointer pointer(*m_view);
    pointer.doubleClick(QPointF(20, 20));
    QCOMPARE(m_view->calls, (QStringList{u"down"_qs, u"up"_qs, u"down"_qs, u"up"_qs}));
    QCOMPARE(m_view->clickCounts, (QList<int>{1, 1, 2, 1}));
}

void ViewEventsTest::routesTheWheel()
{
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    pointer.wheel(QPoint(0, 120));
    QCOMPARE(m_view->calls, QStringList{u"wheel"_qs});
    QVERIFY(!m_beneath->received.contains(QEvent::Wheel));
}

void ViewEventsTest::routesKeys()
{
    m_view->setFocus();
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    QCOMPARE(m_view->calls, (QStringList{u"key down"_qs, u"key up"_qs}));
}

void ViewEventsTest::leavesModifierKeysToTheWidget()
{
    m_view->setFocus();
    QTest::keyClick(m_window->windowHandle(), Qt::Key_Shift);
    QCOMPARE(m_view->calls, QStringList());
    QVERIFY(m_beneath->received.contains(QEvent::KeyPress)); // a QWidget lets keys go on
}

void ViewEventsTest::overridesSwallow()
{
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_view->calls, (QStringList{u"down"_qs, u"up"_qs}));
    QVERIFY(!m_beneath->received.contains(QEvent::MouseButtonPress));
    QVERIFY(!m_beneath->received.contains(QEvent::MouseButtonRelease));
}

void ViewEventsTest::whatIsHandedOnReachesTheParent()
{
    m_view->passed = QStringList{u"down"_qs};
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QVERIFY(m_beneath->received.contains(QEvent::MouseButtonPress));
    QVERIFY(!m_beneath->received.contains(QEvent::MouseButtonRelease));
}

void ViewEventsTest::handsOnToTheClassBeneath()
{
    auto *button = new NotingButton;
    button->setParent(m_beneath);
    button->setGeometry(150, 10, 50, 50);
    button->show();
    int clicks = 0;
    QObject::connect(button, &QAbstractButton::clicked, button, [&] { ++clicks; });
    Pointer pointer(*button);
    pointer.click(QPointF(20, 20));
    QCOMPARE(clicks, 0);
    button->passed = QStringList{u"down"_qs, u"up"_qs, u"key down"_qs};
    pointer.click(QPointF(20, 20));
    QCOMPARE(clicks, 1);
}

void ViewEventsTest::nullIsHandedToNobody()
{
    m_view->passed = QStringList{u"up"_qs};
    m_view->mouseUp(nullptr);
    QCOMPARE(m_view->calls, QStringList{u"up"_qs});
    m_view->onCall = [this] {
        m_view->onCall = nullptr;
        m_view->mouseUp(nullptr); // within the press, which it must not hand on
    };
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    m_beneath->received.clear();
    pointer.press();
    QCOMPARE(m_view->calls, (QStringList{u"up"_qs, u"down"_qs, u"up"_qs}));
    QCOMPARE(m_beneath->received, QList<QEvent::Type>());
}

void ViewEventsTest::disabledViewsAreToldToo()
{
    m_view->setEnabled(false);
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QCOMPARE(m_view->calls, (QStringList{u"down"_qs, u"up"_qs}));

    m_view->setEnabled(true);
    m_view->calls.clear();
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    m_view->setEnabled(false);
    pointer.release();
    QCOMPARE(m_view->calls, (QStringList{u"down"_qs, u"up"_qs}));
}

void ViewEventsTest::disabledViewsHandOn()
{
    m_view->setEnabled(false);
    m_view->passed = QStringList{u"down"_qs};
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QVERIFY(m_beneath->received.contains(QEvent::MouseButtonPress));
}

void ViewEventsTest::swallowedRightPressesBringNoMenu()
{
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20), Qt::RightButton);
    QVERIFY(!m_beneath->received.contains(QEvent::ContextMenu));
}

void ViewEventsTest::handedOnRightPressesBringTheMenu()
{
    m_view->passed = QStringList{u"right down"_qs};
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20), Qt::RightButton);
    QVERIFY(m_beneath->received.contains(QEvent::ContextMenu));
}

void ViewEventsTest::menusByKeyboardAreLeftAlone()
{
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20), Qt::RightButton);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(20, 20), m_view->mapToGlobal(QPoint(20, 20)));
    QCoreApplication::sendEvent(m_view, &menu);
    QVERIFY(m_beneath->received.contains(QEvent::ContextMenu));
}

void ViewEventsTest::survivesBeingDeletedByAHandler_data()
{
    QTest::addColumn<QString>("handler");
    for (const QString &handler : {u"down"_qs, u"dragged"_qs, u"up"_qs, u"right up"_qs, u"wheel"_qs, u"key down"_qs})
        QTest::newRow(qPrintable(handler)) << handler;
}

void ViewEventsTest::survivesBeingDeletedByAHandler()
{
    QFETCH(QString, handler);
    m_view->setFocus();
    m_view->onCall = [this, handler] {
        if (m_view->calls.last() == handler)
            delete m_view;
    };
    Pointer pointer(*m_beneath);
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    pointer.moveTo(QPointF(21, 20));
    pointer.release();
    pointer.click(QPointF(20, 20), Qt::RightButton);
    pointer.wheel(QPoint(0, 120));
    QTest::keyClick(m_window->windowHandle(), Qt::Key_A);
    QVERIFY(!m_view);
}

void ViewEventsTest::hearsWhenAPressComesToNothing_data()
{
    QTest::addColumn<Happening>("happens");
    QTest::addColumn<QStringList>("calls");
    const auto row = [](const char *name, const QStringList &calls, const Happening &happens) {
        QTest::newRow(name) << happens << calls;
    };
    const QStringList cancelled{u"down"_qs, u"cancelled"_qs};
    const QStringList released{u"down"_qs, u"up"_qs};
    row("the view is hidden", cancelled, [](QWidget &view, QDialog &) { view.hide(); });
    row("a modal window comes up", cancelled, [](QWidget &, QDialog &dialog) {
        dialog.setModal(true);
        dialog.show();
    });
    row("a modal window for this window comes up", cancelled, [](QWidget &view, QDialog &dialog) {
        dialog.setParent(view.window(), Qt::Dialog);
        dialog.setWindowModality(Qt::WindowModal);
        dialog.show();
    });
    row("another window comes up", released, [](QWidget &, QDialog &dialog) { dialog.show(); });
    row("the parent is hidden", released, [](QWidget &view, QDialog &) { view.parentWidget()->hide(); });
    row("the window is hidden", released, [](QWidget &view, QDialog &) { view.window()->hide(); });
    row("the view is disabled", released, [](QWidget &view, QDialog &) { view.setEnabled(false); });
}

void ViewEventsTest::hearsWhenAPressComesToNothing()
{
    QFETCH(Happening, happens);
    QDialog dialog;
    Pointer pointer(*m_view);
    pointer.moveTo(QPointF(20, 20));
    pointer.press();
    happens(*m_view, dialog);
    pointer.release();
    QTEST(m_view->calls, "calls");
}

void ViewEventsTest::hearsNothingOfAPressThatIsOver()
{
    QDialog dialog;
    dialog.setModal(true);
    m_view->onCall = [&] {
        if (m_view->calls.last() == u"up"_qs)
            dialog.show();
    };
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    m_view->hide();
    QCOMPARE(m_view->calls, (QStringList{u"down"_qs, u"up"_qs}));
}

void ViewEventsTest::takesTheFocusByClickIfItAccepts()
{
    QVERIFY(!m_view->acceptsFirstResponder());
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QVERIFY(!m_view->hasFocus());
    m_view->wantsKeys = true;
    pointer.click(QPointF(20, 20), Qt::RightButton);
    QVERIFY(!m_view->hasFocus());
    pointer.click(QPointF(20, 20));
    QVERIFY(m_view->hasFocus());
}

void ViewEventsTest::followsItsFocusPolicyOtherwise()
{
    m_view->setFocusPolicy(Qt::TabFocus);
    QVERIFY(!m_view->acceptsFirstResponder());
    m_view->setFocusPolicy(Qt::ClickFocus);
    QVERIFY(m_view->acceptsFirstResponder());
    Pointer pointer(*m_view);
    pointer.click(QPointF(20, 20));
    QVERIFY(m_view->hasFocus());
}

void ViewEventsTest::movesTheWindowUnlessItIsOpaque()
{
    QVERIFY(m_view->mouseDownCanMoveWindow());
    m_view->setAttribute(Qt::WA_OpaquePaintEvent);
    QVERIFY(!m_view->mouseDownCanMoveWindow());
}

void ViewEventsTest::aKeptEventOutlivesItsHandler()
{
    class Keeper : public kx::View {
    public:
        using kx::View::View;
        void mouseDown(kx::Event *event) override
        {
            live = event->qtEvent();
            copied.emplace(*event);
            assigned = *event;
            moved.emplace(std::move(*event));
        }
        const QEvent *live = nullptr;
        std::optional<kx::Event> copied;
        kx::Event assigned{kx::EventType::Other, nullptr, QPointF()};
        std::optional<kx::Event> moved;
    };
    auto *keeper = new Keeper(m_beneath);
    keeper->setGeometry(200, 10, 50, 50);
    keeper->show();
    Pointer pointer(*keeper);
    pointer.click(QPointF(20, 20));
    QVERIFY(keeper->live);
    for (const kx::Event *event : {&*keeper->copied, &keeper->assigned, &*keeper->moved}) {
        QVERIFY(event->qtEvent() != keeper->live);
        QCOMPARE(event->qtEvent()->type(), QEvent::MouseButtonPress);
        QCOMPARE(static_cast<const QMouseEvent *>(event->qtEvent())->position(), QPointF(20, 20));
        QVERIFY(event->isCopyOf(*keeper->copied));
        const kx::Event again = *event;
        QCOMPARE(again.qtEvent(), event->qtEvent());
    }
}

void ViewEventsTest::locatesEventsWithinItsBounds()
{
    class Place : public kx::View {
    public:
        Place(QWidget *parent, bool flipped)
            : kx::View(parent)
            , m_flipped(flipped)
        {
            setGeometry(10, 100, 100, 50);
            show();
        }
        bool isFlipped() const override { return m_flipped; }
        void mouseDown(kx::Event *event) override { place = locationInView(*event); }
        QPointF place;

    private:
        bool m_flipped;
    };
    for (const bool flipped : {false, true}) {
        Place view(m_beneath, flipped);
        Pointer pointer(view);
        pointer.click(QPointF(0, 0));
        QCOMPARE(view.place, QPointF(0, flipped ? 0 : 49));
        pointer.click(QPointF(99, 49));
        QCOMPARE(view.place, QPointF(99, flipped ? 49 : 0));
    }
}

QTEST_MAIN(ViewEventsTest)
#include "ViewEventsTest.moc"
