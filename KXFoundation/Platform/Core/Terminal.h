// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringView>

namespace kx {

/// True when the process's standard output (file descriptor 1) is a terminal at this moment.
[[nodiscard]] bool standardOutputIsTerminal();

/// Writes the line and a line feed to standard error (file descriptor 2), in UTF-8 and in one piece where the system
/// takes it so. Goes past every stream buffer and message handler.
void writeLineToStandardError(QStringView line);

} // namespace kx
