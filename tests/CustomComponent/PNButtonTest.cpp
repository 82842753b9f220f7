// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNButton.h>

#include <KXFoundation/Category/ImageKXTools.h>
#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <Support/Pointer.h>

#include <QtCore/QTimer>
#include <QtGui/QAccessible>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>

using namespace Qt::StringLiterals;

namespace {

kx::Image square(const QColor &color)
{
    QImage image(20, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

QColor colorOf(const kx::Image &image)
{
    return image ? image.toQImage(1).pixelColor(10, 10) : QColor();
}

} // namespace

class PNButtonTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void hasItsDefaults();
    void showsTheImageOfItsState_data();
    void showsTheImageOfItsState();
    void showsTheNormalImageWithoutADisabledOne();
    void tintsItsImageForAHoverAndKeepsThat();
    void hovers();
    void takesItsImageFromAForm();
    void showsToolTips();
    void ignoresHovers();
    void clearsItsToolTipWhenAHoverIsIgnored();
    void showsTheLookOfItsStateWheneverItIsToldToIgnoreHovers();
    void ignoresAHoverInAWindowThatIgnoresTheMouse();
    void equalValuesChangeNothing();
    void restsWithoutAReport();
    void showsThePressedImageWhateverIsSelected();
    void performsItsActionWhereverTheReleaseIs();
    void performsItsActionEvenIfDisabledMeanwhile();
    void isPressedEvenWhileDisabled();
    void performsItsActionBeforeItLooksReleased();
    void looksReleasedWhenItsPressComesToNothing();
    void looksReleasedWhenItsWindowCutsADragShort();
    void doesNothingForAReleaseWithoutAPress();
    void swallowsRightClicks();
    void isNotHitWithoutInteraction();
    void tracksOnlyWhileEnabledAndInteractive();
    void endsAHoverWhenItsAreaIsRebuilt();
    void changesNothingUnderAModalWindow();
    void changesNothingInAModalWindowOfItsOwn();
    void setsTheCursor();
    void performsItsActionByKey();
    void showsThePressedImageWhileTheSpaceBarIsDown();
    void looksReleasedWhenTheFocusLeavesAHeldSpaceBar();
    void keepsTheImageOfAFormWhenPressedByKey();
    void looksPressedWhileAssistiveTechnologyPresses();
    void mayBeDeletedByItsListenerAndItsAction_data();
    void mayBeDeletedByItsListenerAndItsAction();
    void keepsTheImageOfAFormWhateverElseIsSet();
    void keepsThePressedImageWhenAToolTipIsSet();
    void hasImagePropertiesForForms();
    void interactsAgainWhenItAwakes();
    void mayBeDeletedWhenItAwakes();

private:
    std::unique_ptr<QWidget> m_window;
    QPointer<PNButton> m_button;
    QList<bool> m_hovers;
    const kx::Image m_normal = square(Qt::gray);
    const kx::Image m_hover = square(Qt::green);
    const kx::Image m_pressed = square(Qt::blue);
    const kx::Image m_selected = square(Qt::cyan);
    const kx::Image m_selectedHover = square(Qt::magenta);
    const kx::Image m_disabled = square(Qt::black);
};

void PNButtonTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    m_button = new PNButton(m_window.get());
    m_button->setGeometry(20, 20, 40, 40);
    m_button->setNormalImage(m_normal);
    m_button->setHoverStateListener([this](bool hovered) { m_hovers << hovered; });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PNButtonTest::cleanup()
{
    m_window.reset();
    m_hovers.clear();
}

void PNButtonTest::hasItsDefaults()
{
    PNButton button(QRectF(1, 2, 30, 40));
    QCOMPARE(button.size(), QSize(30, 40));
    QVERIFY(button.userInteraction());
    QVERIFY(!button.isSelected());
    QVERIFY(!button.isIgnoreHover());
    QVERIFY(button.toolTips().isNull());
    QVERIFY(button.selectToolTips().isNull());
    for (const kx::Image &image :
        {button.normalImage(), button.hoverImage(), button.pressedImage(), button.selectedNormalImage(),
            button.selectedHoverImage(), button.selectedPressedImage(), button.disableImage(), button.image()})
        QVERIFY(!image);
}

void PNButtonTest::showsTheImageOfItsState_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<QString>("image");
    QTest::newRow("enabled") << true << false << false << u"normal"_s;
    QTest::newRow("hovered") << true << false << true << u"hover"_s;
    QTest::newRow("selected") << true << true << false << u"selected"_s;
    QTest::newRow("selected, hovered") << true << true << true << u"selectedHover"_s;
    QTest::newRow("disabled") << false << false << false << u"disabled"_s;
    QTest::newRow("disabled, selected") << false << true << false << u"disabled"_s;
    QTest::newRow("disabled while hovered") << false << false << true << u"disabled"_s;
    QTest::newRow("disabled while selected and hovered") << false << true << true << u"disabled"_s;
}

