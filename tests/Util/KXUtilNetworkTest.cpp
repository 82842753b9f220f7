// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QtEndian>
#include <QtTest/QTest>

#include <cstring>
#include <thread>
#include <vector>

class KXUtilNetworkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        KXUtil::setNetworkInterface({});
    }

    void asksForEn0UnlessTold()
    {
        QCOMPARE(KXUtil::networkInterface(), QStringLiteral("en0"));
        KXUtil::setNetworkInterface(QStringLiteral("lo"));
        QCOMPARE(KXUtil::networkInterface(), QStringLiteral("lo"));
        KXUtil::setNetworkInterface({});
        QCOMPARE(KXUtil::networkInterface(), QStringLiteral("en0"));
    }

    void tellsTheFailureInPlaceOfAnAddress_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << QStringLiteral("kx-missing0");
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("longer than any name") << QStringLiteral("kx-missing0").repeated(100);
    }
    void tellsTheFailureInPlaceOfAnAddress()
    {
        QFETCH(const QString, name);
        KXUtil::setNetworkInterface(name);
        QCOMPARE(KXUtil::macAddress(), QStringLiteral("if_nametoindex failure"));
        QCOMPARE(KXUtil::localIpV4(), 0U);
        QCOMPARE(KXUtil::localIpV4BigEndian(), 0U);
    }

    void tellsTheAddressOfThePrimaryInterface()
    {
        const QString name = KXUtil::primaryNetworkInterface();
        if (name.isNull())
            QSKIP("this machine has no network interface with an address");
        QFile file(QString(u"/sys/class/net/" + name + u"/address"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString expected = QString::fromLatin1(file.readAll().trimmed().replace(":", "").toUpper());
        KXUtil::setNetworkInterface(name);
        QCOMPARE(KXUtil::macAddress(), expected);
        static const QRegularExpression form(QStringLiteral("^[0-9A-F]{12}$"));
        QVERIFY(form.match(expected).hasMatch());
    }

    void looksAgainUntilThereIsAnAddress()
    {
        KXUtil::setNetworkInterface(QStringLiteral("kx-missing0"));
        QCOMPARE(KXUtil::localIpV4(), 0U);
        QCOMPARE(KXUtil::localIpV4(), 0U);
        KXUtil::setNetworkInterface(QStringLiteral("lo"));
        QCOMPARE(KXUtil::convertIpToString(KXUtil::localIpV4()), QStringLiteral("127.0.0.1"));
        QCOMPARE(KXUtil::convertIpToString(KXUtil::localIpV4()), QStringLiteral("127.0.0.1"));
    }

    void reversesTheBytesOfTheAddress()
    {
        KXUtil::setNetworkInterface(QStringLiteral("lo"));
        const quint32 address = KXUtil::localIpV4();
        QCOMPARE(qFromBigEndian(address), 0x7F000001U); // network byte order
        QCOMPARE(KXUtil::localIpV4BigEndian(), qbswap(address));
    }

    void writesAddressesWithDots_data()
    {
        QTest::addColumn<QByteArray>("bytes"); // as they lie in memory
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << QByteArray("\0\0\0\0", 4) << QStringLiteral("0.0.0.0");
        QTest::newRow("all ones") << QByteArray("\xFF\xFF\xFF\xFF") << QStringLiteral("255.255.255.255");
        QTest::newRow("this machine") << QByteArray("\x7F\0\0\1", 4) << QStringLiteral("127.0.0.1");
        QTest::newRow("one to four") << QByteArray("\1\2\3\4") << QStringLiteral("1.2.3.4");
        QTest::newRow("first byte zero") << QByteArray("\0\0\0\1", 4) << QStringLiteral("0.0.0.1");
        QTest::newRow("private") << QByteArray("\xC0\xA8\1\x64") << QStringLiteral("192.168.1.100");
    }
    void writesAddressesWithDots()
    {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, text);
        quint32 address = 0;
        QCOMPARE(bytes.size(), qsizetype(sizeof address));
        std::memcpy(&address, bytes.constData(), sizeof address);
        QCOMPARE(KXUtil::convertIpToString(address), text);
    }

    void mayBeAskedFromAnyThread()
    {
        const QStringList names{QStringLiteral("lo"), QStringLiteral("kx-missing0")};
        std::atomic<int> wrong = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&, i] {
                for (int round = 0; round < 50; ++round) {
                    KXUtil::setNetworkInterface(names[(i + round) % 2]);
                    const QString address = KXUtil::convertIpToString(KXUtil::localIpV4());
                    if (address != QLatin1String("127.0.0.1") && address != QLatin1String("0.0.0.0"))
                        ++wrong;
                    if (!names.contains(KXUtil::networkInterface()) || KXUtil::macAddress().isEmpty())
                        ++wrong;
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(wrong.load(), 0);
    }
};

QTEST_GUILESS_MAIN(KXUtilNetworkTest)
#include "KXUtilNetworkTest.moc"
