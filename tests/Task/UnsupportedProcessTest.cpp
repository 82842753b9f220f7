// SPDX-License-Identifier: MIT
// The answers on a system whose processes the library does not know, compiled into this program.
#include <KXFoundation/Platform/Core/ChildProcessHandle.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <cerrno>

class UnsupportedProcessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void startsNothingAndSaysSo()
    {
        int errorNumber = 0;
        QVERIFY(!kx::ChildProcessHandle::spawn({"/bin/true", {}, {}}, errorNumber));
        QCOMPARE(errorNumber, ENOSYS);
    }
};

QTEST_GUILESS_MAIN(UnsupportedProcessTest)
#include "UnsupportedProcessTest.moc"
