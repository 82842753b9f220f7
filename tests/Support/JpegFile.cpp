// SPDX-License-Identifier: MIT
#include "JpegFile.h"

#include <QtCore/QFile>

#include <array>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

namespace kx::test {

namespace {

int bytesPerPixel(JpegKind::Colors colors)
{
    return colors == JpegKind::Grey ? 1 : colors == JpegKind::Cmyk || colors == JpegKind::Ycck ? 4 : 3;
}

J_COLOR_SPACE given(JpegKind::Colors colors)
{
    return colors == JpegKind::Grey ? JCS_GRAYSCALE : bytesPerPixel(colors) == 4 ? JCS_CMYK : JCS_RGB;
}

J_COLOR_SPACE stored(JpegKind::Colors colors)
{
    switch (colors) {
    case JpegKind::Grey: return JCS_GRAYSCALE;
    case JpegKind::YCbCr: return JCS_YCbCr;
    case JpegKind::Rgb: return JCS_RGB;
    case JpegKind::Cmyk: return JCS_CMYK;
    case JpegKind::Ycck: return JCS_YCCK;
    }
    return JCS_UNKNOWN;
}

struct Errors {
    jpeg_error_mgr manager;
    std::jmp_buf escape;
};

void leave(j_common_ptr jpeg)
{
    // The manager is the first member.
    std::longjmp(reinterpret_cast<Errors *>(jpeg->err)->escape, 1);
}

// One scan of all blocks' first coefficients, then for each other coefficient one without its last bit and one for
// that.
using Scans = std::array<jpeg_scan_info, 127>;

Scans manyScans()
{
    Scans scans{};
    scans[0] = {1, {0}, 0, 0, 0, 0};
    for (int i = 1; i < int(scans.size()); ++i) {
        const int coefficient = (i + 1) / 2;
        const bool isFirst = i % 2 == 1;
        scans[std::size_t(i)] = {1, {0}, coefficient, coefficient, isFirst ? 0 : 1, isFirst ? 1 : 0};
    }
    return scans;
}

// `setDestination` says where the file goes; `buffer` has room for one row. Nothing here is left to destroy by an
// error.
template <class SetDestination>
bool compress(
    const QSize &size, const JpegKind &kind, const JpegRow &row, uchar *buffer, const SetDestination &setDestination)
{
    static const Scans scans = manyScans();
    jpeg_compress_struct jpeg{};
    Errors errors{};
    jpeg.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = leave;
    if (setjmp(errors.escape) != 0) {
        jpeg_destroy_compress(&jpeg);
        return false;
    }
    jpeg_create_compress(&jpeg);
    setDestination(jpeg);
    jpeg.image_width = JDIMENSION(size.width());
    jpeg.image_height = JDIMENSION(size.height());
    jpeg.input_components = bytesPerPixel(kind.colors);
    jpeg.in_color_space = given(kind.colors);
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, stored(kind.colors));
    jpeg_set_quality(&jpeg, kind.quality, true);
    for (int i = 0; !kind.isSubsampled && i < jpeg.num_components; ++i)
        jpeg.comp_info[i].h_samp_factor = jpeg.comp_info[i].v_samp_factor = 1;
    if (kind.isProgressive)
        jpeg_simple_progression(&jpeg);
    if (kind.scans > 0) {
        jpeg.scan_info = scans.data();
        jpeg.num_scans = kind.scans;
    }
    jpeg.arith_code = kind.isArithmetic;
    jpeg.restart_in_rows = kind.restartInterval;
    jpeg_start_compress(&jpeg, true);
    if (!kind.exif.isEmpty()) {
        jpeg_write_m_header(&jpeg, JPEG_APP0 + 1, unsigned(6 + kind.exif.size()));
        for (const char byte : {'E', 'x', 'i', 'f', '\0', '\0'})
            jpeg_write_m_byte(&jpeg, byte);
        for (const char byte : kind.exif)
            jpeg_write_m_byte(&jpeg, static_cast<uchar>(byte));
    }
    while (jpeg.next_scanline < jpeg.image_height) {
        row(int(jpeg.next_scanline), buffer);
        JSAMPROW rows = buffer;
        jpeg_write_scanlines(&jpeg, &rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    return true;
}

std::vector<uchar> rowBuffer(const QSize &size, const JpegKind &kind)
{
    return std::vector<uchar>(std::size_t(size.width()) * std::size_t(bytesPerPixel(kind.colors)));
}

} // namespace

JpegRow smoothRow(const QSize &size, const JpegKind &kind)
{
    const int bytes = bytesPerPixel(kind.colors);
    return [width = size.width(), bytes](int y, uchar *row) {
        for (int x = 0; x < width; ++x) {
            for (int i = 0; i < bytes; ++i)
                *row++ = static_cast<uchar>(std::abs((x * (i + 1) + y * (3 - i)) % 510 - 255));
        }
    };
}

QByteArray jpegBytes(const QSize &size, const JpegKind &kind, const JpegRow &row)
{
    std::vector<uchar> buffer = rowBuffer(size, kind);
    uchar *bytes = nullptr;
    unsigned long length = 0;
    const bool isWritten = compress(
        size, kind, row, buffer.data(), [&](jpeg_compress_struct &jpeg) { jpeg_mem_dest(&jpeg, &bytes, &length); });
    QByteArray result = isWritten ? QByteArray(reinterpret_cast<const char *>(bytes), qsizetype(length)) : QByteArray();
    std::free(bytes);
    return result;
}

bool writeJpegFile(const QString &path, const QSize &size, const JpegKind &kind, const JpegRow &row)
{
    std::vector<uchar> buffer = rowBuffer(size, kind);
    std::FILE *const file = std::fopen(QFile::encodeName(path).constData(), "wb");
    if (!file)
        return false;
    const bool isWritten =
        compress(size, kind, row, buffer.data(), [file](jpeg_compress_struct &jpeg) { jpeg_stdio_dest(&jpeg, file); });
    return std::fclose(file) == 0 && isWritten;
}

} // namespace kx::test
