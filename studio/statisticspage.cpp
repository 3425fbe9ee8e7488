// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/statisticspage.h"

#include "platform/widgets/flexgrid.h"
#include "platform/widgets/hourglass.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/taborder.h"
#include "stats/statscontrol.h"
#include "studio/appearance.h"
#include "studio/errorcenter.h"
#include "studio/pageheader.h"
#include "studio/questionwatch.h"
#include "studio/textlabel.h"

#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>
#include <QStackedLayout>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace Studio {

using ZelWebServiceControls::StatsControl;

namespace {

constexpr int QuestionTab = 3;
constexpr qsizetype LongestName = 120;

QString deploymentText(const QXSC::Deployment &deployment)
{
    const QString name = shortened(deployment.name.simplified(), LongestName);
    if (!deployment.published.isValid())
        return name;
    return StatisticsPage::tr("%1, published %2")
        .arg(name, QLocale().toString(deployment.published.date(), QLocale::ShortFormat));
}

} // namespace

StatisticsPage::StatisticsPage(QXSC::ServiceClient &client, QXSC::StudioService &service,
                               ErrorCenter &errors, QWidget *parent)
    : Page(parent)
    , m_client(client)
    , m_service(service)
    , m_errors(errors)
    , m_control(new StatsControl(this))
    , m_questions(new QuestionWatch(*m_control, client, this))
{
    setObjectName(QStringLiteral("statisticsPage"));
    prepareControl();
    m_report = new QWidget(this);
    auto *column = new QVBoxLayout(m_report);
    column->setContentsMargins(20, 16, 20, 12);
    column->setSpacing(12);
    column->addWidget(makeHeader());
    column->addWidget(m_control, 1);
    m_empty = makeEmptyState();
    m_stack = new QStackedLayout(this);
    m_stack->addWidget(m_report);
    m_stack->addWidget(m_empty);
    Zel::setTabChain({m_deployments, m_refresh, m_control});
    connectParts();
    applyColors();
    leave();
}

StatisticsPage::~StatisticsPage()
{
    delete m_questions;
    m_control->disconnect(this);
    m_tabs->disconnect(this);
}

QString StatisticsPage::title() const
{
    return tr("Statistics");
}

QString StatisticsPage::icon() const
{
    return QStringLiteral("statistics");
}

QWidget *StatisticsPage::makeHeader()
{
    auto *header = new QWidget(m_report);
    m_project = new TextLabel("statisticsProject", LongestName, header);
    m_project->setFont(makeHeading(header, QString())->font());
    m_project->setWordWrap(false);
    m_project->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_deployments = new QComboBox(header);
    m_deployments->setObjectName(QStringLiteral("deployments"));
    m_deployments->setAccessibleName(tr("Deployment"));
    m_deployments->setToolTip(tr("The publishing of the project that is reported"));
    m_deployments->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_deploymentLabel = new QLabel(tr("Deplo&yment"), header);
    m_deploymentLabel->setBuddy(m_deployments);
    m_refresh = makeTool(header, "refreshStatistics", QStringLiteral("refresh"), tr("Refresh"),
                         tr("Run the report again, or fetch the questions (F5)"));
    m_refresh->setShortcut(QKeySequence(Qt::Key_F5));
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(m_project, 1);
    row->addWidget(m_deploymentLabel);
    row->addWidget(m_deployments);
    row->addWidget(m_refresh);
    return header;
}

QWidget *StatisticsPage::makeEmptyState()
{
    auto *empty = new QWidget(this);
    m_emptyText = new TextLabel("statisticsEmpty", LongestName * 3, empty);
    m_emptyText->setAlignment(Qt::AlignCenter);
    m_choose = new QPushButton(tr("&Choose a Project"), empty);
    m_choose->setObjectName(QStringLiteral("chooseProject"));
    m_choose->setAutoDefault(true);
    auto *column = new QVBoxLayout(empty);
    column->setContentsMargins(20, 16, 20, 16);
    column->setSpacing(12);
    column->addWidget(makeHeading(empty, title()));
    column->addStretch(1);
    column->addWidget(m_emptyText);
    column->addWidget(m_choose, 0, Qt::AlignHCenter);
    column->addStretch(1);
    return empty;
}