void PNButtonTest::showsTheImageOfItsState()
{
    QFETCH(bool, enabled);
    QFETCH(bool, selected);
    QFETCH(bool, hovered);
    QFETCH(QString, image);
    m_button->setHoverImage(m_hover);
    m_button->setSelectedNormalImage(m_selected);
    m_button->setSelectedHoverImage(m_selectedHover);
    m_button->setDisableImage(m_disabled);
    m_button->setSelected(selected);
    if (hovered)
        m_button->mouseEntered(nullptr);
    m_button->setEnabled(enabled);
    const QHash<QString, kx::Image> images{{u"normal"_s, m_normal}, {u"hover"_s, m_hover}, {u"selected"_s, m_selected},
        {u"selectedHover"_s, m_selectedHover}, {u"disabled"_s, m_disabled}};
    QCOMPARE(colorOf(m_button->image()), colorOf(images.value(image)));
    QVERIFY(m_button->image() == images.value(image));
}

void PNButtonTest::showsTheNormalImageWithoutADisabledOne()
{
    m_button->setEnabled(false);
    QVERIFY(m_button->image() == m_normal);
    m_button->setDisableImage(m_disabled);
    QVERIFY(m_button->image() == m_disabled);
}

void PNButtonTest::tintsItsImageForAHoverAndKeepsThat()
{
    m_button->mouseEntered(nullptr);
    const kx::Image tinted = m_button->image();
    QCOMPARE(colorOf(tinted), QColor(255, 46, 67));
    m_button->mouseExited(nullptr);
    QVERIFY(m_button->image() == m_normal);
    m_button->mouseEntered(nullptr);
    QVERIFY(m_button->image() == tinted);
    m_button->setNormalImage(m_disabled); // Deliberate: another one is not tinted any more
    QVERIFY(m_button->hoverImage() == tinted);
    m_button->setSelectedNormalImage(m_selected);
    m_button->setSelected(true);
    QCOMPARE(colorOf(m_button->image()), QColor(255, 46, 67));
    QVERIFY(m_button->selectedHoverImage() == m_button->selectedHoverImage());
}

void PNButtonTest::hovers()
{
    QSignalSpy signal(m_button, &PNButton::hoverStateChanged);
    m_button->setHoverImage(m_hover);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    QTRY_COMPARE(m_hovers, QList<bool>{true});
    QVERIFY(m_button->image() == m_hover);
    pointer.moveTo({100, 20});
    QTRY_COMPARE(m_hovers, (QList<bool>{true, false}));
    QVERIFY(m_button->image() == m_normal);
    QCOMPARE(signal.count(), 2);
}

void PNButtonTest::takesItsImageFromAForm()
{
    PNButton button;
    button.setImage(m_hover);
    button.awakeFromNib();
    QVERIFY(button.normalImage() == m_hover);
    button.setNormalImage(m_normal);
    button.setImage(m_hover);
    button.awakeFromNib(); // there is one
    QVERIFY(button.image() == m_normal);
}

void PNButtonTest::showsToolTips()
{
    m_button->setToolTip(u"own"_s);
    m_button->setSelected(true);
    QCOMPARE(m_button->toolTip(), u"own"_s); // absent ones leave it
    m_button->setToolTips(u"play"_s);
    m_button->setSelectToolTips(u"pause"_s);
    QCOMPARE(m_button->toolTip(), u"pause"_s);
    m_button->setSelected(false);
    QCOMPARE(m_button->toolTip(), u"play"_s);
    m_button->setSelectToolTips(QString());
    m_button->setSelected(true);
    QCOMPARE(m_button->toolTip(), u"play"_s);
    m_button->setSelectToolTips(u""_s); // empty is not absent
    QCOMPARE(m_button->toolTip(), QString());
}

