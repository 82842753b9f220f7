// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/PNProgressIndicator.h>

#include <KXFoundation/Platform/UI/Image.h>

#include <QtCore/QRegularExpression>
#include <QtGui/QImage>
#include <QtGui/QPaintEvent>
#include <QtTest/QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int onBar = 18; // a row of the bar, which goes from 17 to 21 as the screen counts

const QColor trackColor(77, 77, 77); // white at 0.3 over black
const QColor preloadColor(157, 157, 157); // white at 0.45 over the track
const QColor startColor(253, 107, 107);
const QColor endColor(255, 41, 88);
const QColor clipColor(255, 151, 0);

bool near(const QColor &a, const QColor &b)
{
    return std::max({qAbs(a.red() - b.red()), qAbs(a.green() - b.green()), qAbs(a.blue() - b.blue())}) <= 2;
}

/// Keeps what it was last asked to repaint.
class Bar : public PNProgressIndicator {
public:
    using PNProgressIndicator::PNProgressIndicator;

    QRect repainted;

    QImage picture()
    {
        QImage image(size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        render(&image, {}, {}, {});
        return image;
    }
    QColor pixel(int x, int y = onBar) { return picture().pixelColor(x, y); }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        repainted = event->rect();
        PNProgressIndicator::paintEvent(event);
    }
};

} // namespace

class PNProgressIndicatorDrawingTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { kx::Image::setNamed(u"indicator"_s, nullptr); }

    void fillsTheStoppedBarAlone();
    void drawsNoStoppedBarWithoutAColour();
    void drawsTrackAndKnobWithoutARange();
    void spansTheGradientOverThePlayedPart();
    void drawsThePreloadedPartBehindThePlayedOne();
    void drawsTicks();
    void drawsNoMarksWithoutARange();
    void drawsClipsInsteadOfThePlayedPart();
    void drawsWhatReachesFarBeyondTheView_data();
    void drawsWhatReachesFarBeyondTheView();
    void drawsAThousandClipsAndTenThousandTicks();
    void drawsNoBarWithoutThickness();
    void drawsABarThatIsHigherThanTheView();
    void roundsTheEnds();
    void repaintsAllForAKnobWithoutBounds_data();
    void repaintsAllForAKnobWithoutBounds();

private:
    std::unique_ptr<Bar> m_bar; // 300 x 32, the bar 4 thick
};

void PNProgressIndicatorDrawingTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_bar = std::make_unique<Bar>(QRectF(0, 0, 300, 32));
    QImage knob(16, 32, QImage::Format_RGB32);
    knob.fill(Qt::green);
    kx::Image::setNamed(u"indicator"_s, knob);
}

void PNProgressIndicatorDrawingTest::fillsTheStoppedBarAlone()
{
    const QColor stopped(31, 31, 31); // white at 0.12 over black
    for (const int x : {0, 7, 150, 299})
        QVERIFY(near(m_bar->pixel(x), stopped));
    QCOMPARE(m_bar->pixel(150, 16), QColor(Qt::black));
    QCOMPARE(m_bar->pixel(150, 21), QColor(Qt::black));
    QCOMPARE(m_bar->pixel(7, 10), QColor(Qt::black)); // no knob
}

