// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtWidgets/QWidget>

#include <utility>

/// Counts the events of one type that a widget gets.
class ReceivedEvents : public QObject {
public:
    ReceivedEvents(QWidget &widget, QEvent::Type type)
        : m_type(type)
    {
        widget.installEventFilter(this);
    }

    /// Those since the last call, the posted ones included.
    int taken()
    {
        QCoreApplication::processEvents();
        return std::exchange(m_count, 0);
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        m_count += event->type() == m_type ? 1 : 0;
        return false;
    }

private:
    const QEvent::Type m_type;
    int m_count = 0;
};
