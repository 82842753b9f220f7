// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

class KXUtilLogDirectoriesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->path()));
        KXUtil::setApplicationGroup(QStringLiteral("com.example.player"));
    }

    void liesInTheGroupsDirectory()
    {
        QCOMPARE(KXUtil::applicationGroup(), QStringLiteral("com.example.player"));
        QCOMPARE(KXUtil::logBaseDirPath(), below(u"/com.example.player/Logs"));
        QVERIFY(QDir(m_data->path()).isEmpty()); // the base alone is not made
    }

    void makesTheDirectoryOfEachProgram()
    {
        const QString main = below(u"/com.example.player/Logs/Main");
        const QString daemon = below(u"/com.example.player/Logs/Deamon");
        QCOMPARE(KXUtil::mainLogDirPath(), main);
        QVERIFY(QDir(main).exists());
        QVERIFY(!QDir(daemon).exists());
        QCOMPARE(KXUtil::deamonLogDirPath(), daemon);
        QVERIFY(QDir(daemon).exists());
    }

    void leavesWhatIsThere()
    {
        QFile log(QString(KXUtil::mainLogDirPath() + u"/log"));
        QVERIFY(log.open(QIODevice::WriteOnly));
        QVERIFY(!KXUtil::mainLogDirPath().isNull());
        QVERIFY(log.exists());
    }

    void tellsThePathThatCannotBeMade()
    {
        qputenv("XDG_DATA_HOME", "/dev/null");
        QCOMPARE(KXUtil::mainLogDirPath(), QStringLiteral("/dev/null/com.example.player/Logs/Main"));
        QVERIFY(!QFile::exists(KXUtil::mainLogDirPath()));
    }

    void hasNoneWithoutAGroup_data()
    {
        QTest::addColumn<QString>("group");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << QStringLiteral("");
    }
    void hasNoneWithoutAGroup()
    {
        QFETCH(const QString, group);
        const QTemporaryDir workingDirectory;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(workingDirectory.path()));
        KXUtil::setApplicationGroup(group);
        const QString paths[] = {KXUtil::logBaseDirPath(), KXUtil::mainLogDirPath(), KXUtil::deamonLogDirPath()};
        QVERIFY(QDir::setCurrent(before));
        for (const QString &path : paths)
            QVERIFY(path.isNull());
        QVERIFY(QDir(workingDirectory.path()).isEmpty());
        QVERIFY(QDir(m_data->path()).isEmpty());
    }

private:
    [[nodiscard]] QString below(QStringView path) const { return m_data->path() + path; }

    std::unique_ptr<QTemporaryDir> m_data;
};

QTEST_GUILESS_MAIN(KXUtilLogDirectoriesTest)
#include "KXUtilLogDirectoriesTest.moc"
