// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/StarClips.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

class StarClipsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void isOffAtFirst();
    void findsTheClipThatEndsNext_data();
    void findsTheClipThatEndsNext();
    void followsThePositionThroughTheClips();
    void endsAClipFromNoLaterThanStated();
    void repeatsANoticeInsideItsWindow();
    void findsTheClipAnewWhenThePositionGoesBack();
    void givesNoNoticePastTheLastClip();
    void readsBoundsAsSinglePrecision();
    void keepsTheIndexWhenItStops();
};

void StarClipsTest::isOffAtFirst()
{
    StarClips clips;
    QVERIFY(!clips.isOn());
    QCOMPARE(clips.currentIndex(), -1);
    clips.follow(5);
    QVERIFY(!clips.isAboutToEnd(5, 4));
    QVERIFY(!clips.hasEnded(5));
}

void StarClipsTest::findsTheClipThatEndsNext_data()
{
    QTest::addColumn<QList<double>>("ends");
    QTest::addColumn<double>("played");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("lastEnd");
    QTest::addColumn<double>("currentEnd");
    const auto row = [](const char *name, const QList<double> &ends, double played, int index, double last,
                         double current) { QTest::newRow(name) << ends << played << index << last << current; };
    row("no clip", {}, 3, -1, 0, StarClips::never);
    row("before the first end", {10, 20}, 3, 0, 0, 10);
    row("exactly at an end", {10, 20}, 10, 0, 0, 10);
    row("in the second", {10, 20}, 15, 1, 10, 20);
    row("past the last", {10, 20}, 20.5, -1, 20, StarClips::never);
    row("an end of 0 is passed over", {0, 20}, 0, 1, 0, 20);
    row("only an end of 0 leaves its index", {0}, 0, 0, 0, StarClips::never);
    row("unsorted ends are taken in their order", {30, 10}, 5, 0, 0, 30);
    row("negative ends", {-5, -1}, -3, 1, -5, -1);
    row("no number", {qQNaN()}, 3, -1, qQNaN(), StarClips::never);
}

void StarClipsTest::findsTheClipThatEndsNext()
{
    QFETCH(QList<double>, ends);
    QFETCH(double, played);
    StarClips clips;
    clips.start({}, ends, played);
    QTEST(clips.currentIndex(), "index");
    QTEST(clips.lastEnd(), "lastEnd");
    QTEST(clips.currentEnd(), "currentEnd");
}

void StarClipsTest::followsThePositionThroughTheClips()
{
    StarClips clips;
    clips.start({8, 17}, {10, 20}, 15);
    QCOMPARE(clips.currentIndex(), 1);
    QCOMPARE(clips.lastEnd(), 10.0);

    const auto expect = [&](double value, bool willEnd, bool didEnd, int index) {
        clips.follow(value);
        QCOMPARE(clips.isAboutToEnd(value, 4), willEnd);
        QCOMPARE(clips.hasEnded(value), didEnd);
        QCOMPARE(clips.currentIndex(), index);
    };
    expect(15.0, false, false, 1); // the window is open: less than advance + 1
    expect(15.001, true, false, 1);
    expect(18.5, true, false, 1);
    expect(19.25, true, true, 1); // 0.8 before the end: both
    expect(19.5, true, true, 1);
    expect(20.0, true, true, 1);
    expect(20.1, false, true, 1);
    expect(21.1, false, true, 1);
    expect(21.3, false, false, -1);
    QCOMPARE(clips.currentEnd(), StarClips::never);
    QCOMPARE(clips.lastEnd(), 20.0);
}

void StarClipsTest::endsAClipFromNoLaterThanStated()
{
    StarClips clips;
    clips.start({}, {1}, 0);
    const double early = 1 - 0.8; // which leaves 0.8 exactly
    clips.follow(early);
    QVERIFY(clips.hasEnded(early));
    QVERIFY(!clips.hasEnded(early - 1e-15));
}

void StarClipsTest::repeatsANoticeInsideItsWindow()
{
    StarClips clips;
    clips.start({0}, {10}, 0);
    for (int i = 0; i < 3; ++i) {
        clips.follow(6);
        QVERIFY(clips.isAboutToEnd(6, 4));
        clips.follow(10.5);
        QVERIFY(clips.hasEnded(10.5));
    }
}

void StarClipsTest::findsTheClipAnewWhenThePositionGoesBack()
{
    StarClips clips;
    clips.start({}, {10, 20}, 15);
    clips.follow(10); // back to the last end, inclusive
    QCOMPARE(clips.currentIndex(), 0);
    QCOMPARE(clips.currentEnd(), 10.0);
}

void StarClipsTest::givesNoNoticePastTheLastClip()
{
    StarClips clips;
    clips.start({}, {10}, 50);
    clips.follow(51);
    QVERIFY(!clips.isAboutToEnd(51, 4));
    QVERIFY(!clips.hasEnded(51));
}

void StarClipsTest::readsBoundsAsSinglePrecision()
{
    StarClips clips;
    clips.start({}, {0.1}, 0);
    QCOMPARE(clips.currentEnd(), double(0.1F));
    QVERIFY(clips.currentEnd() != 0.1);
}

void StarClipsTest::keepsTheIndexWhenItStops()
{
    StarClips clips;
    clips.start({1}, {10, 20}, 15);
    QVERIFY(clips.isOn());
    clips.stop();
    QVERIFY(!clips.isOn());
    QVERIFY(clips.starts().isEmpty());
    QVERIFY(clips.ends().isEmpty());
    QCOMPARE(clips.lastEnd(), 0.0);
    QCOMPARE(clips.currentEnd(), 0.0);
    QCOMPARE(clips.currentIndex(), 1);
}

QTEST_APPLESS_MAIN(StarClipsTest)
#include "StarClipsTest.moc"
