// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/NotificationCenter.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/StandardWindowButtonGroup.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/WindowNotifications.h>

#include "Support/Activation.h"
#include "Support/Pointer.h"

#include <QtGui/QAccessible>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>

#include <memory>

using namespace Qt::StringLiterals;

using kx::WindowButton;
using kx::WindowStyle;
using kx::WindowStyleMask;
Q_DECLARE_METATYPE(WindowButton)

namespace {

const WindowStyleMask common{WindowStyleMask::fromInt(15)};

class Group : public kx::View, public kx::StandardWindowButtonGroup {
public:
    using kx::View::View;
    bool _mouseInGroup(const kx::StandardWindowButton *button) const override
    {
        asked.append(button);
        return mouseInside;
    }
    bool mouseInside = false;
    mutable QList<const kx::StandardWindowButton *> asked;
};

QImage picture(QWidget &widget, double ratio)
{
    QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

QColor at(const QImage &image, double x, double y)
{
    return image.pixelColor(int(x * image.devicePixelRatio()), int(y * image.devicePixelRatio()));
}

bool isGrey(const QColor &color)
{
    return color.saturation() < 10;
}

// Where no symbol is.
QColor disc(const QImage &image)
{
    return at(image, 7, 4);
}

bool hasSymbol(const QImage &image)
{
    const QColor fill = disc(image);
    for (double x = 4; x < 10; x += 0.5) {
        for (double y = 5; y < 11; y += 0.5) {
            if (at(image, x, y).value() < fill.value() - 60)
                return true;
        }
    }
    return false;
}

/// Performs an action: notes whether the window was still there.
class Recorder : public QObject {
    Q_OBJECT
public:
    explicit Recorder(const QWidget &window)
        : m_window(window)
    {
    }
    Q_INVOKABLE void record() { wasVisible = m_window.isVisible(); }
    bool wasVisible = false;

private:
    const QWidget &m_window;
};

} // namespace

class StandardWindowButtonTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void hasItsSize_data();
    void hasItsSize();
    void isNoneForAnUnknownKind();
    void isEnabledByItsStyle_data();
    void isEnabledByItsStyle();

    void closesItsWindow();
    void minimisesItsWindow();
    void takesItsWindowIntoFullScreenAndBack();
    void keepsOtherStatesOfTheWindow();
    void performsAnActionOfTheApplicationFirst();
    void doesNothingWhenDisabled();
    void doesNothingInNoWindow();
    void doesNothingWhenReleasedOutside();
    void isPressedByTheSpaceBar();
    void isPressedByAssistiveTechnology();
    void tellsItsNameAndRole_data();
    void tellsItsNameAndRole();
    void leavesTheFocusToOthers();
    void keepsTheFocusThatTheUserGaveIt();

    void asksItsGroup();
    void isItsOwnGroupElsewhere();
    void repaintsItselfWhenItsLookChanges();
    void showsItsState_data();
    void showsItsState();
    void hasThreeColours();
    void looksPressed();
    void looksFocused();
    void pointsInwardsInFullScreen();

private:
    kx::StandardWindowButton *add(WindowButton kind, WindowStyleMask style = common);
    void showActive();
    void showInactive();

    std::unique_ptr<QMainWindow> m_window;
    Group *m_group = nullptr;
};

void StandardWindowButtonTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QMainWindow>();
    m_window->resize(300, 200);
    m_group = new Group;
    m_window->setCentralWidget(m_group);
}

kx::StandardWindowButton *StandardWindowButtonTest::add(WindowButton kind, WindowStyleMask style)
{
    kx::StandardWindowButton *button = kx::standardWindowButton(kind, style).release();
    m_group->addSubview(*button);
    return button;
}

void StandardWindowButtonTest::showActive()
{
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void StandardWindowButtonTest::showInactive()
{
    m_window->setAttribute(Qt::WA_ShowWithoutActivating);
    m_window->show();
    auto *other = new QWidget(m_window.get(), Qt::Window);
    other->resize(50, 50);
    other->show();
    other->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(other));
    QVERIFY(!m_window->isActiveWindow());
}