void PNButtonTest::ignoresHovers()
{
    m_button->setIsIgnoreHover(true);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.moveTo({21, 20});
    QVERIFY(m_button->image() == m_normal);
    QVERIFY(m_hovers.isEmpty());
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    pointer.moveTo({100, 20});
    QVERIFY(m_hovers.isEmpty());
}

void PNButtonTest::clearsItsToolTipWhenAHoverIsIgnored()
{
    m_button->setToolTips(u"play"_s);
    m_button->setIsIgnoreHover(true);
    QCOMPARE(m_button->toolTip(), u"play"_s);
    m_button->mouseEntered(nullptr);
    QCOMPARE(m_button->toolTip(), QString());
    QVERIFY(!m_button->toolTip().isNull()); // empty, not absent
    m_button->updateImage();
    m_button->mouseExited(nullptr); // for either value
    QCOMPARE(m_button->toolTip(), QString());
}

void PNButtonTest::showsTheLookOfItsStateWheneverItIsToldToIgnoreHovers()
{
    m_button->setImage(m_hover);
    m_button->setIsIgnoreHover(false); // as it is
    QVERIFY(m_button->image() == m_normal);
}

void PNButtonTest::ignoresAHoverInAWindowThatIgnoresTheMouse()
{
    m_button->setHoverImage(m_hover);
    m_button->setToolTips(u"play"_s);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_button->mouseEntered(nullptr);
    QVERIFY(m_button->image() == m_normal);
    QCOMPARE(m_button->toolTip(), QString());
    QVERIFY(m_hovers.isEmpty());
    m_button->updateImage(); // the hover is there all the same
    QVERIFY(m_button->image() == m_hover);
    m_button->mouseExited(nullptr); // its end is reported
    QCOMPARE(m_hovers, QList<bool>{false});
}

void PNButtonTest::equalValuesChangeNothing()
{
    m_button->setPressedImage(m_pressed);
    m_button->mouseEntered(nullptr);
    m_button->mouseDown(nullptr);
    const kx::TrackingAreaRef area = m_button->trackingAreas().value(0);
    m_button->setSelected(false);
    m_button->setUserInteraction(true);
    m_button->setEnabled(true);
    QVERIFY(m_button->image() == m_pressed);
    QCOMPARE(m_button->trackingAreas(), QList{area});
    QCOMPARE(m_hovers, QList<bool>{true});
}

void PNButtonTest::restsWithoutAReport()
{
    m_button->setHoverImage(m_hover);
    m_button->mouseEntered(nullptr);
    m_hovers.clear();
    m_button->restBtnState();
    QVERIFY(m_button->image() == m_normal);
    QVERIFY(m_hovers.isEmpty());
}

void PNButtonTest::showsThePressedImageWhateverIsSelected()
{
    m_button->setPressedImage(m_pressed);
    m_button->setSelectedPressedImage(m_hover);
    for (const bool selected : {false, true}) {
        m_button->setSelected(selected);
        Pointer pointer(*m_button);
        pointer.moveTo({20, 20});
        pointer.press();
        QVERIFY(m_button->image() == m_pressed);
        pointer.release();
        QVERIFY(m_button->image() != m_pressed);
        pointer.moveTo({100, 20});
    }
    QVERIFY(m_button->selectedPressedImage() == m_hover);
    m_button->setSelected(false);
    m_button->setPressedImage(nullptr);
    m_button->mouseDown(nullptr);
    QVERIFY(m_button->image() == m_normal);
    m_button->mouseUp(nullptr);
}

void PNButtonTest::performsItsActionWhereverTheReleaseIs()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.press();
    pointer.moveTo({150, 60});
    QCOMPARE(clicked.count(), 0);
    pointer.release();
    QCOMPARE(clicked.count(), 1);
    pointer.click({20, 20});
    QCOMPARE(clicked.count(), 2);
}

void PNButtonTest::performsItsActionEvenIfDisabledMeanwhile()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.press();
    m_button->setEnabled(false);
    pointer.release();
    QCOMPARE(clicked.count(), 1);
}

