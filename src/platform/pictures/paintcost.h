// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPainterPath>
#include <QSize>

namespace Zel {

/// Estimates how long Qt's painter will take, in nanoseconds of a processor of the 2020s: good
/// enough to tell a drawing from an attack. The figures were measured with Qt 6.4: painting a path
/// costs its area, and for each of its edges in each row a walk along the other edges in that row,
/// so that ten thousand long lines in one path take half a minute.
class PaintCost
{
public:
    /// What a drawing may cost as a whole.
    static constexpr double Most = 4e9;

    /// @param canvas the pixels there are; whatever lies beyond them costs nothing
    explicit PaintCost(const QSize &canvas)
        : m_canvas(canvas)
    {
    }

    double total() const { return m_total; }

    bool isTooMuch() const { return m_total > Most; }

    /// @param path in pixels of the canvas
    /// @param penWidth in pixels of the canvas; 0 when no outline is drawn
    void addPath(const QPainterPath &path, bool fill, double penWidth);
    void addText(qsizetype letters);
    void addImage(const QRectF &area);

private:
    void addArea(const QRectF &area);
    void addEdges(double length);

    QSize m_canvas;
    double m_total = 0;
};

} // namespace Zel
