// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/PixelMix.h>

namespace kx {

PixelMix avx2PixelMix()
{
    return nullptr;
}

} // namespace kx
