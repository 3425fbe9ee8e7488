// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/evaluation.h"

#include "datavisualization/criterion.h"
#include "platform/core/numbertext.h"

#include <QHash>

#include <cmath>

namespace ZelDataVisualization {

using Kind = FormulaNode::Kind;
using Error = Value::Error;

namespace {

QString textOf(const Value &value)
{
    return value.number ? Zel::invariantNumberText(*value.number) : value.text;
}

} // namespace

Value Evaluation::of(const FormulaNode &node)
{
    switch (node.kind) {
    case Kind::Number:
        return Value::of(node.number);
    case Kind::Text:
        return {std::nullopt, node.text, Error::None};
    case Kind::Reference:
        return reference(node.reference);
    case Kind::Call:
        return call(node);
    case Kind::Join:
        return joined(node);
    default:
        break;
    }
    const Value left = number(of(*node.parts[0]));
    if (left.error != Error::None)
        return left;
    if (node.parts.size() == 1)
        return Value::of(node.kind == Kind::Negative ? -*left.number : *left.number / 100);
    const Value right = number(of(*node.parts[1]));
    if (right.error != Error::None)
        return right;
    return arithmetic(node.kind, *left.number, *right.number);
}

/// A value where a number is needed: nothing is 0, a text that reads as a number is that number.
Value Evaluation::number(const Value &value)
{
    if (value.error != Error::None || value.number)
        return value;
    if (value.text.isEmpty())
        return Value::of(0);
    const std::optional<double> read = numberOfText(value.text);
    return read ? Value::of(*read) : Value::failed(Error::WrongType);
}

Value Evaluation::reference(const Reference &reference)
{
    const auto area = m_calculator.area(reference, m_place);
    if (!area)
        return Value::failed(Error::NoReference);
    if (area->top != area->bottom || area->left != area->right)
        return Value::failed(Error::WrongType);
    const Cell *cell = area->sheet->find(area->top, area->left);
    return cell ? m_calculator.valueOf(*cell) : Value();
}

Value Evaluation::arithmetic(Kind kind, double left, double right) const
{
    if (kind == Kind::Divide && right == 0)
        return Value::failed(Error::DivisionByZero);
    double result = 0;
    if (kind == Kind::Add)
        result = left + right;
    else if (kind == Kind::Subtract)
        result = left - right;
    else if (kind == Kind::Multiply)
        result = left * right;
    else if (kind == Kind::Divide)
        result = left / right;
    else
        result = std::pow(left, right);
    return std::isfinite(result) ? Value::of(result) : Value::failed(Error::WrongType);
}

Value Evaluation::joined(const FormulaNode &node)
{
    constexpr qsizetype MostCharacters = 32'767; // of a cell
    const Value left = of(*node.parts[0]);
    const Value right = left.error == Error::None ? of(*node.parts[1]) : left;
    if (right.error != Error::None)
        return right;
    const QString text = textOf(left) + textOf(right);
    return text.size() > MostCharacters ? Value::failed(Error::WrongType)
                                        : Value{std::nullopt, text, Error::None};
}

void Evaluation::Numbers::add(double number)
{
    least = count == 0 ? number : std::min(least, number);
    most = count == 0 ? number : std::max(most, number);
    sum += number;
    ++count;
}

/// Of a range only the numbers count, of anything else what reads as one.
Error Evaluation::gather(const FormulaNode &argument, bool skipsErrors, Numbers &numbers)
{
    if (argument.kind != Kind::Reference) {
        const Value value = number(of(argument));
        if (value.error == Error::None)
            numbers.add(*value.number);
        return skipsErrors && value.error != Error::TooMuch ? Error::None : value.error;
    }
    const auto area = m_calculator.area(argument.reference, m_place);
    if (!area)
        return Error::NoReference;
    Error error = Error::None;
    const bool wasAll = m_calculator.visit(*area, [&](quint32, const Cell &cell) {
        if (cell.kind() == CellKind::Text || cell.kind() == CellKind::Blank ||
            cell.kind() == CellKind::Boolean)
            return;
        const Value value = m_calculator.valueOf(cell);
        if (value.error != Error::None && error == Error::None && !skipsErrors)
            error = value.error;
        else if (value.number)
            numbers.add(*value.number);
    });
    return wasAll ? error : Error::TooMuch;
}

Value Evaluation::countIf(const FormulaNode &node)
{
    if (node.parts.size() != 2 || node.parts[0]->kind != Kind::Reference)
        return Value::failed(Error::WrongType);
    const auto area = m_calculator.area(node.parts[0]->reference, m_place);
    if (!area)
        return Value::failed(Error::NoReference);
    const Value wanted = of(*node.parts[1]);
    if (wanted.error != Error::None)
        return wanted;
    const Criterion criterion(textOf(wanted));
    QHash<quint32, bool> known; // of texts by their numbers: most come often
    double count = 0;
    double there = 0;
    const bool wasAll = m_calculator.visit(*area, [&](quint32, const Cell &cell) {
        if (cell.kind() == CellKind::Blank)
            return;
        ++there;
        if (cell.kind() == CellKind::Text) {
            const auto found = known.constFind(cell.value);
            if (found != known.constEnd()) {
                count += *found ? 1 : 0;
                return;
            }
            const bool fits = criterion.matches(m_calculator.m_workbook.texts.at(cell.value));
            known.insert(cell.value, fits);
            count += fits ? 1 : 0;
            return;
        }
        const Value value = m_calculator.valueOf(cell);
        if (value.error != Error::None)
            return;
        const bool fits =
            value.number ? criterion.matches(*value.number) : criterion.matches(value.text);
        count += fits ? 1 : 0;
    });
    if (!wasAll)
        return Value::failed(Error::TooMuch);
    if (criterion.matchesNothing())
        count += (area->bottom - area->top + 1.0) * (area->right - area->left + 1.0) - there;
    return Value::of(count);
}

Value Evaluation::call(const FormulaNode &node)
{
    if (node.text == u"COUNTIF")
        return countIf(node);
    const bool counts = node.text == u"COUNT";
    if (!counts && node.text != u"SUM" && node.text != u"AVERAGE" && node.text != u"MIN" &&
        node.text != u"MAX")
        return Value::failed(Error::Unknown);
    Numbers numbers;
    for (const auto &argument : node.parts) {
        const Error error = gather(*argument, counts, numbers);
        if (error != Error::None)
            return Value::failed(error);
    }
    if (counts)
        return Value::of(static_cast<double>(numbers.count));
    if (node.text == u"AVERAGE")
        return numbers.count == 0 ? Value::failed(Error::DivisionByZero)
                                  : Value::of(numbers.sum / static_cast<double>(numbers.count));
    if (!std::isfinite(numbers.sum))
        return Value::failed(Error::WrongType);
    return Value::of(node.text == u"SUM"   ? numbers.sum
                     : node.text == u"MIN" ? numbers.least
                                           : numbers.most);
}

} // namespace ZelDataVisualization
