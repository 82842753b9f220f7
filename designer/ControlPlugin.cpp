// SPDX-License-Identifier: MIT
#include "ControlPlugin.h"

QString ControlPlugin::domXml() const
{
    return QStringLiteral("<ui language=\"c++\">"
                          "<widget class=\"%1\" name=\"%2\">"
                          "<property name=\"geometry\"><rect>"
                          "<x>0</x><y>0</y><width>%3</width><height>%4</height>"
                          "</rect></property>"
                          "<property name=\"awakesFromNib\"><bool>true</bool></property>"
                          "</widget>"
                          "</ui>")
        .arg(m_control.className, m_control.objectName)
        .arg(m_control.size.width())
        .arg(m_control.size.height());
}

QList<QDesignerCustomWidgetInterface *> ControlPlugins::all() const
{
    QList<QDesignerCustomWidgetInterface *> plugins;
    for (ControlPlugin &plugin : m_plugins)
        plugins.append(&plugin);
    return plugins;
}
