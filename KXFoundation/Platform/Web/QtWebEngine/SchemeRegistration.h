// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace kx {

/// False for what is no scheme, and for those that the engine itself serves. The case of letters does not count.
[[nodiscard]] bool mayBeCustomScheme(const QByteArray &name);

/// True for the schemes from which the engine loads documents by itself. The case of letters does not count.
[[nodiscard]] bool isLoadedByTheEngine(const QByteArray &name);

/// Makes custom schemes known to the engine as secure, local, open to cross-origin requests and with a host in their
/// URLs. The engine takes them only before the application object is made: later a scheme that is not known yet gets
/// one warning. Names are taken in lower case; ones that are not a scheme, or that the engine itself serves, get a
/// warning.
void registerSchemes(const QStringList &schemes);

} // namespace kx
