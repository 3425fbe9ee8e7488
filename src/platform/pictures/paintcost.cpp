// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/paintcost.h"

#include <algorithm>
#include <cmath>

namespace Zel {

namespace {

constexpr double PerCall = 20'000;
constexpr double PerPixel = 1;
constexpr double PerStep = 11; // from one edge to the next in a row
constexpr double PerLetter = 40'000;

/// The length of a path's edges, curves along their control points, as far as they are near the
/// canvas.
double lengthOf(const QPainterPath &path, const QSize &canvas)
{
    const auto near = [](double number, int edge) {
        return std::clamp(number, -double(edge), 2.0 * edge);
    };
    double length = 0;
    double lastX = 0;
    double lastY = 0;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        const double x = near(element.x, canvas.width());
        const double y = near(element.y, canvas.height());
        if (!element.isMoveTo())
            length += std::abs(x - lastX) + std::abs(y - lastY);
        lastX = x;
        lastY = y;
    }
    return length;
}

} // namespace

void PaintCost::addArea(const QRectF &area)
{
    const QRectF seen = area & QRectF(QPointF(), QSizeF(m_canvas));
    m_total += PerCall + PerPixel * seen.width() * seen.height();
}

void PaintCost::addEdges(double length)
{
    const double edgesPerRow = length / m_canvas.height();
    m_total += PerStep * length * std::clamp(edgesPerRow, 1.0, double(m_canvas.width()));
}

void PaintCost::addPath(const QPainterPath &path, bool fill, double penWidth)
{
    addArea(path.controlPointRect().adjusted(-penWidth, -penWidth, penWidth, penWidth));
    const double length = lengthOf(path, m_canvas);
    if (fill)
        addEdges(length);
    if (penWidth > 0) {
        // Both sides of the line, and around each joint.
        const double joint = 4 * std::min(penWidth, double(m_canvas.height()));
        addEdges(2 * length + joint * path.elementCount());
    }
}

void PaintCost::addText(qsizetype letters)
{
    m_total += PerCall + PerLetter * double(letters);
}

void PaintCost::addImage(const QRectF &area)
{
    constexpr double Scaling = 4;
    addArea(area);
    const QRectF seen = area & QRectF(QPointF(), QSizeF(m_canvas));
    m_total += Scaling * PerPixel * seen.width() * seen.height();
}

} // namespace Zel
