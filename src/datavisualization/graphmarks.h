// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/graphscene.h"

#include <QGraphicsItem>

namespace ZelDataVisualization {

/// Everything that is written on a graph: its title, the names of the bars and their values; and
/// the hatching of correct answers and the frame around the current bar. Texts are plain, whatever
/// is in them, and are cut where there is no room.
class GraphMarks : public QGraphicsItem
{
public:
    GraphMarks(const GraphContent &content, const GraphPlaces &places, const GraphLook &look,
               const QSizeF &size);

    QRectF boundingRect() const override { return QRectF(QPointF(), m_size); }

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    void setLook(const GraphLook &look, const QSizeF &size);

private:
    void paintTitle(QPainter *painter) const;
    void paintHatching(QPainter *painter, const QRectF &outline, const QColor &ground) const;
    void paintLabels(QPainter *painter) const;
    void paintLyingLabel(QPainter *painter, const QRectF &slot, const QString &label) const;
    void paintStandingLabel(QPainter *painter, const QRectF &slot, const QString &label) const;
    void paintValue(QPainter *painter, size_t index) const;
    void paintCurrent(QPainter *painter) const;

    const GraphContent &m_content;
    const GraphPlaces &m_places;
    GraphLook m_look;
    QSizeF m_size;
};

} // namespace ZelDataVisualization
