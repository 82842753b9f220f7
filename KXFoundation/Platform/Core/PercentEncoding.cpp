// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/PercentEncoding.h>

#include <KXFoundation/Platform/Core/Strings.h>

#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <array>

namespace kx {

namespace {

constexpr std::array<signed char, 0x80> hexValues = [] {
    std::array<signed char, 0x80> values{};
    values.fill(-1);
    for (int digit = 0; digit < 10; ++digit)
        values[std::size_t('0' + digit)] = static_cast<signed char>(digit);
    for (int digit = 0; digit < 6; ++digit)
        values[std::size_t('A' + digit)] = values[std::size_t('a' + digit)] = static_cast<signed char>(10 + digit);
    return values;
}();

// The byte that the two digits spell; negative when one is not a hex digit.
int byteFromHex(char16_t high, char16_t low)
{
    if ((high | low) >= 0x80)
        return -1;
    return hexValues[high] < 0 || hexValues[low] < 0 ? -1 : hexValues[high] * 16 + hexValues[low];
}

char16_t *writeEscape(char16_t *out, unsigned byte)
{
    constexpr char16_t digits[] = u"0123456789ABCDEF";
    *out++ = u'%';
    *out++ = digits[byte >> 4];
    *out++ = digits[byte & 0xF];
    return out;
}

} // namespace

bool isPaired(QStringView text)
{
    quint16 surrogates = 0; // gathered without a branch, which compilers turn into vector instructions
    const char16_t *const in = text.utf16();
    for (qsizetype i = 0; i < text.size(); ++i)
        surrogates |= quint16((in[i] & 0xF800) == 0xD800);
    return surrogates == 0 || text.isValidUtf16();
}

std::optional<QString> addPercentEncoding(QStringView text, const AsciiSet &allowed)
{
    const char16_t *in = text.utf16();
    const char16_t *const end = in + text.size();
    const char16_t *const firstEscaped = std::find_if_not(in, end, [&](char16_t c) { return allowed.contains(c); });
    if (firstEscaped == end)
        return text.toString();

    // One unit makes at most three bytes, a pair of them four.
    QVarLengthArray<char16_t, 1024> buffer((firstEscaped - in) + (end - firstEscaped) * 9);
    char16_t *out = std::copy(in, firstEscaped, buffer.data());
    for (in = firstEscaped; in < end; ++in) {
        const char16_t unit = *in;
        if (allowed.contains(unit)) {
            *out++ = unit;
        } else if (unit < 0x80) {
            out = writeEscape(out, unit);
        } else if (unit < 0x800) {
            out = writeEscape(out, 0xC0 | unit >> 6);
            out = writeEscape(out, 0x80 | (unit & 0x3F));
        } else if (!QChar::isSurrogate(unit)) {
            out = writeEscape(out, 0xE0 | unit >> 12);
            out = writeEscape(out, 0x80 | (unit >> 6 & 0x3F));
            out = writeEscape(out, 0x80 | (unit & 0x3F));
        } else {
            if (!QChar::isHighSurrogate(unit) || end - in < 2 || !QChar::isLowSurrogate(in[1]))
                return std::nullopt;
            const char32_t point = QChar::surrogateToUcs4(unit, *++in);
            out = writeEscape(out, 0xF0 | point >> 18);
            out = writeEscape(out, 0x80 | (point >> 12 & 0x3F));
            out = writeEscape(out, 0x80 | (point >> 6 & 0x3F));
            out = writeEscape(out, 0x80 | (point & 0x3F));
        }
    }
    return QString(reinterpret_cast<const QChar *>(buffer.data()), out - buffer.data());
}

std::optional<QString> removePercentEncoding(QStringView text)
{
    const char16_t *in = text.utf16();
    const char16_t *const end = in + text.size();
    const char16_t *percent = std::find(in, end, u'%');
    if (percent == end)
        return text.toString();

    QString decoded(text.size(), Qt::Uninitialized); // escapes only shrink
    auto *const begin = reinterpret_cast<char16_t *>(decoded.data());
    char16_t *out = std::copy(in, percent, begin);
    in = percent;
    QVarLengthArray<char, 256> bytes; // of one run of escapes that is not plain ASCII
    while (in < end) {
        if (*in != u'%') {
            *out++ = *in++;
            continue;
        }
        int byte = end - in < 3 ? -1 : byteFromHex(in[1], in[2]);
        if (byte >= 0 && byte < 0x80) {
            *out++ = char16_t(byte);
            in += 3;
            continue;
        }
        bytes.clear();
        for (; byte >= 0x80; byte = end - in < 3 || *in != u'%' ? 0 : byteFromHex(in[1], in[2])) {
            bytes.append(char(byte));
            in += 3;
        }
        if (byte < 0)
            return std::nullopt;
        const std::optional<QString> run = decodeUtf8(QByteArrayView(bytes.data(), bytes.size()));
        if (!run)
            return std::nullopt;
        out = std::copy_n(QStringView(*run).utf16(), run->size(), out);
    }
    decoded.truncate(out - begin);
    return decoded;
}

} // namespace kx
