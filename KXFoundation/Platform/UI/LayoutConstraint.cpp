// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/LayoutConstraint.h>

#include <KXFoundation/Platform/UI/ConstraintLayout.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>
#include <KXFoundation/Platform/UI/VisualFormat.h>

#include <cmath>

namespace kx {

namespace {

enum class Kind { None, Horizontal, Vertical, Size };

Kind kindOf(LayoutAttribute attribute)
{
    switch (attribute) {
    case LayoutAttribute::NotAnAttribute: break;
    case LayoutAttribute::Left:
    case LayoutAttribute::Right:
    case LayoutAttribute::CenterX: return Kind::Horizontal;
    case LayoutAttribute::Top:
    case LayoutAttribute::Bottom:
    case LayoutAttribute::CenterY: return Kind::Vertical;
    case LayoutAttribute::Width:
    case LayoutAttribute::Height: return Kind::Size;
    }
    return Kind::None;
}

ViewInterface *viewOf(const QPointer<QWidget> &widget)
{
    return ViewInterface::of(widget);
}

} // namespace

LayoutConstraintRef LayoutConstraint::constraintWithItem(ViewInterface *item, LayoutAttribute attribute, LayoutRelation,
    ViewInterface *toItem, LayoutAttribute toAttribute, double multiplier, double constant)
{
    const Kind kind = kindOf(attribute);
    const Kind toKind = toItem ? kind : Kind::None;
    if (!item || kind == Kind::None || kindOf(toAttribute) != toKind || !std::isfinite(multiplier)
        || !std::isfinite(constant))
        return nullptr;
    LayoutConstraintRef made(new LayoutConstraint);
    made->m_item = item->widget();
    made->m_toItem = toItem ? toItem->widget() : nullptr;
    made->m_attribute = attribute;
    made->m_toAttribute = toAttribute;
    made->m_multiplier = multiplier;
    made->m_constant = constant;
    return made;
}

QList<LayoutConstraintRef> LayoutConstraint::constraintsWithVisualFormat(
    const QString &format, const QHash<QString, double> &metrics, const QHash<QString, ViewInterface *> &views)
{
    return VisualFormat(format, metrics, views).constraints();
}

bool LayoutConstraint::fits() const
{
    if (!m_superview || !m_item || m_item->parentWidget() != m_superview)
        return false;
    if (m_toAttribute == LayoutAttribute::NotAnAttribute || m_toItem == m_superview)
        return true;
    return m_toItem && m_toItem->parentWidget() == m_superview;
}

bool LayoutConstraint::isActive() const
{
    return fits();
}

// The superview that now has to place its subviews; null when nothing was added.
ViewInterface *LayoutConstraint::add()
{
    ViewInterface *item = viewOf(m_item);
    ViewInterface *superview = item ? item->superview() : nullptr;
    if (!superview || isActive())
        return nullptr;
    setActive(false);
    m_superview = superview->widget();
    if (!fits()) {
        m_superview = nullptr;
        return nullptr;
    }
    ConstraintLayout::of(*superview).add(shared_from_this());
    return superview;
}

void LayoutConstraint::setActive(bool active)
{
    if (active) {
        activateConstraints({shared_from_this()});
    } else if (ViewInterface *superview = viewOf(m_superview)) {
        m_superview = nullptr;
        ConstraintLayout::of(*superview).remove(*this);
    }
}

void LayoutConstraint::activateConstraints(const QList<LayoutConstraintRef> &constraints)
{
    QList<QPointer<QWidget>> superviews;
    for (const LayoutConstraintRef &constraint : constraints) {
        ViewInterface *superview = constraint ? constraint->add() : nullptr;
        if (superview && !superviews.contains(superview->widget()))
            superviews.append(superview->widget());
    }
    for (const QPointer<QWidget> &superview : std::as_const(superviews)) {
        if (ViewInterface *view = viewOf(superview))
            ConstraintLayout::of(*view).apply(*view);
    }
}

ViewInterface *LayoutConstraint::firstItem() const
{
    return viewOf(m_item);
}

ViewInterface *LayoutConstraint::secondItem() const
{
    return viewOf(m_toItem);
}

} // namespace kx