void StatisticsPage::prepareControl()
{
    m_control->setObjectName(QStringLiteral("statistics"));
    m_control->setAccessibleName(title());
    if (QLayout *room = m_control->layout())
        room->setContentsMargins(0, 0, 0, 0);
    m_tabs = m_control->findChild<QTabBar *>(QStringLiteral("reportsTabs"));
    m_runButton = m_control->findChild<QPushButton *>(QStringLiteral("runReportCmd"));
    m_runCaption = m_runButton->text();
    m_start = m_control->findChild<QDateTimeEdit *>(QStringLiteral("startDateTime"));
    m_end = m_control->findChild<QDateTimeEdit *>(QStringLiteral("endDateTime"));
    const QList<Zel::ListView *> lists = m_control->findChildren<Zel::ListView *>();
    for (Zel::ListView *list : lists)
        list->setSortByValue(true);
    auto *questions = m_control->findChild<Zel::ListView *>(QStringLiteral("qaListView"));
    auto *remove = new QShortcut(QKeySequence::Delete, questions);
    remove->setContext(Qt::WidgetWithChildrenShortcut);
    connect(remove, &QShortcut::activated, m_questions, &QuestionWatch::remove);
}

void StatisticsPage::connectParts()
{
    connect(m_control, &StatsControl::runtimeError, this, &StatisticsPage::failed);
    connect(m_deployments, &QComboBox::activated, this, &StatisticsPage::showDeployment);
    connect(m_refresh, &QToolButton::clicked, this, &StatisticsPage::refresh);
    connect(m_choose, &QPushButton::clicked, this, &StatisticsPage::projectsRequested);
    connect(m_questions, &QuestionWatch::newQuestions, this, &StatisticsPage::newQuestions);
    connect(m_tabs, &QTabBar::currentChanged, this, [this](int index) {
        if (index != QuestionTab)
            m_questions->looked();
    });
}

void StatisticsPage::setProject(const QXSC::ProjectRecordPtr &project)
{
    m_shown = project;
    m_isLoaded = false;
}

void StatisticsPage::open()
{
    if (!m_isLoaded && m_shown)
        load();
    else if (m_isLoaded && !m_runButton->isEnabled())
        runAgain(); // the session had ended during a report
    if (!m_unsent)
        return;
    Problem problem;
    problem.what = tr("A change to a question was not made yet.");
    problem.advice = tr("Retry makes it as it was asked for.");
    problem.canRetry = true;
    m_errors.report(problem, [this] { makeAgain(); });
}

void StatisticsPage::leave()
{
    m_shown.reset();
    m_isLoaded = false;
    m_unsent = {};
    forget();
    bringBack();
    m_control->findChild<QTimer *>(QStringLiteral("Timer1"))->stop();
    m_deployments->clear();
    showEmpty(tr("Open a project to see what happened in it: double-click it in the list of "
                 "projects, or choose Statistics beside it."),
              true);
}

bool StatisticsPage::mayLeave()
{
    m_questions->looked();
    return true;
}

void StatisticsPage::showEmpty(const QString &text, bool offersProjects)
{
    m_emptyText->showText(text);
    m_choose->setVisible(offersProjects);
    m_stack->setCurrentWidget(m_empty);
}

void StatisticsPage::load()
{
    const QString name = shortened(m_shown->name.simplified(), LongestName);
    showEmpty(tr("The deployments of \"%1\" could not be loaded.").arg(name), true);
    QList<QXSC::Deployment> deployments;
    {
        const Zel::Hourglass hourglass(this);
        deployments = m_service.deployments(m_shown->guid);
    }
    m_isLoaded = true;
    m_deployments->clear();
    for (const QXSC::Deployment &deployment : deployments) {
        m_deployments->addItem(deploymentText(deployment), deployment.guid);
        m_deployments->setItemData(m_deployments->count() - 1, deployment.published,
                                   Qt::UserRole + 1);
    }
    if (deployments.isEmpty()) {
        showEmpty(tr("\"%1\" has no deployment yet. There is something to report as soon as an "
                     "audience can watch it.")
                      .arg(name),
                  true);
        return;
    }
    m_project->setText(name);
    m_project->setToolTip(m_shown->name);
    m_stack->setCurrentWidget(m_report);
    showDeployment(0);
}

QString StatisticsPage::deployment() const
{
    return m_deployments->currentData().toString();
}

void StatisticsPage::showDeployment(int index)
{
    m_deployments->setCurrentIndex(index);
    m_unsent = {};
    forget();
    run(m_deployments->itemData(index, Qt::UserRole + 1).toDateTime(), QDateTime());
}

