// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/projectstour.h"

#include "common/contract/projectrecord.h"
#include "platform/widgets/listview.h"
#include "studio/studioapp.h"
#include "studio/tour/listacts.h"
#include "studio/tour/touractor.h"

#include <QLabel>
#include <QLineEdit>

#include <csignal>
#include <exception>
#include <utility>

namespace Studio {

namespace {

constexpr int CreatedColumn = 2;
constexpr int NameColumn = 0;

void signalService(StudioApp &studio, int signal)
{
    ::kill(static_cast<pid_t>(studio.embeddedService()->processId()), signal);
}

QXSC::ProjectRecordPtr shownProject(Zel::ListView &list, qsizetype position)
{
    return list.tag(list.rowAt(position)).value<QXSC::ProjectRecordPtr>();
}

void sortAndChoose(TourActor &actor, Zel::ListView &list)
{
    clickHeader(actor, list, CreatedColumn);
    const auto newest = shownProject(list, 0);
    const auto next = shownProject(list, 1);
    actor.expect(newest->hasCreated && next->hasCreated && newest->created >= next->created,
                 QStringLiteral("the newest project first"));
    actor.shoot(QStringLiteral("Projects, newest first"));

    clickHeader(actor, list, NameColumn);
    clickLine(actor, list, 2);
    actor.expect(actor.find<QLabel>(QStringLiteral("detailName")).text() ==
                     shownProject(list, 2)->name,
                 QStringLiteral("the details of the clicked project"));
    actor.click(QStringLiteral("checkPublished"));
    actor.shoot(QStringLiteral("A project and its details"));
}

void filterRows(TourActor &actor, Zel::ListView &list)
{
    const QString word = shownProject(list, 0)->name.section(QLatin1Char(' '), 0, 0);
    actor.press(Qt::Key_F, Qt::ControlModifier);
    actor.type(QStringLiteral("projectFilter"), word);
    actor.expect(list.filteredCount() > 0 && list.filteredCount() < list.count(),
                 QStringLiteral("fewer projects after typing a filter"));
    actor.shoot(QStringLiteral("Projects, filtered"));
    actor.type(QStringLiteral("projectFilter"), QStringLiteral("nothing is called this"));
    actor.expect(list.filteredCount() == 0, QStringLiteral("no project to match"));
    actor.shoot(QStringLiteral("No project matches"));
    actor.press(Qt::Key_Escape);
    actor.expect(list.filteredCount() == list.count(), QStringLiteral("all projects after Esc"));
}

void switchColumns(TourActor &actor, Zel::ListView &list)
{
    actor.useMenu(QStringLiteral("columnsButton"), QStringLiteral("ShowModiffied"),
                  [&] { actor.shoot(QStringLiteral("The column menu")); });
    actor.expect(list.columnWidth(3) == 0, QStringLiteral("the column Modified to be hidden"));
    actor.useMenu(QStringLiteral("columnsButton"), QStringLiteral("ShowModiffied"), [] {});
    actor.expect(list.columnWidth(3) > 0, QStringLiteral("the column Modified to be back"));
}

/// Takes a picture of a wait as soon as the notice is there, and ends the wait.
class WaitWatcher : public QXSC::WaitObserver
{
public:
    WaitWatcher(StudioApp &studio, TourActor &actor)
        : m_studio(studio)
        , m_actor(actor)
    {
        m_studio.client().setWaitObserver(this);
    }

    ~WaitWatcher() override { m_studio.client().setWaitObserver(&m_studio.waitNotice()); }

    Q_DISABLE_COPY_MOVE(WaitWatcher)

    void waiting(std::chrono::milliseconds waited) noexcept override
    {
        m_studio.waitNotice().waiting(waited);
        signalService(m_studio, SIGCONT);
        if (std::exchange(m_hasShot, true))
            return;
        try {
            m_actor.shootNow(QStringLiteral("Waiting for the service"));
        } catch (...) {
            m_failure = std::current_exception(); // nothing may be thrown from here
        }
    }

    void finished() noexcept override { m_studio.waitNotice().finished(); }

    void check() const
    {
        m_actor.waitFor(QStringLiteral("a notice while the service takes its time"),
                        [this] { return m_hasShot; });
        if (m_failure)
            std::rethrow_exception(m_failure);
    }

private:
    StudioApp &m_studio;
    TourActor &m_actor;
    bool m_hasShot = false;
    std::exception_ptr m_failure;
};

void waitForTheService(TourActor &actor, StudioApp &studio)
{
    const WaitWatcher watcher(studio, actor);
    signalService(studio, SIGSTOP);
    actor.click(QStringLiteral("refreshButton"));
    watcher.check();
}

void surviveTheService(TourActor &actor, Zel::ListView &list, StudioApp &studio)
{
    const qsizetype before = list.count();
    signalService(studio, SIGKILL);
    actor.waitFor(QStringLiteral("the service to end"),
                  [&] { return !studio.embeddedService()->isRunning(); });
    actor.click(QStringLiteral("refreshButton"));
    actor.find(QStringLiteral("errorBar"));
    actor.click(QStringLiteral("errorDetailsButton"));
    actor.shoot(QStringLiteral("The service has gone"));
    actor.click(QStringLiteral("errorRetry"));
    actor.waitFor(QStringLiteral("the projects to come back"),
                  [&] { return list.count() == before && !studio.errors().canRetry(); });
    actor.shoot(QStringLiteral("After trying again"));
}

} // namespace

void tourProjects(TourActor &actor, StudioApp &studio)
{
    auto &list = actor.find<Zel::ListView>(QStringLiteral("projectList"));
    actor.waitFor(QStringLiteral("the projects"), [&] { return list.count() >= 20; });
    actor.shoot(QStringLiteral("Projects"));
    sortAndChoose(actor, list);
    filterRows(actor, list);
    switchColumns(actor, list);
    waitForTheService(actor, studio);
    surviveTheService(actor, list, studio);
}

} // namespace Studio
