// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/FileTree.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <system_error>

class FileTreeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<QTemporaryDir>();
    }

    void addsOneComponent()
    {
        QCOMPARE(kx::childPath(QStringLiteral("/a"), u"b"), QStringLiteral("/a/b"));
        QCOMPARE(kx::childPath(QStringLiteral("/a/"), u"b"), QStringLiteral("/a/b"));
        QCOMPARE(kx::childPath(QStringLiteral("/"), u"b"), QStringLiteral("/b"));
        QCOMPARE(kx::childPath(QString(), u"b"), QStringLiteral("b"));
    }

    void listsHiddenEntriesAndBrokenLinksToo()
    {
        QVERIFY(QDir().mkpath(path("folder/sub")));
        QVERIFY(QFile(path("folder/.hidden")).open(QIODevice::WriteOnly));
        QVERIFY(QFile(path("folder/größe")).open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(path("nowhere"), path("folder/link")));
        QStringList names = kx::entryNames(path("folder"));
        names.sort();
        QCOMPARE(names,
            (QStringList{
                QStringLiteral(".hidden"), QStringLiteral("größe"), QStringLiteral("link"), QStringLiteral("sub")}));
        QCOMPARE(kx::entryNames(path("missing")), QStringList());
        QCOMPARE(kx::entryNames(path("folder/größe")), QStringList());
        QCOMPARE(kx::entryNames(QString()), QStringList());
    }

    void seesALinkThatLeadsNowhere()
    {
        QVERIFY(QFile::link(path("nowhere"), path("link")));
        QVERIFY(kx::somethingExists(path("link")));
        QVERIFY(!kx::somethingExists(path("nowhere")));
        QVERIFY(!kx::fileExists(path("link")));
    }

    void findsWhatIsThere()
    {
        const QString odd = m_directory->path() + u"/:folder"; // Qt takes it for a resource where it stands alone
        QCOMPARE(kx::makeDirectories(odd), std::error_code());
        QVERIFY(QFile::link(odd, path("link")));
        const QString before = QDir::currentPath();
        QDir::setCurrent(m_directory->path());
        const bool found = kx::fileExists(QStringLiteral(":folder")) && kx::fileExists(QStringLiteral("link"));
        QDir::setCurrent(before);
        QVERIFY(found);
        QVERIFY(kx::fileExists(odd));
        QVERIFY(!kx::fileExists(path("missing")));
        QVERIFY(!kx::fileExists(path("link/missing")));
        QVERIFY(!kx::fileExists(QString(odd + QChar(0))));
        QVERIFY(!kx::fileExists(QString()));
        QVERIFY(!kx::fileExists(QStringLiteral(":/no-resource")));
    }

    void tellsTheTimeOfALinkItself()
    {
        QVERIFY(!kx::modificationTime(path("missing")));
        QFile target(path("target"));
        QVERIFY(target.open(QIODevice::WriteOnly));
        QVERIFY(target.setFileTime(QDateTime::fromSecsSinceEpoch(1000), QFileDevice::FileModificationTime));
        QVERIFY(QFile::link(path("target"), path("link")));
        QCOMPARE(std::chrono::system_clock::to_time_t(kx::modificationTime(path("target")).value()), 1000);
        QVERIFY(std::chrono::system_clock::to_time_t(kx::modificationTime(path("link")).value()) > 1000000);
    }

    void makesDirectoriesWithTheirParents()
    {
        QCOMPARE(kx::makeDirectories(path("a/b/c")), std::error_code());
        QCOMPARE(kx::makeDirectories(path("a/b/c")), std::error_code());
        QVERIFY(QFileInfo(path("a/b/c")).isDir());
        QVERIFY(QFile(path("file")).open(QIODevice::WriteOnly));
        QVERIFY(kx::makeDirectories(path("file")));
        QVERIFY(kx::makeDirectories(path("file/below")));
    }

    void removesLinksAndNeverWhatTheyLeadTo()
    {
        QVERIFY(QDir().mkpath(path("kept/sub")));
        QVERIFY(QDir().mkpath(path("gone/sub")));
        QVERIFY(QFile::link(path("kept"), path("gone/sub/link")));
        QVERIFY(QFile::link(path("kept"), path("link")));
        kx::removeTree(path("gone"));
        kx::removeTree(path("link"));
        kx::removeTree(path("missing"));
        QVERIFY(!kx::somethingExists(path("gone")) && !kx::somethingExists(path("link")));
        QVERIFY(QFileInfo(path("kept/sub")).isDir());
    }

    void removesALinkWhoseNameEndsWithSlashes()
    {
        QVERIFY(QDir().mkpath(path("kept/sub")));
        QVERIFY(QFile::link(path("kept"), path("link")));
        kx::removeTree(path("link//"));
        QVERIFY(!kx::somethingExists(path("link")));
        QVERIFY(QFileInfo(path("kept/sub")).isDir());
    }

    void knowsWhatCanNameAFile()
    {
        QVERIFY(kx::canNameAFile(QStringLiteral("a")));
        QVERIFY(kx::canNameAFile(QStringLiteral("/")));
        QVERIFY(!kx::canNameAFile(QString()));
        QVERIFY(!kx::canNameAFile(QStringLiteral("")));
        QVERIFY(!kx::canNameAFile(QString(QStringLiteral("a") + QChar(0))));
    }

    void removesNothingForANameThatWouldBeCut()
    {
        QVERIFY(QDir().mkpath(path("kept/sub")));
        kx::removeTree(QString(path("kept") + QChar(0) + u"off"));
        QVERIFY(QFileInfo(path("kept/sub")).isDir());
    }

    void seesDirectoriesThroughLinks()
    {
        QVERIFY(kx::isDirectory(m_directory->path()));
        QVERIFY(QFile::link(m_directory->path(), path("link")));
        QVERIFY(kx::isDirectory(path("link")));
        QVERIFY(!kx::isDirectory(path("missing")));
        QVERIFY(QFile(path("file")).open(QIODevice::WriteOnly));
        QVERIFY(!kx::isDirectory(path("file")));
        QVERIFY(!kx::isDirectory(QStringLiteral(":/qt-project.org"))); // only the file system counts
    }

    void tellsTheSpaceOfAVolume()
    {
        const auto space = kx::volumeSpace(m_directory->path());
        QVERIFY(space && space->totalInBytes > 0 && space->freeInBytes <= space->totalInBytes);
        QVERIFY(!kx::volumeSpace(path("missing")));
    }

private:
    [[nodiscard]] QString path(const char *name) const { return m_directory->filePath(QString::fromUtf8(name)); }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(FileTreeTest)
#include "FileTreeTest.moc"
