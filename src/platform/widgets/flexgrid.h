// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QTableView>

namespace Zel {

class FlexGridModel;

/// A table of short texts, filled row by row with tab-separated ones.
///
/// It has no headings and nothing is edited. The arrow keys move from row to row, Ctrl+C copies the
/// selected rows as tab-separated lines. Rows and columns count from 0.
class ZEL_EXPORT FlexGrid : public QTableView
{
    Q_OBJECT

public:
    explicit FlexGrid(QWidget *parent = nullptr);
    ~FlexGrid() override;

    /// Removes all rows and spans; the columns stay.
    void clear();
    /// The columns, by their widths in twips. Neighbouring edges are rounded to pixels once.
    void setColumnWidths(const QList<int> &twips);
    /// Aligns the texts of a column, for instance numbers to the right.
    void setColumnAlignment(int column, Qt::Alignment alignment);
    /// Appends a row; texts beyond the last column are left out.
    void addRow(const QString &tabSeparated);
    /// Shows the cells `first` to `last` of the row added last as one, with the text of the first.
    void mergeLastRow(int first, int last);

    int rowCount() const;
    int columnCount() const;
    /// The text a cell was given, also one that is covered; empty outside the table.
    QString text(int row, int column) const;
    /// A row as it was added.
    QString rowText(int row) const;

    /// The selected rows as lines, each merged text once; what Ctrl+C copies.
    QString selectedText() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    FlexGridModel *m_model;
};

} // namespace Zel
