// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "designer/controlplugin.h"

#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowCursorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerPropertySheetExtension>
#include <QtDesigner/QExtensionManager>

#include <QMetaProperty>
#include <QTimer>

namespace {

const QString bagProperty = QStringLiteral("PropertyBagText");

/// Takes the control's own properties off the list of what Designer saves.
void forgetSingleProperties(QDesignerFormEditorInterface &core, Zel::Control &control)
{
    auto *sheet =
        qt_extension<QDesignerPropertySheetExtension *>(core.extensionManager(), &control);
    if (!sheet)
        return;
    const QMetaObject *meta = control.metaObject();
    for (int i = Zel::Control::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const int index = sheet->indexOf(QString::fromLatin1(meta->property(i).name()));
        if (index >= 0)
            sheet->setChanged(index, false);
    }
}

} // namespace

QString ControlPlugin::name() const
{
    return QString::fromLatin1(m_entry.className);
}

QString ControlPlugin::group() const
{
    return QStringLiteral("ZelWebServiceControls");
}

QString ControlPlugin::toolTip() const
{
    return QCoreApplication::translate("ControlPlugin", m_entry.toolTip);
}

QString ControlPlugin::whatsThis() const
{
    return toolTip();
}

QString ControlPlugin::includeFile() const
{
    return QString::fromLatin1(m_entry.header);
}

QIcon ControlPlugin::icon() const
{
    return QIcon(QStringLiteral(":/zel/designer/%1.svg").arg(QLatin1String(m_entry.icon)));
}

bool ControlPlugin::isContainer() const
{
    return false;
}

QString ControlPlugin::domXml() const
{
    const QString bare = name().section(QStringLiteral("::"), -1);
    const QString objectName = bare.left(1).toLower() + bare.mid(1);
    return QStringLiteral("<ui language=\"c++\"><widget class=\"%1\" name=\"%2\"/></ui>")
        .arg(name(), objectName);
}

QWidget *ControlPlugin::createWidget(QWidget *parent)
{
    Zel::Control *control = m_entry.create(parent);
    if (m_core) { // a form loaded at run time comes without an editor
        control->setMode(Zel::Control::Mode::Design);
        keepBag(control);
    }
    return control;
}

void ControlPlugin::keepBag(Zel::Control *control) const
{
    const QPointer<QDesignerFormEditorInterface> core = m_core;
    const auto store = [core, control] {
        auto *form = QDesignerFormWindowInterface::findFormWindow(control);
        if (!form || !core)
            return;
        form->cursor()->setWidgetProperty(control, bagProperty, control->propertyBagText());
        forgetSingleProperties(*core, *control);
    };
    // Later: the change is part of an editing command that has to end first.
    QObject::connect(control, &Zel::Control::changed, control,
                     [control, store] { QTimer::singleShot(0, control, store); });
}

bool ControlPlugin::isInitialized() const
{
    return m_initialized;
}

void ControlPlugin::initialize(QDesignerFormEditorInterface *core)
{
    m_core = core;
    m_initialized = true;
}
