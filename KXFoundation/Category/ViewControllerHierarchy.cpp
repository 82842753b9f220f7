// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/ViewControllerHierarchy.h>

#include <KXFoundation/Platform/UI/ViewController.h>

namespace kx {

ViewController *superParentViewController(ViewController *controller)
{
    while (controller && controller->parentViewController())
        controller = controller->parentViewController();
    return controller;
}

ViewController *subViewControllerWithClass(const ViewController *controller, const std::type_info &class_)
{
    const auto children = controller ? controller->childViewControllers() : QList<ViewController *>();
    for (ViewController *child : children) {
        if (typeid(*child) == class_)
            return child;
    }
    return nullptr;
}

} // namespace kx
