// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/typeddate.h"

#include "platform/core/plaintext.h"

#include <QVarLengthArray>

#include <utility>

namespace Zel {

namespace {

/// A number or the name of a month.
struct Piece
{
    int value = 0;
    qsizetype digits = 0; ///< 0 for a name
};

constexpr qsizetype piecesOfDate = 3;
constexpr qsizetype mostDigits = 4;

class TypedDateReader
{
public:
    TypedDateReader(QStringView plain, const TypedDateRules &rules, const DateWords &words)
        : m_text(plain.trimmed())
        , m_rules(rules)
        , m_words(words)
    {
    }

    std::optional<DateFields> read()
    {
        QStringView date = m_text;
        const qsizetype colon = colonOfTime();
        if (colon >= 0 && !takeTime(colon, date))
            return std::nullopt;
        DateFields fields{dayZero(), m_parts.time()};
        if (colon < 0 || !date.isEmpty()) {
            if (!readPieces(date) || !assignPieces())
                return std::nullopt;
            fields.date = m_parts.date();
        }
        if (!fields.date.isValid() || !fields.time.isValid())
            return std::nullopt;
        return fields;
    }

private:
    int takeNumber(QStringView text, qsizetype &at, qsizetype &digits) const
    {
        const qsizetype start = at;
        int value = 0;
        for (; at < text.size() && isAsciiDigit(text[at]) && at - start <= mostDigits; ++at)
            value = value * 10 + (text[at].unicode() - u'0');
        digits = at - start;
        return value;
    }

    /// The first colon behind a digit; names of months may hold one too. -1 when there is none.
    qsizetype colonOfTime() const
    {
        qsizetype colon = m_text.indexOf(u':');
        while (colon == 0 || (colon > 0 && !isAsciiDigit(m_text[colon - 1])))
            colon = m_text.indexOf(u':', colon + 1);
        return colon;
    }

    /// Takes the time around a colon out of the text; what is left is the date.
    bool takeTime(qsizetype colon, QStringView &date)
    {
        qsizetype start = colon;
        while (start > 0 && isAsciiDigit(m_text[start - 1]))
            --start;
        qsizetype at = start;
        qsizetype digits = 0;
        m_parts.hour = takeNumber(m_text, at, digits);
        if (digits < 1 || digits > 2)
            return false;
        m_parts.minute = takeNumber(m_text, ++at, digits);
        if (digits != 2)
            return false;
        if (at < m_text.size() && m_text[at] == u':') {
            m_parts.second = takeNumber(m_text, ++at, digits);
            if (digits != 2)
                return false;
        }
        QStringView before = m_text.first(start);
        const bool halfBehind = takeHalfBehind(at);
        if (!halfBehind)
            takeHalfBefore(before);
        return splitDate(before, m_text.sliced(at), date);
    }

    bool takeHalfBehind(qsizetype &at)
    {
        qsizetype end = at;
        const DateParts::Half half = m_words.takeHalf(m_text, end);
        if (half == DateParts::Half::Unknown || (end < m_text.size() && m_text[end].isLetter()))
            return false;
        m_parts.half = half;
        at = end;
        return true;
    }

    void takeHalfBefore(QStringView &before)
    {
        for (qsizetype start = 0; start < before.size(); ++start) {
            if (start > 0 && before[start - 1] != u' ')
                continue;
            qsizetype end = start;
            const DateParts::Half half = m_words.takeHalf(before, end);
            if (half == DateParts::Half::Unknown || !before.sliced(end).trimmed().isEmpty())
                continue;
            m_parts.half = half;
            before = before.first(start);
            return;
        }
    }

    /// The date stands before or behind the time, parted from it by a blank, a comma or the T of
    /// ISO 8601.
    static bool splitDate(QStringView before, QStringView behind, QStringView &date)
    {
        const QStringView early = before.trimmed();
        const QStringView late = behind.trimmed();
        date = early.isEmpty() ? late : early;
        if (early.isEmpty())
            return late.isEmpty() || behind.front() == u' ';
        if (!late.isEmpty())
            return false;
        const QChar last = early.back();
        const bool isoMark = last == u't' && early.size() > 1 && isAsciiDigit(*(early.end() - 2));
        if (isoMark || last == u',')
            date = early.chopped(1);
        return isoMark || last == u',' || before.back() == u' ';
    }

    bool readPieces(QStringView text)
    {
        qsizetype at = 0;
        while (m_pieces.size() < piecesOfDate) {
            if (!m_pieces.isEmpty() && !takeSeparator(text, at))
                return false;
            Piece piece;
            piece.value = m_words.takeMonth(text, at);
            if (piece.value == 0) {
                piece.value = takeNumber(text, at, piece.digits);
                if (piece.digits < 1 || piece.digits > mostDigits)
                    return false;
            } else if (m_hasName || (at < text.size() && text[at].isLetter())) {
                return false;
            } else {
                m_hasName = true;
            }
            m_pieces.append(piece);
        }
        return at == text.size() && (m_hasName || m_onlyNumberSeparators);
    }

    /// Blanks around at most one mark; at least one of them. Beside the name of a month any usual
    /// mark will do.
    bool takeSeparator(QStringView text, qsizetype &at)
    {
        const qsizetype start = at;
        skipBlanks(text, at);
        QChar mark;
        if (at < text.size() && QStringView(u".,/-").contains(text[at]))
            mark = text[at++];
        skipBlanks(text, at);
        const bool usual = mark == u'/' || mark == u'-';
        if (mark.isNull() || (!usual && !m_rules.separators.contains(mark)))
            m_onlyNumberSeparators = false;
        return at > start;
    }

    bool assignPieces()
    {
        QString order = m_rules.order;
        if (m_hasName) {
            const QString year =
                order.startsWith(u'y') ? QStringLiteral("yd") : QStringLiteral("dy");
            order.clear();
            qsizetype next = 0;
            for (const Piece &piece : m_pieces)
                order += piece.digits == 0 ? QChar(u'M') : year.at(next++);
            if (longYearAt(order.indexOf(u'd')))
                std::swap(order[order.indexOf(u'd')], order[order.indexOf(u'y')]);
        } else if (longYearAt(0)) {
            order = QStringLiteral("yMd");
        }
        return assign(order);
    }

    bool longYearAt(qsizetype index) const { return m_pieces.at(index).digits > 2; }

    bool assign(const QString &order)
    {
        for (qsizetype i = 0; i < piecesOfDate; ++i) {
            const Piece &piece = m_pieces.at(i);
            if (order.at(i) == u'y')
                m_parts.year = fullYear(piece.value, piece.digits);
            else if (piece.digits > 2)
                return false;
            else if (order.at(i) == u'M')
                m_parts.month = piece.value;
            else
                m_parts.day = piece.value;
        }
        return true;
    }

    QStringView m_text;
    const TypedDateRules &m_rules;
    const DateWords &m_words;
    DateParts m_parts;
    QVarLengthArray<Piece, piecesOfDate> m_pieces;
    bool m_hasName = false;
    bool m_onlyNumberSeparators = true;
};

} // namespace

std::optional<DateFields> readTypedDate(QStringView plain, const TypedDateRules &rules,
                                        const DateWords &words)
{
    return TypedDateReader(plain, rules, words).read();
}

} // namespace Zel
