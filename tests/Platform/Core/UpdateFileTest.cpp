// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/UpdateFile.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

class UpdateFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_directory = std::make_unique<QTemporaryDir>();
    }

    void neverMakesAMissingFile()
    {
        QVERIFY(!kx::UpdateFile::open(path()));
        QVERIFY(!QFile::exists(path()));
        QVERIFY(!kx::UpdateFile::open(QString()));
        QVERIFY(!kx::UpdateFile::open(m_directory->path()));
    }

    void writesFromTheBeginningAndCutsNothing()
    {
        put("0123456789");
        const auto file = kx::UpdateFile::open(path());
        QVERIFY(file);
        QCOMPARE(file->offset(), 0U);
        QVERIFY(file->write("ab"));
        QVERIFY(file->write(QByteArrayView()));
        QVERIFY(file->write("c"));
        QVERIFY(file->synchronize());
        QCOMPARE(file->offset(), 3U);
        QCOMPARE(content(), QByteArray("abc3456789"));
    }

    void putsANewFileInThePlaceOfAnOldOne()
    {
        put("old");
        const auto old = kx::UpdateFile::open(path());
        const auto file = kx::UpdateFile::create(path());
        QVERIFY(old && file);
        QCOMPARE(content(), QByteArray());
        QVERIFY(old->write("into the old one"));
        QCOMPARE(content(), QByteArray());
        QVERIFY(file->write("new"));
        QCOMPARE(content(), QByteArray("new"));
    }

    void replacesALinkAndLeavesItsTarget()
    {
        put("target");
        const QString link = m_directory->filePath(QStringLiteral("link"));
        QVERIFY(QFile::link(path(), link));
        QVERIFY(kx::UpdateFile::create(link));
        QVERIFY(!QFileInfo(link).isSymLink());
        QCOMPARE(content(), QByteArray("target"));
    }

    void makesNoFileWhereNoneCanBe()
    {
        put("file");
        QVERIFY(!kx::UpdateFile::create(QString(path() + u"/below")));
        QVERIFY(!kx::UpdateFile::create(m_directory->path()));
        QVERIFY(!kx::UpdateFile::create(QString()));
    }

    void tellsWhatTheDiskDidNotTake()
    {
        const auto file = kx::UpdateFile::open(QStringLiteral("/dev/full"));
        QVERIFY(file);
        QVERIFY(!file->write("x"));
        QVERIFY(file->write(QByteArrayView()));
    }

private:
    [[nodiscard]] QString path() const { return m_directory->filePath(QStringLiteral("file")); }
    void put(const QByteArray &bytes) const
    {
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    [[nodiscard]] QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

QTEST_GUILESS_MAIN(UpdateFileTest)
#include "UpdateFileTest.moc"
