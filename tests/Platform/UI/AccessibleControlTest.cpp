// SPDX-License-Identifier: MIT
#include "Support/AccessibleEvents.h"
#include "Support/EveryControl.h"

#include <QtGui/QAccessible>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

using kx::test::Control;
using Action = QAccessibleActionInterface;

namespace {

QAccessibleInterface *accessible(QWidget &widget)
{
    return QAccessible::queryAccessibleInterface(&widget);
}

QString nameOf(QWidget &widget)
{
    return accessible(widget)->text(QAccessible::Name);
}

QStringList actionsOf(QWidget &widget)
{
    return accessible(widget)->actionInterface()->actionNames();
}

void perform(QWidget &widget, const QString &action)
{
    accessible(widget)->actionInterface()->doAction(action);
}

QList<Control> everyButton()
{
    QList<Control> buttons = kx::test::everyFocusableControl();
    buttons.erase(std::remove_if(buttons.begin(), buttons.end(),
                      [](const Control &control) {
                          return !QByteArrayView(control.name).contains("tn")
                              && !QByteArrayView(control.name).contains("utton");
                      }),
        buttons.end());
    return buttons;
}

/// Counts what assistive technology is told.
class Told {
public:
    [[nodiscard]] qsizetype count(QAccessible::Event type, const QObject &object) const
    {
        return m_told.count({type, &object});
    }

private:
    QList<std::pair<QAccessible::Event, const QObject *>> m_told;
    const AccessibleEvents m_events{[this](const QAccessibleEvent &event) {
        m_told.append({event.type(), event.object()});
    }};
};

} // namespace

class AccessibleControlTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void hasItsRole_data();
    void hasItsRole();
    void isNamedByTheApplicationFirst_data() { kx::test::addRows(kx::test::everyControl()); }
    void isNamedByTheApplicationFirst();
    void fallsBackToItsToolTip_data();
    void fallsBackToItsToolTip();
    void fallsBackToItsTitleBeforeItsToolTip_data();
    void fallsBackToItsTitleBeforeItsToolTip();
    void readsAToolTipWithoutItsMarkup();
    void tellsItsState_data() { kx::test::addRows(kx::test::everyFocusableControl()); }
    void tellsItsState();
    void windowButtonsSayWhatTheyDo();
    void windowButtonsAreInTheirGroup();

    void buttonsPress_data() { kx::test::addRows(everyButton()); }
    void buttonsPress();
    void buttonsTellTheirShortcut();
    void buttonsSayWhatTheyShow();
    void buttonsDrawAmpersandsAndHaveNoMnemonics();
    void buttonsAreCheckedWhileSelected_data();
    void buttonsAreCheckedWhileSelected();
    void buttonsAreCheckedWhileOn();
    void buttonsTellOfAnotherTipAndState();
    void keepTheirNameDuringAHoverThatIsIgnored();

    void imagesAreDescribed_data();
    void imagesAreDescribed();
    void imagesTellWhereTheyAre();
    void imagesArePressedWhereSomebodyHearsOfIt();

    void rangesHaveAValue_data();
    void rangesHaveAValue();
    void rangesStepUpAndDown_data();
    void rangesStepUpAndDown();
    void rangesAreReadOnlyForAUserWhoMayNot_data();
    void rangesAreReadOnlyForAUserWhoMayNot();

private:
    std::unique_ptr<QWidget> m_window;
};

void AccessibleControlTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void AccessibleControlTest::hasItsRole_data()
{
    QTest::addColumn<Control>("control");
    QTest::addColumn<QAccessible::Role>("role");
    for (const Control &control : kx::test::everyControl()) {
        const QByteArrayView name(control.name);
        if (name.endsWith("ButtonView"))
            continue; // a plain view
        QTest::newRow(control.name) << control
                                    << (name.endsWith("ImageView")             ? QAccessible::Graphic
                                               : name.startsWith("PNProgress") ? QAccessible::Slider
                                                                               : QAccessible::Button);
    }
}

