// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listsurface.h"

#include <QTreeView>

namespace Zel {

class ListDelegate;
class ListModel;

/// The report view of a ListView: one line per record, under a header.
class ListReportView : public ListSurface<QTreeView>
{
    Q_OBJECT

public:
    ListReportView(ListModel *model, QWidget *parent);

    void setEmptyText(const QString &text);
    /// Scrolls up and down only: moving the current line must not move the columns.
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    /// The width the lines in sight need.
    int sizeHintForColumn(int column) const override;
    void doItemsLayout() override;
    void reset() override;
    void keyboardSearch(const QString &search) override;

signals:
    void typed(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
    void drawRow(QPainter *painter, const QStyleOptionViewItem &option,
                 const QModelIndex &index) const override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    ListModel *m_model;
    ListDelegate *m_delegate;
    QString m_emptyText;
    int m_laidOutRows = -1;
};

} // namespace Zel
