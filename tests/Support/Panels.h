// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <functional>

namespace kx::test {

/// Does something with the panel that opens next, as a user would: from the event loop that runs while it is open.
inline void whenPanelOpens(const std::function<void(QMessageBox *)> &action)
{
    auto *poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, action] {
        auto *panel = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!panel || !panel->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        action(panel);
    });
    poll->start(1);
}

} // namespace kx::test
