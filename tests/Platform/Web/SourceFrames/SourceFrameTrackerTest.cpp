// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/SourceFrames/SourceFrameTracker.h>

#include <QtTest/QtTest>

#include <malloc.h>

using namespace kx;
using Kind = NavigationRequest::Kind;
using Target = NavigationRequest::Target;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(kx::NavigationRequest::Kind)
Q_DECLARE_METATYPE(kx::NavigationRequest::Target)

class SourceFrameTrackerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void decidesFromTheSignals_data();
    void decidesFromTheSignals();
    void takesTheSignalsInBothOrders();
    void usesEachSignalOnce();
    void keepsLaterSignalsForLaterRequests();
    void forgetsSignalsAfterTwoSeconds();
    void forgetsSignalsThatNobodyAsksAbout();
    void forgetsEverythingWithANewMainDocument();
    void serverRedirectsInheritTheSource();
    void aReplacementAfterTheLoadsEndIsNoRedirect();
    void aReplacementInASubFrameIsNoRedirect();
    void readsAddressesAsTheEngineDoes();
    void comparesFormsWithoutTheirEntries();
    void ignoresWhatItDoesNotKnow();
    void handsOutBothScripts();

private:
    bool fromMain(const QString &url, Kind kind = Kind::Link, Target target = Target::MainFrame)
    {
        return m_tracker.source({QUrl(url), kind, target}).frame.mainFrame;
    }
    void send(const QStringList &signals_)
    {
        for (const QString &signal : signals_)
            m_tracker.signal(signal);
    }

    std::chrono::steady_clock::time_point m_now;
    SourceFrameTracker m_tracker;
};

static const QString there = QStringLiteral("http://a/there");

void SourceFrameTrackerTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    m_now = {};
    m_tracker = SourceFrameTracker([this] { return m_now; });
}

void SourceFrameTrackerTest::decidesFromTheSignals_data()
{
    QTest::addColumn<QString>("signals_"); // "|" between them; the main document's start goes before
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<Target>("target");
    QTest::addColumn<bool>("main");
    const auto row = [](const char *name, const char *sent, Kind kind, Target target, bool main) {
        QTest::newRow(name) << QString::fromLatin1(sent) << kind << target << main;
    };
    const char *events = "document main events";
    // The application's own, and history.
    row("typed", events, Kind::Typed, Target::MainFrame, true);
    row("reload", events, Kind::Reload, Target::MainFrame, true);
    row("history", events, Kind::BackForward, Target::MainFrame, true);
    row("before any document", "", Kind::Link, Target::MainFrame, true);
    // Announced by the main document.
    row("script of the main frame",
        "document main events|navigate main script http://a/there|caller main main http://a/there", Kind::Link,
        Target::MainFrame, true);
    row("replacement by the main frame",
        "document main events|navigate main script http://a/there|caller main main http://a/there", Kind::Redirect,
        Target::MainFrame, true);
    row("meta refresh", "document main events|navigate main script http://a/there|caller main none http://a/there",
        Kind::Redirect, Target::MainFrame, true);
    row("script that cannot be seen",
        "document main events|navigate main script http://a/there|caller main none http://a/there", Kind::Link,
        Target::MainFrame, false);
    row("page world silent", "document main events|navigate main script http://a/there", Kind::Link, Target::MainFrame,
        true);
    row("script of a same-origin frame",
        "document main events|navigate main script http://a/there|caller main sub http://a/there", Kind::Link,
        Target::MainFrame, false);
    row("click in the main frame",
        "document main events|click main user http://a/there|navigate main user http://a/there", Kind::Link,
        Target::MainFrame, true);
    row("click in a same-origin frame",
        "document main events|click sub user http://a/there|navigate main user http://a/there", Kind::Link,
        Target::MainFrame, false);
    row("link rewritten by the click",
        "document main events|click main user http://a/x|click sub user http://a/y|navigate main user http://a/there",
        Kind::Link, Target::MainFrame, false);
    row("click in a frame without scripts", "document main events|navigate main user http://a/there", Kind::Link,
        Target::MainFrame, false);
    row("scripted click in a same-origin frame, by the main frame",
        "document main events|click sub script http://a/there|navigate main script http://a/there|caller main main "
        "http://a/there",
        Kind::Link, Target::MainFrame, false);
    row("scripted click in the main frame, by a same-origin frame",
        "document main events|click main script http://a/there|navigate main script http://a/there|caller main sub "
        "http://a/there",
        Kind::Link, Target::MainFrame, true);
    row("scripted form of a same-origin frame",
        "document main events|form sub get http://a/there|navigate main script http://a/there?|caller main none "
        "http://a/there?",
        Kind::Form, Target::MainFrame, false);
    row("unknown script after a click in a frame",
        "document main events|click sub user |navigate main script http://a/there|caller main unknown http://a/there",
        Kind::Link, Target::MainFrame, false);
    row("unknown script after a click in the main frame",
        "document main events|click main user |navigate main script http://a/there|caller main unknown http://a/there",
        Kind::Link, Target::MainFrame, true);
    row("unknown script", "document main events|navigate main script http://a/there|caller main unknown http://a/there",
        Kind::Link, Target::MainFrame, true);
    row("main frame's own script after a click in a frame",
        "document main events|click sub user |navigate main script http://a/there|caller main main http://a/there",
        Kind::Link, Target::MainFrame, true);
    // Not announced: a frame of another origin.
    row("unannounced link", events, Kind::Link, Target::MainFrame, false);
    row("unannounced form", events, Kind::Form, Target::MainFrame, false);
    row("unannounced replacement", events, Kind::Redirect, Target::MainFrame, false);
    row("another address announced", "document main events|navigate main script http://a/elsewhere", Kind::Link,
        Target::MainFrame, false);
    row("only a sub frame's own announcement", "document main events|navigate sub script http://a/there", Kind::Link,
        Target::MainFrame, false);
    row("click in the main frame, not announced", "document main events|click main user http://a/there", Kind::Link,
        Target::MainFrame, false);
    // A main document that never announces.
    row("silent, no frames", "document main silent", Kind::Link, Target::MainFrame, true);
    row("silent, with frames", "document main silent|document sub silent", Kind::Link, Target::MainFrame, false);
    row("silent, click in the main frame", "document main silent|document sub silent|click main user http://a/there",
        Kind::Link, Target::MainFrame, true);
    row("silent, click in a frame", "document main silent|document sub silent|click sub user http://a/there",
        Kind::Link, Target::MainFrame, false);
    row("silent, form of the main frame", "document main silent|document sub events|form main post http://a/there",
        Kind::Form, Target::MainFrame, true);
    // Into a sub frame.
    row("frame element", events, Kind::Other, Target::SubFrame, true);
    row("sub frame by itself",
        "document main events|document sub events|navigate sub script http://a/there|caller sub sub http://a/there",
        Kind::Link, Target::SubFrame, false);
    row("sub frame by the main frame's script",
        "document main events|document sub events|navigate sub script http://a/there|caller sub main http://a/there",
        Kind::Link, Target::SubFrame, true);
    row("sub frame by a link of the main frame",
        "document main events|document sub events|click main user http://a/there|navigate sub user http://a/there",
        Kind::Link, Target::SubFrame, true);
    row("cross-origin sub frame by the main frame's script", "document main events|document sub events", Kind::Link,
        Target::SubFrame, true);
    row("opaque sub frame by itself", "document main events|document sub silent", Kind::Link, Target::SubFrame, false);
    row("history in a sub frame", events, Kind::BackForward, Target::SubFrame, false);
    // Into a new window.
    row("new window from a link of a frame", "document main events|click sub user http://a/there", Kind::Other,
        Target::NewWindow, false);
    row("new window from a link", "document main events|click sub user http://a/x|click main user http://a/there",
        Kind::Other, Target::NewWindow, true);
    row("new window from a script of a frame", "document main events|click sub user ", Kind::Other, Target::NewWindow,
        false);
    row("new window out of nothing", events, Kind::Other, Target::NewWindow, true);
}

