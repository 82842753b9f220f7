// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNTextColorButton.h>

#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Layer.h>

#include <Support/Pointer.h>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QColor hoverRed(255, 46, 67);

} // namespace

class PNTextColorButtonTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void hasItsDefaults();
    void rendersItsTitleOpaqueAndTheButtonTranslucent();
    void turnsRedUnderThePointer();
    void takesTheColoursOfItsState_data();
    void takesTheColoursOfItsState();
    void keepsItsBackgroundWithoutAColour();
    void equalValuesChangeNothing();
    void fallsBackToTheNormalTextColour();
    void isTransparentWithoutAnyColour();
    void keepsItsAlphaForAnEmptyTitle();
    void rendersTheTitleOfItsState();
    void truncatesAtTheTailUnlessToldOtherwise();
    void setsTheBaseline();
    void tintsItsImageForGood();
    void hasAnImageForEachState();
    void hasNoFontWhereTheFaceIsMissing();
    void appliesTheNormalColoursAtOnce();
    void appliesTheRestWhenItAwakes();
    void isFramed();
    void showsThePress();
    void showsTheHoverLookAfterARelease();
    void performsItsActionWhereverTheReleaseIs();
    void performsItsActionOnceItShowsTheRelease();
    void looksReleasedWhenItsPressComesToNothing();
    void isNotPressedWhileDisabled();
    void tracksOnlyWhileEnabledAndAble();
    void reportsHovers();
    void resetsToNormal();
    void changesNothingUnderAForeignModalWindow();
    void hoversInAModalWindowOfItsOwn();
    void setsTheCursorOfAMove();
    void leavesTheCursorOfAMoveAlone_data();
    void leavesTheCursorOfAMoveAlone();
    void leavesTheCursorUnderAForeignModalWindow();
    void keepsItsPlainTitle();
    void mayBeDeletedByItsListenerAndItsAction();
    void mayBeDeletedWhenItsHoverEnds_data();
    void mayBeDeletedWhenItsHoverEnds();
    void mayBeDeletedWhenItsTitleChanges_data();
    void mayBeDeletedWhenItsTitleChanges();
    void hasPropertiesForForms();

private:
    [[nodiscard]] QColor titleColor() const
    {
        return m_button->attributedTitle().attributesAt(0).foregroundColor.toQColor();
    }
    [[nodiscard]] QColor background() const { return m_button->layer()->backgroundColor().toQColor(); }

    std::unique_ptr<QWidget> m_window;
    QPointer<PNTextColorButton> m_button;
};

void PNTextColorButtonTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    m_button = new PNTextColorButton(m_window.get());
    m_button->setGeometry(20, 20, 80, 40);
    m_button->changeBtnTitle(u"Play"_s);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PNTextColorButtonTest::hasItsDefaults()
{
    const PNTextColorButton button(QRectF(1, 2, 30, 40));
    QCOMPARE(button.size(), QSize(30, 40));
    QVERIFY(button.normalTextColor().sameValue(kx::Color::rgba(1, 1, 1, 0.85)));
    QVERIFY(button.hoverTextColor().sameValue(kx::Color::rgba(1, 0.1803921568627451, 0.2627450980392157)));
    for (const kx::Color &color : {button.highLightTextColor(), button.selectedTextColor(),
             button.normalBackgroundColor(), button.hoverBackgroundColor(), button.highLightBackgroundColor(),
             button.disableBackgroundColor(), button.currentTitleColor()})
        QVERIFY(!color);
    QVERIFY(button.mouseEventAble());
    QVERIFY(!button.isSelected());
    QCOMPARE(button.baseline(), 0.0);
    QCOMPARE(button.cornerRadius(), 0.0);
}

void PNTextColorButtonTest::rendersItsTitleOpaqueAndTheButtonTranslucent()
{
    QCOMPARE(m_button->title(), u"Play"_s);
    QCOMPARE(titleColor(), QColor(Qt::white));
    QCOMPARE(m_button->alphaValue(), 0.85);
}

