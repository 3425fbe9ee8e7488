// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/trafficrows.h"

#include "common/common.h"
#include "platform/core/booleans.h"
#include "platform/core/datetext.h"

#include <utility>

namespace ZelWebServiceControls {

namespace {

/// Quotient and remainder with the remainder's sign that of the number, the quotient rounded down.
std::pair<qint32, qint32> parted(qint32 number, qint32 by)
{
    const qint32 rest = number % by;
    return {number / by - (rest < 0 ? 1 : 0), rest};
}

QString padded(qint32 number)
{
    return Common::PadTwoDigits(static_cast<qint16>(number));
}

QDateTime registeredOn(const QXSC::StatsUserPtr &user)
{
    return user ? user->DateRegistered : QDateTime();
}

} // namespace

QString formatSeconds(qint32 seconds)
{
    const auto [totalMinutes, secondsPart] = parted(seconds, 60);
    const auto [hours, minutesPart] = parted(totalMinutes, 60);
    return QString::number(hours) + u':' + padded(minutesPart) + u':' + padded(secondsPart);
}

QString userText(const QXSC::StatsUserPtr &user, UserText which)
{
    if (!user)
        return {};
    switch (which) {
    case UserText::UserID:
        return user->UserID;
    case UserText::FirstName:
        return user->FirstName;
    case UserText::LastName:
        return user->LastName;
    case UserText::Email:
        return user->Email;
    }
    return {};
}

QString ParticipantRows::text(qsizetype row, int column) const
{
    const QXSC::ParticipantRecord &participant = record(row);
    switch (column) {
    case UserID:
        return userText(participant.User, UserText::UserID);
    case Registered:
        return Zel::booleanText(participant.Registered);
    case TimeSpent:
        return formatSeconds(participant.TimeSpent);
    case FirstViewed:
        return Zel::generalDateText(participant.FirstViewed);
    case LastViewed:
        return Zel::generalDateText(participant.LastViewed);
    default:
        break;
    }
    if (!participant.Registered)
        return {};
    if (column == DateRegistered)
        return Zel::generalDateText(registeredOn(participant.User));
    return userText(participant.User, static_cast<UserText>(column));
}

bool ParticipantRows::sortValues(int column, std::span<qint64> out) const
{
    using Record = QXSC::ParticipantRecord;
    switch (column) {
    case Registered:
        return writeValues(out, [](const Record &each) { return each.Registered; });
    case TimeSpent:
        return writeValues(out, [](const Record &each) { return each.TimeSpent; });
    case FirstViewed:
        return writeValues(out, [](const Record &each) { return sortValueOf(each.FirstViewed); });
    case LastViewed:
        return writeValues(out, [](const Record &each) { return sortValueOf(each.LastViewed); });
    case DateRegistered:
        return writeValues(out, [](const Record &each) {
            return each.Registered ? sortValueOf(registeredOn(each.User)) : NoSortValue;
        });
    default:
        return false;
    }
}

QString RegistrantRows::text(qsizetype row, int column) const
{
    const QXSC::RegistrantRecord &registrant = record(row);
    switch (column) {
    case Participated:
        return Zel::booleanText(registrant.Participated);
    case DateRegistered:
        return Zel::generalDateText(registeredOn(registrant.User));
    case FirstViewed:
        return registrant.Participated ? Zel::generalDateText(registrant.FirstViewed) : QString();
    case LastViewed:
        return registrant.Participated ? Zel::generalDateText(registrant.LastViewed) : QString();
    case TimeSpent:
        return registrant.Participated ? formatSeconds(registrant.TimeSpent) : QString();
    default:
        return userText(registrant.User, static_cast<UserText>(column));
    }
}

bool RegistrantRows::sortValues(int column, std::span<qint64> out) const
{
    using Record = QXSC::RegistrantRecord;
    const auto viewed = [](const Record &each, qint64 value) {
        return each.Participated ? value : NoSortValue;
    };
    switch (column) {
    case Participated:
        return writeValues(out, [](const Record &each) { return each.Participated; });
    case DateRegistered:
        return writeValues(out,
                           [](const Record &each) { return sortValueOf(registeredOn(each.User)); });
    case FirstViewed:
        return writeValues(out, [viewed](const Record &each) {
            return viewed(each, sortValueOf(each.FirstViewed));
        });
    case LastViewed:
        return writeValues(out, [viewed](const Record &each) {
            return viewed(each, sortValueOf(each.LastViewed));
        });
    case TimeSpent:
        return writeValues(out,
                           [viewed](const Record &each) { return viewed(each, each.TimeSpent); });
    default:
        return false;
    }
}

QString PageViewRows::text(qsizetype row, int column) const
{
    const QXSC::PageViewRecord &view = record(row);
    switch (column) {
    case Date:
        return Zel::generalDateText(view.ViewDate);
    case TimeSpent:
        return formatSeconds(view.TimeSpent);
    case Closed:
        return Zel::booleanText(view.Closed);
    default:
        return userText(view.User, static_cast<UserText>(column));
    }
}

bool PageViewRows::sortValues(int column, std::span<qint64> out) const
{
    using Record = QXSC::PageViewRecord;
    switch (column) {
    case Date:
        return writeValues(out, [](const Record &each) { return sortValueOf(each.ViewDate); });
    case TimeSpent:
        return writeValues(out, [](const Record &each) { return each.TimeSpent; });
    case Closed:
        return writeValues(out, [](const Record &each) { return each.Closed; });
    default:
        return false;
    }
}

} // namespace ZelWebServiceControls
