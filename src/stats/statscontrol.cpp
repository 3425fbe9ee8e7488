// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/statscontrol.h"

#include "platform/core/datenumber.h"
#include "platform/widgets/twips.h"
#include "platform/widgets/yielding.h"
#include "stats/questionlist.h"
#include "stats/resultspages.h"
#include "stats/statspage.h"
#include "stats/statsparts.h"
#include "stats/statssource.h"
#include "stats/statssummary.h"
#include "stats/trafficlists.h"

#include <QDateTimeEdit>
#include <QFrame>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTimer>

namespace ZelWebServiceControls {

namespace {

bool isGiven(const QDateTime &moment)
{
    return moment.isValid() && Zel::dateNumber(moment) != 0;
}

/// What a picker shows of a moment: whole seconds of the local clock.
QDateTime wholeSeconds(const QDateTime &moment)
{
    const QDateTime local = moment.toLocalTime();
    return local.addMSecs(-local.time().msec());
}

} // namespace

StatsControl::StatsControl(QWidget *parent)
    : Control(parent)
    , m_parts(std::make_unique<StatsParts>(this))
    , m_source(std::make_unique<StatsSource>(m_parts->startDateTime, m_parts->endDateTime))
    , m_summary(new StatsSummary(m_parts->Frame2, *m_source))
{
    makePages();
    // A host's tab order takes part only when this control says that it takes the focus.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(m_parts->startDateTime);
    connectUser();
}

StatsControl::~StatsControl() = default;

void StatsControl::makePages()
{
    const auto &frames = m_parts->reportsTabFrame;
    m_pages[0] = makeParticipantPage(frames[0], *m_source);
    m_pages[1] = makeRegistrantPage(frames[1], *m_source);
    m_pages[2] = makePageViewPage(frames[2], *m_source);
    m_pages[3] = new QuestionList(frames[3], *m_source);
    m_pages[4] = makePollPage(frames[4], *m_source);
    m_pages[5] = makeSurveyPage(frames[5], *m_source);
}

void StatsControl::connectUser()
{
    onUser(m_parts->runReportCmd, &QPushButton::clicked, &StatsControl::runReport);
    onUser(m_parts->Timer1, &QTimer::timeout, &StatsControl::runReport);
    onUser(m_parts->reportsTabs, &QTabBar::currentChanged, &StatsControl::showTab);
}

QSize StatsControl::sizeHint() const
{
    const int dpi = Zel::logicalDpi(this);
    return QSize(Zel::pixelsFromTwips(15000, dpi), Zel::pixelsFromTwips(8400, dpi));
}

QList<QColor> StatsControl::chartColours() const
{
    return m_source->chartColours();
}

void StatsControl::Init(QXSC::ServiceClient *qxs, const QString &deploymentGuid,
                        const QDateTime &start_dt, const QDateTime &end_dt)
{
    m_source->bind(qxs, deploymentGuid);
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime start = isGiven(start_dt) ? start_dt : now.addDays(-1);
    m_parts->startDateTime->setDateTime(wholeSeconds(start));
    m_parts->endDateTime->setDateTime(wholeSeconds(isGiven(end_dt) ? end_dt : now));
    m_parts->Timer1->start();
    selectTab(0);
    m_loaded[0] = false;
}

void StatsControl::selectTab(qint16 index)
{
    const QSignalBlocker blocked(m_parts->reportsTabs);
    m_parts->reportsTabs->setCurrentIndex(index);
    m_parts->reportsTabFrame[static_cast<size_t>(m_currentTab)]->hide();
    m_parts->reportsTabFrame[static_cast<size_t>(index)]->show();
    m_currentTab = index;
}

void StatsControl::showTab(int index)
{
    if (index == m_currentTab)
        return;
    selectTab(static_cast<qint16>(index));
    if (!Zel::yieldOnce(this))
        return;
    const QPointer<StatsControl> self(this);
    loadCurrentTab();
    if (self)
        static_cast<void>(Zel::yieldOnce(this));
}

void StatsControl::runReport()
{
    const QPointer<StatsControl> self(this);
    QPushButton *button = m_parts->runReportCmd;
    const bool hadFocus = button->hasFocus();
    button->setText(tr("Loading data..."));
    button->setEnabled(false);
    // Windows are not painted while the service is asked.
    button->repaint();
    m_summary->fill();
    if (!self)
        return;
    m_loaded.fill(false);
    loadCurrentTab();
    if (!self)
        return;
    button->setText(tr("Run New Report"));
    button->setEnabled(true);
    // What is disabled loses the keyboard.
    if (hadFocus)
        button->setFocus();
}

void StatsControl::loadCurrentTab()
{
    const QPointer<StatsControl> self(this);
    const auto tab = static_cast<size_t>(m_currentTab);
    if (m_loaded[tab])
        return;
    if (m_pages[tab])
        m_pages[tab]->load();
    if (self)
        m_loaded[tab] = true;
}

} // namespace ZelWebServiceControls
