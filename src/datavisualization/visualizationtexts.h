// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

namespace ZelDataVisualization {

/// The sentences and captions of the chart, for translators in one place.
struct VisualizationTexts
{
    Q_DECLARE_TR_FUNCTIONS(ZelDataVisualization::GridChart)
};

} // namespace ZelDataVisualization
