// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/flexgrid.h"

#include "platform/widgets/flexgridmodel.h"
#include "platform/widgets/twips.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace Zel {

FlexGrid::FlexGrid(QWidget *parent)
    : QTableView(parent)
    , m_model(new FlexGridModel(this))
{
    setModel(m_model);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(0);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
}

FlexGrid::~FlexGrid() = default;

void FlexGrid::clear()
{
    clearSpans();
    m_model->clear();
}

void FlexGrid::setColumnWidths(const QList<int> &twips)
{
    m_model->setColumnCount(int(twips.size()));
    const int dpi = logicalDpi(this);
    int edge = 0;
    for (int column = 0; column < twips.size(); ++column) {
        const int left = pixelsFromTwips(edge, dpi);
        edge += twips[column];
        setColumnWidth(column, pixelsFromTwips(edge, dpi) - left);
    }
}

void FlexGrid::setColumnAlignment(int column, Qt::Alignment alignment)
{
    m_model->setAlignment(column, alignment);
}

void FlexGrid::addRow(const QString &tabSeparated)
{
    m_model->append(tabSeparated.split(u'\t'));
}

void FlexGrid::mergeLastRow(int first, int last)
{
    if (rowCount() > 0 && first >= 0 && last > first && last < columnCount())
        setSpan(rowCount() - 1, first, 1, last - first + 1);
}

int FlexGrid::rowCount() const
{
    return m_model->rowCount();
}

int FlexGrid::columnCount() const
{
    return m_model->columnCount();
}

QString FlexGrid::text(int row, int column) const
{
    return m_model->index(row, column).data().toString();
}

QString FlexGrid::rowText(int row) const
{
    QStringList cells;
    for (int column = 0; column < columnCount(); ++column)
        cells.append(text(row, column));
    return cells.join(u'\t');
}

QString FlexGrid::selectedText() const
{
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QString lines;
    for (const QModelIndex &row : std::as_const(rows)) {
        QStringList cells;
        for (int column = 0; column < columnCount(); column += columnSpan(row.row(), column))
            cells.append(text(row.row(), column));
        lines += cells.join(u'\t') + u'\n';
    }
    return lines;
}

void FlexGrid::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(selectedText());
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

} // namespace Zel
