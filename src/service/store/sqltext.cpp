// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/sqltext.h"

#include <algorithm>
#include <stdexcept>

namespace Zel {

namespace {

/// The placeholder's number at `at` (which holds '$'), or 0; `at` is moved behind it.
int readPlaceholder(const QString &sql, qsizetype &at)
{
    int number = 0;
    while (at + 1 < sql.size() && sql.at(at + 1).isDigit()) {
        number = number * 10 + sql.at(at + 1).digitValue();
        ++at;
    }
    return number;
}

} // namespace

SqlText::SqlText(const char *sql, Carries carries)
    : m_sql(QString::fromUtf8(sql).trimmed())
    , m_carries(carries)
{
    bool quoted = false;
    for (qsizetype at = 0; at < m_sql.size(); ++at) {
        const QChar c = m_sql.at(at);
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        if (quoted || c != QLatin1Char('$'))
            continue;
        const int number = readPlaceholder(m_sql, at);
        if (number > 0 && !m_firstAppearances.contains(number - 1))
            m_firstAppearances.append(number - 1);
        m_parameterCount = std::max(m_parameterCount, number);
    }
    if (m_firstAppearances.size() != m_parameterCount)
        throw std::logic_error("a statement leaves out one of its placeholders");
}

} // namespace Zel
