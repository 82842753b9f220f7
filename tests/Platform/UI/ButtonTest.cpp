// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Button.h>

#include <Support/Pointer.h>
#include <Support/ReceivedEvents.h>
#include <Support/TestImages.h>

#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QHBoxLayout>

#include <functional>

using namespace Qt::StringLiterals;

using kx::test::colorAt;

namespace {

/// Counts what it is asked to perform.
class Target : public QObject {
    Q_OBJECT
public:
    int played = 0;
    int stopped = 0;
    QObject *sender = nullptr;
    bool deletesSender = false;

    Q_INVOKABLE void play(QObject *from)
    {
        ++played;
        sender = from;
        if (deletesSender)
            delete from;
    }
    Q_INVOKABLE void stop() { ++stopped; }
};

QImage square(int side, const QColor &color)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(kx::Button &)>)

class ButtonTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void performsItsActionOnce_data();
    void performsItsActionOnce();
    void knowsActionsWithAndWithoutSender();
    void doesNothingForAnActionThatTheTargetLacks();
    void holdsItsTargetWeakly();
    void mayBeDeletedByItsAction();
    void isDisabled();
    void isNotDownAnyMoreWhenItsPressComesToNothing();
    void showsTheImageOfItsState();
    void scalesItsImageDownAndNeverUp();
    void showsItsImageOnWholePixels_data();
    void showsItsImageOnWholePixels();
    void keepsTitleAndAttributedTitleTogether();
    void drawsItsTitleInThePalettesColour();
    void drawsNoTitleWithoutRoom();
    void drawsTheTitleBesideTheImage();
    void keepsTheImageInSightBesideALongTitle();
    void alignsItsTitle();
    void showsTheTitleOfItsState();
    void hintsAtTheSizeOfItsContent();
    void asksForALayoutOnlyWhenItTakesOtherRoom_data();
    void asksForALayoutOnlyWhenItTakesOtherRoom();
    void takesTheWidgetsFontUntilItHasItsOwn();
    void rendersWithoutAFontAtItsLastSize();
    void takesTheFocusByTabAlone();
    void isAButtonToAssistiveTechnology();

private:
    [[nodiscard]] QImage picture() const { return m_button->grab().toImage(); }

    std::unique_ptr<QWidget> m_window;
    QPointer<kx::Button> m_button;
    std::unique_ptr<Target> m_target;
};

void ButtonTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    m_button = new kx::Button(m_window.get());
    m_button->setGeometry(20, 20, 100, 40);
    m_target = std::make_unique<Target>();
    m_button->setTarget(m_target.get());
    m_button->setAction("play");
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void ButtonTest::performsItsActionOnce_data()
{
    QTest::addColumn<QString>("by");
    for (const char *by : {"mouse", "keyboard", "click", "assistive technology"})
        QTest::newRow(by) << QString::fromLatin1(by);
}

void ButtonTest::performsItsActionOnce()
{
    QFETCH(QString, by);
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    if (by == u"mouse")
        Pointer(*m_button).click({50, 20});
    else if (by == u"keyboard")
        QTest::keyClick(m_button, Qt::Key_Space);
    else if (by == u"click")
        m_button->click();
    else
        QAccessible::queryAccessibleInterface(m_button)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(clicked.count(), 1);
    QCOMPARE(m_target->played, 1);
    QCOMPARE(m_target->sender, m_button.data());
}

void ButtonTest::knowsActionsWithAndWithoutSender()
{
    m_button->setAction("stop");
    m_button->click();
    QCOMPARE(m_target->stopped, 1);
    QCOMPARE(m_target->played, 0);
}

void ButtonTest::doesNothingForAnActionThatTheTargetLacks()
{
    QSignalSpy clicked(m_button, &QAbstractButton::clicked);
    m_button->setAction("dance");
    m_button->click();
    m_button->setAction({});
    m_button->click();
    QCOMPARE(m_target->played + m_target->stopped, 0);
    QCOMPARE(clicked.count(), 2);
}

void ButtonTest::holdsItsTargetWeakly()
{
    m_target.reset();
    QVERIFY(!m_button->target());
    m_button->click();
}

void ButtonTest::mayBeDeletedByItsAction()
{
    m_target->deletesSender = true;
    Pointer(*m_button).click({50, 20});
    QVERIFY(!m_button);
    QCOMPARE(m_target->played, 1);
}

