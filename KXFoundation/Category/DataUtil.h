// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace kx {

/// MD5 of the bytes (RFC 1321) as 32 lower-case hex digits.
[[nodiscard]] KX_CORE_EXPORT QString md5Hash(const QByteArray &data);

} // namespace kx
