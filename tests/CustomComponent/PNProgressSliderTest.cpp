// SPDX-License-Identifier: MIT
#include "UntypedObject.h"

#include <KXFoundation/CustomComponent/PNProgressSlider.h>

#include <KXFoundation/Platform/UI/Cursor.h>

#include <Support/Pointer.h>

#include <QtGui/QAccessible>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

struct Report {
    bool finished;
    double value;

    bool operator==(const Report &) const = default;
};

QImage knob(const QColor &color)
{
    QImage image(30, 30, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class PNProgressSliderTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void hasItsDefaults();
    void convertsBetweenFractionAndValue_data();
    void convertsBetweenFractionAndValue();
    void hasNoValueWithoutARange();
    void keepsTheColourOfItsTrack();
    void asksForARepaintWhereAChangeShows();
    void reportsADrag();
    void startsNoDragOutsideTheTrackAndTheKnob();
    void takesHoldOfTheKnobBesideTheTrack();
    void ignoresTheCurrentValueDuringADrag();
    void snapsToASegmentAtTheEndOfADrag();
    void doesNotSnapWhenNobodyHears();
    void snapsForAConnectedSignal();
    void endsADragWhenThePointerLeaves();
    void endsADragWhenItIsTold();
    void tellsWhereItsKnobIs();
    void forgetsADragThatComesToNothing();
    void isNotHitWithoutInteraction();
    void losesItsTrackingAreaAtTheSecondUpdate();
    void showsItsKnobImages();
    void growsItsKnobDuringADragWithoutAHoverImage();
    void fillsTheTrackUpToTheKnob_data();
    void fillsTheTrackUpToTheKnob();
    void fillsAVerticalTrackFromTheBottom();
    void marksItsSegments();
    void marksItsSegmentsInWhite();
    void marksAnyNumberOfSegments();
    void pointsWithAHand();
    void movesByKeys_data();
    void movesByKeys();
    void movesByKeysInTheFinestSteps_data();
    void movesByKeysInTheFinestSteps();
    void stepsForAssistiveTechnologyInTheFinestSteps();
    void leavesOtherKeysAlone();
    void isASliderToAssistiveTechnology();
    void obeysAssistiveTechnologyWhereTheUserMayDrag();
    void leavesObjectsWithoutTypeInformationAlone();
    void givesItsColoursToDesigner();
    void itsIndexEndsWithTheNumbers();
    void survivesValuesThatMakeNoSense();
    void mayBeDeletedByItsHandler();

private:
    std::unique_ptr<QWidget> m_window;
    QPointer<PNProgressSlider> m_slider;
    QList<Report> m_reports;
};

void PNProgressSliderTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(300, 300);
    m_slider = new PNProgressSlider(QRectF(), m_window.get());
    m_slider->setGeometry(50, 40, 200, 20);
    m_slider->setMaxValue(100);
    m_slider->onDraggedIndicator([this](PNProgressSlider *slider, bool finished, double value) {
        QCOMPARE(slider, m_slider.data());
        m_reports.append({finished, value});
    });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PNProgressSliderTest::cleanup()
{
    m_window.reset();
    m_reports.clear();
}

void PNProgressSliderTest::hasItsDefaults()
{
    const PNProgressSlider slider;
    QCOMPARE(slider.progressValue(), 0.0);
    QCOMPARE(slider.minValue(), 0.0);
    QCOMPARE(slider.maxValue(), 0.0);
    QCOMPARE(slider.segementCount(), 0);
    QCOMPARE(slider.tag(), 0);
    QVERIFY(!slider.isSegment());
    QVERIFY(!slider.useVertical());
    QVERIFY(slider.userInteraction());
    QVERIFY(!slider.mouseDownCanMoveWindow());
    QVERIFY(!slider.segementColor());
    QVERIFY(!slider.knobImage());
    QVERIFY(!slider.hoverknobImage());
    QVERIFY(slider.mainColor().sameValue(kx::Color::rgba(231.0 / 255, 60.0 / 255, 49.0 / 255)));
    QVERIFY(slider.bgColor().sameValue(kx::Color::white(1, 0.45)));
}

void PNProgressSliderTest::convertsBetweenFractionAndValue_data()
{
    QTest::addColumn<qint64>("segments");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<double>("value");
    QTest::addColumn<qint64>("index");
    QTest::newRow("plain") << qint64(0) << 0.3 << 30.0 << qint64(0);
    QTest::newRow("one segment is none") << qint64(1) << 0.3 << 30.0 << qint64(0);
    QTest::newRow("four") << qint64(4) << 0.3 << 25.0 << qint64(1);
    QTest::newRow("half of one goes up") << qint64(4) << 0.375 << 50.0 << qint64(2);
    QTest::newRow("less than half") << qint64(4) << 0.374 << 25.0 << qint64(1);
    QTest::newRow("the last") << qint64(4) << 1.0 << 100.0 << qint64(4);
    QTest::newRow("a half below zero goes down") << qint64(4) << -0.125 << -25.0 << qint64(-1);
    QTest::newRow("ten") << qint64(10) << 0.7 << 70.0 << qint64(7);
}

void PNProgressSliderTest::convertsBetweenFractionAndValue()
{
    QFETCH(qint64, segments);
    QFETCH(double, fraction);
    m_slider->setSegementCount(segments);
    m_slider->setProgressValue(fraction);
    QTEST(m_slider->currentValue(), "value");
    QTEST(m_slider->currentIndex(), "index");
    QCOMPARE(m_slider->progressValue(), fraction);
    QCOMPARE(m_slider->isSegment(), segments > 1);

    m_slider->setMinValue(20); // a range of 80
    m_slider->setCurrentValue(60);
    QCOMPARE(m_slider->progressValue(), 0.5);
}

void PNProgressSliderTest::hasNoValueWithoutARange()
{
    m_slider->setProgressValue(0.5);
    m_slider->setSegementCount(4);
    m_slider->setMinValue(100);
    QCOMPARE(m_slider->currentValue(), 0.0);
    QCOMPARE(m_slider->currentIndex(), 0);
    m_slider->setCurrentValue(70);
    QCOMPARE(m_slider->progressValue(), 0.5);
}

void PNProgressSliderTest::keepsTheColourOfItsTrack()
{
    const kx::Color before = m_slider->bgColor();
    m_slider->setBgColor(Qt::green);
    QCOMPARE(m_slider->bgColor(), before);
}

void PNProgressSliderTest::asksForARepaintWhereAChangeShows()
{
    class Painted : public PNProgressSlider {
    public:
        using PNProgressSlider::PNProgressSlider;
        int count = 0;

    protected:
        void drawRect(QPainter &painter, const QRectF &dirtyRect) override
        {
            ++count;
            PNProgressSlider::drawRect(painter, dirtyRect);
        }
    };
    auto *slider = new Painted(m_window.get());
    slider->setGeometry(0, 100, 200, 20);
    slider->show();
    QTRY_VERIFY(slider->count > 0);
    const auto paints = [&](const std::function<void()> &change) {
        QCoreApplication::processEvents();
        const int before = slider->count;
        change();
        QCoreApplication::processEvents();
        return slider->count > before;
    };
    QVERIFY(paints([&] { slider->setProgressValue(0.5); }));
    QVERIFY(!paints([&] { slider->setProgressValue(0.5); }));
    QVERIFY(paints([&] { slider->setMaxValue(10); }));
    QVERIFY(!paints([&] { slider->setMaxValue(10); }));
    QVERIFY(paints([&] { slider->setMinValue(1); }));
    QVERIFY(!paints([&] { slider->setMinValue(1); }));
    const kx::Color red = Qt::red;
    QVERIFY(paints([&] { slider->setMainColor(red); }));
    QVERIFY(!paints([&] { slider->setMainColor(red); }));
    QVERIFY(paints([&] { slider->setMainColor(Qt::red); })); // another object
    QVERIFY(paints([&] { slider->mouseEntered(nullptr); }));
    QVERIFY(paints([&] { slider->mouseExited(nullptr); }));
    QVERIFY(paints([&] { slider->setBgColor(red); }));
    QVERIFY(!paints([&] { slider->setBgColor(slider->bgColor()); }));
    QVERIFY(!paints([&] {
        slider->setSegementColor(red);
        slider->setSegementCount(3);
        slider->setKnobImage(knob(Qt::blue));
        slider->setHoverknobImage(knob(Qt::blue));
        slider->setUseVertical(true);
        slider->setTag(4);
    }));
}

void PNProgressSliderTest::reportsADrag()
{
    QSignalSpy signal(m_slider, &PNProgressSlider::indicatorDragged);
    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    pointer.press();
    QVERIFY(m_slider->isMouseDown());
    QCOMPARE(m_slider->progressValue(), 0.5);
    pointer.moveTo({145, 10});
    QVERIFY(qAbs(m_slider->progressValue() - 134.5 / 179) < 1e-9);
    pointer.release();
    QVERIFY(!m_slider->isMouseDown());
    const double value = 134.5 / 179 * 100;
    QCOMPARE(m_reports.size(), 3);
    QCOMPARE(m_reports.at(0), (Report{false, 50}));
    QVERIFY(!m_reports.at(1).finished);
    QVERIFY(m_reports.at(2).finished);
    QVERIFY(qAbs(m_reports.at(2).value - value) < 1e-9);
    QCOMPARE(signal.count(), 3);
    QCOMPARE(signal.last().at(0).toBool(), true);
}

void PNProgressSliderTest::startsNoDragOutsideTheTrackAndTheKnob()
{
    Pointer pointer(*m_slider);
    pointer.moveTo({195, 10}); // right of the cell; the knob is at the left
    pointer.press();
    QVERIFY(!m_slider->isMouseDown());
    pointer.moveTo({100, 10});
    pointer.release();
    QVERIFY(m_reports.isEmpty());
    QCOMPARE(m_slider->progressValue(), 0.0);
}

void PNProgressSliderTest::takesHoldOfTheKnobBesideTheTrack()
{
    m_slider->setKnobImage(knob(Qt::blue));
    m_slider->setProgressValue(1);
    m_slider->grab(); // the knob is where it was last drawn: 182 to 197
    Pointer pointer(*m_slider);
    pointer.moveTo({195, 10});
    pointer.press();
    QVERIFY(m_slider->isMouseDown());
    pointer.release();
    QCOMPARE(m_reports.last(), (Report{true, 100}));
}

void PNProgressSliderTest::ignoresTheCurrentValueDuringADrag()
{
    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    pointer.press();
    m_slider->setCurrentValue(10);
    QCOMPARE(m_slider->progressValue(), 0.5);
    m_slider->setProgressValue(0.2); // this one is not
    QCOMPARE(m_slider->progressValue(), 0.2);
    pointer.release();
}

void PNProgressSliderTest::snapsToASegmentAtTheEndOfADrag()
{
    m_slider->setSegementCount(4);
    Pointer pointer(*m_slider);
    pointer.drag({20, 10}, {10.5 + 0.3 * 179, 10}, 3);
    QCOMPARE(m_slider->progressValue(), 0.25);
    QCOMPARE(m_reports.last(), (Report{true, 25}));
    QCOMPARE(m_reports.at(m_reports.size() - 2), (Report{false, 25}));
}

void PNProgressSliderTest::doesNotSnapWhenNobodyHears()
{
    m_slider->setSegementCount(4);
    m_slider->onDraggedIndicator({});
    Pointer pointer(*m_slider);
    pointer.drag({20, 10}, {64, 10}, 3);
    QVERIFY(qAbs(m_slider->progressValue() - 53.5 / 179) < 1e-9);
}

void PNProgressSliderTest::snapsForAConnectedSignal()
{
    m_slider->setSegementCount(4);
    m_slider->onDraggedIndicator({});
    QSignalSpy signal(m_slider, &PNProgressSlider::indicatorDragged);
    Pointer pointer(*m_slider);
    pointer.drag({20, 10}, {64, 10}, 3);
    QCOMPARE(m_slider->progressValue(), 0.25);
    QCOMPARE(signal.last().at(1).toDouble(), 25.0);
}

void PNProgressSliderTest::endsADragWhenThePointerLeaves()
{
    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    QTRY_VERIFY(m_slider->isHover());
    pointer.press();
    QVERIFY(m_slider->isMouseDown());
    pointer.moveTo({100, 60});
    QTRY_VERIFY(!m_slider->isHover());
    QVERIFY(!m_slider->isMouseDown());
    QCOMPARE(m_reports.last(), (Report{true, 50}));
    const qsizetype count = m_reports.size();
    pointer.moveTo({150, 10});
    pointer.release();
    QCOMPARE(m_reports.size(), count);
}

void PNProgressSliderTest::forgetsADragThatComesToNothing()
{
    Pointer pointer(*m_slider);
    pointer.moveTo({60, 10});
    pointer.press();
    QVERIFY(m_slider->isMouseDown());
    m_slider->hide();
    QVERIFY(!m_slider->isMouseDown());
    pointer.release();
    for (const Report &report : std::as_const(m_reports))
        QVERIFY(!report.finished);
    m_slider->setCurrentValue(40);
    QCOMPARE(m_slider->currentValue(), 40.0);
}

void PNProgressSliderTest::endsADragWhenItIsTold()
{
    m_slider->setSegementCount(4);
    m_slider->draggedIndicatorHandler();
    QVERIFY(m_reports.isEmpty());
    Pointer pointer(*m_slider);
    pointer.moveTo({64, 10});
    pointer.press();
    QVERIFY(m_slider->isMouseDown());
    m_slider->draggedIndicatorHandler();
    QVERIFY(!m_slider->isMouseDown());
    QCOMPARE(m_reports.last(), (Report{true, 25}));
    QCOMPARE(m_slider->progressValue(), 0.25);
    const qsizetype count = m_reports.size();
    pointer.moveTo({150, 10});
    pointer.release();
    QCOMPARE(m_reports.size(), count);
}

void PNProgressSliderTest::tellsWhereItsKnobIs()
{
    const PNProgressSlider unpainted;
    QVERIFY(unpainted.knobRect().isNull());
    m_slider->setProgressValue(0.5);
    m_slider->grab();
    QCOMPARE(m_slider->knobRect(), QRectF(92.5, 2.5, 15, 15));
    m_slider->setProgressValue(1);
    QCOMPARE(m_slider->knobRect(), QRectF(92.5, 2.5, 15, 15)); // where it was last drawn
    m_slider->grab();
    QCOMPARE(m_slider->knobRect(), QRectF(182, 2.5, 15, 15));
}

void PNProgressSliderTest::isNotHitWithoutInteraction()
{
    auto *slider = m_slider.data();
    const QPointF inside = slider->frame().center();
    QCOMPARE(slider->hitTest(inside), static_cast<kx::ViewInterface *>(slider));
    QSignalSpy changed(slider, &PNProgressSlider::userInteractionChanged);
    slider->setUserInteraction(false);
    slider->setUserInteraction(false);
    QCOMPARE(changed.count(), 1);
    QVERIFY(!slider->hitTest(inside));
    Pointer pointer(*slider);
    pointer.click({100, 10});
    QVERIFY(m_reports.isEmpty());
}

void PNProgressSliderTest::losesItsTrackingAreaAtTheSecondUpdate()
{
    PNProgressSlider slider(QRectF(0, 0, 200, 20));
    slider.updateTrackingAreas();
    QCOMPARE(slider.trackingAreas().size(), 1);
    QCOMPARE(slider.trackingAreas().first()->options().toInt(), 0x747);
    QCOMPARE(slider.trackingAreas().first()->rect(), QRectF(0, 0, 200, 20));
    slider.updateTrackingAreas();
    QVERIFY(slider.trackingAreas().isEmpty());
    slider.updateTrackingAreas();
    QVERIFY(slider.trackingAreas().isEmpty());
}

void PNProgressSliderTest::showsItsKnobImages()
{
    m_slider->setProgressValue(0.5);
    m_slider->setKnobImage(knob(Qt::blue));
    QCOMPARE(m_slider->grab().toImage().pixelColor(100, 5), QColor(Qt::blue));
    m_slider->setHoverknobImage(knob(Qt::green));
    QCOMPARE(m_slider->grab().toImage().pixelColor(100, 5), QColor(Qt::blue));
    Pointer pointer(*m_slider);
    pointer.moveTo({150, 10});
    QTRY_VERIFY(m_slider->isHover());
    QCOMPARE(m_slider->grab().toImage().pixelColor(100, 5), QColor(Qt::green));
    m_slider->setHoverknobImage(nullptr);
    QCOMPARE(m_slider->grab().toImage().pixelColor(100, 5), QColor(Qt::blue));
}

void PNProgressSliderTest::growsItsKnobDuringADragWithoutAHoverImage()
{
    m_slider->setKnobImage(knob(Qt::blue));
    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    pointer.press();
    QCOMPARE(m_slider->grab().toImage().pixelColor(100, 1), QColor(Qt::blue)); // 21 high instead of 15
    m_slider->setHoverknobImage(knob(Qt::green));
    QVERIFY(m_slider->grab().toImage().pixelColor(100, 1) != QColor(Qt::green));
    QCOMPARE(m_slider->grab().toImage().pixelColor(100, 5), QColor(Qt::green));
    pointer.release();
}

void PNProgressSliderTest::fillsTheTrackUpToTheKnob_data()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("1") << 1.0;
    QTest::newRow("2") << 2.0;
}

