// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <utility>

namespace kx {

/// A view that is a widget of class `Base` (QWidget or a subclass of it). Concrete classes derive from this and carry
/// the Q_OBJECT macro.
template <class Base> class KX_UI_EXPORT ViewOn : public Base, public ViewInterface {
public:
    template <class... Arguments>
    explicit ViewOn(Arguments &&...arguments)
        : Base(std::forward<Arguments>(arguments)...)
        , ViewInterface(static_cast<QWidget &>(*this))
    {
    }

    [[nodiscard]] QSize sizeHint() const override { return hintedSize(Base::sizeHint()); }

protected:
    bool event(QEvent *event) override
    {
        // Before the base class: some controls act on presses in event() itself.
        if (routeEvent(*event))
            return true;
        if (event->type() == QEvent::UngrabMouse) {
            mouseUngrabbed();
            return true;
        }
        awakenAt(event->type());
        if (event->type() != QEvent::Resize && event->type() != QEvent::Move)
            return Base::event(event);
        const QPointer<QWidget> alive(this);
        const bool handled = Base::event(event);
        if (alive)
            geometryChanged();
        return handled;
    }
    bool baseEvent(QEvent &event) override { return Base::event(&event); }
};

} // namespace kx
