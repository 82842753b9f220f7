// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/LoadErrors.h>

#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtTest/QTest>

class LoadErrorsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void translatesTheNumbersOfTheEngine_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<qint64>("code");
        const auto row = [](const char *name, int number, qint64 code) { QTest::newRow(name) << number << code; };
        row("host not found", -105, kx::URLErrorCannotFindHost);
        row("first error about a certificate", -200, kx::URLErrorServerCertificateUntrusted);
        row("certificate of another host", -202, kx::URLErrorServerCertificateUntrusted);
        row("last error about a certificate", -299, kx::URLErrorServerCertificateUntrusted);
        row("no error about a certificate", -300, kx::URLErrorUnsupportedURL);
        row("unknown", -199, kx::URLErrorUnknown);
        row("of no kind", 7, kx::URLErrorUnknown);
    }
    void translatesTheNumbersOfTheEngine()
    {
        QFETCH(const int, number);
        QFETCH(const qint64, code);
        const QUrl url(QStringLiteral("https://h/ü"));
        const KXError error = kx::networkError(number, url);
        QCOMPARE(error.domain, kx::URLErrorDomain);
        QCOMPARE(error.code, code);
        QVERIFY(!error.localizedDescription.isEmpty());
        QCOMPARE(error.userInfo.value(kx::FailingURLStringKey).toString(), QStringLiteral("https://h/%C3%BC"));
    }
};

QTEST_GUILESS_MAIN(LoadErrorsTest)
#include "LoadErrorsTest.moc"
