// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/BigImageThumb/KXBigImageThumb.h>
#include <tests/Support/JpegFile.h>

#include <QtCore/QTemporaryDir>
#include <QtGui/QImageReader>

#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using kx::bench::timed;

constexpr QSize bigSize(12000, 8000);
constexpr QRect part(5000, 4000, 512, 512);

// A file of 12,000 x 8,000 pixels, made at the first call. Empty when it cannot be written.
const QString &bigFile()
{
    static const QTemporaryDir directory;
    static const QString path = [] {
        QString file = directory.filePath(QStringLiteral("big.jpg"));
        // Each row is a part of one long row with detail in it, moved on by 37 pixels.
        std::vector<uchar> wide(std::size_t(bigSize.width() + 4096) * 3);
        for (std::size_t i = 0; i < wide.size(); ++i)
            wide[i] = static_cast<uchar>(std::abs(int(i) % 510 - 255) ^ int(i * 2654435761U >> 29));
        const auto row = [&](int y, uchar *to) {
            std::memcpy(to, wide.data() + std::size_t(y * 37 % 4096) * 3, std::size_t(bigSize.width()) * 3);
        };
        return kx::test::writeJpegFile(file, bigSize, {}, row) ? file : QString();
    }();
    return path;
}

void decode(benchmark::State &state)
{
    const QString &path = bigFile();
    while (state.KeepRunning()) {
        if (KXBigImageThumb(path).width() != bigSize.width())
            return state.SkipWithError("not decoded");
    }
}

void decodePeer(benchmark::State &state)
{
    const QString &path = bigFile();
    QImageReader::setAllocationLimit(0);
    while (state.KeepRunning()) {
        if (QImageReader(path).read().size() != bigSize)
            return state.SkipWithError("not decoded");
    }
}

const KXBigImageThumb &bigThumb()
{
    static const KXBigImageThumb thumb(bigFile());
    return thumb;
}

void crop(benchmark::State &state)
{
    const KXBigImageThumb &thumb = bigThumb();
    if (thumb.thumbFromRect(part) == nullptr)
        return state.SkipWithError("no part");
    while (state.KeepRunning())
        benchmark::DoNotOptimize(thumb.thumbFromRect(part));
}

void cropPeer(benchmark::State &state)
{
    const QImage image = bigThumb().bitmap().toQImage();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(image.copy(part));
}

const bool registered = timed({"jpeg.decode", "ms", 1.05, "same codec"}, decode, decodePeer)
    && timed({"jpeg.crop", "us", 1.1, "row copies"}, crop, cropPeer);

} // namespace
