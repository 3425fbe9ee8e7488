// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/core/int16.h"
#include "platform/widgets/control.h"

#include <QHash>
#include <QPointer>

#include <functional>
#include <memory>

class QFrame;

namespace Zel {
class VScroll;
} // namespace Zel

namespace ZelWebServiceControls {

/// Labels of entries, compared exactly.
using EntryLabels = Zel::Collection<QString>;
/// Null stands for no labels.
using EntryLabelsPtr = std::shared_ptr<const EntryLabels>;

/// Edits a data record in a form that it builds itself: a field for each entry, one below the
/// other.
///
///     introduceFieldWidgets(); // once in a program
///     auto *form = new DataRecordManager(this);
///     form->Init(&client);
///     form->LoadThemeDataRecord(theme->guid);
///     ...
///     form->UpdateDataRecord();
///     save(form->GetDataRecord());
///
/// It never saves: the host takes the record and does. Fields are made by their ProgIDs through the
/// control registry, so a host that introduces a class of its own under one of them sees it in
/// every form; a class needs the members that are called by name, see docs/fieldwidgets.md. Each
/// field is a child control named "widget_" and its label with blanks as "_".
///
/// Lengths are twips. A form ends where the fields are higher than 32767 together: error 6, with
/// the fields made so far in place, as with every error while building. Two labels that give one
/// name are error 727. The fields keep the width they were built with.
class ZEL_EXPORT DataRecordManager : public Zel::Control
{
    Q_OBJECT

public:
    explicit DataRecordManager(QWidget *parent = nullptr);
    ~DataRecordManager() override;

    /// Keeps both. Entries whose labels are in `ignoreList` get no field.
    Q_INVOKABLE void Init(QXSC::ServiceClient *m_qxs,
                          const ZelWebServiceControls::EntryLabelsPtr &ignoreList = {});
    /// The record loaded last, null when there is none. Its values are those of the fields after
    /// `UpdateDataRecord`.
    Q_INVOKABLE QXSC::DataRecordPtr GetDataRecord() const;
    /// Fetches a theme's record and builds the form for it. Without a client, or for an empty guid,
    /// nothing happens; for a theme without a record the former form stays, with no record behind
    /// it.
    Q_INVOKABLE void LoadThemeDataRecord(const QString &themeGuid);
    /// The first entry of that label, null when there is none.
    Q_INVOKABLE QXSC::DataRecordEntryPtr GetDataRecordEntry(const QString &label) const;
    /// `SetDataRecordEntry` for each entry.
    Q_INVOKABLE void populateDataRecord(const QXSC::DataRecordEntryCollectionPtr &entries);
    /// Copies what the fields hold into the record. Entries without a field of their own keep their
    /// values.
    Q_INVOKABLE void UpdateDataRecord();
    /// Sets what the field of that label shows; nothing when there is none.
    Q_INVOKABLE void SetDataRecordValue(const QString &label, const QString &val);
    /// Shows the text of the entry's value in the field of its label, and nothing else of it;
    /// nothing when there is no such field.
    Q_INVOKABLE void SetDataRecordEntry(const QXSC::DataRecordEntryPtr &entry);

    /// Builds the form again from the record in memory, for another width: call `UpdateDataRecord`
    /// before, or what was typed is lost. Where the form was scrolled to, the focus, the marks and
    /// what counts as changed stay.
    void rebuild();

    /// The labels of the entries whose fields hold other values than the record had when it was
    /// loaded, or at the last `acceptChanges`, in the order of the entries. Errors of a host's own
    /// field class propagate.
    QStringList changedLabels() const;
    /// The values of the record are the ones to compare with from now on: call it when the record
    /// is saved.
    void acceptChanges();

    /// Called with the label of a field after every change by a person. It must not load or build a
    /// form. Only fields that derive from `EditedField` tell.
    void setFieldEditedHandler(std::function<void(const QString &label)> handler);

    /// Shows or takes away a mark beside the field of that label; nothing when there is none. A
    /// mark stays for as long as the record.
    void setFieldMark(const QString &label, bool isMarked);

    QSize sizeHint() const override;

protected:
    void resized() override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    /// An entry with the field that was made for it and the value it was loaded with.
    struct Field
    {
        QXSC::DataRecordEntryPtr entry;
        QXSC::DataRecordValue loaded;
        QPointer<QWidget> widget;
    };

    /// Where the focus is, in terms that outlive the fields.
    struct FocusPlace
    {
        QString field;
        QString child;
        int anchor = 0;
        int position = 0;
    };

    QWidget *fieldNamed(const QString &label) const;
    void showMark(const QString &label);

    // Building
    void build(const QXSC::DataRecordEntryCollectionPtr &entries);
    void removeFields();
    QList<QXSC::DataRecordEntryPtr> shownEntries(const QXSC::DataRecordEntryCollection &all) const;
    Zel::Int16 labelWidthFor(const QList<QXSC::DataRecordEntryPtr> &entries) const;
    void addField(const QXSC::DataRecordEntryPtr &entry, Zel::Int16 &top);
    QWidget *addWidget(const QXSC::DataRecordEntryPtr &entry, const QString &progId);
    void prepareAsset(QWidget *widget, const QXSC::DataRecordEntry &entry) const;
    void preparePage(QWidget *widget, const QXSC::DataRecordEntry &entry) const;
    void place(QWidget *widget, Zel::Int16 &top) const;
    void setExtent(Zel::Int16 top);
    void watch(const QString &label, QWidget *widget);
    void chainTabs();

    // Scrolling
    void moveFrame();
    void bringIntoView(const QWidget *field);
    bool isInView(const QWidget *field) const;
    QWidget *fieldAround(QWidget *widget) const;
    bool scrollBy(int distance);
    void scrollPage(bool down);
    FocusPlace focusPlace() const;
    void restoreFocus(const FocusPlace &place) const;

    QPointer<QXSC::ServiceClient> m_client;
    EntryLabelsPtr m_ignoreList;
    QXSC::DataRecordPtr m_record;
    QHash<const QXSC::DataRecordEntry *, Field> m_fields;
    QHash<QString, QPointer<QWidget>> m_widgets; // the fields by their names
    QList<QPointer<QWidget>> m_order;            // the fields from top to bottom
    Zel::Int16 m_labelWidth;
    std::function<void(const QString &)> m_edited;
    QHash<QString, QPointer<QWidget>> m_marks; // by labels
    QFrame *m_container;
    QFrame *m_frame;
    Zel::VScroll *m_scroll;
};

/// Introduces the five field widgets that forms are made of, but for those whose ProgIDs a host has
/// taken already.
ZEL_EXPORT void introduceFieldWidgets();

} // namespace ZelWebServiceControls
