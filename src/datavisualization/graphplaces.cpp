// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphscene.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace ZelDataVisualization {

namespace {

constexpr double Gap = 8;
constexpr double BarShare = 0.7; // of its slot
constexpr int MostLines = 6;     // of the grid

/// The distance between the lines of the grid: 1, 2 or 5 of a power of ten.
double niceInterval(double most)
{
    const double power = std::pow(10, std::floor(std::log10(most / MostLines)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (most <= step * power * MostLines)
            return std::max(1.0, step * power);
    }
    return std::max(1.0, 10 * power);
}

double highest(const GraphContent &content)
{
    double most = 0;
    for (const GraphBar &bar : content.bars)
        most = std::max(most, bar.value.value_or(0));
    // Twice a value beyond that is none.
    constexpr double Beyond = 1e300;
    return std::min(most, Beyond);
}

double widestLabel(const GraphContent &content, const QFontMetricsF &metrics)
{
    constexpr qsizetype Enough = 60; // characters; more is cut off anyway
    double widest = 0;
    for (const GraphBar &bar : content.bars)
        widest = std::max(widest, metrics.horizontalAdvance(bar.label.left(Enough)));
    return widest + Gap;
}

double widestValue(const GraphContent &content, const QFontMetricsF &metrics)
{
    double widest = 0;
    for (const GraphBar &bar : content.bars)
        widest = std::max(widest, metrics.horizontalAdvance(valueLabel(bar)));
    return widest + Gap;
}

} // namespace

GraphPlaces::GraphPlaces(const GraphContent &content, const QFont &font, const QSizeF &size)
    : bars(content.bars.size())
    , isRotated(content.isRotated)
{
    const QFontMetricsF metrics(font);
    const double line = metrics.height();
    const double most = highest(content);
    interval = content.isShare ? 0.2 : niceInterval(std::max(1.0, most));
    top = content.isShare ? std::max(1.0, most)
                          : interval * std::ceil(std::max(1.0, most) / interval);

    double y = Gap;
    const double width = std::max(0.0, size.width() - 2 * Gap);
    if (!content.title.isEmpty()) {
        title = QRectF(Gap, y, width, 2 * line);
        QFont bold = font;
        bold.setBold(true);
        if (QFontMetricsF(bold).horizontalAdvance(content.title.left(400)) <= width)
            title.setHeight(line);
        y = title.bottom() + Gap / 2;
    }
    if (!content.note.isEmpty()) {
        note = QRectF(Gap, y, width, line);
        y = note.bottom();
    }
    const QString widestTick = content.isShare ? QStringLiteral("100 %") : countText(top);
    const double ticks = metrics.horizontalAdvance(widestTick) + 2 * Gap;
    if (isRotated) {
        const double names = std::min(widestLabel(content, metrics), width * 0.4);
        const double values = std::min(widestValue(content, metrics), width * 0.3);
        labels = QRectF(Gap, y + Gap, names, size.height() - y - 3 * Gap - line);
        plot = labels;
        plot.setLeft(labels.right() + Gap / 2);
        plot.setRight(size.width() - Gap - values);
    } else {
        const double slot = (width - ticks) / static_cast<double>(std::max<size_t>(1, bars));
        const double names = widestLabel(content, metrics);
        const bool isUpright = slot < std::min(names, 6 * line);
        const double room = isUpright      ? std::min(names, size.height() * 0.3)
                            : names > slot ? 3 * line
                                           : line;
        // Values that stand upright need room above the highest bar, where it leaves none itself.
        const double values = widestValue(content, metrics);
        const double free = (1 - most / top) * size.height() * 0.5;
        const double aboveBars =
            slot < values ? std::clamp(values + Gap - free, 0.0, size.height() * 0.2) : line + Gap;
        plot = QRectF(QPointF(Gap + ticks, y + aboveBars),
                      QPointF(size.width() - Gap, size.height() - room - 2 * Gap));
        labels = QRectF(plot.left(), plot.bottom() + Gap, plot.width(), room);
    }
    plot = plot.normalized();
}

QRectF GraphPlaces::slot(size_t bar) const
{
    const double share = 1.0 / static_cast<double>(std::max<size_t>(1, bars));
    const double from = static_cast<double>(bar) * share;
    if (isRotated)
        return QRectF(plot.left(), plot.top() + from * plot.height(), plot.width(),
                      share * plot.height());
    return QRectF(plot.left() + from * plot.width(), plot.top(), share * plot.width(),
                  plot.height());
}

QRectF GraphPlaces::bar(size_t bar, double value) const
{
    QRectF rect = slot(bar);
    const double share = std::clamp(value / top, 0.0, 1.0);
    const double thin = (1 - BarShare) / 2;
    if (isRotated) {
        rect.adjust(0, rect.height() * thin, 0, -rect.height() * thin);
        rect.setWidth(rect.width() * share);
    } else {
        rect.adjust(rect.width() * thin, 0, -rect.width() * thin, 0);
        rect.setTop(rect.bottom() - rect.height() * share);
    }
    return rect;
}

} // namespace ZelDataVisualization
