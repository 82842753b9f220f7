// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/Platform/Core/TextBuffer.h>

namespace kx {

/// formatArguments() behind what the buffer already holds.
void appendFormatted(TextBuffer &out, QStringView format, std::span<const FormatArgument> arguments);
void appendFormatted(TextBuffer &out, const char *utf8Format, std::span<const FormatArgument> arguments);

} // namespace kx
