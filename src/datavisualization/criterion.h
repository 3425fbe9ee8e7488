// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QString>

#include <optional>

namespace ZelDataVisualization {

/// What COUNTIF counts: "2", ">=3", "<>no", "yes", "A*".
///
/// After "=", "<>", "<", ">", "<=" or ">=", or after nothing, which is "=", stands a number or a
/// text. A number is equal to the numbers of its value and to the texts that read as one. Texts
/// compare ignoring case; "*" stands for any characters and "?" for one, "~" takes that from them.
/// An empty criterion counts empty texts and cells that are not there.
class ZEL_EXPORT Criterion
{
public:
    explicit Criterion(QStringView text);

    bool matches(double number) const;
    bool matches(QStringView text) const;
    /// Whether a cell with nothing in it, or none at all, counts.
    bool matchesNothing() const;

private:
    enum class Comparison
    {
        Equal,
        Different,
        Less,
        Greater,
        LessOrEqual,
        GreaterOrEqual
    };

    bool holds(int order) const;

    Comparison m_comparison = Comparison::Equal;
    QString m_text; ///< case-folded
    std::optional<double> m_number;
};

/// The number a text reads as, with "." whatever the locale; nothing for any other text.
std::optional<double> numberOfText(QStringView text);

} // namespace ZelDataVisualization
