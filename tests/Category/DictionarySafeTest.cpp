// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/DictionarySafe.h>

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <map>
#include <memory>

class DictionarySafeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void storesAndReplaces()
    {
        QHash<QString, int> hash;
        pn_SetObject(hash, 1, QStringLiteral("a"));
        pn_SetObject(hash, 2, QStringLiteral("a"));
        pn_SetObject(hash, 3, QStringLiteral(""));
        QCOMPARE(hash, (QHash<QString, int>{{QStringLiteral("a"), 2}, {QStringLiteral(""), 3}}));
        QMap<int, QString> map;
        pn_SetObject(map, QStringLiteral("x"), 1);
        QCOMPARE(map, (QMap<int, QString>{{1, QStringLiteral("x")}}));
        QJsonObject json;
        pn_SetObject(json, QJsonValue(QJsonValue::Null), QStringLiteral("k"));
        QCOMPARE(json, (QJsonObject{{QStringLiteral("k"), QJsonValue::Null}}));
        std::map<int, std::unique_ptr<int>> owned;
        pn_SetObject(owned, std::make_unique<int>(1), 0);
        pn_SetObject(owned, std::make_unique<int>(2), 0);
        QCOMPARE(*owned.at(0), 2);
    }

    void anAbsentObjectLeavesTheEntry()
    {
        QHash<QString, QString> hash = {{QStringLiteral("a"), QStringLiteral("old")}};
        const auto before = hash;
        pn_SetObject(hash, QString(), QStringLiteral("a"));
        pn_SetObject(hash, QString(), QStringLiteral("b"));
        QCOMPARE(hash, before);
        QJsonObject json = {{QStringLiteral("k"), 1}};
        pn_SetObject(json, QJsonValue(QJsonValue::Undefined), QStringLiteral("k"));
        QCOMPARE(json, (QJsonObject{{QStringLiteral("k"), 1}}));
        std::map<int, std::shared_ptr<int>> shared = {{1, std::make_shared<int>(1)}};
        pn_SetObject(shared, nullptr, 1);
        QVERIFY(shared.at(1));
        QMap<int, int> numbers = {{1, 1}};
        pn_SetObject(numbers, std::nullopt, 1);
        QCOMPARE(numbers, (QMap<int, int>{{1, 1}}));
    }

    void anAbsentKeyStoresNothing()
    {
        QHash<QString, int> hash;
        pn_SetObject(hash, 1, QString());
        QVERIFY(hash.isEmpty());
        QMap<int, int> numbers;
        pn_SetObject(numbers, 1, std::nullopt);
        QVERIFY(numbers.isEmpty());
    }
};

QTEST_GUILESS_MAIN(DictionarySafeTest)
#include "DictionarySafeTest.moc"
