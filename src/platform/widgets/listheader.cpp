// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listheader.h"

#include "platform/widgets/listlooks.h"

#include <QPainter>
#include <QStyleOptionHeader>

namespace Zel {

ListHeader::ListHeader(QWidget *parent)
    : QHeaderView(Qt::Horizontal, parent)
{
    setSectionsMovable(false);
    setStretchLastSection(false);
    setHighlightSections(false);
    setMinimumSectionSize(8);
}

bool ListHeader::showsArrow(int column) const
{
    return isSortIndicatorShown() && sortIndicatorSection() == column;
}

void ListHeader::paintEvent(QPaintEvent *event)
{
    QHeaderView::paintEvent(event);
    const int end = length() - offset();
    if (end >= viewport()->width())
        return;
    QPainter painter(viewport());
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.section = -1;
    option.rect = viewport()->rect();
    if (isRightToLeft())
        option.rect.setRight(viewport()->width() - end - 1);
    else
        option.rect.setLeft(end);
    option.position = QStyleOptionHeader::End;
    style()->drawControl(QStyle::CE_HeaderSection, &option, &painter, this);
}

void ListHeader::paintSection(QPainter *painter, const QRect &rect, int column) const
{
    QStyleOptionHeaderV2 option;
    initStyleOption(&option);
    option.rect = rect;
    initStyleOptionForIndex(&option, column);
    painter->save();
    painter->setClipRect(rect);
    style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);

    QStyleOptionHeaderV2 arrow = option;
    arrow.rect = style()->subElementRect(QStyle::SE_HeaderArrow, &option, this);
    const int margin = ListLooks::textMargin(this);
    QRect label = rect.adjusted(margin, 0, -margin, 0);
    if (showsArrow(column)) {
        style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &arrow, painter, this);
        if (isRightToLeft())
            label.setLeft(std::max(label.left(), arrow.rect.right()));
        else
            label.setRight(std::min(label.right(), arrow.rect.left()));
    }
    const Qt::Alignment alignment =
        QStyle::visualAlignment(option.direction, option.textAlignment | Qt::AlignVCenter);
    const QString caption = fontMetrics().elidedText(option.text, Qt::ElideRight, label.width());
    style()->drawItemText(painter, label, static_cast<int>(alignment) | Qt::TextSingleLine,
                          option.palette, isEnabled(), caption, QPalette::ButtonText);
    painter->restore();
}

QSize ListHeader::sectionSizeFromContents(int column) const
{
    const QSize size = QHeaderView::sectionSizeFromContents(column);
    return {size.width() + 2 * ListLooks::textMargin(this), size.height() + 4};
}

} // namespace Zel
