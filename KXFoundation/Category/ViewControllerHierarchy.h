// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <typeinfo>

namespace kx {

class ViewController;

// Main thread only.

/// The topmost ancestor: the controller itself when it has no parent. Null for null.
[[nodiscard]] KX_UI_EXPORT ViewController *superParentViewController(ViewController *controller);

/// The first child, in the order in which they were added, whose class is exactly that one; borrowed. Null without one,
/// and for null. Deliberate: a child of a subclass does not count.
[[nodiscard]] KX_UI_EXPORT ViewController *subViewControllerWithClass(
    const ViewController *controller, const std::type_info &class_);

/// The same with the class as the template's argument, which is the type of the answer as well.
template <class Class> [[nodiscard]] Class *subViewControllerWithClass(const ViewController *controller)
{
    return static_cast<Class *>(subViewControllerWithClass(controller, typeid(Class)));
}

} // namespace kx
