// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/RangeControl.h>

#include <KXFoundation/Platform/UI/AccessibleControl.h>
#include <KXFoundation/Platform/UI/Event.h>

#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kx {

namespace {

class AccessibleRange : public AccessibleControl, public QAccessibleValueInterface {
public:
    AccessibleRange(QWidget *widget, RangeControl &control)
        : AccessibleControl(widget, QAccessible::Slider)
        , m_control(control)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : AccessibleControl::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_control.valueText() : AccessibleControl::text(kind);
    }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = AccessibleControl::state();
        state.readOnly = !m_control.rangeState().isAdjustable;
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = AccessibleControl::actionNames();
        if (isAdjustable(m_control.rangeState()))
            names << increaseAction() << decreaseAction();
        return names;
    }
    void doAction(const QString &action) override
    {
        const double step = m_control.rangeState().step;
        if (action == increaseAction())
            setCurrentValue(m_control.steppedBy(step));
        else if (action == decreaseAction())
            setCurrentValue(m_control.steppedBy(-step));
        else
            AccessibleControl::doAction(action);
    }
    [[nodiscard]] QVariant currentValue() const override { return m_control.rangeState().value; }
    [[nodiscard]] QVariant minimumValue() const override { return m_control.rangeState().minimum; }
    [[nodiscard]] QVariant maximumValue() const override { return m_control.rangeState().maximum; }
    [[nodiscard]] QVariant minimumStepSize() const override { return m_control.rangeState().step; }
    void setCurrentValue(const QVariant &value) override
    {
        bool isNumber = false;
        const double number = value.toDouble(&isNumber);
        const RangeState state = m_control.rangeState();
        if (isAdjustable(state) && isNumber && !std::isnan(number))
            m_control.setByUser(std::clamp(number, state.minimum, state.maximum));
    }

private:
    [[nodiscard]] bool isAdjustable(const RangeState &state) const
    {
        return widget()->isEnabled() && state.isAdjustable && state.maximum > state.minimum;
    }

    RangeControl &m_control;
};

// Asked about every object of the application, those of the web engine among them, whose classes have no run-time type
// information and would be a dynamic_cast's end.
QAccessibleInterface *accessibleRange(const QString &, QObject *object)
{
    auto *const control = qobject_cast<RangeControl *>(object);
    auto *const widget = qobject_cast<QWidget *>(object);
    return control && widget ? new AccessibleRange(widget, *control) : nullptr;
}

} // namespace

RangeControl::~RangeControl() = default;

void RangeControl::makeAccessible()
{
    QAccessible::installFactory(accessibleRange); // once, however often it is called
}

void RangeControl::valueWasChanged(QWidget &widget) const
{
    if (!QAccessible::isActive())
        return;
    QAccessibleValueChangeEvent event(&widget, rangeState().value);
    QAccessible::updateAccessibility(&event);
}

std::optional<double> RangeControl::valueForKey(const Event &event) const
{
    const RangeState state = rangeState();
    if (event.type() != EventType::KeyDown || !event.qtEvent() || !state.isAdjustable
        || !(state.maximum > state.minimum))
        return std::nullopt;
    const auto &key = static_cast<const QKeyEvent &>(*event.qtEvent());
    if (key.modifiers() & ~Qt::KeypadModifier)
        return std::nullopt;
    switch (key.key()) {
    case Qt::Key_Left: // the controls run from left to right in every language
    case Qt::Key_Down: return steppedBy(-state.step);
    case Qt::Key_Right:
    case Qt::Key_Up: return steppedBy(state.step);
    case Qt::Key_PageDown: return steppedBy(-state.pageStep);
    case Qt::Key_PageUp: return steppedBy(state.pageStep);
    case Qt::Key_Home: return state.minimum;
    case Qt::Key_End: return state.maximum;
    default: return std::nullopt;
    }
}

double RangeControl::steppedBy(double step) const
{
    const RangeState state = rangeState();
    if (!(state.maximum > state.minimum))
        return state.value;
    for (double way = step;; way *= 2) {
        const double wanted = state.value + way;
        if (std::isnan(wanted))
            return state.minimum;
        const double held = std::clamp(wanted, state.minimum, state.maximum);
        const double kept = keptValue(held);
        const bool moves = step > 0 ? kept > state.value : kept < state.value;
        if (moves || way == 0 || std::isinf(way))
            return held;
    }
}

QString timeText(double seconds)
{
    const auto whole = seconds > 0 && seconds < 1e15 ? static_cast<qint64>(seconds) : 0;
    const auto twoDigits = [](qint64 number) { return QString::number(number).rightJustified(2, u'0'); };
    const qint64 minutes = whole / 60;
    return minutes < 60
        ? QString(QString::number(minutes) + u':' + twoDigits(whole % 60))
        : QString(QString::number(minutes / 60) + u':' + twoDigits(minutes % 60) + u':' + twoDigits(whole % 60));
}

} // namespace kx
