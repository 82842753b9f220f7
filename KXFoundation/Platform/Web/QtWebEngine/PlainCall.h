// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QStringView>

namespace kx {

/// Whether a script is nothing but a call of a page's function with JSON arguments, `a.b.c(…);`, alone or as the body
/// of `if (a.b) {…}`. Such a script is certain to compile wherever a statement may stand, cannot end the construct that
/// it is put into, and declares nothing, so that several can be compiled as one. False for many scripts that would do.
[[nodiscard]] bool isPlainCall(QStringView script);

} // namespace kx
