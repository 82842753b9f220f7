// SPDX-License-Identifier: MIT
#include "Support/Activation.h"
#include "Support/Pointer.h"
#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Toggles = QList<bool>;

constexpr int ownChrome = 0x800F;

/// Counts how often the buttons of a group paint themselves.
class PaintCount : public QObject {
public:
    explicit PaintCount(const PNStandardWindowButtonView &group)
    {
        for (kx::StandardWindowButton *button : {group.closeBtn(), group.miniBtn(), group.fullScreenBtn()})
            button->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

/// What mouseInside became, one after another.
class Record {
public:
    explicit Record(PNStandardWindowButtonView &group)
        : m_spy(&group, &PNStandardWindowButtonView::mouseInsideChanged)
    {
    }
    [[nodiscard]] Toggles toggles() const
    {
        Toggles list;
        for (const auto &arguments : m_spy)
            list << arguments.first().toBool();
        return list;
    }

private:
    QSignalSpy m_spy;
};

} // namespace

class PNStandardWindowButtonViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void laysTheButtonsOut();
    void makesTheThreeKinds();
    void bindsTheButtonsAsItsFormatSays();
    void keepsAPresetContentSize();
    void preparingAgainReplacesTheButtons();
    void centersTheButtonsInAHigherView();
    void laysOutFromTheLeftInRightToLeftLayouts();
    void asksALayoutForItsContentSize();

    void answersWhetherThePointerIsInside();
    void repaintsItsButtonsWhenAsked();
    void hasOneTrackingArea();
    void showsSymbolsWhileThePointerIsOverIt();
    void ignoresThePointerUnderAModalWindow();

    void registersWithItsWindow();
    void isUnregisteredElsewhere();
    void leavesTheRegistrationOfAnotherWindow();
    void theWindowDoesNotTakePressesOnIt();

    void redrawsWhenTheApplicationComesBack();
    void endsHoveringWhenTheApplicationGoes();
    void endsHoveringWhenAWindowBecomesMain();
    void endsHoveringWhenAnyWindowIsResized();
    void hearsOfItsWindowAloneWhenPreparedInOne();
    void hearsOfEveryWindowWhenMadeWithAParent();
    void givesWayInFullScreen_data();
    void givesWayInFullScreen();
    void fullScreenOfAnotherWindowChangesNothing();
    void switchesForItsOwnWindowOnly();
    void doesNotMindThatThereIsNoSystemGroup();
    void anEqualContentSizeChangesNothing();
    void isForgottenWhenItGoes();
    void mayBeDeletedWhenItsHoverChanges_data();
    void mayBeDeletedWhenItsHoverChanges();

private:
    void show();
    /// Shows another window, and leaves the keyboard to the first.
    void showBeside(QWidget &other);
    [[nodiscard]] PNStandardWindowButtonView &group() const { return *m_group; }

    std::unique_ptr<PNBaseWindow> m_window;
    PNStandardWindowButtonView *m_group = nullptr;
};

void PNStandardWindowButtonViewTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<PNBaseWindow>(QRectF(100, 100, 300, 200), kx::WindowStyleMask::fromInt(ownChrome));
    m_window->setCentralWidget(new kx::View);
    m_group = PNStandardWindowButtonView::standardWindowButtonView().release();
    m_group->setParent(m_window->centralWidget());
    m_group->move(100, 50);
}

void PNStandardWindowButtonViewTest::cleanup()
{
    QApplication::setLayoutDirection(Qt::LeftToRight);
    m_window.reset();
}

void PNStandardWindowButtonViewTest::show()
{
    m_window->show();
    QCoreApplication::processEvents(); // the platform activates new windows by itself, later
    activate(m_window.get());
    QVERIFY(m_window->isActiveWindow());
}

void PNStandardWindowButtonViewTest::showBeside(QWidget &other)
{
    other.show();
    QCoreApplication::processEvents();
    activate(m_window.get());
}

void PNStandardWindowButtonViewTest::laysTheButtonsOut()
{
    const auto made = PNStandardWindowButtonView::standardWindowButtonView();
    QCOMPARE(made->frame(), QRectF(0, 0, 54, 16));
    QCOMPARE(made->contentSize(), QSizeF(54, 16));
    QCOMPARE(made->intrinsicContentSize(), QSizeF(54, 16));
    QCOMPARE(made->closeBtn()->frame(), QRectF(0, 0, 14, 16));
    QCOMPARE(made->miniBtn()->frame(), QRectF(20, 0, 14, 16));
    QCOMPARE(made->fullScreenBtn()->frame(), QRectF(40, 0, 14, 16));
    QVERIFY(!made->isMouseInside());
    QCOMPARE(made->ownerWin(), nullptr);
}

