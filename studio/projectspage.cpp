// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/projectspage.h"

#include "platform/core/propertybag.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/taborder.h"
#include "projects/projectlist.h"
#include "studio/appearance.h"
#include "studio/columnwidths.h"
#include "studio/errorcenter.h"
#include "studio/projectdetails.h"
#include "studio/settings.h"
#include "studio/tintedicon.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

#include <array>

namespace Studio {

using ZelWebServiceControls::ProjectList;

namespace {

struct ColumnSwitch
{
    const char *property;
    const char *caption;
    bool onByDefault;
};

constexpr std::array columnSwitches{
    ColumnSwitch{"ShowCreated", QT_TRANSLATE_NOOP("Studio::ProjectsPage", "Created"), true},
    ColumnSwitch{"ShowModiffied", QT_TRANSLATE_NOOP("Studio::ProjectsPage", "Modified"), true},
    ColumnSwitch{"ShowCreatedBy", QT_TRANSLATE_NOOP("Studio::ProjectsPage", "Created By"), true},
    ColumnSwitch{"ShowEventDate", QT_TRANSLATE_NOOP("Studio::ProjectsPage", "Event Date"), true},
    ColumnSwitch{"ShowPublished", QT_TRANSLATE_NOOP("Studio::ProjectsPage", "Published marker"),
                 false},
};

QToolButton *makeTool(QWidget *parent, const char *name, const QString &icon, const QString &text,
                      const QString &tip)
{
    auto *button = new QToolButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setIcon(tintedIcon(icon));
    button->setText(text);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

/// A bag that a person's settings hold from before a switch existed shows published projects.
Zel::PropertyBag startingBag(const QString &text)
{
    Zel::PropertyBag bag = Zel::PropertyBag::fromText(text);
    if (text.isEmpty())
        bag.write(QStringLiteral("ShowPublished"), true, false);
    return bag;
}

} // namespace

ProjectsPage::ProjectsPage(QXSC::ServiceClient &client, QXSC::StudioService &service,
                           ErrorCenter &errors, Settings &settings, QWidget *parent)
    : Page(parent)
    , m_client(client)
    , m_service(service)
    , m_errors(errors)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("projectsPage"));
    build();
    m_projects->readPropertyBag(startingBag(m_settings.projectListBag()));
    connect(m_projects, &ProjectList::ProjectClick, this, &ProjectsPage::showProject);
    connect(m_projects, &ProjectList::ProjectDblClick, this, [this] { m_details->setFocus(); });
    connect(m_projects, &ProjectList::runtimeError, this,
            [this](const Zel::RuntimeError &error) { m_errors.report(error); });
    connect(m_list, &Zel::ListView::selectionChanged, this,
            [this] { m_details->show(m_projects->GetSelectedProject()); });
    connect(m_type, &QComboBox::activated, this, [this] {
        m_settings.setProjectType(m_type->currentData().toString());
        m_errors.attempt([this] { loadProjects(); });
    });
    connect(m_filter, &QLineEdit::textChanged, this, &ProjectsPage::filter);
    connect(m_details, &ProjectDetails::checkRequested, this,
            [this] { m_errors.attempt([this] { updatePublished(); }); });
}

QString ProjectsPage::title() const
{
    return tr("Projects");
}

QString ProjectsPage::icon() const
{
    return QStringLiteral("projects");
}

void ProjectsPage::build()
{
    m_projects = new ProjectList(this);
    m_projects->setObjectName(QStringLiteral("projects"));
    m_list = m_projects->findChild<Zel::ListView *>(QStringLiteral("projectList"));
    m_details = new ProjectDetails(this);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("projectCount"));
    auto *split = new QSplitter(this);
    split->setObjectName(QStringLiteral("projectSplit"));
    split->addWidget(m_projects);
    split->addWidget(m_details);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 0);
    split->setChildrenCollapsible(false);
    split->setHandleWidth(12);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 12);
    column->setSpacing(12);
    column->addWidget(makeHeader());
    column->addWidget(split, 1);
    column->addWidget(m_count);
    Zel::setTabChain({m_type, m_filter, m_columns, m_projects, m_details});
}

QWidget *ProjectsPage::makeHeader()
{
    auto *header = new QWidget(this);
    auto *heading = new QLabel(title(), header);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setWeight(QFont::DemiBold);
    heading->setFont(font);
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
    m_filter->setMaximumWidth(380);
    m_filter->addAction(tintedIcon(QStringLiteral("search")), QLineEdit::LeadingPosition);
    m_columns = makeTool(header, "columnsButton", QStringLiteral("columns"), tr("Columns"),
                         tr("Choose the columns to show"));
    m_columns->setPopupMode(QToolButton::InstantPopup);
    m_columns->setMenu(makeColumnMenu());
    auto *refreshButton = makeTool(header, "refreshButton", QStringLiteral("refresh"),
                                   tr("Refresh"), tr("Load the list again (F5)"));
    refreshButton->setShortcut(QKeySequence(Qt::Key_F5));
    connect(refreshButton, &QToolButton::clicked, this,
            [this] { m_errors.attempt([this] { refresh(); }); });
    auto *find = new QShortcut(QKeySequence::Find, this);
    connect(find, &QShortcut::activated, this, [this] {
        m_filter->setFocus(Qt::ShortcutFocusReason);
        m_filter->selectAll();
    });
    auto *leave = new QShortcut(QKeySequence(Qt::Key_Escape), m_filter);
    leave->setContext(Qt::WidgetShortcut);
    connect(leave, &QShortcut::activated, m_filter, &QLineEdit::clear);

    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(heading);
    row->addSpacing(8);
    row->addWidget(m_type);
    row->addStretch(1);
    row->addWidget(m_filter, 4);
    row->addWidget(m_columns);
    row->addWidget(refreshButton);
    return header;
}

