// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/AccessibleControl.h>

namespace kx {

class Button;

/// What assistive technology meets for a button: it reads name and state, and presses.
class AccessibleButton : public AccessibleControl {
public:
    /// Lets the application know of it. Called by every button.
    static void install();
    // To be called after a change.
    static void nameWasChanged(Button &button);
    static void stateWasChanged(Button &button);

    explicit AccessibleButton(Button &button);

    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &action) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &action) const override;

protected:
    [[nodiscard]] QString ownName() const override;

private:
    [[nodiscard]] Button &button() const;
};

} // namespace kx