// Deliberate: a press does not ask either whether it is enabled.
void PNButtonTest::isPressedEvenWhileDisabled()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->setPressedImage(m_pressed);
    m_button->setDisableImage(m_disabled);
    m_button->setEnabled(false);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.press();
    QVERIFY(m_button->image() == m_pressed);
    pointer.release();
    QVERIFY(m_button->image() == m_disabled);
    QCOMPARE(clicked.count(), 1);
}

void PNButtonTest::performsItsActionBeforeItLooksReleased()
{
    m_button->setPressedImage(m_pressed);
    kx::Image inTheAction;
    QDialog dialog;
    dialog.setModal(true);
    connect(m_button, &QAbstractButton::clicked, this, [&] {
        dialog.show();
        inTheAction = m_button->image();
    });
    m_button->mouseDown(nullptr);
    m_button->mouseUp(nullptr);
    QVERIFY(inTheAction == m_pressed);
    QVERIFY(m_button->image() == m_normal);
}

void PNButtonTest::looksReleasedWhenItsPressComesToNothing()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->setPressedImage(m_pressed);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.press();
    QVERIFY(m_button->image() == m_pressed);
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QVERIFY(m_button->image() != m_pressed);
    pointer.release();
    m_button->mouseUp(nullptr); // there is no press any more
    QCOMPARE(clicked.count(), 0);
    dialog.hide();
    pointer.click({20, 20});
    QCOMPARE(clicked.count(), 1);
}

void PNButtonTest::looksReleasedWhenItsWindowCutsADragShort()
{
    class Counted : public PNButton {
    public:
        using PNButton::PNButton;
        int presses = 0;
        void mouseDown(kx::Event *event) override
        {
            PNButton::mouseDown(event);
            presses += image() == pressedImage();
        }
    };
    PNBaseWindow window(QRectF(100, 100, 200, 100), kx::WindowStyle::Borderless);
    window.setIgnoreDragRect(false);
    window.updateMoveIncludeRect({QRectF(0, 0, 200, 100)});
    window.setCentralWidget(new QWidget);
    auto *button = new Counted(window.centralWidget());
    button->setGeometry(100, 40, 90, 50);
    button->setNormalImage(m_normal);
    button->setPressedImage(m_pressed);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QSignalSpy clicked(button, &QAbstractButton::clicked);
    Pointer pointer(*button);
    pointer.moveTo({20, 20});
    QTimer::singleShot(0, &window, [&] { pointer.moveWithButtons({1, 1}, Qt::NoButton); });
    pointer.press();
    QCOMPARE(button->presses, 1);
    QVERIFY(button->image() != m_pressed);
    pointer.release();
    QCOMPARE(clicked.count(), 0);
}

void PNButtonTest::doesNothingForAReleaseWithoutAPress()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->mouseUp(nullptr);
    QCOMPARE(clicked.count(), 0);
}

void PNButtonTest::swallowsRightClicks()
{
    class Parent : public QWidget {
    public:
        int events = 0;

    protected:
        void mousePressEvent(QMouseEvent *) override { ++events; }
        void contextMenuEvent(QContextMenuEvent *) override { ++events; }
    };
    Parent parent;
    parent.resize(100, 100);
    PNButton button(&parent);
    button.setGeometry(0, 0, 40, 40);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    Pointer(button).click({20, 20}, Qt::RightButton);
    QCOMPARE(parent.events, 0);
    QCOMPARE(clicked.count(), 0);
}

void PNButtonTest::isNotHitWithoutInteraction()
{
    const QPointF middle = m_button->frame().center();
    kx::ViewInterface *const button = m_button;
    QCOMPARE(m_button->hitTest(middle), button);
    m_button->setUserInteraction(false);
    QVERIFY(!m_button->hitTest(middle));
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    Pointer(*m_button).click({20, 20});
    QCOMPARE(clicked.count(), 0);
    m_button->setUserInteraction(true);
    m_button->hide();
    QVERIFY(!m_button->hitTest(middle));
}

