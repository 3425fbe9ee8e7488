// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datepattern.h"

#include "platform/core/datepatternparser.h"

#include <cstdlib>

namespace Zel {

namespace {

void append(PlainText &out, QStringView text)
{
    for (const QChar c : text)
        out.append(c.unicode());
}

void appendNumber(PlainText &out, int value, int width, char32_t zeroDigit)
{
    char digits[12];
    int count = 0;
    for (int rest = std::abs(value); rest > 0 || count < width; rest /= 10)
        digits[count++] = char(rest % 10);
    if (value < 0)
        out.append(u'-');
    while (count-- > 0) {
        const char32_t digit = zeroDigit + char32_t(digits[count]);
        if (QChar::requiresSurrogates(digit)) {
            out.append(QChar::highSurrogate(digit));
            out.append(QChar::lowSurrogate(digit));
        } else {
            out.append(char16_t(digit));
        }
    }
}

} // namespace

DatePattern::DatePattern(QStringView pattern, const DateNames &names)
    : m_fields(DatePatternParser(pattern, names.tellsHalvesApart()).fields())
{
}

void DatePattern::write(const DateFields &fields, const DateNames &names, PlainText &out) const
{
    for (const Field &field : m_fields) {
        switch (field.kind) {
        case Kind::Literal:
            append(out, field.literal);
            break;
        case Kind::ShortMonth:
            append(out, names.shortMonths.at(fields.date.month() - 1));
            break;
        case Kind::LongMonth:
            append(out, names.longMonths.at(fields.date.month() - 1));
            break;
        case Kind::Half:
            append(out, fields.time.hour() < 12 ? names.am : names.pm);
            break;
        default:
            appendNumber(out, valueOf(field, fields), field.width, names.zeroDigit);
        }
    }
}

int DatePattern::valueOf(const Field &field, const DateFields &fields)
{
    switch (field.kind) {
    case Kind::Day:
        return fields.date.day();
    case Kind::Month:
        return fields.date.month();
    case Kind::Year:
        return fields.date.year();
    case Kind::Hour:
        return fields.time.hour();
    case Kind::HourOfHalf:
        return (fields.time.hour() + 11) % 12 + 1;
    case Kind::Minute:
        return fields.time.minute();
    default:
        return fields.time.second();
    }
}

int *DatePattern::slotOf(const Field &field, DateParts &parts)
{
    switch (field.kind) {
    case Kind::Day:
        return &parts.day;
    case Kind::Month:
        return &parts.month;
    case Kind::Year:
        return &parts.year;
    case Kind::Hour:
    case Kind::HourOfHalf:
        return &parts.hour;
    case Kind::Minute:
        return &parts.minute;
    default:
        return &parts.second;
    }
}

bool DatePattern::readNumber(const Field &field, QStringView plain, qsizetype &at, DateParts &parts,
                             Reading reading)
{
    const bool year = field.kind == Kind::Year;
    const qsizetype most = year ? 4 : 2;
    const qsizetype least = reading == Reading::Exact ? field.width : 1;
    const qsizetype start = at;
    int value = 0;
    for (; at < plain.size() && at - start < most && isAsciiDigit(plain[at]); ++at)
        value = value * 10 + (plain[at].unicode() - u'0');
    const qsizetype digits = at - start;
    if (digits < least || (at < plain.size() && isAsciiDigit(plain[at])))
        return false;
    *slotOf(field, parts) = year ? fullYear(value, digits) : value;
    return true;
}

bool DatePattern::readField(const Field &field, QStringView plain, qsizetype &at, DateParts &parts,
                            const DateWords &words, Reading reading)
{
    switch (field.kind) {
    case Kind::Literal:
        return takePiece(plain, at, field.piece);
    case Kind::ShortMonth:
    case Kind::LongMonth:
        parts.month = words.takeMonth(plain, at);
        return parts.month != 0;
    case Kind::Half:
        parts.half = words.takeHalf(plain, at);
        return parts.half != DateParts::Half::Unknown;
    default:
        skipBlanks(plain, at);
        return readNumber(field, plain, at, parts, reading);
    }
}

bool DatePattern::read(QStringView plain, qsizetype &at, DateParts &parts, const DateWords &words,
                       Reading reading) const
{
    for (const Field &field : m_fields) {
        if (!readField(field, plain, at, parts, words, reading))
            return false;
    }
    return true;
}

QString DatePattern::dateOrder() const
{
    QString order;
    for (const Field &field : m_fields) {
        if (field.kind == Kind::Year)
            order += u'y';
        else if (field.kind == Kind::Day)
            order += u'd';
        else if (field.kind == Kind::Month || field.kind == Kind::ShortMonth ||
                 field.kind == Kind::LongMonth)
            order += u'M';
    }
    return order;
}

QString DatePattern::literals() const
{
    QString all;
    for (const Field &field : m_fields)
        all += field.literal;
    return all;
}

} // namespace Zel
