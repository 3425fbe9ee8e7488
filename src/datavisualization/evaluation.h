// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/calculator.h"

namespace ZelDataVisualization {

/// Computes one formula whose references all have their values.
class Evaluation
{
public:
    Evaluation(Calculator &calculator, const Calculator::Place &place)
        : m_calculator(calculator)
        , m_place(place)
    {
    }

    Value of(const FormulaNode &node);

private:
    /// What SUM and its kin make of their arguments.
    struct Numbers
    {
        double sum = 0;
        double least = 0;
        double most = 0;
        qint64 count = 0;

        void add(double number);
    };

    Value reference(const Reference &reference);
    Value arithmetic(FormulaNode::Kind kind, double left, double right) const;
    Value joined(const FormulaNode &node);
    Value call(const FormulaNode &node);
    Value countIf(const FormulaNode &node);
    Value::Error gather(const FormulaNode &argument, bool skipsErrors, Numbers &numbers);
    static Value number(const Value &value);

    Calculator &m_calculator;
    const Calculator::Place m_place;
};

} // namespace ZelDataVisualization
