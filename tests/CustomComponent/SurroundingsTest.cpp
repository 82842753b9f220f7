// SPDX-License-Identifier: MIT
// How controls look where the language runs from right to left, and on dark grounds.
#include <KXFoundation/CustomComponent/KXVerticalCenterTextFieldCell.h>
#include <KXFoundation/Platform/UI/TextField.h>
#include <KXFoundation/RichTextView/KXLabel.h>

#include "Support/EveryControl.h"
#include "Support/Pointer.h"

#include <QtTest/QTest>

#include <cmath>

using namespace Qt::StringLiterals;

using kx::test::Control;

namespace {

QPalette lightPalette()
{
    return {QColor(239, 239, 239)};
}

QPalette darkPalette()
{
    return {QColor(44, 46, 52)};
}

// The brightness that contrast is measured by (WCAG 2.1, relative luminance).
double luminance(const QColor &color)
{
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first / second, second / first);
}

// The contrast of the pixel that stands out most from the ground.
double contrastOn(const QColor &ground, const QImage &picture)
{
    double most = 1;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            most = std::max(most, contrast(picture.pixelColor(x, y), ground));
    }
    return most;
}

// What the widget itself paints, on the same ground everywhere.
QImage ownPicture(QWidget &widget)
{
    QImage image(widget.size() * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(QColor(90, 100, 110));
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

template <class Widget> Widget *withTwoLines(QWidget &parent)
{
    auto *widget = new Widget(&parent);
    widget->setGeometry(20, 20, 120, 50);
    return widget;
}

/// Those whose text takes its colour from the palette.
QList<Control> everyText()
{
    return {
        {"title of a Button",
            [](QWidget &parent) -> QWidget * {
                auto *button = withTwoLines<kx::Button>(parent);
                button->setTitle(u"Play"_s);
                return button;
            }},
        {"title of a PNTextColorButton",
            [](QWidget &parent) -> QWidget * {
                auto *button = withTwoLines<PNTextColorButton>(parent);
                button->setTitle(u"Play"_s); // alone, it has no colour yet
                return button;
            }},
        {"KXLabel",
            [](QWidget &parent) -> QWidget * {
                auto *label = withTwoLines<KXLabel>(parent);
                label->setText(u"First\nSecond"_s);
                return label;
            }},
        {"TextField",
            [](QWidget &parent) -> QWidget * {
                auto *field = withTwoLines<kx::TextField>(parent);
                field->setStringValue(u"First\nSecond"_s);
                return field;
            }},
        {"TextField in the middle",
            [](QWidget &parent) -> QWidget * {
                auto *field = withTwoLines<kx::TextField>(parent);
                field->setCell(std::make_unique<KXVerticalCenterTextFieldCell>(u"First"_s));
                return field;
            }},
    };
}

} // namespace

class SurroundingsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void looksTheSameFromRightToLeft_data() { kx::test::addRows(kx::test::everyControl() + everyText()); }
    void looksTheSameFromRightToLeft();
    void keepsItsSizeFromRightToLeft_data() { kx::test::addRows(kx::test::everyControl() + everyText()); }
    void keepsItsSizeFromRightToLeft();
    void isPressedWhereItIsFromRightToLeft();
    void keepsItsWindowButtonsFromRightToLeft();

    void itsTextIsReadableOnAnyGround_data() { kx::test::addRows(everyText()); }
    void itsTextIsReadableOnAnyGround();
    void itsTextStaysReadableWhileDisabled();
    void itsColoursAreItsOwnOnAnyGround_data();
    void itsColoursAreItsOwnOnAnyGround();
    void itsFocusIsSeenOnAnyGround_data();
    void itsFocusIsSeenOnAnyGround();

private:
    void show();

    std::unique_ptr<QWidget> m_window;
};

void SurroundingsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(220, 100);
}