void PNButtonTest::tracksOnlyWhileEnabledAndInteractive()
{
    QCOMPARE(m_button->trackingAreas().size(), 1);
    QCOMPARE(m_button->trackingAreas().first()->options().toInt(), 0x347);
    QCOMPARE(m_button->trackingAreas().first()->rect(), QRectF(0, 0, 40, 40));
    m_button->setEnabled(false);
    QVERIFY(m_button->trackingAreas().isEmpty());
    m_button->setEnabled(true);
    QCOMPARE(m_button->trackingAreas().size(), 1);
    m_button->setUserInteraction(false);
    QVERIFY(m_button->trackingAreas().isEmpty());
    m_button->setUserInteraction(true);
    QCOMPARE(m_button->trackingAreas().size(), 1);
}

void PNButtonTest::endsAHoverWhenItsAreaIsRebuilt()
{
    m_button->mouseEntered(nullptr);
    m_button->updateTrackingAreas();
    QCOMPARE(m_hovers, (QList<bool>{true, false}));
    QVERIFY(m_button->image() == m_normal);
}

void PNButtonTest::changesNothingUnderAModalWindow()
{
    m_button->setHoverImage(m_hover);
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    m_button->mouseEntered(nullptr);
    QVERIFY(m_hovers.isEmpty());
    dialog.hide();
    m_button->mouseEntered(nullptr);
    dialog.show();
    m_button->mouseExited(nullptr);
    QCOMPARE(m_hovers, QList<bool>{true});
    QVERIFY(m_button->image() == m_hover);
}

// Deliberate: it does not matter whose modal window it is.
void PNButtonTest::changesNothingInAModalWindowOfItsOwn()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.resize(200, 100);
    PNButton button(&dialog);
    button.setGeometry(20, 20, 40, 40);
    button.setNormalImage(m_normal);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    Pointer pointer(button);
    pointer.moveTo({100, 20});
    pointer.moveTo({20, 20});
    QVERIFY(button.image() == m_normal);
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    button.mouseExited(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
}

void PNButtonTest::setsTheCursor()
{
    Pointer pointer(*m_button);
    pointer.moveTo({100, 20});
    pointer.moveTo({20, 20});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    pointer.moveTo({100, 20});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);

    pointer.moveTo({20, 20});
    m_button->mouseExited(nullptr); // sets one of its own
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_button->cursorUpdate(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
}

void PNButtonTest::performsItsActionByKey()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    QTest::keyClick(m_button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 1);
    QAccessible::queryAccessibleInterface(m_button)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(clicked.count(), 2);
}

void PNButtonTest::showsThePressedImageWhileTheSpaceBarIsDown()
{
    m_button->setPressedImage(m_pressed);
    m_button->setSelectedNormalImage(m_selected);
    QTest::keyPress(m_button, Qt::Key_Space);
    QVERIFY(m_button->image() == m_pressed);
    m_button->setNormalImage(m_hover);
    QVERIFY(m_button->image() == m_pressed);
    QTest::keyRelease(m_button, Qt::Key_Space);
    QVERIFY(m_button->image() == m_hover);

    m_button->setSelected(true);
    QTest::keyPress(m_button, Qt::Key_Space);
    QVERIFY(m_button->image() == m_pressed);
    QTest::keyRelease(m_button, Qt::Key_Space);
    QVERIFY(m_button->image() == m_selected);
}

void PNButtonTest::looksReleasedWhenTheFocusLeavesAHeldSpaceBar()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->setPressedImage(m_pressed);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_button->setFocus(Qt::TabFocusReason);
    QTest::keyPress(m_button, Qt::Key_Space);
    QVERIFY(m_button->image() == m_pressed);
    m_button->clearFocus();
    QVERIFY(m_button->image() == m_normal);
    QTest::keyRelease(m_button, Qt::Key_Space);
    QCOMPARE(clicked.count(), 0);
}

void PNButtonTest::keepsTheImageOfAFormWhenPressedByKey()
{
    PNButton button(m_window.get());
    button.setImage(m_hover);
    QTest::keyClick(&button, Qt::Key_Space);
    QVERIFY(button.image() == m_hover);
}

void PNButtonTest::looksPressedWhileAssistiveTechnologyPresses()
{
    m_button->setPressedImage(m_pressed);
    QAccessible::queryAccessibleInterface(m_button)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    QVERIFY(m_button->image() == m_pressed);
    QTRY_VERIFY(m_button->image() == m_normal);
}

