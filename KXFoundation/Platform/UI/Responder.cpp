// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Responder.h>

namespace kx {

Responder::Responder() = default;

Responder::~Responder() = default;

Responder *Responder::nextResponder() const
{
    return nullptr;
}

} // namespace kx
