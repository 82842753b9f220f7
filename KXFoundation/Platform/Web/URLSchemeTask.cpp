// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/URLSchemeTask.h>

namespace kx {

URLSchemeTask::~URLSchemeTask() = default;

URLSchemeHandler::URLSchemeHandler()
    : m_self(this, [](URLSchemeHandler *) {}) // only its expiry is of use
{
}

URLSchemeHandler::~URLSchemeHandler() = default;

} // namespace kx
