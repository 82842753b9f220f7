// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/KXActionItem.h>

#include <KXFoundation/Platform/Core/PercentEncoding.h>

#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtTest/QTest>

using Map = QHash<QString, QString>;

class KXActionItemTest : public QObject {
    Q_OBJECT

private:
    static KXActionItem item(const QString &text)
    {
        const std::optional<KXActionItem> made = KXActionItem::actionItemWithString(text);
        if (!made)
            qWarning("no item"); // fails the test
        return made.value_or(KXActionItem());
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        KXActionItem::setDecodePassLimit(0);
    }

    void trimsAndDivides()
    {
        const KXActionItem play = item(QStringLiteral("  kx://action.cmd/play?id=7 \n"));
        QCOMPARE(play.scheme(), QStringLiteral("kx"));
        QCOMPARE(play.host(), QStringLiteral("action.cmd"));
        QCOMPARE(play.port(), std::nullopt);
        QCOMPARE(play.path(), QStringLiteral("/play"));
        QCOMPARE(play.query(), QStringLiteral("id=7"));
        QCOMPARE(play.queryMap(), (Map{{QStringLiteral("id"), QStringLiteral("7")}}));
        QCOMPARE(item(QStringLiteral("\u00A0\u2003\u2028\tkx:p\u0085\r")).path(), QStringLiteral("p"));
    }

    void keepsTheCaseOfAScheme()
    {
        QCOMPARE(item(QStringLiteral("KxPlayer://h/p")).scheme(), QStringLiteral("KxPlayer"));
    }

    void readsThePort()
    {
        QCOMPARE(item(QStringLiteral("kx://h:8080/p")).port(), std::optional(8080));
        QCOMPARE(item(QStringLiteral("kx://h:/p")).port(), std::nullopt);
    }

