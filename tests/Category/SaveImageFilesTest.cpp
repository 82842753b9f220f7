// SPDX-License-Identifier: MIT
#include "OtherPrograms.h"
#include "PaintedImages.h"

#include <KXFoundation/Category/SaveImage.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <atomic>
#include <csignal>
#include <thread>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace kx::test;
using namespace Qt::StringLiterals;

// Which files appear, and which do not.
class SaveImageFilesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void saysThatNoFileCanBeCreated_data();
    void saysThatNoFileCanBeCreated();
    void leavesPipesAndFoldersAlone();
    void replacesTheFileThatIsThere();
    void followsALink();
    void takesAnyName_data();
    void takesAnyName();
    void nothingIsWrittenForNoImage_data();
    void nothingIsWrittenForNoImage();
    void tooLargeForTheType_data();
    void tooLargeForTheType();
    void aFullDiskKeepsTheEarlierFile_data();
    void aFullDiskKeepsTheEarlierFile();
    void worksOnManyThreadsAtOnce();

private:
    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }
    [[nodiscard]] QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    QTemporaryDir m_directory;
};

void SaveImageFilesTest::saysThatNoFileCanBeCreated_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("absent") << QString();
    QTest::newRow("empty") << u""_qs;
    QTest::newRow("no such folder") << u"missing/a.png"_qs;
    QTest::newRow("a file as folder") << u"file/a.png"_qs;
    QTest::newRow("a folder") << u"folder"_qs;
    QTest::newRow("a folder with an extension") << u"folder.pdf"_qs;
    QTest::newRow("NUL") << QString(u"a\0b.png"_qs);
    QTest::newRow("a folder that may not be written") << u"locked/a.png"_qs;
    QTest::newRow("a file that may not be written") << u"kept.png"_qs;
    QTest::newRow("resource") << u":/a.png"_qs;
}

