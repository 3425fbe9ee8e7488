// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/steprows.h"

#include "service/store/database.h"
#include "service/store/migrations.h"

#include <QFile>
#include <QRegularExpression>

#include <stdexcept>

namespace ZelTest {

using namespace Zel;

namespace {

QStringList statementsOf(int step, bool postgres)
{
    QFile file(
        QStringLiteral(ZEL_FIXTURES "/migrations/%1.sql").arg(step, 4, 10, QLatin1Char('0')));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(QStringLiteral("step %1 needs rows in %2")
                                     .arg(step)
                                     .arg(file.fileName())
                                     .toStdString());
    static const QRegularExpression comment(QStringLiteral("^--.*$"),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression bytes(QStringLiteral("\\bX'"));
    QString sql = QString::fromUtf8(file.readAll()).remove(comment);
    if (postgres)
        sql.replace(bytes, QStringLiteral("'\\x"));
    QStringList result;
    const QStringList parts = sql.split(QLatin1String(";\n"));
    for (const QString &part : parts) {
        if (!part.trimmed().isEmpty())
            result << part.trimmed();
    }
    return result;
}

} // namespace

void fillUpTo(Database &database, int step)
{
    const bool postgres = database.address().engine == DatabaseAddress::Engine::Postgres;
    for (int at = Migrations(database).currentVersion() + 1; at <= step; ++at) {
        Migrations(database).migrate(at);
        database.tx([&] {
            for (const QString &statement : statementsOf(at, postgres))
                database.runNative(statement);
        });
    }
}

QList<TableSum> sumsOf(Database &database)
{
    return sumsOf(database, readContentTables(database));
}

QList<TableSum> sumsOf(Database &database, const QList<TableInfo> &tables)
{
    return database.snapshot([&] {
        QList<TableSum> sums;
        for (const TableInfo &table : tables)
            sums << readTable(database, table);
        return sums;
    });
}

} // namespace ZelTest
