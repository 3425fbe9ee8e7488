// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/graphscene.h"

#include "datavisualization/graphmarks.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QHorizontalStackedBarSeries>
#include <QStackedBarSeries>
#include <QValueAxis>

#include <map>

namespace ZelDataVisualization {

namespace {

constexpr double BarShare = 0.7;

/// One set of bars for each colour; where a bar has another colour the set has nothing.
void addBars(QAbstractBarSeries &series, const GraphContent &content, double scale,
             const GraphLook &look)
{
    std::map<int, QBarSet *> sets;
    const size_t count = content.bars.size();
    for (size_t i = 0; i < count; ++i) {
        // Lying bars are counted from below; the first one belongs to the top.
        const GraphBar &bar = content.bars[content.isRotated ? count - 1 - i : i];
        QBarSet *&set = sets[bar.color];
        if (!set) {
            set = new QBarSet(QString());
            set->setColor(chartColor(bar.color));
            set->setPen(QPen(look.text, 1));
        }
        while (set->count() < static_cast<int>(i))
            set->append(0);
        set->append(std::max(0.0, bar.value.value_or(0)) * scale);
    }
    for (const auto &[color, set] : sets) {
        while (set->count() < static_cast<int>(count))
            set->append(0);
        series.append(set);
    }
    series.setBarWidth(BarShare);
}

QValueAxis *makeValueAxis(const GraphPlaces &places, double scale, bool isShare,
                          const GraphLook &look)
{
    auto *axis = new QValueAxis;
    axis->setRange(0, places.top * scale);
    axis->setTickType(QValueAxis::TicksDynamic);
    axis->setTickAnchor(0);
    axis->setTickInterval(places.interval * scale);
    axis->setLabelFormat(isShare ? QStringLiteral("%.0f %%") : QStringLiteral("%.0f"));
    axis->setLabelsFont(look.font);
    axis->setLabelsColor(look.text);
    axis->setGridLinePen(QPen(look.grid, 1));
    axis->setLineVisible(false);
    return axis;
}

QBarCategoryAxis *makeNames(const GraphContent &content, const GraphLook &look)
{
    auto *axis = new QBarCategoryAxis;
    QStringList names;
    for (size_t i = 0; i < content.bars.size(); ++i)
        names << QString::number(i);
    axis->append(names);
    axis->setLabelsVisible(false); // they would be read as markup
    axis->setGridLineVisible(false);
    axis->setLinePen(QPen(look.text, 1));
    return axis;
}

} // namespace

GraphScene::GraphScene(QObject *parent)
    : QGraphicsScene(parent)
{
    setItemIndexMethod(QGraphicsScene::NoIndex);
}

GraphScene::~GraphScene() = default;

void GraphScene::show(GraphContent content, const GraphLook &look, const QSizeF &size)
{
    m_content = std::move(content);
    m_places = GraphPlaces(m_content, look.font, size);
    setSceneRect(QRectF(QPointF(), size));
    setBackgroundBrush(look.ground);
    makeChart(look, size);
    if (!m_marks) {
        m_marks = new GraphMarks(m_content, m_places, look, size);
        addItem(m_marks);
    }
    m_marks->setLook(look, size);
}

void GraphScene::makeChart(const GraphLook &look, const QSizeF &size)
{
    delete m_chart;
    m_chart = nullptr;
    if (m_content.bars.empty() || m_places.plot.width() < 1 || m_places.plot.height() < 1)
        return;
    m_chart = new QChart;
    m_chart->setBackgroundVisible(false);
    m_chart->setMargins(QMargins());
    m_chart->legend()->hide();
    m_chart->setFlag(QGraphicsItem::ItemIsFocusable, false);
    addItem(m_chart);
    const double scale = m_content.isShare ? 100 : 1;
    QAbstractBarSeries *series = nullptr;
    if (m_content.isRotated)
        series = new QHorizontalStackedBarSeries;
    else
        series = new QStackedBarSeries;
    addBars(*series, m_content, scale, look);
    m_chart->addSeries(series);
    const Qt::Alignment valuesAt = m_content.isRotated ? Qt::AlignBottom : Qt::AlignLeft;
    const Qt::Alignment namesAt = m_content.isRotated ? Qt::AlignLeft : Qt::AlignBottom;
    auto *values = makeValueAxis(m_places, scale, m_content.isShare, look);
    auto *names = makeNames(m_content, look);
    m_chart->addAxis(values, valuesAt);
    m_chart->addAxis(names, namesAt);
    series->attachAxis(values);
    series->attachAxis(names);
    m_chart->setPlotArea(m_places.plot);
    m_chart->resize(size);
}

void GraphScene::setCurrent(qsizetype bar)
{
    m_content.current = bar;
    if (m_marks)
        m_marks->update();
}

} // namespace ZelDataVisualization
