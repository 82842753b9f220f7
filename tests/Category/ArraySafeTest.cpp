// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ArraySafe.h>

#include <QtCore/QJsonArray>
#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <limits>
#include <memory>
#include <vector>

class ArraySafeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void givesTheElement()
    {
        QCOMPARE(pn_objectAtIndex(QList<int>{4, 5}, 1), std::optional(5));
        QCOMPARE(pn_objectAtIndex(QStringList{QStringLiteral("a")}, 0), QStringLiteral("a"));
        QCOMPARE(pn_objectAtIndex(QJsonArray{1, QStringLiteral("b")}, 1), QJsonValue(QStringLiteral("b")));
        const auto shared = std::make_shared<int>(7);
        QCOMPARE(pn_objectAtIndex(std::vector{shared}, 0), shared);
    }

    void givesNoneOutsideTheList_data()
    {
        QTest::addColumn<quint64>("index");
        QTest::newRow("the count") << quint64(2);
        QTest::newRow("more") << quint64(3);
        QTest::newRow("largest signed") << quint64(std::numeric_limits<qint64>::max());
        QTest::newRow("all ones") << std::numeric_limits<quint64>::max();
        QTest::newRow("negative") << quint64(-2);
    }
    void givesNoneOutsideTheList()
    {
        QFETCH(quint64, index);
        QVERIFY(!pn_objectAtIndex(QList<int>{4, 5}, index));
        QVERIFY(pn_objectAtIndex(QStringList{QStringLiteral("a"), QStringLiteral("b")}, index).isNull());
        QVERIFY(pn_objectAtIndex(QJsonArray{1, 2}, index).isUndefined());
        QVERIFY(!pn_objectAtIndex(std::vector{std::make_shared<int>(1), std::make_shared<int>(2)}, index));
    }

    void givesNoneFromAnEmptyList()
    {
        QVERIFY(!pn_objectAtIndex(QList<int>(), 0));
        QVERIFY(pn_objectAtIndex(QJsonArray(), 0).isUndefined());
    }

    void appends()
    {
        QList<int> numbers;
        pn_addObject(numbers, 1);
        pn_addObject(numbers, std::optional(0));
        QCOMPARE(numbers, (QList<int>{1, 0}));
        QStringList texts;
        pn_addObject(texts, QStringLiteral(""));
        QCOMPARE(texts, QStringList{QStringLiteral("")});
        QByteArrayList data;
        pn_addObject(data, QByteArray(""));
        QCOMPARE(data, QByteArrayList{QByteArray("")});
        QJsonArray json;
        pn_addObject(json, QJsonValue(QJsonValue::Null));
        QCOMPARE(json, QJsonArray{QJsonValue::Null});
        std::vector<std::unique_ptr<int>> owned;
        pn_addObject(owned, std::make_unique<int>(3));
        QCOMPARE(*owned.at(0), 3);
    }

    void doesNotAppendNone()
    {
        QList<int> numbers = {1};
        pn_addObject(numbers, std::nullopt);
        QCOMPARE(numbers, QList<int>{1});
        QStringList texts;
        pn_addObject(texts, QString());
        QVERIFY(texts.isEmpty());
        QJsonArray json;
        pn_addObject(json, QJsonValue(QJsonValue::Undefined));
        QVERIFY(json.isEmpty());
        std::vector<std::shared_ptr<int>> shared;
        pn_addObject(shared, nullptr);
        QVERIFY(shared.empty());
    }
};

QTEST_GUILESS_MAIN(ArraySafeTest)
#include "ArraySafeTest.moc"