void PNProgressSliderTest::fillsTheTrackUpToTheKnob()
{
    QFETCH(double, ratio);
    m_slider->setProgressValue(0.5);
    QImage image((QSizeF(m_slider->size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    m_slider->render(&image, {}, {}, {});
    const auto at = [&](double x, double y) { return image.pixelColor(int(x * ratio), int(y * ratio)); };
    QCOMPARE(at(50, 10), QColor(231, 60, 49)); // the track's grey is all covered
    const QColor empty = at(150, 10);
    QVERIFY(qAbs(empty.red() - 115) <= 1); // white at 0.45 over black
    QCOMPARE(at(50, 7), QColor(Qt::black));
    QCOMPARE(at(50, 12), QColor(Qt::black));
    QCOMPARE(at(5, 10), QColor(Qt::black));
}

void PNProgressSliderTest::fillsAVerticalTrackFromTheBottom()
{
    m_slider->setUseVertical(true);
    m_slider->setGeometry(50, 40, 20, 200);
    m_slider->setProgressValue(0.25);
    const QImage image = m_slider->grab().toImage();
    QCOMPARE(image.pixelColor(10, 180), QColor(231, 60, 49));
    QVERIFY(image.pixelColor(10, 100) != QColor(231, 60, 49));
    Pointer pointer(*m_slider);
    pointer.click({10, 199 - 10.5 - 0.75 * 179});
    QVERIFY(qAbs(m_slider->progressValue() - 0.75) < 0.01);
}

void PNProgressSliderTest::marksItsSegments()
{
    m_slider->setSegementCount(4);
    m_slider->setSegementColor(Qt::cyan);
    const QImage image = m_slider->grab().toImage();
    for (const int x : {12, 56, 99, 143, 187}) // 11.5 to 186.5, two pixels each
        QVERIFY2(image.pixelColor(x, 10).red() < 200, qPrintable(QString::number(x)));
    QVERIFY(image.pixelColor(99, 10) != image.pixelColor(80, 10));
    m_slider->setSegementCount(1);
    const QImage plain = m_slider->grab().toImage();
    QCOMPARE(plain.pixelColor(99, 10), plain.pixelColor(80, 10));
}

void PNProgressSliderTest::marksItsSegmentsInWhite()
{
    QImage image(m_slider->size() * 4, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(4);
    image.fill(Qt::black);
    m_slider->setSegementCount(4);
    m_slider->render(&image, {}, {}, {});
    const int white = image.pixelColor(100 * 4, 10 * 4).red(); // 0.9 over the track, which is 115
    QVERIFY2(qAbs(white - 241) <= 1, qPrintable(QString::number(white)));
}

void PNProgressSliderTest::marksAnyNumberOfSegments()
{
    m_slider->setSegementColor(Qt::cyan);
    for (const qint64 count : {qint64(200), qint64(5000), std::numeric_limits<qint64>::max()}) {
        m_slider->setSegementCount(count);
        const QImage image = m_slider->grab().toImage();
        for (int x = 13; x < 187; ++x)
            QVERIFY2(image.pixelColor(x, 10).red() < 60, qPrintable(u"%1 of %2"_qs.arg(x).arg(count)));
    }
}

void PNProgressSliderTest::pointsWithAHand()
{
    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    pointer.moveTo({100, 100});
    QTRY_COMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
    m_window->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_slider->cursorUpdate(nullptr);
    QCOMPARE(kx::Cursor::current().shape(), Qt::ArrowCursor);
}

void PNProgressSliderTest::movesByKeys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<qint64>("segments");
    QTest::addColumn<double>("value");
    QTest::newRow("left") << int(Qt::Key_Left) << qint64(0) << 49.0;
    QTest::newRow("right") << int(Qt::Key_Right) << qint64(0) << 51.0;
    QTest::newRow("down") << int(Qt::Key_Down) << qint64(0) << 49.0;
    QTest::newRow("up") << int(Qt::Key_Up) << qint64(0) << 51.0;
    QTest::newRow("page down") << int(Qt::Key_PageDown) << qint64(0) << 40.0;
    QTest::newRow("page up") << int(Qt::Key_PageUp) << qint64(0) << 60.0;
    QTest::newRow("home") << int(Qt::Key_Home) << qint64(0) << 0.0;
    QTest::newRow("end") << int(Qt::Key_End) << qint64(0) << 100.0;
    QTest::newRow("a segment to the right") << int(Qt::Key_Right) << qint64(4) << 75.0;
    QTest::newRow("a segment down") << int(Qt::Key_PageDown) << qint64(4) << 25.0;
}

void PNProgressSliderTest::movesByKeys()
{
    QFETCH(int, key);
    QFETCH(qint64, segments);
    QFETCH(double, value);
    m_slider->setSegementCount(segments);
    m_slider->setCurrentValue(50);
    QTest::keyClick(m_slider, Qt::Key(key));
    QVERIFY(qAbs(m_slider->currentValue() - value) < 1e-9);
    QCOMPARE(m_reports.size(), 1);
    QVERIFY(m_reports.first().finished);
}

void PNProgressSliderTest::movesByKeysInTheFinestSteps_data()
{
    QTest::addColumn<qint64>("segments");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("largest"); // step, in segments or in values
    // From 2^24 on, not every number of a segment is one of single precision.
    QTest::newRow("2^24") << (qint64(1) << 24) << 0.0 << double(1 << 24) << 1.0;
    QTest::newRow("2^25") << (qint64(1) << 25) << 0.0 << double(1 << 25) << 2.0;
    QTest::newRow("2^31") << (qint64(1) << 31) << 0.0 << double(qint64(1) << 31) << 128.0;
    QTest::newRow("2^62") << (qint64(1) << 62) << 0.0 << double(qint64(1) << 62) << double(qint64(1) << 40);
    // There, the length of a segment is rounded, too.
    QTest::newRow("10 million") << qint64(10'000'000) << 0.0 << 1e7 << 2.0;
    QTest::newRow("30 million") << qint64(30'000'000) << 0.0 << 3e7 << 8.0;
    // At the end of a drag, the position moves on by one more.
    QTest::newRow("12345678") << qint64(12'345'678) << 0.0 << 12345678.0 << 8.0;
    QTest::newRow("2^24 and 1") << qint64((1 << 24) + 1) << 0.0 << 16777217.0 << 8.0;
    QTest::newRow("123456789") << qint64(123'456'789) << 0.0 << 123456789.0 << 64.0;
    QTest::newRow("a thousand million") << qint64(1'000'000'000) << 0.0 << 1e9 << 512.0;
    QTest::newRow("without segments, far from zero") << qint64(0) << 1e17 << 1e17 + 1024 << 32.0;
}

void PNProgressSliderTest::movesByKeysInTheFinestSteps()
{
    QFETCH(qint64, segments);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, largest);
    m_slider->setMaxValue(maximum);
    m_slider->setMinValue(minimum);
    m_slider->setSegementCount(segments);
    for (const bool isHeard : {true, false}) {
        if (!isHeard)
            m_slider->onDraggedIndicator({});
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_PageUp, Qt::Key_Left, Qt::Key_PageDown}) {
            const bool up = key == Qt::Key_Right || key == Qt::Key_PageUp;
            m_slider->setProgressValue(0.7);
            double previous = m_slider->currentValue();
            const bool isPageOfValues = segments == 0 && (key == Qt::Key_PageUp || key == Qt::Key_PageDown);
            for (int i = 0; i < 5 && !isPageOfValues; ++i) {
                QTest::keyClick(m_slider, key);
                const double distance = (m_slider->currentValue() - previous) * (up ? 1 : -1);
                QVERIFY2(distance > 0, qPrintable(QString::number(distance)));
                QVERIFY2(distance <= largest, qPrintable(QString::number(distance)));
                previous = m_slider->currentValue();
            }
        }
    }
    m_slider->setProgressValue(1);
    QTest::keyClick(m_slider, Qt::Key_Right);
    QVERIFY(qAbs(m_slider->currentValue() / maximum - 1) < 1e-6); // it stays at the end
}

void PNProgressSliderTest::stepsForAssistiveTechnologyInTheFinestSteps()
{
    m_slider->setSegementCount(qint64(1) << 26);
    m_slider->setMaxValue(double(1 << 26));
    m_slider->setProgressValue(0.75);
    const double middle = m_slider->currentValue();
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(m_slider);
    QVERIFY(accessible);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(m_slider->currentValue(), middle + 4);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    QCOMPARE(m_slider->currentValue(), middle);
    m_slider->setMinValue(double(1 << 26)); // no range
    accessible->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(m_slider->progressValue(), 0.75);
}

void PNProgressSliderTest::leavesOtherKeysAlone()
{
    m_slider->setCurrentValue(50);
    QTest::keyClick(m_slider, Qt::Key_A);
    QTest::keyClick(m_slider, Qt::Key_Right, Qt::ControlModifier);
    m_slider->setMinValue(100); // no range
    QTest::keyClick(m_slider, Qt::Key_End);
    m_slider->setMinValue(0);
    m_slider->setUserInteraction(false);
    QTest::keyClick(m_slider, Qt::Key_End);
    QVERIFY(m_reports.isEmpty());
    QCOMPARE(m_slider->currentValue(), 50.0);
}

void PNProgressSliderTest::isASliderToAssistiveTechnology()
{
    QAccessibleInterface *const accessible = QAccessible::queryAccessibleInterface(m_slider);
    QVERIFY(accessible);
    QCOMPARE(accessible->role(), QAccessible::Slider);
    QAccessibleValueInterface *const value = accessible->valueInterface();
    QVERIFY(value);
    m_slider->setCurrentValue(40);
    QCOMPARE(value->currentValue().toDouble(), 40.0);
    QCOMPARE(value->minimumValue().toDouble(), 0.0);
    QCOMPARE(value->maximumValue().toDouble(), 100.0);
    QCOMPARE(value->minimumStepSize().toDouble(), 1.0);
    QCOMPARE(accessible->text(QAccessible::Value), u"40"_s);
    m_slider->setValueFormatter([](double v) -> QString { return QString::number(v) + u" %"_s; });
    QCOMPARE(accessible->text(QAccessible::Value), u"40 %"_s);
    value->setCurrentValue(1000);
    QCOMPARE(m_slider->currentValue(), 100.0);
    QCOMPARE(m_reports.last(), (Report{true, 100}));
    value->setCurrentValue(u"no number"_s);
    QCOMPARE(m_slider->currentValue(), 100.0);
}

// The web engine has such objects, and asks for their accessibility at the first click in a page.
void PNProgressSliderTest::leavesObjectsWithoutTypeInformationAlone()
{
    const std::unique_ptr<QObject> object = untypedObject();
    QVERIFY(!QAccessible::queryAccessibleInterface(object.get()));
}

void PNProgressSliderTest::obeysAssistiveTechnologyWhereTheUserMayDrag()
{
    QAccessibleValueInterface *const value = QAccessible::queryAccessibleInterface(m_slider)->valueInterface();
    QVERIFY(value);
    m_slider->setUserInteraction(false);
    value->setCurrentValue(60);
    m_slider->setUserInteraction(true);
    m_slider->setEnabled(false);
    value->setCurrentValue(60);
    m_slider->setEnabled(true);
    QCOMPARE(m_slider->progressValue(), 0.0);
    QVERIFY(m_reports.isEmpty());

    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    pointer.press();
    const qsizetype count = m_reports.size();
    value->setCurrentValue(60);
    QCOMPARE(m_reports.size(), count);
    pointer.release();

    m_slider->setSegementCount(4);
    value->setCurrentValue(30);
    QCOMPARE(m_slider->progressValue(), 0.25); // as at the end of a drag
    QCOMPARE(m_reports.last(), (Report{true, 25}));
}

void PNProgressSliderTest::givesItsColoursToDesigner()
{
    QCOMPARE(m_slider->property("mainColor").value<QColor>().red(), 231);
    QVERIFY(m_slider->setProperty("mainColor", QColor(Qt::blue)));
    QCOMPARE(m_slider->mainColor().toQColor(), QColor(Qt::blue));
    QVERIFY(!m_slider->property("segementColor").value<QColor>().isValid());
    QVERIFY(m_slider->setProperty("segementColor", QColor(Qt::blue)));
    QCOMPARE(m_slider->segementColor().toQColor(), QColor(Qt::blue));
    QVERIFY(m_slider->setProperty("segementColor", QColor()));
    QVERIFY(!m_slider->segementColor());
    const QColor track = m_slider->bgColor().toQColor();
    QVERIFY(m_slider->setProperty("bgColor", QColor(Qt::blue)));
    QCOMPARE(m_slider->property("bgColor").value<QColor>(), track);
}

void PNProgressSliderTest::itsIndexEndsWithTheNumbers()
{
    m_slider->setMinValue(0);
    m_slider->setMaxValue(1);
    m_slider->setSegementCount(std::numeric_limits<qint64>::max());
    m_slider->setProgressValue(1);
    QCOMPARE(m_slider->currentIndex(), std::numeric_limits<qint64>::max());
}

void PNProgressSliderTest::survivesValuesThatMakeNoSense()
{
    m_slider->setKnobImage(knob(Qt::blue));
    constexpr double inf = std::numeric_limits<double>::infinity();
    for (const double value : {qQNaN(), inf, -inf, 1e308, -1e308, -5.0}) {
        for (const qint64 segments : {qint64(0), qint64(7), std::numeric_limits<qint64>::max(), qint64(-3)}) {
            m_slider->setSegementCount(segments);
            m_slider->setProgressValue(value);
            m_slider->setMinValue(-value);
            m_slider->setMaxValue(value);
            if (!std::isnan(value)) {
                QCOMPARE(m_slider->progressValue(), value);
                QCOMPARE(m_slider->maxValue(), value);
            }
            static_cast<void>(m_slider->currentIndex());
            m_slider->setCurrentValue(value);
            m_slider->grab();
            Pointer(*m_slider).click({100, 10});
            QTest::keyClick(m_slider, Qt::Key_Right);
        }
    }
    m_slider->resize(0, 0);
    m_slider->repaint();
    m_slider->resize(3, 3);
    m_slider->grab();
}

void PNProgressSliderTest::mayBeDeletedByItsHandler()
{
    m_slider->onDraggedIndicator([](PNProgressSlider *slider, bool finished, double) {
        if (finished)
            delete slider;
    });
    Pointer pointer(*m_slider);
    pointer.moveTo({100, 10});
    pointer.press();
    pointer.release();
    QVERIFY(!m_slider);
}

QTEST_MAIN(PNProgressSliderTest)
#include "PNProgressSliderTest.moc"
