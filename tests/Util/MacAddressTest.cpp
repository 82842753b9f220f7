// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/MacAddress.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using kx::LinkAddress;
using kx::LinkFailure;
using kx::macAddressText;

class MacAddressTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void writesAddressesInUpperCase()
    {
        QCOMPARE(macAddressText(LinkAddress{0x0A, 0x1B, 0x2C, 0x3D, 0x4E, 0x5F}), QStringLiteral("0A1B2C3D4E5F"));
        QCOMPARE(macAddressText(LinkAddress{}), QStringLiteral("000000000000"));
        QCOMPARE(macAddressText(LinkAddress{0xFF, 0, 0x80, 0x7F, 9, 0xA0}), QStringLiteral("FF00807F09A0"));
    }

    void hasATextForEachFailure()
    {
        QCOMPARE(macAddressText(LinkFailure::NoInterface), QStringLiteral("if_nametoindex failure"));
        QCOMPARE(macAddressText(LinkFailure::NoSize), QStringLiteral("sysctl mgmtInfoBase failure"));
        QCOMPARE(macAddressText(LinkFailure::NoMemory), QStringLiteral("buffer allocation failure"));
        QCOMPARE(macAddressText(LinkFailure::NoContent), QStringLiteral("sysctl msgBuffer failure"));
    }
};

QTEST_GUILESS_MAIN(MacAddressTest)
#include "MacAddressTest.moc"
