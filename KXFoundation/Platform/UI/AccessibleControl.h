// SPDX-License-Identifier: MIT
#pragma once

#include <QtWidgets/QAccessibleWidget>

namespace kx {

/// What assistive technology meets for a control: named by the application, else by what the control shows, else by its
/// tool tip, which then does not describe it once more.
class AccessibleControl : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QString text(QAccessible::Text kind) const override;

protected:
    /// The name of a control that the application has not named. May be rich text, as tool tips may. Here: the tool
    /// tip.
    [[nodiscard]] virtual QString ownName() const;

private:
    [[nodiscard]] QString name() const;
};

} // namespace kx
