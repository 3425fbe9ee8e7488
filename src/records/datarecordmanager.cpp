// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/datarecordmanager.h"

#include "platform/core/rounding.h"
#include "platform/core/variantconversion.h"
#include "platform/widgets/controlregistry.h"
#include "platform/widgets/latebound.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/twipsgeometry.h"
#include "platform/widgets/vscroll.h"
#include "records/checkboxwidget.h"
#include "records/customwidget.h"
#include "records/fieldmark.h"
#include "records/fieldname.h"
#include "records/fieldparts.h"
#include "records/textareawidget.h"
#include "records/textassetwidget.h"
#include "records/textwidget.h"

#include <QFrame>
#include <QScopeGuard>

#include <utility>

using QXSC::DataRecordEntryPtr;
using QXSC::DataRecordValue;

namespace ZelWebServiceControls {

namespace {

// Twips.
constexpr int FirstWidth = 7200;
constexpr int FirstHeight = 4500;
constexpr int ScrollWidth = 255;
/// Between the right edge of the fields and that of the control.
constexpr int BesideFields = 355;
constexpr int SmallStep = FieldParts::Height;
constexpr int MarkWidth = 45;
/// Between a mark and the value.
constexpr int MarkGap = 45;

QString textOf(QWidget *field, const QString &member)
{
    return Zel::textFrom(Zel::LateBound(field).call(member));
}

/// Reads what a field of that type holds; what the type has not is left alone.
void readField(QWidget *field, const QString &type, DataRecordValue &value)
{
    value.text = textOf(field, QStringLiteral("GetValue"));
    if (type == QLatin1String("TEXTASSET"))
        value.guid = textOf(field, QStringLiteral("getGuid"));
    if (type == QLatin1String("CUSTOM"))
        value.assetDependencies = textOf(field, QStringLiteral("getAssetDependencies"));
}

bool isSame(const QString &type, const DataRecordValue &a, const DataRecordValue &b)
{
    if (type != QLatin1String("CHECKBOX"))
        return a == b;
    // Every text but one means unchecked, and a check box gives back one of them.
    const auto isOn = [](const QString &text) { return text.toUpper() == QLatin1String("TRUE"); };
    return isOn(a.text) == isOn(b.text);
}

} // namespace

DataRecordManager::DataRecordManager(QWidget *parent)
    : Control(parent)
    , m_container(new QFrame(this))
    , m_frame(new QFrame(m_container))
    , m_scroll(new Zel::VScroll(this))
{
    m_container->setObjectName(QStringLiteral("drContainer"));
    m_frame->setObjectName(QStringLiteral("drFrame"));
    m_scroll->setObjectName(QStringLiteral("drVScroll"));
    m_scroll->setSmallChange(SmallStep);
    m_scroll->setVisible(false);
    connect(m_scroll, &Zel::VScroll::changed, this, &DataRecordManager::moveFrame);
    connect(m_scroll, &Zel::VScroll::scrolled, this, &DataRecordManager::moveFrame);
    Zel::setTwipsGeometry(this, {0, 0, FirstWidth, FirstHeight});
}

DataRecordManager::~DataRecordManager() = default;

void DataRecordManager::Init(QXSC::ServiceClient *m_qxs, const EntryLabelsPtr &ignoreList)
{
    m_client = m_qxs;
    m_ignoreList = ignoreList;
}

QXSC::DataRecordPtr DataRecordManager::GetDataRecord() const
{
    return m_record;
}

void DataRecordManager::LoadThemeDataRecord(const QString &themeGuid)
{
    if (!m_client || themeGuid.isEmpty())
        return;
    const QPointer<DataRecordManager> self(this);
    const QXSC::DataRecordPtr record = m_client->GetThemeDataRecord(themeGuid);
    if (!self)
        return;
    m_record = record;
    if (!m_record)
        return;
    m_marks.clear();
    m_fields.clear();
    m_scroll->setValue(0);
    // Who works in the form goes on in it.
    const bool hadFocus = m_frame->isAncestorOf(window()->focusWidget());
    build(m_record->entries);
    if (hadFocus && focusProxy())
        setFocus(Qt::OtherFocusReason);
}

DataRecordEntryPtr DataRecordManager::GetDataRecordEntry(const QString &label) const
{
    if (!m_record || !m_record->entries)
        return nullptr;
    for (const DataRecordEntryPtr &entry : *m_record->entries) {
        if (entry && entry->label == label)
            return entry;
    }
    return nullptr;
}

void DataRecordManager::populateDataRecord(const QXSC::DataRecordEntryCollectionPtr &entries)
{
    if (!entries)
        return;
    for (const DataRecordEntryPtr &entry : *entries)
        SetDataRecordEntry(entry);
}

void DataRecordManager::UpdateDataRecord()
{
    if (!m_record || !m_record->entries)
        return;
    for (const DataRecordEntryPtr &entry : *m_record->entries) {
        const auto field = m_fields.constFind(entry.get());
        if (field == m_fields.cend() || !field->widget)
            continue;
        readField(field->widget, entry->type, entry->value);
    }
}

void DataRecordManager::SetDataRecordValue(const QString &label, const QString &val)
{
    QWidget *field = fieldNamed(label);
    if (!field)
        return;
    try {
        Zel::LateBound(field).call(QStringLiteral("setValue"), {val});
    } catch (const Zel::RuntimeError &) {
        // A field that does not take the value is like one that is not there.
    }
}

void DataRecordManager::SetDataRecordEntry(const DataRecordEntryPtr &entry)
{
    if (entry)
        SetDataRecordValue(entry->label, entry->value.text);
}

QWidget *DataRecordManager::fieldNamed(const QString &label) const
{
    return m_widgets.value(fieldName(label));
}

void DataRecordManager::rebuild()
{
    if (!m_record)
        return;
    const int value = m_scroll->Value();
    const FocusPlace focus = focusPlace();
    // Also when building ends in an error: there are fields then, up to the one that failed.
    const auto restore = qScopeGuard([this, value, &focus] {
        restoreFocus(focus); // brings the field into view
        if (!m_scroll->isHidden())
            m_scroll->setValue(value);
        const QStringList marked = m_marks.keys();
        for (const QString &label : marked)
            showMark(label);
    });
    build(m_record->entries);
}

QStringList DataRecordManager::changedLabels() const
{
    QStringList labels;
    if (!m_record || !m_record->entries)
        return labels;
    for (const DataRecordEntryPtr &entry : *m_record->entries) {
        const auto field = m_fields.constFind(entry.get());
        if (field == m_fields.cend() || !field->widget)
            continue;
        DataRecordValue value = field->loaded;
        readField(field->widget, entry->type, value);
        if (!isSame(entry->type, value, field->loaded))
            labels << entry->label;
    }
    return labels;
}

void DataRecordManager::acceptChanges()
{
    for (Field &field : m_fields)
        field.loaded = field.entry->value;
}

void DataRecordManager::setFieldEditedHandler(std::function<void(const QString &)> handler)
{
    m_edited = std::move(handler);
}

void DataRecordManager::setFieldMark(const QString &label, bool isMarked)
{
    delete m_marks.take(label);
    if (isMarked && fieldNamed(label)) {
        m_marks.insert(label, nullptr);
        showMark(label);
    }
}

void DataRecordManager::showMark(const QString &label)
{
    QWidget *field = fieldNamed(label);
    if (!field)
        return;
    const Zel::TwipsRect around = Zel::twipsGeometry(field);
    // A form without a common label column leaves every field its own.
    const double labels =
        m_labelWidth.value() > 0 ? m_labelWidth.value() : Zel::roundHalfEven(around.width * 0.4);
    auto *mark = new FieldMark(m_frame);
    Zel::setTwipsGeometry(mark, {labels + FieldParts::Gap - MarkGap - MarkWidth,
                                 around.top + FieldParts::Inset, MarkWidth,
                                 around.height - 2 * FieldParts::Inset});
    mark->show();
    m_marks.insert(label, mark);
}

QSize DataRecordManager::sizeHint() const
{
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(FirstWidth, dpi), Zel::pixelsFromTwips(FirstHeight, dpi));
}

void DataRecordManager::resized()
{
    const Zel::TwipsRect own = Zel::twipsGeometry(this);
    Zel::setTwipsGeometry(m_container, {0, 0, own.width, own.height});
    Zel::setTwipsGeometry(
        m_frame, {0, Zel::twipsGeometry(m_frame).top, own.width - BesideFields, own.height});
    Zel::setTwipsGeometry(m_scroll, {own.width - ScrollWidth, 0, ScrollWidth, own.height});
}

namespace {

template <typename Widget>
void introduceUnlessTaken()
{
    if (!Zel::ControlRegistry::contains(
            Zel::ControlRegistry::progIdOf(Widget::staticMetaObject.className())))
        Zel::ControlRegistry::add<Widget>();
}

} // namespace

void introduceFieldWidgets()
{
    introduceUnlessTaken<CheckboxWidget>();
    introduceUnlessTaken<CustomWidget>();
    introduceUnlessTaken<TextAreaWidget>();
    introduceUnlessTaken<TextAssetWidget>();
    introduceUnlessTaken<TextWidget>();
}

} // namespace ZelWebServiceControls
