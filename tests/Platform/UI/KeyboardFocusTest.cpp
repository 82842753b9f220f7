// SPDX-License-Identifier: MIT
#include "Support/EveryControl.h"
#include "Support/WindowWarnings.h"

#include <KXFoundation/RichTextView/KXAttributedString.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>

#include <QtGui/QScreen>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>

using namespace Qt::StringLiterals;

using kx::test::Control;

namespace {

const QColor ringColour(0, 160, 0);

bool isRing(const QColor &color)
{
    return qAbs(color.red() - ringColour.red()) < 40 && qAbs(color.green() - ringColour.green()) < 40
        && qAbs(color.blue() - ringColour.blue()) < 40;
}

int ringPixels(const QImage &picture)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += isRing(picture.pixelColor(x, y)) ? 1 : 0;
    }
    return count;
}

QImage picture(QWidget &widget)
{
    return widget.grab().toImage();
}

// As large as its link and the ring around that.
QWidget *textWithLink(QWidget &parent)
{
    const auto link = std::make_shared<KXAttributedString>(u"Similar"_s);
    link->setOnClick([](const std::shared_ptr<KXAttributedString> &) {});
    auto *text = new KXRichTextView(&parent);
    text->setInsets({3, 1, 3, 1});
    text->setKXAttributedStrings({link});
    text->setGeometry({QPoint(20, 20), text->sizeHint()});
    return text;
}

QList<Control> everyFocusable()
{
    return kx::test::everyFocusableControl() + QList<Control>{{"KXRichTextView", textWithLink}};
}

} // namespace

class KeyboardFocusTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void showsTheFocusThatTheKeyboardBrings_data();
    void showsTheFocusThatTheKeyboardBrings();
    void showsNoOtherFocus_data();
    void showsNoOtherFocus();
    void isReachedByTab_data() { kx::test::addRows(everyFocusable()); }
    void isReachedByTab();
    void isNotReachedByAWindowThatBecomesActive_data() { kx::test::addRows(everyFocusable()); }
    void isNotReachedByAWindowThatBecomesActive();
    void keepsTheChoiceOfTheApplication_data() { kx::test::addRows(everyFocusable()); }
    void keepsTheChoiceOfTheApplication();
    void comesBackWithItsWindow_data() { kx::test::addRows(everyFocusable()); }
    void comesBackWithItsWindow();
    void doesNotRememberALostFocus_data() { kx::test::addRows(everyFocusable()); }
    void doesNotRememberALostFocus();
    void staysUnderAMenu();
    void isTwoPixelsWide();
    void standsOutFromItsOwnColour();
    void staysOpaqueInATranslucentButton();
    void castsNoShadow();

private:
    QWidget *add(const Control &control);
    void showActive();

    std::unique_ptr<QWidget> m_window;
};

void KeyboardFocusTest::init()
{
    failOnWindowWarnings();
    QCursor::setPos(QGuiApplication::primaryScreen()->geometry().bottomRight()); // no hovers
    m_window = std::make_unique<QWidget>();
    QPalette palette(Qt::white);
    palette.setColor(QPalette::Highlight, ringColour);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    m_window->setPalette(palette);
    m_window->resize(200, 100);
}

QWidget *KeyboardFocusTest::add(const Control &control)
{
    return control.make(*m_window);
}

void KeyboardFocusTest::showActive()
{
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void KeyboardFocusTest::showsTheFocusThatTheKeyboardBrings_data()
{
    QTest::addColumn<Control>("control");
    QTest::addColumn<Qt::FocusReason>("reason");
    for (const Control &control : everyFocusable()) {
        QTest::addRow("%s, Tab", control.name) << control << Qt::TabFocusReason;
        QTest::addRow("%s, Backtab", control.name) << control << Qt::BacktabFocusReason;
        QTest::addRow("%s, shortcut", control.name) << control << Qt::ShortcutFocusReason;
    }
}

void KeyboardFocusTest::showsTheFocusThatTheKeyboardBrings()
{
    QFETCH(Control, control);
    QFETCH(Qt::FocusReason, reason);
    QWidget *const widget = add(control);
    showActive();
    const QImage before = picture(*widget);
    QCOMPARE(ringPixels(before), 0);
    widget->setFocus(reason);
    QVERIFY(widget->hasFocus());
    const QImage focused = picture(*widget);
    QVERIFY(ringPixels(focused) > 20);
    const int edge = qRound(5 * focused.devicePixelRatio());
    const QRect inside = focused.rect().adjusted(edge, edge, -edge, -edge);
    QVERIFY(!inside.isEmpty());
    QCOMPARE(focused.copy(inside), before.copy(inside));
    widget->clearFocus();
    QCOMPARE(picture(*widget), before);
}

void KeyboardFocusTest::showsNoOtherFocus_data()
{
    QTest::addColumn<Control>("control");
    QTest::addColumn<Qt::FocusReason>("reason");
    for (const Control &control : everyFocusable()) {
        QTest::addRow("%s, mouse", control.name) << control << Qt::MouseFocusReason;
        QTest::addRow("%s, application", control.name) << control << Qt::OtherFocusReason;
    }
}

void KeyboardFocusTest::showsNoOtherFocus()
{
    QFETCH(Control, control);
    QFETCH(Qt::FocusReason, reason);
    QWidget *const widget = add(control);
    showActive();
    const QImage before = picture(*widget);
    widget->setFocus(reason);
    QVERIFY(widget->hasFocus());
    QCOMPARE(picture(*widget), before);
}

void KeyboardFocusTest::isReachedByTab()
{
    QFETCH(Control, control);
    QWidget *const widget = add(control);
    showActive();
    QTest::keyClick(m_window.get(), Qt::Key_Tab);
    QVERIFY(widget->hasFocus());
    QVERIFY(ringPixels(picture(*widget)) > 20);
}

void KeyboardFocusTest::isNotReachedByAWindowThatBecomesActive()
{
    QFETCH(Control, control);
    QWidget *const widget = add(control);
    showActive();
    QVERIFY(!widget->hasFocus());
    QVERIFY(!m_window->focusWidget());
    QVERIFY(!QApplication::focusWidget());
    if (auto *button = qobject_cast<QAbstractButton *>(widget)) {
        QSignalSpy clicked(button, &QAbstractButton::clicked);
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Space);
        QCOMPARE(clicked.count(), 0);
    }
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    showActive();
    QVERIFY(!widget->hasFocus());
}

