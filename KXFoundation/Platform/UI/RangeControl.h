// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QObject>
#include <QtCore/QString>

#include <optional>

class QWidget;

namespace kx {

class Event;

/// Where a control stands that lets its user choose a number.
struct RangeState {
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    double step = 0; ///< of the arrow keys
    double pageStep = 0; ///< of page up and page down
    bool isAdjustable = true; ///< by its user
};

/// What keyboard and assistive technology need of such a control. A widget class that implements it, and names it in
/// Q_INTERFACES, is accessible as a slider once makeAccessible() was called.
class KX_UI_EXPORT RangeControl {
public:
    virtual ~RangeControl();

    [[nodiscard]] virtual RangeState rangeState() const = 0;
    /// Takes a value as if the user had dragged there; it is within the range. Does nothing while the user may not, or
    /// is dragging.
    virtual void setByUser(double value) = 0;
    /// What rangeState() has for a value after setByUser(): the nearest one that the control can keep.
    [[nodiscard]] virtual double keptValue(double value) const { return value; }
    /// The present value for people.
    [[nodiscard]] virtual QString valueText() const = 0;
    /// The value a step above or, for `step` below 0, below the present one, within the range. Where the control cannot
    /// keep a value so near, a farther one that it can.
    [[nodiscard]] double steppedBy(double step) const;

protected:
    /// Lets the accessibility of the application know such controls. To be called by constructors.
    static void makeAccessible();
    /// Tells assistive technology of a new value. `widget` is the control itself.
    void valueWasChanged(QWidget &widget) const;
    /// The value that a key asks for: arrows, page up and down, home and end, within the range. Absent for other keys,
    /// for keys with modifiers, and when there is no range or its user may not choose.
    [[nodiscard]] std::optional<double> valueForKey(const Event &event) const;
};

/// Hours (from one on), minutes and seconds: "1:02:03", "2:03". Negative and non-finite values count as 0.
[[nodiscard]] KX_UI_EXPORT QString timeText(double seconds);

} // namespace kx

Q_DECLARE_INTERFACE(kx::RangeControl, "KXFoundation.RangeControl")
