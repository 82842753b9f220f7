// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/PrimaryInterface.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using kx::InterfaceTraits;

namespace {

const QByteArray heading = "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT   \n";

} // namespace

class PrimaryInterfaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void ranksInterfaces_data()
    {
        QTest::addColumn<InterfaceTraits>("better");
        QTest::addColumn<InterfaceTraits>("worse");
        using Name = QString;
        QTest::newRow("a route") << InterfaceTraits{Name(), 900, false, false, 9}
                                 << InterfaceTraits{Name(), {}, true, true, 1};
        QTest::newRow("the lower metric")
            << InterfaceTraits{Name(), 100, false, false, 9} << InterfaceTraits{Name(), 600, true, true, 1};
        QTest::newRow("metric 0") << InterfaceTraits{Name(), 0, false, false, 9}
                                  << InterfaceTraits{Name(), 1, true, true, 1};
        QTest::newRow("a device") << InterfaceTraits{Name(), {}, true, false, 9}
                                  << InterfaceTraits{Name(), {}, false, true, 1};
        QTest::newRow("up") << InterfaceTraits{Name(), {}, true, true, 9}
                            << InterfaceTraits{Name(), {}, true, false, 1};
        QTest::newRow("the first") << InterfaceTraits{Name(), {}, true, true, 2}
                                   << InterfaceTraits{Name(), {}, true, true, 3};
    }
    void ranksInterfaces()
    {
        QFETCH(const InterfaceTraits, better);
        QFETCH(const InterfaceTraits, worse);
        QVERIFY(kx::isBetterPrimary(better, worse));
        QVERIFY(!kx::isBetterPrimary(worse, better));
        QVERIFY(!kx::isBetterPrimary(better, better));
    }

    void readsTheMetricOfADefaultRoute_data()
    {
        QTest::addColumn<QByteArray>("routes");
        QTest::addColumn<int>("metric"); // -1: none
        QTest::newRow("nothing") << QByteArray() << -1;
        QTest::newRow("heading alone") << heading << -1;
        QTest::newRow("default") << QByteArray("eth0\t00000000\t010200C0\t0003\t0\t0\t100\t00000000\t0\t0\t0   \n")
                                 << 100;
        QTest::newRow("no line end") << QByteArray("eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000000\t0\t0\t0") << 0;
        QTest::newRow("another interface's")
            << QByteArray("eth1\t00000000\t010200C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n") << -1;
        QTest::newRow("a network's") << QByteArray("eth0\t000200C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n")
                                     << -1;
        QTest::newRow("half of the world")
            << QByteArray("eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000080\t0\t0\t0\n") << -1;
        QTest::newRow("down") << QByteArray("eth0\t00000000\t010200C0\t0002\t0\t0\t100\t00000000\t0\t0\t0\n") << -1;
        QTest::newRow("unreachable") << QByteArray("eth0\t00000000\t00000000\t0201\t0\t0\t1\t00000000\t0\t0\t0\n")
                                     << -1;
        QTest::newRow("the lowest of two")
            << QByteArray("eth0\t00000000\t010200C0\t0003\t0\t0\t600\t00000000\t0\t0\t0\n"
                          "eth0\t00000000\t020200C0\t0003\t0\t0\t20\t00000000\t0\t0\t0\n")
            << 20;
        QTest::newRow("cut") << QByteArray("eth0\t00000000\t010200C0\t0003\t0\t0\t600\n") << -1;
    }
    void readsTheMetricOfADefaultRoute()
    {
        QFETCH(const QByteArray, routes);
        QFETCH(const int, metric);
        for (const QByteArray &table : {routes, QByteArray(heading + routes)}) {
            const auto found = kx::defaultRouteMetric(table, QStringLiteral("eth0"));
            QCOMPARE(found ? int(*found) : -1, metric);
        }
    }
};

QTEST_GUILESS_MAIN(PrimaryInterfaceTest)
#include "PrimaryInterfaceTest.moc"
