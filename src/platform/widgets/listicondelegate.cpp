// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/listicondelegate.h"

#include "platform/widgets/listlooks.h"
#include "platform/widgets/listmodel.h"

#include <QTextLayout>
#include <QWidget>

#include <algorithm>

namespace Zel {

namespace {

/// The text on at most two lines of the width, the second shortened, with a line separator between.
QString onTwoLines(const QString &text, const QFont &font, int width)
{
    QTextLayout layout(text, font);
    QTextOption wrap(Qt::AlignHCenter);
    wrap.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(wrap);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid())
        line.setLineWidth(width);
    layout.endLayout();
    const int end = line.isValid() ? line.textLength() : 0;
    if (end >= text.size())
        return text;
    const QString rest = text.sliced(end).trimmed();
    return text.first(end).trimmed() + QChar(QChar::LineSeparator) +
           QFontMetrics(font).elidedText(rest, Qt::ElideRight, width);
}

} // namespace

QSize ListIconDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int line = option.fontMetrics.height();
    const int width =
        std::max(option.decorationSize.width() + 24, option.fontMetrics.averageCharWidth() * 18);
    return {width, option.decorationSize.height() + 2 * line + 16};
}

QRect ListIconDelegate::contents(const QStyleOptionViewItem &option) const
{
    return option.rect.adjusted(4, 4, -4, -2);
}

void ListIconDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    const QSize iconSize = option->decorationSize;
    ListDelegate::initStyleOption(option, index);
    option->icon = model()->largeImage(model()->rowOf(index));
    option->features |= QStyleOptionViewItem::HasDecoration | QStyleOptionViewItem::WrapText;
    option->decorationSize = iconSize;
    option->decorationPosition = QStyleOptionViewItem::Top;
    option->decorationAlignment = Qt::AlignCenter;
    option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
    option->text = onTwoLines(option->text, option->font, textWidth(*option));
}

int ListIconDelegate::textWidth(const QStyleOptionViewItem &option) const
{
    const int margin =
        option.widget->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, option.widget) +
        1;
    return contents(option).width() - 2 * margin;
}

void ListIconDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    ListDelegate::paint(painter, option, index);
    if (option.state & QStyle::State_HasFocus)
        ListLooks::paintFocusFrame(painter, option.rect, option);
}

bool ListIconDelegate::isShortened(const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    const QString text = shownOnOneLine(index.data().toString());
    const QString shown = onTwoLines(text, option.font, textWidth(option));
    return shown.endsWith(QChar(0x2026)) && !text.endsWith(QChar(0x2026));
}

} // namespace Zel
