// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/calculator.h"

#include "datavisualization/evaluation.h"

#include <algorithm>

namespace ZelDataVisualization {

namespace {

/// A results workbook looks at each of its cells about once.
constexpr size_t LeastWork = 5'000'000;
constexpr size_t WorkOfCell = 8;
/// Formulas that wait for others, at one time.
constexpr size_t MostSteps = 4'000'000;

} // namespace

Calculator::Calculator(const Workbook &workbook)
    : m_workbook(workbook)
    , m_states(workbook.formulas.size(), State::New)
    , m_values(workbook.formulas.size())
    , m_mostWork(LeastWork)
{
    for (const Sheet &sheet : workbook.sheets)
        m_mostWork += WorkOfCell * sheet.cells.size();
}

Calculator::~Calculator() = default;

Value Calculator::value(const Sheet &sheet, quint32 row, quint16 column)
{
    const Cell *cell = sheet.find(row, column);
    if (!cell)
        return {};
    if (cell->kind() == CellKind::Formula && m_states[cell->value] != State::Done)
        compute({&sheet, row, cell});
    return valueOf(*cell);
}

Value Calculator::valueOf(const Cell &cell) const
{
    switch (cell.kind()) {
    case CellKind::Formula:
        // Whoever meets a formula that is still open is needed by it.
        return m_states[cell.value] == State::Done ? m_values[cell.value]
                                                   : Value::failed(Value::Error::Circular);
    case CellKind::Boolean:
        return Value::of(cell.value);
    case CellKind::Error:
        return Value::failed(Value::Error::Unknown);
    default:
        if (const std::optional<double> number = m_workbook.numberOf(cell))
            return Value::of(*number);
        return {std::nullopt, m_workbook.textOf(cell), Value::Error::None};
    }
}

/// What the document says about a formula that cannot be computed here.
Value Calculator::stored(const Cell &formula) const
{
    const Cell &stored = m_workbook.formulas[formula.value].stored;
    return stored.kind() == CellKind::Blank ? Value::failed(Value::Error::Unknown)
                                            : valueOf(stored);
}

void Calculator::compute(const Place &place)
{
    std::vector<Step> steps;
    steps.push_back({place, nullptr});
    while (!steps.empty()) {
        const quint32 number = steps.back().place.cell->value;
        if (m_states[number] == State::New) {
            openStep(steps);
            continue;
        }
        if (m_states[number] == State::Open) {
            const Step &step = steps.back();
            Value value = m_work > m_mostWork ? Value::failed(Value::Error::TooMuch)
                          : step.formula      ? Evaluation(*this, step.place).of(*step.formula)
                                              : Value::failed(Value::Error::Unknown);
            if (value.error == Value::Error::Unknown)
                value = stored(*step.place.cell);
            m_values[number] = std::move(value);
            m_states[number] = State::Done;
        }
        steps.pop_back();
    }
}

/// Opens the last step and puts before it what it needs.
void Calculator::openStep(std::vector<Step> &steps)
{
    const size_t at = steps.size() - 1;
    const Place place = steps[at].place;
    m_states[place.cell->value] = State::Open;
    steps[at].formula =
        parseFormula(m_workbook.texts.at(m_workbook.formulas[place.cell->value].text));
    if (const FormulaNode *formula = steps[at].formula.get())
        collect(*formula, place, steps);
}

void Calculator::collect(const FormulaNode &node, const Place &place, std::vector<Step> &steps)
{
    for (const auto &part : node.parts)
        collect(*part, place, steps);
    if (node.kind != FormulaNode::Kind::Reference)
        return;
    const std::optional<Area> where = area(node.reference, place);
    if (!where)
        return;
    visit(*where, [&](quint32 row, const Cell &cell) {
        if (steps.size() > MostSteps)
            m_work = m_mostWork + 1;
        else if (cell.kind() == CellKind::Formula && m_states[cell.value] == State::New)
            steps.push_back({{where->sheet, row, &cell}, nullptr});
    });
}

std::optional<Calculator::Area> Calculator::area(const Reference &reference,
                                                 const Place &place) const
{
    const Sheet *sheet =
        reference.sheet.isEmpty() ? place.sheet : m_workbook.sheet(reference.sheet);
    const auto [top, bottom] =
        std::minmax({reference.top.from(place.row), reference.bottom.from(place.row)});
    const auto [left, right] = std::minmax(
        {reference.left.from(place.cell->column), reference.right.from(place.cell->column)});
    if (!sheet || top < 1 || left < 1 || bottom > Workbook::MostRows ||
        right > Workbook::MostColumns)
        return std::nullopt;
    return Area{sheet, static_cast<quint32>(top), static_cast<quint32>(bottom),
                static_cast<quint16>(left), static_cast<quint16>(right)};
}

bool Calculator::visit(const Area &area, const Visitor &visitor)
{
    const std::vector<Sheet::Row> &rows = area.sheet->rows;
    for (size_t row = area.sheet->rowFrom(area.top);
         row < rows.size() && rows[row].number <= area.bottom; ++row) {
        ++m_work;
        const std::span<const Cell> cells = area.sheet->cellsOf(row);
        if (area.left == area.right) {
            if (const Cell *cell = cellInColumn(cells, area.left))
                visitor(rows[row].number, *cell);
        } else {
            auto cell = std::lower_bound(
                cells.begin(), cells.end(), area.left,
                [](const Cell &one, quint16 wanted) { return one.column < wanted; });
            for (; cell != cells.end() && cell->column <= area.right; ++cell, ++m_work)
                visitor(rows[row].number, *cell);
        }
        if (m_work > m_mostWork)
            return false;
    }
    return true;
}

} // namespace ZelDataVisualization
