// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/WKWebView/LoadRecovery.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using Kind = kx::LoadFailure::Kind;

class LoadRecoveryTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void namesTheFailure_data();
    void namesTheFailure();
    void looksForAFileOnlyWhereThatMatters();
    void anErrorWithoutAURLIsAnyFailure();
    void rebuildsTwiceAtMost();
    void readsTwoLevelsAboveTheFile_data();
    void readsTwoLevelsAboveTheFile();
};

void LoadRecoveryTest::namesTheFailure_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<qint64>("code");
    QTest::addColumn<QString>("url");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("path");
    const QString loading = kx::URLErrorDomain;
    const QString below = kx::CFNetworkErrorDomain;
    const auto row = [](const char *name, const QString &domain, qint64 code, const QString &url, Kind kind,
                         const QString &path = {}) { QTest::newRow(name) << domain << code << url << kind << path; };
    row("process died", below, 1, u"https://a.example/"_qs, Kind::ProcessDied);
    row("code 1 elsewhere", loading, 1, u"https://a.example/"_qs, Kind::Other);
    row("another code below", below, 2, u"https://a.example/"_qs, Kind::Other);
    row("missing", loading, -1100, u"file:///gone/index.html"_qs, Kind::LocalPageMissing, u"/gone/index.html"_qs);
    row("missing, in any domain", below, -1100, u"file:///gone/x"_qs, Kind::LocalPageMissing, u"/gone/x"_qs);
    row("missing with a query", loading, -1100, u"file:///gone/index.html?a=1?b"_qs, Kind::LocalPageMissing,
        u"/gone/index.html"_qs);
    row("path stays as spelled", loading, -1100, u"file:///gone/a%20b.html#c"_qs, Kind::LocalPageMissing,
        u"/gone/a%20b.html#c"_qs);
    row("every file:// goes", loading, -1100, u"file:///gone/file://x"_qs, Kind::LocalPageMissing, u"/gone/x"_qs);
    row("there", loading, -1100, u"file:///here/index.html?a=1"_qs, Kind::LocalPageExists, u"/here/index.html"_qs);
    row("blank", loading, -1100, u"file:///here/about:blank"_qs, Kind::BlankLocalPage, u"/here/about:blank"_qs);
    row("blank with a query", loading, -1100, u"file:///gone/about:blank?x"_qs, Kind::BlankLocalPage,
        u"/gone/about:blank"_qs);
    row("blank as a query", loading, -1100, u"file:///gone/x?about:blank"_qs, Kind::LocalPageMissing, u"/gone/x"_qs);
    row("missing, not local", loading, -1100, u"https://a.example/file://x"_qs, Kind::Other);
    row("missing in upper case", loading, -1100, u"FILE:///gone"_qs, Kind::Other);
    row("local, another code", loading, -1102, u"file:///gone"_qs, Kind::Other);
    row("unknown host", loading, -1003, u"https://a.example/"_qs, Kind::Other);
    row("stopped", loading, -999, u"file:///gone"_qs, Kind::Other);
}

void LoadRecoveryTest::namesTheFailure()
{
    QFETCH(QString, domain);
    QFETCH(qint64, code);
    QFETCH(QString, url);
    QFETCH(Kind, kind);
    const kx::LoadFailure failure = kx::classifyLoadFailure({domain, code, {}, {{kx::FailingURLStringKey, url}}},
        [](const QString &path) { return path.startsWith(u"/here/"); });
    QCOMPARE(failure.kind, kind);
    QCOMPARE(failure.url, url);
    QTEST(failure.path, "path");
}

void LoadRecoveryTest::looksForAFileOnlyWhereThatMatters()
{
    QStringList asked;
    const auto exists = [&asked](const QString &path) {
        asked.append(path);
        return false;
    };
    const auto error = [](qint64 code, const QString &url) {
        return KXError{kx::URLErrorDomain, code, {}, {{kx::FailingURLStringKey, url}}};
    };
    (void)kx::classifyLoadFailure(error(-1003, u"file:///a"_qs), exists);
    (void)kx::classifyLoadFailure(error(-1100, u"file:///about:blank"_qs), exists);
    QVERIFY(asked.isEmpty());
    (void)kx::classifyLoadFailure(error(-1100, u"file:///a"_qs), exists);
    QCOMPARE(asked, QStringList{u"/a"_qs});
}

void LoadRecoveryTest::anErrorWithoutAURLIsAnyFailure()
{
    const kx::LoadFailure failure = kx::classifyLoadFailure(
        {kx::URLErrorDomain, kx::URLErrorFileDoesNotExist, {}, {}}, [](const QString &) { return true; });
    QCOMPARE(failure.kind, Kind::Other);
    QVERIFY(failure.url.isNull());
}

void LoadRecoveryTest::rebuildsTwiceAtMost()
{
    QVERIFY(kx::mayRebuild(-1));
    QVERIFY(kx::mayRebuild(0));
    QVERIFY(kx::mayRebuild(1));
    QVERIFY(!kx::mayRebuild(2));
    QVERIFY(!kx::mayRebuild(std::numeric_limits<qint32>::max()));
}

void LoadRecoveryTest::readsTwoLevelsAboveTheFile_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QString>("directory");
    QTest::newRow("deep") << u"file:///a/b/c/d.html"_qs << u"/a/b"_qs;
    QTest::newRow("two levels") << u"file:///a/b.html"_qs << u"/"_qs;
    QTest::newRow("one level") << u"file:///b.html"_qs << u"/"_qs;
    QTest::newRow("the root") << u"file:///"_qs << u"/"_qs;
    QTest::newRow("query and fragment") << u"file:///a/b/c.html?x=/y/z#/t"_qs << u"/a"_qs;
    QTest::newRow("encoded") << u"file:///a%20b/c%2Fd/e/f.html"_qs << u"/a b/c/d"_qs;
    QTest::newRow("dots") << u"file:///a/b/c/../d.html"_qs << u"/a"_qs;
    QTest::newRow("directory") << u"file:///a/b/c/"_qs << u"/a"_qs;
    QTest::newRow("nothing") << QString() << u"/"_qs;
}

void LoadRecoveryTest::readsTwoLevelsAboveTheFile()
{
    QFETCH(QString, url);
    QTEST(kx::readAccessDirectory(QUrl(url)), "directory");
}

QTEST_APPLESS_MAIN(LoadRecoveryTest)
#include "LoadRecoveryTest.moc"