void KeyboardFocusTest::keepsTheChoiceOfTheApplication()
{
    QFETCH(Control, control);
    QWidget *const widget = add(control);
    widget->setFocus();
    showActive();
    QVERIFY(widget->hasFocus());
    QCOMPARE(ringPixels(picture(*widget)), 0);
}

void KeyboardFocusTest::comesBackWithItsWindow()
{
    QFETCH(Control, control);
    QWidget *const widget = add(control);
    showActive();
    widget->setFocus(Qt::TabFocusReason);
    const QImage focused = picture(*widget);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!widget->hasFocus());
    QCOMPARE(ringPixels(picture(*widget)), 0);
    showActive();
    QVERIFY(widget->hasFocus());
    QCOMPARE(picture(*widget), focused);
}

void KeyboardFocusTest::doesNotRememberALostFocus()
{
    QFETCH(Control, control);
    QWidget *const widget = add(control);
    QLineEdit edit(m_window.get());
    showActive();
    widget->setFocus(Qt::TabFocusReason);
    edit.setFocus(Qt::MouseFocusReason);
    QCOMPARE(ringPixels(picture(*widget)), 0);
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    widget->setFocus(Qt::OtherFocusReason); // by the application, while its window is in the back
    showActive();
    QVERIFY(widget->hasFocus());
    QCOMPARE(ringPixels(picture(*widget)), 0);
}

void KeyboardFocusTest::staysUnderAMenu()
{
    QWidget *const widget = add(everyFocusable().first());
    showActive();
    widget->setFocus(Qt::TabFocusReason);
    const QImage focused = picture(*widget);
    QMenu menu;
    menu.addAction(u"One"_s);
    menu.popup(m_window->mapToGlobal(QPoint(10, 10)));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    menu.close();
    QTRY_VERIFY(widget->hasFocus());
    QCOMPARE(picture(*widget), focused);
}

void KeyboardFocusTest::isTwoPixelsWide()
{
    PNButton button(QRectF(0, 0, 40, 40), m_window.get());
    showActive();
    button.setFocus(Qt::TabFocusReason);
    const QImage shown = picture(button);
    const double ratio = shown.devicePixelRatio();
    const auto widthAlong = [&](auto pixel) {
        int width = 0;
        while (pixel(width) == ringColour)
            ++width;
        return width;
    };
    const int middle = shown.width() / 2;
    const int last = shown.width() - 1;
    QCOMPARE(widthAlong([&](int i) { return shown.pixelColor(i, middle); }), qRound(2 * ratio));
    QCOMPARE(widthAlong([&](int i) { return shown.pixelColor(last - i, middle); }), qRound(2 * ratio));
    QCOMPARE(widthAlong([&](int i) { return shown.pixelColor(middle, i); }), qRound(2 * ratio));
    QCOMPARE(widthAlong([&](int i) { return shown.pixelColor(middle, last - i); }), qRound(2 * ratio));
    QCOMPARE(shown.pixelColor(0, 0), QColor(Qt::white)); // round corners
}

void KeyboardFocusTest::standsOutFromItsOwnColour()
{
    QPalette palette = m_window->palette();
    palette.setColor(QPalette::Window, ringColour);
    m_window->setPalette(palette);
    PNButton button(QRectF(0, 0, 40, 40), m_window.get());
    showActive();
    button.setFocus(Qt::TabFocusReason);
    const QImage shown = picture(button);
    const auto at = [&](double x) { return shown.pixelColor(int(x * shown.devicePixelRatio()), shown.height() / 2); };
    QCOMPARE(at(1), ringColour);
    QVERIFY(at(2.5).lightness() > ringColour.lightness() + 50); // the line within
    QCOMPARE(at(5), ringColour);
}

void KeyboardFocusTest::staysOpaqueInATranslucentButton()
{
    PNTextColorButton button(QRectF(0, 0, 40, 40), m_window.get());
    button.setAlphaValue(0);
    showActive();
    button.setFocus(Qt::TabFocusReason);
    const QImage shown = picture(button);
    QCOMPARE(shown.pixelColor(1, shown.height() / 2), ringColour);
}

void KeyboardFocusTest::castsNoShadow()
{
    PNAlphBtn button(QRectF(), m_window.get());
    button.setGeometry(60, 30, 40, 40);
    button.setHoverImage(kx::test::twoColours());
    button.setShadowOffset({6, -6});
    showActive();
    const auto around = [&] {
        QImage shown = picture(*m_window);
        QPainter(&shown).fillRect(button.geometry(), Qt::white);
        return shown;
    };
    const QImage white = [&] {
        QImage image(around());
        image.fill(Qt::white);
        return image;
    }();
    QTRY_VERIFY(around() != white); // the shadow
    const QImage before = around();
    button.setFocus(Qt::TabFocusReason);
    QVERIFY(ringPixels(picture(button)) > 20);
    QCOMPARE(around(), before);
}

QTEST_MAIN(KeyboardFocusTest)
#include "KeyboardFocusTest.moc"
