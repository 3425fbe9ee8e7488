// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QSqlQuery;
class QVariant;

namespace Zel {

/// The cells of a row that did not come by way of a QSqlQuery.
class SqlCells
{
public:
    virtual ~SqlCells();
    virtual bool isNull(int column) const = 0;
    virtual QVariant value(int column) const = 0;
};

/// The current row of a result, read by column number (from 0). Lives only while its row is
/// current. A value of another type than asked for throws `DatabaseError` (Corrupt).
class ZEL_EXPORT SqlRow
{
public:
    explicit SqlRow(const QSqlQuery &query)
        : m_query(&query)
    {
    }

    explicit SqlRow(const SqlCells &cells)
        : m_cells(&cells)
    {
    }

    bool isNull(int column) const;
    QString text(int column) const;
    qint64 integer(int column) const;
    bool boolean(int column) const;
    QByteArray bytes(int column) const;
    std::optional<qint64> optionalInteger(int column) const;
    std::optional<QString> optionalText(int column) const;

private:
    QVariant value(int column) const;

    const QSqlQuery *m_query = nullptr;
    const SqlCells *m_cells = nullptr;
};

} // namespace Zel
