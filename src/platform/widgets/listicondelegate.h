// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listdelegate.h"

namespace Zel {

/// Paints the lines of an icon view: the large icon over the text.
class ListIconDelegate : public ListDelegate
{
    Q_OBJECT

public:
    using ListDelegate::ListDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QRect contents(const QStyleOptionViewItem &option) const override;
    bool isShortened(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    int textWidth(const QStyleOptionViewItem &option) const;
};

} // namespace Zel
