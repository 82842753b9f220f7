// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

namespace kx {

/// What the system tells about the machine and its user; null where it tells nothing. `root` is where the system's own
/// files are looked for.

/// The machine's UUID in upper case, 8-4-4-4-12. On Linux the firmware's (readable to root alone on most machines),
/// else the installation's machine-id in the same form.
[[nodiscard]] QString hardwareUuid(const QString &root = QStringLiteral("/"));

/// The serial number that the maker gave the machine. On Linux the firmware's, which only root may read on most
/// machines, or a device tree's. The fillers that makers forget there count as none.
[[nodiscard]] QString hardwareSerialNumber(const QString &root = QStringLiteral("/"));

/// What the processor calls itself.
[[nodiscard]] QString processorBrand(const QString &root = QStringLiteral("/"));

/// The name under which the process's effective user logs in.
[[nodiscard]] QString loginName();

} // namespace kx
