// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pictures/paintmeter.h"

#include <QPen>
#include <QTransform>

#include <cmath>

namespace Zel {

class PaintMeter::Engine : public QPaintEngine
{
public:
    explicit Engine(const QSize &canvas)
        : QPaintEngine(QPaintEngine::AllFeatures)
        , m_cost(canvas)
    {
    }

    double cost() const { return m_cost.total(); }

    bool begin(QPaintDevice *) override { return true; }

    bool end() override { return true; }

    Type type() const override { return User; }

    void updateState(const QPaintEngineState &now) override
    {
        if (now.state() & DirtyTransform)
            m_transform = now.transform();
        if (now.state() & DirtyPen)
            m_pen = now.pen();
        if (now.state() & DirtyBrush)
            m_fills = now.brush().style() != Qt::NoBrush;
    }

    void drawPath(const QPainterPath &path) override
    {
        m_cost.addPath(m_transform.map(path), m_fills, penWidth());
    }

    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override
    {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        m_cost.addPath(m_transform.map(path), m_fills && mode != PolylineMode, penWidth());
    }

    void drawPixmap(const QRectF &area, const QPixmap &, const QRectF &) override
    {
        m_cost.addImage(m_transform.mapRect(area));
    }

    void drawImage(const QRectF &area, const QImage &, const QRectF &,
                   Qt::ImageConversionFlags) override
    {
        m_cost.addImage(m_transform.mapRect(area));
    }

    void drawTextItem(const QPointF &, const QTextItem &item) override
    {
        m_cost.addText(item.text().size());
    }

private:
    double penWidth() const
    {
        if (m_pen.style() == Qt::NoPen)
            return 0;
        const double scale =
            m_pen.isCosmetic() ? 1 : std::sqrt(std::abs(m_transform.determinant()));
        return std::max(m_pen.widthF() * scale, 1.0);
    }

    PaintCost m_cost;
    QTransform m_transform;
    QPen m_pen;
    bool m_fills = false;
};

PaintMeter::PaintMeter(const QSize &canvas)
    : m_canvas(canvas)
    , m_engine(std::make_unique<Engine>(canvas))
{
}

PaintMeter::~PaintMeter() = default;

double PaintMeter::cost() const
{
    return m_engine->cost();
}

QPaintEngine *PaintMeter::paintEngine() const
{
    return m_engine.get();
}

int PaintMeter::metric(PaintDeviceMetric metric) const
{
    switch (metric) {
    case PdmWidth:
        return m_canvas.width();
    case PdmHeight:
        return m_canvas.height();
    case PdmDepth:
        return 32;
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
        return 96;
    case PdmDevicePixelRatio:
        return 1;
    case PdmDevicePixelRatioScaled:
        return int(devicePixelRatioFScale());
    default:
        return 0;
    }
}

} // namespace Zel
