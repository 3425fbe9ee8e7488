// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/gridchartparts.h"

#include "datavisualization/figuretable.h"
#include "datavisualization/visualizationtexts.h"
#include "datavisualization/widgetkeys.h"

#include <QAction>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QSplitter>
#include <QStackedLayout>
#include <QTableView>

namespace ZelDataVisualization {

namespace {

/// Of the height, the share of the graph and that of the table.
constexpr int GraphShare = 3;
constexpr int TableShare = 2;

QString tr(const char *text)
{
    return VisualizationTexts::tr(text);
}

} // namespace

GridChartParts::GridChartParts(QWidget *parent)
{
    m_splitter = new QSplitter(Qt::Vertical, parent);
    m_splitter->setObjectName(QStringLiteral("results"));
    m_splitter->setChildrenCollapsible(false);
    // In the order in which the Tab key goes through them.
    makeGraph(m_splitter);
    makeTable(m_splitter);
    m_splitter->setStretchFactor(0, GraphShare);
    m_splitter->setStretchFactor(1, TableShare);
    m_splitter->setSizes({GraphShare * 100, TableShare * 100});

    message = new QLabel(parent);
    message->setObjectName(QStringLiteral("message"));
    message->setTextFormat(Qt::PlainText);
    message->setAlignment(Qt::AlignCenter);
    message->setWordWrap(true);
    message->setMargin(12);
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_pages = new QStackedLayout(parent);
    m_pages->addWidget(message);
    m_pages->addWidget(m_splitter);
    makeActions();
    show(noFigures(tr("There are no results to show yet.")));
}

void GridChartParts::makeGraph(QWidget *parent)
{
    panel = new QWidget(parent);
    panel->setObjectName(QStringLiteral("graphPanel"));
    graph = new GraphView(panel);
    graph->setObjectName(QStringLiteral("graph"));
    across = new QScrollBar(Qt::Horizontal, panel);
    down = new QScrollBar(Qt::Vertical, panel);
    auto *grid = new QGridLayout(panel);
    grid->setContentsMargins({});
    grid->setSpacing(0);
    grid->addWidget(graph, 0, 0);
    grid->addWidget(down, 0, 1);
    grid->addWidget(across, 1, 0);
}

void GridChartParts::makeTable(QWidget *parent)
{
    figures = new QTableView(parent);
    figures->setObjectName(QStringLiteral("figures"));
    figures->setAccessibleName(tr("Figures"));
    setUpFigureTable(*figures);
    m_model = new FiguresModel(figures);
    figures->setModel(m_model);
}

void GridChartParts::makeActions()
{
    const auto make = [](QWidget *widget, const QString &text, const QKeySequence &key) {
        auto *action = new QAction(text, widget);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        widget->addAction(action);
        return action;
    };
    const auto separate = [](QWidget *widget) {
        auto *line = new QAction(widget);
        line->setSeparator(true);
        widget->addAction(line);
    };
    copyPicture = make(graph, tr("&Copy Picture"), QKeySequence::Copy);
    savePicture = make(graph, tr("&Save Picture As…"), QKeySequence::Save);
    print = make(graph, tr("&Print…"), QKeySequence::Print);
    separate(graph);
    zoomIn = make(graph, tr("Zoom &In"), QKeySequence(Qt::CTRL | Qt::Key_Plus));
    zoomOut = make(graph, tr("Zoom &Out"), QKeySequence(Qt::CTRL | Qt::Key_Minus));
    showAll = make(graph, tr("Show &All"), QKeySequence(Qt::CTRL | Qt::Key_0));
    copyRows = make(figures, tr("&Copy"), QKeySequence::Copy);
    auto *selectAll = make(figures, tr("Select &All"), QKeySequence::SelectAll);
    QObject::connect(selectAll, &QAction::triggered, figures, &QTableView::selectAll);
    for (QWidget *widget : {static_cast<QWidget *>(graph), static_cast<QWidget *>(figures)}) {
        widget->setContextMenuPolicy(Qt::ActionsContextMenu);
        new WidgetKeys(widget);
    }
}

void GridChartParts::show(const FiguresPtr &shown)
{
    m_model->setFigures(shown);
    fitFigureTable(*figures);
    graph->setFigures(shown);
    message->setText(shown->emptyText());
    figures->setAccessibleDescription(shown->name());
    m_pages->setCurrentWidget(shown->count() > 0 ? static_cast<QWidget *>(m_splitter) : message);
    if (shown->count() > 0)
        figures->selectionModel()->setCurrentIndex(m_model->index(0, 0),
                                                   QItemSelectionModel::NoUpdate);
}

} // namespace ZelDataVisualization
