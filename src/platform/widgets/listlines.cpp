// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listlines.h"

namespace Zel {

ListLines::ListLines() = default;
ListLines::~ListLines() = default;

qsizetype ListLines::add(const QString &text, const QStringList &subItems, const QVariant &tag)
{
    m_lines.push_back({text, subItems, tag});
    return rowCount() - 1;
}

void ListLines::clear()
{
    m_lines.clear();
}

qsizetype ListLines::rowCount() const
{
    return static_cast<qsizetype>(m_lines.size());
}

QString ListLines::text(qsizetype row, int column) const
{
    const Line &line = m_lines[static_cast<size_t>(row)];
    return column == 0 ? line.text : line.subItems.value(column - 1);
}

QVariant ListLines::tag(qsizetype row) const
{
    return m_lines[static_cast<size_t>(row)].tag;
}

} // namespace Zel
