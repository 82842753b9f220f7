// SPDX-License-Identifier: MIT
#include "ShownRuns.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

using kx::TextAttributes;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

QImage drawn(KXRichTextView &view, double scale = 1, const QRegion &part = {})
{
    QImage image((QSizeF(view.size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    view.render(&image, part.boundingRect().topLeft(), part, QWidget::DrawChildren);
    return image;
}

/// In the pixels of the image, of the pixel around a point of the view.
QColor colorAt(const QImage &image, double x, double y)
{
    const double scale = image.devicePixelRatio();
    return image.pixelColor(int(x * scale), int(y * scale));
}

bool isBlank(const QImage &image)
{
    QImage white = image;
    white.fill(Qt::white);
    return image == white;
}

/// Whether something of this hue is within the area, which counts in the view.
bool hasInk(const QImage &image, const QRectF &area, const QColor &ink)
{
    const double scale = image.devicePixelRatio();
    const QRect pixels = QRectF(area.topLeft() * scale, area.size() * scale).toAlignedRect() & image.rect();
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            const QColor color = image.pixelColor(x, y);
            const int distance =
                qAbs(color.red() - ink.red()) + qAbs(color.green() - ink.green()) + qAbs(color.blue() - ink.blue());
            if (distance < 120)
                return true;
        }
    }
    return false;
}

Run coloredRun(const QString &text, const QColor &color, const QColor &background = {})
{
    const Run run = plainRun(text);
    run->setTextColor(color);
    if (background.isValid())
        run->setBackgroundColor(background);
    return run;
}

void addScales()
{
    QTest::addColumn<double>("scale");
    QTest::newRow("1") << 1.0;
    QTest::newRow("1.5") << 1.5;
    QTest::newRow("2") << 2.0;
}

} // namespace

class KXRichTextViewDrawingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();

    void drawsTheRunsInTheirColors_data() { addScales(); }
    void drawsTheRunsInTheirColors();
    void drawsTextWithoutColorInThePalettes();
    void movesTheTextByItsInsets();
    void drawsBackgroundsFromTheOrigin_data() { addScales(); }
    void drawsBackgroundsFromTheOrigin();
    void fillsItsBackground();
    void blendsATranslucentBackground();
    void clipsToTheRoundCorner_data() { addScales(); }
    void clipsToTheRoundCorner();
    void theOutlineFollowsTheRepaintedPart();
    void drawsNothingWithoutRuns();
    void drawsImagesUpright_data() { addScales(); }
    void drawsImagesUpright();
    void settersAskForNoRepaint();
    void newRunsAskForARepaint();
    void survivesSizesAndInsetsThatAreNone_data();
    void survivesSizesAndInsetsThatAreNone();
    void aPartIsDrawnAsInTheWhole();
    void hiddenViewsDrawNothing();

private:
    std::unique_ptr<KXRichTextView> m_view;
};

void KXRichTextViewDrawingTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_view = std::make_unique<KXRichTextView>();
    m_view->setFont(textFont());
    m_view->resize(200, 60);
}

void KXRichTextViewDrawingTest::drawsTheRunsInTheirColors()
{
    QFETCH(double, scale);
    m_view->setKXAttributedStrings({coloredRun(u"One "_qs, Qt::red), coloredRun(u"two"_qs, Qt::blue)});
    const QImage image = drawn(*m_view, scale);
    const double split = advance(u"One "_qs);
    QVERIFY(hasInk(image, QRectF(0, 0, split, 24), Qt::red));
    QVERIFY(!hasInk(image, QRectF(0, 0, split - 1, 24), Qt::blue));
    QVERIFY(hasInk(image, QRectF(split, 0, 40, 24), Qt::blue));
    QVERIFY(!hasInk(image, QRectF(split + 1, 0, 40, 24), Qt::red));
}

void KXRichTextViewDrawingTest::drawsTextWithoutColorInThePalettes()
{
    m_view->setKXAttributedStrings({plainRun(u"Green"_qs)});
    QPalette palette = m_view->palette();
    palette.setColor(QPalette::WindowText, QColor(0, 160, 0));
    m_view->setPalette(palette);
    QVERIFY(hasInk(drawn(*m_view), m_view->rect(), QColor(0, 160, 0)));
    QVERIFY(!hasInk(drawn(*m_view), m_view->rect(), Qt::black));
}

void KXRichTextViewDrawingTest::movesTheTextByItsInsets()
{
    m_view->setKXAttributedStrings({coloredRun(u"One"_qs, Qt::red)});
    const QImage before = drawn(*m_view);
    m_view->setInsets({30, 20, 0, 0});
    const QImage after = drawn(*m_view);
    QCOMPARE(after.copy(30, 20, 100, 30), before.copy(0, 0, 100, 30));
    QVERIFY(isBlank(after.copy(0, 0, 29, 60)));
    QVERIFY(isBlank(after.copy(0, 0, 200, 20)));
}

