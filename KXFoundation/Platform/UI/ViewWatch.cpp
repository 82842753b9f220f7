// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewWatch.h>

#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace kx {

namespace {

QPointer<ViewWatch> theWatch;

// The views at and below a widget, parents first; only those below hidden widgets unless all are wanted.
void collect(QWidget &widget, bool all, QList<QPointer<QWidget>> &views)
{
    if (ViewInterface::of(&widget))
        views.append(&widget);
    for (QObject *child : widget.children()) {
        auto *inner = qobject_cast<QWidget *>(child);
        if (inner && !inner->isWindow() && (all || !inner->isVisible()))
            collect(*inner, all, views);
    }
}

} // namespace

void ViewWatch::start()
{
    if (!theWatch)
        theWatch = new ViewWatch(*QCoreApplication::instance());
}

ViewWatch::ViewWatch(QObject &application)
    : QObject(&application)
{
    application.installEventFilter(this);
}

bool ViewWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWidgetType())
        return false;
    auto &widget = static_cast<QWidget &>(*watched);
    switch (event->type()) {
    case QEvent::Show:
        // What is visible below it has had an event of its own.
        settleWindows(widget, false);
        break;
    case QEvent::ParentChange: settleWindows(widget, true); break;
    default: break;
    }
    return false;
}

void ViewWatch::settleWindows(QWidget &widget, bool all)
{
    QList<QPointer<QWidget>> views;
    collect(widget, all, views);
    for (const QPointer<QWidget> &view : std::as_const(views)) {
        if (view)
            ViewInterface::of(view)->settleWindow();
    }
}

} // namespace kx