void ButtonTest::isDisabled()
{
    m_button->setImage(square(10, Qt::red));
    m_button->setTitle(u"MM"_s);
    const QImage before = picture();
    m_button->setEnabled(false);
    Pointer(*m_button).click({50, 20});
    m_button->click();
    QCOMPARE(m_target->played, 0);
    QCOMPARE(picture(), before); // no other look
}

void ButtonTest::isNotDownAnyMoreWhenItsPressComesToNothing()
{
    Pointer pointer(*m_button);
    pointer.moveTo({50, 20});
    pointer.press();
    QVERIFY(m_button->isDown());
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    QVERIFY(!m_button->isDown());
    pointer.release();
    QCOMPARE(m_target->played, 0);
    dialog.hide();
    pointer.click({50, 20});
    QCOMPARE(m_target->played, 1);
}

void ButtonTest::showsTheImageOfItsState()
{
    QSignalSpy changed(m_button, &kx::Button::stateChanged);
    m_button->setImage(square(20, Qt::red));
    m_button->setState(1);
    QCOMPARE(colorAt(picture(), 50.5, 20.5), QColor(Qt::red));
    m_button->setAlternateImage(square(20, Qt::blue));
    QCOMPARE(colorAt(picture(), 50.5, 20.5), QColor(Qt::blue));
    m_button->setState(0);
    QCOMPARE(colorAt(picture(), 50.5, 20.5), QColor(Qt::red));
    QCOMPARE(changed.count(), 2);
}

void ButtonTest::scalesItsImageDownAndNeverUp()
{
    m_button->setImage(square(10, Qt::red));
    QImage shown = picture();
    QCOMPARE(colorAt(shown, 46.5, 16.5), QColor(Qt::red));
    QVERIFY(colorAt(shown, 40.5, 20.5) != QColor(Qt::red));
    m_button->setImage(square(80, Qt::red)); // to 40, the height
    shown = picture();
    QCOMPARE(colorAt(shown, 32.5, 1.5), QColor(Qt::red));
    QCOMPARE(colorAt(shown, 68.5, 38.5), QColor(Qt::red));
    QVERIFY(colorAt(shown, 28.5, 20.5) != QColor(Qt::red));
}

void ButtonTest::showsItsImageOnWholePixels_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("alone") << QString();
    QTest::newRow("beside a title") << u"Play"_s;
}

void ButtonTest::showsItsImageOnWholePixels()
{
    QFETCH(QString, title);
    m_button->setTitle(title);
    m_button->setGeometry(20, 20, 100, 40); // whose middle is between the pixels of an odd image
    m_button->setImage(kx::Image::imageWithSize(QSizeF(11, 11), false, [](QPainter &painter, const QRectF &rect) {
        painter.fillRect(rect, Qt::blue);
        return true;
    }));
    const QImage shown = picture();
    const int side = static_cast<int>(11 * shown.devicePixelRatio());
    QCOMPARE(kx::test::countPixels(shown, Qt::blue), side * side);
}

void ButtonTest::keepsTitleAndAttributedTitleTogether()
{
    QVERIFY(m_button->title().isNull());
    QSignalSpy changed(m_button, &kx::Button::titleChanged);
    m_button->setAttributedTitle(kx::AttributedString(u"Play"_s, {.foregroundColor = Qt::red}));
    QCOMPARE(m_button->title(), u"Play"_s);
    QCOMPARE(m_button->text(), u"Play"_s);
    m_button->setTitle(u"Stop"_s);
    QCOMPARE(m_button->attributedTitle().string(), u"Stop"_s);
    QVERIFY(!m_button->attributedTitle().attributesAt(0).foregroundColor);
    m_button->setAttributedAlternateTitle(kx::AttributedString(u"On"_s));
    QCOMPARE(m_button->alternateTitle(), u"On"_s);
    QCOMPARE(changed.count(), 3);
}

namespace {

// How many pixels between two edges, in points, are about as red as can be.
int redPixels(const QImage &image, double left, double right)
{
    const double ratio = image.devicePixelRatio();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = static_cast<int>(left * ratio); x < static_cast<int>(right * ratio); ++x) {
            const QColor color = image.pixelColor(x, y);
            count += color.red() > 200 && color.green() < 60 && color.blue() < 60;
        }
    }
    return count;
}

} // namespace

