// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNAlphBtn.h>

#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Layer.h>

#include <Support/Pointer.h>
#include <Support/ReceivedEvents.h>

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

int alphaOf(const kx::Image &image)
{
    return image.toQImage(1).pixelColor(10, 10).alpha();
}

QColor colorOf(const kx::Image &image)
{
    QColor color = image.toQImage(1).pixelColor(10, 10);
    color.setAlpha(255);
    return color;
}

constexpr int faint = 115; // 0.45 of 255

} // namespace

class PNAlphBtnTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { m_window.reset(); }

    void hasItsDefaults();
    void makesItsLooksFromOneImage();
    void usesTheHoverImageAsItIs();
    void hasNoStandInForASelectedImage();
    void showsTheLookOfItsState_data();
    void showsTheLookOfItsState();
    void showsANewImageOfItsState();
    void takesItsImageFromAForm();
    void showsToolTips();
    void hovers();
    void ignoresAHoverInAWindowThatIgnoresTheMouse();
    void equalValuesChangeNothing();
    void changesNothingUnderAModalWindow();
    void changesNothingInAModalWindowOfItsOwn();
    void restsWithoutAReport();
    void isPressedLikeAnyButton();
    void tracksEvenWhileDisabled();
    void setsTheCursor();
    void castsAShadowAtTheNextDisplay();
    void keepsItsShadowWithoutAnOffset();
    void paintsNothingAtRestWhileItCastsAShadow_data();
    void paintsNothingAtRestWhileItCastsAShadow();
    void mayBeDeletedByItsListener();
    void keepsTheImageOfAFormWhateverElseIsSet();
    void hasPropertiesForForms();

private:
    std::unique_ptr<QWidget> m_window;
    QPointer<PNAlphBtn> m_button;
    QList<bool> m_hovers;
};

void PNAlphBtnTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_hovers.clear();
    m_window = std::make_unique<QWidget>();
    m_window->setPalette(QPalette(Qt::white));
    m_window->resize(200, 100);
    m_button = new PNAlphBtn(m_window.get());
    m_button->setGeometry(20, 20, 40, 40);
    m_button->setHoverStateListener([this](bool hovered) { m_hovers << hovered; });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PNAlphBtnTest::hasItsDefaults()
{
    const PNAlphBtn button(QRectF(1, 2, 30, 40));
    QCOMPARE(button.size(), QSize(30, 40));
    QVERIFY(!button.normalImage());
    QVERIFY(!button.hoverImage());
    QVERIFY(!button.selectedNormalImage());
    QVERIFY(!button.selectedHoverImage());
    QVERIFY(!button.isSelected());
    QVERIFY(button.wantsUpdateLayer());
    QCOMPARE(button.shadowOffset(), QSizeF(0, 0));
}

void PNAlphBtnTest::makesItsLooksFromOneImage()
{
    const kx::Image image = square(Qt::blue);
    m_button->setNormalImage(image);
    QVERIFY(qAbs(alphaOf(m_button->normalImage()) - faint) <= 1);
    QVERIFY(m_button->hoverImage() == image); // at opacity 1, the image itself
    QVERIFY(qAbs(alphaOf(m_button->image()) - faint) <= 1);
    m_button->mouseEntered(nullptr);
    QVERIFY(m_button->image() == image);
}

void PNAlphBtnTest::usesTheHoverImageAsItIs()
{
    const kx::Image hover = square(Qt::green);
    m_button->setHoverImage(hover);
    QVERIFY(m_button->normalImage() == hover);
    QVERIFY(m_button->image() == hover);
    m_button->setNormalImage(square(Qt::blue));
    QVERIFY(m_button->hoverImage() == hover);
    QCOMPARE(colorOf(m_button->normalImage()), QColor(Qt::blue));
}

void PNAlphBtnTest::hasNoStandInForASelectedImage()
{
    m_button->setSelectedHoverImage(square(Qt::green));
    QVERIFY(!m_button->selectedNormalImage());
    const kx::Image image = square(Qt::cyan);
    PNAlphBtn other;
    other.setSelectedNormalImage(image);
    QVERIFY(other.selectedHoverImage() == image);
    QVERIFY(qAbs(alphaOf(other.selectedNormalImage()) - faint) <= 1);
}

void PNAlphBtnTest::showsTheLookOfItsState_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<int>("alpha");
    QTest::newRow("normal") << true << false << false << QColor(Qt::blue) << faint;
    QTest::newRow("hovered") << true << false << true << QColor(Qt::green) << 255;
    QTest::newRow("selected") << true << true << false << QColor(Qt::cyan) << faint;
    QTest::newRow("selected, hovered") << true << true << true << QColor(Qt::magenta) << 255;
    QTest::newRow("disabled") << false << false << false << QColor(Qt::blue) << faint;
    QTest::newRow("disabled, selected") << false << true << false << QColor(Qt::blue) << faint;
}

