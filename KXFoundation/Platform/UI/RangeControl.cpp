// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/RangeControl.h>

#include <KXFoundation/Platform/UI/Event.h>

#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QAccessibleWidget>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace kx {

namespace {

class AccessibleRange : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    AccessibleRange(QWidget *widget, RangeControl &control)
        : QAccessibleWidget(widget, QAccessible::Slider)
        , m_control(control)
    {
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? m_control.valueText() : QAccessibleWidget::text(kind);
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
        if (widget()->isEnabled() && isNumber && !std::isnan(number) && state.maximum > state.minimum)
            m_control.setByUser(std::clamp(number, state.minimum, state.maximum));
    }

private:
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
    static const bool once = [] {
        QAccessible::installFactory(accessibleRange);
        return true;
    }();
    static_cast<void>(once);
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
    if (event.type() != EventType::KeyDown || !event.qtEvent() || !(state.maximum > state.minimum))
        return std::nullopt;
    const auto &key = static_cast<const QKeyEvent &>(*event.qtEvent());
    if (key.modifiers() & ~Qt::KeypadModifier)
        return std::nullopt;
    double wanted = state.value;
    switch (key.key()) {
    case Qt::Key_Left: // the controls run from left to right in every language
    case Qt::Key_Down: wanted -= state.step; break;
    case Qt::Key_Right:
    case Qt::Key_Up: wanted += state.step; break;
    case Qt::Key_PageDown: wanted -= state.pageStep; break;
    case Qt::Key_PageUp: wanted += state.pageStep; break;
    case Qt::Key_Home: wanted = state.minimum; break;
    case Qt::Key_End: wanted = state.maximum; break;
    default: return std::nullopt;
    }
    return std::isnan(wanted) ? state.minimum : std::clamp(wanted, state.minimum, state.maximum);
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
