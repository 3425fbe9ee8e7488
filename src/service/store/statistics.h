// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/deployments.h"
#include "service/store/listpage.h"
#include "service/store/sqltext.h"
#include "service/store/sqlvalue.h"
#include "service/store/timerange.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Zel {

/// A person of an audience. Names are empty and the time is not set for one who is not registered.
struct AudiencePerson
{
    QString userId;
    QString firstName;
    QString lastName;
    QString email;
    std::optional<qint64> registeredAt;

    bool operator==(const AudiencePerson &) const = default;
};

/// What one person looked at within a range.
struct Participation
{
    AudiencePerson person;
    bool participated = false; ///< the following mean nothing otherwise
    qint64 seconds = 0;
    qint64 firstAt = 0;
    qint64 lastAt = 0;
};

/// Where a registrant stands among the others; the default comes before all.
struct RegistrantPlace
{
    qint64 at = std::numeric_limits<qint64>::min();
    QString userId;
};

/// Page views of a range; each names its person by the position in `people`.
struct PageViewList
{
    struct View
    {
        qsizetype person = 0;
        qint64 at = 0;
        qint64 seconds = 0;
        bool closed = false;
    };

    /// Where a view stands among the others; the default comes before all.
    struct Place
    {
        qint64 at = std::numeric_limits<qint64>::min();
        QByteArray id;
    };

    QList<AudiencePerson> people;
    QList<View> views;
    std::optional<Place> next; ///< that of the last view, when there are more
};

/// The figures and lists of what an audience did. All are computed by the database; over the same
/// range the lists add up to the figures.
class ZEL_EXPORT Statistics
{
public:
    /// What browsers differ in.
    enum class Attribute
    {
        BrowserType,
        JSVersion,
        ScreenDepth
    };

    struct Totals
    {
        qint64 hits = 0;
        qint64 seconds = 0;
    };

    explicit Statistics(Database &database)
        : m_database(database)
    {
    }

    Totals totals(const DeploymentRef &deployment, const TimeRange &range);
    qint64 participantCount(const DeploymentRef &deployment, const TimeRange &range);
    /// All registrants, whenever they registered.
    qint64 registrantCount(const DeploymentRef &deployment);
    /// Registrants who viewed anything in the range.
    qint64 registeredParticipantCount(const DeploymentRef &deployment, const TimeRange &range);
    qint64 hitCount(const DeploymentRef &deployment, const TimeRange &range, Attribute attribute,
                    const QString &value);

    /// Before everybody in the order of `participants`.
    static constexpr qint64 beforeAll = -1;

    /// Those who viewed anything in the range, in an order that stays: a view that comes in late
    /// would move its person within one by first views. The key is the number of the person.
    ListPage<Participation, qint64> participants(const DeploymentRef &deployment,
                                                 const TimeRange &range, qint64 after = beforeAll,
                                                 qint64 limit = allRows);
    /// All registrants in order of their registration.
    ListPage<Participation, RegistrantPlace> registrants(const DeploymentRef &deployment,
                                                         const TimeRange &range,
                                                         const RegistrantPlace &after = {},
                                                         qint64 limit = allRows);
    /// The views of a range in order of time, with those who made them.
    PageViewList pageViews(const DeploymentRef &deployment, const TimeRange &range,
                           const PageViewList::Place &after = {}, qint64 limit = allRows);

    /// The statements of the eleven figures of a summary with their values put in, as one would
    /// type them into a database's own program; for measuring.
    static QStringList typedSummary(const DeploymentRef &deployment, const TimeRange &range);

private:
    /// The one number a query answers.
    qint64 number(const SqlText &text, const SqlValues &values);

    Database &m_database;
};

} // namespace Zel