void SourceFrameTrackerTest::decidesFromTheSignals()
{
    QFETCH(QString, signals_);
    QFETCH(Kind, kind);
    QFETCH(Target, target);
    send(signals_.split(u'|'));
    const QUrl url(signals_.contains(QLatin1String("there?")) ? there + u'?' : there);
    const NavigationSource source = m_tracker.source({url, kind, target});
    QTEST(source.frame.mainFrame, "main");
    QVERIFY(!source.serverRedirect);
}

void SourceFrameTrackerTest::takesTheSignalsInBothOrders()
{
    send({QStringLiteral("document main events"), QStringLiteral("caller main sub http://a/there"),
        QStringLiteral("navigate main script http://a/there")});
    QVERIFY(!fromMain(there));
}

void SourceFrameTrackerTest::usesEachSignalOnce()
{
    send({QStringLiteral("document main events"), QStringLiteral("click main user http://a/there"),
        QStringLiteral("navigate main user http://a/there"), QStringLiteral("caller main none http://a/there")});
    QVERIFY(fromMain(there));
    QVERIFY(!fromMain(there));
    send({QStringLiteral("navigate main user http://a/there")});
    QVERIFY2(!fromMain(there), "the click was used up");
}

void SourceFrameTrackerTest::keepsLaterSignalsForLaterRequests()
{
    const QString next = QStringLiteral("http://a/next");
    send({QStringLiteral("document main events"), QStringLiteral("navigate main script http://a/there"),
        QStringLiteral("navigate main script http://a/next"), QStringLiteral("caller main sub http://a/next")});
    QVERIFY(fromMain(there));
    QVERIFY(!fromMain(next));
}

