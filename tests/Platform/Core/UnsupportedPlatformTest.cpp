// SPDX-License-Identifier: MIT
// What systems get that have no files of their own.
#include <KXFoundation/Platform/Core/MachineIdentity.h>
#include <KXFoundation/Platform/Core/MediaDuration.h>
#include <KXFoundation/Platform/Core/NetworkInterfaces.h>
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCoreApplication>
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

    void hostsGetTheEmptyAnswers()
    {
        QVERIFY(KXUtil::hardwareUUID().isNull());
        QVERIFY(KXUtil::hardwareSerialNumber().isNull());
        QCOMPARE(KXUtil::macCpuInfo(), QStringLiteral("4"));
        KXUtil::setNetworkInterface(QStringLiteral("lo"));
        QCOMPARE(KXUtil::macAddress(), QStringLiteral("if_nametoindex failure"));
        QVERIFY(KXUtil::primaryNetworkInterface().isNull());
        QCOMPARE(KXUtil::localIpV4(), 0U);
        QCOMPARE(KXUtil::localIpV4BigEndian(), 0U);
        qputenv("USER", "alice");
        QCOMPARE(KXUtil::machineCodeWithSalt(QStringLiteral("x")), QStringLiteral("if_nametoindex failure#x~alice"));
        QCOMPARE(KXUtil::getVideoDuration(QUrl::fromLocalFile(QCoreApplication::applicationFilePath())), 0);
    }
};

QTEST_GUILESS_MAIN(UnsupportedPlatformTest)
#include "UnsupportedPlatformTest.moc"
