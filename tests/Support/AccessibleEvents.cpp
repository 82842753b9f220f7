// SPDX-License-Identifier: MIT
#include "Support/AccessibleEvents.h"

#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>

namespace {

AccessibleEvents::Handler listening;

void handle(QAccessibleEvent *event)
{
    listening(*event);
}

QPlatformAccessibility &platform()
{
    return *QGuiApplicationPrivate::platformIntegration()->accessibility();
}

} // namespace

AccessibleEvents::AccessibleEvents(const Handler &handler)
    : m_wasActive(QAccessible::isActive())
    , m_before(QAccessible::installUpdateHandler(handle))
{
    listening = handler;
    platform().setActive(true);
}

AccessibleEvents::~AccessibleEvents()
{
    platform().setActive(m_wasActive);
    QAccessible::installUpdateHandler(m_before);
    listening = {};
}
