// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/figures.h"

namespace ZelDataVisualization {

/// The part of the figures that the graph shows: so many from one on.
class ZEL_EXPORT GraphWindow
{
public:
    /// As many bars as can be told apart; beyond that a bar stands for several figures.
    static constexpr qsizetype MostBars = 60;
    /// What is shown at first: as many as have room for their labels, within these bounds.
    static constexpr qsizetype MostAtFirst = 30;
    static constexpr qsizetype LeastAtFirst = 5;
    static constexpr qsizetype LeastShown = 3;

    GraphWindow() = default;
    GraphWindow(qsizetype count, bool canBeGrouped);

    qsizetype count() const { return m_count; }

    qsizetype first() const { return m_first; }

    qsizetype shown() const { return m_shown; }

    /// The figures that one bar stands for.
    qsizetype group() const { return (m_shown + MostBars - 1) / MostBars; }

    qsizetype bars() const { return m_shown == 0 ? 0 : (m_shown + group() - 1) / group(); }

    /// The bar that shows a figure of the window.
    qsizetype barOf(qsizetype figure) const { return (figure - m_first) / group(); }

    bool canZoomIn() const { return m_shown > std::min(m_count, LeastShown); }

    bool canZoomOut() const { return m_shown < m_mostShown; }

    /// Shows as many figures as there is room for, from the first one on that is shown.
    void fit(qsizetype room);
    /// Halves or doubles what is shown, with a figure kept in the middle.
    void zoomIn(qsizetype around);
    void zoomOut(qsizetype around);
    void showAll();
    void scrollTo(qsizetype first);
    /// Moves as little as it takes to show a figure.
    void reveal(qsizetype figure);

private:
    void show(qsizetype shown, qsizetype around);

    qsizetype m_count = 0;
    qsizetype m_mostShown = 0;
    qsizetype m_first = 0;
    qsizetype m_shown = 0;
};

/// One bar with everything written beside it.
struct GraphBar
{
    QString label;
    QString valueText;
    QString spoken;
    std::optional<double> value;
    int color = 0;
    bool isCorrect = false;
    qsizetype figure = 0; ///< the first one it stands for
};

/// What is written beside a bar.
QString valueLabel(const GraphBar &bar);

/// The bars of a window. One that stands for several figures has their average.
std::vector<GraphBar> barsOf(const Figures &figures, const GraphWindow &window);

} // namespace ZelDataVisualization
