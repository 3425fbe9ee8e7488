// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/workbookbuilder.h"

#include <cmath>

namespace ZelDataVisualization {

namespace {

/// Digits that a whole number of 32 bits has for certain.
constexpr qsizetype SafeDigits = 9;

std::optional<qint32> wholeNumber(QStringView text)
{
    if (text.isEmpty() || text.size() > SafeDigits)
        return std::nullopt;
    qint32 number = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return std::nullopt;
        number = number * 10 + (c.unicode() - u'0');
    }
    return number;
}

} // namespace

void WorkbookBuilder::openSheet(const QString &name)
{
    m_workbook.sheets.emplace_back();
    m_sheet = &m_workbook.sheets.back();
    m_sheet->name = name;
    m_row = 0;
    m_column = 0;
}

bool WorkbookBuilder::openRow(quint32 number)
{
    const quint32 next = number == 0 ? m_row + 1 : number;
    if (next <= m_row || next > Workbook::MostRows)
        return false;
    m_row = next;
    m_column = 0;
    m_sheet->rows.push_back({m_row, static_cast<quint32>(m_sheet->cells.size())});
    return true;
}

std::optional<Cell> WorkbookBuilder::number(quint16 style, QStringView text)
{
    if (const std::optional<qint32> whole = wholeNumber(text))
        return make(CellKind::Integer, style, static_cast<quint32>(*whole));
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value))
        return std::nullopt;
    m_workbook.reals.push_back(value);
    return make(CellKind::Real, style, static_cast<quint32>(m_workbook.reals.size() - 1));
}

Cell WorkbookBuilder::formula(quint16 style, QStringView formula, const Cell &stored)
{
    m_workbook.formulas.push_back({m_workbook.texts.add(formula), stored});
    return make(CellKind::Formula, style, static_cast<quint32>(m_workbook.formulas.size() - 1));
}

void WorkbookBuilder::addStyle(const QString &id, const QString &ground, QStringView parent)
{
    auto &styles = m_workbook.styles;
    if (styles.empty())
        styles.emplace_back();
    if (styles.size() >= Cell::MostStyles)
        return;
    const quint16 inherited = ground.isEmpty() && !parent.isEmpty() ? style(parent) : quint16(0);
    styles.push_back({id, inherited ? styles[inherited].ground : ground});
    m_styles.emplace(id, static_cast<quint16>(styles.size() - 1));
}

quint16 WorkbookBuilder::style(QStringView id)
{
    // Right and wrong answers alternate.
    for (const quint16 latest : m_latestStyles) {
        if (latest != 0 && m_workbook.styles[latest].id == id)
            return latest;
    }
    const auto found = m_styles.find(id);
    if (found == m_styles.end())
        return 0;
    m_latestStyles = {m_latestStyles[1], found->second};
    return found->second;
}

} // namespace ZelDataVisualization