void KXRichTextViewDrawingTest::drawsBackgroundsFromTheOrigin()
{
    QFETCH(double, scale);
    m_view->setKXAttributedStrings({coloredRun(u"ab"_qs, Qt::red), coloredRun(u"cd"_qs, Qt::blue, Qt::yellow)});
    m_view->setInsets({100, 30, 0, 0});
    const QImage image = drawn(*m_view, scale);
    const double start = advance(u"ab"_qs);
    const double end = advance(u"abcd"_qs);
    QCOMPARE(colorAt(image, start - 2, 10), QColor(Qt::white));
    QCOMPARE(colorAt(image, start + 2, 10), QColor(Qt::yellow));
    QCOMPARE(colorAt(image, start + 2, 1), QColor(Qt::yellow));
    QCOMPARE(colorAt(image, end - 2, lineHeight() - 1), QColor(Qt::yellow));
    QCOMPARE(colorAt(image, end + 2, 10), QColor(Qt::white));
    QCOMPARE(colorAt(image, start + 2, lineHeight() + 1), QColor(Qt::white));
    QVERIFY(hasInk(image, QRectF(100 + start, 30, 40, 24), Qt::blue));
    QVERIFY(!hasInk(image, QRectF(100, 30, 100, 24), Qt::yellow));
}

void KXRichTextViewDrawingTest::fillsItsBackground()
{
    m_view->setKXAttributedStrings({coloredRun(u"One"_qs, Qt::red)});
    m_view->setBackgroundColor(Qt::yellow);
    const QImage image = drawn(*m_view);
    QCOMPARE(colorAt(image, 0, 0), QColor(Qt::yellow));
    QCOMPARE(colorAt(image, 199, 59), QColor(Qt::yellow));
    QVERIFY(hasInk(image, QRectF(0, 0, 40, 24), Qt::red));
    m_view->setBackgroundColor(nullptr);
    QCOMPARE(colorAt(drawn(*m_view), 199, 59), QColor(Qt::white));
}

void KXRichTextViewDrawingTest::blendsATranslucentBackground()
{
    m_view->setBackgroundColor(kx::Color::rgba(0, 0, 1, 0.5));
    const QColor color = colorAt(drawn(*m_view), 100, 30);
    QVERIFY(color.alpha() == 255 && qAbs(color.red() - 127) <= 1 && color.blue() == 255);
}

void KXRichTextViewDrawingTest::clipsToTheRoundCorner()
{
    QFETCH(double, scale);
    m_view->resize(100, 20);
    m_view->setUseRoundCorner(true);
    m_view->setBackgroundColor(Qt::red);
    const QImage image = drawn(*m_view, scale);
    const auto inside = [&](double x, double y) { return colorAt(image, x, y) == QColor(Qt::red); };
    const auto outside = [&](double x, double y) { return colorAt(image, x, y) == QColor(Qt::white); };
    QVERIFY(inside(1, 19)); // a square corner
    QVERIFY(outside(1, 1));
    QVERIFY(inside(10, 1));
    QVERIFY(inside(89, 1));
    QVERIFY(outside(98, 1));
    QVERIFY(outside(98, 18));
    QVERIFY(inside(98, 10));
    QVERIFY(inside(4, 4));
}

void KXRichTextViewDrawingTest::theOutlineFollowsTheRepaintedPart()
{
    m_view->resize(100, 20);
    m_view->setUseRoundCorner(true);
    m_view->setBackgroundColor(Qt::red);
    const QImage left = drawn(*m_view, 1, QRect(0, 0, 50, 20));
    QCOMPARE(colorAt(left, 48, 1), QColor(Qt::white)); // the half circle ends where the part does
    QCOMPARE(colorAt(left, 48, 10), QColor(Qt::red));
    const QImage right = drawn(*m_view, 1, QRect(60, 0, 40, 20));
    QVERIFY(isBlank(right)); // the outline lies at the origin, the part beside it
}

void KXRichTextViewDrawingTest::drawsNothingWithoutRuns()
{
    QVERIFY(isBlank(drawn(*m_view)));
    m_view->setKXAttributedStrings({plainRun(u""_qs), plainRun(u"\n"_qs)});
    QVERIFY(isBlank(drawn(*m_view)));
    m_view->setKXAttributedStrings({plainRun(u"One"_qs)});
    QVERIFY(!isBlank(drawn(*m_view)));
    m_view->setKXAttributedStrings({});
    QVERIFY(isBlank(drawn(*m_view)));
}

