// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <Qt>

namespace Zel {

/// What a ListView's model answers beside Qt's own roles. Qt::DisplayRole is a cell's whole text
/// (the view shortens it when it paints), Qt::CheckStateRole the check box of the first column
/// while check boxes are shown, Qt::ForegroundRole a colour that code has set, Qt::DecorationRole
/// the small icon.
enum ListRole
{
    /// The line's record, the same for every cell of the line.
    TagRole = Qt::UserRole,
    /// The tag of the single cell.
    CellTagRole,
    /// bool, also while no check boxes are shown.
    CheckedRole,
    /// bool.
    GhostedRole,
    /// int, 1-based index into the image list, 0 for none.
    SmallIconRole,
    LargeIconRole,
    /// qsizetype: the number of the line's record, wherever the line stands.
    RecordIndexRole,
    /// Of a column header: QString, the column's tag.
    ColumnTagRole,
    /// Of a column header: double, the column's width in twips.
    ColumnWidthRole,
};

} // namespace Zel
