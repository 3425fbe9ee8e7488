// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datepatternparser.h"

#include <algorithm>

namespace Zel {

namespace {

/// What goes together with a field that is left out.
bool isSurrounding(QChar c)
{
    return c.isSpace() || QStringView(u",()[]").contains(c);
}

void chopSurrounding(QString &text)
{
    while (!text.isEmpty() && isSurrounding(text.back()))
        text.chop(1);
}

} // namespace

DatePatternParser::DatePatternParser(QStringView pattern, bool tellsHalvesApart)
    : m_tellsHalvesApart(tellsHalvesApart)
{
    parse(pattern);
    finish();
}

void DatePatternParser::parse(QStringView pattern)
{
    for (qsizetype at = 0; at < pattern.size();) {
        const QChar c = pattern[at];
        if (c == u'\'') {
            at = parseQuoted(pattern, at);
            continue;
        }
        qsizetype end = at + 1;
        if (c == u'A' || c == u'a') {
            if (end < pattern.size() && pattern[end].toLower() == u'p')
                ++end;
            addLetters(u'A', 1);
        } else {
            while (end < pattern.size() && pattern[end] == c)
                ++end;
            addLetters(c, int(end - at));
        }
        at = end;
    }
}

/// Text in single quotes stands for itself; two quotes in a row are one.
qsizetype DatePatternParser::parseQuoted(QStringView pattern, qsizetype at)
{
    if (pattern.sliced(at).startsWith(u"''")) {
        addLiteral(u"'");
        return at + 2;
    }
    for (++at; at < pattern.size(); ++at) {
        if (pattern[at] != u'\'') {
            addLiteral(pattern.sliced(at, 1));
        } else if (at + 1 < pattern.size() && pattern[at + 1] == u'\'') {
            addLiteral(u"'");
            ++at;
        } else {
            return at + 1;
        }
    }
    return at;
}

void DatePatternParser::addLetters(QChar letter, int count)
{
    using Kind = DatePattern::Kind;
    switch (letter.unicode()) {
    case u'd':
        return addField(Kind::Day, count);
    case u'M':
        if (count > 2)
            return addField(count == 3 ? Kind::ShortMonth : Kind::LongMonth);
        return addField(Kind::Month, count);
    case u'y':
        return addField(Kind::Year, 4);
    case u'H':
        return addField(Kind::Hour, count);
    case u'h':
        return addField(Kind::HourOfHalf, count);
    case u'm':
        return addField(Kind::Minute, count);
    case u's':
        return addField(Kind::Second, count);
    case u'A':
    case u'B':
        return m_tellsHalvesApart ? addField(Kind::Half) : leaveOut();
    case u't':
        return leaveOut();
    default:
        addLiteral(QString(count, letter));
    }
}

void DatePatternParser::addLiteral(QStringView text)
{
    if (m_leftOut) {
        while (!text.isEmpty() && isSurrounding(text.front()))
            text = text.sliced(1);
        if (text.isEmpty())
            return;
        m_leftOut = false;
    }
    if (m_fields.isEmpty() || m_fields.back().kind != DatePattern::Kind::Literal)
        addField(DatePattern::Kind::Literal);
    m_fields.back().literal += text;
}

void DatePatternParser::addField(DatePattern::Kind kind, int width)
{
    m_leftOut = false;
    m_fields.append({kind, width});
}

void DatePatternParser::leaveOut()
{
    if (!m_fields.isEmpty() && m_fields.back().kind == DatePattern::Kind::Literal)
        chopSurrounding(m_fields.back().literal);
    m_leftOut = true;
}

/// "h" counts to 12 only beside a half of the day.
void DatePatternParser::useDayClock()
{
    for (DatePattern::Field &field : m_fields) {
        if (field.kind == DatePattern::Kind::HourOfHalf)
            field.kind = DatePattern::Kind::Hour;
    }
}

void DatePatternParser::finish()
{
    using Kind = DatePattern::Kind;
    const bool half = std::any_of(m_fields.cbegin(), m_fields.cend(),
                                  [](const auto &field) { return field.kind == Kind::Half; });
    if (!half)
        useDayClock();
    for (DatePattern::Field &field : m_fields)
        field.piece = plainPiece(field.literal);
}

} // namespace Zel