void AccessibleControlTest::hasItsRole()
{
    QFETCH(Control, control);
    QTEST(accessible(*control.make(*m_window))->role(), "role");
}

void AccessibleControlTest::isNamedByTheApplicationFirst()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    widget.setToolTip(u"tip"_s);
    widget.setAccessibleName(u"name"_s);
    QCOMPARE(nameOf(widget), u"name"_s);
    QCOMPARE(accessible(widget)->text(QAccessible::Description), u"tip"_s);
    widget.setAccessibleDescription(u"description"_s);
    QCOMPARE(accessible(widget)->text(QAccessible::Description), u"description"_s);
}

void AccessibleControlTest::fallsBackToItsToolTip_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : kx::test::everyControl()) {
        if (QByteArrayView(control.name) != "StandardWindowButton"
            && QByteArrayView(control.name) != "PNStandardWindowButtonView")
            QTest::newRow(control.name) << control;
    }
}

void AccessibleControlTest::fallsBackToItsToolTip()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    if (auto *button = qobject_cast<kx::Button *>(&widget))
        button->setTitle({});
    QCOMPARE(nameOf(widget), QString());
    widget.setToolTip(u"tip"_s);
    QCOMPARE(nameOf(widget), u"tip"_s);
    QCOMPARE(accessible(widget)->text(QAccessible::Description), QString()); // not twice
}

void AccessibleControlTest::fallsBackToItsTitleBeforeItsToolTip_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : everyButton()) {
        if (QByteArrayView(control.name) != "StandardWindowButton")
            QTest::newRow(control.name) << control;
    }
}

void AccessibleControlTest::fallsBackToItsTitleBeforeItsToolTip()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    qobject_cast<kx::Button *>(&widget)->setTitle(u"title"_s);
    widget.setToolTip(u"tip"_s);
    QCOMPARE(nameOf(widget), u"title"_s);
    QCOMPARE(accessible(widget)->text(QAccessible::Description), u"tip"_s);
}

void AccessibleControlTest::readsAToolTipWithoutItsMarkup()
{
    kx::ImageView view(m_window.get());
    view.setToolTip(u"<b>Play</b> &amp; <i>pause</i>"_s);
    QCOMPARE(nameOf(view), u"Play & pause"_s);
    view.setAccessibleName(u"Player"_s);
    QCOMPARE(accessible(view)->text(QAccessible::Description), u"Play & pause"_s);
}

void AccessibleControlTest::tellsItsState()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    widget.show();
    const QAccessible::State state = accessible(widget)->state();
    QVERIFY(state.focusable);
    QVERIFY(!state.focused);
    QVERIFY(!state.disabled);
    QVERIFY(!state.invisible);
    QVERIFY(!state.checkable);
    perform(widget, Action::setFocusAction());
    QVERIFY(widget.hasFocus());
    QVERIFY(accessible(widget)->state().focused);
    widget.setEnabled(false);
    QVERIFY(accessible(widget)->state().disabled);
    QCOMPARE(actionsOf(widget), QStringList());
    widget.hide();
    QVERIFY(accessible(widget)->state().invisible);
}

void AccessibleControlTest::windowButtonsSayWhatTheyDo()
{
    PNStandardWindowButtonView group(m_window.get());
    QCOMPARE(nameOf(*group.closeBtn()), u"Close"_s);
    QCOMPARE(nameOf(*group.miniBtn()), u"Minimize"_s);
    QCOMPARE(nameOf(*group.fullScreenBtn()), u"Full screen"_s);
    m_window->setWindowState(Qt::WindowFullScreen);
    QCOMPARE(nameOf(*group.fullScreenBtn()), u"Exit full screen"_s);
    group.fullScreenBtn()->setAccessibleName(u"Zoom"_s);
    QCOMPARE(nameOf(*group.fullScreenBtn()), u"Zoom"_s);
}

