// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/projectspage.h"

#include "platform/widgets/listview.h"
#include "platform/widgets/taborder.h"
#include "projects/projectlist.h"
#include "studio/appearance.h"
#include "studio/columnmenu.h"
#include "studio/columnwidths.h"
#include "studio/errorcenter.h"
#include "studio/newprojectflow.h"
#include "studio/pageheader.h"
#include "studio/projectdetails.h"
#include "studio/settings.h"
#include "studio/textlabel.h"
#include "studio/tintedicon.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStackedLayout>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Studio {

using ZelWebServiceControls::ProjectList;

namespace {

constexpr int WidestFilter = 380;  // pixels
constexpr int LongestFilter = 500; // characters
constexpr qsizetype QuotedFilter = 60;
constexpr int BelowEmptyText = 80; // pixels

bool hasAllWords(const QXSC::ProjectRecord &project, const QStringList &words)
{
    return std::all_of(words.begin(), words.end(), [&](const QString &word) {
        return project.name.contains(word, Qt::CaseInsensitive) ||
               project.description.contains(word, Qt::CaseInsensitive) ||
               project.createdBy.contains(word, Qt::CaseInsensitive);
    });
}

} // namespace

ProjectsPage::ProjectsPage(QXSC::ServiceClient &client, QXSC::StudioService &service,
                           ErrorCenter &errors, Settings &settings, const RecordDrafts &drafts,
                           QWidget *parent)
    : Page(parent)
    , m_client(client)
    , m_service(service)
    , m_errors(errors)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("projectsPage"));
    m_view = new QWidget(this);
    m_flow = new NewProjectFlow(m_client, m_service, m_errors, drafts, this);
    m_stack = new QStackedLayout(this);
    m_stack->addWidget(m_view);
    m_stack->addWidget(m_flow);
    buildView();
    makeEmptyState();
    makeShortcuts();
    connectParts();
    applyColors();
    leave();
}

QString ProjectsPage::title() const
{
    return tr("Projects");
}

QString ProjectsPage::icon() const
{
    return QStringLiteral("projects");
}

void ProjectsPage::buildView()
{
    m_projects = new ProjectList(m_view);
    m_projects->setObjectName(QStringLiteral("projects"));
    m_projects->setAccessibleName(title());
    m_list = m_projects->findChild<Zel::ListView *>(QStringLiteral("projectList"));
    m_details = new ProjectDetails(m_view);
    m_count = new QLabel(m_view);
    m_count->setObjectName(QStringLiteral("projectCount"));
    auto *split = new QSplitter(m_view);
    split->setObjectName(QStringLiteral("projectSplit"));
    split->addWidget(m_projects);
    split->addWidget(m_details);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 0);
    split->setChildrenCollapsible(false);
    split->setHandleWidth(12);
    auto *column = new QVBoxLayout(m_view);
    column->setContentsMargins(20, 16, 20, 12);
    column->setSpacing(12);
    column->addWidget(makeHeader());
    column->addWidget(split, 1);
    column->addWidget(m_count);
    Zel::setTabChain({m_type, m_new, m_filter, m_columns, m_refresh, m_projects, m_details});
}

void ProjectsPage::makeEmptyState()
{
    m_first = new QPushButton(tr("New Project…"), m_list->viewport());
    m_first->setObjectName(QStringLiteral("firstProject"));
    m_first->setToolTip(tr("Make a project from a theme (Ctrl+N)"));
    m_first->setAutoDefault(true);
    auto *room = new QVBoxLayout(m_list->viewport());
    room->addStretch(1);
    room->addSpacing(BelowEmptyText);
    room->addWidget(m_first, 0, Qt::AlignHCenter);
    room->addStretch(1);
    setTabOrder(m_list->view(), m_first);
}

QWidget *ProjectsPage::makeHeader()
{
    auto *header = new QWidget(m_view);
    makeTools(header);
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(makeHeading(header, title()));
    row->addSpacing(8);
    row->addWidget(m_type);
    row->addWidget(m_new);
    row->addStretch(1);
    row->addWidget(m_filter, 4);
    row->addWidget(m_columns);
    row->addWidget(m_refresh);
    return header;
}

