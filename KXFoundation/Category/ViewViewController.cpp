// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ViewViewController.h>

#include <KXFoundation/Platform/UI/ViewController.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

namespace kx {

ViewController *viewController(const ViewInterface *view)
{
    Responder *responder = view ? view->nextResponder() : nullptr;
    while (responder && !dynamic_cast<ViewController *>(responder)) {
        responder = responder->nextResponder();
        if (responder && responder->nextResponder() == responder)
            break; // a chain may also end in a link that leads to itself
    }
    return dynamic_cast<ViewController *>(responder);
}

} // namespace kx
