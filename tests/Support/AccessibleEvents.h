// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/QAccessible>

#include <functional>

/// Stands for assistive technology that listens: as long as it lives, each accessible event of the process goes to its
/// handler, and not to the platform. One at a time.
class AccessibleEvents {
public:
    using Handler = std::function<void(QAccessibleEvent &event)>;

    explicit AccessibleEvents(const Handler &handler);
    ~AccessibleEvents();
    Q_DISABLE_COPY_MOVE(AccessibleEvents)

private:
    const bool m_wasActive;
    const QAccessible::UpdateHandler m_before;
};