void PNStandardWindowButtonViewTest::makesTheThreeKinds()
{
    QCOMPARE(group().closeBtn()->kind(), kx::WindowButton::Close);
    QCOMPARE(group().miniBtn()->kind(), kx::WindowButton::Miniaturize);
    QCOMPARE(group().fullScreenBtn()->kind(), kx::WindowButton::Zoom);
    const QList<kx::ViewInterface *> all{group().closeBtn(), group().miniBtn(), group().fullScreenBtn()};
    QCOMPARE(group().subviews(), all);
    for (const kx::ViewInterface *button : all)
        QVERIFY(button->widget()->isEnabled());
}

void PNStandardWindowButtonViewTest::bindsTheButtonsAsItsFormatSays()
{
    const double width = group().closeBtn()->bounds().width();
    QCOMPARE(kx::format("H:|-0-[closeBtn(==%f)]-%f-[miniBtn(==%f)]-%f-[zoomBtn(==%f)]", width, 6.0, width, 6.0, width),
        u"H:|-0-[closeBtn(==14.000000)]-6.000000-[miniBtn(==14.000000)]-6.000000-[zoomBtn(==14.000000)]"_qs);
    for (kx::StandardWindowButton *button : {group().closeBtn(), group().miniBtn(), group().fullScreenBtn()})
        button->setGeometry(70, 0, 30, 16);
    group().resize(100, 16);
    QCOMPARE(group().closeBtn()->frame(), QRectF(0, 0, 14, 16));
    QCOMPARE(group().miniBtn()->frame(), QRectF(20, 0, 14, 16));
    QCOMPARE(group().fullScreenBtn()->frame(), QRectF(40, 0, 14, 16));
}

void PNStandardWindowButtonViewTest::keepsAPresetContentSize()
{
    PNStandardWindowButtonView view;
    view.setContentSize(QSizeF(100, 30));
    view.setFrame(QRectF(7, 8, 120, 40));
    view.prepareStandardButtons();
    QCOMPARE(view.contentSize(), QSizeF(100, 30));
    QCOMPARE(view.frame(), QRectF(7, 8, 120, 40));
    view.setContentSize(QSizeF(0, 0));
    view.prepareStandardButtons();
    QCOMPARE(view.contentSize(), QSizeF(54, 16));
    QCOMPARE(view.frame(), QRectF(0, 0, 54, 16));
}

void PNStandardWindowButtonViewTest::preparingAgainReplacesTheButtons()
{
    const QPointer<kx::StandardWindowButton> old = group().closeBtn();
    group().prepareStandardButtons();
    QVERIFY(!old);
    QCOMPARE(group().subviews().size(), 3);
    QCOMPARE(group().fullScreenBtn()->frame(), QRectF(40, 0, 14, 16));
    delete group().miniBtn();
    QCOMPARE(group().miniBtn(), nullptr);
    group().prepareStandardButtons();
    QCOMPARE(group().subviews().size(), 3);
}

void PNStandardWindowButtonViewTest::centersTheButtonsInAHigherView()
{
    group().setFrame(QRectF(0, 0, 100, 36));
    QCOMPARE(group().closeBtn()->frame(), QRectF(0, 10, 14, 16));
    QCOMPARE(group().miniBtn()->frame(), QRectF(20, 10, 14, 16));
    QCOMPARE(group().fullScreenBtn()->frame(), QRectF(40, 10, 14, 16));
}

void PNStandardWindowButtonViewTest::laysOutFromTheLeftInRightToLeftLayouts()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    PNStandardWindowButtonView view(m_window->centralWidget());
    m_window->show();
    view.setFrame(QRectF(0, 0, 100, 16));
    QCOMPARE(view.closeBtn()->geometry(), QRect(0, 0, 14, 16));
    QCOMPARE(view.fullScreenBtn()->geometry(), QRect(40, 0, 14, 16));
}