void PNTextColorButtonTest::turnsRedUnderThePointer()
{
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    QTRY_COMPARE(titleColor(), hoverRed);
    QCOMPARE(m_button->alphaValue(), 1.0);
    pointer.moveTo({150, 20});
    QTRY_COMPARE(titleColor(), QColor(Qt::white));
    QCOMPARE(m_button->alphaValue(), 0.85);
}

void PNTextColorButtonTest::takesTheColoursOfItsState_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<QColor>("title");
    QTest::addColumn<QColor>("background");
    QTest::newRow("hovered, selected") << true << true << true << QColor(Qt::cyan) << QColor(Qt::green);
    QTest::newRow("hovered") << true << true << false << QColor(Qt::magenta) << QColor(Qt::green);
    QTest::newRow("selected") << true << false << true << QColor(Qt::cyan) << QColor(Qt::blue);
    QTest::newRow("normal") << true << false << false << QColor(Qt::yellow) << QColor(Qt::blue);
    QTest::newRow("disabled") << false << false << false << QColor(Qt::yellow) << QColor(Qt::black);
    QTest::newRow("disabled, selected") << false << false << true << QColor(Qt::cyan) << QColor(Qt::black);
    QTest::newRow("disabled while hovered") << false << true << false << QColor(Qt::magenta) << QColor(Qt::black);
}

void PNTextColorButtonTest::takesTheColoursOfItsState()
{
    QFETCH(bool, enabled);
    QFETCH(bool, hovered);
    QFETCH(bool, selected);
    m_button->setNormalTextColor(Qt::yellow);
    m_button->setHoverTextColor(Qt::magenta);
    m_button->setSelectedTextColor(Qt::cyan);
    m_button->setNormalBackgroundColor(Qt::blue);
    m_button->setHoverBackgroundColor(Qt::green);
    m_button->setDisableBackgroundColor(Qt::black);
    m_button->setSelected(selected);
    if (hovered)
        m_button->mouseEntered(nullptr);
    m_button->setEnabled(enabled);
    QTEST(titleColor(), "title");
    QTEST(background(), "background");
}

void PNTextColorButtonTest::keepsItsBackgroundWithoutAColour()
{
    m_button->setNormalBackgroundColor(Qt::blue);
    m_button->setEnabled(false);
    QCOMPARE(background(), QColor(Qt::blue));
    m_button->setEnabled(true);
    m_button->mouseEntered(nullptr);
    QCOMPARE(background(), QColor(Qt::blue));
}

void PNTextColorButtonTest::equalValuesChangeNothing()
{
    m_button->setHoverBackgroundColor(Qt::blue);
    m_button->mouseEntered(nullptr);
    QSignalSpy hovers(m_button, &PNTextColorButton::hoverStateChanged);
    m_button->layer()->setBackgroundColor(Qt::green);
    m_button->setSelected(false);
    m_button->setEnabled(true);
    m_button->setMouseEventAble(true);
    QCOMPARE(background(), QColor(Qt::green));
    QCOMPARE(hovers.count(), 0);
}

void PNTextColorButtonTest::fallsBackToTheNormalTextColour()
{
    m_button->setSelected(true);
    QCOMPARE(titleColor(), QColor(Qt::white));
    QVERIFY(!m_button->currentTitleColor());
    QCOMPARE(m_button->alphaValue(), 0.85);
}

void PNTextColorButtonTest::isTransparentWithoutAnyColour()
{
    m_button->setNormalTextColor(nullptr);
    QVERIFY(!m_button->attributedTitle().attributesAt(0).foregroundColor);
    QCOMPARE(m_button->alphaValue(), 0.0);
}

void PNTextColorButtonTest::keepsItsAlphaForAnEmptyTitle()
{
    m_button->setAlphaValue(0.3);
    m_button->changBtnTitleAndColor(u""_s, Qt::green);
    QCOMPARE(m_button->attributedTitle().string(), u""_s);
    QVERIFY(m_button->attributedTitle().runs().isEmpty());
    QCOMPARE(m_button->alphaValue(), 0.3);
    QVERIFY(m_button->currentTitleColor().sameValue(kx::Color(Qt::green)));
}

