// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace ZelDataVisualization {

/// A row or a column of a reference: a number from 1, or a distance from the formula's own cell.
struct Coordinate
{
    qint64 value = 0;
    bool isRelative = true;

    qint64 from(qint64 own) const { return isRelative ? own + value : value; }
};

/// One cell, or all between two corners.
struct Reference
{
    QString sheet; ///< empty for the formula's own
    Coordinate top, left, bottom, right;
    bool isRange = false;
};

/// A formula, as a tree.
struct FormulaNode
{
    enum class Kind
    {
        Number,
        Text,
        Reference,
        Negative,
        Percent,
        Add,
        Subtract,
        Multiply,
        Divide,
        Power,
        Join, ///< of texts, "&"
        Call
    };

    explicit FormulaNode(Kind itsKind)
        : kind(itsKind)
    {
    }

    Kind kind;
    double number = 0;
    QString text; ///< or the name of a function, in capitals
    Reference reference;
    std::vector<std::unique_ptr<FormulaNode>> parts;
};

/// Reads a formula: "=COUNTIF(R[-3]C:R[-1]C,"2")" with references by row and column, relative ones
/// in brackets, or "of:=COUNTIF([.B5:.B7];"2")" as open documents have it.
/// Null when it is neither, has more than 8,192 characters, 64 levels or 1,000 operators.
///
/// The criterion of a COUNTIF that is all there is runs to the last quote: a key of answers goes
/// into the formula as it is.
ZEL_EXPORT std::unique_ptr<FormulaNode> parseFormula(QStringView text);

/// The parts of a reference in either writing.
std::optional<Reference> takeRowColumnReference(QStringView text, qsizetype &at);
std::optional<Reference> takeOpenReference(QStringView text, qsizetype &at);

} // namespace ZelDataVisualization
