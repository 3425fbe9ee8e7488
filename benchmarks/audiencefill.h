// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/databaseaddress.h"
#include "service/store/timerange.h"

#include <QString>
#include <QStringList>

/// Fills a database with page views inside the database itself, which takes seconds where reporting
/// them one by one would take an hour, and types statements into the database's own program.
class AudienceFill
{
public:
    static constexpr qint64 account = 1001;
    /// As many as the client's counts have room for.
    static constexpr qint64 mostPeople = 30'000;

    struct Filled
    {
        QString guid;
        qint64 number = 0;
        qint64 views = 0;
        Zel::TimeRange range; ///< cuts hours at both ends and leaves no view out
    };

    explicit AudienceFill(const QString &database);

    /// A new deployment with views over two days. People come and go: each is there for three
    /// hours.
    Filled fill(qint64 views);

    /// Milliseconds that the database's program itself says the statements took.
    double typed(const QStringList &statements);

private:
    QByteArray run(const QString &script);

    Zel::DatabaseAddress m_address;
    bool m_isSqlite;
    qint64 m_deployments = 1000;
};
