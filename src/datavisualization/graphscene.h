// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/graphbars.h"
#include "datavisualization/graphlook.h"

#include <QGraphicsScene>

class QChart;

namespace ZelDataVisualization {

class GraphMarks;

/// What a graph shows.
struct GraphContent
{
    QString title;
    QString note;
    std::vector<GraphBar> bars;
    bool isShare = false;
    bool isRotated = false; ///< bars lie instead of standing
    qsizetype current = -1; ///< the bar with a frame around it
};

/// Where everything of a graph is, in pixels of the scene.
struct ZEL_EXPORT GraphPlaces
{
    GraphPlaces() = default;
    GraphPlaces(const GraphContent &content, const QFont &font, const QSizeF &size);

    QRectF slot(size_t bar) const; ///< a bar's share of the plot, over its whole height
    QRectF bar(size_t bar, double value) const;

    QRectF title;
    QRectF note;
    QRectF plot;
    QRectF labels;       ///< where the names of the bars are
    double top = 1;      ///< the value at the upper end of the plot
    double interval = 1; ///< between the lines of the grid
    size_t bars = 0;
    bool isRotated = false;
};

/// A graph, the same on the screen, on paper and in files: bars, lines and axis are Qt Charts',
/// what is written is drawn by `GraphMarks`.
class ZEL_EXPORT GraphScene : public QGraphicsScene
{
public:
    explicit GraphScene(QObject *parent = nullptr);
    ~GraphScene() override;

    void show(GraphContent content, const GraphLook &look, const QSizeF &size);
    void setCurrent(qsizetype bar);

    const GraphContent &content() const { return m_content; }

    const GraphPlaces &places() const { return m_places; }

private:
    void makeChart(const GraphLook &look, const QSizeF &size);

    GraphContent m_content;
    GraphPlaces m_places;
    QChart *m_chart = nullptr;
    GraphMarks *m_marks = nullptr;
};

} // namespace ZelDataVisualization