void StatisticsPage::run(const QDateTime &start, const QDateTime &end)
{
    bringBack();
    m_control->Init(&m_client, deployment(), start, end);
    if (!end.isValid())
        m_givenEnd = m_end->dateTime();
}

void StatisticsPage::runAgain()
{
    const bool wasGiven = m_end->dateTime() == m_givenEnd;
    run(m_start->dateTime(), wasGiven ? QDateTime() : m_end->dateTime());
}

void StatisticsPage::bringBack()
{
    m_runButton->setText(m_runCaption);
    m_runButton->setEnabled(true);
}

void StatisticsPage::forget()
{
    // What is shown is of another deployment, and nobody knows yet whether the next report comes.
    m_questions->restart();
    const QList<Zel::ListView *> lists = m_control->findChildren<Zel::ListView *>();
    for (Zel::ListView *list : lists) {
        list->clear();
        list->setEmptyText(QString());
    }
    const QList<Zel::FlexGrid *> grids = m_control->findChildren<Zel::FlexGrid *>();
    for (Zel::FlexGrid *grid : grids)
        grid->clear();
    const QList<QComboBox *> choices = m_control->findChildren<QComboBox *>();
    for (QComboBox *choice : choices) {
        const QSignalBlocker quiet(choice);
        choice->clear();
    }
    for (const char *name : {"pollVis", "dataVis"}) // would chart what is shown no more
        m_control->findChild<QPushButton *>(QLatin1String(name))->setEnabled(false);
    auto *summary = m_control->findChild<QWidget *>(QStringLiteral("Frame2"));
    const QList<QLineEdit *> figures = summary->findChildren<QLineEdit *>();
    for (QLineEdit *figure : figures)
        figure->clear();
}

void StatisticsPage::makeAgain()
{
    const std::function<void()> change = m_unsent;
    if (!change)
        return;
    change();
    m_unsent = {};
}

void StatisticsPage::failed(const Zel::RuntimeError &error)
{
    if (error.number() == Zel::RuntimeError::Overflow) {
        overflowed(error);
        return;
    }
    // What was typed as an answer is sent again, not typed again.
    if (const std::function<void()> again = m_questions->again()) {
        m_unsent = again;
        m_errors.report(error, [this] { makeAgain(); });
        return;
    }
    const bool isReport = !m_runButton->isEnabled() || m_tabs->currentIndex() != QuestionTab;
    if (isReport)
        m_errors.report(error, [this] { runAgain(); });
    else
        m_errors.report(error, [this] { m_questions->refresh(); });
    // What cannot be tried again as it is can be asked for anew. Signing in again runs the report.
    if (!m_errors.canRetry() && !m_errors.problem().needsSignIn)
        bringBack();
}

void StatisticsPage::overflowed(const Zel::RuntimeError &error)
{
    Problem problem;
    problem.what =
        tr("There is more in this range than can be counted: more than 32,767 of a kind.");
    if (error.description() != Zel::RuntimeError::standardDescription(error.number()))
        problem.what = error.description();
    problem.advice = tr("Choose a shorter range and run the report again.");
    problem.details = QString::fromUtf8(error.what());
    m_errors.report(problem);
    // The same range would fail again, so nothing is run: the control waits for another one.
    bringBack();
}

void StatisticsPage::refresh()
{
    if (m_stack->currentWidget() == m_empty) {
        m_errors.attempt([this] {
            if (m_shown)
                load();
        });
        return;
    }
    if (!m_unsent)
        m_errors.clear();
    if (m_tabs->currentIndex() == QuestionTab) {
        m_questions->refresh();
    } else if (m_runButton->isEnabled()) {
        if (m_end->dateTime() == m_givenEnd) {
            const QDateTime now = QDateTime::currentDateTime();
            m_end->setDateTime(now.addMSecs(-now.time().msec()));
            m_givenEnd = m_end->dateTime();
        }
        m_runButton->click();
    } else {
        runAgain();
    }
}

void StatisticsPage::focusInEvent(QFocusEvent *)
{
    if (m_stack->currentWidget() == m_empty)
        m_choose->setFocus(Qt::OtherFocusReason);
    else
        m_tabs->setFocus(Qt::OtherFocusReason);
}

void StatisticsPage::applyColors()
{
    for (QWidget *label :
         {static_cast<QWidget *>(m_emptyText), static_cast<QWidget *>(m_deploymentLabel)})
        setOwnColor(label, QPalette::WindowText, mutedText(QApplication::palette()));
}

void StatisticsPage::changeEvent(QEvent *event)
{
    Page::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace Studio