void PNAlphBtnTest::showsTheLookOfItsState()
{
    QFETCH(bool, enabled);
    QFETCH(bool, selected);
    QFETCH(bool, hovered);
    QFETCH(int, alpha);
    m_button->setNormalImage(square(Qt::blue));
    m_button->setHoverImage(square(Qt::green));
    m_button->setSelectedNormalImage(square(Qt::cyan));
    m_button->setSelectedHoverImage(square(Qt::magenta));
    m_button->setEnabled(enabled);
    m_button->setSelected(selected);
    if (hovered)
        m_button->mouseEntered(nullptr);
    QTEST(colorOf(m_button->image()), "color");
    QVERIFY(qAbs(alphaOf(m_button->image()) - alpha) <= 1);
}

void PNAlphBtnTest::showsANewImageOfItsState()
{
    m_button->setSelected(true);
    m_button->setSelectedNormalImage(square(Qt::cyan));
    QCOMPARE(colorOf(m_button->image()), QColor(Qt::cyan));
    m_button->mouseEntered(nullptr);
    m_button->setSelectedHoverImage(square(Qt::magenta));
    QCOMPARE(colorOf(m_button->image()), QColor(Qt::magenta));
}

void PNAlphBtnTest::takesItsImageFromAForm()
{
    PNAlphBtn button;
    button.setImage(square(Qt::blue));
    button.awakeFromNib();
    QCOMPARE(colorOf(button.normalImage()), QColor(Qt::blue));
    button.setImage(square(Qt::red));
    button.awakeFromNib(); // there is one
    QCOMPARE(colorOf(button.normalImage()), QColor(Qt::blue));
    QVERIFY(qAbs(alphaOf(button.image()) - faint) <= 1);
}

void PNAlphBtnTest::showsToolTips()
{
    m_button->setToolTips(u"play"_s);
    QCOMPARE(m_button->toolTip(), u"play"_s);
    m_button->setSelected(true); // absent ones leave it
    QCOMPARE(m_button->toolTip(), u"play"_s);
    m_button->setSelectToolTips(u"pause"_s);
    QCOMPARE(m_button->toolTip(), u"pause"_s);
    QCOMPARE(m_button->toolTips(), u"play"_s);
    QCOMPARE(m_button->selectToolTips(), u"pause"_s);
    m_button->setEnabled(false);
    m_button->setSelected(false);
    QCOMPARE(m_button->toolTip(), u"pause"_s);
}

void PNAlphBtnTest::hovers()
{
    QSignalSpy signal(m_button, &PNAlphBtn::hoverStateChanged);
    Pointer pointer(*m_button);
    pointer.moveTo({20, 20});
    QTRY_COMPARE(m_hovers, QList<bool>{true});
    pointer.moveTo({100, 20});
    QTRY_COMPARE(m_hovers, (QList<bool>{true, false}));
    m_button->mouseEntered(nullptr);
    m_button->updateTrackingAreas(); // a lost hover is reported
    QCOMPARE(m_hovers, (QList<bool>{true, false, true, false}));
    QCOMPARE(signal.count(), 4);
}

void PNAlphBtnTest::ignoresAHoverInAWindowThatIgnoresTheMouse()
{
    const kx::Image image = square(Qt::blue);
    m_button->setNormalImage(image);
    m_button->setToolTips(u"play"_s);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_button->mouseEntered(nullptr);
    QVERIFY(m_hovers.isEmpty());
    QVERIFY(m_button->image() != image);
    QCOMPARE(m_button->toolTip(), u"play"_s);
    m_button->updateImage(); // the hover is there all the same
    QVERIFY(m_button->image() == image);
    m_button->mouseExited(nullptr);
    QCOMPARE(m_hovers, QList<bool>{false});
}

void PNAlphBtnTest::equalValuesChangeNothing()
{
    m_button->setNormalImage(square(Qt::blue));
    const kx::Image other = square(Qt::red);
    m_button->setImage(other);
    m_button->setSelected(false);
    QVERIFY(m_button->image() == other);
}

void PNAlphBtnTest::changesNothingUnderAModalWindow()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    m_button->mouseEntered(nullptr);
    m_button->mouseExited(nullptr);
    QVERIFY(m_hovers.isEmpty());
}

// Deliberate: it does not matter whose modal window it is.
void PNAlphBtnTest::changesNothingInAModalWindowOfItsOwn()
{
    QDialog dialog;
    dialog.setModal(true);
    dialog.resize(200, 100);
    PNAlphBtn button(&dialog);
    button.setGeometry(20, 20, 40, 40);
    button.setNormalImage(square(Qt::blue));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    Pointer pointer(button);
    pointer.moveTo({100, 20});
    pointer.moveTo({20, 20});
    QVERIFY(qAbs(alphaOf(button.image()) - faint) <= 1);
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    button.mouseExited(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
}

void PNAlphBtnTest::restsWithoutAReport()
{
    m_button->setNormalImage(square(Qt::blue));
    m_button->mouseEntered(nullptr);
    m_button->restBtnState();
    QVERIFY(qAbs(alphaOf(m_button->image()) - faint) <= 1);
    QCOMPARE(m_hovers, QList<bool>{true});
}

void PNAlphBtnTest::isPressedLikeAnyButton()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    Pointer pointer(*m_button);
    pointer.click({20, 20});
    QCOMPARE(clicked.count(), 1);
    pointer.moveTo({20, 20});
    pointer.press();
    pointer.moveTo({150, 60}); // away, unlike the other buttons
    pointer.release();
    QCOMPARE(clicked.count(), 1);
    m_button->setEnabled(false);
    pointer.click({20, 20});
    QCOMPARE(clicked.count(), 1);
}

