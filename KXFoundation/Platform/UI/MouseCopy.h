// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QMouseEvent>

namespace kx {

/// What QMouseEvent::clone() makes, wherever it is wanted, and what Qt keeps to itself of it.
class MouseCopy : public QMouseEvent {
public:
    explicit MouseCopy(const QMouseEvent &event)
        : QMouseEvent(event)
    {
    }
    /// Of a press: whether the double click that it belongs to follows at once.
    [[nodiscard]] bool announcesDoubleClick() const { return m_doubleClick; }
};

} // namespace kx