void PNButtonTest::mayBeDeletedByItsListenerAndItsAction_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"enter", "exit", "rebuild", "interaction", "enabled", "action"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void PNButtonTest::mayBeDeletedByItsListenerAndItsAction()
{
    QFETCH(QString, by);
    m_button->setHoverStateListener([&](bool hovered) {
        if (by == u"enter" || (!hovered && by != u"action"))
            delete m_button.data();
    });
    connect(m_button, &QAbstractButton::clicked, this, [&] { delete m_button.data(); });
    m_button->mouseEntered(nullptr);
    if (by == u"exit") {
        m_button->mouseExited(nullptr);
    } else if (by == u"rebuild") {
        m_button->updateTrackingAreas();
    } else if (by == u"interaction") {
        m_button->setUserInteraction(false);
    } else if (by == u"enabled") {
        m_button->setEnabled(false);
    } else if (by == u"action") {
        m_button->mouseDown(nullptr);
        m_button->mouseUp(nullptr);
    }
    QVERIFY(!m_button);
}

void PNButtonTest::keepsTheImageOfAFormWhateverElseIsSet()
{
    PNButton button;
    button.setImage(m_normal);
    button.setToolTips(u"play"_s);
    button.setSelectToolTips(u"pause"_s);
    button.setHoverImage(m_hover);
    button.setSelectedNormalImage(m_selected);
    button.setDisableImage(m_disabled);
    button.awakeFromNib();
    QVERIFY(button.normalImage() == m_normal);
    QVERIFY(button.image() == m_normal);
    QCOMPARE(button.toolTip(), u"play"_s);
}

void PNButtonTest::keepsThePressedImageWhenAToolTipIsSet()
{
    m_button->setPressedImage(m_pressed);
    m_button->mouseDown(nullptr);
    m_button->setToolTips(u"play"_s);
    QVERIFY(m_button->image() == m_pressed);
    QCOMPARE(m_button->toolTip(), u"play"_s);
}

void PNButtonTest::hasImagePropertiesForForms()
{
    for (const char *name : {"image", "alternateImage", "normalImage", "hoverImage", "pressedImage",
             "selectedNormalImage", "selectedHoverImage", "selectedPressedImage", "disableImage"}) {
        PNButton button;
        button.setNormalImage(m_normal);
        QVERIFY(button.setProperty(name, QIcon()));
        QVERIFY2(button.property(name).value<QIcon>().isNull(), name); // and nothing was tinted for it
        QPixmap pixmap(20, 20);
        pixmap.fill(Qt::yellow);
        QVERIFY(button.setProperty(name, QIcon(pixmap)));
        const QIcon icon = button.property(name).value<QIcon>();
        QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(20, 20)});
        QCOMPARE(icon.pixmap(20, 20).toImage().pixelColor(10, 10), QColor(Qt::yellow));
    }
    QVERIFY(!m_button->setProperty("pausedImage", QIcon())); // what a form knows and the button does not
    QVERIFY(m_button->image() == m_normal);
    m_button->setProperty("normalImage", QIcon(QPixmap::fromImage(m_hover.toQImage(1))));
    QCOMPARE(colorOf(m_button->image()), QColor(Qt::green));
    QCOMPARE(m_button->image().size(), QSizeF(20, 20));
}

void PNButtonTest::interactsAgainWhenItAwakes()
{
    m_button->setUserInteraction(false);
    QVERIFY(m_button->trackingAreas().isEmpty());
    QSignalSpy changed(m_button, &PNButton::userInteractionChanged);
    m_button->awakeFromNib();
    QVERIFY(m_button->userInteraction());
    QCOMPARE(m_button->trackingAreas().size(), 1);
    QCOMPARE(changed.count(), 1);
}

void PNButtonTest::mayBeDeletedWhenItAwakes()
{
    m_button->setUserInteraction(false);
    connect(m_button, &PNButton::userInteractionChanged, this, [this] { delete m_button.data(); });
    m_button->awakeFromNib();
    QVERIFY(!m_button);
}

QTEST_MAIN(PNButtonTest)
#include "PNButtonTest.moc"
