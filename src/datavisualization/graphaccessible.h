// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

namespace ZelDataVisualization {

class GraphView;

/// Makes assistive technology see graphs: a chart whose children are the bars on the screen.
void announceGraphs();

/// Says that a person has come to a bar.
void announceBar(GraphView &view, qsizetype bar);

} // namespace ZelDataVisualization
