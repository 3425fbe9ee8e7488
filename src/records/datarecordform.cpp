// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// How the data record manager builds its form.

#include "assets/foldernames.h"
#include "platform/core/rounding.h"
#include "platform/widgets/controlregistry.h"
#include "platform/widgets/latebound.h"
#include "platform/widgets/repaintfreeze.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "platform/widgets/vscroll.h"
#include "records/datarecordmanager.h"
#include "records/editedfield.h"
#include "records/fieldname.h"

#include <QFontMetricsF>
#include <QFrame>
#include <QScopeGuard>
#include <QSet>

#include <algorithm>

using QXSC::DataRecordEntry;
using QXSC::DataRecordEntryPtr;
using Zel::Int16;
using Zel::LateBound;
using Zel::RuntimeError;

namespace ZelWebServiceControls {

namespace {

/// The number the container has for a name that is taken.
constexpr int NameInUse = 727;

/// Below the fields. Twips.
constexpr Int16 Below = 100;

/// What asset fields hand to their pickers.
FolderNamesPtr restrictedFolders()
{
    static const FolderNamesPtr names =
        std::make_shared<const FolderNames>(FolderNames{QStringLiteral("QXStudio")});
    return names;
}

/// What has to be put into the chain of the Tab key for a field, in order.
QWidgetList tabStops(QWidget *field)
{
    // Qt takes a widget along with all behind it that the widget hands its focus to.
    if (field->focusProxy() && field->isAncestorOf(field->focusProxy()))
        return {field};
    QWidgetList stops;
    QWidget *widget = field;
    do {
        if (widget->focusPolicy() & Qt::TabFocus && !widget->focusProxy())
            stops << widget;
        widget = widget->nextInFocusChain();
    } while (widget != field && field->isAncestorOf(widget));
    return stops;
}

} // namespace

void DataRecordManager::removeFields()
{
    const QList<QWidget *> children =
        m_frame->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QList<QPointer<QWidget>> leaving(children.cbegin(), children.cend());
    for (const QPointer<QWidget> &child : std::as_const(leaving))
        delete child.data();
    m_widgets.clear();
    m_order.clear();
}

void DataRecordManager::build(const QXSC::DataRecordEntryCollectionPtr &entries)
{
    // Held: a field class of the host may do anything with the record.
    const QXSC::DataRecordEntryCollectionPtr held = entries;
    const Zel::RepaintFreeze frozen(m_frame);
    removeFields();
    if (!held)
        return;
    const QList<DataRecordEntryPtr> shown = shownEntries(*held);
    m_labelWidth = labelWidthFor(shown);
    const auto chain = qScopeGuard([this] { chainTabs(); });
    Int16 top;
    for (const DataRecordEntryPtr &entry : shown)
        addField(entry, top);
    setExtent(top);
}

QList<DataRecordEntryPtr>
DataRecordManager::shownEntries(const QXSC::DataRecordEntryCollection &all) const
{
    QSet<QString> ignored;
    if (m_ignoreList)
        ignored = QSet<QString>(m_ignoreList->begin(), m_ignoreList->end());
    QList<DataRecordEntryPtr> shown;
    for (const DataRecordEntryPtr &entry : all) {
        if (!entry)
            throw RuntimeError(RuntimeError::ObjectNotSet);
        if (!entry->hidden && !ignored.contains(entry->label))
            shown << entry;
    }
    return shown;
}

Int16 DataRecordManager::labelWidthFor(const QList<DataRecordEntryPtr> &entries) const
{
    const QFontMetricsF metrics(font(), this);
    const int dpi = Zel::logicalDpi(this);
    Int16 widest;
    for (const DataRecordEntryPtr &entry : entries) {
        const Int16 width =
            Zel::roundToInt16(Zel::twipsFromPixels(metrics.horizontalAdvance(entry->label), dpi));
        const Int16 half = Zel::roundToInt16(Zel::twipsGeometry(m_frame).width / 2);
        widest = std::max(widest, std::min(width, half));
    }
    return widest;
}

void DataRecordManager::addField(const DataRecordEntryPtr &entry, Int16 &top)
{
    static const QHash<QString, QString> progIds{
        {QStringLiteral("TEXT"), QStringLiteral("ZelWebServiceControls.TextWidget")},
        {QStringLiteral("TEXTASSET"), QStringLiteral("ZelWebServiceControls.TextAssetWidget")},
        {QStringLiteral("TEXTAREA"), QStringLiteral("ZelWebServiceControls.TextAreaWidget")},
        {QStringLiteral("CHECKBOX"), QStringLiteral("ZelWebServiceControls.CheckboxWidget")},
        {QStringLiteral("CUSTOM"), QStringLiteral("ZelWebServiceControls.CustomWidget")},
    };
    const QString progId = progIds.value(entry->type);
    if (progId.isEmpty())
        return;
    const bool isAsset = entry->type == QLatin1String("TEXTASSET");
    QWidget *widget = addWidget(entry, progId);
    const LateBound field(widget);
    field.let(QStringLiteral("Visible"), true);
    field.call(QStringLiteral("SetLabel"), {entry->label});
    if (isAsset)
        prepareAsset(widget, *entry);
    else if (entry->type == QLatin1String("CUSTOM"))
        preparePage(widget, *entry);
    place(widget, top);
    field.call(QStringLiteral("setValue"), {entry->value.text});
    if (isAsset)
        field.call(QStringLiteral("setGuid"), {entry->value.guid});
}

QWidget *DataRecordManager::addWidget(const DataRecordEntryPtr &entry, const QString &progId)
{
    const QString name = fieldName(entry->label);
    if (m_widgets.value(name))
        throw RuntimeError(NameInUse,
                           tr("There is already a control with the name \"%1\"").arg(name));
    QWidget *widget = Zel::ControlRegistry::create(progId, m_frame);
    widget->setObjectName(name);
    m_widgets.insert(name, widget);
    m_order << widget;
    Field &field = m_fields[entry.get()];
    if (!field.entry) {
        field.entry = entry;
        field.loaded = entry->value;
    }
    field.widget = widget;
    watch(entry->label, widget);
    return widget;
}

void DataRecordManager::prepareAsset(QWidget *widget, const DataRecordEntry &entry) const
{
    const LateBound field(widget);
    field.call(QStringLiteral("setExt"), {entry.ext});
    field.call(QStringLiteral("setRestrictedFolders"), {QVariant::fromValue(restrictedFolders())});
    field.call(QStringLiteral("setQXS"), {QVariant::fromValue(m_client.data())});
}

void DataRecordManager::preparePage(QWidget *widget, const DataRecordEntry &entry) const
{
    if (!m_client)
        throw RuntimeError(RuntimeError::ObjectNotSet);
    const QString url =
        m_client->serverUrl() + QStringLiteral("/nexo/tools_v2/Components/") + entry.source;
    const LateBound field(widget);
    field.call(QStringLiteral("setUrl"), {url});
    field.call(QStringLiteral("SetAssetDependencies"), {entry.value.assetDependencies});
    field.call(QStringLiteral("SetDimensions"), {entry.width, entry.height});
    field.call(QStringLiteral("setButtonText"), {entry.buttonText});
    field.call(QStringLiteral("setQXS"), {QVariant::fromValue(m_client.data())});
}

void DataRecordManager::place(QWidget *widget, Int16 &top) const
{
    const LateBound field(widget);
    field.let(QStringLiteral("top"), top.value());
    field.let(QStringLiteral("Width"), Zel::twipsGeometry(m_frame).width);
    field.call(QStringLiteral("SetLabelWidth"), {m_labelWidth.value()});
    top = Zel::roundToInt16(top.value() + field.get(QStringLiteral("height")).toDouble());
}

void DataRecordManager::setExtent(Int16 top)
{
    const double visible = Zel::twipsGeometry(m_container).height;
    if (top.value() > visible) {
        m_scroll->setMax(Zel::roundToInt32(visible - top.value()));
        m_scroll->setLargeChange(Zel::roundToInt32(visible));
        m_scroll->setVisible(true);
    } else {
        m_scroll->setVisible(false);
        m_scroll->setValue(0);
    }
    Zel::TwipsRect frame = Zel::twipsGeometry(m_frame);
    frame.height = (top + Below).value();
    Zel::setTwipsGeometry(m_frame, frame);
}

void DataRecordManager::watch(const QString &label, QWidget *widget)
{
    widget->installEventFilter(this);
    const QList<QWidget *> inside = widget->findChildren<QWidget *>();
    for (QWidget *child : inside)
        child->installEventFilter(this);
    // A C++ class of ours, or one of the host's that wants to.
    if (auto *field = dynamic_cast<EditedField *>(widget)) {
        field->setEditedHandler([this, label] {
            if (m_edited)
                m_edited(label);
        });
    }
}

void DataRecordManager::chainTabs()
{
    QWidgetList stops;
    for (const QPointer<QWidget> &field : std::as_const(m_order)) {
        if (field)
            stops << tabStops(field);
    }
    // New children stand at the end of their window's chain; fields belong where the form is.
    m_container->setFocusPolicy(Qt::TabFocus); // a widget without takes no part
    QWidget *previous = m_container;
    for (QWidget *stop : std::as_const(stops)) {
        QWidget::setTabOrder(previous, stop);
        previous = stop;
    }
    m_container->setFocusPolicy(Qt::NoFocus);
    // In this order: a widget with a proxy would hand the policy on to it.
    setFocusProxy(nullptr);
    setFocusPolicy(stops.isEmpty() ? Qt::NoFocus : Qt::StrongFocus);
    setFocusProxy(stops.isEmpty() ? nullptr : stops.constFirst());
}

} // namespace ZelWebServiceControls
