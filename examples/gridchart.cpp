// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A small host of the results chart: it loads the workbook of a file that is named on the command
// line, or a small one of its own, and lets a person choose what is charted.

#include "datavisualization/gridchart.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QTimer>
#include <QVBoxLayout>

using ZelDataVisualization::GridChart;

/// A poll of one question.
const QString poll =
    QStringLiteral("<Workbook xmlns:ss='urn:schemas-microsoft-com:office:spreadsheet'>"
                   "<Worksheet ss:Name='Responses'><Table>"
                   "<Row><Cell/><Cell><Data ss:Type='String'>How was the talk?</Data></Cell></Row>"
                   "<Row><Cell ss:Index='2'><Data ss:Type='String'>1 - Good</Data></Cell></Row>"
                   "<Row><Cell ss:Index='2'><Data ss:Type='String'>2 - Too long</Data></Cell></Row>"
                   "</Table></Worksheet><Worksheet ss:Name='Summary'><Table><Row/>"
                   "<Row><Cell ss:Index='2'><Data ss:Type='Number'>212</Data></Cell></Row>"
                   "<Row><Cell ss:Index='2'><Data ss:Type='Number'>87</Data></Cell></Row>"
                   "</Table></Worksheet></Workbook>");

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QString workbook = poll;
    QFile file(QApplication::arguments().last());
    if (file.fileName().endsWith(QStringLiteral(".xml")) && file.open(QFile::ReadOnly))
        workbook = QString::fromUtf8(file.readAll());

    QWidget form;
    QComboBox choice;
    GridChart chart;
    QVBoxLayout column(&form);
    column.addWidget(&choice);
    column.addWidget(&chart);
    choice.addItems({QStringLiteral("The first question"), QStringLiteral("Correct by question"),
                     QStringLiteral("Correct by respondent")});
    const auto show = [&](int what) {
        if (what == 0)
            chart.ShowQuestionDetails(1);
        else
            chart.ShowPercentCorrect(what == 1);
    };
    // A workbook that is not understood makes the chart say why.
    if (chart.LoadWorkbookXml(workbook)) {
        QObject::connect(&choice, &QComboBox::currentIndexChanged, &chart, show);
        show(0);
    }
    form.show();
    if (QApplication::arguments().contains(QStringLiteral("--smoke")))
        QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}
