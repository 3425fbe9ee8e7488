// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/mainwindow.h"

#include "studio/appearance.h"
#include "studio/assetspage.h"
#include "studio/draftnotice.h"
#include "studio/errorbar.h"
#include "studio/errorcenter.h"
#include "studio/navigationrail.h"
#include "studio/projectspage.h"
#include "studio/recordpage.h"
#include "studio/settings.h"
#include "studio/signinpage.h"
#include "studio/statisticspage.h"
#include "studio/tintedicon.h"

#include <QActionGroup>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

/// Studio's pictures lie in a static library, which does not announce them by itself.
static void loadPictures()
{
    Q_INIT_RESOURCE(studio); // works outside namespaces only
}

namespace Studio {

namespace {

constexpr QSize preferredSize(1400, 840);

} // namespace

MainWindow::MainWindow(QXSC::ServiceClient &client, QXSC::StudioService &service,
                       ErrorCenter &errors, Settings &settings)
    : m_client(client)
    , m_service(service)
    , m_errors(errors)
    , m_settings(settings)
{
    loadPictures();
    setObjectName(QStringLiteral("studioWindow"));
    setWindowTitle(tr("Studio"));
    setWindowIcon(QIcon(QStringLiteral(":/studio/icons/studio.svg")));
    build();
    placeOnScreen();
    connect(m_signIn, &SignInPage::signedIn, this, &MainWindow::openPages);
    connect(m_signIn, &SignInPage::abandoned, this, [this] { m_service.signOut(); });
}

MainWindow::~MainWindow() = default;

void MainWindow::placeOnScreen()
{
    if (!restoreGeometry(m_settings.windowGeometry()))
        resize(preferredSize.boundedTo(screen()->availableSize()));
}

void MainWindow::build()
{
    auto *errorBar = new ErrorBar(m_errors, this);
    connect(errorBar, &ErrorBar::signInRequested, this, &MainWindow::showSignIn);
    m_signIn = new SignInPage(m_errors, m_settings, this);
    m_work = new QWidget(this);
    m_rail = new NavigationRail(m_work);
    m_rail->accountButton()->setMenu(makeAccountMenu());
    m_pages = new QStackedWidget(m_work);
    m_draftNotice = new DraftNotice(m_work);
    auto *room = new QVBoxLayout;
    room->setSpacing(0);
    room->addWidget(m_draftNotice);
    room->addWidget(m_pages, 1);
    auto *row = new QHBoxLayout(m_work);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_rail);
    row->addLayout(room, 1);
    m_stack = new QStackedWidget(this);
    m_stack->addWidget(m_signIn);
    m_stack->addWidget(m_work);
    auto *central = new QWidget(this);
    auto *column = new QVBoxLayout(central);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(errorBar);
    column->addWidget(m_stack, 1);
    setCentralWidget(central);
    m_projects = new ProjectsPage(m_client, m_service, m_errors, m_settings, m_drafts, m_pages);
    addPage(m_projects);
    addPage(new AssetsPage(m_client, m_service, m_errors, m_settings, m_pages));
    m_records = new RecordPage(m_client, m_service, m_errors, m_drafts, m_pages);
    addPage(m_records);
    m_statistics = new StatisticsPage(m_client, m_service, m_errors, m_pages);
    addPage(m_statistics);
    connectStatistics();
    connect(m_rail, &NavigationRail::pageChosen, this, &MainWindow::showPage);
    connect(m_draftNotice, &DraftNotice::goOn, this, &MainWindow::goOn);
}

void MainWindow::addPage(Page *page)
{
    m_pages->addWidget(page);
    m_rail->addPage(page->title(), page->icon());
}

