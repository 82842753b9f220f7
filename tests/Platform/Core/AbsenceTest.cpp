// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Absence.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <functional>
#include <memory>
#include <string_view>

using kx::isAbsent;

static_assert(std::is_same_v<kx::Maybe<int>, std::optional<int>>);
static_assert(std::is_same_v<kx::Maybe<QString>, QString>);
static_assert(std::is_same_v<kx::Maybe<QJsonValue>, QJsonValue>);
static_assert(std::is_same_v<kx::Maybe<std::optional<int>>, std::optional<int>>);
static_assert(std::is_same_v<kx::Maybe<std::shared_ptr<int>>, std::shared_ptr<int>>);
static_assert(std::is_same_v<kx::Maybe<int *>, int *>);
// Texts that can be made of a null pointer, which is not to say that they can be compared with one.
static_assert(std::is_same_v<kx::Maybe<std::string_view>, std::optional<std::string_view>>);
static_assert(std::is_same_v<kx::Maybe<QStringView>, std::optional<QStringView>>);

class AbsenceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void tellsAbsentFromEmpty()
    {
        QVERIFY(isAbsent(QString()));
        QVERIFY(!isAbsent(QStringLiteral("")));
        QVERIFY(isAbsent(QByteArray()));
        QVERIFY(!isAbsent(QByteArray("")));
        QVERIFY(isAbsent(QJsonValue(QJsonValue::Undefined)));
        QVERIFY(!isAbsent(QJsonValue(QJsonValue::Null)));
        QVERIFY(!isAbsent(QJsonValue(QString())));
        QVERIFY(isAbsent(QVariant()));
        QVERIFY(!isAbsent(QVariant(QString())));
    }

    void knowsEveryKindOfPointer()
    {
        int number = 0;
        QVERIFY(isAbsent(static_cast<int *>(nullptr)));
        QVERIFY(!isAbsent(&number));
        QVERIFY(isAbsent(std::shared_ptr<int>()));
        QVERIFY(!isAbsent(std::make_shared<int>(0)));
        QVERIFY(isAbsent(std::unique_ptr<int>()));
        QVERIFY(isAbsent(std::function<void()>()));
        QVERIFY(!isAbsent(std::function<void()>([] {})));
        auto object = std::make_unique<QObject>();
        const QPointer<QObject> watched = object.get();
        QVERIFY(!isAbsent(watched));
        object.reset();
        QVERIFY(isAbsent(watched));
    }

    void knowsOptionals()
    {
        QVERIFY(isAbsent(std::optional<int>()));
        QVERIFY(!isAbsent(std::optional<int>(0)));
        QVERIFY(!isAbsent(std::optional<QString>(QString()))); // it says that there is a value
    }

    void plainValuesAreNeverAbsent()
    {
        QVERIFY(!isAbsent(0));
        QVERIFY(!isAbsent(false));
        QVERIFY(!isAbsent(0.0));
        QVERIFY(!isAbsent(std::string()));
    }

    void makesAbsentValues()
    {
        QVERIFY(isAbsent(kx::Absence<QString>::absent()));
        QVERIFY(isAbsent(kx::Absence<QByteArray>::absent()));
        QVERIFY(isAbsent(kx::Absence<QJsonValue>::absent()));
        QVERIFY(isAbsent(kx::Absence<QVariant>::absent()));
        QVERIFY(isAbsent(kx::Absence<std::shared_ptr<int>>::absent()));
        QVERIFY(isAbsent(kx::Absence<std::optional<int>>::absent()));
    }
};

QTEST_GUILESS_MAIN(AbsenceTest)
#include "AbsenceTest.moc"
