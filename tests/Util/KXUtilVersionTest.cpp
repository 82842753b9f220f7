// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <array>

namespace {

struct Pair {
    const char16_t *version; // null: none
    const char16_t *with;
    int order;
};

constexpr std::array sameLength{
    Pair{u"1.2", u"1.2", 0},
    Pair{u"1.10", u"1.9", 1},
    Pair{u"1", u"2", -1},
    Pair{u"10", u"9", 1},
    Pair{u"1.2.3", u"1.2.4", -1},
    Pair{u"1.2.10", u"1.2.9", 1},
    Pair{u"2.0.0", u"1.9.9", 1},
    Pair{u"1.2.3.4", u"1.2.3.4", 0},
    Pair{u"1.2.3.4", u"1.2.3.10", -1},
    Pair{u"0.0", u"0.00", 0},
    Pair{u"01.2", u"1.2", 0},
    Pair{u"1.02", u"1.2", 0},
    Pair{u"1.002.3", u"1.2.3", 0},
    Pair{u"1.010", u"1.9", 1},
    Pair{u"1.2a", u"1.2b", -1},
    Pair{u"1.2", u"1.2a", -1},
    Pair{u"1.2A", u"1.2a", -1},
    Pair{u"1.2rc2", u"1.2rc10", -1},
    Pair{u"1.2rc10", u"1.2rc9", 1},
    Pair{u"1.2-3", u"1.2-10", -1},
    Pair{u"1.2 3", u"1.2 10", -1},
    Pair{u"1,2", u"1,10", -1},
    Pair{u"v1.2", u"v1.10", -1},
    Pair{u"a.b", u"a.b", 0},
    Pair{u"a", u"1", 1},
    Pair{u"1.x", u"1.9", 1},
    Pair{u"1.-2", u"1.-1", 1},
    Pair{u"é.1", u"e.1", 1},
    Pair{u"1.٢", u"1.٣", -1},
    Pair{u"", u"", 0},
    Pair{nullptr, u"", 0},
    Pair{nullptr, nullptr, 0},
    Pair{u"", u"1", -1},
    Pair{u".", u".", 0},
    Pair{u"1.", u"1.", 0},
    Pair{u"1.", u"1.0", -1},
    Pair{u".1", u".2", -1},
    Pair{u"99999999999.1", u"99999999998.1", 1},
    Pair{u"18446744073709551616.0", u"18446744073709551615.0", 1},
};

constexpr std::array mixedLength{
    Pair{u"1.2", u"1.2.0", -1}, Pair{u"1.3", u"1.2.9", -1}, Pair{u"2.0.1", u"1.9", 1}, Pair{u"1", u"1.0", -1},
    Pair{u"2", u"1.0", -1}, Pair{u"9", u"1.0.0.0", -1}, Pair{u"2.1", u"1.9.9", 1}, Pair{u"1.10.0", u"1.9", 1},
    Pair{u"1.2.3.4", u"1.2.3", 1}, Pair{u"1.2.9", u"1.2.4.0", -1}, Pair{u"1.3.3", u"1.2.4.0", 1},
    Pair{u"1.0.0.0", u"1.1", 1}, Pair{u"3.0", u"3.0.0.0.0", -1}, Pair{u"10.0.0", u"9.0", 1}, Pair{u"01.2.3", u"1.2", 1},
    Pair{u"1.2.3-beta", u"1.2", 1}, Pair{u"", u"1.2", -1}, Pair{nullptr, u"1.2", -1}, Pair{u"1.", u"1", 1},
    Pair{u"..", u".", 1}, Pair{u"1..0", u"1.0", 1}, Pair{u"1..0", u"1.0.0.0", -1}, Pair{u"a.b.c", u"0.0", 1},
    Pair{u"1a.0.0", u"1.0", 1}, Pair{u"2a.0", u"1.9.9", 1}, Pair{u"1.2a.0", u"1.10.0.0", -1},
    Pair{u"v2.0.0", u"1.0", -1}, Pair{u"-5.0.0", u"0.0", 1}, Pair{u"-5.0", u"1.0.0", -1}, Pair{u" 2.0.0", u"1.0", -1},
    Pair{u"٢.0.0", u"1.0", -1}, Pair{u"2147483646.0.0", u"2147483647.0", -1},
    Pair{u"2147483648.0.0", u"2147483647.0", 1}, // both are the largest number
    Pair{u"99999999999999999999.0", u"2147483647.0.0", -1}, Pair{u"4294967297.0", u"2.0.0", 1}, // not 1
};

QString text(const char16_t *units)
{
    return units ? QStringView(units).toString() : QString();
}

} // namespace

class KXUtilVersionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        KXUtil::setAppVersion({});
        KXUtil::setAppBuildNumber({});
    }

    void ordersVersions_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("with");
        QTest::addColumn<int>("order");
        const auto add = [](const char *kind, const auto &pairs) {
            for (const Pair &pair : pairs) {
                const QString version = text(pair.version);
                const QString with = text(pair.with);
                QTest::addRow("%s: '%s' and '%s'", kind, qPrintable(version), qPrintable(with))
                    << version << with << pair.order;
            }
        };
        add("same length", sameLength);
        add("mixed length", mixedLength);
    }
    void ordersVersions()
    {
        QFETCH(const QString, version);
        QFETCH(const QString, with);
        QFETCH(const int, order);
        QCOMPARE(KXUtil::versionCompare(version, with), order);
        QCOMPARE(KXUtil::versionCompare(with, version), -order);
    }

    // The versions of the program.

    void readsTheProgramsVersionOnce()
    {
        QCoreApplication::setApplicationVersion({});
        QVERIFY(KXUtil::appVersion().isNull());
        QCoreApplication::setApplicationVersion(QStringLiteral("6.2.1"));
        QCOMPARE(KXUtil::appVersion(), QStringLiteral("6.2.1"));
        QCoreApplication::setApplicationVersion(QStringLiteral("7.0"));
        QCOMPARE(KXUtil::appVersion(), QStringLiteral("6.2.1"));
    }

    void prefersTheVersionThatTheHostSets()
    {
        QCoreApplication::setApplicationVersion(QStringLiteral("6.2.1"));
        KXUtil::setAppVersion(QStringLiteral("5.0"));
        QCOMPARE(KXUtil::appVersion(), QStringLiteral("5.0"));
    }

    void joinsVersionAndBuildNumber()
    {
        KXUtil::setAppVersion(QStringLiteral("6.2.1"));
        KXUtil::setAppBuildNumber(QStringLiteral("1024"));
        QCOMPARE(KXUtil::appBuildNumber(), QStringLiteral("1024"));
        QCOMPARE(KXUtil::appFullVersion(), QStringLiteral("6.2.1.1024"));
    }

    void takesPercentSignsAsTheyAre()
    {
        KXUtil::setAppVersion(QStringLiteral("%@%d"));
        KXUtil::setAppBuildNumber(QStringLiteral("%1"));
        QCOMPARE(KXUtil::appFullVersion(), QStringLiteral("%@%d.%1"));
    }

    void hasNoBuildNumberOfItsOwn()
    {
        KXUtil::setAppVersion(QStringLiteral("6.2.1"));
        QVERIFY(KXUtil::appBuildNumber().isNull());
        QCOMPARE(KXUtil::appFullVersion(), QStringLiteral("6.2.1.(null)"));
    }
};

QTEST_GUILESS_MAIN(KXUtilVersionTest)
#include "KXUtilVersionTest.moc"
