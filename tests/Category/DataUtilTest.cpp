// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/DataUtil.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

class DataUtilTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    // The test suite of RFC 1321.
    void digests_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("digest");
        QTest::newRow("empty") << QByteArray("") << QStringLiteral("d41d8cd98f00b204e9800998ecf8427e");
        QTest::newRow("absent") << QByteArray() << QStringLiteral("d41d8cd98f00b204e9800998ecf8427e");
        QTest::newRow("a") << QByteArray("a") << QStringLiteral("0cc175b9c0f1b6a831c399e269772661");
        QTest::newRow("abc") << QByteArray("abc") << QStringLiteral("900150983cd24fb0d6963f7d28e17f72");
        QTest::newRow("digits") << QByteArray("1234567890").repeated(8)
                                << QStringLiteral("57edf4a22be3c955ac49da2e2107b67a");
        QTest::newRow("a NUL is data") << QByteArray("\0", 1) << QStringLiteral("93b885adfe0da089cdf634904fd59f71");
    }
    void digests()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const QString, digest);
        QCOMPARE(kx::md5Hash(data), digest);
    }
};

QTEST_GUILESS_MAIN(DataUtilTest)
#include "DataUtilTest.moc"
