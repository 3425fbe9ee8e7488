// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/numbertext.h"

#include "platform/core/plaintext.h"
#include "platform/core/runtimeerror.h"

#include <QVarLengthArray>

#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

namespace Zel {

namespace {

constexpr int significantDigits = 15;

/// No double needs more; a longer text is no number that anybody wrote.
constexpr qsizetype longestNumber = 1000;

/// Reads the pieces of a number from front to back and gathers them in the one form that the
/// conversion knows.
class NumberReader
{
public:
    NumberReader(QStringView text, const QLocale &locale)
        : m_decimal(plainText(locale.decimalPoint()))
        , m_group(plainText(locale.groupSeparator()))
        , m_text(plainText(text))
        , m_rest(view(m_text).trimmed())
    {
    }

    std::optional<double> read()
    {
        const bool parenthesised = takeParentheses();
        int signs = takeSign() ? 1 : 0;
        if (!takeMantissa() || !takeExponent())
            return std::nullopt;
        m_rest = m_rest.trimmed();
        signs += takeSign() ? 1 : 0;
        if (!m_rest.isEmpty() || signs > 1 || (parenthesised && signs > 0))
            return std::nullopt;
        const std::optional<double> magnitude = converted();
        if (magnitude && (m_negative || parenthesised))
            return 0 - *magnitude;
        return magnitude;
    }

private:
    bool take(QStringView piece)
    {
        if (piece.isEmpty() || !m_rest.startsWith(piece))
            return false;
        m_rest = m_rest.sliced(piece.size());
        return true;
    }

    bool takeParentheses()
    {
        if (!m_rest.startsWith(u'(') || !m_rest.endsWith(u')'))
            return false;
        m_rest = m_rest.sliced(1, m_rest.size() - 2).trimmed();
        return true;
    }

    bool takeSign()
    {
        const bool minus = take(u"-");
        if (!minus && !take(u"+"))
            return false;
        m_negative = minus;
        m_rest = m_rest.trimmed();
        return true;
    }

    int takeDigits()
    {
        int count = 0;
        while (!m_rest.isEmpty() && isAsciiDigit(m_rest.front())) {
            m_ascii.append(m_rest.front().toLatin1());
            m_rest = m_rest.sliced(1);
            ++count;
        }
        return count;
    }

    bool takeMantissa()
    {
        int digits = takeDigits();
        while (digits > 0 && take(view(m_group)))
            digits += takeDigits();
        if (take(view(m_decimal))) {
            m_point = m_ascii.size();
            m_ascii.append('.');
            digits += takeDigits();
        } else {
            m_point = m_ascii.size();
        }
        return digits > 0;
    }

    bool takeExponent()
    {
        if (!take(u"e") && !take(u"d"))
            return true;
        m_ascii.append('e');
        if (take(u"-"))
            m_ascii.append('-');
        else
            take(u"+");
        return takeDigits() > 0;
    }

    std::optional<double> converted() const
    {
        double value = 0;
        const char *end = m_ascii.constData() + m_ascii.size();
        const auto result = std::from_chars(m_ascii.constData(), end, value);
        if (result.ec == std::errc())
            return value;
        return isBelowOne() ? std::optional<double>(0.0) : std::nullopt;
    }

    /// Whether the number has its first digit that counts behind the point: the conversion reports
    /// a number too large and one too small alike.
    bool isBelowOne() const
    {
        const QByteArrayView all(m_ascii.constData(), m_ascii.size());
        const qsizetype e = all.indexOf('e');
        const QByteArrayView mantissa = e < 0 ? all : all.first(e);
        qsizetype first = 0;
        while (first < mantissa.size() && (mantissa[first] == '0' || mantissa[first] == '.'))
            ++first;
        if (first == mantissa.size())
            return true;
        qint64 power = first < m_point ? m_point - first : m_point - first + 1;
        if (e >= 0) {
            qint64 exponent = 0;
            const QByteArrayView digits = all.sliced(e + 1);
            const auto result = std::from_chars(digits.begin(), digits.end(), exponent);
            if (result.ec != std::errc())
                return digits.startsWith('-');
            power += exponent;
        }
        return power <= 0;
    }

    PlainText m_decimal;
    PlainText m_group;
    PlainText m_text;
    QStringView m_rest;
    QVarLengthArray<char, 64> m_ascii;
    qsizetype m_point = 0;
    bool m_negative = false;
};

/// The significant decimal digits of a finite value and the place of the point: 0.d1d2d3... times
/// ten to the power of `exponent`.
struct Decimal
{
    std::string digits;
    int exponent = 0;
};

Decimal decimalOf(double magnitude)
{
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, magnitude,
                                      std::chars_format::scientific, significantDigits - 1);
    const std::string_view text(buffer, static_cast<size_t>(result.ptr - buffer));
    const size_t e = text.find('e');
    Decimal decimal;
    decimal.digits = std::string(1, text.front()) + std::string(text.substr(2, e - 2));
    const char *exponent = text.data() + e + (text[e + 1] == '+' ? 2 : 1);
    std::from_chars(exponent, result.ptr, decimal.exponent);
    ++decimal.exponent;
    return decimal;
}

/// All digits of a number without its point, with `fractionDigits` of them behind the point.
std::string shiftedDigits(const Decimal &decimal, int fractionDigits)
{
    const int kept = decimal.exponent + fractionDigits;
    if (kept < 0)
        return "0";
    std::string digits = decimal.digits;
    const bool roundsUp = kept < int(digits.size()) && digits[size_t(kept)] >= '5';
    digits.resize(size_t(kept), '0');
    digits.insert(0, 1, '0');
    if (roundsUp) {
        size_t at = digits.size() - 1;
        for (; digits[at] == '9'; --at)
            digits[at] = '0';
        ++digits[at];
    }
    return digits;
}

} // namespace

QString invariantNumberText(double value)
{
    if (value == 0)
        return QStringLiteral("0");
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value,
                                      std::chars_format::general, significantDigits);
    for (char *c = buffer; c != result.ptr; ++c)
        *c = *c >= 'a' && *c <= 'z' ? char(*c - 'a' + 'A') : *c;
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

QString numberText(double value, const QLocale &locale)
{
    QString text = invariantNumberText(value);
    const qsizetype point = text.indexOf(u'.');
    if (point >= 0)
        text.replace(point, 1, locale.decimalPoint());
    return text;
}

std::optional<double> numberFromText(QStringView text, const QLocale &locale)
{
    if (text.size() > longestNumber)
        return std::nullopt;
    return NumberReader(text, locale).read();
}

bool isNumeric(QStringView text, const QLocale &locale)
{
    return numberFromText(text, locale).has_value();
}

QString fixedText(double value, int integerDigits, int fractionDigits)
{
    if (!std::isfinite(value))
        throw RuntimeError(RuntimeError::Overflow);
    std::string digits = shiftedDigits(decimalOf(std::fabs(value)), fractionDigits);
    digits.erase(0, digits.find_first_not_of('0'));
    const bool onlyZeros = digits.empty();
    const size_t wanted = size_t(integerDigits) + size_t(fractionDigits);
    if (digits.size() < wanted)
        digits.insert(0, wanted - digits.size(), '0');
    if (fractionDigits > 0)
        digits.insert(digits.size() - size_t(fractionDigits), 1, '.');
    if (value < 0 && !onlyZeros)
        digits.insert(0, 1, '-');
    return QString::fromStdString(digits);
}

} // namespace Zel