QMenu *ProjectsPage::makeColumnMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("columnMenu"));
    for (const ColumnSwitch &entry : columnSwitches) {
        const QString property = QLatin1String(entry.property);
        QAction *action = menu->addAction(tr(entry.caption));
        action->setObjectName(property);
        action->setCheckable(true);
        connect(action, &QAction::triggered, this,
                [this, property](bool on) { switchColumn(property, on); });
    }
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        for (QAction *action : menu->actions())
            action->setChecked(
                m_projects->property(action->objectName().toLatin1().constData()).toBool());
    });
    return menu;
}

void ProjectsPage::open()
{
    fit();
    loadTypes();
    loadProjects();
}

void ProjectsPage::fit()
{
    // The room for the columns is known once the page is on screen.
    layout()->activate();
    fitColumns(*m_list, m_settings.projectColumnWidths());
    m_isFitted = true;
}

void ProjectsPage::remember()
{
    if (m_isFitted)
        m_settings.setProjectColumnWidths(columnWidths(*m_list, m_settings.projectColumnWidths()));
}

void ProjectsPage::loadTypes()
{
    const QList<QXSC::ProjectType> types = m_service.projectTypes();
    m_type->clear();
    for (const QXSC::ProjectType &type : types)
        m_type->addItem(type.name, type.typeID);
    const int remembered = m_type->findData(m_settings.projectType());
    m_type->setCurrentIndex(remembered >= 0 ? remembered : 0);
}

void ProjectsPage::loadProjects()
{
    m_list->setEmptyText(tr("The projects could not be loaded"));
    m_projects->Init(&m_client, m_type->currentData().toString());
    m_details->show(nullptr);
    filter(m_filter->text());
}

void ProjectsPage::refresh()
{
    // Loading anew rather than emptying first: when the service fails, what is on screen stays.
    // What a person had arranged comes back after it.
    const QXSC::ProjectRecordPtr selected = m_projects->GetSelectedProject();
    const bool sorted = m_list->isSorted();
    m_projects->Init(&m_client, m_type->currentData().toString());
    if (sorted)
        m_list->sortBy(m_list->sortKey(), m_list->sortOrder());
    filter(m_filter->text());
    m_details->show(nullptr);
    if (selected)
        m_projects->SelectProject(selected->guid);
}

void ProjectsPage::switchColumn(const QString &property, bool on)
{
    const auto entry = std::find_if(columnSwitches.begin(), columnSwitches.end(),
                                    [&](const ColumnSwitch &candidate) {
                                        return property == QLatin1String(candidate.property);
                                    });
    Zel::PropertyBag bag = m_projects->writePropertyBag();
    bag.write(property, on, entry->onByDefault);
    m_projects->readPropertyBag(bag);
    m_settings.setProjectListBag(bag.toText());
    // Reading the bag gave every column its own width again.
    fit();
    // The marker is put on lines when they are loaded.
    if (property == QLatin1String("ShowPublished"))
        m_errors.attempt([this] { refresh(); });
}

void ProjectsPage::filter(const QString &text)
{
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        m_list->setRowFilter({});
        m_list->setEmptyText(tr("No projects of this type yet"));
    } else {
        m_list->setEmptyText(tr("No project matches \"%1\"").arg(text.trimmed()));
        m_list->setRowFilter([this, words](qsizetype row) {
            const auto project = m_list->tag(row).value<QXSC::ProjectRecordPtr>();
            return std::all_of(words.begin(), words.end(), [&](const QString &word) {
                return project->name.contains(word, Qt::CaseInsensitive) ||
                       project->description.contains(word, Qt::CaseInsensitive) ||
                       project->createdBy.contains(word, Qt::CaseInsensitive);
            });
        });
    }
    showCount();
}

void ProjectsPage::showCount()
{
    const int all = static_cast<int>(m_list->count());
    const int shown = static_cast<int>(m_list->filteredCount());
    if (shown != all)
        m_count->setText(tr("%1 of %2 projects").arg(shown).arg(all));
    else
        m_count->setText(all == 1 ? tr("1 project") : tr("%1 projects").arg(all));
    QPalette muted = window()->palette();
    muted.setColor(QPalette::WindowText, mutedText(muted));
    m_count->setPalette(muted);
}

void ProjectsPage::showProject(const QXSC::ProjectRecordPtr &project)
{
    m_details->show(project);
}

void ProjectsPage::updatePublished()
{
    const QXSC::ProjectRecordPtr project = m_projects->GetSelectedProject();
    if (!project)
        return;
    m_projects->UpdateSelected();
    bool published = false;
    m_client.isProjectPublished(project->guid, QString(), published);
    m_details->showPublished(published);
}

} // namespace Studio
