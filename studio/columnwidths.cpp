// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/columnwidths.h"

#include "platform/core/datetext.h"
#include "platform/widgets/listview.h"
#include "platform/widgets/twips.h"

#include <QStyle>

#include <algorithm>

namespace Studio {

namespace {

// Twips.
constexpr double CellPadding = 210;
constexpr double NarrowestText = 2600;
/// What the first column takes of the room the first two share.
constexpr double NameShare = 0.52;

double dateWidth(const Zel::ListView &list)
{
    // Two digits in every field: as long as such a text becomes.
    const QDateTime longest(QDate(2028, 12, 28), QTime(22, 58, 58));
    return Zel::textWidthTwips(Zel::generalDateText(longest), &list) + CellPadding;
}

bool isShown(const Zel::ListView &list, int column)
{
    return list.columnWidth(column) > 0;
}

void widenDates(Zel::ListView &list, const QList<int> &columns)
{
    const double width = dateWidth(list);
    for (const int column : columns) {
        if (isShown(list, column))
            list.setColumnWidth(column, std::max(width, list.columnWidth(column)));
    }
}

void shareRest(Zel::ListView &list)
{
    // Room for the vertical scroll bar, whether it is there now or not.
    const int room = list.width() - list.style()->pixelMetric(QStyle::PM_ScrollBarExtent) -
                     2 * list.style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    double rest = Zel::twipsFromPixels(room, Zel::logicalDpi(&list));
    for (int column = 2; column < list.columnCount(); ++column)
        rest -= list.columnWidth(column);
    const double name = std::max(NarrowestText, rest * NameShare);
    list.setColumnWidth(0, name);
    list.setColumnWidth(1, std::max(NarrowestText, rest - name));
}

} // namespace

QList<int> dateColumns(const Zel::ListView &list)
{
    QList<int> columns;
    for (int column = 0; column < list.columnCount(); ++column) {
        if (list.columnTag(column) == QLatin1String("DATE"))
            columns << column;
    }
    return columns;
}

void fitColumns(Zel::ListView &list, const QList<double> &remembered, const QList<int> &dateColumns)
{
    widenDates(list, dateColumns);
    if (remembered.size() != list.columnCount()) {
        shareRest(list);
        return;
    }
    for (int column = 0; column < list.columnCount(); ++column) {
        if (isShown(list, column) && remembered.at(column) > 0)
            list.setColumnWidth(column, remembered.at(column));
    }
}

QList<double> columnWidths(const Zel::ListView &list, const QList<double> &remembered)
{
    QList<double> widths;
    for (int column = 0; column < list.columnCount(); ++column) {
        const double width = list.columnWidth(column);
        widths << (width > 0 ? width : remembered.value(column, 0));
    }
    return widths;
}

} // namespace Studio