    void makesNoItem_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("absent") << QString();
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("blank") << QStringLiteral(" \t\n\u3000 ");
        QTest::newRow("no scheme before the colon") << QStringLiteral("://h/p");
        QTest::newRow("digit first") << QStringLiteral("1kx://h/p");
        QTest::newRow("blank in the scheme") << QStringLiteral("k x://h/p");
        QTest::newRow("letters for a port") << QStringLiteral("kx://h:port/p");
        QTest::newRow("two @") << QStringLiteral("kx://a@b@c/p");
        QTest::newRow("IP literal, whose brackets are encoded") << QStringLiteral("kx://[::1]/p");
        QTest::newRow("lone surrogate in the path") << QString(QStringLiteral("kx://h/") + QChar(0xD800));
        QTest::newRow("lone surrogate in the query") << QString(QStringLiteral("kx://h/?a=") + QChar(0xDC00));
        QTest::newRow("cut pair at the end of the query") << QString(QStringLiteral("kx://h/?a=") + QChar(0xD83D));
    }
    void makesNoItem()
    {
        QFETCH(QString, text);
        QVERIFY(!KXActionItem::actionItemWithString(text));
        QVERIFY(!KXActionItem::initWithURLString(text));
    }

    void aRelativeReferenceIsAnItemWithoutAScheme()
    {
        const KXActionItem relative = item(QStringLiteral("play?id=7"));
        QVERIFY(relative.scheme().isNull());
        QVERIFY(relative.host().isNull());
        QCOMPARE(relative.path(), QStringLiteral("play"));
        QCOMPARE(relative.queryMap(), (Map{{QStringLiteral("id"), QStringLiteral("7")}}));
    }

    void readsThePath_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("path");
        QTest::newRow("trailing slash") << QStringLiteral("kx://action.cmd/a/b/") << QStringLiteral("/a/b");
        QTest::newRow("root") << QStringLiteral("kx://h/") << QStringLiteral("/");
        QTest::newRow("none") << QStringLiteral("kx://h") << QStringLiteral("");
        QTest::newRow("an escape comes out as it went in")
            << QStringLiteral("kx://h/a%20b") << QStringLiteral("/a%20b");
        QTest::newRow("blank") << QStringLiteral("kx://h/a b") << QStringLiteral("/a b");
        QTest::newRow("not ASCII") << QStringLiteral("kx://h/播放") << QStringLiteral("/播放");
        QTest::newRow("no fragment") << QStringLiteral("kx://h/a#b") << QStringLiteral("/a#b");
        QTest::newRow("bare percent") << QStringLiteral("kx://h/100%") << QStringLiteral("/100%");
        QTest::newRow("bracket") << QStringLiteral("kx://h/[x]{y}\"\\") << QStringLiteral("/[x]{y}\"\\");
    }
    void readsThePath()
    {
        QFETCH(QString, text);
        QFETCH(QString, path);
        QCOMPARE(item(text).path(), path);
        QVERIFY(!item(text).path().isNull());
    }

    void encodesTheQueryFirst_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("query");
        QTest::newRow("escape") << QStringLiteral("a=%41") << QStringLiteral("a=%2541");
        QTest::newRow("hash") << QStringLiteral("a=1#b?c") << QStringLiteral("a=1%23b?c");
        QTest::newRow("not ASCII") << QStringLiteral("é=中") << QStringLiteral("%C3%A9=%E4%B8%AD");
        QTest::newRow("blank inside") << QStringLiteral("a=1 2") << QStringLiteral("a=1%202");
        QTest::newRow("nothing to do") << QStringLiteral("a=1&b") << QStringLiteral("a=1&b");
        QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("");
    }
    void encodesTheQueryFirst()
    {
        QFETCH(QString, given);
        QFETCH(QString, query);
        const KXActionItem made = item(QString(u"kx://h/p?" + given));
        QCOMPARE(made.query(), query);
        QVERIFY(!made.query().isNull());
        QCOMPARE(made.query(), query); // and again
    }

    void hasNoQueryWithoutAMark()
    {
        QVERIFY(item(QStringLiteral("kx://h/p")).query().isNull());
        QVERIFY(item(QStringLiteral("kx://h/p")).queryMap().isEmpty());
    }

    void buildsTheMap_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<Map>("map");
        const auto row = [](const char *query, const Map &map) {
            QTest::newRow(query) << QString::fromUtf8(query) << map;
        };
        const auto s = [](const char *text) { return QString::fromUtf8(text); };
        row("url=http%3A%2F%2Fa.b%2Fc", {{s("url"), s("http://a.b/c")}});
        row("x=1&x=2", {{s("x"), s("2")}});
        row("flag", {{s("flag"), s("flag")}});
        row("=v", {{s(""), s("v")}});
        row("a=1&&b=2", {{s("a"), s("1")}, {s(""), s("")}, {s("b"), s("2")}});
        row("a=1&", {{s("a"), s("1")}, {s(""), s("")}});
        row("&&", {{s(""), s("")}});
        row("a=", {{s("a"), s("")}});
        row("==", {{s(""), s("")}});
        row("a=b=c", {{s("a"), s("c")}});
        row("a=%2x=c", {{s("a"), s("c")}}); // only the last element is decoded
        row("a%20b=1", {{s("a%2520b"), s("1")}}); // keys are not decoded
        row("é=1", {{s("%C3%A9"), s("1")}});
        row("flag%20", {{s("flag%2520"), s("flag ")}});
        row("v=%E4%B8%AD%E6%96%87", {{s("v"), s("中文")}});
        row("v=中 文", {{s("v"), s("中 文")}});
        row("v=%25252541", {{s("v"), s("A")}});
        row("v=a+b", {{s("v"), s("a+b")}});
        row("v=1#2", {{s("v"), s("1#2")}});
        row("a=1?b=2", {{s("a"), s("2")}});
        row("a", {}); // a single character gives no pair
        row("&", {});
        row("", {});
        row("é", {{s("%C3%A9"), s("é")}}); // but encoded it is several
        row("ab", {{s("ab"), s("ab")}});
    }
    void buildsTheMap()
    {
        QFETCH(QString, query);
        QFETCH(Map, map);
        const KXActionItem made = item(QString(u"kx://h/p?" + query));
        QCOMPARE(made.queryMap(), map);
        for (auto pair = made.queryMap().cbegin(); pair != made.queryMap().cend(); ++pair)
            QVERIFY(!pair.value().isNull()); // empty, never absent
        const Map *const first = &made.queryMap();
        QCOMPARE(&made.queryMap(), first); // built once
    }

    // The item takes a short cut through encoding and decoding; this is the long way.
    void givesWhatTheStepsGiveOneByOne()
    {
        KXActionItem::setDecodePassLimit(4);
        QRandomGenerator random(7);
        const QStringList parts = {QStringLiteral("kx"), QStringLiteral(":"), QStringLiteral("//"), QStringLiteral("/"),
            QStringLiteral("?"), QStringLiteral("#"), QStringLiteral("&"), QStringLiteral("="), QStringLiteral("%"),
            QStringLiteral("%25"), QStringLiteral("%41"), QStringLiteral("%2525"), QStringLiteral("%FF"),
            QStringLiteral("é"), QStringLiteral("\U0001F600"), QStringLiteral("a"), QStringLiteral("1"),
            QStringLiteral("@"), QStringLiteral("["), QStringLiteral("]"), QStringLiteral(" "), QString(QChar(0xD83D)),
            QStringLiteral("&a=")};
        int made = 0;
        for (int round = 0; round < 50'000; ++round) {
            QString text = random.bounded(2) ? QStringLiteral("kx://h/p?") : QString();
            for (int i = random.bounded(12); i > 0; --i)
                text += parts[random.bounded(parts.size())];
            const std::optional<KXActionItem> quick = KXActionItem::initWithURLString(text);

            const QString trimmed = text.trimmed();
            std::optional<kx::Url> url;
            if (!trimmed.isEmpty()) {
                if (const auto encoded = kx::addPercentEncoding(trimmed, kx::urlQueryAllowed))
                    url = kx::Url::parse(*encoded);
            }
            QVERIFY2(quick.has_value() == url.has_value(), qPrintable(text));
            if (!quick)
                continue;
            ++made;
            const KXActionItem slow = KXActionItem::initWithURL(*url);
            QCOMPARE(quick->scheme(), slow.scheme());
            QCOMPARE(quick->host(), slow.host());
            QCOMPARE(quick->port(), slow.port());
            QCOMPARE(quick->path(), slow.path());
            if (round % 2)
                QCOMPARE(quick->queryMap(), slow.queryMap()); // before query() is asked, and after it
            QCOMPARE(quick->query(), slow.query());
            QCOMPARE(quick->query().isNull(), slow.query().isNull());
            QCOMPARE(quick->queryMap(), slow.queryMap());
        }
        QVERIFY(made > 10'000);
    }

    void takesAUrlAsItIs()
    {
        const KXActionItem made = KXActionItem::initWithURL(*kx::Url::parse(u"KX://h:1/a%20b/?k=%2541"));
        QCOMPARE(made.scheme(), QStringLiteral("KX"));
        QCOMPARE(made.port(), std::optional(1));
        QCOMPARE(made.path(), QStringLiteral("/a b"));
        QCOMPARE(made.query(), QStringLiteral("k=%2541"));
        QCOMPARE(made.queryMap(), (Map{{QStringLiteral("k"), QStringLiteral("A")}}));
    }

    void takesAQUrl()
    {
        const KXActionItem made = KXActionItem::initWithURL(QUrl(QStringLiteral("KX://Action.cmd/play?id=7")));
        QCOMPARE(made.scheme(), QStringLiteral("kx")); // QUrl's doing
        QCOMPARE(made.path(), QStringLiteral("/play"));
        QCOMPARE(made.queryMap(), (Map{{QStringLiteral("id"), QStringLiteral("7")}}));
    }

    void aPresetMapIsReturnedWithoutParsing()
    {
        // Parsing this one would never end.
        KXActionItem made = item(QStringLiteral("kx://h/p?v=100%"));
        const Map preset = {{QStringLiteral("v"), QStringLiteral("preset")}};
        made.setQueryMap(preset);
        QCOMPARE(made.queryMap(), preset);
        made.setQueryMap({});
        QCOMPARE(made.queryMap(), Map());
    }

    void aMapThatIsForgottenIsBuiltAnew()
    {
        KXActionItem made = item(QStringLiteral("kx://h/p?a=1"));
        made.setQueryMap({{QStringLiteral("b"), QStringLiteral("2")}});
        made.setQueryMap(std::nullopt);
        QCOMPARE(made.queryMap(), (Map{{QStringLiteral("a"), QStringLiteral("1")}}));
        made.setQuery(QStringLiteral("c=3"));
        made.setQueryMap(std::nullopt);
        QCOMPARE(made.queryMap(), (Map{{QStringLiteral("c"), QStringLiteral("3")}}));
    }

    void settersReplaceTheParts()
    {
        KXActionItem made = item(QStringLiteral("kx://h:1/p?a=1"));
        made.setScheme(QStringLiteral("ky"));
        made.setHost(QStringLiteral("other"));
        made.setPort(std::nullopt);
        made.setPath(QStringLiteral("/q"));
        made.setQuery(QStringLiteral("b=2"));
        QCOMPARE(made.scheme(), QStringLiteral("ky"));
        QCOMPARE(made.host(), QStringLiteral("other"));
        QCOMPARE(made.port(), std::nullopt);
        QCOMPARE(made.path(), QStringLiteral("/q"));
        QCOMPARE(made.query(), QStringLiteral("b=2"));
        QCOMPARE(made.queryMap(), (Map{{QStringLiteral("b"), QStringLiteral("2")}}));
        made.setQuery(QStringLiteral("c=3")); // the map that was built stays
        QCOMPARE(made.queryMap(), (Map{{QStringLiteral("b"), QStringLiteral("2")}}));
    }

    void copiesAreIndependent()
    {
        std::optional<KXActionItem> first = item(QStringLiteral("kx://h/p?a=%41"));
        const KXActionItem second = *first;
        first.reset();
        QCOMPARE(second.query(), QStringLiteral("a=%2541"));
        QCOMPARE(second.queryMap(), (Map{{QStringLiteral("a"), QStringLiteral("A")}}));
    }

    void anItemThatWasMovedFromCanStillBeAskedAndFilled()
    {
        KXActionItem first = item(QStringLiteral("kx://h/p?a=%41"));
        const KXActionItem second = std::move(first);
        QCOMPARE(second.query(), QStringLiteral("a=%2541"));
        QVERIFY(first.query().isNull()); // NOLINT(bugprone-use-after-move): that is the question
        QVERIFY(first.queryMap().isEmpty());
        first = item(QStringLiteral("kx://h/p?b=%42"));
        QCOMPARE(first.queryMap(), (Map{{QStringLiteral("b"), QStringLiteral("B")}}));
    }

    void theLimitEndsUndecodableValues()
    {
        KXActionItem::setDecodePassLimit(2);
        QCOMPARE(KXActionItem::decodePassLimit(), 2);
        const Map map = item(QStringLiteral("kx://h/p?v=100%&w=%FF&x=http%3A%2F%2Fa&y=%2541")).queryMap();
        QCOMPARE(map.value(QStringLiteral("v")), QStringLiteral("100%"));
        QCOMPARE(map.value(QStringLiteral("w")), QStringLiteral("%FF"));
        QCOMPARE(map.value(QStringLiteral("x")), QStringLiteral("http://a"));
        QCOMPARE(map.value(QStringLiteral("y")), QStringLiteral("%41")); // one pass short
        KXActionItem::setDecodePassLimit(-5);
        QCOMPARE(KXActionItem::decodePassLimit(), 0);
    }

    void aRowOfSeparatorsCostsNoMemory()
    {
        const QString text = QStringLiteral("kx://h/p?") + QString(2'000'000, u'&');
        const Map map = item(text).queryMap();
        QCOMPARE(map.size(), 1);
        QVERIFY(map.capacity() < 10'000);
    }
};

QTEST_GUILESS_MAIN(KXActionItemTest)
#include "KXActionItemTest.moc"
