// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Url.h>

#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtTest/QTest>

using kx::Url;

Q_DECLARE_METATYPE(std::optional<int>)

class UrlTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void divides_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("scheme");
        QTest::addColumn<QString>("host");
        QTest::addColumn<std::optional<int>>("port");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("query");
        const QString none;
        const auto row = [](const char *name, const char *text, const QString &scheme, const QString &host,
                             std::optional<int> port, const QString &path, const QString &query) {
            QTest::newRow(name) << QString::fromUtf8(text) << scheme << host << port << path << query;
        };
        const auto s = [](const char *text) { return QString::fromUtf8(text); };
        row("all", "kx://h:81/p?q#f", s("kx"), s("h"), 81, s("/p"), s("q"));
        row("user information", "kx://user:pass@h/p", s("kx"), s("h"), {}, s("/p"), none);
        row("no path", "kx://h", s("kx"), s("h"), {}, s(""), none);
        row("the root", "kx://h/", s("kx"), s("h"), {}, s("/"), none);
        row("trailing slash", "kx://h/a/b/", s("kx"), s("h"), {}, s("/a/b"), none);
        row("only one trailing slash", "kx://h/a//", s("kx"), s("h"), {}, s("/a/"), none);
        row("an escaped slash stays", "kx://h/a%2F", s("kx"), s("h"), {}, s("/a/"), none);
        row("decoded path", "kx://h/%E4%B8%AD%20b", s("kx"), s("h"), {}, s("/中 b"), none);
        row("no UTF-8 in the path", "kx://h/%FF", s("kx"), s("h"), {}, none, none);
        row("dots stay", "kx://h/a/../b/.", s("kx"), s("h"), {}, s("/a/../b/."), none);
        row("case stays", "KxA://HoSt/Path?Query", s("KxA"), s("HoSt"), {}, s("/Path"), s("Query"));
        row("scheme characters", "a1+-.:x", s("a1+-."), none, {}, s("x"), none);
        row("no authority", "kx:/p/q", s("kx"), none, {}, s("/p/q"), none);
        row("no slash", "kx:play?x", s("kx"), none, {}, s("play"), s("x"));
        row("colon in a later segment", "kx:a:b", s("kx"), none, {}, s("a:b"), none);
        row("scheme alone", "kx:", s("kx"), none, {}, s(""), none);
        row("blank host", "kx:///p", s("kx"), s(""), {}, s("/p"), none);
        row("blank authority alone", "kx://", s("kx"), s(""), {}, s(""), none);
        row("blank port", "kx://h:/p", s("kx"), s("h"), {}, s("/p"), none);
        row("port 0", "kx://h:0", s("kx"), s("h"), 0, s(""), none);
        row("leading zeros", "kx://h:0080", s("kx"), s("h"), 80, s(""), none);
        row("largest int", "kx://h:2147483647", s("kx"), s("h"), 2147483647, s(""), none);
        row("beyond int", "kx://h:99999999999999999999999", s("kx"), s("h"), 2147483647, s(""), none);
        row("empty query", "kx://h?", s("kx"), s("h"), {}, s(""), s(""));
        row("query of a host alone", "kx://h?a=1", s("kx"), s("h"), {}, s(""), s("a=1"));
        row("query stays encoded", "kx://h/?a=%20%41", s("kx"), s("h"), {}, s("/"), s("a=%20%41"));
        row("question marks and slashes in a query", "kx://h/p?a?b/c", s("kx"), s("h"), {}, s("/p"), s("a?b/c"));
        row("fragment with a question mark", "kx://h/p#f?x", s("kx"), s("h"), {}, s("/p"), none);
        row("sub-delims in a host", "kx://a!$&'()*+,;=b_~/", s("kx"), s("a!$&'()*+,;=b_~"), {}, s("/"), none);
        row("escaped host stays", "kx://a%20b/", s("kx"), s("a%20b"), {}, s("/"), none);
        row("IPv4", "kx://127.0.0.1:8/", s("kx"), s("127.0.0.1"), 8, s("/"), none);
        row("IPv6", "kx://[::1]:8/", s("kx"), s("::1"), 8, s("/"), none);
        row("IPv6 without a port", "kx://u@[2001:db8::7]", s("kx"), s("2001:db8::7"), {}, s(""), none);
        row("a future literal", "kx://[v1f.a:b]?x", s("kx"), s("v1f.a:b"), {}, s(""), s("x"));
        row("network path", "//h/p", none, s("h"), {}, s("/p"), none);
        row("absolute path", "/p", none, none, {}, s("/p"), none);
        row("relative path", "p/q:r?x", none, none, {}, s("p/q:r"), s("x"));
        row("dot segment with a colon", "./q:r", none, none, {}, s("./q:r"), none);
        row("query alone", "?x", none, none, {}, s(""), s("x"));
        row("fragment alone", "#x", none, none, {}, s(""), none);
        row("nothing", "", none, none, {}, s(""), none);
    }
    void divides()
    {
        QFETCH(QString, text);
        const std::optional<Url> url = Url::parse(text);
        QVERIFY(url);
        QFETCH(QString, scheme);
        QFETCH(QString, host);
        QFETCH(std::optional<int>, port);
        QFETCH(QString, path);
        QFETCH(QString, query);
        QCOMPARE(url->scheme, scheme);
        QCOMPARE(url->host, host);
        QCOMPARE(url->port, port);
        QCOMPARE(url->path, path);
        QCOMPARE(url->query, query);
        // Absent and empty differ, which QCOMPARE does not see.
        Url expected;
        expected.scheme = scheme;
        expected.host = host;
        expected.port = port;
        expected.path = path;
        expected.query = query;
        QVERIFY(*url == expected);
    }

    void rejects_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {
                 ":",
                 ":p",
                 "1x:p",
                 "-x:p",
                 "a_b:p",
                 "a%20b:p",
                 "a@b:c", // schemes and first segments
                 "kx://h:8a/",
                 "kx://h:-1",
                 "kx://a:1:2",
                 "kx://[::1",
                 "kx://[::1]x/",
                 "kx://x[::1]/",
                 "kx://h]/",
                 "kx://[]/",
                 "kx://[1]/",
                 "kx://[::1%25eth0]/",
                 "kx://[:::]/",
                 "kx://[1:2:3:4:5:6:7]/",
                 "kx://[1:2:3:4:5:6:7:8:9]/",
                 "kx://[1:2:3:4::5:6:7:8]/",
                 "kx://[::1::]/",
                 "kx://[12345::]/",
                 "kx://[::256.1.1.1]/",
                 "kx://[::1.2.3]/",
                 "kx://[1.2.3.4::]/",
                 "kx://[v.a]/",
                 "kx://[v1.]/",
                 "kx://[vg.a]/",
                 "kx://[v1.a|b]/",
                 "kx://a@b@c/",
                 "kx://[::1]@h/", // authorities
                 "kx://h/a b",
                 "kx://h/\"",
                 "kx://h/<>",
                 "kx://h/\\",
                 "kx://h/^",
                 "kx://h/`",
                 "kx://h/{}",
                 "kx://h/|",
                 "kx://h/[",
                 "kx://h/中",
                 "kx://h/\x7f",
                 "kx://h/\n", // characters
                 "kx://h/%",
                 "kx://h/%4",
                 "kx://h/%zz",
                 "kx://h?%",
                 "kx://h?%g0",
                 "kx://h#%",
                 "kx://%4/",
                 "kx://%", // escapes
                 "kx://h/p#f#g",
                 "kx://h/p?[",
                 "kx://h/p# ",
             })
            QTest::newRow(text) << QString::fromUtf8(text);
    }
    void rejects()
    {
        QFETCH(QString, text);
        QVERIFY(!Url::parse(text));
    }

    void readsIPv6_data()
    {
        QTest::addColumn<QString>("address");
        for (const char *address : {"::", "::1", "1::", "1:2:3:4:5:6:7:8", "::2:3:4:5:6:7:8",
                 "1:2:3:4:5:6:7::", "fe80::abCD", "1:2:3:4:5:6:1.2.3.4", "::1.2.3.4", "1::5:6:255.0.10.9"})
            QTest::newRow(address) << QString::fromLatin1(address);
    }
    void readsIPv6()
    {
        QFETCH(QString, address);
        const std::optional<Url> url = Url::parse(QString(u"kx://[" + address + u"]"));
        QVERIFY(url);
        QCOMPARE(url->host, address);
    }

    void everyPrefixOfAUrlIsReadOrRejected()
    {
        const QString text = QStringLiteral("kx://u:p@[1:2::3]:80/a%20b/c?d=%C3%A9#f");
        int read = 0;
        for (qsizetype length = 0; length <= text.size(); ++length)
            read += Url::parse(QStringView(text).first(length)).has_value();
        QVERIFY(read > 20 && read < text.size()); // reads nothing behind the end: the sanitizers watch
        QVERIFY(Url::parse(QStringView()));
        QVERIFY(!Url::parse(QStringView())->path.isNull());
    }

    // What would be lost with QUrl.
    void differsFromQUrl()
    {
        // The scheme and the host keep their case.
        QCOMPARE(QUrl(QStringLiteral("KX://Action.Cmd/p")).scheme(), QStringLiteral("kx"));
        QCOMPARE(Url::parse(u"KX://Action.Cmd/p")->scheme, QStringLiteral("KX"));
        QCOMPARE(QUrl(QStringLiteral("KX://Action.Cmd/p")).host(), QStringLiteral("action.cmd"));
        QCOMPARE(Url::parse(u"KX://Action.Cmd/p")->host, QStringLiteral("Action.Cmd"));
        // Escapes that need none stay.
        QCOMPARE(QUrl(QStringLiteral("kx://h/?%41")).query(QUrl::FullyEncoded), QStringLiteral("A"));
        QCOMPARE(Url::parse(u"kx://h/?%41")->query, QStringLiteral("%41"));
        // Nothing is mended.
        QCOMPARE(QUrl(QStringLiteral("kx://h/a b%")).path(QUrl::FullyEncoded), QStringLiteral("/a%20b%25"));
        QVERIFY(!Url::parse(u"kx://h/a b%"));
        // Every reg-name is a host, every row of digits a port.
        QVERIFY(!QUrl(QStringLiteral("kx://a!b/")).isValid());
        QCOMPARE(Url::parse(u"kx://a!b/")->host, QStringLiteral("a!b"));
        QVERIFY(!QUrl(QStringLiteral("kx://h:70000/")).isValid());
        QCOMPARE(Url::parse(u"kx://h:70000/")->port, std::optional(70000));
        // Trailing slashes go.
        QCOMPARE(QUrl(QStringLiteral("kx://h/a/")).path(), QStringLiteral("/a/"));
        QCOMPARE(Url::parse(u"kx://h/a/")->path, QStringLiteral("/a"));
        // The empty text is a reference like others.
        QVERIFY(!QUrl(QString()).isValid());
        QVERIFY(Url::parse(u""));
    }

    void comesFromAQUrl_data()
    {
        QTest::addColumn<QString>("text");
        for (const char *text : {"kx://action.cmd/play?id=7", "kx://h:81/a%20b/?x=%2520#f", "kx://[::1]:8/", "kx:play",
                 "kx:/p", "//h/p", "/p?q", "p?", "kx://h", "kx://h/%E4%B8%AD", "kx:///p", "file:///a/b", "kx://",
                 "///p", "kx://u@/p", "kx:"})
            QTest::newRow(text) << QString::fromLatin1(text);
    }
    void comesFromAQUrl()
    {
        QFETCH(QString, text);
        const Url url = QUrl(text);
        const std::optional<Url> parsed = Url::parse(text);
        QVERIFY(parsed);
        QCOMPARE(url.scheme, parsed->scheme);
        QCOMPARE(url.host, parsed->host);
        QCOMPARE(url.port, parsed->port);
        QCOMPARE(url.path, parsed->path);
        QCOMPARE(url.query, parsed->query);
        QVERIFY(url == *parsed);
    }

    void anInvalidQUrlGivesNothing()
    {
        QVERIFY(Url(QUrl()) == Url());
        QVERIFY(Url(QUrl(QStringLiteral("kx://h:70000/p"))) == Url());
        QVERIFY(Url().path.isNull());
    }
};

QTEST_GUILESS_MAIN(UrlTest)
#include "UrlTest.moc"
