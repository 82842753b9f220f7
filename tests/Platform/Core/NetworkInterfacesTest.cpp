// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/NetworkInterfaces.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QtEndian>
#include <QtNetwork/QHostAddress>
#include <QtNetwork/QNetworkInterface>
#include <QtTest/QTest>

#include <cstring>

using kx::LinkAddress;
using kx::LinkFailure;

// Held against what other parts of the system tell about the interfaces of this machine.
class NetworkInterfacesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void readsTheAddressOfEveryInterface()
    {
        const QStringList names = interfaces();
        QVERIFY(names.contains(QLatin1String("lo")));
        for (const QString &name : names) {
            const QByteArray bytes = addressOf(name);
            const auto result = kx::linkAddress(name);
            if (bytes.size() < 6) {
                QVERIFY(result == decltype(result)(LinkFailure::NoContent));
                continue;
            }
            LinkAddress expected;
            std::memcpy(expected.data(), bytes.constData(), expected.size());
            QVERIFY2(result == decltype(result)(expected), qPrintable(name));
        }
    }

    void knowsNoInterfaceOfAnotherName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << QStringLiteral("kx-missing0");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("other case") << QStringLiteral("LO");
        QTest::newRow("too long") << QStringLiteral("lo").repeated(50);
    }
    void knowsNoInterfaceOfAnotherName()
    {
        QFETCH(const QString, name);
        const auto result = kx::linkAddress(name);
        QVERIFY(result == decltype(result)(LinkFailure::NoInterface));
        QVERIFY(!kx::ipV4Address(name));
    }

    void readsTheFirstIpV4Address()
    {
        for (const QString &name : interfaces()) {
            std::optional<quint32> expected;
            for (const QNetworkAddressEntry &entry : QNetworkInterface::interfaceFromName(name).addressEntries()) {
                if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol) {
                    expected = qToBigEndian(entry.ip().toIPv4Address());
                    break;
                }
            }
            QVERIFY2(kx::ipV4Address(name) == expected, qPrintable(name));
        }
    }

    void namesAPrimaryInterfaceWithAnAddress()
    {
        const QString primary = kx::primaryInterface();
        QVERIFY(primary != QLatin1String("lo"));
        QStringList candidates;
        for (const QString &name : interfaces()) {
            const QByteArray bytes = addressOf(name);
            if (name != QLatin1String("lo") && bytes.size() == 6 && bytes != QByteArray(6, '\0'))
                candidates << name;
        }
        QCOMPARE(primary.isNull(), candidates.isEmpty());
        QVERIFY(primary.isNull() || candidates.contains(primary));
        QCOMPARE(kx::primaryInterface(), primary);
    }

    void leaksNoDescriptor()
    {
        const auto open = [] {
            return QDir(QStringLiteral("/proc/self/fd")).entryList(QDir::Files | QDir::System).size();
        };
        const auto before = open();
        for (int i = 0; i < 100; ++i) {
            const auto address = kx::linkAddress(QStringLiteral("lo"));
            QVERIFY(std::holds_alternative<LinkAddress>(address));
            QVERIFY(kx::ipV4Address(QStringLiteral("lo")));
            QVERIFY(kx::primaryInterface() != QLatin1String("lo"));
        }
        QCOMPARE(open(), before);
    }

private:
    static QStringList interfaces()
    {
        return QDir(QStringLiteral("/sys/class/net")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }
    static QByteArray addressOf(const QString &name)
    {
        QFile file(QString(u"/sys/class/net/" + name + u"/address"));
        return file.open(QIODevice::ReadOnly) ? QByteArray::fromHex(file.readAll().trimmed().replace(":", ""))
                                              : QByteArray();
    }
};

QTEST_GUILESS_MAIN(NetworkInterfacesTest)
#include "NetworkInterfacesTest.moc"
