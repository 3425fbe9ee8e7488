// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/graphview.h"
#include "datavisualization/gridchart.h"
#include "workbooktext.h"

#include <QApplication>
#include <QLabel>
#include <QTableView>
#include <QTest>

/// A chart on the screen with shortcuts to its children.
struct GridChartFixture
{
    GridChartFixture()
    {
        chart.resize(720, 520);
        chart.show();
        chart.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&chart));
        chart.setFocus();
    }

    /// Three questions: one with a correct answer and markup, one of twelve answers, one of none.
    static WorkbookText survey(int respondents,
                               WorkbookText::Kind kind = WorkbookText::Kind::Survey)
    {
        QList<WorkbookText::Answer> twelve;
        for (int i = 1; i <= 12; ++i)
            twelve << WorkbookText::Answer{QStringLiteral("City %1").arg(i), i == 11, i};
        WorkbookText text({{QStringLiteral("Is <b>this</b> & that?"),
                            {{QStringLiteral("<i>Yes</i>"), true, 30},
                             {QStringLiteral("No"), false, 10},
                             {QStringLiteral("None"), false, 0}}},
                           {QStringLiteral("Which city?"), twelve},
                           {QString(), {}}},
                          kind);
        for (int i = 0; i < respondents; ++i)
            text.addRespondent(QStringLiteral("person-%1").arg(i + 1),
                               {i % 4 == 3 ? QStringLiteral("2") : QStringLiteral("1"),
                                i % 2 == 0 ? QStringLiteral("11") : QString(),
                                QStringLiteral("1")});
        return text;
    }

    bool load(int respondents = 8)
    {
        const bool isUnderstood = chart.LoadWorkbookXml(survey(respondents).text());
        chart.clearFocus();
        chart.setFocus(); // goes on to the graph
        return isUnderstood;
    }

    ZelDataVisualization::GraphView *graph() const
    {
        return chart.findChild<ZelDataVisualization::GraphView *>(QStringLiteral("graph"));
    }

    QTableView *table() const { return chart.findChild<QTableView *>(QStringLiteral("figures")); }

    QLabel *message() const { return chart.findChild<QLabel *>(QStringLiteral("message")); }

    /// The lines of the table, headers first, cells parted by "|".
    QStringList lines() const
    {
        const QAbstractItemModel &model = *table()->model();
        QStringList lines;
        for (int row = -1; row < model.rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < model.columnCount(); ++column)
                cells << (row < 0 ? model.headerData(column, Qt::Horizontal)
                                  : model.index(row, column).data())
                             .toString();
            lines << cells.join(u'|');
        }
        return lines;
    }

    /// The colour of the graph in the middle of a bar of the given value.
    QColor colorIn(size_t bar, double value) const
    {
        const QImage image = graph()->viewport()->grab().toImage();
        const QRectF rect = places().bar(bar, value);
        return image.pixelColor(rect.center().toPoint() * image.devicePixelRatio());
    }

    ZelDataVisualization::GraphPlaces places() const
    {
        return {graph()->content(), graph()->font(), QSizeF(graph()->viewport()->size())};
    }

    ZelDataVisualization::GridChart chart;
};
