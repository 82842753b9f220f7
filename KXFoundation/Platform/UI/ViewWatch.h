// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>

class QWidget;

namespace kx {

/// Sees the events of all widgets before they do, and tells views what happens to them and around them: that the
/// window they are in is shown or has become another one. Goes with the application object.
class ViewWatch : public QObject {
    Q_OBJECT

public:
    /// Does nothing when there is one already.
    static void start();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit ViewWatch(QObject &application);

    static void settleWindows(QWidget &widget, bool all);
};

} // namespace kx
