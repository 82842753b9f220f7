// SPDX-License-Identifier: MIT
// What systems get that have no files of their own.
#include <KXFoundation/Platform/Core/MachineIdentity.h>
#include <KXFoundation/Platform/Core/MediaDuration.h>
#include <KXFoundation/Platform/Core/NetworkInterfaces.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

class UnsupportedPlatformTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void tellsNothingAboutTheMachine()
    {
        QVERIFY(kx::hardwareUuid().isNull());
        QVERIFY(kx::hardwareSerialNumber().isNull());
        QVERIFY(kx::processorBrand().isNull());
    }

    void takesTheUserFromTheEnvironment()
    {
        qputenv("USER", "alice");
        QCOMPARE(kx::loginName(), QStringLiteral("alice"));
        qunsetenv("USER");
        qputenv("USERNAME", "bob");
        QCOMPARE(kx::loginName(), QStringLiteral("bob"));
    }

    void hasNoNetwork()
    {
        const auto link = kx::linkAddress(QStringLiteral("lo"));
        QVERIFY(link == decltype(link)(kx::LinkFailure::NoInterface));
        QVERIFY(!kx::ipV4Address(QStringLiteral("lo")));
        QVERIFY(kx::primaryInterface().isNull());
    }

    void knowsNoDuration() { QVERIFY(!kx::mediaDurationInSeconds(QStringLiteral("clip.mp4"))); }
};

QTEST_GUILESS_MAIN(UnsupportedPlatformTest)
#include "UnsupportedPlatformTest.moc"