void PNProgressIndicatorDrawingTest::drawsNoStoppedBarWithoutAColour()
{
    m_bar->setStopColor({});
    QImage image(m_bar->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    m_bar->render(&image, {}, {}, {});
    QCOMPARE(image.pixelColor(150, onBar), QColor(Qt::white));
}

void PNProgressIndicatorDrawingTest::drawsTrackAndKnobWithoutARange()
{
    m_bar->setPlayedValue(5);
    m_bar->setPreloadValue(50);
    QVERIFY(near(m_bar->pixel(150), trackColor));
    QCOMPARE(m_bar->pixel(7, 10), QColor(Qt::green)); // centred at 7
    QCOMPARE(m_bar->pixel(14, 10), QColor(Qt::green));
    QCOMPARE(m_bar->pixel(15, 10), QColor(Qt::black));
}

void PNProgressIndicatorDrawingTest::spansTheGradientOverThePlayedPart()
{
    kx::Image::setNamed(u"indicator"_s, nullptr);
    m_bar->setMaxValue(100);
    m_bar->setPlayedValue(50); // 150 wide
    QVERIFY(near(m_bar->pixel(0), startColor));
    QVERIFY(near(m_bar->pixel(149), endColor));
    QVERIFY(near(m_bar->pixel(150), trackColor));
    QVERIFY(near(m_bar->pixel(299), trackColor));
    m_bar->setPlayedValue(100); // 293 wide
    QVERIFY(near(m_bar->pixel(0), startColor));
    QVERIFY(near(m_bar->pixel(146), QColor(254, 74, 97))); // half the way
    QVERIFY(near(m_bar->pixel(292), endColor));
    QVERIFY(near(m_bar->pixel(293), trackColor));
}

void PNProgressIndicatorDrawingTest::drawsThePreloadedPartBehindThePlayedOne()
{
    m_bar->setMaxValue(100);
    m_bar->setPlayedValue(25);
    m_bar->setPreloadValue(75); // 221.5 wide
    QVERIFY(near(m_bar->pixel(0), startColor));
    QVERIFY(near(m_bar->pixel(200), preloadColor));
    QVERIFY(near(m_bar->pixel(224), trackColor));
    m_bar->setPreloadValue(25); // not more than what has been played
    QVERIFY(near(m_bar->pixel(200), trackColor));
}

void PNProgressIndicatorDrawingTest::drawsTicks()
{
    m_bar->setHorizontalPadding(3); // does not move ticks, but shortens the way to 280
    m_bar->setMaxValue(100);
    m_bar->setTags({50}); // from 145.5 to 148.5
    QVERIFY(near(m_bar->pixel(147), preloadColor)); // the same white over the track
    QVERIFY(near(m_bar->pixel(150), trackColor));
    QVERIFY(near(m_bar->pixel(143), trackColor));
    m_bar->setRounded(true);
    QVERIFY(near(m_bar->pixel(146, 17), preloadColor)); // it has corners all the same
}

void PNProgressIndicatorDrawingTest::drawsNoMarksWithoutARange()
{
    m_bar->setMinValue(100);
    m_bar->setMaxValue(50); // where -25 would be in the middle
    m_bar->setTags({-25});
    QVERIFY(near(m_bar->pixel(150), trackColor));
    m_bar->switch2StarMode({-20}, {-30});
    QVERIFY(near(m_bar->pixel(150), trackColor));
}

void PNProgressIndicatorDrawingTest::drawsClipsInsteadOfThePlayedPart()
{
    m_bar->setMaxValue(100);
    m_bar->setPlayedValue(90);
    m_bar->setPreloadValue(95);
    m_bar->setTags({75}); // from 220 to 223
    m_bar->switch2StarMode({25, 60}, {50}); // from 78.5 to 150; the second has no end
    QVERIFY(near(m_bar->pixel(20), trackColor));
    QVERIFY(near(m_bar->pixel(80), clipColor));
    QVERIFY(near(m_bar->pixel(149), clipColor));
    QVERIFY(near(m_bar->pixel(151), trackColor));
    QVERIFY(near(m_bar->pixel(190), trackColor));
    QVERIFY(near(m_bar->pixel(221), preloadColor)); // a tick
    m_bar->reset2NormalMode();
    QVERIFY(near(m_bar->pixel(0), startColor));
}

void PNProgressIndicatorDrawingTest::drawsWhatReachesFarBeyondTheView_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("end");
    QTest::addColumn<bool>("atTheLeft");
    QTest::addColumn<bool>("atTheRight");
    QTest::newRow("to the right") << 50.0 << 1e12 << false << true;
    QTest::newRow("to the left") << -1e12 << 50.0 << true << false;
    QTest::newRow("to both sides") << -1e30 << 1e30 << true << true;
    QTest::newRow("all to the right") << 1e12 << 2e12 << false << false;
    QTest::newRow("all to the left") << -2e12 << -1e12 << false << false;
    QTest::newRow("backwards") << 1e12 << -1e12 << false << false;
}

void PNProgressIndicatorDrawingTest::drawsWhatReachesFarBeyondTheView()
{
    QFETCH(double, start);
    QFETCH(double, end);
    QFETCH(bool, atTheLeft);
    QFETCH(bool, atTheRight);
    m_bar->setMaxValue(100);
    for (const bool rounded : {false, true}) {
        m_bar->setRounded(rounded);
        m_bar->switch2StarMode({start}, {end});
        QVERIFY(near(m_bar->pixel(20), atTheLeft ? clipColor : trackColor));
        QVERIFY(near(m_bar->pixel(280), atTheRight ? clipColor : trackColor));
        if (atTheLeft && atTheRight)
            QVERIFY(near(m_bar->pixel(299, 17), clipColor)); // its round ends are outside
    }
}

