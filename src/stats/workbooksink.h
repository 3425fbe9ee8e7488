// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QList>
#include <QString>

namespace ZelWebServiceControls {

/// How a cell of a saved workbook looks; the numbers are those of the template's styles.
enum class CellLook
{
    Bold = 21,
    Right = 28,
    Wrong = 29,
    CorrectChoice = 32,
    Plain = 0,
    Heading = 41,
    Label = 45,
    Count = 53,
    Share = 55
};

/// A formula of a saved workbook, relative to its cell.
struct ZEL_EXPORT CellFormula
{
    enum Kind
    {
        /// How many of the `extent` cells above are exactly the text `key`.
        CountAbove,
        /// Sum and mean of the `extent` cells above.
        SumAbove,
        MeanAbove,
        /// The cell above divided by `extent`.
        ShareOfAbove,
        /// Mean of the `extent` cells to the left.
        MeanLeft
    };

    Kind kind;
    qsizetype extent;
    QString key;

    /// The formula with relative references, "=SUM(R[-3]C:R[-1]C)".
    QString relativeText() const;
    /// The formula of a cell by row and column from 0, "=SUM(B2:B4)".
    QString absoluteText(qsizetype row, qsizetype column) const;
};

/// Takes a workbook sheet by sheet, row by row and cell by cell from left to right.
class WorkbookSink
{
public:
    virtual ~WorkbookSink() = default;

    /// @param widths of the columns in points
    virtual void beginSheet(const QString &name, const QList<int> &widths) = 0;
    virtual void endSheet() = 0;
    /// @param height in points, 0 for the usual one
    virtual void beginRow(int height) = 0;
    virtual void endRow() = 0;
    /// Columns count from 0.
    virtual void text(qsizetype column, const QString &text, CellLook look) = 0;
    virtual void number(qsizetype column, double value, CellLook look) = 0;
    /// @param value what the formula computes
    virtual void formula(qsizetype column, const CellFormula &formula, double value,
                         CellLook look) = 0;
    /// An empty cell.
    virtual void blank(qsizetype column, CellLook look) = 0;
};

/// The most UTF-16 code units of a cell's text.
constexpr qsizetype MostCellCharacters = 32767;

/// A text as a cell of a spreadsheet file can hold it.
ZEL_EXPORT QString cellText(const QString &text);
/// The same without the limit in length.
ZEL_EXPORT QString printableText(const QString &text);

} // namespace ZelWebServiceControls
