// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QTableView;

namespace ZelDataVisualization {

/// Makes a table view show figures: whole lines, no editing, no wrapping.
void setUpFigureTable(QTableView &table);

/// Gives the columns the room that their texts want, the first one the rest.
void fitFigureTable(QTableView &table);

/// Puts the chosen lines, or all where none is chosen, on the clipboard, with the headers, a tab
/// between two cells.
void copyFigures(const QTableView &table);

} // namespace ZelDataVisualization
