// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/statspage.h"

#include <functional>
#include <memory>

namespace Zel {
class ListRowProvider;
class ListView;
} // namespace Zel

namespace ZelWebServiceControls {

/// A tab with one list of traffic, which a click on a column header sorts by the texts shown.
///
/// A load empties the list before it asks the service; an answer of nothing leaves it so. Sorting
/// stays as it is.
class TrafficPage : public StatsPage
{
public:
    /// The lines for the range, null when the service answers nothing.
    using Fetch = std::function<std::shared_ptr<const Zel::ListRowProvider>(const StatsSource &)>;

    /// @param emptyText shown in the list when the service had no lines
    TrafficPage(QFrame *frame, const StatsSource &source, Zel::ListView *list,
                const QString &emptyText, Fetch fetch);

    void load() override;

private:
    void sortByColumn(int column);

    Zel::ListView *m_list;
    QString m_emptyText;
    Fetch m_fetch;
};

StatsPage *makeParticipantPage(QFrame *frame, const StatsSource &source);
StatsPage *makeRegistrantPage(QFrame *frame, const StatsSource &source);
StatsPage *makePageViewPage(QFrame *frame, const StatsSource &source);

} // namespace ZelWebServiceControls