void PNStandardWindowButtonViewTest::asksALayoutForItsContentSize()
{
    QCOMPARE(group().sizeHint(), QSize(54, 16));
    group().setContentSize(QSizeF(60.5, 20));
    QCOMPARE(group().intrinsicContentSize(), QSizeF(60.5, 20));
    QCOMPARE(group().sizeHint(), QSize(61, 20));
}

void PNStandardWindowButtonViewTest::answersWhetherThePointerIsInside()
{
    QVERIFY(!group()._mouseInGroup(group().closeBtn()));
    group().setMouseInside(true);
    QVERIFY(group()._mouseInGroup(group().closeBtn()));
    QVERIFY(group()._mouseInGroup(nullptr));
}

void PNStandardWindowButtonViewTest::repaintsItsButtonsWhenAsked()
{
    show();
    QTRY_VERIFY(group().isVisible());
    QCoreApplication::processEvents();
    const PaintCount paints(group());
    group().setMouseInside(true);
    QCoreApplication::processEvents();
    QCOMPARE(paints.count, 0);
    group().setNeedsDisplayForStandardWindowButtons();
    QTRY_COMPARE(paints.count, 3);
}

void PNStandardWindowButtonViewTest::hasOneTrackingArea()
{
    show();
    group().updateTrackingAreas();
    group().updateTrackingAreas();
    QCOMPARE(group().trackingAreas().size(), 1);
    const kx::TrackingAreaRef area = group().trackingAreas().first();
    QCOMPARE(int(area->options()), 641);
    QCOMPARE(area->rect(), group().bounds());
    QCOMPARE(area->owner(), &group());
    QVERIFY(!area->userInfo().isValid());

    const auto foreign =
        std::make_shared<kx::TrackingArea>(QRectF(0, 0, 5, 5), kx::TrackingOption::ActiveAlways, &group());
    group().addTrackingArea(foreign);
    group().updateTrackingAreas(); // takes away whatever is there
    QCOMPARE(group().trackingAreas().size(), 1);
    QCOMPARE(int(group().trackingAreas().first()->options()), 641);
}

void PNStandardWindowButtonViewTest::showsSymbolsWhileThePointerIsOverIt()
{
    show();
    const Record record(group());
    const auto picture = [this] { return group().grab().toImage(); };
    Pointer pointer(group());
    pointer.moveTo(QPointF(100, 100));
    const QImage outside = picture();
    pointer.moveTo(QPointF(17, 8)); // between two buttons
    QVERIFY(group().isMouseInside());
    const QImage inside = picture();
    QVERIFY(inside != outside);
    pointer.moveTo(QPointF(27, 8));
    QCOMPARE(picture(), inside);
    QCoreApplication::processEvents();
    const PaintCount paints(group());
    pointer.moveTo(QPointF(60, 8));
    QVERIFY(!group().isMouseInside());
    QTRY_VERIFY(paints.count >= 3);
    QCOMPARE(picture(), outside);
    QCOMPARE(record.toggles(), (Toggles{true, false}));
}

void PNStandardWindowButtonViewTest::ignoresThePointerUnderAModalWindow()
{
    show();
    Pointer pointer(group());
    pointer.moveTo(QPointF(100, 100));
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    pointer.moveTo(QPointF(7, 8));
    QVERIFY(!group().isMouseInside());
    group().mouseEntered(nullptr); // however the pointer got there
    QVERIFY(!group().isMouseInside());
    group().setMouseInside(true);
    group().mouseExited(nullptr);
    QVERIFY(group().isMouseInside());
    dialog.hide();
    group().mouseExited(nullptr);
    QVERIFY(!group().isMouseInside());
    group().mouseEntered(nullptr);
    QVERIFY(group().isMouseInside());
}

void PNStandardWindowButtonViewTest::registersWithItsWindow()
{
    QCOMPARE(m_window->customStandardSuperView(), nullptr);
    show();
    QCOMPARE(group().ownerWin(), m_window.get());
    QCOMPARE(m_window->customStandardSuperView(), &group());
}

