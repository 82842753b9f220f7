// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/FileManagerSandbox.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <cerrno>
#include <memory>

class FileManagerSandboxTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;

    [[nodiscard]] QString at(const char *path) const { return m_root->filePath(QString::fromUtf8(path)); }

    static void write(const QString &path)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("x"), 1);
    }

    static QStringList entries(const QString &path)
    {
        return QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_root = std::make_unique<QTemporaryDir>();
        QVERIFY(m_root->isValid());
        qputenv("XDG_DATA_HOME", QFile::encodeName(at("data")));
    }

    void makesADirectoryWithItsParents()
    {
        QVERIFY(!kx_mkdirP(at("a/b/中 c")));
        QVERIFY(QFileInfo(at("a/b/中 c")).isDir());
        QVERIFY(!kx_mkdirP(at("d/e///")));
        QVERIFY(QFileInfo(at("d/e")).isDir());
    }

    // The name of a directory among Qt's resources.
    void makesADirectoryWhoseNameBeginsWithAColon()
    {
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_root->path()));
        const bool failed = kx_mkdirP(QStringLiteral(":/qt-project.org")).has_value();
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(!failed);
        QVERIFY(QFileInfo(at("./:/qt-project.org")).isDir());
    }

    void keepsADirectoryThatIsThere()
    {
        QVERIFY(!kx_mkdirP(at("a")));
        write(at("a/file"));
        QVERIFY(!kx_mkdirP(at("a")));
        QCOMPARE(entries(at("a")), QStringList{QStringLiteral("file")});
    }

    void replacesAFileByAnEmptyDirectory()
    {
        write(at("a"));
        QVERIFY(!kx_mkdirP(at("a")));
        QVERIFY(QFileInfo(at("a")).isDir());
        QVERIFY(entries(at("a")).isEmpty());
    }

    void keepsALinkToADirectory()
    {
        QVERIFY(QDir().mkdir(at("target")));
        QVERIFY(QFile::link(at("target"), at("link")));
        QVERIFY(!kx_mkdirP(at("link")));
        QVERIFY(QFileInfo(at("link")).isSymLink());
    }

    void replacesALinkToAFileAndNotTheFile()
    {
        write(at("target"));
        QVERIFY(QFile::link(at("target"), at("link")));
        QVERIFY(!kx_mkdirP(at("link")));
        QVERIFY(!QFileInfo(at("link")).isSymLink());
        QVERIFY(QFileInfo(at("link")).isDir());
        QVERIFY(QFileInfo(at("target")).isFile());
    }

    void replacesALinkThatLeadsNowhere()
    {
        QVERIFY(QFile::link(at("nowhere"), at("link")));
        QVERIFY(!kx_mkdirP(at("link")));
        QVERIFY(!QFileInfo(at("link")).isSymLink());
        QVERIFY(QFileInfo(at("link")).isDir());
        QVERIFY(!QFileInfo::exists(at("nowhere")));
    }

    void reportsWhyADirectoryCannotBeMade()
    {
        write(at("file"));
        const std::optional<KXError> error = kx_mkdirP(at("file/below"));
        QVERIFY(error);
        QCOMPARE(error->domain, kx::POSIXErrorDomain);
        QCOMPARE(error->code, ENOTDIR);
        QVERIFY(!error->localizedDescription.isEmpty());
        QVERIFY(QFileInfo(at("file")).isFile()); // only what stands at the path itself is replaced
        QVERIFY(kx_rm_mkdirP(at("file/below")));
        const QString tooLong(300, u'n');
        QCOMPARE(kx_mkdirP(m_root->filePath(tooLong))->code, ENAMETOOLONG);
    }

    void takesNoAbsentPath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("absent") << QString();
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("a zero inside") << QString(u"cut" + QChar(0) + u"off");
    }
    void takesNoAbsentPath()
    {
        QFETCH(QString, path);
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_root->path()));
        QVERIFY(QDir().mkdir(QStringLiteral("cut")));
        write(QStringLiteral("cut/kept"));
        const std::optional<KXError> made = kx_mkdirP(path);
        const std::optional<KXError> remade = kx_rm_mkdirP(path);
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(made);
        QVERIFY(remade);
        QCOMPARE(made->code, EINVAL);
        QCOMPARE(entries(m_root->path()), QStringList{QStringLiteral("cut")});
        QCOMPARE(entries(at("cut")), QStringList{QStringLiteral("kept")});
    }

    void emptiesADirectory()
    {
        QVERIFY(!kx_mkdirP(at("a/.hidden/deep")));
        write(at("a/file"));
        write(at("a/.hidden/deep/file"));
        QVERIFY(!kx_rm_mkdirP(at("a")));
        QVERIFY(QFileInfo(at("a")).isDir());
        QVERIFY(entries(at("a")).isEmpty());
    }

    void makesADirectoryWhereThereWasNone()
    {
        QVERIFY(!kx_rm_mkdirP(at("a/b")));
        QVERIFY(QFileInfo(at("a/b")).isDir());
    }

    void removalDoesNotFollowLinks_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("a link inside") << QStringLiteral("dir");
        QTest::newRow("a link itself") << QStringLiteral("link");
        QTest::newRow("a link with a slash behind it") << QStringLiteral("link/");
        QTest::newRow("several slashes") << QStringLiteral("link//");
    }
    void removalDoesNotFollowLinks()
    {
        QFETCH(QString, path);
        QVERIFY(!kx_mkdirP(at("target")));
        write(at("target/kept"));
        QVERIFY(!kx_mkdirP(at("dir")));
        QVERIFY(QFile::link(at("target"), at("dir/inside")));
        QVERIFY(QFile::link(at("target"), at("link")));
        QVERIFY(!kx_rm_mkdirP(QString(m_root->path() + u'/' + path)));
        QCOMPARE(entries(at("target")), QStringList{QStringLiteral("kept")});
        QVERIFY(!QFileInfo(m_root->filePath(path)).isSymLink());
        QVERIFY(entries(m_root->filePath(path)).isEmpty());
    }

    void givesTheStandardDirectoryItself()
    {
        QVERIFY(!QFileInfo::exists(at("data")));
        QCOMPARE(kx_DirWithTypeWithPathComponent(QStandardPaths::GenericDataLocation, QString()), at("data"));
        QVERIFY(QFileInfo(at("data")).isDir());
        QCOMPARE(kx_DirWithTypeWithPathComponents(QStandardPaths::GenericDataLocation, {}), at("data"));
    }

    void hasNoDirectoryWhereTheSystemHasNone()
    {
        write(at("file"));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(at("file/none")));
        const QByteArray temporary = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(at("file")));
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("runtime directory"))); // of both
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("runtime directory")));
        const QString path = kx_DirWithTypeWithPathComponents(QStandardPaths::RuntimeLocation, {QStringLiteral("a")});
        qunsetenv("XDG_RUNTIME_DIR");
        if (temporary.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", temporary);
        QVERIFY(path.isNull());
    }

    void appendsComponents_data()
    {
        QTest::addColumn<QStringList>("components");
        QTest::addColumn<QString>("path");
        const auto s = [](const char *text) { return QString::fromLatin1(text); };
        QTest::newRow("one") << QStringList{s("Logs")} << s("data/Logs");
        QTest::newRow("in order") << QStringList{s("Logs"), s("Main")} << s("data/Logs/Main");
        QTest::newRow("one with several") << QStringList{s("a/b")} << s("data/a/b");
        QTest::newRow("slashes at the ends") << QStringList{s("/a/"), s("/b/")} << s("data/a/b");
        QTest::newRow("blank ones add nothing") << QStringList{s(""), s("a"), s("")} << s("data/a");
    }
    void appendsComponents()
    {
        QFETCH(QStringList, components);
        QFETCH(QString, path);
        const QString made = kx_DirWithTypeWithPathComponents(QStandardPaths::GenericDataLocation, components);
        QCOMPARE(made, m_root->filePath(path));
        QVERIFY(QFileInfo(made).isDir());
    }

    void appendsOneComponent()
    {
        const QString made =
            kx_DirWithTypeWithPathComponent(QStandardPaths::GenericDataLocation, QStringLiteral("Player"));
        QCOMPARE(made, at("data/Player"));
        QVERIFY(QFileInfo(made).isDir());
    }

    void givesNoneWhenTheDirectoryCannotBeMade()
    {
        write(at("data")); // the parent of what is asked for
        const QString made =
            kx_DirWithTypeWithPathComponent(QStandardPaths::GenericDataLocation, QStringLiteral("Player"));
        QVERIFY(made.isNull());
    }
};

QTEST_GUILESS_MAIN(FileManagerSandboxTest)
#include "FileManagerSandboxTest.moc"
