// SPDX-License-Identifier: MIT
#include "FormatField.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace kx {

namespace {

struct Number {
    std::string_view prefix; // sign or base
    qsizetype zeros = 0; // between prefix and digits
    std::string_view digits;
    bool mayFillWithZeros = true;
};

void appendNumber(TextBuffer &out, const FormatField &field, const Number &number)
{
    if (field.width == 0 && number.zeros == 0) {
        out.appendAscii(number.prefix);
        out.appendAscii(number.digits);
        return;
    }
    const qsizetype missing =
        std::max<qsizetype>(0, field.width - qsizetype(number.prefix.size() + number.digits.size()) - number.zeros);
    const bool fill = field.zero && !field.left && number.mayFillWithZeros;
    if (!field.left && !fill)
        out.appendFill(missing, u' ');
    out.appendAscii(number.prefix);
    out.appendFill(number.zeros + (fill ? missing : 0), u'0');
    out.appendAscii(number.digits);
    if (field.left)
        out.appendFill(missing, u' ');
}

std::string_view sign(const FormatField &field, bool negative)
{
    return negative ? "-" : field.plus ? "+" : field.blank ? " " : "";
}

void makeUpper(char *begin, char *end)
{
    std::transform(begin, end, begin, [](char c) { return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c; });
}

void appendInteger(
    TextBuffer &out, const FormatField &field, std::string_view prefix, std::string_view digits, bool octalMark)
{
    if (field.precision == 0 && digits == "0")
        digits = {};
    qsizetype zeros = std::max<qsizetype>(0, field.precision - qsizetype(digits.size()));
    if (octalMark && zeros == 0 && !digits.starts_with('0'))
        zeros = 1;
    appendNumber(out, field, {prefix, zeros, digits, field.precision < 0});
}

// Room for every finite double with the widest precision.
using RealText = std::array<char, 400 + FormatField::widest>;

char *put(RealText &text, double value, std::chars_format format, int precision)
{
    return std::to_chars(text.data(), text.data() + text.size() - 1, value, format, precision).ptr;
}

// Fixed notation of usual values, some times faster than the general conversion and as exact: a double is m * 2^e, so
// m * 10^precision in 128 bits, shifted by e and rounded half to even, holds all the digits. Null if it does not fit.
char *putUsualFixed(RealText &text, double value, int precision)
{
    constexpr int mostDigits = 9; // 2^53 * 10^9 < 2^83
    constexpr double largest = 0x1p53; // above it e would be positive
    if (precision > mostDigits || value >= largest || (value != 0 && value < 0x1p-40))
        return nullptr;
    constexpr quint64 hiddenBit = quint64(1) << 52;
    const auto bits = std::bit_cast<quint64>(value);
    const quint64 mantissa = value == 0 ? 0 : (bits & (hiddenBit - 1)) | hiddenBit;
    const int shift = value == 0 ? 0 : 1075 - int(bits >> 52); // 0 to 92
    quint64 power = 1;
    for (int i = 0; i < precision; ++i)
        power *= 10;
    __extension__ using Wide = unsigned __int128;
    const Wide scaled = Wide(mantissa) * power;
    auto digits = scaled >> shift;
    const Wide rest = scaled - (digits << shift);
    const Wide middle = shift ? Wide(1) << (shift - 1) : 0;
    if (shift && (rest > middle || (rest == middle && (digits & 1))))
        ++digits;
    const bool small = digits >> 64 == 0; // saves a division in 128 bits
    const quint64 whole = small ? quint64(digits) / power : quint64(digits / power);
    auto fraction = quint64(digits) - whole * power;
    char *end = std::to_chars(text.data(), text.data() + text.size(), whole).ptr;
    if (precision == 0)
        return end;
    *end = '.';
    for (int i = precision; i > 0; --i, fraction /= 10)
        end[i] = char('0' + fraction % 10);
    return end + 1 + precision;
}

// Puts the point that "#" asks for in front of the exponent or at the end, unless there is one.
char *withPoint(char *begin, char *end, char exponentMark)
{
    if (std::find(begin, end, '.') != end)
        return end;
    char *const at = std::find(begin, end, exponentMark);
    std::copy_backward(at, end, end + 1);
    *at = '.';
    return end + 1;
}

// %#g: as %g chooses between the two notations, but with all its digits.
char *putGeneralWithZeros(RealText &text, double value, int precision)
{
    const int digits = std::max(precision, 1);
    char *const end = put(text, value, std::chars_format::scientific, digits - 1);
    const char *mark = std::find(text.data(), end, 'e') + 1;
    int exponent = 0;
    std::from_chars(*mark == '+' ? mark + 1 : mark, end, exponent);
    if (exponent < -4 || exponent >= digits)
        return withPoint(text.data(), end, 'e');
    return withPoint(text.data(), put(text, value, std::chars_format::fixed, digits - 1 - exponent), 'e');
}

} // namespace

