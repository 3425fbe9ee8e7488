// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/projectlist.h"

#include "platform/core/propertybag.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/listsort.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/yielding.h"
#include "projects/projectrows.h"

namespace ZelWebServiceControls {

namespace {

// Twips.
constexpr int DateWidth = 1900;
constexpr int CreatedByWidth = 1450;

Zel::ListView *makeList(QWidget *parent)
{
    auto *list = new Zel::ListView(parent);
    list->setObjectName(QStringLiteral("projectList"));
    list->setAccessibleName(ProjectList::tr("Projects"));
    list->setEmptyText(ProjectList::tr("No projects"));
    const QString date = QStringLiteral("DATE");
    list->addColumn(ProjectList::tr("Name"), 4145);
    list->addColumn(ProjectList::tr("Description"), 3351);
    list->addColumn(ProjectList::tr("Created"), 3351, date);
    list->addColumn(ProjectList::tr("Modified"), 2558, date);
    list->addColumn(ProjectList::tr("Created By"), 3351);
    list->addColumn(ProjectList::tr("Event Date"), DateWidth, date);
    return list;
}

} // namespace

ProjectList::ProjectList(QWidget *parent)
    : Control(parent)
    , m_list(makeList(this))
{
    // A host's tab order takes part only when this control says that it takes the focus.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_list);
    onUser(m_list, &Zel::ListView::lineClicked, &ProjectList::raiseClick);
    onUser(m_list, &Zel::ListView::lineDoubleClicked, &ProjectList::raiseDoubleClick);
    onUser(m_list, &Zel::ListView::columnClicked, &ProjectList::sortByColumn);
}

ProjectList::~ProjectList() = default;

QSize ProjectList::sizeHint() const
{
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(12000, dpi), Zel::pixelsFromTwips(6000, dpi));
}

void ProjectList::Init(QXSC::ServiceClient *f_qxs, const QString &typeID)
{
    m_typeID = typeID;
    m_client = f_qxs;
    load();
}

void ProjectList::Refresh()
{
    m_list->clear();
    load();
}

void ProjectList::load()
{
    const QPointer<ProjectList> self(this);
    if (!m_client) {
        emit unloadRequested();
        if (!self)
            return;
    }
    const Zel::Hourglass hourglass(this);
    if (!Zel::yieldOnce(this))
        return;
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    QXSC::ProjectCollectionPtr projects;
    m_client->getProjectList(m_typeID, projects);
    if (self && projects)
        showRecords(projects);
}

void ProjectList::showRecords(const QXSC::ProjectCollectionPtr &projects)
{
    for (const QXSC::ProjectRecordPtr &project : *projects) {
        if (!project)
            throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    }
    if (m_showPublished)
        m_list->setSmallImages({QIcon(QStringLiteral(":/zel/projects/published.svg"))});
    m_list->setSorted(false);
    m_list->setRows(std::make_shared<ProjectRows>(projects, m_showPublished));
}

QXSC::ProjectRecordPtr ProjectList::recordAt(qsizetype row) const
{
    return row < 0 ? nullptr : m_list->tag(row).value<QXSC::ProjectRecordPtr>();
}

void ProjectList::SelectProject(const QString &projectGuid)
{
    for (qsizetype row = 0; row < m_list->count(); ++row) {
        // A line that the host's row filter hides is not there to be selected.
        if (m_list->positionOf(row) < 0 || recordAt(row)->guid != projectGuid)
            continue;
        m_list->selectRow(row);
        m_list->ensureVisible(row);
        raiseClick();
        return;
    }
}

QXSC::ProjectRecordPtr ProjectList::GetSelectedProject()
{
    return recordAt(m_list->selectedRow());
}

void ProjectList::UpdateSelected()
{
    const qsizetype row = m_list->selectedRow();
    if (!m_showPublished || row < 0)
        return;
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    bool published = false;
    m_client->isProjectPublished(recordAt(row)->guid, QString(), published);
    m_list->setSmallIcon(row, published ? ProjectRows::PublishedImage : 0);
    m_list->view()->viewport()->repaint();
}

void ProjectList::raiseClick()
{
    if (const QXSC::ProjectRecordPtr project = GetSelectedProject())
        emit ProjectClick(project);
}

void ProjectList::raiseDoubleClick()
{
    if (const QXSC::ProjectRecordPtr project = GetSelectedProject())
        emit ProjectDblClick(project);
}

void ProjectList::sortByColumn(int column)
{
    Zel::sortByHeaderClick(*m_list, column);
}

void ProjectList::setShowEventDate(bool New_ShowEventDate)
{
    m_showEventDate = New_ShowEventDate;
    markChanged();
}

void ProjectList::setShowCreated(bool New_ShowCreated)
{
    m_showCreated = New_ShowCreated;
    markChanged();
}

void ProjectList::setShowModiffied(bool New_ShowModiffied)
{
    m_showModiffied = New_ShowModiffied;
    markChanged();
}

void ProjectList::setShowCreatedBy(bool New_ShowCreatedBy)
{
    m_showCreatedBy = New_ShowCreatedBy;
    markChanged();
}

void ProjectList::setShowPublished(bool New_ShowPublished)
{
    m_showPublished = New_ShowPublished;
    markChanged();
}

void ProjectList::readProperties(const Zel::PropertyBag &bag)
{
    m_showEventDate = bag.readBool(QStringLiteral("ShowEventDate"), true);
    m_showCreated = bag.readBool(QStringLiteral("ShowCreated"), true);
    m_showModiffied = bag.readBool(QStringLiteral("ShowModiffied"), true);
    m_showCreatedBy = bag.readBool(QStringLiteral("ShowCreatedBy"), true);
    applyColumnWidths();
    m_showPublished = bag.readBool(QStringLiteral("ShowPublished"), false);
}

void ProjectList::writeProperties(Zel::PropertyBag &bag) const
{
    bag.write(QStringLiteral("ShowEventDate"), m_showEventDate, true);
    bag.write(QStringLiteral("ShowCreated"), m_showCreated, true);
    bag.write(QStringLiteral("ShowModiffied"), m_showModiffied, true);
    bag.write(QStringLiteral("ShowCreatedBy"), m_showCreatedBy, true);
    bag.write(QStringLiteral("ShowPublished"), m_showPublished, false);
}

void ProjectList::applyColumnWidths()
{
    m_list->setColumnWidth(ProjectRows::EventDate, m_showEventDate ? DateWidth : 0);
    m_list->setColumnWidth(ProjectRows::Created, m_showCreated ? DateWidth : 0);
    m_list->setColumnWidth(ProjectRows::Modified, m_showModiffied ? DateWidth : 0);
    m_list->setColumnWidth(ProjectRows::CreatedBy, m_showCreatedBy ? CreatedByWidth : 0);
}

void ProjectList::resized()
{
    m_list->setGeometry(rect());
}

} // namespace ZelWebServiceControls
