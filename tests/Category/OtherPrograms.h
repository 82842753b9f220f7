// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtGui/QImage>

#include <cstdlib>

// What programs that have nothing to do with Qt say about image files.
namespace kx::test {

/// What a program prints, standard error included; "failed" with that when it fails.
inline QByteArray printed(const char *program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QString::fromLatin1(program), arguments);
    const bool isDone = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit;
    const QByteArray output = process.readAll();
    return isDone && process.exitCode() == 0 ? output : QByteArray("failed: " + output);
}

inline QByteArray mimeType(const QString &path)
{
    return printed("file", {QStringLiteral("--brief"), QStringLiteral("--mime-type"), path}).trimmed();
}

/// The pixels of the first picture as ffmpeg reads them, RGBA8888 or, when `isDeep`, RGBA64. Null when there are not as
/// many as the size says.
inline QImage pixelsByFfmpeg(const QString &path, const QSize &size, bool isDeep = false)
{
    const QString format = isDeep ? QStringLiteral("rgba64le") : QStringLiteral("rgba");
    const QByteArray bytes = printed("ffmpeg",
        {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), path, QStringLiteral("-frames:v"),
            QStringLiteral("1"), QStringLiteral("-f"), QStringLiteral("rawvideo"), QStringLiteral("-pix_fmt"), format,
            QStringLiteral("-")});
    const qsizetype bytesPerLine = qsizetype(size.width()) * (isDeep ? 8 : 4);
    if (bytes.size() != bytesPerLine * size.height())
        return {};
    return QImage(reinterpret_cast<const uchar *>(bytes.constData()), size.width(), size.height(), bytesPerLine,
        isDeep ? QImage::Format_RGBA64 : QImage::Format_RGBA8888)
        .copy();
}

/// The first page as poppler shows it, a point being a pixel.
inline QImage pageByPoppler(const QString &path)
{
    const QString prefix = path + QStringLiteral(".page");
    printed("pdftoppm",
        {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-png"), QStringLiteral("-singlefile"), path,
            prefix});
    return QImage(QString(prefix + QStringLiteral(".png")));
}

/// The first picture in a PDF file, with the mask that goes with it if there is one, as poppler takes them out.
inline QImage pictureByPoppler(const QString &path)
{
    const QString maskFile = path + QStringLiteral("-001.png");
    QFile::remove(maskFile);
    printed("pdfimages", {QStringLiteral("-png"), path, path});
    QImage picture = QImage(QString(path + QStringLiteral("-000.png"))).convertToFormat(QImage::Format_ARGB32);
    const QImage mask(maskFile);
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            QColor color = picture.pixelColor(x, y);
            // Alphas, or bits that leave out what is set.
            color.setAlpha(mask.depth() == 1 ? 255 - qGray(mask.pixel(x, y)) : qGray(mask.pixel(x, y)));
            picture.setPixelColor(x, y, color);
        }
    }
    return picture;
}

/// The largest difference between channels of the same pixel; 1000 when the sizes differ. Transparent pixels are equal.
inline int largestDifference(const QImage &a, const QImage &b)
{
    if (a.size() != b.size() || a.isNull())
        return 1000;
    const QImage left = a.convertToFormat(QImage::Format_RGBA8888);
    const QImage right = b.convertToFormat(QImage::Format_RGBA8888);
    int largest = 0;
    for (int y = 0; y < left.height(); ++y) {
        for (int x = 0; x < left.width(); ++x) {
            const uchar *const p = left.constScanLine(y) + qsizetype(x) * 4;
            const uchar *const q = right.constScanLine(y) + qsizetype(x) * 4;
            for (int channel = p[3] == 0 && q[3] == 0 ? 4 : 0; channel < 4; ++channel)
                largest = qMax(largest, std::abs(p[channel] - q[channel]));
        }
    }
    return largest;
}

} // namespace kx::test
