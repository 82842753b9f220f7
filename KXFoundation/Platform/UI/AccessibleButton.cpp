// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/AccessibleButton.h>

#include <KXFoundation/Platform/UI/Button.h>

namespace kx {

namespace {

// Only for the class itself: what somebody made for a subclass goes first.
QAccessibleInterface *accessibleButton(const QString &className, QObject *object)
{
    if (className != QLatin1String(Button::staticMetaObject.className()))
        return nullptr;
    return new AccessibleButton(*qobject_cast<Button *>(object));
}

} // namespace

void AccessibleButton::install()
{
    QAccessible::installFactory(accessibleButton); // once, however often it is called
}

void AccessibleButton::nameWasChanged(Button &button)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&button, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&event);
}

void AccessibleButton::stateWasChanged(Button &button)
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(&button, changed);
    QAccessible::updateAccessibility(&event);
}

AccessibleButton::AccessibleButton(Button &button)
    : AccessibleControl(&button, QAccessible::Button)
{
}

QAccessible::State AccessibleButton::state() const
{
    QAccessible::State state = AccessibleControl::state();
    const std::optional<bool> checked = button().checkedState();
    state.checkable = checked.has_value();
    state.checked = checked.value_or(false);
    state.pressed = button().isDown();
    return state;
}

QStringList AccessibleButton::actionNames() const
{
    QStringList names = AccessibleControl::actionNames();
    if (button().isEnabled())
        names.prepend(pressAction());
    return names;
}

void AccessibleButton::doAction(const QString &action)
{
    if (action == pressAction())
        button().animateClick(); // later: its handlers may take their time, or delete it
    else
        AccessibleControl::doAction(action);
}

QStringList AccessibleButton::keyBindingsForAction(const QString &action) const
{
    const QKeySequence shortcut = button().shortcut();
    return action == pressAction() && !shortcut.isEmpty() ? QStringList{shortcut.toString(QKeySequence::NativeText)}
                                                          : QStringList();
}

QString AccessibleButton::ownName() const
{
    return button().spokenName();
}

Button &AccessibleButton::button() const
{
    return *static_cast<Button *>(widget());
}

} // namespace kx
