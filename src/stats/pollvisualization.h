// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/resultsvisualization.h"

namespace ZelWebServiceControls {

/// The charts of the polls of a deployment. Titles and the mode by question are left to the chart;
/// see ResultsVisualization for how it is used.
class ZEL_EXPORT PollVisualization : public ResultsVisualization
{
    Q_OBJECT

public:
    explicit PollVisualization(QWidget *parent = nullptr);

protected:
    void showByQuestion() override;
    void showByUser() override;
};

} // namespace ZelWebServiceControls
