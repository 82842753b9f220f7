// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

class QWidget;

/// The dialogs that a page's script opens. Modal to the application; they return when they are closed, and may find
/// every view gone then. The text is shown as it is, never as mark-up. They go with `parent`'s window.
namespace kx {

void runAlertPanel(QWidget *parent, const QString &message);

/// True unless "取消" was chosen, as Escape and the window's close button do too, or the dialog went with its parent.
[[nodiscard]] bool runConfirmPanel(QWidget *parent, const QString &message);

} // namespace kx
