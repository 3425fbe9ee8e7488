// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/metafilecanvas.h"

#include "platform/pictures/metafileoperations.h"

#include <algorithm>
#include <cmath>

namespace Zel {

namespace {

constexpr qsizetype MostSaved = 256;
constexpr qsizetype MostClips = 64;
// Beyond this nothing can be seen; Qt's arithmetic is in 32 bits further down.
constexpr double Far = 1e6;

QPointF near(const QPointF &point)
{
    const auto limit = [](double number) {
        return std::isfinite(number) ? std::clamp(number, -Far, Far) : 0.0;
    };
    return {limit(point.x()), limit(point.y())};
}

} // namespace

MetafileCanvas::MetafileCanvas(QImage *image, const QRectF &frame)
    : m_painter(image)
    , m_frame(frame)
{
    m_paper.scale(image->width() / frame.width(), image->height() / frame.height());
    m_paper.translate(-frame.x(), -frame.y());
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    m_painter.setTransform(m_paper);
}

void MetafileCanvas::save()
{
    if (m_saved.size() < MostSaved)
        m_saved << m_state;
}

void MetafileCanvas::restore(int count)
{
    const qsizetype index = count < 0 ? m_saved.size() + count : count - 1;
    if (count == 0 || index < 0 || index >= m_saved.size())
        return;
    m_state = m_saved[index];
    m_saved.resize(index);
    applyClip();
}

QPointF MetafileCanvas::map(const QPointF &point) const
{
    return near(m_state.mapping.toScreen().map(point));
}

QPainterPath MetafileCanvas::map(const QPainterPath &path) const
{
    QPainterPath mapped = m_state.mapping.toScreen().map(path);
    for (int i = 0; i < mapped.elementCount(); ++i) {
        const QPointF point = near(mapped.elementAt(i));
        mapped.setElementPositionAt(i, point.x(), point.y());
    }
    return mapped;
}

double MetafileCanvas::unit() const
{
    return std::sqrt(std::abs(m_state.mapping.toScreen().determinant()));
}

QPen MetafileCanvas::penOnScreen() const
{
    const MetafilePen &own = m_state.pen;
    if (own.style == Qt::NoPen)
        return Qt::NoPen;
    // No line is thinner than a pixel of the image.
    const double thinnest = 1 / std::sqrt(std::abs(m_paper.determinant()));
    const double width = own.isCosmetic ? own.width : own.width * unit();
    QPen pen(own.color, std::clamp(std::isfinite(width) ? width : 0, thinnest, Far), own.style,
             own.cap, own.join);
    pen.setMiterLimit(m_state.miterLimit);
    if (!own.dashes.isEmpty())
        pen.setDashPattern(own.dashes);
    return pen;
}

void MetafileCanvas::applyOperation()
{
    m_painter.setCompositionMode(modeOfBinaryOperation(m_state.rasterOperation));
    m_drawn = true;
}

void MetafileCanvas::draw(const QPainterPath &shape, bool fill, bool stroke)
{
    const QPainterPath mapped = map(shape);
    if (m_isBuilding) {
        m_path.addPath(mapped);
        return;
    }
    applyOperation();
    QPainterPath path = mapped;
    path.setFillRule(m_state.fillRule);
    const QBrush brush = fill ? m_state.brush : QBrush(Qt::NoBrush);
    const bool isHatched =
        brush.style() > Qt::SolidPattern && brush.style() <= Qt::DiagCrossPattern;
    if (isHatched && m_state.isOpaque)
        m_painter.fillPath(path, m_state.background);
    m_painter.setBrush(brush);
    m_painter.setPen(stroke ? penOnScreen() : QPen(Qt::NoPen));
    m_painter.drawPath(path);
}

void MetafileCanvas::fillOnScreen(const QPainterPath &shape)
{
    fillOnScreen(shape, m_state.brush);
}

void MetafileCanvas::fillOnScreen(const QPainterPath &shape, const QBrush &brush)
{
    applyOperation();
    m_painter.fillPath(shape, brush);
}

void MetafileCanvas::moveTo(const QPointF &point)
{
    m_state.position = point;
    if (m_isBuilding)
        m_path.moveTo(map(point));
}

void MetafileCanvas::drawFromPosition(const QPainterPath &shape)
{
    m_state.position = shape.currentPosition();
    if (m_isBuilding) {
        const bool isNew = m_path.isEmpty() && m_path.elementCount() == 0;
        const QPainterPath mapped = map(shape);
        if (isNew)
            m_path = mapped;
        else
            m_path.connectPath(mapped);
        return;
    }
    draw(shape, false, true);
}

void MetafileCanvas::setPixel(const QPointF &point, const QColor &color)
{
    applyOperation();
    m_painter.fillRect(QRectF(map(point), QSizeF(1, 1)), color);
}

void MetafileCanvas::beginPath()
{
    m_path = QPainterPath();
    m_isBuilding = true;
}

void MetafileCanvas::abortPath()
{
    m_path = QPainterPath();
    m_isBuilding = false;
}

void MetafileCanvas::closeFigure()
{
    if (m_isBuilding)
        m_path.closeSubpath();
}

void MetafileCanvas::drawPath(bool fill, bool stroke)
{
    applyOperation();
    m_path.setFillRule(m_state.fillRule);
    m_painter.setBrush(fill ? m_state.brush : QBrush(Qt::NoBrush));
    m_painter.setPen(stroke ? penOnScreen() : QPen(Qt::NoPen));
    m_painter.drawPath(m_path);
    abortPath();
}

void MetafileCanvas::clipToPath()
{
    m_path.setFillRule(m_state.fillRule);
    clip(m_path);
    abortPath();
}

void MetafileCanvas::clip(const QPainterPath &area)
{
    if (m_state.clips.size() >= MostClips)
        return;
    m_state.clips << area;
    applyClip();
}

void MetafileCanvas::exclude(const QRectF &area)
{
    QPainterPath rest; // everything, with a hole
    rest.addRect(-Far, -Far, 2 * Far, 2 * Far);
    rest.addRect(area);
    clip(rest);
}

void MetafileCanvas::resetClip()
{
    m_state.clips.clear();
    applyClip();
}

void MetafileCanvas::applyClip()
{
    // One after the other, so that no shapes have to be computed from what a file says.
    m_painter.setClipping(false);
    Qt::ClipOperation operation = Qt::ReplaceClip;
    for (const QPainterPath &area : std::as_const(m_state.clips)) {
        m_painter.setClipPath(area, operation);
        operation = Qt::IntersectClip;
    }
}

void MetafileCanvas::drawImage(const QRectF &to, const QImage &image, const QRectF &from,
                               quint32 operation, double opacity)
{
    if (image.isNull() || from.width() == 0 || from.height() == 0)
        return;
    m_drawn = true;
    m_painter.save();
    m_painter.setCompositionMode(modeOfTernaryOperation(operation));
    m_painter.setOpacity(opacity);
    m_painter.setTransform(m_state.mapping.toScreen() * m_paper);
    m_painter.translate(to.topLeft());
    m_painter.scale(to.width() / from.width(), to.height() / from.height());
    m_painter.drawImage(QRectF(QPointF(), from.size()), image, from);
    m_painter.restore();
}

void MetafileCanvas::fillRectangle(const QRectF &rectangle, quint32 operation)
{
    m_drawn = true;
    QPainterPath path;
    path.addRect(rectangle);
    m_painter.setCompositionMode(modeOfTernaryOperation(operation));
    m_painter.fillPath(map(path), usesPattern(operation) ? m_state.brush : QBrush(Qt::black));
}

} // namespace Zel
