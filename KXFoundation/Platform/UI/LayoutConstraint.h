// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <memory>

namespace kx {

class ViewInterface;

/// A measure of a view that a constraint binds. Positions count in the superview from its left and from its top, so a
/// positive constant moves to the right and down, in right-to-left layouts too.
enum class LayoutAttribute { NotAnAttribute, Left, Right, Top, Bottom, CenterX, CenterY, Width, Height };

enum class LayoutRelation { Equal };

class LayoutConstraint;
using LayoutConstraintRef = std::shared_ptr<LayoutConstraint>;

/// A measure of a view that equals `multiplier` times a measure of another, plus `constant` (logical pixels).
///
/// While constraints are active, the superview places the views they name whenever it is resized: what is bound follows
/// from the constraints, what is not keeps first its size, then the place that its autoresizing mask gave it; `item`
/// goes where `toItem` is rather than the other way round. Where constraints contradict each other, the earlier one
/// wins. Meant for handfuls of views; the rest is what QLayout is for, and a view in a QLayout must not have any. Weak
/// towards its views. Main thread only.
class KX_UI_EXPORT LayoutConstraint : public std::enable_shared_from_this<LayoutConstraint> {
public:
    /// `item` is a subview; `toItem` is its superview, a view beside it, or null for a constant alone, with
    /// NotAnAttribute. Null when the two attributes do not fit together (a size and a position, or positions of the two
    /// directions), or when a number is not finite.
    [[nodiscard]] static LayoutConstraintRef constraintWithItem(ViewInterface *item, LayoutAttribute attribute,
        LayoutRelation relatedBy, ViewInterface *toItem, LayoutAttribute toAttribute, double multiplier,
        double constant);

    /// The constraints of a row or column of views, such as "H:|-0-[close(==14)]-gap-[zoom(==close)]-8-|". "H:" (which
    /// may be left out) goes from left to right, whatever the layout direction, "V:" from top to bottom. "|" is the
    /// superview; between views stands a distance, or nothing for none; in parentheses one or more sizes, with or
    /// without "==". A distance is a number or a name in `metrics`, a size also a name in `views`. Empty when the text
    /// is anything else, when a name is missing, or when a view at "|" has no superview.
    [[nodiscard]] static QList<LayoutConstraintRef> constraintsWithVisualFormat(
        const QString &format, const QHash<QString, double> &metrics, const QHash<QString, ViewInterface *> &views);

    /// Whether the constraint was activated and its views are where they were then.
    [[nodiscard]] bool isActive() const;
    /// Activating places the views at once; the superview keeps the constraint until it is deactivated. Does nothing
    /// when `item` has no superview or `toItem` is neither that nor beside it. Deactivating moves nothing.
    void setActive(bool active);
    /// Activates all, then places the views once. Null ones are left out.
    static void activateConstraints(const QList<LayoutConstraintRef> &constraints);

    [[nodiscard]] ViewInterface *firstItem() const;
    [[nodiscard]] LayoutAttribute firstAttribute() const { return m_attribute; }
    [[nodiscard]] ViewInterface *secondItem() const;
    [[nodiscard]] LayoutAttribute secondAttribute() const { return m_toAttribute; }
    [[nodiscard]] double multiplier() const { return m_multiplier; }
    [[nodiscard]] double constant() const { return m_constant; }

private:
    friend class ConstraintLayout;

    LayoutConstraint() = default;
    [[nodiscard]] bool fits() const;
    ViewInterface *add();

    QPointer<QWidget> m_item;
    QPointer<QWidget> m_toItem;
    QPointer<QWidget> m_superview; // where it is active
    LayoutAttribute m_attribute = LayoutAttribute::NotAnAttribute;
    LayoutAttribute m_toAttribute = LayoutAttribute::NotAnAttribute;
    double m_multiplier = 1;
    double m_constant = 0;
};

} // namespace kx
