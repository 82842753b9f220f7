// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringConverter>
#include <QtCore/QStringView>
#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace kx {

/// A text that is being put together; usual lengths stay on the stack.
class TextBuffer {
public:
    void append(char16_t unit) { m_units.append(unit); }
    void append(QStringView text) { std::copy_n(text.utf16(), text.size(), grow(text.size())); }
    void appendFill(qsizetype count, char16_t unit)
    {
        if (count > 0)
            std::fill_n(grow(count), count, unit);
    }
    void appendAscii(std::string_view text) { std::copy_n(text.data(), text.size(), grow(qsizetype(text.size()))); }

    /// Appends the bytes in front of `end` and of the first one beyond ASCII, in one pass; returns how many.
    qsizetype appendAsciiUntil(char end, QByteArrayView bytes)
    {
        const qsizetype before = m_units.size();
        char16_t *out = grow(bytes.size());
        qsizetype count = 0;
        for (; count < bytes.size() && bytes[count] != end && static_cast<unsigned char>(bytes[count]) < 0x80; ++count)
            out[count] = static_cast<unsigned char>(bytes[count]);
        m_units.resize(before + count);
        return count;
    }

    /// Bytes that are not UTF-8 become U+FFFD.
    void appendUtf8(QByteArrayView bytes)
    {
        if (bytes.isEmpty())
            return;
        char16_t *out = grow(bytes.size());
        unsigned char all = 0;
        for (const char byte : bytes) {
            all |= static_cast<unsigned char>(byte);
            *out++ = static_cast<unsigned char>(byte);
        }
        if (all < 0x80)
            return;
        m_units.resize(m_units.size() - bytes.size());
        QStringDecoder decoder(
            QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
        append(QStringView(QString(decoder(bytes))));
    }

    [[nodiscard]] QStringView view() const { return {m_units.constData(), m_units.size()}; }

private:
    // Adds units without values and tells where they begin. Doubles the room, as append() does and resize() does not.
    char16_t *grow(qsizetype count)
    {
        const qsizetype size = m_units.size();
        if (count > m_units.capacity() - size)
            m_units.reserve(std::max(size + count, 2 * size));
        m_units.resize(size + count);
        return m_units.data() + size;
    }

    QVarLengthArray<char16_t, 512> m_units;
};

} // namespace kx
