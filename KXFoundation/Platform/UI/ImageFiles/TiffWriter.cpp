// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/TiffWriter.h>

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtGui/QImage>

#include <limits>

namespace kx {

namespace {

// Byte order of the file: the machine's own, so that 16-bit samples can stay as they are.
constexpr auto byteOrder = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? QDataStream::LittleEndian : QDataStream::BigEndian;

struct Layout {
    QImage::Format format;
    quint16 samplesPerPixel;
    quint16 bitsPerSample;

    [[nodiscard]] bool hasAlpha() const { return samplesPerPixel == 4; }
    [[nodiscard]] qsizetype bytesPerRow(int width) const
    {
        return qsizetype(width) * samplesPerPixel * bitsPerSample / 8;
    }
};

Layout layoutOf(const QImage &image)
{
    switch (image.format()) {
    case QImage::Format_Grayscale8: return {QImage::Format_Grayscale8, 1, 8};
    case QImage::Format_Grayscale16: return {QImage::Format_Grayscale16, 1, 16};
    default: break;
    }
    if (image.pixelFormat().redSize() > 8)
        return {QImage::Format_RGBA64, 4, 16}; // opaque ones too: Qt packs no three samples of 16 bits
    if (image.hasAlphaChannel())
        return {QImage::Format_RGBA8888, 4, 8};
    return {QImage::Format_RGB888, 3, 8};
}

// The tags of the one picture, written in ascending order, with the values that do not fit into their entries.
class Directory {
public:
    enum Type : quint16 { Short = 3, Long = 4, Rational = 5 };

    void add(quint16 tag, quint16 value) { add(tag, QList<quint16>{value}); }
    void add(quint16 tag, const QList<quint16> &values) { add(tag, Short, values.size(), values); }
    void add(quint16 tag, const QList<quint32> &values) { add(tag, Long, values.size(), values); }
    void addRational(quint16 tag, quint32 numerator, quint32 denominator)
    {
        add(tag, Rational, 1, QList<quint32>{numerator, denominator});
    }

    [[nodiscard]] qint64 size() const { return entriesSize() + m_valuesSize; }

    // At the stream's position, which is `offset` bytes into the file.
    void write(QDataStream &stream, quint32 offset) const
    {
        const quint32 valueOffset = offset + quint32(entriesSize());
        QByteArray values;
        stream << quint16(m_entries.size());
        for (const Entry &entry : m_entries) {
            stream << entry.tag << quint16(entry.type) << entry.count;
            if (entry.value.size() <= inlineSize) {
                writeBytes(stream, entry.value.leftJustified(inlineSize, '\0'));
            } else {
                stream << valueOffset + quint32(values.size());
                values += entry.value;
            }
        }
        stream << quint32(0); // no other picture
        writeBytes(stream, values);
    }

    static void writeBytes(QDataStream &stream, const QByteArray &bytes)
    {
        stream.writeRawData(bytes.constData(), int(bytes.size()));
    }

private:
    struct Entry {
        quint16 tag;
        Type type;
        quint32 count;
        QByteArray value; // of an even length
    };

    [[nodiscard]] qint64 entriesSize() const { return 2 + 12 * m_entries.size() + 4; }

    template <class Number> void add(quint16 tag, Type type, qsizetype count, const QList<Number> &numbers)
    {
        QByteArray value;
        QDataStream stream(&value, QIODevice::WriteOnly);
        stream.setByteOrder(byteOrder);
        for (const Number number : numbers)
            stream << number;
        m_entries.append({tag, type, quint32(count), value});
        m_valuesSize += value.size() > inlineSize ? value.size() : 0;
    }

    static constexpr qsizetype inlineSize = 4; // what an entry holds itself
    QList<Entry> m_entries;
    qint64 m_valuesSize = 0;
};

struct Strips {
    int rowsPerStrip = 0;
    QList<quint32> offsets;
    QList<quint32> sizes;
};

// Rows of the picture, packed and compressed. Null without memory.
QByteArray strip(const QImage &image, const Layout &layout, int top, int rows)
{
    const QImage pixels = image.copy(0, top, image.width(), rows).convertToFormat(layout.format);
    if (pixels.isNull())
        return {};
    const qsizetype rowSize = layout.bytesPerRow(image.width());
    QByteArray bytes;
    bytes.reserve(rowSize * rows);
    for (int y = 0; y < rows; ++y)
        bytes.append(reinterpret_cast<const char *>(pixels.constScanLine(y)), rowSize);
    return qCompress(bytes).mid(4); // a zlib stream, behind the length that Qt puts before it
}

Directory directoryOf(const QImage &image, const Layout &layout, const Strips &strips)
{
    // The numbers are those of TIFF, revision 6.0.
    constexpr quint16 deflate = 8, blackIsZero = 1, rgb = 2, centimeter = 3, unassociatedAlpha = 2;
    const auto pixelsPerMeter = [](int value) { return quint32(qMax(value, 1)); };
    Directory directory;
    directory.add(256, QList{quint32(image.width())});
    directory.add(257, QList{quint32(image.height())});
    directory.add(258, QList<quint16>(layout.samplesPerPixel, layout.bitsPerSample));
    directory.add(259, deflate);
    directory.add(262, layout.samplesPerPixel == 1 ? blackIsZero : rgb);
    directory.add(273, strips.offsets);
    directory.add(277, layout.samplesPerPixel);
    directory.add(278, QList{quint32(strips.rowsPerStrip)});
    directory.add(279, strips.sizes);
    directory.addRational(282, pixelsPerMeter(image.dotsPerMeterX()), 100);
    directory.addRational(283, pixelsPerMeter(image.dotsPerMeterY()), 100);
    directory.add(296, centimeter);
    if (layout.hasAlpha())
        directory.add(338, unassociatedAlpha);
    return directory;
}

} // namespace

bool writeTiff(const QImage &image, QIODevice &device)
{
    constexpr qsizetype stripSize = 1 << 18; // before compression; a wider row is a strip of its own
    const Layout layout = layoutOf(image);
    Strips strips;
    strips.rowsPerStrip = int(qMax<qsizetype>(1, stripSize / layout.bytesPerRow(image.width())));

    QDataStream stream(&device);
    stream.setByteOrder(byteOrder);
    Directory::writeBytes(stream, byteOrder == QDataStream::LittleEndian ? "II" : "MM");
    stream << quint16(42) << quint32(0); // the directory's offset is not known yet
    for (int top = 0; top < image.height(); top += strips.rowsPerStrip) {
        const QByteArray bytes = strip(image, layout, top, qMin(strips.rowsPerStrip, image.height() - top));
        if (bytes.isEmpty())
            return false;
        strips.offsets.append(quint32(device.pos()));
        strips.sizes.append(quint32(bytes.size()));
        Directory::writeBytes(stream, bytes);
    }

    if (device.pos() % 2 != 0)
        stream << quint8(0); // the directory begins at an even offset
    const qint64 offset = device.pos();
    const Directory directory = directoryOf(image, layout, strips);
    if (offset + directory.size() > std::numeric_limits<quint32>::max())
        return false;
    directory.write(stream, quint32(offset));
    return device.seek(4) && (stream << quint32(offset)).status() == QDataStream::Ok;
}

} // namespace kx
