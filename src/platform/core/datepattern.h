// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/datewords.h"
#include "platform/core/plaintext.h"

#include <QList>

namespace Zel {

/// A date or time pattern of a locale, taken apart once, that writes and reads.
///
/// The pattern is Qt's, with these readings: a year has four digits whatever the pattern says; the
/// zone is left out together with its brackets and blanks; "B", the part of the day that newer
/// locale data ask for, is the word for the half of the day. Where the locale has no two words for
/// the halves of the day, they are left out and the clock is the 24-hour one.
class DatePattern
{
public:
    enum class Reading
    {
        Exact,   ///< numbers have as many digits as the pattern writes
        Tolerant ///< a year has up to four digits, everything else one or two
    };

    /// `names` and `words` belong to one locale.
    DatePattern(QStringView pattern, const DateNames &names);

    void write(const DateFields &fields, const DateNames &names, PlainText &out) const;
    /// Reads a plain text from `at` on and moves `at` behind what was read. Blanks are free: they
    /// may stand or be missing anywhere but inside a number.
    bool read(QStringView plain, qsizetype &at, DateParts &parts, const DateWords &words,
              Reading reading) const;

    /// The pattern letters of year, month and day ("y", "M", "d") in their order.
    QString dateOrder() const;
    /// The literal text between the fields, all of it.
    QString literals() const;

private:
    enum class Kind
    {
        Literal,
        Day,
        Month,
        ShortMonth,
        LongMonth,
        Year,
        Hour,
        HourOfHalf,
        Minute,
        Second,
        Half
    };

    struct Field
    {
        Kind kind = Kind::Literal;
        int width = 0;        ///< digits written at least
        QString literal = {}; ///< as it is written
        QString piece = {};   ///< as it is read
    };

    friend class DatePatternParser;

    static int valueOf(const Field &field, const DateFields &fields);
    static int *slotOf(const Field &field, DateParts &parts);
    static bool readNumber(const Field &field, QStringView plain, qsizetype &at, DateParts &parts,
                           Reading reading);
    static bool readField(const Field &field, QStringView plain, qsizetype &at, DateParts &parts,
                          const DateWords &words, Reading reading);

    QList<Field> m_fields;
};

} // namespace Zel
