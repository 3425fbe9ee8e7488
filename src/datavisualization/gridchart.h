// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/control.h"

#include <memory>

class QPagedPaintDevice;

namespace ZelDataVisualization {

struct GridChartParts;

/// Charts the results of a poll, survey or quiz from their workbook: the answers to one question,
/// or how much was answered right, by question or by respondent. Beside the graph the same figures
/// stand in a table, for everyone and for who cannot see the graph.
///
///     auto *chart = new GridChart(this);
///     if (chart->LoadWorkbookXml(workbook))
///         chart->ShowQuestionDetails(1);
///     else
///         tell(chart->problem());
///
/// Bars are walked with the arrow keys and announced; plus, minus and 0 zoom. The context menu, and
/// its shortcuts while the graph has the focus, copy the graph as a picture, save it as PNG, SVG or
/// PDF, and print it.
///
/// Errors: 9 for a question that the workbook does not have, 5 for a mode of rotation that is
/// neither 0 nor 1; 75 reaches the host when a picture cannot be saved.
class ZEL_EXPORT GridChart : public Zel::Control
{
    Q_OBJECT

public:
    explicit GridChart(QWidget *parent = nullptr);
    ~GridChart() override;

    /// Reads a workbook in XML Spreadsheet 2003 and answers whether it was understood. The chart
    /// then shows the percentage correct by question, without a title; of a workbook that was not
    /// understood it says why. Rotation and a hidden graph stay.
    Q_INVOKABLE bool LoadWorkbookXml(const QString &excelXML);
    /// Shows the answers to a question, from 1.
    Q_INVOKABLE void ShowQuestionDetails(qint16 questionNumber);
    /// Shows the percentage of right answers, by question or by respondent, under a title. A
    /// workbook without scores, a poll's, makes the chart say so.
    Q_INVOKABLE void ShowPercentCorrect(bool byQuestion = true, const QString &title = QString());
    /// Shows or hides the graph; the table is always there.
    Q_INVOKABLE void SetShowGraph(bool show);
    /// 1 lets the bars lie, 0 stand.
    Q_INVOKABLE void RotateChart(qint16 mode);
    /// Lets the bars stand.
    Q_INVOKABLE void ResetRotation();

    /// Why the last workbook was not understood, a sentence; empty when it was.
    QString problem() const;

    /// Writes the graph to a file, as its ending says: .svg, .pdf, otherwise PNG. Error 75 when
    /// that cannot be.
    void savePicture(const QString &path) const;
    /// Prints the graph on one page.
    void printOn(QPagedPaintDevice &device) const;

    QSize sizeHint() const override;

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    void choosePicture();
    void choosePrinter();
    void copyPicture();
    void connectParts();
    void followWindow();

    std::unique_ptr<GridChartParts> m_parts;
};

/// Introduces the chart under the name by which forms ask for it, "ZelDataVisualization.GridChart".
ZEL_EXPORT void introduceGridChart();

} // namespace ZelDataVisualization
