// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datewords.h"

#include "platform/core/plaintext.h"

#include <algorithm>

namespace Zel {

namespace {

constexpr int monthsInYear = 12;

QStringList months(const QLocale &locale, QLocale::FormatType form, bool standalone)
{
    QStringList names;
    for (int month = 1; month <= monthsInYear; ++month)
        names << (standalone ? locale.standaloneMonthName(month, form)
                             : locale.monthName(month, form));
    return names;
}

} // namespace

DateNames DateNames::of(const QLocale &locale)
{
    DateNames names;
    names.am = locale.amText();
    names.pm = locale.pmText();
    names.shortMonths = months(locale, QLocale::ShortFormat, false);
    names.longMonths = months(locale, QLocale::LongFormat, false);
    names.otherMonths = {months(locale, QLocale::ShortFormat, true),
                         months(locale, QLocale::LongFormat, true)};
    names.zeroDigit = locale.zeroDigit().toUcs4().value(0, U'0');
    return names;
}

bool DateNames::tellsHalvesApart() const
{
    const QString morning = plainPiece(am);
    const QString afternoon = plainPiece(pm);
    return !morning.isEmpty() && !afternoon.isEmpty() && morning != afternoon;
}

DateWords::DateWords(const DateNames &names)
{
    for (const QStringList &form :
         QList<QStringList>{names.shortMonths, names.longMonths} + names.otherMonths) {
        for (qsizetype i = 0; i < form.size(); ++i) {
            add(m_months, form.at(i), int(i) + 1);
            // Few people type the point of an abbreviated month.
            if (form.at(i).endsWith(u'.'))
                add(m_months, form.at(i).chopped(1), int(i) + 1);
        }
    }
    using Half = DateParts::Half;
    if (names.tellsHalvesApart()) {
        add(m_halves, names.am, int(Half::Morning));
        add(m_halves, names.pm, int(Half::Afternoon));
    }
    for (const char *word : {"am", "a.m."})
        add(m_halves, QString::fromLatin1(word), int(Half::Morning));
    for (const char *word : {"pm", "p.m."})
        add(m_halves, QString::fromLatin1(word), int(Half::Afternoon));
}

void DateWords::add(Words &words, const QString &name, int value)
{
    const QString piece = plainPiece(name);
    // A "name" that is only a number would swallow the numbers of every date.
    const bool hasLetter = std::any_of(piece.cbegin(), piece.cend(),
                                       [](QChar c) { return c.isLetter() || c.isSurrogate(); });
    const bool known = std::any_of(words.cbegin(), words.cend(),
                                   [&piece](const Word &word) { return word.piece == piece; });
    if (hasLetter && !known)
        words.append({piece, value});
}

int DateWords::take(const Words &words, QStringView plain, qsizetype &at)
{
    int value = 0;
    qsizetype longest = at;
    for (const Word &word : words) {
        qsizetype end = at;
        if (takePiece(plain, end, word.piece) && end > longest) {
            longest = end;
            value = word.value;
        }
    }
    at = longest;
    return value;
}

int DateWords::takeMonth(QStringView plain, qsizetype &at) const
{
    return take(m_months, plain, at);
}

DateParts::Half DateWords::takeHalf(QStringView plain, qsizetype &at) const
{
    return DateParts::Half(take(m_halves, plain, at));
}

void skipBlanks(QStringView plain, qsizetype &at)
{
    while (at < plain.size() && plain[at] == u' ')
        ++at;
}

bool takePiece(QStringView plain, qsizetype &at, QStringView piece)
{
    qsizetype next = at;
    for (const QChar c : piece) {
        // "1 2" is never the 12 of a month that is named by its number.
        if (next == at || !isAsciiDigit(c) || !isAsciiDigit(plain[next - 1]))
            skipBlanks(plain, next);
        if (next >= plain.size() || plain[next] != c)
            return false;
        ++next;
    }
    at = next;
    return true;
}

QString plainPiece(QStringView text)
{
    QString piece = view(plainText(text)).toString();
    piece.remove(u' ');
    return piece;
}

} // namespace Zel
