// SPDX-License-Identifier: MIT
#pragma once

#include "ControlPlugin.h"

#include <QtCore/QObject>

/// The controls of KXFoundation::UI.
class UIControls : public QObject, public QDesignerCustomWidgetCollectionInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetCollectionInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    UIControls();
    [[nodiscard]] QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return m_plugins.all(); }

private:
    const ControlPlugins m_plugins;
};
