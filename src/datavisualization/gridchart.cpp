// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/gridchart.h"

#include "datavisualization/figuretable.h"
#include "datavisualization/graphpicture.h"
#include "datavisualization/gridchartparts.h"
#include "datavisualization/workbookreader.h"
#include "platform/widgets/controlregistry.h"
#include "platform/widgets/hourglass.h"

#include <QAction>
#include <QClipboard>
#include <QFileDialog>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTableView>

#include <limits>

namespace ZelDataVisualization {

using Zel::RuntimeError;

namespace {

constexpr qint16 Standing = 0;
constexpr qint16 Lying = 1;

int scrollValue(qsizetype value)
{
    return static_cast<int>(std::min<qsizetype>(value, std::numeric_limits<int>::max()));
}

GraphPicture pictureOf(const GraphView &graph)
{
    return GraphPicture(graph.picture(), graph.font(), graph.viewport()->size());
}

} // namespace

GridChart::GridChart(QWidget *parent)
    : Zel::Control(parent)
    , m_parts(std::make_unique<GridChartParts>(this))
{
    connectParts();
    followWindow();
}

GridChart::~GridChart() = default;

void GridChart::connectParts()
{
    GraphView *graph = m_parts->graph;
    QTableView *table = m_parts->figures;
    connect(graph, &GraphView::currentChanged, table, [table](qsizetype figure) {
        const QSignalBlocker quiet(table->selectionModel());
        table->setCurrentIndex(table->model()->index(scrollValue(figure), 0));
        table->viewport()->update();
    });
    connect(table->selectionModel(), &QItemSelectionModel::currentRowChanged, graph,
            [graph](const QModelIndex &current) { graph->setCurrent(current.row()); });
    connect(graph, &GraphView::windowChanged, this, &GridChart::followWindow);
    connect(m_parts->across, &QScrollBar::valueChanged, graph, &GraphView::scrollTo);
    connect(m_parts->down, &QScrollBar::valueChanged, graph, &GraphView::scrollTo);
    connect(m_parts->zoomIn, &QAction::triggered, graph, &GraphView::zoomIn);
    connect(m_parts->zoomOut, &QAction::triggered, graph, &GraphView::zoomOut);
    connect(m_parts->showAll, &QAction::triggered, graph, &GraphView::showAll);
    connect(m_parts->copyRows, &QAction::triggered, table, [table] { copyFigures(*table); });
    onUser(m_parts->copyPicture, &QAction::triggered, &GridChart::copyPicture);
    onUser(m_parts->savePicture, &QAction::triggered, &GridChart::choosePicture);
    onUser(m_parts->print, &QAction::triggered, &GridChart::choosePrinter);
}

/// The scroll bars stand where the graph does, and what cannot be zoomed says so.
void GridChart::followWindow()
{
    const GraphWindow &window = m_parts->graph->extent();
    const bool isAll = window.shown() >= window.count();
    const bool isRotated = m_parts->graph->isRotated();
    for (QScrollBar *bar : {m_parts->across, m_parts->down}) {
        const QSignalBlocker quiet(bar);
        bar->setRange(0, scrollValue(window.count() - window.shown()));
        bar->setPageStep(scrollValue(std::max<qsizetype>(1, window.shown())));
        bar->setValue(scrollValue(window.first()));
    }
    m_parts->across->setVisible(!isAll && !isRotated);
    m_parts->down->setVisible(!isAll && isRotated);
    m_parts->zoomIn->setEnabled(window.canZoomIn());
    m_parts->zoomOut->setEnabled(window.canZoomOut());
    m_parts->showAll->setEnabled(window.canZoomOut());
}

bool GridChart::LoadWorkbookXml(const QString &excelXML)
{
    const Zel::Hourglass hourglass(this);
    WorkbookAnswer answer = readWorkbook(excelXML);
    m_parts->problem = answer.problem;
    m_parts->results.reset();
    if (answer.workbook)
        m_parts->results = SurveyResults::from(std::move(*answer.workbook), &m_parts->problem);
    if (m_parts->results)
        ShowPercentCorrect();
    else
        m_parts->show(noFigures(tr("The results cannot be shown. %1").arg(m_parts->problem)));
    return m_parts->results != nullptr;
}

QString GridChart::problem() const
{
    return m_parts->problem;
}

void GridChart::ShowQuestionDetails(qint16 questionNumber)
{
    if (!m_parts->results || questionNumber < 1 ||
        questionNumber > m_parts->results->questionCount())
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    m_parts->show(answerFigures(m_parts->results, questionNumber - 1));
}

void GridChart::ShowPercentCorrect(bool byQuestion, const QString &title)
{
    if (!m_parts->results)
        return; // the chart goes on saying why there is nothing
    m_parts->show(byQuestion ? questionScores(m_parts->results, title)
                             : respondentScores(m_parts->results, title));
}

void GridChart::SetShowGraph(bool show)
{
    m_parts->panel->setVisible(show);
}

void GridChart::RotateChart(qint16 mode)
{
    if (mode != Standing && mode != Lying)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    m_parts->graph->setRotated(mode == Lying);
}

void GridChart::ResetRotation()
{
    m_parts->graph->setRotated(false);
}

void GridChart::copyPicture()
{
    QGuiApplication::clipboard()->setImage(pictureOf(*m_parts->graph).image());
}

void GridChart::savePicture(const QString &path) const
{
    if (!pictureOf(*m_parts->graph).save(path))
        throw RuntimeError(RuntimeError::PathFileAccess);
}

void GridChart::printOn(QPagedPaintDevice &device) const
{
    pictureOf(*m_parts->graph).printOn(device);
}

void GridChart::choosePicture()
{
    QFileDialog dialog(this, tr("Save Picture As"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(
        {tr("Picture (*.png)"), tr("Scalable drawing (*.svg)"), tr("Document (*.pdf)")});
    dialog.setDefaultSuffix(QStringLiteral("png"));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString &filter) {
        dialog.setDefaultSuffix(filter.section(QStringLiteral("*."), 1).chopped(1));
    });
    if (dialog.exec() == QDialog::Accepted)
        savePicture(dialog.selectedFiles().constFirst());
}

void GridChart::choosePrinter()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageOrientation(QPageLayout::Landscape);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(tr("Print Graph"));
    if (dialog.exec() == QDialog::Accepted)
        printOn(printer);
}

/// The Tab key never comes here but goes to the graph and the table; a proxy would make it turn in
/// a circle between them.
void GridChart::focusInEvent(QFocusEvent *event)
{
    if (m_parts->graph->isVisible())
        m_parts->graph->setFocus(event->reason());
    else if (m_parts->figures->isVisible())
        m_parts->figures->setFocus(event->reason());
}

QSize GridChart::sizeHint() const
{
    return {640, 480};
}

void introduceGridChart()
{
    Zel::ControlRegistry::add(QStringLiteral("ZelDataVisualization.GridChart"),
                              [](QWidget *parent) -> QWidget * { return new GridChart(parent); });
}

} // namespace ZelDataVisualization
