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

/// Draws cells; a text on the right side of a cell that is too narrow for it goes on over the empty
/// cell at its left, as in spreadsheets.
class CellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override
    {
        QStyleOptionViewItem roomy = option;
        initStyleOption(&roomy, index);
        const QModelIndex before = index.siblingAtColumn(index.column() - 1);
        const int wanted = roomy.fontMetrics.horizontalAdvance(roomy.text) + 2 * Margin;
        const bool mayGoOn = (roomy.displayAlignment & Qt::AlignRight) && before.isValid() &&
                             before.data().toString().isEmpty();
        roomy = option;
        if (mayGoOn && wanted > option.rect.width()) {
            roomy.rect.setLeft(option.rect.right() + 1 - wanted);
            // The line between the two cells would go through the text.
            painter->fillRect(roomy.rect, option.palette.brush(option.state & QStyle::State_Selected
                                                                   ? QPalette::Highlight
                                                                   : QPalette::Base));
        }
        QStyledItemDelegate::paint(painter, roomy, index);
    }

private:
    static constexpr int Margin = 5; // pixels around a text
};

} // namespace

FlexGrid::FlexGrid(QWidget *parent)
    : QTableView(parent)
    , m_model(new FlexGridModel(this))
{
    setModel(m_model);
    setItemDelegate(new CellDelegate(this));
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