void ButtonTest::drawsItsTitleInThePalettesColour()
{
    QPalette palette = m_button->palette();
    palette.setColor(QPalette::ButtonText, Qt::red);
    m_button->setPalette(palette);
    m_button->setTitle(u"MMMM"_s);
    QVERIFY(redPixels(picture(), 0, 100) > 30);
    m_button->setTitle(QString());
    QCOMPARE(redPixels(picture(), 0, 100), 0);
}

void ButtonTest::drawsNoTitleWithoutRoom()
{
    m_button->setImage(square(20, Qt::blue));
    m_button->setTitle(u"MMMM"_s);
    m_button->resize(20, 20);
    QCOMPARE(m_button->grab().toImage().pixelColor(10, 10), QColor(Qt::blue));
    m_button->setImage({});
    m_button->resize(0, 20);
    QVERIFY(m_button->grab().isNull());
}

void ButtonTest::drawsTheTitleBesideTheImage()
{
    m_button->setImage(square(20, Qt::blue));
    m_button->setAttributedTitle(kx::AttributedString(u"MM"_s, {.foregroundColor = Qt::red}));
    const QImage shown = picture();
    double blueEnd = 0;
    for (double x = 0; x < 100; x += 0.5) {
        if (colorAt(shown, x, 20.5) == QColor(Qt::blue))
            blueEnd = x;
    }
    QVERIFY(blueEnd > 0);
    QVERIFY(blueEnd < 60);
    QCOMPARE(redPixels(shown, 0, blueEnd), 0);
    QVERIFY(redPixels(shown, blueEnd, 100) > 15);
}

void ButtonTest::keepsTheImageInSightBesideALongTitle()
{
    m_button->setImage(square(20, Qt::blue));
    m_button->setTitle(QString(40, u'M'));
    const QImage shown = picture();
    QCOMPARE(colorAt(shown, 0.5, 20.5), QColor(Qt::blue));
    QCOMPARE(colorAt(shown, 19.5, 20.5), QColor(Qt::blue));
}

void ButtonTest::alignsItsTitle()
{
    m_button->setAttributedTitle(kx::AttributedString(u"M"_s, {.foregroundColor = Qt::red}));
    const auto reds = [&] {
        const QImage shown = picture();
        return QList<bool>{redPixels(shown, 0, 30) > 5, redPixels(shown, 30, 70) > 5, redPixels(shown, 70, 100) > 5};
    };
    QCOMPARE(reds(), (QList<bool>{false, true, false}));
    m_button->setAlignment(kx::TextAlignment::Left);
    QCOMPARE(reds(), (QList<bool>{true, false, false}));
    m_button->setAlignment(kx::TextAlignment::Right);
    QCOMPARE(reds(), (QList<bool>{false, false, true}));
}

void ButtonTest::showsTheTitleOfItsState()
{
    const auto reds = [&] { return redPixels(picture(), 0, 100); };
    m_button->setAttributedTitle(kx::AttributedString(u"MMMM"_s, {.foregroundColor = Qt::red}));
    m_button->setAlternateTitle(u""_s);
    m_button->setState(1);
    QVERIFY(reds() > 30); // an empty one is none
    m_button->setAlternateTitle(u"MMMM"_s);
    QCOMPARE(reds(), 0);
    m_button->setState(0);
    QVERIFY(reds() > 30);
}

void ButtonTest::hintsAtTheSizeOfItsContent()
{
    QCOMPARE(m_button->intrinsicContentSize(), QSizeF(0, 0));
    m_button->setImage(square(20, Qt::blue));
    QCOMPARE(m_button->sizeHint(), QSize(20, 20));
    const QSizeF image = m_button->intrinsicContentSize();
    m_button->setTitle(u"Play"_s);
    QVERIFY(m_button->intrinsicContentSize().width() > image.width() + 10);
    QCOMPARE(m_button->minimumSizeHint(), QSize(0, 0)); // what does not fit is cut
}

