// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/sqlrow.h"
#include "service/store/sqltext.h"
#include "service/store/sqlvalue.h"

#include <memory>

class QSqlDriver;
struct pg_result;

namespace Zel {

/// What PostgreSQL answers to a statement that was sent, and is answered, in binary form.
class PostgresResult
{
public:
    /// Runs the statement over the connection that a driver of Qt has open.
    PostgresResult(const QSqlDriver &driver, const SqlText &text, const SqlValues &values);

    bool isFine() const;
    /// Empty when no answer came.
    QString sqlState() const;
    QString errorText() const;
    int rowCount() const;
    qint64 changedRows() const;

    /// One row; numbers, texts, booleans and bytes only.
    class Row : public SqlCells
    {
    public:
        Row(const PostgresResult &result, int row)
            : m_result(result)
            , m_row(row)
        {
        }

        ~Row() override;

        bool isNull(int column) const override;
        QVariant value(int column) const override;

    private:
        const PostgresResult &m_result;
        int m_row;
    };

private:
    struct Clear
    {
        void operator()(pg_result *result) const;
    };

    std::unique_ptr<pg_result, Clear> m_result;
    QString m_connectionError;
};

} // namespace Zel
