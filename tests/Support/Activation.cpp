// SPDX-License-Identifier: MIT
#include "Support/Activation.h"

#include <QtGui/qpa/qwindowsysteminterface.h>
#include <QtWidgets/QWidget>

void activate(QWidget *window)
{
    QWindowSystemInterface::handleWindowActivated<QWindowSystemInterface::SynchronousDelivery>(
        window ? window->windowHandle() : nullptr);
}