void AccessibleControlTest::windowButtonsAreInTheirGroup()
{
    PNStandardWindowButtonView group(m_window.get());
    group.show();
    QCOMPARE(accessible(group)->childCount(), 3);
    QCOMPARE(accessible(group)->child(0)->object(), group.closeBtn());
    QCOMPARE(accessible(*group.closeBtn())->parent()->object(), &group);
    for (kx::StandardWindowButton *button : {group.closeBtn(), group.miniBtn(), group.fullScreenBtn()})
        QVERIFY(actionsOf(*button).contains(Action::pressAction()));
}

void AccessibleControlTest::buttonsPress()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    auto &button = *qobject_cast<kx::Button *>(&widget);
    QCOMPARE(actionsOf(button), (QStringList{Action::pressAction(), Action::setFocusAction()}));
    QSignalSpy clicked(&button, &kx::Button::clicked);
    perform(button, Action::pressAction());
    QVERIFY(accessible(button)->state().pressed);
    QTRY_COMPARE(clicked.count(), 1);
    QVERIFY(!accessible(button)->state().pressed);
}

void AccessibleControlTest::buttonsTellTheirShortcut()
{
    PNButton button(m_window.get());
    QCOMPARE(accessible(button)->actionInterface()->keyBindingsForAction(Action::pressAction()), QStringList());
    button.setShortcut(QKeySequence(u"Ctrl+P"_s));
    QCOMPARE(
        accessible(button)->actionInterface()->keyBindingsForAction(Action::pressAction()), QStringList{u"Ctrl+P"_s});
    QCOMPARE(accessible(button)->actionInterface()->keyBindingsForAction(Action::setFocusAction()), QStringList());
}

void AccessibleControlTest::buttonsSayWhatTheyShow()
{
    PNTextColorButton button(m_window.get());
    button.changeBtnTitle(u"Play"_s);
    button.setAlternateTitle(u"Stop"_s);
    QCOMPARE(nameOf(button), u"Play"_s);
    const Told told;
    button.setState(1);
    QCOMPARE(nameOf(button), u"Stop"_s);
    QCOMPARE(told.count(QAccessible::NameChanged, button), 1);
    QCOMPARE(told.count(QAccessible::StateChanged, button), 1);
}

void AccessibleControlTest::buttonsDrawAmpersandsAndHaveNoMnemonics()
{
    kx::Button button(m_window.get());
    button.setTitle(u"Drum & Bass"_s);
    QCOMPARE(button.title(), u"Drum & Bass"_s);
    QCOMPARE(nameOf(button), u"Drum & Bass"_s);
    button.setTitle(u"R&B"_s);
    QVERIFY(button.shortcut().isEmpty()); // Alt+B
    QCOMPARE(nameOf(button), u"R&B"_s);
}

void AccessibleControlTest::buttonsAreCheckedWhileSelected_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : everyButton()) {
        if (QByteArrayView(control.name).startsWith("PN"))
            QTest::newRow(control.name) << control;
    }
}

void AccessibleControlTest::buttonsAreCheckedWhileSelected()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    QVERIFY(!accessible(widget)->state().checkable);
    const QIcon icon(QPixmap::fromImage(kx::test::twoColours()));
    QVERIFY(
        widget.setProperty("selectedNormalImage", icon) || widget.setProperty("selectedTextColor", QColor(Qt::red)));
    QVERIFY(accessible(widget)->state().checkable);
    QVERIFY(!accessible(widget)->state().checked);
    const Told told;
    QVERIFY(widget.setProperty("selected", true));
    QVERIFY(accessible(widget)->state().checked);
    QCOMPARE(told.count(QAccessible::StateChanged, widget), 1);
    QVERIFY(widget.setProperty("selected", true));
    QCOMPARE(told.count(QAccessible::StateChanged, widget), 1);
}

