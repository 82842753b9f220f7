// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/WKWebView/NavigationRules.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

enum Target { MainFrame, SubFrame, NewWindow };

kx::NavigationAction action(bool fromMainFrame, Target target, const QString &url)
{
    kx::NavigationAction action;
    action.url = QUrl(url);
    action.sourceFrame = {fromMainFrame};
    if (target != NewWindow)
        action.targetFrame = kx::FrameInfo{target == MainFrame};
    return action;
}

} // namespace

class NavigationRulesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void otherHostsFollowTheirSwitch_data();
    void otherHostsFollowTheirSwitch();
    void mainPageGoesAnywhereExceptWhenAFrameTakesItOver_data();
    void mainPageGoesAnywhereExceptWhenAFrameTakesItOver();
    void framesMaySendTheMainPageToAllowedPlaces_data();
    void framesMaySendTheMainPageToAllowedPlaces();
    void ownWebHostIsAllowed();
    void absentHostMatchesNoEntry();
    void hostsAreInASCIIAndLowerCase();
};

void NavigationRulesTest::otherHostsFollowTheirSwitch_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("fromMainFrame");
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("url");
    QTest::newRow("no name") << QString() << true << int(MainFrame) << u"https://a.example/"_qs;
    QTest::newRow("empty name") << u""_qs << false << int(MainFrame) << u"https://a.example/"_qs;
    QTest::newRow("another name") << u"ad"_qs << true << int(NewWindow) << u"file:///a"_qs;
    QTest::newRow("another case") << u"Root"_qs << false << int(MainFrame) << u"data:,x"_qs;
    QTest::newRow("a longer name") << u"root2"_qs << false << int(SubFrame) << u"https://a.example/"_qs;
}

void NavigationRulesTest::otherHostsFollowTheirSwitch()
{
    QFETCH(QString, name);
    QFETCH(bool, fromMainFrame);
    QFETCH(int, target);
    QFETCH(QString, url);
    const kx::NavigationAction asked = action(fromMainFrame, Target(target), url);
    QCOMPARE(kx::decideNavigation({name, true, {}, {}}, asked), kx::NavigationPolicy::Allow);
    QCOMPARE(
        kx::decideNavigation({name, false, {u"a.example"_qs}, u"a.example"_qs}, asked), kx::NavigationPolicy::Cancel);
}

void NavigationRulesTest::mainPageGoesAnywhereExceptWhenAFrameTakesItOver_data()
{
    QTest::addColumn<bool>("fromMainFrame");
    QTest::addColumn<int>("target");
    QTest::addColumn<bool>("allowed");
    QTest::newRow("main to main") << true << int(MainFrame) << true;
    QTest::newRow("main to sub") << true << int(SubFrame) << true;
    QTest::newRow("main to new window") << true << int(NewWindow) << true;
    QTest::newRow("sub to sub") << false << int(SubFrame) << true;
    QTest::newRow("sub to new window") << false << int(NewWindow) << true;
    QTest::newRow("sub to main") << false << int(MainFrame) << false;
}

void NavigationRulesTest::mainPageGoesAnywhereExceptWhenAFrameTakesItOver()
{
    QFETCH(bool, fromMainFrame);
    QFETCH(int, target);
    QFETCH(bool, allowed);
    const auto expected = allowed ? kx::NavigationPolicy::Allow : kx::NavigationPolicy::Cancel;
    for (const QString &url : {u"https://a.example/"_qs, u"kx://play"_qs, u"data:,x"_qs, u"about:blank"_qs}) {
        for (const bool allowNavigation : {true, false}) // plays no part here
            QCOMPARE(
                kx::decideNavigation({u"root"_qs, allowNavigation, {}, {}}, action(fromMainFrame, Target(target), url)),
                expected);
    }
}

void NavigationRulesTest::framesMaySendTheMainPageToAllowedPlaces_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("allowed");
    QTest::newRow("file") << u"file:///x/y.html"_qs << true;
    QTest::newRow("begins with file") << u"filesystem:http://a.example/x"_qs << true;
    QTest::newRow("listed") << u"http://plain.example/x"_qs << true;
    QTest::newRow("listed, https") << u"https://plain.example/x"_qs << true;
    QTest::newRow("listed, any port") << u"https://plain.example:81/x"_qs << true;
    QTest::newRow("listed with a port") << u"https://ported.example/x"_qs << true;
    QTest::newRow("listed with another port") << u"http://ported.example:9/x"_qs << true;
    QTest::newRow("begins with http") << u"httpx://plain.example/"_qs << true;
    QTest::newRow("not listed") << u"https://other.example/"_qs << false;
    QTest::newRow("below a listed one") << u"https://sub.plain.example/"_qs << false;
    QTest::newRow("beginning of a listed one") << u"https://plain/"_qs << false;
    QTest::newRow("longer than a listed one") << u"https://plain.example.org/"_qs << false;
    QTest::newRow("listed in upper case") << u"https://upper.example/"_qs << false;
    QTest::newRow("listed as user") << u"https://plain.example@other.example/"_qs << false;
    QTest::newRow("script") << u"javascript:alert(1)"_qs << false;
    QTest::newRow("data") << u"data:text/html,x"_qs << false;
    QTest::newRow("blank") << u"about:blank"_qs << false;
    QTest::newRow("own scheme") << u"clip://plain.example/"_qs << false;
    QTest::newRow("no scheme") << u"plain.example"_qs << false;
}

void NavigationRulesTest::framesMaySendTheMainPageToAllowedPlaces()
{
    QFETCH(QString, url);
    QFETCH(bool, allowed);
    const kx::NavigationRules rules{
        u"root"_qs, false, {u"Upper.example"_qs, u"ported.example:8080"_qs, u"plain.example"_qs}, {}};
    QCOMPARE(kx::decideNavigation(rules, action(false, MainFrame, url)),
        allowed ? kx::NavigationPolicy::Allow : kx::NavigationPolicy::Cancel);
}

void NavigationRulesTest::ownWebHostIsAllowed()
{
    const kx::NavigationRules rules{u"root"_qs, true, {u"a.example"_qs}, u"own.example"_qs};
    QCOMPARE(
        kx::decideNavigation(rules, action(false, MainFrame, u"https://own.example/"_qs)), kx::NavigationPolicy::Allow);
    QCOMPARE(kx::decideNavigation(rules, action(false, MainFrame, u"https://a.own.example/"_qs)),
        kx::NavigationPolicy::Cancel);
}

void NavigationRulesTest::absentHostMatchesNoEntry()
{
    const kx::NavigationRules rules{u"root"_qs, true, {QString(), u""_qs, u":80"_qs}, {}};
    QCOMPARE(kx::decideNavigation(rules, action(false, MainFrame, u"http:///x"_qs)), kx::NavigationPolicy::Cancel);
}

void NavigationRulesTest::hostsAreInASCIIAndLowerCase()
{
    QCOMPARE(kx::hostOf(QUrl(u"https://B\u00FCcher.DE/"_qs)), u"xn--bcher-kva.de"_qs);
    QVERIFY(kx::hostOf(QUrl(u"data:,x"_qs)).isNull());
    QVERIFY(kx::hostOf(QUrl()).isNull());
}

QTEST_APPLESS_MAIN(NavigationRulesTest)
#include "NavigationRulesTest.moc"