void PNStandardWindowButtonViewTest::isUnregisteredElsewhere()
{
    show();
    group().removeFromSuperview();
    QCOMPARE(group().ownerWin(), nullptr);
    QCOMPARE(m_window->customStandardSuperView(), nullptr);

    kx::Window plain;
    plain.setCentralWidget(new kx::View);
    plain.show();
    kx::ViewInterface::of(m_window->centralWidget())->addSubview(group());
    QCOMPARE(m_window->customStandardSuperView(), &group());
    kx::ViewInterface::of(plain.centralWidget())->addSubview(group());
    QCOMPARE(group().ownerWin(), nullptr);
    QCOMPARE(m_window->customStandardSuperView(), nullptr);
}

void PNStandardWindowButtonViewTest::leavesTheRegistrationOfAnotherWindow()
{
    show();
    PNBaseWindow other(QRectF(500, 100, 300, 200), kx::WindowStyleMask::fromInt(ownChrome));
    other.setCentralWidget(new kx::View);
    other.show();
    kx::ViewInterface::of(other.centralWidget())->addSubview(group());
    QCOMPARE(group().ownerWin(), &other);
    QCOMPARE(other.customStandardSuperView(), &group());
    // The first window keeps it: it minds views in itself only.
    QCOMPARE(m_window->customStandardSuperView(), &group());
}

void PNStandardWindowButtonViewTest::theWindowDoesNotTakePressesOnIt()
{
    m_window->setIgnoreDragRect(false);
    m_window->updateMoveIncludeRect({QRectF(0, 0, 300, 200)});
    int eaten = 0;
    m_window->onNativeEatEvent([&](kx::Event *) { ++eaten; });
    show();
    Pointer(group()).click(QPointF(7, 8));
    QVERIFY(!m_window->isVisible()); // closed
    QCOMPARE(eaten, 0);
}

void PNStandardWindowButtonViewTest::redrawsWhenTheApplicationComesBack()
{
    show();
    activate(nullptr);
    const Record record(group());
    const PaintCount paints(group());
    activate(m_window.get());
    QCOMPARE(record.toggles(), (Toggles{true, false}));
    QTRY_VERIFY(paints.count >= 3);
}

void PNStandardWindowButtonViewTest::endsHoveringWhenTheApplicationGoes()
{
    show();
    group().setMouseInside(true);
    QCoreApplication::processEvents();
    const PaintCount paints(group());
    activate(nullptr);
    QVERIFY(!group().isMouseInside());
    QTRY_VERIFY(paints.count >= 3);
}

void PNStandardWindowButtonViewTest::endsHoveringWhenAWindowBecomesMain()
{
    show();
    PNBaseWindow other;
    showBeside(other);
    group().setMouseInside(true);
    activate(&other);
    QVERIFY(!group().isMouseInside());
}

void PNStandardWindowButtonViewTest::endsHoveringWhenAnyWindowIsResized()
{
    show();
    group().setMouseInside(true);
    m_window->resize(320, 220);
    QVERIFY(!group().isMouseInside());

    QWidget other;
    other.show();
    group().setMouseInside(true);
    other.resize(200, 100);
    QVERIFY(!group().isMouseInside());
    group().setMouseInside(true);
    m_window->centralWidget()->resize(10, 10); // no window
    QVERIFY(group().isMouseInside());
}

void PNStandardWindowButtonViewTest::hearsOfItsWindowAloneWhenPreparedInOne()
{
    show();
    group().prepareStandardButtons();
    PNBaseWindow other;
    showBeside(other);
    group().setMouseInside(true);
    activate(&other);
    QVERIFY(group().isMouseInside());
    activate(m_window.get());
    QVERIFY(!group().isMouseInside());

    // The application is not that window.
    group().setMouseInside(true);
    activate(nullptr);
    QVERIFY(group().isMouseInside());
    other.resize(200, 200); // every window
    QVERIFY(!group().isMouseInside());
}

void PNStandardWindowButtonViewTest::hearsOfEveryWindowWhenMadeWithAParent()
{
    show();
    auto *late = new PNStandardWindowButtonView(m_window->centralWidget());
    late->show();
    QCOMPARE(late->ownerWin(), m_window.get());
    late->setMouseInside(true);
    activate(nullptr);
    QVERIFY(!late->isMouseInside());
}

void PNStandardWindowButtonViewTest::givesWayInFullScreen_data()
{
    QTest::addColumn<bool>("useCustom");
    QTest::addColumn<bool>("customAfterwards");
    QTest::newRow("custom view in use") << true << true;
    QTest::newRow("custom view not in use") << false << false;
}