void SaveImageFilesTest::saysThatNoFileCanBeCreated()
{
    QFETCH(const QString, name);
    const QDir directory(m_directory.path());
    write(u"file"_qs, "file");
    write(u"kept.png"_qs, "kept");
    QVERIFY(directory.mkpath(u"folder"_qs) && directory.mkpath(u"folder.pdf"_qs) && directory.mkpath(u"locked"_qs));
    QCOMPARE(::chmod(QFile::encodeName(path(u"kept.png"_qs)).constData(), 0444), 0);
    QCOMPARE(::chmod(QFile::encodeName(path(u"locked"_qs)).constData(), 0555), 0);
    QCOMPARE(::chmod(QFile::encodeName(m_directory.path()).constData(), 0777), 0);
    const QStringList before = directory.entryList();
    const QString file = name.isEmpty() || name.startsWith(u':') ? name : path(name);
    const bool isRoot = ::geteuid() == 0; // who may write everything
    QVERIFY(!isRoot || ::setresuid(65534, 65534, 0) == 0); // the real one is what access() goes by
    const bool created = kx::saveCGImageToFile(painted({8, 8}, QImage::Format_RGB32, smooth), file);
    QVERIFY(!isRoot || ::setresuid(0, 0, 0) == 0);
    QVERIFY(!created);
    QCOMPARE(directory.entryList(), before);
    QVERIFY(QFile::setPermissions(path(u"locked"_qs), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(QFile::setPermissions(path(u"kept.png"_qs), QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(content(u"kept.png"_qs), "kept");
}

void SaveImageFilesTest::leavesPipesAndFoldersAlone()
{
    const QString pipe = path(u"pipe.png"_qs);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!kx::saveCGImageToFile(painted({8, 8}, QImage::Format_RGB32, smooth), pipe));
    struct ::stat status { };
    QCOMPARE(::lstat(QFile::encodeName(pipe).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void SaveImageFilesTest::replacesTheFileThatIsThere()
{
    write(u"there.png"_qs, QByteArray(100000, 'x'));
    QVERIFY(QFile::setPermissions(path(u"there.png"_qs), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    QFile reader(path(u"there.png"_qs));
    QVERIFY(reader.open(QIODevice::ReadOnly));
    const QImage image = painted({8, 8}, QImage::Format_RGB32, smooth);
    QVERIFY(kx::saveCGImageToFile(image, path(u"there.png"_qs)));
    QCOMPARE(QImage(path(u"there.png"_qs)), image);
    QVERIFY(QFile::permissions(path(u"there.png"_qs)).testFlag(QFile::ReadGroup));
    QVERIFY(!QFile::permissions(path(u"there.png"_qs)).testFlag(QFile::ReadOther));
    QCOMPARE(reader.readAll(), QByteArray(100000, 'x')); // who has the old one open keeps it
}

void SaveImageFilesTest::followsALink()
{
    write(u"target.png"_qs, "old");
    QVERIFY(QFile::link(path(u"target.png"_qs), path(u"link.png"_qs)));
    QVERIFY(kx::saveCGImageToFile(painted({8, 8}, QImage::Format_RGB32, smooth), path(u"link.png"_qs)));
    QVERIFY(QFileInfo(path(u"link.png"_qs)).isSymLink());
    QCOMPARE(mimeType(path(u"target.png"_qs)), "image/png");
}

void SaveImageFilesTest::takesAnyName_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
        {"with space.jpg", "100%.jpg", "a#b?c.jpg", "file:a.jpg", "Größe 高清.jpg", "-i.jpg", "ß.JPG"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void SaveImageFilesTest::takesAnyName()
{
    QFETCH(const QString, name);
    QVERIFY(kx::saveCGImageToFile(painted({8, 8}, QImage::Format_RGB32, smooth), path(name)));
    QCOMPARE(mimeType(path(name)), "image/jpeg");
}

void SaveImageFilesTest::nothingIsWrittenForNoImage_data()
{
    QTest::addColumn<QString>("extension");
    for (const char *extension : {"png", "jpg", "tiff", "bmp", "gif", "pdf"})
        QTest::newRow(extension) << QString::fromLatin1(extension);
}

// The answer is that the file could be created, no more.
void SaveImageFilesTest::nothingIsWrittenForNoImage()
{
    QFETCH(const QString, extension);
    const QString fresh = u"fresh."_qs + extension;
    const QString earlier = u"earlier."_qs + extension;
    QVERIFY(kx::saveCGImageToFile(QImage(), path(fresh)));
    QVERIFY(!QFileInfo::exists(path(fresh)));
    write(earlier, "earlier");
    QVERIFY(kx::saveCGImageToFile(QImage(), path(earlier)));
    QCOMPARE(content(earlier), "earlier");
    QVERIFY(!kx::saveCGImageToFile(QImage(), path(QString(u"missing/"_qs + fresh))));
}

void SaveImageFilesTest::tooLargeForTheType_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("fits");
    QTest::newRow("gif, just not") << u"wide.gif"_qs << true;
    QTest::newRow("gif") << u"wider.gif"_qs << false;
    QTest::newRow("jpg, just not") << u"wide.jpg"_qs << true;
    QTest::newRow("jpg") << u"wider.jpg"_qs << false;
    QTest::newRow("png") << u"wider.png"_qs << true;
    QTest::newRow("tiff") << u"wider.tiff"_qs << true;
    QTest::newRow("bmp") << u"wider.bmp"_qs << true;
}

void SaveImageFilesTest::tooLargeForTheType()
{
    QFETCH(const QString, name);
    QFETCH(const bool, fits);
    QImage image(name.startsWith(u"wider") ? 65536 : name.endsWith(u"gif") ? 65535 : 65500, 2, QImage::Format_RGB32);
    image.fill(Qt::blue);
    if (!fits && name.endsWith(u"jpg"))
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Maximum supported image dimension"_qs));
    QVERIFY(kx::saveCGImageToFile(image, path(name)));
    QCOMPARE(QFileInfo::exists(path(name)), fits);
    if (fits)
        QCOMPARE_LE(largestDifference(pixelsByFfmpeg(path(name), image.size()), image), 2);
}

void SaveImageFilesTest::aFullDiskKeepsTheEarlierFile_data()
{
    nothingIsWrittenForNoImage_data();
}

// Files may not grow beyond a limit here, which is what a full disk comes to.
void SaveImageFilesTest::aFullDiskKeepsTheEarlierFile()
{
    QFETCH(const QString, extension);
    const QString name = u"full."_qs + extension;
    write(name, "earlier");
    const QStringList before = QDir(m_directory.path()).entryList();
    const QImage image = painted({300, 200}, QImage::Format_RGB32, smooth);
    struct ::rlimit limit { };
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    struct ::rlimit small = limit;
    small.rlim_cur = 100;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool isCreated = kx::saveCGImageToFile(image, path(name));
    const bool isRestored = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
    std::signal(SIGXFSZ, handler);
    QVERIFY(isRestored);
    QVERIFY(isCreated);
    QCOMPARE(content(name), "earlier");
    QCOMPARE(QDir(m_directory.path()).entryList(), before); // nothing half done either
}

void SaveImageFilesTest::worksOnManyThreadsAtOnce()
{
    const QImage image = painted({100, 80}, QImage::Format_ARGB32, translucent);
    std::vector<std::thread> threads;
    threads.reserve(12);
    std::atomic<int> created = 0;
    const QStringList extensions{u"png"_qs, u"jpg"_qs, u"tiff"_qs, u"bmp"_qs, u"gif"_qs, u"pdf"_qs};
    for (int i = 0; i < 12; ++i) {
        threads.emplace_back([&, i] {
            const QString name = QStringLiteral("thread%1.%2").arg(i).arg(extensions.at(i % extensions.size()));
            created += kx::saveCGImageToFile(image, path(name)) ? 1 : 0;
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(created, 12);
    for (int i = 0; i < 6; ++i) {
        const QString &extension = extensions.at(i);
        if (extension != u"pdf") // which tells its time
            QCOMPARE(content(QStringLiteral("thread%1.%2").arg(i).arg(extension)),
                content(QStringLiteral("thread%1.%2").arg(i + 6).arg(extension)));
        QVERIFY(QFileInfo(path(QStringLiteral("thread%1.%2").arg(i).arg(extension))).size() > 100);
    }
}

QTEST_MAIN(SaveImageFilesTest)
#include "SaveImageFilesTest.moc"
