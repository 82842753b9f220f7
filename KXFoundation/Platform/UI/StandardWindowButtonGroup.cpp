// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/StandardWindowButtonGroup.h>

namespace kx {

StandardWindowButtonGroup::StandardWindowButtonGroup() = default;

StandardWindowButtonGroup::~StandardWindowButtonGroup() = default;

} // namespace kx
