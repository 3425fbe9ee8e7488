// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listreportview.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/twips.h"

#include <QHeaderView>
#include <QScopedValueRollback>

// Columns and header of a ListView.

namespace Zel {

int ListView::addColumn(const QString &caption, double widthTwips, const QString &tag,
                        Qt::Alignment alignment)
{
    const QScopedValueRollback setting(m_settingWidths, true);
    m_model->addColumn({caption, widthTwips, tag, alignment});
    const int column = columnCount() - 1;
    applyColumnWidth(column);
    return column;
}

void ListView::clearColumns()
{
    const QScopedValueRollback setting(m_settingWidths, true);
    m_model->clearColumns();
}

int ListView::columnCount() const
{
    return m_model->columnCount();
}

QString ListView::columnCaption(int column) const
{
    return m_model->hasColumn(column) ? m_model->column(column).caption : QString();
}

void ListView::setColumnCaption(int column, const QString &caption)
{
    if (!m_model->hasColumn(column))
        return;
    ListColumn changed = m_model->column(column);
    changed.caption = caption;
    m_model->setColumn(column, changed);
}

double ListView::columnWidth(int column) const
{
    return m_model->hasColumn(column) ? m_model->column(column).widthTwips : 0;
}

void ListView::setColumnWidth(int column, double widthTwips)
{
    if (!m_model->hasColumn(column))
        return;
    ListColumn changed = m_model->column(column);
    changed.widthTwips = widthTwips;
    m_model->setColumn(column, changed);
    applyColumnWidth(column);
}

QString ListView::columnTag(int column) const
{
    return m_model->hasColumn(column) ? m_model->column(column).tag : QString();
}

void ListView::setColumnTag(int column, const QString &tag)
{
    if (!m_model->hasColumn(column))
        return;
    ListColumn changed = m_model->column(column);
    changed.tag = tag;
    m_model->setColumn(column, changed);
}

void ListView::applyColumnWidth(int column)
{
    const QScopedValueRollback setting(m_settingWidths, true);
    const int pixels = pixelsFromTwips(columnWidth(column), logicalDpi(this));
    m_report->header()->setSectionHidden(column, pixels <= 0);
    if (pixels > 0)
        m_report->header()->resizeSection(column, pixels);
}

void ListView::applyColumnWidths()
{
    for (int column = 0; column < columnCount(); ++column)
        applyColumnWidth(column);
}

void ListView::headerResized(int column, int pixels)
{
    if (m_settingWidths || !m_model->hasColumn(column))
        return;
    {
        const QScopedValueRollback setting(m_settingWidths, true);
        ListColumn changed = m_model->column(column);
        changed.widthTwips = twipsFromPixels(pixels, logicalDpi(this));
        m_model->setColumn(column, changed);
    }
    emit columnResized(column);
}

void ListView::headerClicked(int column)
{
    // The header has flipped its arrow of its own accord; the list decides what it shows.
    showHeaderArrow();
    emit columnClicked(column);
}

void ListView::showHeaderArrow()
{
    QHeaderView *header = m_report->header();
    header->setSortIndicatorShown(m_sorted);
    header->setSortIndicator(m_sorted ? m_sortKey : -1, m_sortOrder);
}

} // namespace Zel
