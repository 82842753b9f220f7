// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Strings.h>

namespace kx {

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

} // namespace kx
