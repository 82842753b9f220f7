// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextStorage.h>

namespace kx {

void TextStorage::setAttributedString(const AttributedString &attributedString)
{
    m_attributedString = attributedString;
    ++m_revision;
}

} // namespace kx
