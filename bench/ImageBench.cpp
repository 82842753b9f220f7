// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/Category/ImageKXTools.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <algorithm>
#include <cstdint>
#include <random>

namespace {

using kx::bench::timed;

// Premultiplied pixels of every opacity, or opaque ones.
QImage randomImage(const QSize &size, bool opaque)
{
    std::mt19937 random(256);
    QImage image(size, opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto *const row = reinterpret_cast<QRgb *>(image.scanLine(y));
        std::generate_n(
            row, image.width(), [&] { return opaque ? QRgb(random()) | 0xFF000000U : qPremultiply(QRgb(random())); });
    }
    return image;
}

constexpr QColor tintColor(255, 46, 67, 217);

QImage tintSource()
{
    return randomImage(QSize(256, 256), false);
}

void tint(benchmark::State &state)
{
    const kx::Image image = tintSource();
    const kx::Color color = tintColor;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(kx::imageWithTintColor(image, color));
}

void tintPeer(benchmark::State &state)
{
    const QImage image = tintSource();
    while (state.KeepRunning()) {
        QImage tinted = image;
        QPainter painter(&tinted);
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.fillRect(tinted.rect(), tintColor);
        painter.end();
        benchmark::DoNotOptimize(tinted.constBits());
    }
}

void copy(benchmark::State &state)
{
    const QImage image = tintSource();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(image.copy().constBits());
}

constexpr QSize reduced(320, 180);

QImage frame()
{
    return randomImage(QSize(1920, 1080), true);
}

void downscale(benchmark::State &state)
{
    const kx::Image image = frame();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(kx::resize(image, reduced));
}

void downscalePeer(benchmark::State &state)
{
    const QImage image = frame();
    while (state.KeepRunning())
        benchmark::DoNotOptimize(image.scaled(reduced, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).constBits());
}

void read(benchmark::State &state)
{
    const QImage image = frame();
    const auto *const pixels = reinterpret_cast<const std::uint32_t *>(image.constBits());
    const qsizetype count = image.sizeInBytes() / 4;
    while (state.KeepRunning()) {
        std::uint32_t all = 0;
        for (qsizetype at = 0; at < count; ++at)
            all ^= pixels[at];
        benchmark::DoNotOptimize(all);
    }
}

// Both peers work in several threads, so the wall clock counts.
const bool registered = timed({"image.tint", "us", 0.2}, tint, tintPeer, copy, kx::bench::Clock::Real)
    && timed({"image.downscale", "ms", 1.05}, downscale, downscalePeer, read, kx::bench::Clock::Real);

} // namespace