void AccessibleControlTest::buttonsAreCheckedWhileOn()
{
    kx::Button button(m_window.get());
    QVERIFY(!accessible(button)->state().checkable);
    button.setAlternateImage(kx::test::twoColours());
    QVERIFY(accessible(button)->state().checkable);
    QVERIFY(!accessible(button)->state().checked);
    button.setState(1);
    QVERIFY(accessible(button)->state().checked);
    kx::Button qtsOwn(m_window.get());
    qtsOwn.setCheckable(true);
    QVERIFY(accessible(qtsOwn)->state().checkable);
    qtsOwn.click();
    QVERIFY(accessible(qtsOwn)->state().checked);
}

void AccessibleControlTest::buttonsTellOfAnotherTipAndState()
{
    PNButton button(m_window.get());
    button.setToolTips(u"Play"_s);
    button.setSelectToolTips(u"Pause"_s);
    QCOMPARE(nameOf(button), u"Play"_s);
    const Told told;
    button.setSelected(true);
    QCOMPARE(nameOf(button), u"Pause"_s);
    QCOMPARE(told.count(QAccessible::NameChanged, button), 1);
    QCOMPARE(told.count(QAccessible::StateChanged, button), 1);
}

void AccessibleControlTest::keepTheirNameDuringAHoverThatIsIgnored()
{
    PNButton button(m_window.get());
    button.setToolTips(u"Play"_s);
    button.setSelectToolTips(u"Pause"_s);
    button.setIsIgnoreHover(true);
    button.mouseEntered(nullptr);
    QCOMPARE(button.toolTip(), QString());
    QCOMPARE(nameOf(button), u"Play"_s);
    button.setSelected(true);
    button.mouseEntered(nullptr);
    QCOMPARE(nameOf(button), u"Pause"_s);
}

void AccessibleControlTest::imagesAreDescribed_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : kx::test::everyControl()) {
        if (QByteArrayView(control.name).endsWith("ImageView"))
            QTest::newRow(control.name) << control;
    }
}

void AccessibleControlTest::imagesAreDescribed()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    QAccessibleImageInterface *const image = accessible(widget)->imageInterface();
    QVERIFY(image);
    QCOMPARE(image->imageDescription(), QString());
    widget.setToolTip(u"tip"_s);
    QCOMPARE(image->imageDescription(), u"tip"_s);
    widget.setAccessibleName(u"Poster"_s);
    widget.setAccessibleDescription(u"A sunset"_s);
    QCOMPARE(image->imageDescription(), u"A sunset"_s);
}

void AccessibleControlTest::imagesTellWhereTheyAre()
{
    kx::ImageView view(m_window.get());
    view.setGeometry(20, 10, 48, 12); // half of the image's height
    view.setImage(kx::test::twoColours());
    QAccessibleImageInterface *const image = accessible(view)->imageInterface();
    QCOMPARE(image->imageSize(), QSize(12, 12));
    QCOMPARE(image->imagePosition(), view.mapToGlobal(QPoint(18, 0)));
    view.setImage(nullptr);
    QCOMPARE(image->imageSize(), QSize(0, 0));
}

void AccessibleControlTest::imagesArePressedWhereSomebodyHearsOfIt()
{
    const QStringList none;
    KXImageView view(m_window.get());
    QCOMPARE(actionsOf(view), none);
    int clicks = 0;
    view.setImageViewClick([&] { ++clicks; });
    QCOMPARE(actionsOf(view), QStringList{Action::pressAction()});
    perform(view, Action::pressAction());
    QTRY_COMPARE(clicks, 1);
    view.setUserInteraction(false);
    QCOMPARE(actionsOf(view), none);
    view.setUserInteraction(true);
    view.setEnabled(false);
    QCOMPARE(actionsOf(view), none);
    view.setEnabled(true);
    view.setImageViewClick({});
    QSignalSpy clicked(&view, &KXImageView::clicked);
    QCOMPARE(actionsOf(view), QStringList{Action::pressAction()});
    perform(view, Action::pressAction());
    QTRY_COMPARE(clicked.count(), 1);
    QCOMPARE(clicks, 1);
    perform(view, Action::nextPageAction()); // which it does not have
    QCoreApplication::processEvents();
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicks, 1);

    auto *shortLived = new KXImageView(m_window.get());
    const QPointer<KXImageView> alive(shortLived);
    shortLived->setImageViewClick([&] { delete shortLived; });
    perform(*shortLived, Action::pressAction());
    QTRY_VERIFY(!alive);
}