void KXRichTextViewDrawingTest::drawsImagesUpright()
{
    QFETCH(double, scale);
    QImage flag(20, 20, QImage::Format_ARGB32_Premultiplied);
    flag.fill(Qt::blue);
    QPainter(&flag).fillRect(0, 0, 20, 10, Qt::red);
    const auto run = std::make_shared<KXAttributedString>(
        kx::AttributedString(std::make_shared<kx::TextAttachment>(kx::Image(flag))));
    for (int showing = 0; showing < 3; ++showing) {
        m_view->setKXAttributedStrings({run});
        const QImage image = drawn(*m_view, scale);
        QCOMPARE(colorAt(image, 10, 5), QColor(Qt::red));
        QCOMPARE(colorAt(image, 10, 15), QColor(Qt::blue));
        QCOMPARE(colorAt(image, 10, 21), QColor(Qt::white));
    }
}

namespace {

/// Counts its paint events.
class CountingView : public KXRichTextView {
public:
    using KXRichTextView::KXRichTextView;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        KXRichTextView::paintEvent(event);
    }
};

} // namespace

void KXRichTextViewDrawingTest::settersAskForNoRepaint()
{
    CountingView view;
    view.resize(100, 40);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.paints > 0);
    QCoreApplication::processEvents();
    const int before = view.paints;
    view.setBackgroundColor(Qt::red);
    view.setInsets({1, 2, 3, 4});
    view.setUseRoundCorner(true);
    view.setUserCursor(true);
    view.setUserInteraction(false);
    view.setTag(3);
    QCoreApplication::processEvents();
    QCOMPARE(view.paints, before);
}

void KXRichTextViewDrawingTest::newRunsAskForARepaint()
{
    CountingView view;
    view.resize(100, 40);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.paints > 0);
    QCoreApplication::processEvents();
    const int before = view.paints;
    view.setKXAttributedStrings({plainRun(u"One"_qs)});
    QTRY_COMPARE(view.paints, before + 1);
}

void KXRichTextViewDrawingTest::survivesSizesAndInsetsThatAreNone_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QMarginsF>("insets");
    const QMarginsF none;
    QTest::newRow("empty") << QSize(0, 0) << none;
    QTest::newRow("no width") << QSize(0, 20) << none;
    QTest::newRow("no height") << QSize(20, 0) << none;
    QTest::newRow("one pixel") << QSize(1, 1) << none;
    QTest::newRow("narrower than high") << QSize(5, 60) << none;
    QTest::newRow("insets of no number") << QSize(50, 20) << QMarginsF(notANumber, notANumber, notANumber, notANumber);
    QTest::newRow("endless insets") << QSize(50, 20) << QMarginsF(infinite, -infinite, infinite, infinite);
    QTest::newRow("huge insets") << QSize(50, 20) << QMarginsF(1e300, -1e300, 1e300, 0);
    QTest::newRow("negative insets") << QSize(50, 20) << QMarginsF(-1000, -1000, -1000, -1000);
}

void KXRichTextViewDrawingTest::survivesSizesAndInsetsThatAreNone()
{
    QFETCH(QSize, size);
    QFETCH(QMarginsF, insets);
    m_view->setUseRoundCorner(true);
    m_view->setBackgroundColor(kx::Color::rgba(notANumber, infinite, -1, 1));
    m_view->setInsets(insets);
    m_view->setKXAttributedStrings({coloredRun(u"One\ntwo"_qs, Qt::red, Qt::yellow)});
    QWidget window;
    window.resize(100, 100);
    m_view->setParent(&window);
    m_view->resize(size);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    (void)window.grab();
    QImage image(60, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    m_view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(image.pixelColor(59, 59), QColor(Qt::white));
    m_view->setParent(nullptr);
}

void KXRichTextViewDrawingTest::aPartIsDrawnAsInTheWhole()
{
    QStringList lines;
    for (int i = 0; i < 40; ++i)
        lines.append(u"Line %1"_qs.arg(i));
    m_view->resize(150, 40 * 24);
    m_view->setKXAttributedStrings({coloredRun(lines.join(u'\n'), Qt::red, Qt::yellow)});
    const QImage whole = drawn(*m_view);
    const QRect part(20, 400, 60, 50);
    QCOMPARE(drawn(*m_view, 1, part).copy(part), whole.copy(part));
}

void KXRichTextViewDrawingTest::hiddenViewsDrawNothing()
{
    QWidget window;
    window.resize(200, 60);
    auto *hidden = new CountingView(&window);
    hidden->setGeometry(0, 0, 200, 60);
    hidden->setKXAttributedStrings({plainRun(u"One"_qs)});
    hidden->hide();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    hidden->setKXAttributedStrings({plainRun(u"Two"_qs)});
    QCoreApplication::processEvents();
    QCOMPARE(hidden->paints, 0);
}

QTEST_MAIN(KXRichTextViewDrawingTest)
#include "KXRichTextViewDrawingTest.moc"