void ButtonTest::asksForALayoutOnlyWhenItTakesOtherRoom_data()
{
    using Change = std::function<void(kx::Button &)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<int>("requests");
    const auto titled = [](const kx::TextAttributes &attributes) {
        return Change(
            [attributes](kx::Button &b) { b.setAttributedTitle(kx::AttributedString(u"Play"_s, attributes)); });
    };
    QFont large;
    large.setPixelSize(40);

    QTest::newRow("an image of the same size") << Change([](kx::Button &b) { b.setImage(square(20, Qt::red)); }) << 0;
    QTest::newRow("a larger image") << Change([](kx::Button &b) { b.setImage(square(21, Qt::red)); }) << 1;
    QTest::newRow("no image") << Change([](kx::Button &b) { b.setImage(nullptr); }) << 1;
    QTest::newRow("an empty image") << Change([](kx::Button &b) {
        b.setImage(nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        b.setImage(kx::Image::withRepresentations({0, 0}, {}));
    }) << 2;
    QTest::newRow("a title in another colour") << titled({.foregroundColor = Qt::red}) << 0;
    QTest::newRow("a title in another font") << titled({.font = large}) << 1;
    QTest::newRow("a raised title") << titled({.baselineOffset = 9}) << 1;
    QTest::newRow("another title") << Change([](kx::Button &b) { b.setTitle(u"Pause"_s); }) << 1;
    QTest::newRow("the font it has") << Change([](kx::Button &b) { b.setFont(QFont(*b.font())); }) << 0;
    QTest::newRow("another font") << Change([large](kx::Button &b) { b.setFont(large); }) << 1;
    QTest::newRow("an attachment that has changed") << Change([](kx::Button &b) {
        const auto attachment = std::make_shared<kx::TextAttachment>(square(5, Qt::red));
        b.setAttributedTitle(kx::AttributedString(attachment));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        attachment->setImage(square(30, Qt::red));
        b.setAttributedTitle(b.attributedTitle());
    }) << 2;
}

void ButtonTest::asksForALayoutOnlyWhenItTakesOtherRoom()
{
    QFETCH(std::function<void(kx::Button &)>, change);
    m_button->setImage(square(20, Qt::blue));
    m_button->setTitle(u"Play"_s);
    QWidget row(m_window.get());
    row.resize(m_window->size());
    auto *const layout = new QHBoxLayout(&row);
    layout->addWidget(m_button);
    layout->addStretch();
    row.show();
    QTRY_COMPARE(m_button->width(), m_button->sizeHint().width());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);

    ReceivedEvents requests(row, QEvent::LayoutRequest);
    change(*m_button);
    QTEST(requests.taken(), "requests");
    QCOMPARE(m_button->width(), m_button->sizeHint().width());
}

void ButtonTest::takesTheWidgetsFontUntilItHasItsOwn()
{
    const auto fontOf = [](int pixels) {
        QFont font;
        font.setPixelSize(pixels);
        return font;
    };
    m_button->setTitle(u"M"_s);
    m_window->setFont(fontOf(30));
    QCOMPARE(m_button->fontSize(), 30.0);
    QVERIFY(m_button->intrinsicContentSize().height() > 25);
    m_button->setProperty("font", fontOf(50)); // as a form that is loaded sets it
    QCOMPARE(m_button->font().pointSize(), 50.0);
    QVERIFY(m_button->sizeHint().height() > 45);

    m_button->setFont(fontOf(20));
    m_button->setProperty("font", fontOf(60));
    QCOMPARE(m_button->font().pointSize(), 20.0);
    m_button->setFont(nullptr);
    m_window->setFont(fontOf(40));
    QVERIFY(!m_button->font());
    QCOMPARE(m_button->fontSize(), 20.0);
}

void ButtonTest::rendersWithoutAFontAtItsLastSize()
{
    QFont large = m_button->QAbstractButton::font();
    large.setPixelSize(30);
    m_button->setFont(large);
    QCOMPARE(m_button->fontSize(), 30.0);
    m_button->setTitle(u"M"_s);
    const double height = m_button->intrinsicContentSize().height();
    QVERIFY(height > 25);
    m_button->setFont(nullptr);
    QVERIFY(!m_button->font());
    QCOMPARE(m_button->fontSize(), 30.0);
    QVERIFY(qAbs(m_button->intrinsicContentSize().height() - height) < 6);
}

void ButtonTest::takesTheFocusByTabAlone()
{
    QCOMPARE(m_button->focusPolicy(), Qt::TabFocus);
    QWidget other(m_window.get());
    other.setFocusPolicy(Qt::StrongFocus);
    other.show();
    other.setFocus();
    QTRY_VERIFY(other.hasFocus());
    Pointer(*m_button).click({50, 20});
    QCOMPARE(m_target->played, 1);
    QVERIFY(other.hasFocus());
}

void ButtonTest::isAButtonToAssistiveTechnology()
{
    m_button->setTitle(u"Play"_s);
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(m_button);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Button);
    QCOMPARE(accessible->text(QAccessible::Name), u"Play"_s);
}

QTEST_MAIN(ButtonTest)
#include "ButtonTest.moc"