void ProjectsPage::makeTools(QWidget *header)
{
    m_new = makeTool(header, "newProject", QStringLiteral("add"), tr("New Project"),
                     tr("Make a project from a theme (Ctrl+N)"));
    m_type = new QComboBox(header);
    m_type->setObjectName(QStringLiteral("projectType"));
    m_type->setAccessibleName(tr("Project type"));
    m_type->setToolTip(tr("The type of the projects shown"));
    m_type->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_filter = new QLineEdit(header);
    m_filter->setObjectName(QStringLiteral("projectFilter"));
    m_filter->setPlaceholderText(tr("Filter by name, description or author"));
    m_filter->setAccessibleName(tr("Filter projects"));
    m_filter->setToolTip(tr("Shows only the projects with all these words (Ctrl+F; Esc clears)"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setMaximumWidth(WidestFilter);
    m_filter->setMaxLength(LongestFilter);
    m_filter->addAction(tintedIcon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    m_columns = makeTool(header, "columnsButton", QStringLiteral("columns"), tr("Columns"),
                         tr("Choose the columns to show"));
    m_columns->setPopupMode(QToolButton::InstantPopup);
    m_columns->setMenu(new ColumnMenu(*m_projects, m_settings, m_columns));
    m_refresh = makeTool(header, "refreshButton", QStringLiteral("refresh"), tr("Refresh"),
                         tr("Load the list again (F5)"));
    m_refresh->setShortcut(QKeySequence(Qt::Key_F5));
}

void ProjectsPage::makeShortcuts()
{
    auto *make = new QShortcut(QKeySequence::New, this);
    connect(make, &QShortcut::activated, this, &ProjectsPage::startNewProject);
    auto *find = new QShortcut(QKeySequence::Find, m_view);
    connect(find, &QShortcut::activated, this, [this] {
        m_filter->setFocus(Qt::ShortcutFocusReason);
        m_filter->selectAll();
    });
    auto *clear = new QShortcut(QKeySequence(Qt::Key_Escape), m_filter);
    clear->setContext(Qt::WidgetShortcut);
    connect(clear, &QShortcut::activated, m_filter, &QLineEdit::clear);
    // With nothing to clear, Esc means what it means everywhere else.
    clear->setEnabled(false);
    connect(m_filter, &QLineEdit::textChanged, clear,
            [clear](const QString &text) { clear->setEnabled(!text.isEmpty()); });
}

void ProjectsPage::connectParts()
{
    connect(m_new, &QToolButton::clicked, this, &ProjectsPage::startNewProject);
    connect(m_first, &QPushButton::clicked, this, &ProjectsPage::startNewProject);
    connect(m_flow, &NewProjectFlow::cancelled, this, &ProjectsPage::endNewProject);
    connect(m_flow, &NewProjectFlow::created, this, &ProjectsPage::showCreated);
    const auto open = [this] {
        if (const QXSC::ProjectRecordPtr project = m_projects->GetSelectedProject())
            emit openRequested(project);
    };
    connect(m_projects, &ProjectList::ProjectDblClick, this, open);
    connect(m_details, &ProjectDetails::openRequested, this, open);
    connect(m_projects, &ProjectList::runtimeError, this,
            [this](const Zel::RuntimeError &error) { m_errors.report(error); });
    connect(m_list, &Zel::ListView::selectionChanged, this, &ProjectsPage::showSelected);
    connect(m_type, &QComboBox::activated, this, &ProjectsPage::chooseType);
    connect(m_filter, &QLineEdit::textChanged, this, &ProjectsPage::filter);
    connect(m_refresh, &QToolButton::clicked, this,
            [this] { m_errors.attempt([this] { refresh(); }); });
    connect(m_details, &ProjectDetails::checkRequested, this,
            [this] { m_errors.attempt([this] { checkPublished(); }); });
    auto *menu = static_cast<ColumnMenu *>(m_columns->menu());
    connect(menu, &ColumnMenu::aboutToSwitch, this, &ProjectsPage::remember);
    connect(menu, &ColumnMenu::switched, this, [this](const QString &property) {
        fit();
        // The marker is put on lines when they are loaded.
        if (property == QLatin1String("ShowPublished"))
            m_errors.attempt([this] { refresh(); });
    });
}

void ProjectsPage::open()
{
    if (m_fittedWidths.isEmpty())
        fit();
    loadTypes();
    refresh();
}

void ProjectsPage::leave()
{
    remember();
    m_flow->leave();
    m_stack->setCurrentWidget(m_view);
    m_isLoaded = false;
    m_list->setEmptyText(tr("The projects could not be loaded"));
    m_list->setSorted(false);
    m_list->clear();
    m_type->clear();
    m_filter->clear();
    m_count->clear();
    m_details->showProject(nullptr, false);
    m_shownType.clear();
    m_checked.clear();
    m_first->hide();
}

bool ProjectsPage::holdsChanges() const
{
    return isMakingProject() && m_flow->holdsChanges();
}

bool ProjectsPage::mayClose()
{
    return m_flow->maySetAside();
}

bool ProjectsPage::isMakingProject() const
{
    return m_stack->currentWidget() == m_flow;
}

void ProjectsPage::startNewProject()
{
    if (isMakingProject())
        return;
    m_stack->setCurrentWidget(m_flow);
    m_flow->start(m_shownType);
}

void ProjectsPage::endNewProject()
{
    m_stack->setCurrentWidget(m_view);
    m_list->setFocus(Qt::OtherFocusReason);
}

void ProjectsPage::showCreated(const QString &guid, const QString &typeID)
{
    endNewProject();
    m_errors.attempt([this, guid, typeID] { loadCreated(guid, typeID); });
}

void ProjectsPage::loadCreated(const QString &guid, const QString &typeID)
{
    if (m_type->count() == 0)
        loadTypes();
    load(typeID);
    showType(typeID);
    m_settings.setProjectType(typeID);
    // A filter that stands might hide it.
    m_filter->clear();
    m_projects->SelectProject(guid);
}

void ProjectsPage::fit()
{
    // The room for the columns is known once the page is on screen.
    m_view->layout()->activate();
    fitColumns(*m_list, m_settings.projectColumnWidths(), dateColumns(*m_list));
    m_fittedWidths = columnWidths(*m_list, m_settings.projectColumnWidths());
}

void ProjectsPage::remember()
{
    if (m_fittedWidths.isEmpty())
        return;
    const QList<double> widths = columnWidths(*m_list, m_settings.projectColumnWidths());
    if (widths != m_fittedWidths)
        m_settings.setProjectColumnWidths(widths);
}

void ProjectsPage::loadTypes()
{
    const QList<QXSC::ProjectType> types = m_service.projectTypes();
    m_type->clear();
    for (const QXSC::ProjectType &type : types)
        m_type->addItem(type.name, type.typeID);
    showType(m_settings.projectType());
}

void ProjectsPage::showType(const QString &typeID)
{
    const int known = m_type->findData(typeID);
    m_type->setCurrentIndex(known >= 0 || m_type->count() == 0 ? known : 0);
}

void ProjectsPage::chooseType()
{
    const QString typeID = m_type->currentData().toString();
    const auto choose = [this, typeID] {
        load(typeID);
        showType(typeID);
        m_settings.setProjectType(typeID);
    };
    // What the box says is what the list shows, also when the service fails.
    if (!m_errors.attempt(choose))
        showType(m_shownType);
}

void ProjectsPage::load(const QString &typeID)
{
    const auto *before = m_list->rows();
    m_projects->Init(&m_client, typeID);
    if (m_list->rows() == before)
        m_list->clear(); // the service answered nothing: it does not know the type (any more)
    m_shownType = typeID;
    m_isLoaded = true;
    m_checked.clear();
    filter(m_filter->text());
    showSelected();
}

void ProjectsPage::refresh()
{
    const QXSC::ProjectRecordPtr selected = m_projects->GetSelectedProject();
    const bool sorted = m_list->isSorted();
    load(m_type->currentData().toString());
    if (sorted)
        m_list->sortBy(m_list->sortKey(), m_list->sortOrder());
    // Projects without a guid cannot be told apart.
    if (selected && !selected->guid.isEmpty())
        m_projects->SelectProject(selected->guid);
}

void ProjectsPage::filter(const QString &text)
{
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        m_list->setEmptyText(tr("No projects of this type yet"));
        m_list->setRowFilter({});
    } else {
        m_list->setEmptyText(
            tr("No project matches \"%1\"").arg(shortened(text.trimmed(), QuotedFilter)));
        m_list->setRowFilter([this, words](qsizetype row) {
            return hasAllWords(*m_list->tag(row).value<QXSC::ProjectRecordPtr>(), words);
        });
    }
    showCount();
}

void ProjectsPage::showCount()
{
    const int all = static_cast<int>(m_list->count());
    m_first->setVisible(m_isLoaded && all == 0);
    const int shown = static_cast<int>(m_list->filteredCount());
    if (shown != all)
        m_count->setText(tr("%1 of %2 projects").arg(shown).arg(all));
    else
        m_count->setText(all == 1 ? tr("1 project") : tr("%1 projects").arg(all));
}

void ProjectsPage::showSelected()
{
    const QXSC::ProjectRecordPtr project = m_projects->GetSelectedProject();
    m_details->showProject(project, project && m_checked.value(project->guid, project->published));
}

void ProjectsPage::checkPublished()
{
    const QXSC::ProjectRecordPtr project = m_projects->GetSelectedProject();
    if (!project)
        return;
    bool published = false;
    if (m_projects->ShowPublished()) {
        m_projects->UpdateSelected();
        published = m_list->smallIcon(m_list->selectedRow()) > 0;
    } else {
        m_client.isProjectPublished(project->guid, QString(), published);
    }
    if (!project->guid.isEmpty())
        m_checked.insert(project->guid, published);
    m_details->showProject(project, published);
}

void ProjectsPage::applyColors()
{
    setOwnColor(m_count, QPalette::WindowText, mutedText(QApplication::palette()));
}

void ProjectsPage::focusInEvent(QFocusEvent *)
{
    // A focus proxy would make the page a stop of the Tab key as well.
    if (isMakingProject())
        m_flow->takeFocus();
    else
        m_list->setFocus(Qt::OtherFocusReason);
}

void ProjectsPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