void PNProgressIndicatorDrawingTest::drawsAThousandClipsAndTenThousandTicks()
{
    kx::Image::setNamed(u"indicator"_s, nullptr);
    constexpr double range = 10000;
    m_bar->setMaxValue(range);
    QList<double> tags;
    for (int i = 0; i < 9900; ++i)
        tags << i * 0.3; // many to a pixel
    for (int i = 0; i < 100; ++i)
        tags << 5000 + i * 47; // less than two pixels apart, so that some overlap
    QList<double> starts;
    QList<double> ends;
    for (int i = 0; i < 1000; ++i) {
        starts << 100 + i * 9.7;
        ends << 100 + i * 9.7 + (i % 5 == 0 ? 20 : 1);
    }
    m_bar->setTags(tags);
    m_bar->switch2StarMode(starts, ends);

    // What each of them adds to each column, one after the other.
    const auto left = [&](double value) { return value / range * 286 + 7; };
    QList<double> grey(300, 77);
    for (const double tag : tags) {
        const double x = left(tag) - 1.5;
        for (int column = qRound(x); column < qRound(x + 3); ++column)
            grey[column] = grey[column] * 0.55 + 255 * 0.45;
    }
    QList<bool> clipped(300, false);
    for (int i = 0; i < 1000; ++i) {
        const double from = left(float(starts.at(i)));
        const double to = left(float(ends.at(i)));
        for (int column = qRound(from); column < qRound(to); ++column)
            clipped[column] = true;
    }
    QVERIFY(clipped.count(true) > 50 && clipped.count(false) > 50);

    const QImage image = m_bar->picture();
    for (int x = 0; x < 300; ++x) {
        const int value = qRound(grey.at(x));
        const QColor expected = clipped.at(x) ? clipColor : QColor(value, value, value);
        const QColor actual = image.pixelColor(x, onBar);
        const int difference = std::max({qAbs(actual.red() - expected.red()), qAbs(actual.green() - expected.green()),
            qAbs(actual.blue() - expected.blue())});
        QVERIFY2(difference <= 4, qPrintable(u"%1: %2 is not %3"_s.arg(x).arg(actual.name(), expected.name())));
    }
}

void PNProgressIndicatorDrawingTest::drawsNoBarWithoutThickness()
{
    const auto isEmpty = [](PNProgressIndicator &bar) {
        QImage image(bar.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::black);
        const QImage before = image;
        bar.render(&image, {}, {}, {});
        return image == before;
    };
    kx::Image::setNamed(u"indicator"_s, nullptr);
    for (const double height : {18.0, 28.0, 0.0, -50.0}) {
        m_bar->updateDrawHeight(height);
        m_bar->reset2NormalMode();
        m_bar->setMaxValue(0);
        QVERIFY(isEmpty(*m_bar));
        m_bar->setMaxValue(100);
        m_bar->setPlayedValue(50);
        m_bar->setPreloadValue(80);
        m_bar->setTags({60});
        QVERIFY(isEmpty(*m_bar));
        m_bar->switch2StarMode({20}, {40});
        QVERIFY(isEmpty(*m_bar));
        m_bar->setPlayedValue(0);
    }
    Bar low(QRectF(0, 0, 300, 11)); // all of the bar is above it
    low.updateDrawHeight(32);
    low.setMaxValue(100);
    low.setPlayedValue(50);
    QVERIFY(isEmpty(low));
}

void PNProgressIndicatorDrawingTest::drawsABarThatIsHigherThanTheView()
{
    kx::Image::setNamed(u"indicator"_s, nullptr);
    m_bar->setMaxValue(100);
    m_bar->setPlayedValue(50);
    for (const double height : {64.0, 1e10}) {
        m_bar->updateDrawHeight(height);
        for (const int row : {0, 10, 20}) {
            QVERIFY(near(m_bar->pixel(149, row), endColor));
            QVERIFY(near(m_bar->pixel(200, row), trackColor));
        }
        QCOMPARE(m_bar->pixel(200, 21), QColor(Qt::black));
    }
}

void PNProgressIndicatorDrawingTest::roundsTheEnds()
{
    kx::Image::setNamed(u"indicator"_s, nullptr);
    m_bar->setMaxValue(100);
    m_bar->setPlayedValue(50);
    QVERIFY(near(m_bar->pixel(0, 17), startColor));
    QVERIFY(near(m_bar->pixel(299, 17), trackColor));
    m_bar->setRounded(true);
    QVERIFY(m_bar->pixel(0, 17).red() < 200);
    QVERIFY(m_bar->pixel(299, 17).red() < 60);
    QVERIFY(m_bar->pixel(149, 17).red() < 220);
    QVERIFY(near(m_bar->pixel(75), QColor(254, 74, 97)));
}

void PNProgressIndicatorDrawingTest::repaintsAllForAKnobWithoutBounds_data()
{
    QTest::addColumn<double>("height");
    QTest::newRow("endless") << std::numeric_limits<double>::infinity();
    QTest::newRow("no number") << qQNaN();
    QTest::newRow("more than an integer holds") << 1e12;
}

void PNProgressIndicatorDrawingTest::repaintsAllForAKnobWithoutBounds()
{
    QFETCH(double, height);
    m_bar->setMaxValue(100);
    m_bar->updateDrawHeight(height);
    m_bar->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_bar.get()));
    QTRY_VERIFY(!m_bar->repainted.isNull());
    QCoreApplication::processEvents();
    m_bar->repainted = {};
    m_bar->setPlayedValue(50);
    QTRY_COMPARE(m_bar->repainted, m_bar->rect());
}

QTEST_MAIN(PNProgressIndicatorDrawingTest)
#include "PNProgressIndicatorDrawingTest.moc"
