// SPDX-License-Identifier: MIT
#include "Base64Codec.h"

namespace kx::base64 {

const Kernel *avx2Kernel()
{
    return nullptr;
}

} // namespace kx::base64
