// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "themes/themerows.h"

namespace ZelWebServiceControls {

ThemeRows::ThemeRows(QList<QXSC::ThemeRecordPtr> themes)
    : m_themes(std::move(themes))
{
}

qsizetype ThemeRows::rowCount() const
{
    return m_themes.size();
}

QString ThemeRows::text(qsizetype row, int column) const
{
    const QXSC::ThemeRecord &theme = *m_themes.at(row);
    return column == Name ? theme.name : theme.description;
}

QVariant ThemeRows::tag(qsizetype row) const
{
    return QVariant::fromValue(m_themes.at(row));
}

} // namespace ZelWebServiceControls
