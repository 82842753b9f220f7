// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/Core/FormatField.h>

namespace kx {

/// Reads an argument as the types that conversions ask for, and appends it.
class FormatValue {
public:
    explicit FormatValue(const FormatArgument &argument)
        : m_argument(argument)
    {
    }

    /// As printf reads it for %d, with the argument's own width; a real is cut towards zero and kept in range.
    [[nodiscard]] qint64 toSigned() const;
    void append(TextBuffer &out, const FormatField &field) const;

private:
    using Kind = FormatArgument::Kind;

    [[nodiscard]] bool isInteger() const
    {
        return m_argument.m_kind <= Kind::Unsigned || m_argument.m_kind == Kind::Pointer;
    }
    [[nodiscard]] bool isNumber() const { return m_argument.m_kind <= Kind::Pointer; }
    [[nodiscard]] quint64 toUnsigned() const;
    [[nodiscard]] double toReal() const;
    void appendCharacter(TextBuffer &out, const FormatField &field) const;
    void appendDescription(TextBuffer &out, const FormatField &field) const;

    const FormatArgument &m_argument;
};

} // namespace kx
