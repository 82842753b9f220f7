// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>
#include <KXFoundation/Util/ProcessorKind.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

class KXUtilMachineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_home = std::make_unique<QTemporaryDir>();
        KXUtil::setNetworkInterface(QStringLiteral("lo"));
    }

    // The code of this moment.

    void joinsAddressSerialNumberSaltAndUser()
    {
        const QString serial = KXUtil::hardwareSerialNumber();
        const QString numbers =
            serial.isEmpty() ? QStringLiteral("000000000000#") : QString(u"000000000000#" + serial + u'#');
        QCOMPARE(KXUtil::machineCodeWithSalt(), QString(numbers + u'~' + user()));
        QCOMPARE(KXUtil::machineCodeWithSalt(QStringLiteral("x")), QString(numbers + u"x~" + user()));
        QCOMPARE(KXUtil::machineCodeWithSalt(QStringLiteral("")), QString(numbers + u'~' + user()));
        QCOMPARE(KXUtil::machineCodeWithSalt(QStringLiteral("~#é")), QString(numbers + u"~#é~" + user()));
    }

    void takesAFailureForAnAddress()
    {
        KXUtil::setNetworkInterface(QStringLiteral("kx-missing0"));
        QVERIFY(KXUtil::machineCodeWithSalt().startsWith(QLatin1String("if_nametoindex failure#")));
    }

    // The kept code.

    void keepsTheFirstCode()
    {
        const QString first = codeOf({}, QStringLiteral("lo"));
        QCOMPARE(first, KXUtil::machineCodeWithSalt());
        QCOMPARE(codeOf({}, QStringLiteral("kx-missing0")), first);
    }

    void keepsTheCodeOfEachOrganizationInItsSettings()
    {
        const QString code = codeOf(QStringLiteral("Example"), QStringLiteral("lo"));
        QCOMPARE(code, KXUtil::machineCodeWithSalt());
        QCOMPARE(settingsOf(u"Example/util_child.conf").value(QStringLiteral("__mcode__")).toString(), code);
        QVERIFY(!QFile::exists(m_home->filePath(QStringLiteral("KXFoundation"))));
        QVERIFY(codeOf(QStringLiteral("Other"), QStringLiteral("kx-missing0")) != code);
    }

    void keepsTheCodeInAFileOfItsOwnWithoutAnOrganization()
    {
        const QString code = codeOf({}, QStringLiteral("lo"));
        QCOMPARE(settingsOf(u"KXFoundation/util_child.ini").value(QStringLiteral("__mcode__")).toString(), code);
    }

    void prefersTheKeptCode_data()
    {
        QTest::addColumn<QString>("kept");
        QTest::newRow("another machine's") << QStringLiteral("0A1B2C3D4E5F#C02ABCDEFGH1#~alice");
        QTest::newRow("special characters") << QStringLiteral("a, b; \"c\" = é % \\ @x");
        QTest::newRow("empty") << QStringLiteral("");
    }
    void prefersTheKeptCode()
    {
        QFETCH(const QString, kept);
        settingsOf(u"KXFoundation/util_child.ini").setValue(QStringLiteral("__mcode__"), kept);
        QCOMPARE(codeOf({}, QStringLiteral("lo")), kept);
        QCOMPARE(settingsOf(u"KXFoundation/util_child.ini").value(QStringLiteral("__mcode__")).toString(), kept);
    }

    // Not a text, as somebody's change by hand may leave it.
    void makesACodeAnewInPlaceOfWhatIsNone_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("a list") << QByteArray("__mcode__=a, b");
        QTest::newRow("an invalid value") << QByteArray("__mcode__=@Invalid()");
    }
    void makesACodeAnewInPlaceOfWhatIsNone()
    {
        QFETCH(const QByteArray, line);
        QVERIFY(QDir(m_home->path()).mkdir(QStringLiteral("KXFoundation")));
        QFile file(m_home->filePath(QStringLiteral("KXFoundation/util_child.ini")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[General]\n" + line + '\n') > 0);
        file.close();
        const QString code = codeOf({}, QStringLiteral("lo"));
        QCOMPARE(code, KXUtil::machineCodeWithSalt());
        QCOMPARE(codeOf({}, QStringLiteral("kx-missing0")), code);
    }

    void givesTheCodeThatItCannotKeep()
    {
        QFile(m_home->filePath(QStringLiteral("KXFoundation"))).open(QIODevice::WriteOnly); // in the directory's place
        QCOMPARE(codeOf({}, QStringLiteral("lo")), KXUtil::machineCodeWithSalt());
    }

    void givesAllThreadsTheSameCode()
    {
        QCOMPARE(codeOf({}, QStringLiteral("lo"), QStringLiteral("8")), KXUtil::machineCodeWithSalt());
    }

    // The processor.

    void tellsThePlatformOfAProcessor_data()
    {
        QTest::addColumn<QString>("brand");
        QTest::addColumn<QString>("platform");
        QTest::newRow("Intel") << QStringLiteral("Intel(R) Core(TM) i7-8750H CPU @ 2.20GHz") << QStringLiteral("3");
        QTest::newRow("Intel, not in front") << QStringLiteral("Genuine Intel(R) CPU") << QStringLiteral("3");
        QTest::newRow("other case") << QStringLiteral("GenuineINTEL") << QStringLiteral("4");
        QTest::newRow("another maker's") << QStringLiteral("AMD EPYC 7763") << QStringLiteral("4");
        QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("4");
        QTest::newRow("none") << QString() << QStringLiteral("4");
    }
    void tellsThePlatformOfAProcessor()
    {
        QFETCH(const QString, brand);
        QFETCH(const QString, platform);
        QCOMPARE(kx::processorKind(brand), platform);
    }

    void tellsThePlatformOfThisProcessor()
    {
        QFile file(QStringLiteral("/proc/cpuinfo"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        static const QRegularExpression intel(QStringLiteral("model name.*Intel"));
        const bool isIntel = intel.match(QString::fromUtf8(file.readAll())).hasMatch();
        QCOMPARE(KXUtil::macCpuInfo(), isIntel ? QStringLiteral("3") : QStringLiteral("4"));
    }

    void tellsTheMachinesUuid()
    {
        const QString uuid = KXUtil::hardwareUUID();
        static const QRegularExpression form(QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        QVERIFY(uuid.isNull() || form.match(uuid).hasMatch());
        QVERIFY(!uuid.isNull() || !QFile::exists(QStringLiteral("/etc/machine-id")));
        QCOMPARE(KXUtil::hardwareUUID(), uuid);
    }

private:
    static QString user()
    {
        QProcess process;
        process.start(QStringLiteral("id"), {QStringLiteral("-un")});
        return process.waitForFinished() ? QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed()
                                         : QString();
    }

    // What a fresh process says whose settings are in this test's directory.
    [[nodiscard]] QString codeOf(
        const QString &organization, const QString &interfaceName, const QString &threads = QStringLiteral("1")) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home->path());
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(KX_UTIL_CHILD), {QStringLiteral("code"), threads, organization, interfaceName});
        if (!process.waitForFinished() || process.exitCode() != 0)
            return QStringLiteral("the child failed");
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    [[nodiscard]] QSettings settingsOf(QStringView file) const
    {
        return QSettings(m_home->filePath(file.toString()), QSettings::IniFormat);
    }

    std::unique_ptr<QTemporaryDir> m_home;
};

QTEST_GUILESS_MAIN(KXUtilMachineTest)
#include "KXUtilMachineTest.moc"
