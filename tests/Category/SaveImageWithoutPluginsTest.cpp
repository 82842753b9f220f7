// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/SaveImage.h>

#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

// An installation of Qt without its plugins for image formats.
class SaveImageWithoutPluginsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void onlyJpegCannotBeWritten_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<bool>("isWritten");
        for (const char *extension : {"png", "tiff", "bmp", "gif", "pdf"})
            QTest::newRow(extension) << QString::fromLatin1(extension) << true;
        QTest::newRow("jpg") << QStringLiteral("jpg") << false;
        QTest::newRow("jpeg") << QStringLiteral("jpeg") << false;
    }
    void onlyJpegCannotBeWritten()
    {
        QFETCH(const QString, extension);
        QFETCH(const bool, isWritten);
        const QString path = m_directory.filePath(QString(QStringLiteral("a.") + extension));
        QImage image(20, 10, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        QCOMPARE(kx::saveCGImageToFile(image, path), isWritten);
        QCOMPARE(QFileInfo(path).size() > 0, isWritten);
    }

private:
    QTemporaryDir m_directory;
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setLibraryPaths({});
    SaveImageWithoutPluginsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "SaveImageWithoutPluginsTest.moc"
