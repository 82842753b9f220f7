// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/MachineIdentity.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <unistd.h>

// The system's files are made below a directory of the test's own.
class MachineIdentityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_root = std::make_unique<QTemporaryDir>();
    }

    void hasNothingWhereNothingIsTold()
    {
        QVERIFY(kx::hardwareUuid(root()).isNull());
        QVERIFY(kx::hardwareSerialNumber(root()).isNull());
        QVERIFY(kx::processorBrand(root()).isNull());
    }

    void findsTheUuid_data()
    {
        QTest::addColumn<QByteArray>("firmware");
        QTest::addColumn<QByteArray>("machineId");
        QTest::addColumn<QString>("uuid");
        const QByteArray firmware = "4c4c4544-0042-3510-8052-b4c04f4e4d32\n";
        const QString firmwareUuid = QStringLiteral("4C4C4544-0042-3510-8052-B4C04F4E4D32");
        const QByteArray id = "0123456789abcdef0123456789abcdef\n";
        const QString idUuid = QStringLiteral("01234567-89AB-CDEF-0123-456789ABCDEF");
        QTest::newRow("firmware first") << firmware << id << firmwareUuid;
        QTest::newRow("firmware alone") << firmware << QByteArray() << firmwareUuid;
        QTest::newRow("upper case") << firmware.toUpper() << id << firmwareUuid;
        QTest::newRow("machine-id alone") << QByteArray() << id << idUuid;
        QTest::newRow("firmware of zeros") << QByteArray("00000000-0000-0000-0000-000000000000") << id << idUuid;
        QTest::newRow("firmware of ones") << QByteArray("FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF") << id << idUuid;
        QTest::newRow("no UUID") << QByteArray("Not Settable") << id << idUuid;
        QTest::newRow("machine-id not made yet") << QByteArray() << QByteArray("uninitialized\n") << QString();
        QTest::newRow("machine-id cut") << QByteArray() << QByteArray("0123456789abcdef\n") << QString();
        QTest::newRow("machine-id of zeros") << QByteArray() << QByteArray(32, '0') << QString();
        QTest::newRow("machine-id with more")
            << QByteArray() << QByteArray("0123456789abcdef0123456789abcdef 1\n") << QString();
        QTest::newRow("machine-id among other text")
            << QByteArray() << QByteArray("X=0123456789abcdef0123456789abcdef") << QString();
    }
    void findsTheUuid()
    {
        QFETCH(const QByteArray, firmware);
        QFETCH(const QByteArray, machineId);
        QFETCH(const QString, uuid);
        put("sys/class/dmi/id/product_uuid", firmware);
        put("etc/machine-id", machineId);
        QCOMPARE(kx::hardwareUuid(root()), uuid);
        QCOMPARE(kx::hardwareUuid(root()).isNull(), uuid.isNull());
    }

    void findsTheMachineIdOfTheMessageBus()
    {
        const QString uuid = QStringLiteral("01234567-89AB-CDEF-0123-456789ABCDEF");
        put("var/lib/dbus/machine-id", "0123456789abcdef0123456789abcdef\n");
        QCOMPARE(kx::hardwareUuid(root()), uuid);
        put("etc/machine-id", "uninitialized\n");
        QCOMPARE(kx::hardwareUuid(root()), uuid);
        put("etc/machine-id", "fedcba9876543210fedcba9876543210\n");
        QCOMPARE(kx::hardwareUuid(root()), QStringLiteral("FEDCBA98-7654-3210-FEDC-BA9876543210"));
    }

    void findsTheSerialNumber_data()
    {
        QTest::addColumn<QByteArray>("firmware");
        QTest::addColumn<QByteArray>("deviceTree");
        QTest::addColumn<QString>("number");
        const QByteArray treeText("10000000a1b2c3d4\0", 17);
        const QString treeNumber = QStringLiteral("10000000a1b2c3d4");
        QTest::newRow("firmware") << QByteArray("C02ABCDEFGH1\n") << QByteArray() << QStringLiteral("C02ABCDEFGH1");
        QTest::newRow("firmware first") << QByteArray("5XY-Z\n") << treeText << QStringLiteral("5XY-Z");
        QTest::newRow("spaces around") << QByteArray("  VMware-56 4d  \n") << treeText
                                       << QStringLiteral("VMware-56 4d");
        QTest::newRow("device tree") << QByteArray() << treeText << treeNumber;
        for (const char *filler : {"None", "Not Specified", "To Be Filled By O.E.M.", "Default string", "0", "00000000",
                 "System Serial Number", "   ", "unknown"})
            QTest::addRow("filler '%s'", filler) << QByteArray(filler) << treeText << treeNumber;
        QTest::newRow("fillers alone") << QByteArray("None\n") << QByteArray("\0", 1) << QString();
    }
    void findsTheSerialNumber()
    {
        QFETCH(const QByteArray, firmware);
        QFETCH(const QByteArray, deviceTree);
        QFETCH(const QString, number);
        put("sys/class/dmi/id/product_serial", firmware);
        put("proc/device-tree/serial-number", deviceTree);
        QCOMPARE(kx::hardwareSerialNumber(root()), number);
        QCOMPARE(kx::hardwareSerialNumber(root()).isNull(), number.isNull());
    }

    void findsTheBrandOfTheFirstProcessor_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("brand");
        const QString intel = QStringLiteral("Intel(R) Core(TM) i7 CPU : 2.20GHz");
        QTest::newRow("among others") << QByteArray(
            "processor\t: 0\nmodel\t\t: 158\nmodel name\t: Intel(R) Core(TM) i7 CPU "
            ": 2.20GHz\nflags : fpu\n\nprocessor : 1\nmodel name : Other\n")
                                      << intel;
        QTest::newRow("no line end") << QByteArray("model name : Intel(R) Core(TM) i7 CPU : 2.20GHz") << intel;
        QTest::newRow("none") << QByteArray("processor : 0\nBogoMIPS : 50.00\nCPU part : 0xd0c\n") << QString();
        QTest::newRow("another name") << QByteArray("my model name : x\n: y\n") << QString();
    }
    void findsTheBrandOfTheFirstProcessor()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const QString, brand);
        put("proc/cpuinfo", text);
        QCOMPARE(kx::processorBrand(root()), brand);
    }

    void isNotDrownedByAHugeFile()
    {
        put("etc/machine-id", QByteArray(50'000'000, 'a'));
        QVERIFY(kx::hardwareUuid(root()).isNull());
    }

    void knowsTheUser()
    {
        QProcess process;
        process.start(QStringLiteral("id"), {QStringLiteral("-un")});
        QVERIFY(process.waitForFinished());
        QCOMPARE(kx::loginName(), QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed());
    }

    // Somebody who is not root stays who they are.
    void takesTheEnvironmentsWordForAUserWithoutAnAccount()
    {
        const uid_t user = ::geteuid();
        const QString name = user == 0 ? QStringLiteral("guest") : kx::loginName();
        qputenv("LOGNAME", "guest");
        if (user == 0)
            QCOMPARE(::seteuid(2'000'000'000), 0);
        const QString found = kx::loginName();
        QCOMPARE(::seteuid(user), 0);
        qunsetenv("LOGNAME");
        QCOMPARE(found, name);
    }

private:
    [[nodiscard]] QString root() const { return m_root->path(); }
    void put(const char *name, const QByteArray &text) const
    {
        if (text.isNull())
            return;
        QFile file(m_root->filePath(QString::fromLatin1(name)));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }

    std::unique_ptr<QTemporaryDir> m_root;
};

QTEST_GUILESS_MAIN(MachineIdentityTest)
#include "MachineIdentityTest.moc"
