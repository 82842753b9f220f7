// SPDX-License-Identifier: MIT
#include <KXFoundation/ActionKit/QueryDecoding.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <thread>

using kx::decodeRepeatedly;
using kx::QueryForm;

class QueryDecodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void decodesUntilNoPercentIsLeft_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("passes");
        QTest::newRow("nothing to do still is a pass") << QStringLiteral("abc") << QStringLiteral("abc") << 1;
        QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("") << 1;
        QTest::newRow("one layer") << QStringLiteral("a%20b") << QStringLiteral("a b") << 1;
        QTest::newRow("two layers") << QStringLiteral("a%2520b") << QStringLiteral("a b") << 2;
        QTest::newRow("five layers") << QStringLiteral("%25252541") << QStringLiteral("A") << 4;
    }
    void decodesUntilNoPercentIsLeft()
    {
        QFETCH(QString, value);
        QFETCH(QString, text);
        QFETCH(int, passes);
        const std::atomic<int> noLimit = 0;
        const auto result = decodeRepeatedly(value, QueryForm::Encoded, noLimit);
        QCOMPARE(result.text, text);
        QVERIFY(!result.text.isNull());
        QCOMPARE(result.passes, quint64(passes));
    }

    void rawFormCountsThePassThatItSaves()
    {
        const std::atomic<int> noLimit = 0;
        const auto result = decodeRepeatedly(u"a%20b", QueryForm::Raw, noLimit);
        QCOMPARE(result.text, QStringLiteral("a b"));
        QCOMPARE(result.passes, 2U);
    }

    // Whatever the limit, an undecodable value uses it up: it has no end of its own.
    void onlyTheLimitEndsAnUndecodableValue_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("no digits") << QStringLiteral("100%25") << QStringLiteral("100%");
        QTest::newRow("no UTF-8 at the second pass") << QStringLiteral("%25FF") << QStringLiteral("%FF");
        QTest::newRow("no UTF-8 at the first pass") << QStringLiteral("%FF") << QStringLiteral("%FF");
        QTest::newRow("in the middle") << QStringLiteral("a%2520%2525b") << QStringLiteral("a %b");
    }
    void onlyTheLimitEndsAnUndecodableValue()
    {
        QFETCH(QString, value);
        QFETCH(QString, text);
        for (const int limit : {3, 4, 10, 1000, 12345}) {
            const std::atomic<int> passLimit = limit;
            const auto result = decodeRepeatedly(value, QueryForm::Encoded, passLimit);
            QCOMPARE(result.passes, quint64(limit));
            QCOMPARE(result.text, text);
        }
    }

    void theLimitCutsDecodableValuesToo()
    {
        const QString value = QStringLiteral("%25252541");
        const QStringList texts = {QStringLiteral("%252541"), QStringLiteral("%2541"), QStringLiteral("%41"),
            QStringLiteral("A"), QStringLiteral("A")};
        for (int limit = 1; limit <= texts.size(); ++limit) {
            const std::atomic<int> passLimit = limit;
            QCOMPARE(decodeRepeatedly(value, QueryForm::Encoded, passLimit).text, texts[limit - 1]);
        }
    }

    void aLimitSetMeanwhileFreesADecodingWithoutEnd()
    {
        std::atomic<int> passLimit = 0;
        std::atomic<bool> ended = false;
        kx::DecodedValue result;
        std::thread thread([&] {
            result = decodeRepeatedly(u"100%25", QueryForm::Encoded, passLimit);
            ended = true;
        });
        for (int i = 0; i < 1000 && !ended; ++i)
            std::this_thread::yield();
        const bool endedByItself = ended;
        passLimit = 1;
        thread.join();
        QVERIFY(!endedByItself);
        QCOMPARE(result.text, QStringLiteral("100%"));
    }
};

QTEST_GUILESS_MAIN(QueryDecodingTest)
#include "QueryDecodingTest.moc"