void PNTextColorButtonTest::rendersTheTitleOfItsState()
{
    m_button->setAlternateTitle(u"Pause"_s);
    QCOMPARE(m_button->currentTitle(), u"Play"_s);
    m_button->setState(1);
    QCOMPARE(m_button->currentTitle(), u"Pause"_s);
    const kx::AttributedString alternate = m_button->attributedAlternateTitle();
    QCOMPARE(alternate.string(), u"Pause"_s);
    QCOMPARE(alternate.attributesAt(0).foregroundColor.toQColor(), QColor(Qt::white));
    m_button->changeBtnTitle(u"Stop"_s);
    QCOMPARE(m_button->attributedAlternateTitle().string(), u"Stop"_s);
    QCOMPARE(m_button->title(), u"Play"_s);
    m_button->setAlternateTitle(u""_s);
    QCOMPARE(m_button->currentTitle(), u"Play"_s);
}

void PNTextColorButtonTest::truncatesAtTheTailUnlessToldOtherwise()
{
    const auto mode = [&] { return m_button->attributedTitle().attributesAt(0).paragraphStyle->lineBreakMode; };
    QCOMPARE(int(m_button->lineBreakMode()), 0);
    QCOMPARE(mode(), kx::LineBreakMode::TruncatingTail);
    m_button->setLineBreakMode(kx::LineBreakMode::TruncatingHead);
    m_button->setAlignment(kx::TextAlignment::Right);
    m_button->changeBtnTitle(u"Stop"_s);
    QCOMPARE(mode(), kx::LineBreakMode::TruncatingHead);
    QCOMPARE(m_button->attributedTitle().attributesAt(0).paragraphStyle->alignment, kx::TextAlignment::Right);
}

void PNTextColorButtonTest::setsTheBaseline()
{
    QCOMPARE(m_button->attributedTitle().attributesAt(0).baselineOffset, std::optional(0.0));
    m_button->setBaseline(3);
    m_button->changeBtnTitle(u"Stop"_s);
    QCOMPARE(m_button->attributedTitle().attributesAt(0).baselineOffset, std::optional(3.0));
}

void PNTextColorButtonTest::tintsItsImageForGood()
{
    QImage grey(10, 10, QImage::Format_ARGB32_Premultiplied);
    grey.fill(Qt::gray);
    m_button->setImage(grey);
    m_button->changBtnTitleAndColor(u"Play"_s, QColor(0, 255, 0, 128));
    QCOMPARE(m_button->image().toQImage(1).pixelColor(5, 5), QColor(0, 255, 0)); // at full opacity
    QVERIFY(qAbs(m_button->alphaValue() - 128 / 255.0) < 1e-4);
    m_button->setNormalTextColor(Qt::blue);
    m_button->setImage(grey);
    m_button->changBtnTitleAndColor(u"Play"_s, nullptr); // the normal one stands for none
    QCOMPARE(m_button->image().toQImage(1).pixelColor(5, 5), QColor(Qt::blue));
}

void PNTextColorButtonTest::hasAnImageForEachState()
{
    const auto pixel = [](const kx::Image &image) { return image.toQImage(1).pixelColor(0, 0); };
    QImage grey(10, 10, QImage::Format_ARGB32_Premultiplied);
    grey.fill(Qt::gray);
    const kx::Image off = grey;
    const kx::Image on = grey.copy();
    PNTextColorButton button;
    button.setCurrentImage(off);
    QVERIFY(button.image() == off);
    button.setState(1);
    QVERIFY(button.currentImage() == off); // there is no other
    button.setCurrentImage(on);
    QVERIFY(button.alternateImage() == on);
    QVERIFY(button.currentImage() == on);
    QVERIFY(button.image() == off);
    button.changBtnTitleAndColor(u"Play"_s, Qt::green);
    QCOMPARE(pixel(button.alternateImage()), QColor(Qt::green));
    QCOMPARE(pixel(button.image()), QColor(Qt::gray));
    button.setState(0);
    QVERIFY(button.currentImage() == button.image());
}

