// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/TextBuffer.h>

namespace kx {

/// One conversion of a format, without its argument.
struct FormatField {
    /// A width or precision beyond this is cut, so that a hostile format cannot exhaust memory.
    static constexpr int widest = 4096;

    bool left = false, plus = false, blank = false, alternate = false, zero = false;
    int width = 0;
    int precision = -1; // below 0: none given
    char16_t letter = 0;

    [[nodiscard]] bool isPlain() const
    {
        return width == 0 && precision < 0 && !left && !plus && !blank && !alternate && !zero;
    }
};

// Each appends one value as printf prints it for the field's letter.
void appendSigned(TextBuffer &out, const FormatField &field, qint64 value);
void appendUnsigned(TextBuffer &out, const FormatField &field, quint64 value);
void appendReal(TextBuffer &out, const FormatField &field, double value);
void appendPointer(TextBuffer &out, const FormatField &field, quint64 value);
/// Width and precision count UTF-16 units; a precision never cuts a surrogate pair.
void appendText(TextBuffer &out, const FormatField &field, QStringView text);

} // namespace kx