void AccessibleControlTest::rangesHaveAValue_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : kx::test::everyControl()) {
        if (QByteArrayView(control.name).startsWith("PNProgress"))
            QTest::newRow(control.name) << control;
    }
}

void AccessibleControlTest::rangesHaveAValue()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    QAccessibleValueInterface *const value = accessible(widget)->valueInterface();
    QVERIFY(value);
    QCOMPARE(value->minimumValue().toDouble(), 0.0);
    QCOMPARE(value->maximumValue().toDouble(), 100.0);
    QCOMPARE(value->currentValue().toDouble(), 30.0);
    const bool isBar = qobject_cast<PNProgressIndicator *>(&widget);
    QCOMPARE(accessible(widget)->text(QAccessible::Value), isBar ? u"0:30"_s : u"30"_s);
    const auto percent = [](double number) -> QString { return QString::number(number) + u" percent"; };
    if (auto *bar = qobject_cast<PNProgressIndicator *>(&widget))
        bar->setValueFormatter(percent);
    else
        qobject_cast<PNProgressSlider *>(&widget)->setValueFormatter(percent);
    QCOMPARE(accessible(widget)->text(QAccessible::Value), u"30 percent"_s);
    const Told told;
    value->setCurrentValue(64);
    QCOMPARE(value->currentValue().toDouble(), 64.0);
    QCOMPARE(told.count(QAccessible::ValueChanged, widget), 1);
}

void AccessibleControlTest::rangesStepUpAndDown_data()
{
    rangesHaveAValue_data();
}

void AccessibleControlTest::rangesStepUpAndDown()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    QAccessibleValueInterface *const value = accessible(widget)->valueInterface();
    QCOMPARE(
        actionsOf(widget), (QStringList{Action::setFocusAction(), Action::increaseAction(), Action::decreaseAction()}));
    perform(widget, Action::increaseAction());
    QCOMPARE(value->currentValue().toDouble(), 31.0);
    perform(widget, Action::decreaseAction());
    perform(widget, Action::decreaseAction());
    QCOMPARE(value->currentValue().toDouble(), 29.0);
    value->setCurrentValue(99.5);
    perform(widget, Action::increaseAction());
    QCOMPARE(value->currentValue().toDouble(), 100.0);
    QVERIFY(widget.setProperty("maxValue", 0));
    QCOMPARE(actionsOf(widget), QStringList{Action::setFocusAction()});
}

void AccessibleControlTest::rangesAreReadOnlyForAUserWhoMayNot_data()
{
    rangesHaveAValue_data();
}

void AccessibleControlTest::rangesAreReadOnlyForAUserWhoMayNot()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    QVERIFY(!accessible(widget)->state().readOnly);
    QVERIFY(widget.setProperty("userInteraction", false));
    QVERIFY(accessible(widget)->state().readOnly);
    QCOMPARE(actionsOf(widget), QStringList{Action::setFocusAction()});
    perform(widget, Action::increaseAction());
    QTest::keyClick(&widget, Qt::Key_Right);
    QCOMPARE(accessible(widget)->valueInterface()->currentValue().toDouble(), 30.0);
}

QTEST_MAIN(AccessibleControlTest)
#include "AccessibleControlTest.moc"