void PNTextColorButtonTest::hasNoFontWhereTheFaceIsMissing()
{
    QFont::insertSubstitution(u"PingFangSC-Regular"_s, u"DejaVu Sans"_s);
    const double size = m_button->fontSize();
    m_button->changeBtnTitle(u"Stop"_s);
    QVERIFY(m_button->font());
    QCOMPARE(m_button->font().toQFont().family(), u"DejaVu Sans"_s);
    QCOMPARE(m_button->font().pointSize(), size);
    QVERIFY(m_button->attributedTitle().attributesAt(0).font == m_button->font());
    QFont::removeSubstitutions(u"PingFangSC-Regular"_s);
    m_button->changeBtnTitle(u"Stop"_s);
    if (!kx::Font::named(u"PingFangSC-Regular"_s, size)) {
        QVERIFY(!m_button->font());
        QVERIFY(!m_button->attributedTitle().attributesAt(0).font);
    }
    QCOMPARE(m_button->fontSize(), size); // and comes back at it
}

void PNTextColorButtonTest::appliesTheNormalColoursAtOnce()
{
    m_button->mouseEntered(nullptr);
    m_button->setNormalTextColor(Qt::yellow);
    QCOMPARE(titleColor(), QColor(Qt::yellow));
    m_button->setNormalBackgroundColor(Qt::blue);
    QCOMPARE(background(), QColor(Qt::blue));
    m_button->setNormalBackgroundColor(nullptr);
    QVERIFY(!m_button->layer()->backgroundColor());
    m_button->setHoverTextColor(Qt::green); // only kept
    QCOMPARE(titleColor(), QColor(Qt::yellow));
}

void PNTextColorButtonTest::appliesTheRestWhenItAwakes()
{
    PNTextColorButton button;
    button.setTitle(u"Play"_s);
    QVERIFY(!button.attributedTitle().attributesAt(0).foregroundColor); // a title alone is not rendered
    button.setCornerRadius(6);
    QCOMPARE(button.layer()->cornerRadius(), 0.0);
    button.awakeFromNib();
    QVERIFY(button.wantsLayer());
    QCOMPARE(button.layer()->cornerRadius(), 6.0);
    QCOMPARE(button.attributedTitle().attributesAt(0).foregroundColor.toQColor(), QColor(Qt::white));
    button.setCornerRadius(-1);
    button.awakeFromNib();
    QCOMPARE(button.layer()->cornerRadius(), 6.0);
}

void PNTextColorButtonTest::isFramed()
{
    m_button->addBtnBorder();
    const kx::Layer &layer = *m_button->layer();
    QVERIFY(layer.masksToBounds());
    QCOMPARE(layer.cornerRadius(), 4.0);
    QCOMPARE(layer.borderWidth(), 0.6);
    QCOMPARE(layer.borderColor().toQColor(), QColor(Qt::white));
    m_button->removeBtnBorder();
    QCOMPARE(layer.borderWidth(), 0.0);
    QCOMPARE(layer.cornerRadius(), 4.0);
    QCOMPARE(layer.borderColor().toQColor(), QColor(Qt::white));
}

void PNTextColorButtonTest::showsThePress()
{
    m_button->setHighLightTextColor(Qt::cyan);
    m_button->setHighLightBackgroundColor(Qt::darkBlue);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.press();
    QCOMPARE(titleColor(), QColor(Qt::cyan));
    QCOMPARE(background(), QColor(Qt::darkBlue));
    pointer.release();
    QCOMPARE(titleColor(), hoverRed);
    QCOMPARE(background(), QColor(Qt::darkBlue)); // neither of the others is there
}

void PNTextColorButtonTest::showsTheHoverLookAfterARelease()
{
    m_button->setNormalBackgroundColor(Qt::blue);
    m_button->mouseDown(nullptr);
    m_button->mouseUp(nullptr);
    QCOMPARE(titleColor(), hoverRed);
    QCOMPARE(background(), QColor(Qt::blue)); // in the place of an absent one
    m_button->setHoverBackgroundColor(Qt::green);
    m_button->mouseDown(nullptr);
    m_button->mouseUp(nullptr);
    QCOMPARE(background(), QColor(Qt::green));
}

