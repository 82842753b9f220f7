// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextContainer.h>

#include <algorithm>
#include <cmath>

namespace kx {

void TextContainer::setWidth(double width)
{
    m_width = std::isnan(width) ? std::numeric_limits<double>::infinity() : std::max(width, 0.0);
}

} // namespace kx
