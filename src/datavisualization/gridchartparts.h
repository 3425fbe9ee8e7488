// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/figuresmodel.h"
#include "datavisualization/graphview.h"

class QAction;
class QKeyEvent;
class QLabel;
class QScrollBar;
class QSplitter;
class QStackedLayout;
class QTableView;

namespace ZelDataVisualization {

/// The children of a chart and where they are.
struct GridChartParts
{
    explicit GridChartParts(QWidget *parent);

    void setResults(const SurveyResultsPtr &newResults) { results = newResults; }

    void show(const FiguresPtr &figures);

    QLabel *message = nullptr; ///< instead of everything else
    GraphView *graph = nullptr;
    QTableView *figures = nullptr;
    QScrollBar *across = nullptr; ///< of the graph, for standing bars
    QScrollBar *down = nullptr;   ///< for lying ones
    QWidget *panel = nullptr;     ///< graph and scroll bars

    QAction *copyPicture = nullptr;
    QAction *savePicture = nullptr;
    QAction *print = nullptr;
    QAction *zoomIn = nullptr;
    QAction *zoomOut = nullptr;
    QAction *showAll = nullptr;
    QAction *copyRows = nullptr;

    SurveyResultsPtr results;
    QString problem;

private:
    void makeGraph(QWidget *parent);
    void makeTable(QWidget *parent);
    void makeActions();

    FiguresModel *m_model = nullptr;
    QStackedLayout *m_pages = nullptr;
    QSplitter *m_splitter = nullptr;
};

} // namespace ZelDataVisualization