void PNTextColorButtonTest::performsItsActionWhereverTheReleaseIs()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    pointer.press();
    pointer.moveTo({150, 60});
    pointer.release();
    QCOMPARE(clicked.count(), 1);
    m_button->mouseUp(nullptr); // without a press
    QCOMPARE(clicked.count(), 1);
}

void PNTextColorButtonTest::performsItsActionOnceItShowsTheRelease()
{
    m_button->setHighLightTextColor(Qt::cyan);
    m_button->setHoverBackgroundColor(Qt::green);
    QList<QColor> inTheAction;
    connect(m_button, &QAbstractButton::clicked, this, [&] { inTheAction << titleColor() << background(); });
    m_button->mouseDown(nullptr);
    m_button->mouseUp(nullptr);
    QCOMPARE(inTheAction, (QList<QColor>{hoverRed, Qt::green}));
}

void PNTextColorButtonTest::looksReleasedWhenItsPressComesToNothing()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->setHighLightTextColor(Qt::cyan);
    m_button->setHighLightBackgroundColor(Qt::darkBlue);
    m_button->setHoverBackgroundColor(Qt::green);
    Pointer pointer(*m_button);
    pointer.moveTo({150, 20});
    pointer.moveTo({20, 20});
    pointer.press();
    QCOMPARE(background(), QColor(Qt::darkBlue));
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QCOMPARE(titleColor(), hoverRed); // that hover has not ended
    QCOMPARE(background(), QColor(Qt::green));
    pointer.release();
    m_button->mouseUp(nullptr); // there is no press any more
    QCOMPARE(clicked.count(), 0);
}

void PNTextColorButtonTest::isNotPressedWhileDisabled()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->setHighLightTextColor(Qt::cyan);
    m_button->setEnabled(false);
    Pointer(*m_button).click({20, 20});
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(titleColor(), QColor(Qt::white));
}

void PNTextColorButtonTest::tracksOnlyWhileEnabledAndAble()
{
    QCOMPARE(m_button->trackingAreas().size(), 1);
    QCOMPARE(m_button->trackingAreas().first()->options().toInt(), 0x347);
    m_button->setEnabled(false);
    QVERIFY(m_button->trackingAreas().isEmpty());
    m_button->setEnabled(true);
    QCOMPARE(m_button->trackingAreas().size(), 1);
    QSignalSpy changed(m_button, &PNTextColorButton::mouseEventAbleChanged);
    m_button->setMouseEventAble(false);
    m_button->setMouseEventAble(false);
    QCOMPARE(changed.count(), 1);
    QVERIFY(m_button->trackingAreas().isEmpty());
}

void PNTextColorButtonTest::reportsHovers()
{
    QList<bool> hovers;
    m_button->setHoverStateListener([&](bool hovered) { hovers << hovered; });
    QSignalSpy signal(m_button, &PNTextColorButton::hoverStateChanged);
    m_button->mouseEntered(nullptr);
    m_button->updateTrackingAreas();
    QCOMPARE(hovers, (QList<bool>{true, false}));
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_button->mouseEntered(nullptr);
    QCOMPARE(hovers, (QList<bool>{true, false}));
    QCOMPARE(titleColor(), QColor(Qt::white));
    QCOMPARE(signal.count(), 2);
    m_button->updateCoclor(); // the hover is there all the same
    QCOMPARE(titleColor(), hoverRed);
}

void PNTextColorButtonTest::resetsToNormal()
{
    int exits = 0;
    m_button->mouseEntered(nullptr);
    m_button->setHoverStateListener([&](bool hovered) { exits += !hovered; });
    m_button->reset2Normal();
    QCOMPARE(exits, 1);
    QCOMPARE(titleColor(), QColor(Qt::white));
}

void PNTextColorButtonTest::changesNothingUnderAForeignModalWindow()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    m_button->mouseEntered(nullptr);
    QCOMPARE(titleColor(), QColor(Qt::white));
    dialog.hide();
    m_button->mouseEntered(nullptr);
    dialog.show();
    m_button->mouseExited(nullptr);
    QCOMPARE(titleColor(), hoverRed);
}