void StandardWindowButtonTest::hasItsSize_data()
{
    QTest::addColumn<WindowButton>("kind");
    QTest::newRow("close") << WindowButton::Close;
    QTest::newRow("minimise") << WindowButton::Miniaturize;
    QTest::newRow("zoom") << WindowButton::Zoom;
}

void StandardWindowButtonTest::hasItsSize()
{
    QFETCH(WindowButton, kind);
    const auto button = kx::standardWindowButton(kind, common);
    QCOMPARE(button->kind(), kind);
    QCOMPARE(button->bounds(), QRectF(0, 0, 14, 16));
    QCOMPARE(button->intrinsicContentSize(), QSizeF(14, 16));
    QCOMPARE(button->sizeHint(), QSize(14, 16));
    QCOMPARE(button->superview(), nullptr);
}

void StandardWindowButtonTest::isNoneForAnUnknownKind()
{
    QCOMPARE(kx::standardWindowButton(WindowButton(3), common), nullptr);
    QCOMPARE(kx::standardWindowButton(WindowButton(-1), common), nullptr);
}

void StandardWindowButtonTest::isEnabledByItsStyle_data()
{
    QTest::addColumn<int>("style");
    QTest::addColumn<QList<bool>>("enabled");
    QTest::newRow("all") << 15 << QList<bool>{true, true, true};
    QTest::newRow("none") << 0 << QList<bool>{false, false, false};
    QTest::newRow("titled") << 1 << QList<bool>{false, false, false};
    QTest::newRow("closable") << 2 << QList<bool>{true, false, false};
    QTest::newRow("miniaturizable") << 4 << QList<bool>{false, true, false};
    QTest::newRow("resizable") << 8 << QList<bool>{false, false, true};
}

void StandardWindowButtonTest::isEnabledByItsStyle()
{
    QFETCH(int, style);
    QFETCH(QList<bool>, enabled);
    for (int kind = 0; kind < 3; ++kind)
        QCOMPARE(
            kx::standardWindowButton(WindowButton(kind), WindowStyleMask::fromInt(style))->isEnabled(), enabled[kind]);
}

void StandardWindowButtonTest::closesItsWindow()
{
    auto *button = add(WindowButton::Close);
    showActive();
    Pointer(*button).click(QPointF(7, 8));
    QVERIFY(!m_window->isVisible());
}

void StandardWindowButtonTest::minimisesItsWindow()
{
    auto *button = add(WindowButton::Miniaturize);
    showActive();
    Pointer(*button).click(QPointF(7, 8));
    QVERIFY(m_window->isMinimized());
}

void StandardWindowButtonTest::takesItsWindowIntoFullScreenAndBack()
{
    auto *button = add(WindowButton::Zoom);
    showActive();
    int announced = 0;
    QObject observer;
    kx::NotificationCenter::defaultCenter().addObserver(
        &observer, [&](const kx::Notification &) { announced += m_window->isFullScreen() ? 0 : 1; },
        kx::WindowWillEnterFullScreenNotification, m_window.get());
    Pointer pointer(*button);
    pointer.click(QPointF(7, 8));
    QVERIFY(m_window->isFullScreen());
    QCOMPARE(announced, 1);
    QCoreApplication::processEvents();
    pointer.click(QPointF(7, 8));
    QVERIFY(!m_window->isFullScreen());
}

void StandardWindowButtonTest::keepsOtherStatesOfTheWindow()
{
    add(WindowButton::Zoom)->click();
    add(WindowButton::Miniaturize)->click();
    QVERIFY(m_window->isMinimized());
    QVERIFY(m_window->isFullScreen()); // when it comes back
}

void StandardWindowButtonTest::performsAnActionOfTheApplicationFirst()
{
    auto *button = add(WindowButton::Close);
    Recorder recorder(*m_window);
    button->setTarget(&recorder);
    button->setAction("record");
    showActive();
    Pointer(*button).click(QPointF(7, 8));
    QVERIFY(recorder.wasVisible);
    QVERIFY(!m_window->isVisible());
}

void StandardWindowButtonTest::doesNothingWhenDisabled()
{
    auto *button = add(WindowButton::Close, WindowStyle::Titled);
    showActive();
    Pointer(*button).click(QPointF(7, 8));
    button->click();
    QVERIFY(m_window->isVisible());
}

