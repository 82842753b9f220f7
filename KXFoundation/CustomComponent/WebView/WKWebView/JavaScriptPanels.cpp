// SPDX-License-Identifier: MIT
#include "JavaScriptPanels.h"

#include <QtCore/QPointer>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace kx {

namespace {

/// The index of the button that closed the panel, or -1. Buttons stand in the order given, whatever the platform's
/// habit: those of one role without a meaning of its own are not rearranged. Escape chooses the last one.
int runPanel(QWidget *parent, const QString &message, const QStringList &buttons)
{
    const QPointer<QMessageBox> panel = new QMessageBox(parent ? parent->window() : nullptr);
    panel->setTextFormat(Qt::PlainText);
    panel->setText(message);
    for (const QString &text : buttons)
        panel->addButton(text, QMessageBox::ActionRole);
    const QList<QAbstractButton *> made = panel->buttons();
    panel->setDefaultButton(qobject_cast<QPushButton *>(made.first()));
    panel->setEscapeButton(made.last());
    panel->exec();
    if (!panel)
        return -1;
    const int chosen = int(panel->buttons().indexOf(panel->clickedButton()));
    delete panel;
    return chosen;
}

} // namespace

void runAlertPanel(QWidget *parent, const QString &message)
{
    runPanel(parent, message, {QStringLiteral("好")});
}

bool runConfirmPanel(QWidget *parent, const QString &message)
{
    return runPanel(parent, message, {QStringLiteral("确定"), QStringLiteral("取消")}) == 0;
}

} // namespace kx
