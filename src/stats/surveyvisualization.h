// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/resultsvisualization.h"

namespace ZelWebServiceControls {

/// The charts of a survey or quiz; see ResultsVisualization for how it is used.
class ZEL_EXPORT SurveyVisualization : public ResultsVisualization
{
    Q_OBJECT

public:
    explicit SurveyVisualization(QWidget *parent = nullptr);

protected:
    void showByQuestion() override;
    void showByUser() override;
};

} // namespace ZelWebServiceControls