void PNTextColorButtonTest::hoversInAModalWindowOfItsOwn()
{
    QDialog dialog;
    dialog.setModal(true);
    PNTextColorButton button(&dialog);
    button.changeBtnTitle(u"Play"_s);
    dialog.show();
    button.mouseEntered(nullptr);
    QCOMPARE(button.attributedTitle().attributesAt(0).foregroundColor.toQColor(), hoverRed);
}

void PNTextColorButtonTest::setsTheCursorOfAMove()
{
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    kx::Cursor::set(Qt::ArrowCursor);
    m_button->mouseMoved(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    m_button->mouseExited(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_button->mouseMoved(nullptr); // the pointer has left
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_button->mouseEntered(nullptr);
    m_button->mouseMoved(nullptr); // and is back
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
}

void PNTextColorButtonTest::leavesTheCursorOfAMoveAlone_data()
{
    QTest::addColumn<std::function<void(PNTextColorButton &)>>("change");
    const auto row = [](const char *name, const std::function<void(PNTextColorButton &)> &change) {
        QTest::newRow(name) << change;
    };
    row("disabled", [](PNTextColorButton &button) { button.setEnabled(false); });
    row("not able", [](PNTextColorButton &button) { button.setMouseEventAble(false); });
    row("in a window that ignores the mouse", [](PNTextColorButton &button) {
        button.window()->setAttribute(Qt::WA_TransparentForMouseEvents);
        kx::Cursor::set(Qt::WaitCursor);
        button.cursorUpdate(nullptr);
        QCOMPARE(kx::Cursor::current().shape(), Qt::WaitCursor);
    });
}

void PNTextColorButtonTest::leavesTheCursorOfAMoveAlone()
{
    QFETCH(std::function<void(PNTextColorButton &)>, change);
    Pointer pointer(*m_button);
    pointer.moveTo({150, 20});
    pointer.moveTo({20, 20});
    change(*m_button);
    kx::Cursor::set(Qt::WaitCursor);
    m_button->mouseMoved(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::WaitCursor);
}

// In a panel of the modal window, which that one does not keep the user from.
void PNTextColorButtonTest::leavesTheCursorUnderAForeignModalWindow()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QWidget panel(&dialog, Qt::Tool);
    panel.resize(200, 100);
    PNTextColorButton button(&panel);
    button.setGeometry(20, 20, 80, 40);
    if (QGuiApplication::platformName() == u"offscreen"_s)
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    Pointer pointer(button);
    pointer.moveTo({150, 20});
    pointer.moveTo({20, 20});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor); // this one is no matter of windows
    kx::Cursor::set(Qt::WaitCursor);
    button.mouseMoved(nullptr);
    button.mouseExited(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::WaitCursor);
}

void PNTextColorButtonTest::keepsItsPlainTitle()
{
    QCOMPARE(m_button->plainTitle(), u"Play"_s);
    m_button->setAlternateTitle(u"Pause"_s);
    m_button->setState(1);
    QCOMPARE(m_button->currentTitle(), u"Pause"_s);
    QCOMPARE(m_button->plainTitle(), u"Play"_s); // that of the attributed title, whatever the state

    PNTextColorButton empty;
    QVERIFY(empty.plainTitle().isNull());
    empty.setAlternateTitle(u"Pause"_s);
    empty.setState(1);
    QCOMPARE(empty.plainTitle(), u"Pause"_s);
}

void PNTextColorButtonTest::mayBeDeletedByItsListenerAndItsAction()
{
    m_button->setHoverStateListener([this](bool) { delete m_button.data(); });
    m_button->mouseEntered(nullptr);
    QVERIFY(!m_button);
    auto *other = new PNTextColorButton(m_window.get());
    m_button = other;
    connect(other, &QAbstractButton::clicked, other, [other] { delete other; });
    other->mouseDown(nullptr);
    other->mouseUp(nullptr);
    QVERIFY(!m_button);
}

