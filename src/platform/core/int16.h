// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/runtimeerror.h"

#include <QMetaType>

#include <compare>
#include <concepts>
#include <utility>

namespace Zel {

/// A 16-bit signed integer whose arithmetic ends in error 6 (Overflow) instead of wrapping.
///
/// A literal is checked by the compiler (`Int16 gap = 150;`), any other number by `from`. Widths,
/// indexes and counters that are 16-bit by contract are computed in it, so that they fail exactly
/// where they must.
class Int16
{
public:
    constexpr Int16() = default;

    /// Any 16-bit value. A template, so that no wider integer slips in by a silent conversion.
    template <std::same_as<qint16> T>
    constexpr Int16(T value)
        : m_value(value)
    {
    }

    /// A literal; one outside the range does not compile.
    consteval Int16(int literal)
        : m_value(checked(literal))
    {
    }

    /// The number of an integer, or error 6 when 16 bits do not hold it.
    template <std::integral T>
    static constexpr Int16 from(T value)
    {
        return Int16(checked(value));
    }

    /// The nearest whole number, a half going to the even neighbour, or error 6 when 16 bits do not
    /// hold it or `value` is no number.
    ZEL_EXPORT static Int16 from(double value);

    constexpr qint16 value() const { return m_value; }

    friend constexpr Int16 operator+(Int16 a, Int16 b) { return from(a.wide() + b.wide()); }

    friend constexpr Int16 operator-(Int16 a, Int16 b) { return from(a.wide() - b.wide()); }

    friend constexpr Int16 operator*(Int16 a, Int16 b) { return from(a.wide() * b.wide()); }

    /// The negative; that of -32768 is error 6.
    constexpr Int16 operator-() const { return from(-wide()); }

    constexpr Int16 &operator+=(Int16 other) { return *this = *this + other; }

    constexpr Int16 &operator-=(Int16 other) { return *this = *this - other; }

    constexpr Int16 &operator*=(Int16 other) { return *this = *this * other; }

    friend constexpr auto operator<=>(Int16, Int16) = default;

private:
    constexpr qint64 wide() const { return m_value; }

    template <typename T>
    static constexpr qint16 checked(T value)
    {
        if (!std::in_range<qint16>(value))
            throw RuntimeError(RuntimeError::Overflow);
        return static_cast<qint16>(value);
    }

    qint16 m_value = 0;
};

} // namespace Zel

Q_DECLARE_METATYPE(Zel::Int16)