void SourceFrameTrackerTest::forgetsSignalsAfterTwoSeconds()
{
    send({QStringLiteral("document main events"), QStringLiteral("navigate main script http://a/there")});
    m_now += SourceFrameTracker::SignalLifetime;
    QVERIFY(fromMain(there));
    send({QStringLiteral("navigate main script http://a/there")});
    m_now += SourceFrameTracker::SignalLifetime + 1ms;
    QVERIFY(!fromMain(there));
}

// A page may click by script all day long without going anywhere.
void SourceFrameTrackerTest::forgetsSignalsThatNobodyAsksAbout()
{
    const QString click = QStringLiteral("click main script http://a/") + QString(10'000, u'x');
    const auto taken = ::mallinfo2().uordblks; // stays 0 in sanitizer builds, which have an allocator of their own
    for (int i = 0; i < 1000; ++i) {
        m_tracker.signal(click);
        m_now += 1s;
    }
    QVERIFY(::mallinfo2().uordblks < taken + 1'000'000);
}

void SourceFrameTrackerTest::forgetsEverythingWithANewMainDocument()
{
    send({QStringLiteral("document main silent"), QStringLiteral("document sub silent"),
        QStringLiteral("navigate main script http://a/there"), QStringLiteral("document main events")});
    QVERIFY2(!fromMain(there), "the old document's announcement");
    send({QStringLiteral("document main silent")});
    QVERIFY2(fromMain(there), "the old document's frames");
}

void SourceFrameTrackerTest::serverRedirectsInheritTheSource()
{
    const QString next = QStringLiteral("http://a/next");
    send({QStringLiteral("document main events")});
    QVERIFY(!fromMain(there));
    for (int i = 0; i < 2; ++i) {
        const NavigationSource source = m_tracker.source({QUrl(next), Kind::Redirect, Target::MainFrame});
        QVERIFY(source.serverRedirect);
        QVERIFY(!source.frame.mainFrame);
    }
    QVERIFY(fromMain(there, Kind::Typed));
    QVERIFY(fromMain(next, Kind::Redirect));
    QVERIFY(fromMain(there, Kind::Other, Target::SubFrame));
    QVERIFY(m_tracker.source({QUrl(next), Kind::Redirect, Target::SubFrame}).serverRedirect);
}

void SourceFrameTrackerTest::aReplacementAfterTheLoadsEndIsNoRedirect()
{
    send({QStringLiteral("document main events")});
    QVERIFY(fromMain(there, Kind::Typed));
    m_tracker.mainFrameLoadEnded();
    const NavigationSource source = m_tracker.source({QUrl(there), Kind::Redirect, Target::MainFrame});
    QVERIFY(!source.serverRedirect);
    QVERIFY(!source.frame.mainFrame);
    QVERIFY(fromMain(there, Kind::Typed));
    send({QStringLiteral("document main events")});
    QVERIFY2(!fromMain(there, Kind::Redirect), "the new document has begun");
}

void SourceFrameTrackerTest::aReplacementInASubFrameIsNoRedirect()
{
    send({QStringLiteral("document main events"), QStringLiteral("document sub events")});
    QVERIFY(fromMain(QStringLiteral("http://a/frame"), Kind::Other, Target::SubFrame));
    send({QStringLiteral("navigate sub script http://a/there"), QStringLiteral("caller sub sub http://a/there")});
    const NavigationSource source = m_tracker.source({QUrl(there), Kind::Redirect, Target::SubFrame});
    QVERIFY(!source.serverRedirect);
    QVERIFY(!source.frame.mainFrame);
}

void SourceFrameTrackerTest::readsAddressesAsTheEngineDoes()
{
    const QByteArray odd = "http://a/%C3%A4%20%7C?q=%C3%A4%20%22%zz&b=[]#f%C3%A4";
    send({QStringLiteral("document main events"), QStringLiteral("navigate main script ") + QString::fromLatin1(odd)});
    QVERIFY(m_tracker.source({QUrl::fromEncoded(odd), Kind::Link, Target::MainFrame}).frame.mainFrame);
}

void SourceFrameTrackerTest::comparesFormsWithoutTheirEntries()
{
    send({QStringLiteral("document main silent"), QStringLiteral("document sub silent"),
        QStringLiteral("form main get http://a/there?old=1#part")});
    QVERIFY(fromMain(QStringLiteral("http://a/there?new=2"), Kind::Form));
}

void SourceFrameTrackerTest::ignoresWhatItDoesNotKnow()
{
    send({QStringLiteral("document main events"), QString(), QStringLiteral("navigate"),
        QStringLiteral("wink main user http://a/there"), QStringLiteral("navigate top script http://a/there"),
        QStringLiteral("navigate main"), QStringLiteral("document other silent")});
    QVERIFY(!fromMain(there));
}

void SourceFrameTrackerTest::handsOutBothScripts()
{
    QVERIFY(SourceFrameTracker::isolatedWorldScript().contains(QLatin1String("(function (send)")));
    QVERIFY(SourceFrameTracker::pageWorldScript().contains(QLatin1String("(function ()")));
}

QTEST_APPLESS_MAIN(SourceFrameTrackerTest)
#include "SourceFrameTrackerTest.moc"