void StandardWindowButtonTest::doesNothingInNoWindow()
{
    const auto button = kx::standardWindowButton(WindowButton::Close, common);
    button->show();
    button->click();
    QVERIFY(button->isVisible());
}

void StandardWindowButtonTest::doesNothingWhenReleasedOutside()
{
    auto *button = add(WindowButton::Close);
    showActive();
    Pointer pointer(*button);
    pointer.moveTo(QPointF(7, 8));
    pointer.press();
    QVERIFY(button->isDown());
    pointer.moveTo(QPointF(100, 8));
    pointer.release();
    QVERIFY(m_window->isVisible());
}

void StandardWindowButtonTest::isPressedByTheSpaceBar()
{
    auto *button = add(WindowButton::Close);
    showActive();
    QTest::keyClick(m_window.get(), Qt::Key_Tab);
    QVERIFY(button->hasFocus());
    QTest::keyClick(button, Qt::Key_Space);
    QVERIFY(!m_window->isVisible());
}

void StandardWindowButtonTest::isPressedByAssistiveTechnology()
{
    auto *button = add(WindowButton::Zoom);
    showActive();
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
    QVERIFY(accessible && accessible->actionInterface());
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY(m_window->isFullScreen());
}

void StandardWindowButtonTest::tellsItsNameAndRole_data()
{
    QTest::addColumn<WindowButton>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("close") << WindowButton::Close << u"Close"_qs;
    QTest::newRow("minimise") << WindowButton::Miniaturize << u"Minimize"_qs;
    QTest::newRow("zoom") << WindowButton::Zoom << u"Full screen"_qs;
}

void StandardWindowButtonTest::tellsItsNameAndRole()
{
    QFETCH(WindowButton, kind);
    auto *button = add(kind);
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QTEST(accessible->text(QAccessible::Name), "name");
    QVERIFY(accessible->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
}

void StandardWindowButtonTest::leavesTheFocusToOthers()
{
    auto *button = add(WindowButton::Zoom);
    auto *edit = new QLineEdit(m_group);
    edit->move(0, 50);
    showActive();
    QVERIFY(!button->hasFocus()); // though it is the first that Tab reaches
    edit->setFocus(Qt::MouseFocusReason);
    Pointer(*button).click(QPointF(7, 8));
    QVERIFY(edit->hasFocus());
}

void StandardWindowButtonTest::keepsTheFocusThatTheUserGaveIt()
{
    auto *button = add(WindowButton::Close);
    showActive();
    button->setFocus(Qt::TabFocusReason);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QVERIFY(button->hasFocus());
    button->clearFocus();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QVERIFY(!button->hasFocus());
}

void StandardWindowButtonTest::asksItsGroup()
{
    auto *first = add(WindowButton::Close);
    auto *second = add(WindowButton::Zoom);
    second->setFrame(QRectF(20, 0, 14, 16));
    showActive();
    m_group->asked.clear();
    (void)picture(*first, 1);
    QCOMPARE(m_group->asked, QList<const kx::StandardWindowButton *>{first});
    (void)picture(*second, 1);
    QCOMPARE(m_group->asked, (QList<const kx::StandardWindowButton *>{first, second}));
}

void StandardWindowButtonTest::isItsOwnGroupElsewhere()
{
    auto *plain = new kx::View;
    m_window->setCentralWidget(plain);
    auto *button = kx::standardWindowButton(WindowButton::Close, common).release();
    plain->addSubview(*button);
    showActive();
    QVERIFY(!hasSymbol(picture(*button, 2)));
    Pointer pointer(*button);
    pointer.moveTo(QPointF(7, 8));
    QVERIFY(hasSymbol(picture(*button, 2)));
    pointer.moveTo(QPointF(60, -60));
    QVERIFY(!hasSymbol(picture(*button, 2)));
}

void StandardWindowButtonTest::repaintsItselfWhenItsLookChanges()
{
    class Paints : public QObject {
    public:
        int count = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            count += event->type() == QEvent::Paint;
            return false;
        }
    };
    auto *button = add(WindowButton::Close);
    button->setPalette(QPalette(Qt::white)); // active or not, it is the same: Qt sees no reason to repaint
    showActive();
    Pointer pointer(*button);
    pointer.moveTo(QPointF(60, -60));
    QCoreApplication::processEvents();
    Paints paints;
    button->installEventFilter(&paints);
    pointer.moveTo(QPointF(7, 8));
    QTRY_COMPARE(paints.count, 1);
    pointer.moveTo(QPointF(60, -60));
    QTRY_COMPARE(paints.count, 2);
    activate(nullptr);
    QTRY_COMPARE(paints.count, 3);
    activate(m_window.get());
    QTRY_COMPARE(paints.count, 4);
}

