// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "datavisualization/criterion.h"

#include <array>
#include <cmath>

namespace ZelDataVisualization {

namespace {

/// Whether a text is what a pattern says, in a time of the product of their lengths at most.
bool fits(QStringView text, QStringView pattern)
{
    qsizetype at = 0;
    qsizetype in = 0;
    qsizetype star = -1;
    qsizetype starAt = 0;
    while (at < text.size()) {
        const bool isTaken = in + 1 < pattern.size() && pattern[in] == u'~';
        const qsizetype one = isTaken ? in + 1 : in;
        if (!isTaken && in < pattern.size() && pattern[in] == u'*') {
            star = in++;
            starAt = at;
        } else if (in < pattern.size() &&
                   (pattern[one] == text[at] || (!isTaken && pattern[in] == u'?'))) {
            in = one + 1;
            ++at;
        } else if (star >= 0) {
            in = star + 1;
            at = ++starAt;
        } else {
            return false;
        }
    }
    while (in < pattern.size() && pattern[in] == u'*')
        ++in;
    return in == pattern.size();
}

} // namespace

std::optional<double> numberOfText(QStringView text)
{
    bool isNumber = false;
    const double number = text.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

Criterion::Criterion(QStringView text)
{
    struct Sign
    {
        QStringView text;
        Comparison comparison;
    };

    static constexpr std::array signs{
        Sign{u"<>", Comparison::Different},      Sign{u"<=", Comparison::LessOrEqual},
        Sign{u">=", Comparison::GreaterOrEqual}, Sign{u"<", Comparison::Less},
        Sign{u">", Comparison::Greater},         Sign{u"=", Comparison::Equal},
    };
    for (const Sign &sign : signs) {
        if (text.startsWith(sign.text)) {
            m_comparison = sign.comparison;
            text = text.mid(sign.text.size());
            break;
        }
    }
    m_number = numberOfText(text);
    m_text = text.toString().toCaseFolded();
}

bool Criterion::holds(int order) const
{
    switch (m_comparison) {
    case Comparison::Equal:
        return order == 0;
    case Comparison::Different:
        return order != 0;
    case Comparison::Less:
        return order < 0;
    case Comparison::Greater:
        return order > 0;
    case Comparison::LessOrEqual:
        return order <= 0;
    case Comparison::GreaterOrEqual:
        return order >= 0;
    }
    return false;
}

bool Criterion::matches(double number) const
{
    if (!m_number)
        return m_comparison == Comparison::Different;
    return holds(number < *m_number ? -1 : number > *m_number ? 1 : 0);
}

bool Criterion::matches(QStringView text) const
{
    const bool isEquality =
        m_comparison == Comparison::Equal || m_comparison == Comparison::Different;
    if (m_number) {
        if (!isEquality)
            return false; // a text is neither less nor more than a number
        const std::optional<double> number = numberOfText(text);
        return holds(number && *number == *m_number ? 0 : 1);
    }
    const QString folded = text.toString().toCaseFolded();
    if (isEquality)
        return holds(fits(folded, m_text) ? 0 : 1);
    return holds(folded.compare(m_text));
}

bool Criterion::matchesNothing() const
{
    if (m_number)
        return m_comparison == Comparison::Different;
    return (m_comparison == Comparison::Equal) == m_text.isEmpty() &&
           (m_comparison == Comparison::Equal || m_comparison == Comparison::Different);
}

} // namespace ZelDataVisualization
