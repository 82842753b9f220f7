// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QIcon>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <vector>

/// What one control says of itself in Designer.
struct Control {
    QString className;
    QString includeFile;
    QString objectName; ///< what Designer calls a new one, with a number if needed
    QString toolTip;
    QSize size; ///< of a new one
    bool isContainer;
    QWidget *(*make)(QWidget *parent);
};

/// `Control::make` for a class.
template <class Class> QWidget *make(QWidget *parent)
{
    return new Class(parent);
}

/// Offers one control to Designer. Forms that get a control from it set its awakesFromNib.
class ControlPlugin : public QDesignerCustomWidgetInterface {
public:
    explicit ControlPlugin(const Control &control)
        : m_control(control)
    {
    }

    [[nodiscard]] QString name() const override { return m_control.className; }
    [[nodiscard]] QString group() const override { return QStringLiteral("KXFoundation"); }
    [[nodiscard]] QString toolTip() const override { return m_control.toolTip; }
    [[nodiscard]] QString whatsThis() const override { return m_control.toolTip; }
    [[nodiscard]] QString includeFile() const override { return m_control.includeFile; }
    [[nodiscard]] QIcon icon() const override { return {}; }
    [[nodiscard]] bool isContainer() const override { return m_control.isContainer; }
    [[nodiscard]] QWidget *createWidget(QWidget *parent) override { return m_control.make(parent); }
    [[nodiscard]] QString domXml() const override;

private:
    Control m_control;
};

/// The plugins of several controls, as Designer's collections want them.
class ControlPlugins {
public:
    explicit ControlPlugins(const std::vector<Control> &controls)
        : m_plugins(controls.begin(), controls.end())
    {
    }

    /// Owned here.
    [[nodiscard]] QList<QDesignerCustomWidgetInterface *> all() const;

private:
    mutable std::vector<ControlPlugin> m_plugins;
};