QMenu *MainWindow::makeAccountMenu()
{
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("accountMenu"));
    addAppearances(menu->addMenu(tr("&Appearance")));
    menu->addSeparator();
    QAction *leave = menu->addAction(tintedIcon(QStringLiteral("signout")), tr("Sign &Out"));
    leave->setObjectName(QStringLiteral("signOut"));
    connect(leave, &QAction::triggered, this, &MainWindow::signOut);
    QAction *quit = menu->addAction(tr("&Quit"));
    quit->setObjectName(QStringLiteral("quit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q)); // Qt's own has no key on some desktops
    addAction(quit); // the shortcut works while nobody is signed in, too
    connect(quit, &QAction::triggered, this, &QWidget::close);
    return menu;
}

void MainWindow::addAppearances(QMenu *menu)
{
    menu->setObjectName(QStringLiteral("appearanceMenu"));
    auto *group = new QActionGroup(menu);
    const std::pair<Appearance, QString> choices[] = {{Appearance::System, tr("As the &System")},
                                                      {Appearance::Light, tr("&Light")},
                                                      {Appearance::Dark, tr("&Dark")}};
    for (const auto &[appearance, caption] : choices) {
        QAction *action = menu->addAction(caption);
        action->setObjectName(QStringLiteral("appearance_") + appearanceKey(appearance));
        action->setCheckable(true);
        action->setChecked(m_settings.appearance() == appearance);
        group->addAction(action);
        connect(action, &QAction::triggered, this, [this, chosen = appearance] {
            m_settings.setAppearance(chosen);
            applyAppearance(chosen);
        });
    }
}

Page *MainWindow::page(int number) const
{
    return static_cast<Page *>(m_pages->widget(number));
}

void MainWindow::leavePages()
{
    m_openFor.clear();
    for (int i = 0; i < m_pages->count(); ++i)
        page(i)->leave();
    m_draftNotice->offer({});
}

bool MainWindow::mayClosePages()
{
    for (int i = 0; i < m_pages->count(); ++i) {
        if (!page(i)->holdsChanges())
            continue;
        m_pages->setCurrentIndex(i); // so that what is asked about can be seen
        m_rail->setCurrent(i);
        if (!page(i)->mayClose())
            return false;
    }
    return true;
}

void MainWindow::connectStatistics()
{
    connect(m_projects, &ProjectsPage::openRequested, this, &MainWindow::openProject);
    connect(m_statistics, &StatisticsPage::projectsRequested, this,
            [this] { showPage(m_pages->indexOf(m_projects)); });
    connect(m_statistics, &StatisticsPage::newQuestions, this, [this](int count) {
        m_rail->setCount(m_pages->indexOf(m_statistics), count,
                         count == 1 ? tr("1 new question") : tr("%1 new questions").arg(count));
    });
}

void MainWindow::openProject(const QXSC::ProjectRecordPtr &project)
{
    m_statistics->setProject(project);
    showPage(m_pages->indexOf(m_statistics));
}

void MainWindow::goOn(const RecordDraft &draft)
{
    const int number = m_pages->indexOf(m_records);
    if (m_pages->currentIndex() != number && !page(m_pages->currentIndex())->mayLeave())
        return;
    m_pages->setCurrentIndex(number);
    m_rail->setCurrent(number);
    m_errors.attempt([this, draft] { m_records->resume(draft); });
    m_draftNotice->offer(
        m_drafts.waiting()); // those left, or this one when it was not gone on with
}

void MainWindow::openPages()
{
    const QString account = m_signIn->accountName();
    const QStringList openFor{m_signIn->server(), m_signIn->userName(), account};
    if (openFor != m_openFor) {
        leavePages();
        m_drafts.setOwner(openFor);
        m_draftNotice->offer(m_drafts.waiting());
    }
    m_openFor = openFor;
    m_rail->setAccountName(account);
    m_rail->accountButton()->setToolTip(
        tr("%1, signed in as %2").arg(account, m_signIn->userName()));
    setWindowTitle(tr("%1 – Studio").arg(account));
    m_stack->setCurrentWidget(m_work);
    m_errors.clear();
    showPage(m_pages->currentIndex());
}

void MainWindow::showPage(int number)
{
    const int before = m_pages->currentIndex();
    if (number != before && !page(before)->mayLeave()) {
        m_rail->setCurrent(before);
        return;
    }
    Page *shown = page(number);
    m_pages->setCurrentIndex(number);
    m_rail->setCurrent(number);
    m_errors.attempt([shown] { shown->open(); });
    shown->setFocus();
}

void MainWindow::showSignIn()
{
    setWindowTitle(tr("Studio"));
    m_signIn->returnToCredentials();
    m_stack->setCurrentWidget(m_signIn);
}

void MainWindow::signOut()
{
    if (!mayClosePages())
        return;
    m_service.signOut();
    leavePages();
    m_errors.clear();
    showSignIn();
}

void MainWindow::keyPressEvent(QKeyEvent *event)
{
    // Esc that nobody else had a use for closes the problem strip.
    if (event->key() == Qt::Key_Escape && m_errors.hasProblem())
        m_errors.clear();
    else
        QMainWindow::keyPressEvent(event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (m_stack->currentWidget() == m_work && !mayClosePages()) {
        event->ignore();
        return;
    }
    m_settings.setWindowGeometry(saveGeometry());
    for (int i = 0; i < m_pages->count(); ++i)
        page(i)->remember();
    QMainWindow::closeEvent(event);
}

} // namespace Studio
