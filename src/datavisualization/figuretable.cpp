// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/figuretable.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QTableView>

namespace ZelDataVisualization {

namespace {

/// A text as it may stand between tabs.
QString cellText(const QVariant &value)
{
    return value.toString().simplified();
}

} // namespace

void setUpFigureTable(QTableView &table)
{
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    table.setAlternatingRowColors(true);
    table.setWordWrap(false);
    table.setTabKeyNavigation(false);
    table.setCornerButtonEnabled(false);
    table.setShowGrid(false);
    table.verticalHeader()->setVisible(false);
    table.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().height() + 8);
    table.horizontalHeader()->setHighlightSections(false);
    // A column that is as wide as its texts looks at so many of them, however many there are.
    table.horizontalHeader()->setResizeContentsPrecision(200);
    table.setMinimumHeight(3 * (table.fontMetrics().height() + 8));
}

void fitFigureTable(QTableView &table)
{
    QHeaderView *header = table.horizontalHeader();
    for (int column = 0; column < header->count(); ++column)
        header->setSectionResizeMode(column, column == 0 ? QHeaderView::Stretch
                                                         : QHeaderView::ResizeToContents);
}

void copyFigures(const QTableView &table)
{
    const QAbstractItemModel &model = *table.model();
    QModelIndexList rows = table.selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        for (int row = 0; row < model.rowCount(); ++row)
            rows << model.index(row, 0);
    }
    std::sort(rows.begin(), rows.end());
    const int columns = model.columnCount();
    QStringList lines;
    QStringList cells;
    for (int column = 0; column < columns; ++column)
        cells << cellText(model.headerData(column, Qt::Horizontal));
    lines << cells.join(u'\t');
    for (const QModelIndex &row : std::as_const(rows)) {
        cells.clear();
        for (int column = 0; column < columns; ++column)
            cells << cellText(row.siblingAtColumn(column).data());
        lines << cells.join(u'\t');
    }
    QGuiApplication::clipboard()->setText(lines.join(u'\n') + u'\n');
}

} // namespace ZelDataVisualization
