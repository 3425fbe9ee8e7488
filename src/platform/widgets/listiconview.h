// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listsurface.h"

#include <QListView>

namespace Zel {

class ListDelegate;
class ListModel;

/// The icon view of a ListView: large icons over their texts, in lines from the left.
class ListIconView : public ListSurface<QListView>
{
    Q_OBJECT

public:
    ListIconView(ListModel *model, QWidget *parent);

    void setEmptyText(const QString &text);
    void setLargeIconSize(const QSize &size);
    void keyboardSearch(const QString &search) override;

signals:
    void typed(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void updateGrid();

    ListModel *m_model;
    ListDelegate *m_delegate;
    QString m_emptyText;
};

} // namespace Zel
