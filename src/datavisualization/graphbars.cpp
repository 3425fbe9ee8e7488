// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphbars.h"

#include "datavisualization/visualizationtexts.h"

#include <algorithm>

namespace ZelDataVisualization {

GraphWindow::GraphWindow(qsizetype count, bool canBeGrouped)
    : m_count(count)
    , m_mostShown(canBeGrouped ? count : std::min(count, MostBars))
    , m_shown(std::min(count, MostAtFirst))
{
}

void GraphWindow::show(qsizetype shown, qsizetype around)
{
    m_shown = std::clamp(shown, std::min(m_count, LeastShown), m_mostShown);
    scrollTo(around - m_shown / 2);
}

void GraphWindow::fit(qsizetype room)
{
    m_shown = std::min(m_mostShown, std::clamp(room, LeastAtFirst, MostAtFirst));
    scrollTo(m_first);
}

void GraphWindow::zoomIn(qsizetype around)
{
    show(m_shown / 2, around);
}

void GraphWindow::zoomOut(qsizetype around)
{
    show(m_shown * 2, around);
}

void GraphWindow::showAll()
{
    show(m_mostShown, m_first + m_shown / 2);
}

void GraphWindow::scrollTo(qsizetype first)
{
    m_first = std::clamp<qsizetype>(first, 0, m_count - m_shown);
}

void GraphWindow::reveal(qsizetype figure)
{
    if (figure < m_first)
        scrollTo(figure);
    else if (figure >= m_first + m_shown)
        scrollTo(figure - m_shown + 1);
}

namespace {

GraphBar barOf(const Figures &figures, qsizetype figure)
{
    GraphBar bar;
    bar.label = figures.label(figure);
    bar.valueText = figures.valueText(figure);
    bar.spoken = figures.spoken(figure);
    bar.value = figures.value(figure);
    bar.isCorrect = figures.isCorrect(figure);
    bar.color = figures.color(figure);
    bar.figure = figure;
    return bar;
}

GraphBar averageOf(const Figures &figures, qsizetype from, qsizetype to)
{
    GraphBar bar;
    double sum = 0;
    qsizetype known = 0;
    for (qsizetype figure = from; figure < to; ++figure) {
        if (const std::optional<double> value = figures.value(figure)) {
            sum += *value;
            ++known;
        }
    }
    bar.figure = from;
    bar.color = figures.color(from);
    bar.label = VisualizationTexts::tr("%1 to %2").arg(from + 1).arg(to);
    bar.valueText = VisualizationTexts::tr("not known");
    if (known > 0) {
        bar.value = sum / static_cast<double>(known);
        bar.valueText = percentText(*bar.value * 100, 1);
    }
    bar.spoken = VisualizationTexts::tr("%1, average: %2").arg(bar.label, bar.valueText);
    return bar;
}

} // namespace

QString valueLabel(const GraphBar &bar)
{
    return bar.isCorrect ? QStringLiteral("✓ ") + bar.valueText : bar.valueText;
}

std::vector<GraphBar> barsOf(const Figures &figures, const GraphWindow &window)
{
    std::vector<GraphBar> bars;
    const qsizetype end = window.first() + window.shown();
    const qsizetype group = window.group();
    for (qsizetype figure = window.first(); figure < end; figure += group) {
        const qsizetype last = std::min(figure + group, end);
        bars.push_back(last - figure == 1 ? barOf(figures, figure)
                                          : averageOf(figures, figure, last));
    }
    return bars;
}

} // namespace ZelDataVisualization
