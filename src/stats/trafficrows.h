// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/recordrows.h"

namespace ZelWebServiceControls {

/// A time spent, "1:02:05" for 3725 seconds: hours of any size without padding, minutes and seconds
/// with two digits.
QString formatSeconds(qint32 seconds);

/// The lines of the list of participants. One who is not registered shows the user ID and what was
/// viewed, nothing else.
class ParticipantRows : public RecordRows<QXSC::ParticipantRecord>
{
public:
    enum Column
    {
        UserID,
        FirstName,
        LastName,
        Email,
        Registered,
        TimeSpent,
        FirstViewed,
        LastViewed,
        DateRegistered
    };

    using RecordRows::RecordRows;

    QString text(qsizetype row, int column) const override;
    bool sortValues(int column, std::span<qint64> out) const override;
};

/// The lines of the list of registrants. One who did not participate shows nothing viewed.
class RegistrantRows : public RecordRows<QXSC::RegistrantRecord>
{
public:
    enum Column
    {
        UserID,
        FirstName,
        LastName,
        Email,
        Participated,
        DateRegistered,
        FirstViewed,
        LastViewed,
        TimeSpent
    };

    using RecordRows::RecordRows;

    QString text(qsizetype row, int column) const override;
    bool sortValues(int column, std::span<qint64> out) const override;
};

/// The lines of the list of page views.
class ZEL_EXPORT PageViewRows : public RecordRows<QXSC::PageViewRecord>
{
public:
    enum Column
    {
        UserID,
        FirstName,
        LastName,
        Email,
        Date,
        TimeSpent,
        Closed
    };

    using RecordRows::RecordRows;

    QString text(qsizetype row, int column) const override;
    bool sortValues(int column, std::span<qint64> out) const override;
};

} // namespace ZelWebServiceControls
