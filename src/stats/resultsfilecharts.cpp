// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/resultsfilecharts.h"

#include "stats/workbooklayout.h"

#include <algorithm>
#include <vector>
#include <xlsxwriter.h>

namespace ZelWebServiceControls {

namespace {

constexpr int mostCharts = 100;
constexpr int chartsAbreast = 2;
// Of a chart, in cells of the usual size.
constexpr lxw_row_t rowsOfChart = 16;
constexpr lxw_col_t columnsOfChart = 8;
constexpr lxw_color_t barColor = 0x4472A0;
constexpr lxw_color_t correctColor = 0x339966;

/// Stripes the bars of correct answers.
void markCorrect(lxw_chart_series *series, const WorkbookQuestion &question)
{
    const auto isCorrect = [](const WorkbookAnswer &answer) { return answer.correct; };
    if (!std::any_of(question.answers.begin(), question.answers.end(), isCorrect))
        return;
    lxw_chart_fill plainFill{};
    plainFill.color = barColor;
    lxw_chart_pattern stripes{};
    stripes.type = LXW_CHART_PATTERN_WIDE_UPWARD_DIAGONAL;
    stripes.fg_color = correctColor;
    stripes.bg_color = 0xFFFFFF;
    lxw_chart_point plain{nullptr, &plainFill, nullptr};
    lxw_chart_point striped{nullptr, nullptr, &stripes};
    std::vector<lxw_chart_point *> points;
    for (const WorkbookAnswer &answer : question.answers)
        points.push_back(answer.correct ? &striped : &plain);
    points.push_back(nullptr);
    chart_series_set_points(series, points.data()); // copies them
}

lxw_chart *chartOf(lxw_workbook *workbook, const WorkbookQuestion &question, lxw_col_t column)
{
    lxw_chart *const chart = workbook_add_chart(workbook, LXW_CHART_BAR);
    lxw_chart_series *const series = chart_add_series(chart, nullptr, nullptr);
    const auto last = lxw_row_t(question.answers.size());
    chart_series_set_categories(series, "Responses", 1, column, last, column);
    chart_series_set_values(series, "Summary", 1, column, last, column);
    chart_series_set_name_range(series, "Summary", 0, column);
    lxw_chart_fill fill{};
    fill.color = barColor;
    chart_series_set_fill(series, &fill);
    markCorrect(series, question);
    chart_series_set_labels(series);
    chart_legend_set_position(chart, LXW_CHART_LEGEND_NONE);
    chart_title_set_name_range(chart, "Summary", 0, column);
    chart_axis_set_reverse(chart->x_axis); // the first answer at the top
    return chart;
}

} // namespace

bool addCharts(lxw_workbook *workbook, const WorkbookLayout &layout)
{
    lxw_worksheet *sheet = nullptr;
    int count = 0;
    for (qsizetype at = 0; at < layout.questions.size() && count < mostCharts; ++at) {
        const WorkbookQuestion &question = layout.questions[at];
        if (question.answers.isEmpty())
            continue;
        if (!sheet)
            sheet = workbook_add_worksheet(workbook, "Charts");
        lxw_chart *const chart = chartOf(workbook, question, lxw_col_t(at + 1));
        const auto row = lxw_row_t(count / chartsAbreast) * rowsOfChart;
        const auto column = lxw_col_t(count % chartsAbreast) * columnsOfChart;
        if (worksheet_insert_chart(sheet, row, column, chart) != LXW_NO_ERROR)
            return false;
        ++count;
    }
    return true;
}

} // namespace ZelWebServiceControls