void PNAlphBtnTest::tracksEvenWhileDisabled()
{
    m_button->setEnabled(false);
    m_button->updateTrackingAreas();
    QCOMPARE(m_button->trackingAreas().size(), 1);
    QCOMPARE(m_button->trackingAreas().first()->options().toInt(), 0x347);
}

void PNAlphBtnTest::setsTheCursor()
{
    Pointer pointer(*m_button);
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

void PNAlphBtnTest::castsAShadowAtTheNextDisplay()
{
    m_button->setHoverImage(square(Qt::blue)); // 20 x 20 in the middle, opaque
    m_button->setShadowOffset({0, -12});
    QVERIFY(!m_button->layer()->castsShadow());
    m_button->update();
    const auto below = [&] { return m_window->grab().toImage().pixelColor(40, 55); };
    QTRY_VERIFY(below() != QColor(Qt::white)); // 5 below the image, within the button
    const kx::Layer &layer = *m_button->layer();
    QVERIFY(layer.shadowColor().sameValue(kx::Color::white(0.0, 0.15)));
    QCOMPARE(layer.shadowOffset(), QSizeF(0, -12));
    QCOMPARE(layer.shadowRadius(), 2.0);
    QCOMPARE(layer.shadowOpacity(), 1.0);
    QVERIFY(!layer.masksToBounds());
    // As dark as 0.15 black, and along the image's edges, not the button's.
    QTRY_VERIFY(qAbs(below().red() - 217) <= 2);
    QCOMPARE(m_window->grab().toImage().pixelColor(24, 55), QColor(Qt::white));
}

void PNAlphBtnTest::keepsItsShadowWithoutAnOffset()
{
    m_button->setShadowOffset({3, 3});
    m_button->updateLayer();
    m_button->setShadowOffset({0, 0});
    m_button->updateLayer();
    QCOMPARE(m_button->layer()->shadowOffset(), QSizeF(3, 3));
}

void PNAlphBtnTest::paintsNothingAtRestWhileItCastsAShadow_data()
{
    QTest::addColumn<QSizeF>("offset");
    QTest::newRow("somewhere") << QSizeF(1, -1);
    QTest::newRow("nowhere") << QSizeF(qQNaN(), qInf());
}

void PNAlphBtnTest::paintsNothingAtRestWhileItCastsAShadow()
{
    QFETCH(QSizeF, offset);
    m_button->setHoverImage(square(Qt::blue));
    m_button->setShadowOffset(offset);
    m_button->update();
    QTRY_VERIFY(m_button->layer()->castsShadow());
    ReceivedEvents paintings(*m_button, QEvent::Paint);
    const auto paintsNothing = [&] {
        int count = 0;
        for (int round = 0; round < 10; ++round)
            count += paintings.taken();
        return count == 0;
    };
    QTRY_VERIFY(paintsNothing());
}

void PNAlphBtnTest::mayBeDeletedByItsListener()
{
    m_button->setHoverStateListener([this](bool) { delete m_button.data(); });
    m_button->mouseEntered(nullptr);
    QVERIFY(!m_button);
}

void PNAlphBtnTest::keepsTheImageOfAFormWhateverElseIsSet()
{
    PNAlphBtn button;
    button.setImage(square(Qt::blue));
    button.setToolTips(u"play"_s);
    button.setSelectedNormalImage(square(Qt::red));
    button.setSelectedHoverImage(square(Qt::red));
    button.awakeFromNib();
    QCOMPARE(colorOf(button.normalImage()), QColor(Qt::blue));
    QCOMPARE(button.toolTip(), u"play"_s);
}

void PNAlphBtnTest::hasPropertiesForForms()
{
    QPixmap pixmap(20, 20);
    pixmap.fill(Qt::yellow);
    for (const char *name : {"normalImage", "hoverImage", "selectedNormalImage", "selectedHoverImage"}) {
        PNAlphBtn button;
        QVERIFY(button.property(name).value<QIcon>().isNull());
        QVERIFY(button.setProperty(name, QIcon(pixmap)));
        const QIcon icon = button.property(name).value<QIcon>(); // what was set, not the look
        QCOMPARE(icon.pixmap(20, 20).toImage().pixelColor(10, 10), QColor(Qt::yellow));
    }
    QSignalSpy offset(m_button, &PNAlphBtn::shadowOffsetChanged);
    QVERIFY(m_button->setProperty("shadowOffset", QSizeF(1, -2)));
    QCOMPARE(offset.takeFirst(), QVariantList{QSizeF(1, -2)});
    QCOMPARE(m_button->shadowOffset(), QSizeF(1, -2));
}

QTEST_MAIN(PNAlphBtnTest)
#include "PNAlphBtnTest.moc"
