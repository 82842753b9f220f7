// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/KXError.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <cerrno>
#include <cstring>

class KXErrorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void isEmptyAtFirst()
    {
        const KXError error;
        QVERIFY(error.domain.isNull());
        QCOMPARE(error.code, 0);
        QVERIFY(error.userInfo.isEmpty());
    }

    void carriesTheSystemsTextOfAnErrno()
    {
        const KXError error = KXError::fromErrno(ENOENT);
        QCOMPARE(error.domain, kx::POSIXErrorDomain);
        QCOMPARE(error.code, ENOENT);
        QCOMPARE(error.localizedDescription, QString::fromLocal8Bit(std::strerror(ENOENT)));
        QVERIFY(error.userInfo.isEmpty());
    }

    void namesAnUnknownErrno()
    {
        const KXError error = KXError::fromErrno(99999);
        QCOMPARE(error.code, 99999);
        QVERIFY(!error.localizedDescription.isEmpty());
    }

    void comparesEveryField()
    {
        const KXError error{QStringLiteral("D"), -4, QStringLiteral("why"), {{QStringLiteral("k"), 1}}};
        QCOMPARE(error, KXError(error));
        KXError other = error;
        other.domain = QStringLiteral("E");
        QVERIFY(!(other == error));
        other = error;
        other.code = -3;
        QVERIFY(!(other == error));
        other = error;
        other.localizedDescription = QStringLiteral("because");
        QVERIFY(!(other == error));
        other = error;
        other.userInfo.clear();
        QVERIFY(!(other == error));
    }

    void describesItselfInOneLine()
    {
        const KXError error{QStringLiteral("D"), -4, QStringLiteral("why"), {{QStringLiteral("k"), 1}}};
        QCOMPARE(kx::describe(error), QStringLiteral("Error Domain=D Code=-4 \"why\""));
    }
};

QTEST_GUILESS_MAIN(KXErrorTest)
#include "KXErrorTest.moc"
