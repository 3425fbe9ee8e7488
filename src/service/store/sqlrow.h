// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QString>

#include <optional>

class QSqlQuery;

namespace Zel {

/// The current row of a result, read by column number (from 0). Lives only while its row is
/// current. A value of another type than asked for throws `DatabaseError` (Corrupt).
class ZEL_EXPORT SqlRow
{
public:
    explicit SqlRow(const QSqlQuery &query)
        : m_query(query)
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
    const QSqlQuery &m_query;
};

} // namespace Zel
