// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/ImageFile.h>

#include <KXFoundation/Platform/UI/ImageFiles/GifWriter.h>
#include <KXFoundation/Platform/UI/ImageFiles/TiffWriter.h>

#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QSaveFile>
#include <QtGui/QImageWriter>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>

namespace kx {

namespace {

// Deliberate: a text, not a number. Between 0 and 1.
QString lossyCompressionQuality()
{
    return QStringLiteral("0.5");
}

bool writeByQt(const QImage &image, QIODevice &device, const char *format, int quality = -1)
{
    QImageWriter writer(&device, format);
    writer.setQuality(quality);
    return writer.write(image);
}

bool writeJpeg(const QImage &image, QIODevice &device)
{
    return writeByQt(onWhite(image), device, "jpeg", qRound(100 * lossyCompressionQuality().toDouble()));
}

// One page of the image's size, a pixel being a point, with the pixels as they are.
bool writePdf(const QImage &image, QIODevice &device)
{
    QPdfWriter pdf(&device);
    pdf.setResolution(72);
    // Exactly: other policies take a standard size of paper where one is near.
    pdf.setPageSize(QPageSize(image.size(), QPageSize::Point, {}, QPageSize::ExactMatch));
    pdf.setPageMargins({});
    QPainter painter;
    if (!painter.begin(&pdf))
        return false;
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(image.rect(), image, image.rect());
    return painter.end();
}

bool write(const QImage &image, ImageFileType type, QIODevice &device)
{
    switch (type) {
    case ImageFileType::Png: return writeByQt(image, device, "png");
    case ImageFileType::Jpeg: return writeJpeg(image, device);
    case ImageFileType::Tiff: return writeTiff(image, device);
    case ImageFileType::Bmp: return writeByQt(onWhite(image), device, "bmp");
    case ImageFileType::Gif: return writeGif(image, device);
    case ImageFileType::Pdf: return writePdf(image, device);
    }
    return false;
}

// The JPEG writer alone is a plugin of Qt's.
bool canWrite(ImageFileType type)
{
    return type != ImageFileType::Jpeg || QImageWriter::supportedImageFormats().contains("jpeg");
}

// A QSaveFile would put its file in the place of a pipe or a device, too.
bool canStandAt(const QString &path)
{
    if (path.isEmpty() || path.contains(QChar::Null))
        return false;
    const QFileInfo present(path);
    return !present.exists() || present.isFile();
}

} // namespace

ImageFileType imageFileType(const QString &path)
{
    static const QHash<QString, ImageFileType> types{
        {QStringLiteral("jpg"), ImageFileType::Jpeg},
        {QStringLiteral("jpeg"), ImageFileType::Jpeg},
        {QStringLiteral("png"), ImageFileType::Png},
        {QStringLiteral("tiff"), ImageFileType::Tiff},
        {QStringLiteral("bmp"), ImageFileType::Bmp},
        {QStringLiteral("gif"), ImageFileType::Gif},
        {QStringLiteral("pdf"), ImageFileType::Pdf},
    };
    const QString name = QFileInfo(path).fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot < 1) // a dot in front hides the file and begins no extension
        return ImageFileType::Png;
    return types.value(name.sliced(dot + 1).toLower(), ImageFileType::Png);
}

QImage onWhite(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter(&result).drawImage(result.rect(), image, image.rect());
    return result;
}

bool saveImageFile(const QImage &image, const QString &path)
{
    const ImageFileType type = imageFileType(path);
    if (!canWrite(type) || !canStandAt(path))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // The last bytes leave the buffer before that, because commit() does not tell when they do not.
    if (!image.isNull() && write(image, type, file) && file.flush())
        file.commit();
    return true;
}

} // namespace kx
