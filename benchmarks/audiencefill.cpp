// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiencefill.h"

#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace {

constexpr qint64 begin = 1'778'112'000'000; // 2026-05-07T00:00:00Z
constexpr qint64 length = 2 * 86'400'000;

/// Numbers from 0 to before %1 as table n (i).
QString numbers(bool sqlite)
{
    return sqlite
               ? QStringLiteral("(WITH RECURSIVE c(i) AS (VALUES(0) UNION ALL SELECT i + 1 FROM c "
                                "WHERE i + 1 < %1) SELECT i FROM c) n")
               : QStringLiteral("generate_series(CAST(0 AS BIGINT), %1 - 1) n(i)");
}

} // namespace

AudienceFill::AudienceFill(const QString &database)
    : m_address(Zel::DatabaseAddress::parse(database))
    , m_isSqlite(m_address.engine == Zel::DatabaseAddress::Engine::Sqlite)
{
}

QByteArray AudienceFill::run(const QString &script)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    if (m_isSqlite) {
        process.start(QStringLiteral("sqlite3"), {QStringLiteral("-bail"), m_address.file});
    } else {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PGPASSWORD"), m_address.password);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral("psql"),
                      {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-v"),
                       QStringLiteral("ON_ERROR_STOP=1"), QStringLiteral("-h"), m_address.host,
                       QStringLiteral("-p"), QString::number(m_address.port), QStringLiteral("-U"),
                       m_address.user, QStringLiteral("-d"), m_address.database});
    }
    process.write(script.toUtf8());
    process.closeWriteChannel();
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        throw std::runtime_error(process.readAll().right(2000).constData());
    return process.readAll();
}

AudienceFill::Filled AudienceFill::fill(qint64 views)
{
    Filled filled;
    filled.number = ++m_deployments;
    filled.guid =
        QStringLiteral("00000000-0000-4000-8000-%1").arg(filled.number, 12, 10, QLatin1Char('0'));
    filled.views = views;
    filled.range = {begin - 1'800'000, begin + length + 1'799'000};
    const qint64 people = std::clamp<qint64>(views / 10, 1, mostPeople);
    const QString id = m_isSqlite ? QStringLiteral("CAST(printf('%016d', i) AS BLOB)")
                                  : QStringLiteral("decode(lpad(to_hex(i), 32, '0'), 'hex')");
    const QString key = QStringLiteral("%1, %2").arg(account).arg(filled.number);
    const QString at = QStringLiteral("%1 + i * %2 / %3").arg(begin).arg(length).arg(views);
    // The window of those who are there moves through all people in two days.
    const QString person = QStringLiteral("(i * %1 / %2 + i * 7919 % %3) % %1")
                               .arg(people)
                               .arg(views)
                               .arg(std::max<qint64>(1, people / 16));
    QString script = QStringLiteral("BEGIN;\n");
    script +=
        QStringLiteral("INSERT INTO deployment (account_id, guid, dep_no, project_guid, name, "
                       "published_at) VALUES (%1, '%2', %3, "
                       "'5c400ad7-64e6-55e6-9e0a-11462ba0bba6', 'Many', %4);\n")
            .arg(account)
            .arg(filled.guid)
            .arg(filled.number)
            .arg(begin);
    script += QStringLiteral("INSERT INTO audience_person SELECT %1, i, 'user ' || i FROM %2;\n")
                  .arg(key, numbers(m_isSqlite).arg(people));
    script += QStringLiteral("INSERT INTO registrant SELECT %1, i, %2, 'First', 'Last', "
                             "'first.last@example.org', i FROM %3;\n")
                  .arg(key, id, numbers(m_isSqlite).arg(people * 2 / 5));
    script += QStringLiteral("INSERT INTO view_profile SELECT %1, i, "
                             "CASE i % 3 WHEN 0 THEN 'NS' ELSE 'IE' END, "
                             "CASE i % 2 WHEN 0 THEN '1.3' ELSE '1.5' END, "
                             "CASE WHEN i < 9 THEN '24' ELSE '32' END FROM %2;\n")
                  .arg(key, numbers(m_isSqlite).arg(18));
    const QString closed = QStringLiteral("i % 14 <> 0");
    script += QStringLiteral("INSERT INTO page_view SELECT %1, %2, person, at, spent, closed, "
                             "person % 18 FROM (SELECT i, %3 AS person, %4 AS at, "
                             "2 + i * 31 % 600 AS spent, %5 AS closed FROM %6) v;\n")
                  .arg(key, id, person, at, closed, numbers(m_isSqlite).arg(views));
    script += QStringLiteral("INSERT INTO view_tally SELECT account_id, dep_no, view_at / 3600000, "
                             "person_no, profile_no, COUNT(*), SUM(time_spent), MIN(view_at), "
                             "MAX(view_at) FROM page_view WHERE account_id = %1 AND dep_no = %2 "
                             "GROUP BY 1, 2, 3, 4, 5;\nCOMMIT;\n")
                  .arg(account)
                  .arg(filled.number);
    if (!m_isSqlite) // as the server does by itself a minute later
        script += QStringLiteral("VACUUM ANALYZE page_view;\nVACUUM ANALYZE view_tally;\n"
                                 "VACUUM ANALYZE registrant;\nVACUUM ANALYZE audience_person;\n");
    run(script);
    return filled;
}

double AudienceFill::typed(const QStringList &statements)
{
    // The service rules these loops out, too.
    const QString first = m_isSqlite ? QStringLiteral(".timer on\n")
                                     : QStringLiteral("SET enable_nestloop = off;\n\\timing on\n");
    const QByteArray output = run(first + statements.join(QLatin1Char('\n')) + QLatin1Char('\n'));
    static const QRegularExpression sqlite(QStringLiteral("Run Time: real ([0-9.]+)"));
    static const QRegularExpression postgres(QStringLiteral("Time: ([0-9.]+) ms"));
    double total = 0;
    int found = 0;
    auto matches = (m_isSqlite ? sqlite : postgres).globalMatch(QString::fromUtf8(output));
    while (matches.hasNext()) {
        total += matches.next().captured(1).toDouble() * (m_isSqlite ? 1000 : 1);
        ++found;
    }
    if (found != statements.size())
        throw std::runtime_error("not every statement was timed");
    return total;
}
