// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/NetworkInterfaces.h>

namespace kx {

/// 12 upper-case hex digits, or the text of the failure.
[[nodiscard]] QString macAddressText(const std::variant<LinkAddress, LinkFailure> &link);

} // namespace kx
