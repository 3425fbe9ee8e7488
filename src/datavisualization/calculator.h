// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/formula.h"
#include "datavisualization/workbook.h"

#include <functional>

namespace ZelDataVisualization {

/// What a formula or a cell came to.
struct Value
{
    enum class Error : quint8
    {
        None,
        DivisionByZero,
        WrongType,   ///< a text where a number is needed
        NoReference, ///< a cell outside of the sheet, or a sheet that is not there
        Unknown,     ///< a formula or function that is not understood, or an error of the document
        Circular,    ///< a formula that needs its own result
        TooMuch      ///< more work than the workbook is worth
    };

    static Value failed(Error error) { return {std::nullopt, {}, error}; }

    static Value of(double number) { return {number, {}, Error::None}; }

    std::optional<double> number;
    QString text; ///< where there is no number
    Error error = Error::None;
};

/// Computes formulas, each one once, and only those that are asked for and what they need. The way
/// through them is a loop, so a chain of a million cells is no more than a long way.
///
/// Knows + - * / ^ % &, COUNTIF, SUM, AVERAGE, COUNT, MIN and MAX. For a formula with anything else
/// counts the value that the document has stored beside it.
///
/// The work is bounded by the size of the workbook; formulas beyond that come to `TooMuch`.
class ZEL_EXPORT Calculator
{
public:
    /// The workbook outlives the calculator.
    explicit Calculator(const Workbook &workbook);
    ~Calculator();
    Q_DISABLE_COPY_MOVE(Calculator)

    Value value(const Sheet &sheet, quint32 row, quint16 column);

private:
    friend class Evaluation;

    enum class State : quint8
    {
        New,
        Open, ///< what it needs is being computed
        Done
    };

    /// A formula's cell.
    struct Place
    {
        const Sheet *sheet;
        quint32 row;
        const Cell *cell;
    };

    /// Where a reference points to, inside of its sheet.
    struct Area
    {
        const Sheet *sheet;
        quint32 top, bottom;
        quint16 left, right;
    };

    struct Step
    {
        Place place;
        std::unique_ptr<FormulaNode> formula;
    };

    using Visitor = std::function<void(quint32 row, const Cell &cell)>;

    void compute(const Place &place);
    void openStep(std::vector<Step> &steps);
    void collect(const FormulaNode &node, const Place &place, std::vector<Step> &steps);
    std::optional<Area> area(const Reference &reference, const Place &place) const;
    /// Goes through the cells that are there, while there is work left to spend.
    bool visit(const Area &area, const Visitor &visitor);
    Value valueOf(const Cell &cell) const;
    Value stored(const Cell &formula) const;

    const Workbook &m_workbook;
    std::vector<State> m_states; ///< of the formulas
    std::vector<Value> m_values;
    size_t m_work = 0;
    size_t m_mostWork = 0;
};

} // namespace ZelDataVisualization
