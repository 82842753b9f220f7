// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ConstraintLayout.h>

#include <KXFoundation/Platform/UI/LinearEquations.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <algorithm>
#include <utility>

namespace kx {

namespace {

// Each view has four unknowns: where its left and its top edge are, its width and its height.
enum Unknown { X, Y, Width, Height, UnknownsPerView };

/// An attribute is a position plus a share of a size, or a size alone.
struct Measure {
    Unknown position;
    Unknown size;
    double positions;
    double sizes;
};

Measure measureOf(LayoutAttribute attribute)
{
    switch (attribute) {
    case LayoutAttribute::Left: return {X, Width, 1, 0};
    case LayoutAttribute::Right: return {X, Width, 1, 1};
    case LayoutAttribute::CenterX: return {X, Width, 1, 0.5};
    case LayoutAttribute::Top: return {Y, Height, 1, 0};
    case LayoutAttribute::Bottom: return {Y, Height, 1, 1};
    case LayoutAttribute::CenterY: return {Y, Height, 1, 0.5};
    case LayoutAttribute::Width: return {X, Width, 0, 1};
    case LayoutAttribute::Height: return {Y, Height, 0, 1};
    case LayoutAttribute::NotAnAttribute: break;
    }
    return {X, Width, 0, 0};
}

} // namespace

ConstraintLayout &ConstraintLayout::of(ViewInterface &superview)
{
    if (!superview.m_constraints)
        superview.m_constraints = std::make_unique<ConstraintLayout>();
    return *superview.m_constraints;
}

void ConstraintLayout::remove(const LayoutConstraint &constraint)
{
    m_constraints.removeIf([&constraint](const LayoutConstraintRef &kept) { return kept.get() == &constraint; });
}

void ConstraintLayout::apply(ViewInterface &superview)
{
    QList<QPointer<QWidget>> views;
    QList<LayoutConstraintRef> active;
    const auto indexOf = [&](const QPointer<QWidget> &view) {
        if (!views.contains(view))
            views.append(view);
        return int(views.indexOf(view)) * UnknownsPerView;
    };
    for (const LayoutConstraintRef &constraint : std::as_const(m_constraints)) {
        if (!constraint->fits())
            continue;
        active.append(constraint);
        for (const QPointer<QWidget> &view : {constraint->m_item, constraint->m_toItem}) {
            if (view && view != superview.widget())
                indexOf(view);
        }
    }

    const double height = superview.bounds().height();
    LinearEquations equations(int(views.size()) * UnknownsPerView);
    QList<int> leading; // unknowns that others are bound to
    for (const LayoutConstraintRef &constraint : std::as_const(active)) {
        LinearEquations::Row row = equations.row(constraint->m_constant);
        const Measure first = measureOf(constraint->m_attribute);
        const int item = indexOf(constraint->m_item);
        row.factors[item + first.position] += first.positions;
        row.factors[item + first.size] += first.sizes;
        const Measure second = measureOf(constraint->m_toAttribute);
        const double times = constraint->m_multiplier;
        if (constraint->m_toItem == superview.widget()) {
            row.sum += times * second.sizes * (second.size == Width ? superview.bounds().width() : height);
        } else if (constraint->m_toItem) {
            const int to = indexOf(constraint->m_toItem);
            row.factors[to + second.position] -= times * second.positions;
            row.factors[to + second.size] -= times * second.sizes;
            leading << to + second.size << to + second.position;
        }
        equations.add(std::move(row));
    }

    // What is left open keeps its size, and then its place; where both ends of a constraint are open, the end that the
    // other is bound to.
    QList<double> present;
    for (const QPointer<QWidget> &view : std::as_const(views)) {
        const QRectF place = superview.widgetRect(ViewInterface::of(view)->frame());
        present << place.x() << place.y() << place.width() << place.height();
    }
    for (const bool sizes : {true, false}) {
        const auto keep = [&](int unknown) {
            if ((unknown % UnknownsPerView >= Width) == sizes)
                equations.set(unknown, present.at(unknown));
        };
        std::for_each(leading.cbegin(), leading.cend(), keep);
        for (int unknown = 0; unknown < present.size(); ++unknown)
            keep(unknown);
    }

    const QList<double> solved = equations.solution();
    for (int i = 0; i < views.size(); ++i) {
        const double *at = solved.constData() + qsizetype(i) * UnknownsPerView;
        if (ViewInterface *view = ViewInterface::of(views.at(i)))
            view->setFrame(superview.widgetRect({at[X], at[Y], at[Width], at[Height]}));
    }
}

} // namespace kx
