// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "barescan.h"

#include "measuring.h"

#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace Bench {

namespace {

/// A page view as one would read it without anything between.
struct BareView
{
    std::string user;
    std::string first;
    std::string last;
    std::string email;
    qint64 at = 0;
    qint64 seconds = 0;
    bool closed = false;
};

std::string textOf(sqlite3_stmt *statement, int column)
{
    const unsigned char *text = sqlite3_column_text(statement, column);
    return text ? reinterpret_cast<const char *>(text) : std::string();
}

} // namespace

QByteArray viewsSql(const AudienceFill::Filled &filled)
{
    return "SELECT p.user_id, r.first_name, r.last_name, r.email, v.view_at, v.time_spent, "
           "v.closed "
           "FROM page_view v JOIN audience_person p ON p.account_id = v.account_id "
           "AND p.dep_no = v.dep_no AND p.person_no = v.person_no "
           "LEFT JOIN registrant r ON r.account_id = v.account_id AND r.dep_no = v.dep_no "
           "AND r.person_no = v.person_no WHERE v.account_id = " +
           QByteArray::number(AudienceFill::account) +
           " AND v.dep_no = " + QByteArray::number(filled.number) + " ORDER BY v.view_at";
}

double bareScan(const QString &file, const AudienceFill::Filled &filled)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open(file.toUtf8().constData(), &database) != SQLITE_OK)
        throw std::runtime_error("the database cannot be opened");
    const QByteArray sql = viewsSql(filled);
    std::vector<BareView> views;
    const double time = milliseconds([&] {
        sqlite3_prepare_v2(database, sql.constData(), -1, &statement, nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW)
            views.push_back({textOf(statement, 0), textOf(statement, 1), textOf(statement, 2),
                             textOf(statement, 3), sqlite3_column_int64(statement, 4),
                             sqlite3_column_int64(statement, 5),
                             sqlite3_column_int(statement, 6) != 0});
        sqlite3_finalize(statement);
    });
    sqlite3_close(database);
    if (static_cast<qint64>(views.size()) != filled.views)
        throw std::runtime_error("the scan has lost views");
    return time;
}

} // namespace Bench
