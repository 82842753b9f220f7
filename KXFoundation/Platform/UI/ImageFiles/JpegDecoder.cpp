// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ImageFiles/JpegDecoder.h>

#include <QtCore/QIODevice>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdio> // the header of libjpeg needs it
#include <limits>

#include <jpeglib.h>

namespace kx {

namespace {

// libjpeg tells an error by leaving the function that was called, over its own frames, with longjmp. Each method that
// calls the library first sets the place to come back to, and has nothing to destroy and no changed variable to read
// there.
class Decompression {
public:
    explicit Decompression(QIODevice &device)
        : m_device(device)
    {
        m_jpeg.err = jpeg_std_error(&m_errors);
        m_jpeg.client_data = this;
        m_errors.error_exit = [](j_common_ptr jpeg) { of(jpeg).leave(); };
        m_errors.output_message = [](j_common_ptr) {}; // not to standard error
        m_source.init_source = [](j_decompress_ptr) {};
        m_source.fill_input_buffer = [](j_decompress_ptr jpeg) { return of(jpeg).fill(); };
        m_source.skip_input_data = [](j_decompress_ptr jpeg, long size) { of(jpeg).skip(size); };
        m_source.resync_to_restart = &jpeg_resync_to_restart;
        m_source.term_source = [](j_decompress_ptr) {};
        m_progress.progress_monitor = [](j_common_ptr jpeg) { of(jpeg).watchScans(); };
    }
    ~Decompression() { jpeg_destroy_decompress(&m_jpeg); }
    Q_DISABLE_COPY_MOVE(Decompression)

    // What the picture is; false when it cannot be read.
    bool readHeader()
    {
        if (setjmp(m_return) != 0)
            return false;
        jpeg_create_decompress(&m_jpeg);
        m_jpeg.src = &m_source;
        m_jpeg.progress = &m_progress;
        jpeg_read_header(&m_jpeg, true);
        // The order of the bytes in QRgb, with an opaque alpha. Inks have four bytes as well, and are mixed later.
        const J_COLOR_SPACE bytesOfQRgb = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;
        m_jpeg.out_color_space = isGrey() ? JCS_GRAYSCALE : hasInks() ? JCS_CMYK : bytesOfQRgb;
        return true;
    }

    [[nodiscard]] qint64 width() const { return m_jpeg.image_width; }
    [[nodiscard]] qint64 height() const { return m_jpeg.image_height; }
    [[nodiscard]] bool isGrey() const { return m_jpeg.jpeg_color_space == JCS_GRAYSCALE; }
    [[nodiscard]] bool hasInks() const
    {
        return m_jpeg.jpeg_color_space == JCS_CMYK || m_jpeg.jpeg_color_space == JCS_YCCK;
    }
    // Whether 255 means no ink, as programs that leave this mark have it.
    [[nodiscard]] bool hasInvertedInks() const { return m_jpeg.saw_Adobe_marker; }

    // All rows; the library takes no more than `memoryLimit` bytes (0 is no limit) to keep coefficients.
    bool readRows(uchar *bits, qsizetype bytesPerLine, qint64 memoryLimit)
    {
        if (setjmp(m_return) != 0)
            return false;
        m_jpeg.mem->max_memory_to_use = long(std::min<qint64>(memoryLimit, std::numeric_limits<long>::max()));
        jpeg_start_decompress(&m_jpeg);
        while (m_jpeg.output_scanline < m_jpeg.output_height) {
            JSAMPROW row = bits + bytesPerLine * qsizetype(m_jpeg.output_scanline);
            jpeg_read_scanlines(&m_jpeg, &row, 1);
        }
        return true;
    }

private:
    template <class Jpeg> static Decompression &of(Jpeg jpeg)
    {
        return *static_cast<Decompression *>(jpeg->client_data);
    }

    [[noreturn]] void leave() { std::longjmp(m_return, 1); }

    boolean fill()
    {
        constexpr std::array<JOCTET, 2> endOfImage{0xFF, JPEG_EOI};
        const qint64 size = m_device.read(reinterpret_cast<char *>(m_buffer.data()), qint64(m_buffer.size()));
        if (size <= 0) // a file that breaks off ends here
            std::copy(endOfImage.begin(), endOfImage.end(), m_buffer.begin());
        m_source.next_input_byte = m_buffer.data();
        m_source.bytes_in_buffer = size > 0 ? std::size_t(size) : endOfImage.size();
        return true;
    }

    void skip(long size)
    {
        const std::size_t wanted = size > 0 ? std::size_t(size) : 0;
        const std::size_t buffered = std::min(wanted, m_source.bytes_in_buffer);
        m_source.next_input_byte += buffered;
        m_source.bytes_in_buffer -= buffered;
        if (wanted > buffered)
            m_device.skip(qint64(wanted - buffered));
    }

    void watchScans()
    {
        constexpr int mostScans = 100; // usual are ten
        if (m_jpeg.input_scan_number > mostScans)
            leave();
    }

    QIODevice &m_device;
    jpeg_decompress_struct m_jpeg{};
    jpeg_error_mgr m_errors{};
    jpeg_source_mgr m_source{};
    jpeg_progress_mgr m_progress{};
    std::jmp_buf m_return{};
    std::array<JOCTET, 65536> m_buffer;
};

// Cyan, magenta, yellow and black on white paper, in place.
void mixInks(QImage &image, bool isInverted)
{
    const uchar flip = isInverted ? 0 : 0xFF;
    for (int y = 0; y < image.height(); ++y) {
        auto *const row = reinterpret_cast<QRgb *>(image.scanLine(y));
        std::transform(row, row + image.width(), row, [flip](const QRgb &pixel) {
            const auto *const inks = reinterpret_cast<const uchar *>(&pixel);
            const int paper = inks[3] ^ flip; // what the black leaves
            const auto channel = [&](int ink) { return ((inks[ink] ^ flip) * paper + 127) / 255; };
            return qRgb(channel(0), channel(1), channel(2));
        });
    }
}

} // namespace

QImage decodeJpeg(QIODevice &device, qint64 memoryLimitInBytes)
{
    Decompression jpeg(device);
    if (!jpeg.readHeader())
        return {};
    const qint64 size = jpeg.width() * jpeg.height() * 4; // a grey one takes less
    if (memoryLimitInBytes > 0 && size >= memoryLimitInBytes)
        return {};
    QImage image(
        int(jpeg.width()), int(jpeg.height()), jpeg.isGrey() ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
    if (image.isNull())
        return {};
    const qint64 memoryLeft = memoryLimitInBytes > 0 ? memoryLimitInBytes - size : 0;
    if (!jpeg.readRows(image.bits(), image.bytesPerLine(), memoryLeft))
        return {};
    if (jpeg.hasInks())
        mixInks(image, jpeg.hasInvertedInks());
    return image;
}

} // namespace kx
