// SPDX-License-Identifier: MIT
#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace {

QString fileText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class KXLoggerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<QTemporaryDir>();
    }

    void writesAllFiftyLinesWithTheFiftieth()
    {
        KXLogger logger;
        logger.setLogBaseDirectory(base());
        for (int i = 0; i < 49; ++i)
            logger.writeLog(0, QStringLiteral("line %1").arg(i));
        QCOMPARE(logger.memoryLogs().size(), 49);
        QVERIFY(!QDir(base()).exists());
        logger.writeLog(0, QStringLiteral("line 49"));
        QTRY_COMPARE(fileText(logger.logPath()).count(u'\n'), 50);
        QCOMPARE(logger.memoryLogs(), QStringList());
    }

    void savesWithAMarker()
    {
        KXLogger logger;
        logger.setLogBaseDirectory(base());
        logger.save();
        QCOMPARE(fileText(logger.logPath()), QStringLiteral("force eof\n"));
    }

private:
    [[nodiscard]] QString base() const { return m_directory->filePath(QStringLiteral("logs")); }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(KXLoggerTest)
#include "KXLoggerTest.moc"
