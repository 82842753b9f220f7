// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PixelMix.h>

#include <QtCore/QList>
#include <QtTest/QTest>

#include <random>
#include <vector>

using namespace Qt::StringLiterals;

class PixelMixTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void roundsEverySumToTheNearest();
    void mixesEveryLength();
    void mixesInPlace();
    void staysPremultiplied();
};

namespace {

// The portable loop, and the one for this processor if there is one.
QList<kx::PixelMix> mixes()
{
    QList<kx::PixelMix> list = {kx::mixPixels};
    if (kx::avx2PixelMix())
        list.append(kx::avx2PixelMix());
    return list;
}

std::uint32_t pixel(unsigned alpha, unsigned red, unsigned green, unsigned blue)
{
    return alpha << 24 | red << 16 | green << 8 | blue;
}

unsigned byteOf(std::uint32_t pixel, int byte)
{
    return pixel >> (8 * byte) & 0xFF;
}

std::uint32_t naive(std::uint32_t from, std::uint32_t color, unsigned keep)
{
    std::uint32_t mixed = 0;
    for (int byte = 0; byte < 4; ++byte) {
        const unsigned sum = byteOf(color, byte) * byteOf(from, 3) + byteOf(from, byte) * keep;
        mixed |= (sum * 2 + 255) / 510 << (8 * byte);
    }
    return mixed;
}

std::uint32_t randomPixel(std::mt19937 &random, unsigned mostAlpha)
{
    const auto upTo = [&random](unsigned most) { return unsigned(random() % (most + 1)); };
    const unsigned alpha = upTo(mostAlpha);
    return pixel(alpha, upTo(alpha), upTo(alpha), upTo(alpha));
}

} // namespace

// Every pair of a pixel's alpha and a byte of it, with colours and shares at their ends and in between.
void PixelMixTest::roundsEverySumToTheNearest()
{
    std::vector<std::uint32_t> from;
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        for (unsigned byte = 0; byte <= alpha; ++byte)
            from.push_back(pixel(alpha, byte, alpha - byte, alpha));
    }
    std::vector<std::uint32_t> to(from.size());
    for (unsigned alpha = 0; alpha < 256; alpha += 5) {
        for (const unsigned byte : {0U, 1U, alpha / 3, alpha}) {
            const std::uint32_t color = pixel(alpha, qMin(byte, alpha), alpha, alpha / 2);
            for (const kx::PixelMix mix : mixes()) {
                mix(from.data(), to.data(), from.size(), color, static_cast<std::uint8_t>(255 - alpha));
                for (std::size_t at = 0; at < from.size(); ++at) {
                    if (to[at] != naive(from[at], color, 255 - alpha))
                        QCOMPARE(to[at], naive(from[at], color, 255 - alpha));
                }
            }
        }
    }
}

void PixelMixTest::mixesEveryLength()
{
    constexpr std::uint32_t untouched = 0x12345678;
    std::mt19937 random(3);
    for (std::size_t length = 0; length < 40; ++length) {
        for (std::size_t offset = 0; offset < 4; ++offset) {
            const std::uint32_t color = randomPixel(random, 255);
            const auto keep = unsigned(random() % (256 - byteOf(color, 3)));
            std::vector<std::uint32_t> from(offset + length);
            for (std::uint32_t &one : from)
                one = randomPixel(random, 255);
            for (const kx::PixelMix mix : mixes()) {
                std::vector<std::uint32_t> to(offset + length + 1, untouched);
                mix(from.data() + offset, to.data() + offset, length, color, static_cast<std::uint8_t>(keep));
                for (std::size_t at = 0; at < to.size(); ++at) {
                    const bool inside = at >= offset && at < offset + length;
                    QCOMPARE(to[at], inside ? naive(from[at], color, keep) : untouched);
                }
            }
        }
    }
}

void PixelMixTest::mixesInPlace()
{
    for (const kx::PixelMix mix : mixes()) {
        std::vector<std::uint32_t> pixels(21, pixel(255, 255, 255, 255));
        mix(pixels.data(), pixels.data(), pixels.size(), 0, 51);
        QCOMPARE(pixels, std::vector<std::uint32_t>(21, pixel(51, 51, 51, 51)));
    }
}

void PixelMixTest::staysPremultiplied()
{
    std::mt19937 random(4);
    std::vector<std::uint32_t> from(1000);
    std::vector<std::uint32_t> to(from.size());
    for (int round = 0; round < 50; ++round) {
        const std::uint32_t color = randomPixel(random, 255);
        for (std::uint32_t &one : from)
            one = randomPixel(random, 255);
        for (const kx::PixelMix mix : mixes()) {
            mix(from.data(), to.data(), from.size(), color, static_cast<std::uint8_t>(255 - byteOf(color, 3)));
            for (std::size_t at = 0; at < to.size(); ++at) {
                QCOMPARE(byteOf(to[at], 3), byteOf(from[at], 3)); // atop leaves alpha
                QVERIFY(byteOf(to[at], 0) <= byteOf(to[at], 3));
                QVERIFY(byteOf(to[at], 1) <= byteOf(to[at], 3));
                QVERIFY(byteOf(to[at], 2) <= byteOf(to[at], 3));
            }
        }
    }
}

QTEST_APPLESS_MAIN(PixelMixTest)
#include "PixelMixTest.moc"