void SurroundingsTest::cleanup()
{
    m_window.reset();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

void SurroundingsTest::show()
{
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void SurroundingsTest::looksTheSameFromRightToLeft()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    show();
    const QImage before = ownPicture(widget);
    QCOMPARE(before, ownPicture(widget)); // painting is no chance
    QVERIFY(before != before.mirrored(true, false));
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QCOMPARE(widget.layoutDirection(), Qt::RightToLeft);
    QCOMPARE(ownPicture(widget), before);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    widget.setLayoutDirection(Qt::RightToLeft); // of its own
    QCOMPARE(ownPicture(widget), before);
}

void SurroundingsTest::keepsItsSizeFromRightToLeft()
{
    QFETCH(Control, control);
    const QRect place = control.make(*m_window)->geometry();
    const QSize hint = control.make(*m_window)->sizeHint();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QWidget &widget = *control.make(*m_window);
    show();
    QCOMPARE(widget.geometry(), place);
    QCOMPARE(widget.sizeHint(), hint);
}

void SurroundingsTest::isPressedWhereItIsFromRightToLeft()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    PNProgressSlider slider(QRectF(0, 0, 200, 20), m_window.get());
    slider.setMaxValue(100);
    kx::View holder(m_window.get());
    holder.setGeometry(0, 40, 200, 40);
    auto *bar = new PNProgressIndicator(QRectF(0, 0, 200, 40));
    holder.addSubview(*bar);
    bar->setMaxValue(100);
    show();
    Pointer(slider).click(QPointF(10.5 + 179 * 0.25, 10)); // a quarter of the way from the left
    QCOMPARE(slider.currentValue(), 25.0);
    QTest::keyClick(&slider, Qt::Key_Right);
    QCOMPARE(slider.currentValue(), 26.0);
    Pointer(*bar).click(QPointF(191.5, 20)); // the right end
    QCOMPARE(bar->playedValue(), 100.0);
    QTest::keyClick(bar, Qt::Key_Left);
    QCOMPARE(bar->playedValue(), 99.0);
}

void SurroundingsTest::keepsItsWindowButtonsFromRightToLeft()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    PNStandardWindowButtonView group(m_window.get());
    group.resize(100, 30);
    show();
    QCOMPARE(group.closeBtn()->geometry(), QRect(0, 7, 14, 16));
    QCOMPARE(group.miniBtn()->geometry(), QRect(20, 7, 14, 16));
    QCOMPARE(group.fullScreenBtn()->geometry(), QRect(40, 7, 14, 16));
}

void SurroundingsTest::itsTextIsReadableOnAnyGround()
{
    QFETCH(Control, control);
    m_window->setPalette(lightPalette());
    QWidget &widget = *control.make(*m_window);
    show();
    for (const QPalette &palette : {lightPalette(), darkPalette(), lightPalette()}) {
        m_window->setPalette(palette);
        QVERIFY(contrastOn(palette.color(QPalette::Window), widget.grab().toImage()) > 7);
    }
}

void SurroundingsTest::itsTextStaysReadableWhileDisabled()
{
    kx::Button button(m_window.get());
    button.setGeometry(20, 20, 120, 40);
    button.setTitle(u"Play"_s);
    button.setEnabled(false);
    show();
    m_window->setPalette(darkPalette());
    QVERIFY(contrastOn(darkPalette().color(QPalette::Window), button.grab().toImage()) > 7); // it looks the same
}

void SurroundingsTest::itsColoursAreItsOwnOnAnyGround_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : kx::test::everyControl()) {
        if (QByteArrayView(control.name) != "Button")
            QTest::newRow(control.name) << control;
    }
}

void SurroundingsTest::itsColoursAreItsOwnOnAnyGround()
{
    QFETCH(Control, control);
    m_window->setPalette(lightPalette());
    QWidget &widget = *control.make(*m_window);
    show();
    const QImage before = ownPicture(widget);
    m_window->setPalette(darkPalette());
    QCOMPARE(ownPicture(widget), before);
}

void SurroundingsTest::itsFocusIsSeenOnAnyGround_data()
{
    QTest::addColumn<Control>("control");
    for (const Control &control : kx::test::everyFocusableControl()) {
        if (QByteArrayView(control.name) != "StandardWindowButton") // its ring lies on its own colours
            QTest::newRow(control.name) << control;
    }
}

void SurroundingsTest::itsFocusIsSeenOnAnyGround()
{
    QFETCH(Control, control);
    QWidget &widget = *control.make(*m_window);
    show();
    for (const QPalette &palette : {lightPalette(), darkPalette()}) {
        m_window->setPalette(palette);
        widget.clearFocus();
        const QImage before = widget.grab().toImage();
        widget.setFocus(Qt::TabFocusReason);
        const QImage focused = widget.grab().toImage();
        int seen = 0;
        for (int y = 0; y < focused.height(); ++y) {
            for (int x = 0; x < focused.width(); ++x)
                seen += contrast(focused.pixelColor(x, y), before.pixelColor(x, y)) > 3 ? 1 : 0;
        }
        const int around = (focused.width() + focused.height()) * 2;
        QVERIFY2(seen > around / 2, qPrintable(QString::number(seen)));
    }
}

QTEST_MAIN(SurroundingsTest)
#include "SurroundingsTest.moc"
