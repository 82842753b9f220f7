// SPDX-License-Identifier: MIT
#include <KXFoundation/UIBase/WindwoController/PNBaseWindowController.h>

#include <KXFoundation/Platform/UI/LayoutConstraint.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/Platform/UI/Window.h>

using kx::LayoutAttribute;
using kx::LayoutConstraint;
using kx::LayoutRelation;

PNBaseWindowController::~PNBaseWindowController() = default;

void PNBaseWindowController::windowDidLoad()
{
    kx::WindowController::windowDidLoad();
    kx::StandardWindowButton *close = window()->standardWindowButton(kx::WindowButton::Close);
    if (!close)
        return;
    close->setTranslatesAutoresizingMaskIntoConstraints(false);
    constexpr double inset = 12;
    const auto pin = [close](LayoutAttribute edge) {
        return LayoutConstraint::constraintWithItem(
            close, edge, LayoutRelation::Equal, close->superview(), edge, 1, inset);
    };
    LayoutConstraint::activateConstraints({pin(LayoutAttribute::Left), pin(LayoutAttribute::Top)});
}
