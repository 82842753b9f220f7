// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/Base64Codec.h>

#include "NaiveBase64.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <sys/mman.h>
#include <unistd.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace kx::base64;

namespace {

const unsigned char *bytesOf(const std::string &text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

std::string encoded(const std::string &bytes, bool breakLines, const Kernel &kernel)
{
    std::string text(encodedCapacity(bytes.size(), breakLines), '\0');
    text.resize(encode(bytesOf(bytes), bytes.size(), breakLines, text.data(), kernel));
    return text;
}

std::string decoded(const std::string &text, const Kernel &kernel)
{
    std::string bytes(decodedCapacity(text.size()), '\0');
    bytes.resize(decode(bytesOf(text), text.size(), reinterpret_cast<unsigned char *>(bytes.data()), kernel));
    return bytes;
}

std::string randomBytes(std::mt19937 &random, std::size_t length)
{
    std::string bytes(length, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

// Memory whose neighbours on both sides may be neither read nor written.
class GuardedPages {
public:
    GuardedPages()
    {
        const int nowhere = -1;
        m_all = static_cast<unsigned char *>(
            mmap(nullptr, size + 2 * m_page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, nowhere, 0));
        if (m_all == MAP_FAILED || mprotect(begin(), size, PROT_READ | PROT_WRITE) != 0)
            qFatal("no guarded memory");
    }
    ~GuardedPages() { munmap(m_all, size + 2 * m_page); }
    Q_DISABLE_COPY_MOVE(GuardedPages)

    unsigned char *begin() { return m_all + m_page; }
    // `length` bytes that end at the guard, or begin at it.
    unsigned char *place(std::size_t length, bool atEnd) { return atEnd ? begin() + size - length : begin(); }

    static constexpr std::size_t size = 65536;

private:
    const std::size_t m_page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    unsigned char *m_all = nullptr;
};

} // namespace

// The kernels side by side, on buffers of the caller.
class Base64CodecTest : public QObject {
    Q_OBJECT

    const Kernel *m_kernel = nullptr;

    static void addKernels()
    {
        QTest::addColumn<const Kernel *>("kernel");
        QTest::newRow("portable") << &portableKernel;
        if (avx2Kernel())
            QTest::newRow("avx2") << avx2Kernel();
    }

private Q_SLOTS:
    void initTestCase_data() { addKernels(); }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        QFETCH_GLOBAL(const Kernel *, kernel);
        m_kernel = kernel;
    }

    void choosesTheFastestKernel() { QCOMPARE(&bestKernel(), avx2Kernel() ? avx2Kernel() : &portableKernel); }

    void allocatesByGroupsAndFullLines()
    {
        QCOMPARE(encodedCapacity(0, true), std::size_t(1));
        QCOMPARE(encodedCapacity(1, true), std::size_t(5));
        QCOMPARE(encodedCapacity(45, true), std::size_t(61));
        QCOMPARE(encodedCapacity(46, true), std::size_t(67)); // the 16th group is begun
        QCOMPARE(encodedCapacity(48, true), std::size_t(67));
        QCOMPARE(encodedCapacity(48, false), std::size_t(65));
        QCOMPARE(encodedCapacity(96, true), std::size_t(133));
        constexpr auto most = std::numeric_limits<std::size_t>::max();
        for (const std::size_t length : {most, most - 1, most / 4 * 3, most / 4 * 3 + 1, most / 4 * 3 - 3}) {
            QVERIFY(encodedCapacity(length, false) >= most / 2);
            QVERIFY(encodedCapacity(length, true) >= most / 2);
            QVERIFY(decodedCapacity(length) >= most / 2);
        }
        QCOMPARE(decodedCapacity(0), std::size_t(0));
        QCOMPARE(decodedCapacity(1), std::size_t(3));
        QCOMPARE(decodedCapacity(4), std::size_t(3));
        QCOMPARE(decodedCapacity(5), std::size_t(6));
    }

    void encodesEveryInputOfUpToTwoBytes()
    {
        QCOMPARE(encoded({}, true, *m_kernel), std::string());
        for (int a = 0; a < 256; ++a) {
            const std::string one(1, static_cast<char>(a));
            QCOMPARE(encoded(one, true, *m_kernel), kx::test::naiveEncode(one, true));
            for (int b = 0; b < 256; ++b) {
                const std::string two = one + static_cast<char>(b);
                if (encoded(two, false, *m_kernel) != kx::test::naiveEncode(two, false))
                    QFAIL(qPrintable(QStringLiteral("%1 %2").arg(a).arg(b)));
            }
        }
    }

    // A character depends on two neighbouring bytes at most, so this covers all that a line can hold.
    void encodesEveryPairOfNeighboursAtEveryPlaceOfALine()
    {
        std::string line(lineBytes, '\x5A');
        std::string expected = kx::test::naiveEncode(line, false);
        for (std::size_t place = 0; place + 1 < lineBytes; ++place) {
            const std::size_t group = place / 3;
            const std::size_t length = place % 3 == 2 ? 6 : 3;
            for (unsigned pair = 0; pair < 0x10000; ++pair) {
                line[place] = static_cast<char>(pair >> 8);
                line[place + 1] = static_cast<char>(pair);
                char text[lineCharacters];
                m_kernel->encodeLines(bytesOf(line), 1, false, text);
                // The portable loop is checked against the naive one, byte by byte, in its own row.
                char groups[lineCharacters];
                portableKernel.encodeLines(bytesOf(line), 1, false, groups);
                if (std::memcmp(text, groups, sizeof text) != 0)
                    QFAIL(qPrintable(QStringLiteral("place %1, pair %2").arg(place).arg(pair)));
                if (pair % 257 == 0) {
                    const std::string naive = kx::test::naiveEncode(line.substr(group * 3, length), false);
                    QVERIFY(expected.replace(group * 4, naive.size(), naive) == std::string(text, sizeof text));
                }
            }
            line[place] = line[place + 1] = '\x5A';
            expected = kx::test::naiveEncode(line, false);
        }
    }

    void decodesEveryByteAtEveryPlaceOfABlock()
    {
        const std::string block = "ABCDEFGHIJKLMNOPabcdefghij0123+/";
        QCOMPARE(block.size(), std::size_t(32));
        for (std::size_t place = 0; place < block.size(); ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text = block + block;
                text[place] = static_cast<char>(byte);
                if (decoded(text, *m_kernel) != kx::test::naiveDecode(text))
                    QFAIL(qPrintable(QStringLiteral("place %1, byte %2").arg(place).arg(byte)));
            }
        }
    }

    // All short texts over one character of each kind, alone and around a run that vectors take.
    void decodesEveryShortTextOfEveryKind()
    {
        const std::string kinds = "Qz/=\n\xE9";
        const std::string run(36, 'k');
        for (std::size_t length = 0; length <= 5; ++length) {
            std::vector<std::size_t> digits(length, 0);
            for (bool more = true; more;) {
                std::string text;
                for (const std::size_t digit : digits)
                    text += kinds[digit];
                for (const std::string &whole : {text, text + run, run + text, text + run + text, run + text + run}) {
                    if (decoded(whole, *m_kernel) != kx::test::naiveDecode(whole))
                        QFAIL(QByteArray::fromStdString(whole).toHex(' ').constData());
                }
                more = false;
                for (std::size_t &digit : digits) {
                    if (++digit < kinds.size()) {
                        more = true;
                        break;
                    }
                    digit = 0;
                }
            }
        }
    }

    void agreesOnRandomDataOfAnyLength()
    {
        std::mt19937 random(20); // a fixed seed, so that a failure repeats
        for (std::size_t length = 0; length < 400; ++length) {
            const std::string bytes = randomBytes(random, length);
            for (const bool breakLines : {false, true}) {
                const std::string text = encoded(bytes, breakLines, *m_kernel);
                QCOMPARE(text, kx::test::naiveEncode(bytes, breakLines));
                QCOMPARE(decoded(text, *m_kernel), bytes);
                QCOMPARE(decoded(text + '\n', *m_kernel), kx::test::naiveDecode(text + '\n'));
            }
            QCOMPARE(decoded(bytes, *m_kernel), kx::test::naiveDecode(bytes));
        }
        for (int run = 0; run < 20; ++run) {
            const std::string bytes = randomBytes(random, 50'000 + random() % 50'000);
            const std::string text = encoded(bytes, true, *m_kernel);
            QVERIFY(text == encoded(bytes, true, portableKernel));
            QVERIFY(decoded(text, *m_kernel) == bytes);
        }
    }

    void decodesLinesOfAnyLength()
    {
        std::mt19937 random(21);
        const std::string bytes = randomBytes(random, 2000);
        const std::string text = encoded(bytes, false, *m_kernel);
        for (std::size_t width = 1; width < 100; ++width) {
            std::string lines;
            for (std::size_t i = 0; i < text.size(); i += width)
                lines += (i > 0 ? "\n" : "") + text.substr(i, width);
            QVERIFY2(decoded(lines, *m_kernel) == bytes, qPrintable(QString::number(width)));
        }
    }

    void touchesNothingOutsideItsBuffers()
    {
        std::mt19937 random(22);
        GuardedPages in;
        GuardedPages out;
        std::vector<std::string> texts;
        for (std::size_t length = 0; length < 300; ++length) {
            const std::string bytes = randomBytes(random, length);
            for (const bool breakLines : {false, true}) {
                const std::string text = kx::test::naiveEncode(bytes, breakLines);
                texts.push_back(text);
                for (const bool atEnd : {false, true}) {
                    unsigned char *const source = in.place(length, atEnd);
                    unsigned char *const target = out.place(text.size(), atEnd);
                    std::memcpy(source, bytes.data(), length);
                    std::memset(out.begin(), 0x55, GuardedPages::size);
                    const std::size_t used =
                        encode(source, length, breakLines, reinterpret_cast<char *>(target), *m_kernel);
                    QVERIFY(std::string(reinterpret_cast<char *>(target), used) == text);
                    QVERIFY(othersAre(out, target, used, 0x55));
                }
            }
            texts.push_back(randomBytes(random, length));
            texts.push_back(texts.front() + "\r\n\r\n");
        }
        for (const std::string &text : texts) {
            const std::string bytes = kx::test::naiveDecode(text);
            for (const bool atEnd : {false, true}) {
                unsigned char *const source = in.place(text.size(), atEnd);
                // Exactly as long as what comes out, but for the byte that trailing characters take back.
                const std::size_t room = std::min(decodedCapacity(text.size()), bytes.size() + 1);
                unsigned char *const target = out.place(room, atEnd);
                std::memcpy(source, text.data(), text.size());
                std::memset(out.begin(), 0x55, GuardedPages::size);
                const std::size_t used = decode(source, text.size(), target, *m_kernel);
                QVERIFY(std::string(reinterpret_cast<char *>(target), used) == bytes);
                QVERIFY(othersAre(out, target, room, 0x55));
            }
        }
    }

private:
    static bool othersAre(GuardedPages &pages, const unsigned char *begin, std::size_t length, unsigned char value)
    {
        const auto is = [value](unsigned char byte) { return byte == value; };
        return std::all_of(static_cast<const unsigned char *>(pages.begin()), begin, is)
            && std::all_of(begin + length, static_cast<const unsigned char *>(pages.begin()) + GuardedPages::size, is);
    }
};

QTEST_GUILESS_MAIN(Base64CodecTest)
#include "Base64CodecTest.moc"
