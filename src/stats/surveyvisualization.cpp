// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/surveyvisualization.h"

namespace ZelWebServiceControls {

SurveyVisualization::SurveyVisualization(QWidget *parent)
    : ResultsVisualization(parent)
{
    setWindowTitle(tr("Survey Results"));
}

void SurveyVisualization::showByQuestion()
{
    callChart(QStringLiteral("ShowPercentCorrect"),
              {true, QStringLiteral("Percentage Correct By Question")});
}

void SurveyVisualization::showByUser()
{
    callChart(QStringLiteral("ShowPercentCorrect"),
              {false, QStringLiteral("Percentage Correct By User")});
}

} // namespace ZelWebServiceControls
