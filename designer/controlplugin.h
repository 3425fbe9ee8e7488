// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/control.h"

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QPointer>

class QDesignerFormEditorInterface;

/// What Designer is told about a control.
struct ControlEntry
{
    const char *className;
    const char *header;
    /// The icon's name among the plugin's pictures.
    const char *icon;
    const char *toolTip;
    Zel::Control *(*create)(QWidget *parent);
};

/// One control in Qt Designer.
///
/// On a form being edited the control is in design mode and calls nothing. A .ui file keeps one
/// property of it, `PropertyBagText`: whenever a person changes a property, the whole bag is
/// written and the single property is taken off the list of what is saved, because code made from
/// the file sets properties in run mode, where some refuse.
class ControlPlugin : public QDesignerCustomWidgetInterface
{
public:
    explicit ControlPlugin(const ControlEntry &entry)
        : m_entry(entry)
    {
    }

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override;
    QString domXml() const override;
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override;
    void initialize(QDesignerFormEditorInterface *core) override;

private:
    void keepBag(Zel::Control *control) const;

    ControlEntry m_entry;
    bool m_initialized = false;
    QPointer<QDesignerFormEditorInterface> m_core;
};

/// The entry of a control class.
template <typename ControlClass>
ControlEntry controlEntry(const char *header, const char *icon, const char *toolTip)
{
    return {ControlClass::staticMetaObject.className(), header, icon, toolTip,
            [](QWidget *parent) -> Zel::Control * { return new ControlClass(parent); }};
}
