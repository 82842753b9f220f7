// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/LayoutConstraint.h>

#include <QtCore/QList>

namespace kx {

/// The active constraints of one superview, which owns this object.
class ConstraintLayout {
public:
    /// Made on first use.
    [[nodiscard]] static ConstraintLayout &of(ViewInterface &superview);

    void add(const LayoutConstraintRef &constraint) { m_constraints.append(constraint); }
    void remove(const LayoutConstraint &constraint);
    /// Gives every subview that a constraint names its frame.
    void apply(ViewInterface &superview);

private:
    QList<LayoutConstraintRef> m_constraints;
};

} // namespace kx