void PNTextColorButtonTest::mayBeDeletedWhenItsHoverEnds_data()
{
    QTest::addColumn<std::function<void(PNTextColorButton &)>>("end");
    const auto row = [](const char *name, const std::function<void(PNTextColorButton &)> &end) {
        QTest::newRow(name) << end;
    };
    row("exit", [](PNTextColorButton &button) { button.mouseExited(nullptr); });
    row("not able", [](PNTextColorButton &button) { button.setMouseEventAble(false); });
    row("disabled", [](PNTextColorButton &button) { button.setEnabled(false); });
    row("reset", [](PNTextColorButton &button) { button.reset2Normal(); });
}

void PNTextColorButtonTest::mayBeDeletedWhenItsHoverEnds()
{
    QFETCH(std::function<void(PNTextColorButton &)>, end);
    m_button->mouseEntered(nullptr);
    m_button->setHoverStateListener([this](bool) { delete m_button.data(); });
    end(*m_button);
    QVERIFY(!m_button);
}

void PNTextColorButtonTest::mayBeDeletedWhenItsTitleChanges_data()
{
    QTest::addColumn<std::function<void(PNTextColorButton &)>>("change");
    const auto row = [](const char *name, const std::function<void(PNTextColorButton &)> &change) {
        QTest::newRow(name) << change;
    };
    row("enter", [](PNTextColorButton &button) { button.mouseEntered(nullptr); });
    row("exit", [](PNTextColorButton &button) { button.mouseExited(nullptr); });
    row("press", [](PNTextColorButton &button) { button.mouseDown(nullptr); });
    row("release", [](PNTextColorButton &button) {
        {
            const QSignalBlocker silent(button);
            button.mouseDown(nullptr);
        }
        button.mouseUp(nullptr);
    });
    row("selection", [](PNTextColorButton &button) { button.setSelected(true); });
    row("state", [](PNTextColorButton &button) { button.setState(1); });
    row("awaking", [](PNTextColorButton &button) { button.awakeFromNib(); });
}

void PNTextColorButtonTest::mayBeDeletedWhenItsTitleChanges()
{
    QFETCH(std::function<void(PNTextColorButton &)>, change);
    m_button->setHighLightTextColor(QColor(Qt::blue));
    m_button->setHighLightBackgroundColor(QColor(Qt::gray));
    m_button->setNormalBackgroundColor(QColor(Qt::black));
    m_button->setHoverBackgroundColor(QColor(Qt::darkGray));
    connect(m_button, &kx::Button::titleChanged, this, [this] { delete m_button.data(); });
    change(*m_button);
    QVERIFY(!m_button);
}

void PNTextColorButtonTest::hasPropertiesForForms()
{
    QSignalSpy colors(m_button, &PNTextColorButton::colorsChanged);
    QSignalSpy baseline(m_button, &PNTextColorButton::baselineChanged);
    QSignalSpy radius(m_button, &PNTextColorButton::cornerRadiusChanged);
    const QColor color(1, 2, 3);
    int count = 0;
    for (const char *name : {"normalTextColor", "hoverTextColor", "highLightTextColor", "selectedTextColor",
             "normalBackgroundColor", "hoverBackgroundColor", "highLightBackgroundColor", "disableBackgroundColor"}) {
        QVERIFY2(m_button->setProperty(name, color), name);
        QCOMPARE(m_button->property(name).value<QColor>(), color);
        QCOMPARE(colors.count(), ++count);
    }
    QCOMPARE(background(), color);
    QCOMPARE(m_button->property("currentTitleColor").value<QColor>(), color);
    QVERIFY(!m_button->setProperty("currentTitleColor", color)); // read only
    QVERIFY(m_button->setProperty("selectedTextColor", QColor()));
    QVERIFY(!m_button->selectedTextColor());
    for (int i = 0; i < 2; ++i) {
        QVERIFY(m_button->setProperty("baseline", 2.0));
        QVERIFY(m_button->setProperty("cornerRadius", 3.0));
    }
    QCOMPARE(baseline.count(), 1);
    QCOMPARE(radius.count(), 1);
}

QTEST_MAIN(PNTextColorButtonTest)
#include "PNTextColorButtonTest.moc"
