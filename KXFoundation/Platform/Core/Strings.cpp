// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Strings.h>

#include <array>
#include <cstring>

namespace kx {

namespace {

bool isDigit(QChar unit)
{
    return unit >= u'0' && unit <= u'9';
}

// Takes the digits at the front off the text.
QStringView takeDigits(QStringView &text)
{
    qsizetype length = 0;
    while (length < text.size() && isDigit(text[length]))
        ++length;
    const QStringView digits = text.first(length);
    text = text.sliced(length);
    return digits;
}

QStringView withoutLeadingZeros(QStringView digits)
{
    while (!digits.isEmpty() && digits.front() == u'0')
        digits = digits.sliced(1);
    return digits;
}

template <class T> int order(const T &a, const T &b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

// Copies ASCII in blocks as long as there is nothing else; most texts are that throughout.
void takeAsciiBlocks(const unsigned char *&in, const unsigned char *end, char16_t *&out)
{
    constexpr int block = 16;
    for (; end - in >= block; in += block, out += block) {
        std::array<quint64, 2> words{};
        std::memcpy(words.data(), in, block);
        if (((words[0] | words[1]) & 0x8080808080808080U) != 0)
            return;
        for (int i = 0; i < block; ++i)
            out[i] = in[i];
    }
}

} // namespace

std::optional<QString> decodeUtf8(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized); // a sequence of n bytes never makes more than n units
    auto *out = reinterpret_cast<char16_t *>(text.data());
    const auto *in = reinterpret_cast<const unsigned char *>(bytes.data());
    const auto *const end = in + bytes.size();
    while (in < end) {
        const unsigned char lead = *in;
        if (lead < 0x80) {
            *out++ = lead;
            ++in;
            takeAsciiBlocks(in, end, out);
            continue;
        }
        const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (lead < 0xC2 || lead > 0xF4 || end - in < length)
            return std::nullopt;
        char32_t point = lead & (0xFF >> (length + 1));
        for (int i = 1; i < length; ++i) {
            if ((in[i] & 0xC0) != 0x80)
                return std::nullopt;
            point = (point << 6) | (in[i] & 0x3F);
        }
        const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
        if (overlong || (point >= 0xD800 && point <= 0xDFFF) || point > 0x10FFFF)
            return std::nullopt;
        if (point < 0x10000) {
            *out++ = char16_t(point);
        } else {
            *out++ = QChar::highSurrogate(point);
            *out++ = QChar::lowSurrogate(point);
        }
        in += length;
    }
    text.truncate(out - reinterpret_cast<const char16_t *>(text.constData()));
    return text;
}

int compareNumeric(QStringView a, QStringView b)
{
    while (!a.isEmpty() && !b.isEmpty()) {
        if (isDigit(a.front()) && isDigit(b.front())) {
            const QStringView left = withoutLeadingZeros(takeDigits(a));
            const QStringView right = withoutLeadingZeros(takeDigits(b));
            // Of two numbers without leading zeros the longer one is the larger one.
            if (const int result = order(left.size(), right.size()))
                return result;
            for (qsizetype i = 0; i < left.size(); ++i) {
                if (const int result = order(left[i], right[i]))
                    return result;
            }
            continue;
        }
        if (const int result = order(a.front(), b.front()))
            return result;
        a = a.sliced(1);
        b = b.sliced(1);
    }
    return order(a.size(), b.size()); // at least one is used up
}

} // namespace kx