void appendSigned(TextBuffer &out, const FormatField &field, qint64 value)
{
    char digits[20];
    const quint64 magnitude = value < 0 ? 0 - quint64(value) : quint64(value);
    const char *end = std::to_chars(std::begin(digits), std::end(digits), magnitude).ptr;
    const std::string_view text(digits, std::size_t(end - digits));
    if (!field.isPlain())
        return appendInteger(out, field, sign(field, value < 0), text, false);
    if (value < 0)
        out.append(u'-');
    out.appendAscii(text);
}

void appendUnsigned(TextBuffer &out, const FormatField &field, quint64 value)
{
    char digits[22];
    const char16_t lower = field.letter | 0x20;
    char *end = std::to_chars(std::begin(digits), std::end(digits), value,
        lower == u'x'       ? 16
            : lower == u'o' ? 8
                            : 10)
                    .ptr;
    if (field.letter == u'X')
        makeUpper(digits, end);
    const std::string_view prefix = !field.alternate || lower != u'x' || value == 0 ? ""
        : field.letter == u'x'                                                      ? "0x"
                                                                                    : "0X";
    appendInteger(out, field, prefix, {digits, std::size_t(end - digits)}, field.alternate && lower == u'o');
}

void appendPointer(TextBuffer &out, const FormatField &field, quint64 value)
{
    char digits[16];
    const char *end = std::to_chars(std::begin(digits), std::end(digits), value, 16).ptr;
    appendNumber(out, field, {"0x", 0, {digits, std::size_t(end - digits)}, false});
}

void appendReal(TextBuffer &out, const FormatField &field, double value)
{
    const char16_t lower = field.letter | 0x20;
    const bool upper = field.letter != lower;
    const std::string_view minus = sign(field, std::signbit(value));
    if (!std::isfinite(value)) {
        const std::string_view word = std::isnan(value) ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
        return appendNumber(out, field, {minus, 0, word, false});
    }
    RealText text;
    const double magnitude = std::fabs(value);
    const int precision = field.precision < 0 ? 6 : field.precision;
    std::string_view prefix = minus;
    std::array<char, 3> hexPrefix{};
    char *end = nullptr;
    switch (lower) {
    case u'e': end = put(text, magnitude, std::chars_format::scientific, precision); break;
    case u'g':
        end = field.alternate ? putGeneralWithZeros(text, magnitude, precision)
                              : put(text, magnitude, std::chars_format::general, precision);
        break;
    case u'a':
        end = field.precision < 0
            ? std::to_chars(text.data(), text.data() + text.size() - 1, magnitude, std::chars_format::hex).ptr
            : put(text, magnitude, std::chars_format::hex, precision);
        std::copy(minus.begin(), minus.end(), hexPrefix.begin());
        hexPrefix[minus.size()] = '0';
        hexPrefix[minus.size() + 1] = upper ? 'X' : 'x';
        prefix = {hexPrefix.data(), minus.size() + 2};
        break;
    default:
        end = putUsualFixed(text, magnitude, precision);
        if (!end)
            end = put(text, magnitude, std::chars_format::fixed, precision);
    }
    if (field.alternate)
        end = withPoint(text.data(), end, lower == u'a' ? 'p' : 'e');
    if (upper)
        makeUpper(text.data(), end);
    appendNumber(out, field, {prefix, 0, {text.data(), std::size_t(end - text.data())}, true});
}

void appendText(TextBuffer &out, const FormatField &field, QStringView text)
{
    if (field.precision >= 0 && field.precision < text.size()) {
        qsizetype length = field.precision;
        if (length > 0 && text[length].isLowSurrogate() && text[length - 1].isHighSurrogate())
            --length;
        text = text.first(length);
    }
    const qsizetype missing = field.width - text.size();
    if (!field.left)
        out.appendFill(missing, u' ');
    out.append(text);
    if (field.left)
        out.appendFill(missing, u' ');
}

} // namespace kx
