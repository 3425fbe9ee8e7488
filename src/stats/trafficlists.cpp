// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/trafficlists.h"

#include "platform/widgets/listsort.h"
#include "platform/widgets/listview.h"
#include "stats/statscontrol.h"
#include "stats/statssource.h"
#include "stats/trafficrows.h"

#include <QPointer>
#include <QVBoxLayout>

namespace ZelWebServiceControls {

namespace {

// Twips.
constexpr int NameWidth = 1350;
constexpr int EmailWidth = 2600;
constexpr int DateWidth = 2250;
constexpr int DurationWidth = 1250;
constexpr int FlagWidth = 1250;
constexpr int ClosedWidth = 1000;

Zel::ListView *makeList(QFrame *frame, const char *name, const QString &accessibleName)
{
    auto *list = new Zel::ListView(frame);
    list->setObjectName(QLatin1String(name));
    list->setAccessibleName(accessibleName);
    list->addColumn(StatsControl::tr("User ID"), NameWidth);
    list->addColumn(StatsControl::tr("First Name"), NameWidth);
    list->addColumn(StatsControl::tr("Last Name"), NameWidth);
    list->addColumn(StatsControl::tr("Email"), EmailWidth);
    auto *column = new QVBoxLayout(frame);
    column->setContentsMargins({});
    column->addWidget(list);
    return list;
}

/// The lines of what the service answers, null for nothing.
template <typename Rows>
std::shared_ptr<const Zel::ListRowProvider> rowsOf(const typename Rows::Records &records)
{
    return records ? std::make_shared<Rows>(records) : nullptr;
}

} // namespace

TrafficPage::TrafficPage(QFrame *frame, const StatsSource &source, Zel::ListView *list,
                         const QString &emptyText, Fetch fetch)
    : StatsPage(frame, source)
    , m_list(list)
    , m_emptyText(emptyText)
    , m_fetch(std::move(fetch))
{
    onUser(m_list, &Zel::ListView::columnClicked, &TrafficPage::sortByColumn);
}

void TrafficPage::load()
{
    const QPointer<TrafficPage> self(this);
    m_list->clear();
    // Until the service has answered nobody knows that there are none.
    m_list->setEmptyText(QString());
    const auto rows = m_fetch(source());
    if (!self)
        return;
    m_list->setEmptyText(m_emptyText);
    if (rows)
        m_list->setRows(rows);
}

void TrafficPage::sortByColumn(int column)
{
    Zel::sortByHeaderClick(*m_list, column);
}

StatsPage *makeParticipantPage(QFrame *frame, const StatsSource &source)
{
    Zel::ListView *list = makeList(frame, "participantList", StatsControl::tr("Participants"));
    list->addColumn(StatsControl::tr("Registered"), FlagWidth);
    list->addColumn(StatsControl::tr("Time Spent"), DurationWidth);
    list->addColumn(StatsControl::tr("First Viewed"), DateWidth);
    list->addColumn(StatsControl::tr("Last Viewed"), DateWidth);
    list->addColumn(StatsControl::tr("Date Registered"), DateWidth);
    return new TrafficPage(frame, source, list, StatsControl::tr("No participants in this range"),
                           [](const StatsSource &of) {
                               return rowsOf<ParticipantRows>(of.client().GetParticipants(
                                   of.deploymentGuid(), of.start(), of.end()));
                           });
}

StatsPage *makeRegistrantPage(QFrame *frame, const StatsSource &source)
{
    Zel::ListView *list = makeList(frame, "registrantList", StatsControl::tr("Registrants"));
    list->addColumn(StatsControl::tr("Participated"), FlagWidth);
    list->addColumn(StatsControl::tr("Date Registered"), DateWidth);
    list->addColumn(StatsControl::tr("First Viewed"), DateWidth);
    list->addColumn(StatsControl::tr("Last Viewed"), DateWidth);
    list->addColumn(StatsControl::tr("Time Spent"), DurationWidth);
    return new TrafficPage(
        frame, source, list, StatsControl::tr("No registrants"), [](const StatsSource &of) {
            return rowsOf<RegistrantRows>(
                of.client().GetRegistrants(of.deploymentGuid(), of.start(), of.end()));
        });
}

StatsPage *makePageViewPage(QFrame *frame, const StatsSource &source)
{
    Zel::ListView *list = makeList(frame, "pageViewList", StatsControl::tr("Page Views"));
    list->addColumn(StatsControl::tr("Date"), DateWidth);
    // The header that hosts know, letter for letter.
    list->addColumn(StatsControl::tr("Tme Spent"), DurationWidth);
    list->addColumn(StatsControl::tr("Closed"), ClosedWidth);
    return new TrafficPage(frame, source, list, StatsControl::tr("No page views in this range"),
                           [](const StatsSource &of) {
                               return rowsOf<PageViewRows>(of.client().GetPageViews(
                                   of.deploymentGuid(), of.start(), of.end()));
                           });
}

} // namespace ZelWebServiceControls
