// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringList>

namespace kx {

/// Makes custom schemes known to the engine as secure, local, open to cross-origin requests and with a host in their
/// URLs. The engine takes them only before the application object is made: later a scheme that is not known yet gets
/// one warning. Names are taken in lower case; ones that are not a scheme, or that the engine itself serves, get a
/// warning.
void registerSchemes(const QStringList &schemes);

} // namespace kx