void StandardWindowButtonTest::showsItsState_data()
{
    QTest::addColumn<WindowButton>("kind");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<bool>("active");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<bool>("coloured");
    QTest::addColumn<bool>("symbol");

    const char *const names[] = {"close", "minimise", "zoom"};
    for (int kind = 0; kind < 3; ++kind) {
        for (const double ratio : {1.0, 1.5, 2.0}) {
            for (int state = 0; state < 8; ++state) {
                const bool active = state & 1;
                const bool enabled = state & 2;
                const bool hovered = state & 4;
                QTest::addRow("%s at %.1f%s%s%s", names[kind], ratio, active ? ", active" : "",
                    enabled ? "" : ", disabled", hovered ? ", hovered" : "")
                    << WindowButton(kind) << ratio << active << enabled << hovered << (enabled && (active || hovered))
                    << (enabled && hovered);
            }
        }
    }
}

void StandardWindowButtonTest::showsItsState()
{
    QFETCH(WindowButton, kind);
    QFETCH(double, ratio);
    QFETCH(bool, active);
    QFETCH(bool, enabled);
    QFETCH(bool, hovered);
    auto *button = add(kind, enabled ? common : WindowStyleMask(WindowStyle::Titled));
    if (active)
        showActive();
    else
        showInactive();
    m_group->mouseInside = hovered;
    const QImage image = picture(*button, ratio);
    QTEST(!isGrey(disc(image)), "coloured");
    QTEST(hasSymbol(image), "symbol");
    QCOMPARE(at(image, 0.5, 0.5), QColor(Qt::white)); // round
    QCOMPARE(at(image, 13.5, 15.5), QColor(Qt::white));
}

void StandardWindowButtonTest::hasThreeColours()
{
    showActive();
    const QColor close = disc(picture(*add(WindowButton::Close), 1));
    const QColor minimise = disc(picture(*add(WindowButton::Miniaturize), 1));
    const QColor zoom = disc(picture(*add(WindowButton::Zoom), 1));
    QVERIFY(close.hsvHue() < 20 || close.hsvHue() > 340);
    QVERIFY(minimise.hsvHue() > 30 && minimise.hsvHue() < 60);
    QVERIFY(zoom.hsvHue() > 90 && zoom.hsvHue() < 150);
}

void StandardWindowButtonTest::looksPressed()
{
    auto *button = add(WindowButton::Close);
    showActive();
    const QColor before = disc(picture(*button, 1));
    Pointer pointer(*button);
    pointer.moveTo(QPointF(7, 8));
    pointer.press();
    QVERIFY(disc(picture(*button, 1)).value() < before.value() - 20);
    pointer.moveTo(QPointF(100, 100));
    QCOMPARE(disc(picture(*button, 1)), before);
    pointer.release();
}

void StandardWindowButtonTest::looksFocused()
{
    auto *button = add(WindowButton::Close);
    showActive();
    const QImage before = picture(*button, 2);
    button->setFocus(Qt::TabFocusReason);
    const QImage after = picture(*button, 2);
    QVERIFY(at(before, 0.6, 8) != at(after, 0.6, 8));
    QCOMPARE(at(after, 7, 5), at(before, 7, 5));
}

void StandardWindowButtonTest::pointsInwardsInFullScreen()
{
    auto *button = add(WindowButton::Zoom);
    showActive();
    m_group->mouseInside = true;
    const QImage before = picture(*button, 2);
    m_window->setWindowState(Qt::WindowFullScreen);
    const QImage after = picture(*button, 2);
    QVERIFY(hasSymbol(after));
    QVERIFY(at(before, 4.5, 5.5) != at(after, 4.5, 5.5)); // the tip of the upper arrow
}

QTEST_MAIN(StandardWindowButtonTest)
#include "StandardWindowButtonTest.moc"
