// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/flexgrid.h"

#include "platform/widgets/flexgridmodel.h"
#include "platform/widgets/twips.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace Zel {

namespace {

/// Draws cells and the lines between them. A text on the right side of a cell that is too narrow
/// for it goes on over the empty cell at its left, as in spreadsheets, and there is no line below
/// it.
class CellDelegate : public QStyledItemDelegate
{
public:
    explicit CellDelegate(QTableView *grid)
        : QStyledItemDelegate(grid)
        , m_grid(grid)
    {
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem roomy = option;
        roomy.rect.setLeft(option.rect.left() - missing(index));
        QStyledItemDelegate::paint(painter, roomy, index);
        const QColor line = lineColor(option.palette);
        painter->save();
        painter->setPen(line);
        painter->drawLine(option.rect.bottomLeft(), option.rect.bottomRight());
        const int last = index.column() + m_grid->columnSpan(index.row(), index.column());
        if (missing(index.siblingAtColumn(last)) == 0)
            painter->drawLine(option.rect.topRight(), option.rect.bottomRight());
        painter->restore();
    }

private:
    static constexpr int Margin = 5; // pixels around a text

    /// A line that shows on light and on dark ground; what styles propose is lost on the dark one.
    static QColor lineColor(const QPalette &palette)
    {
        const QColor ground = palette.color(QPalette::Base);
        const QColor text = palette.color(QPalette::Text);
        const auto mixed = [](int from, int to) { return from + (to - from) / 5; };
        return QColor(mixed(ground.red(), text.red()), mixed(ground.green(), text.green()),
                      mixed(ground.blue(), text.blue()));
    }

    /// Pixels a text lacks in its cell and takes from the one at its left.
    int missing(const QModelIndex &index) const
    {
        const QModelIndex before = index.siblingAtColumn(index.column() - 1);
        const auto alignment = index.data(Qt::TextAlignmentRole).value<Qt::Alignment>();
        if (!index.isValid() || !before.isValid() || !(alignment & Qt::AlignRight) ||
            !before.data().toString().isEmpty())
            return 0;
        int width = 0;
        const int span = m_grid->columnSpan(index.row(), index.column());
        for (int column = index.column(); column < index.column() + span; ++column)
            width += m_grid->columnWidth(column);
        const int wanted = m_grid->fontMetrics().horizontalAdvance(index.data().toString());
        return qMax(0, wanted + 2 * Margin - width);
    }

    QTableView *m_grid;
};

} // namespace

FlexGrid::FlexGrid(QWidget *parent)
    : QTableView(parent)
    , m_model(new FlexGridModel(this))
{
    setModel(m_model);
    setItemDelegate(new CellDelegate(this));
    setShowGrid(false); // the cells draw the lines
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
