// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/SchemeRegistration.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

class SchemeRegistrationTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void knowsWhoseASchemeIs_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("mayBeCustom");
        QTest::addColumn<bool>("isPageOfTheEngine");
        for (const char *name : {"about", "blob", "chrome", "data", "file", "filesystem", "http", "https", "javascript",
                 "qrc", "view-source"})
            QTest::newRow(name) << QByteArray(name) << false << true;
        // The engine's too, but no documents come from there.
        for (const char *name :
            {"chrome-devtools", "chrome-error", "content", "devtools", "ftp", "mailto", "ws", "wss"})
            QTest::newRow(name) << QByteArray(name) << false << false;
        for (const char *name : {"clip", "a", "x-y+z.1", "https2", "abouts"})
            QTest::newRow(name) << QByteArray(name) << true << false;
        for (const char *name : {"", "1a", "a b", "a:", "-a", "\xC3\xA9"})
            QTest::addRow("no scheme: '%s'", name) << QByteArray(name) << false << false;
    }
    void knowsWhoseASchemeIs()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const bool, mayBeCustom);
        QFETCH(const bool, isPageOfTheEngine);
        for (const QByteArray &spelling : {name, name.toUpper()}) {
            QCOMPARE(kx::mayBeCustomScheme(spelling), mayBeCustom);
            QCOMPARE(kx::isLoadedByTheEngine(spelling), isPageOfTheEngine);
        }
    }
};

QTEST_GUILESS_MAIN(SchemeRegistrationTest)
#include "SchemeRegistrationTest.moc"