void PNStandardWindowButtonViewTest::givesWayInFullScreen()
{
    QFETCH(bool, useCustom);
    QFETCH(bool, customAfterwards);
    kx::ViewInterface *system = m_window->standardWindowButton(kx::WindowButton::Close)->superview();
    system->widget()->hide();
    m_window->setSystemStandardSuperView(system);
    m_window->setUseCustomStandardView(useCustom);
    show();
    QVERIFY(group().isVisible());

    kx::setFullScreen(*m_window, true);
    QVERIFY(!group().isVisible());
    QVERIFY(system->widget()->isVisible());
    QCoreApplication::processEvents();
    kx::setFullScreen(*m_window, false);
    QCOMPARE(group().isVisible(), customAfterwards);
    QCOMPARE(system->widget()->isVisible(), !customAfterwards);
}

void PNStandardWindowButtonViewTest::fullScreenOfAnotherWindowChangesNothing()
{
    m_window->setUseCustomStandardView(true);
    show();
    PNBaseWindow other(QRectF(500, 100, 100, 100), kx::WindowStyleMask::fromInt(ownChrome));
    other.show();
    kx::setFullScreen(other, true);
    QVERIFY(group().isVisible());
    group().hide();
    QCoreApplication::processEvents();
    kx::setFullScreen(other, false);
    QVERIFY(!group().isVisible());
}

void PNStandardWindowButtonViewTest::switchesForItsOwnWindowOnly()
{
    group().switchFullScreenMode(true, m_window.get()); // not in it yet
    group().switchFullScreenMode(true, nullptr);
    QVERIFY(!group().isExplicitlyHidden());

    kx::Window plain;
    auto *elsewhere = new PNStandardWindowButtonView;
    plain.setCentralWidget(elsewhere);
    plain.show();
    elsewhere->switchFullScreenMode(true, &plain); // no PNBaseWindow
    QVERIFY(elsewhere->isVisible());
}

void PNStandardWindowButtonViewTest::doesNotMindThatThereIsNoSystemGroup()
{
    show();
    kx::setFullScreen(*m_window, true);
    QVERIFY(!group().isVisible());
}

void PNStandardWindowButtonViewTest::anEqualContentSizeChangesNothing()
{
    show();
    QSignalSpy changed(m_group, &PNStandardWindowButtonView::contentSizeChanged);
    group().setContentSize(group().contentSize());
    QCOMPARE(changed.count(), 0);
    group().setContentSize(QSizeF(120, 40));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(group().intrinsicContentSize(), QSizeF(120, 40));
}

void PNStandardWindowButtonViewTest::isForgottenWhenItGoes()
{
    show();
    delete m_group;
    QCOMPARE(m_window->customStandardSuperView(), nullptr);
    m_window->resize(320, 220);
    activate(nullptr);
    kx::setFullScreen(*m_window, true);
    QVERIFY(m_window->isFullScreen());
}

void PNStandardWindowButtonViewTest::mayBeDeletedWhenItsHoverChanges_data()
{
    QTest::addColumn<bool>("inside");
    QTest::addColumn<std::function<void(PNStandardWindowButtonView &)>>("change");
    const auto row = [](const char *name, bool inside,
                         const std::function<void(PNStandardWindowButtonView &)> &change) {
        QTest::newRow(name) << inside << change;
    };
    row("enter", false, [](PNStandardWindowButtonView &group) { group.mouseEntered(nullptr); });
    row("exit", true, [](PNStandardWindowButtonView &group) { group.mouseExited(nullptr); });
    row("active", false, [](PNStandardWindowButtonView &group) { group.applicationWillBecomeActive({}); });
    row("inactive", true, [](PNStandardWindowButtonView &group) { group.applicationDidResignActive({}); });
}

void PNStandardWindowButtonViewTest::mayBeDeletedWhenItsHoverChanges()
{
    QFETCH(bool, inside);
    QFETCH(std::function<void(PNStandardWindowButtonView &)>, change);
    show();
    group().setMouseInside(inside);
    const QPointer<PNStandardWindowButtonView> alive(m_group);
    connect(m_group, &PNStandardWindowButtonView::mouseInsideChanged, this, [this] { delete m_group; });
    change(group());
    QVERIFY(!alive);
}

QTEST_MAIN(PNStandardWindowButtonViewTest)
#include "PNStandardWindowButtonViewTest.moc"
