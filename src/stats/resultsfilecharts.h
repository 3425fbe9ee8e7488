// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

struct lxw_workbook;

namespace ZelWebServiceControls {

struct WorkbookLayout;

/// Adds the sheet "Charts": how often each answer was chosen, a chart for each of the first hundred
/// questions that have answers; correct answers are striped. False when the library refuses.
bool addCharts(lxw_workbook *workbook, const WorkbookLayout &layout);

} // namespace ZelWebServiceControls
