// SPDX-License-Identifier: MIT
#include <KXFoundation/Util/KXUtil.h>
#include <KXFoundation/Util/KXUtilImage.h>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

// What the files hold is told in tests/Category/SaveImageTest.cpp.
class KXUtilImageTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void theExtensionSaysAsWhat_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("JPG") << QStringLiteral("a.JPG") << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("jpeg") << QStringLiteral("a.jpeg") << QByteArray("\xFF\xD8\xFF");
        QTest::newRow("none") << QStringLiteral("a") << QByteArray("\x89PNG");
        QTest::newRow("png") << QStringLiteral("a.png") << QByteArray("\x89PNG");
        QTest::newRow("tiff") << QStringLiteral("a.tiff")
                              << QByteArray(Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "II*" : "MM\0*", 3);
        QTest::newRow("tif") << QStringLiteral("a.tif") << QByteArray("\x89PNG");
        QTest::newRow("bmp") << QStringLiteral("a.bmp") << QByteArray("BM");
        QTest::newRow("gif") << QStringLiteral("a.gif") << QByteArray("GIF89a");
        QTest::newRow("pdf") << QStringLiteral("a.pdf") << QByteArray("%PDF-1.");
    }
    void theExtensionSaysAsWhat()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, start);
        QImage image(20, 10, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        QVERIFY(KXUtil::saveImageToFile(image, m_directory.filePath(name)));
        QFile file(m_directory.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.read(start.size()), start);
    }

    void saysThatNoFileCanBeCreated()
    {
        const QImage image(20, 10, QImage::Format_RGB32);
        QVERIFY(!KXUtil::saveImageToFile(image, m_directory.filePath(QStringLiteral("missing/a.png"))));
        QVERIFY(!KXUtil::saveImageToFile(image, m_directory.path()));
        QVERIFY(!KXUtil::saveImageToFile(image, QString()));
    }

private:
    QTemporaryDir m_directory;
};

QTEST_GUILESS_MAIN(KXUtilImageTest)
#include "KXUtilImageTest.moc"
