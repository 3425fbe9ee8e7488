// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/pollvisualization.h"

namespace ZelWebServiceControls {

PollVisualization::PollVisualization(QWidget *parent)
    : ResultsVisualization(parent)
{
    setWindowTitle(tr("Poll Results"));
}

void PollVisualization::showByQuestion()
{
    callChart(QStringLiteral("ShowPercentCorrect"), {});
}

void PollVisualization::showByUser()
{
    callChart(QStringLiteral("ShowPercentCorrect"), {false});
}

} // namespace ZelWebServiceControls
