// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/postgresresult.h"

#include <QSqlDriver>
#include <QVariant>
#include <QtEndian>

#include <libpq-fe.h>

#include <stdexcept>
#include <vector>

// As the driver declares what it gives out.
Q_DECLARE_OPAQUE_POINTER(PGconn *)
Q_DECLARE_METATYPE(PGconn *)

namespace Zel {

namespace {

// Numbers of the types, fixed by the protocol (pg_type.dat of the server).
constexpr Oid boolType = 16;
constexpr Oid bytesType = 17;
constexpr Oid bigintType = 20;
constexpr Oid textType = 25;

PGconn *connectionOf(const QSqlDriver &driver)
{
    PGconn *connection = qvariant_cast<PGconn *>(driver.handle());
    if (!connection)
        throw std::logic_error("the driver of PostgreSQL has no connection to give");
    return connection;
}

/// What the library is given for each value; texts and numbers as text, bytes as they are.
struct Parameters
{
    explicit Parameters(const SqlValues &values)
    {
        for (const SqlValue &value : values) {
            const QVariant &variant = value.variant();
            const bool isBytes = variant.typeId() == QMetaType::QByteArray;
            texts.push_back(isBytes ? variant.toByteArray() : variant.toString().toUtf8());
            pointers.push_back(variant.isValid() ? texts.back().constData() : nullptr);
            lengths.push_back(static_cast<int>(texts.back().size()));
            formats.push_back(isBytes ? 1 : 0);
        }
    }

    std::vector<QByteArray> texts;
    std::vector<const char *> pointers;
    std::vector<int> lengths;
    std::vector<int> formats;
};

} // namespace

void PostgresResult::Clear::operator()(pg_result *result) const
{
    PQclear(result);
}

PostgresResult::PostgresResult(const QSqlDriver &driver, const SqlText &text,
                               const SqlValues &values)
{
    PGconn *connection = connectionOf(driver);
    const Parameters parameters(values);
    m_result.reset(PQexecParams(
        connection, text.sql().toUtf8().constData(), static_cast<int>(values.size()), nullptr,
        parameters.pointers.data(), parameters.lengths.data(), parameters.formats.data(), 1));
    if (!m_result)
        m_connectionError = QString::fromUtf8(PQerrorMessage(connection));
}

bool PostgresResult::isFine() const
{
    const ExecStatusType status = PQresultStatus(m_result.get());
    return status == PGRES_TUPLES_OK || status == PGRES_COMMAND_OK;
}

QString PostgresResult::sqlState() const
{
    return QString::fromLatin1(PQresultErrorField(m_result.get(), PG_DIAG_SQLSTATE));
}

QString PostgresResult::errorText() const
{
    return m_result ? QString::fromUtf8(PQresultErrorMessage(m_result.get())) : m_connectionError;
}

int PostgresResult::rowCount() const
{
    return PQntuples(m_result.get());
}

qint64 PostgresResult::changedRows() const
{
    return QByteArray(PQcmdTuples(m_result.get())).toLongLong();
}

PostgresResult::Row::~Row() = default;

bool PostgresResult::Row::isNull(int column) const
{
    return PQgetisnull(m_result.m_result.get(), m_row, column) != 0;
}

QVariant PostgresResult::Row::value(int column) const
{
    const pg_result *result = m_result.m_result.get();
    if (isNull(column))
        return QVariant();
    const char *data = PQgetvalue(result, m_row, column);
    const int length = PQgetlength(result, m_row, column);
    switch (PQftype(result, column)) {
    case boolType:
        return *data != 0;
    case bytesType:
        return QByteArray(data, length);
    case bigintType:
        return qFromBigEndian<qint64>(data);
    case textType:
        return QString::fromUtf8(data, length);
    default:
        return QVariant();
    }
}

} // namespace Zel
