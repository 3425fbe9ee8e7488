// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"

#include <QPointer>

namespace Zel {
class ListView;
}

namespace ZelWebServiceControls {

/// Shows the projects of one type as a sortable table and tells the host which one is clicked.
///
///     auto *list = new ProjectList(this);
///     connect(list, &ProjectList::ProjectDblClick, this, &Window::openProject);
///     list->Init(&client, "webcast");
///
/// Columns: Name, Description, Created, Modified, Created By, Event Date. The `Show` properties
/// give columns their width when a property bag is read, not when they are set. The list keeps the
/// service's order until a header is clicked; each click flips the one order flag of the list, so
/// the first click on a fresh list sorts descending.
///
/// Without a client a load asks the container to unload the control, then fails with error 91. An
/// answer of nothing leaves the list as it is (`Init`) or empty (`Refresh`).
class ZEL_EXPORT ProjectList : public Zel::Control
{
    Q_OBJECT
    /// Whether the column "Event Date" is shown; default true.
    Q_PROPERTY(bool ShowEventDate READ ShowEventDate WRITE setShowEventDate STORED false)
    /// Whether the column "Created" is shown; default true.
    Q_PROPERTY(bool ShowCreated READ ShowCreated WRITE setShowCreated STORED false)
    /// Whether the column "Modified" is shown; default true.
    Q_PROPERTY(bool ShowModiffied READ ShowModiffied WRITE setShowModiffied STORED false)
    /// Whether the column "Created By" is shown; default true.
    Q_PROPERTY(bool ShowCreatedBy READ ShowCreatedBy WRITE setShowCreatedBy STORED false)
    /// Whether published projects bear a marker; default false.
    Q_PROPERTY(bool ShowPublished READ ShowPublished WRITE setShowPublished STORED false)

public:
    explicit ProjectList(QWidget *parent = nullptr);
    ~ProjectList() override;

    /// Keeps both and loads the list.
    Q_INVOKABLE void Init(QXSC::ServiceClient *f_qxs, const QString &typeID = QString());
    /// Selects the project with exactly this guid, scrolls to it and acts as if it had been
    /// clicked; an unknown guid changes nothing.
    Q_INVOKABLE void SelectProject(const QString &projectGuid);
    /// The record of the selected line, null when none is selected.
    Q_INVOKABLE QXSC::ProjectRecordPtr GetSelectedProject();
    /// Asks the service whether the selected project is published and marks the line accordingly;
    /// nothing when `ShowPublished` is off or no line is selected.
    Q_INVOKABLE void UpdateSelected();
    /// Empties the list and loads it again.
    Q_INVOKABLE void Refresh();

    bool ShowEventDate() const { return m_showEventDate; }

    void setShowEventDate(bool New_ShowEventDate);

    bool ShowCreated() const { return m_showCreated; }

    void setShowCreated(bool New_ShowCreated);

    bool ShowModiffied() const { return m_showModiffied; }

    void setShowModiffied(bool New_ShowModiffied);

    bool ShowCreatedBy() const { return m_showCreatedBy; }

    void setShowCreatedBy(bool New_ShowCreatedBy);

    bool ShowPublished() const { return m_showPublished; }

    void setShowPublished(bool New_ShowPublished);

    QSize sizeHint() const override;

signals:
    void ProjectClick(QXSC::ProjectRecordPtr pi);
    void ProjectDblClick(QXSC::ProjectRecordPtr pi);

protected:
    void readProperties(const Zel::PropertyBag &bag) override;
    void writeProperties(Zel::PropertyBag &bag) const override;
    void resized() override;

private:
    void load();
    void showRecords(const QXSC::ProjectCollectionPtr &projects);
    void applyColumnWidths();
    void sortByColumn(int column);
    void raiseClick();
    void raiseDoubleClick();
    QXSC::ProjectRecordPtr recordAt(qsizetype row) const;

    QPointer<QXSC::ServiceClient> m_client;
    QString m_typeID;
    bool m_showPublished = false;
    bool m_showEventDate = true;
    bool m_showCreated = true;
    bool m_showModiffied = true;
    bool m_showCreatedBy = true;
    Zel::ListView *m_list;
};

} // namespace ZelWebServiceControls
