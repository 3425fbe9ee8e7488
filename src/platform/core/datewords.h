// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/datefields.h"
#include "platform/core/export.h"

#include <QList>
#include <QLocale>
#include <QStringList>

namespace Zel {

/// The words and digits a locale writes dates with.
struct ZEL_EXPORT DateNames
{
    QString am;
    QString pm;
    /// January to December.
    QStringList shortMonths;
    QStringList longMonths;
    /// Further forms of the month names that are read but never written, January first.
    QList<QStringList> otherMonths;
    char32_t zeroDigit = U'0';

    static DateNames of(const QLocale &locale);
    /// Whether the two halves of the day can be told apart by their words.
    bool tellsHalvesApart() const;
};

/// The words of a locale in the form in which dates are read (plaintext.h), with "AM" and "PM" for
/// every locale.
class DateWords
{
public:
    explicit DateWords(const DateNames &names);

    /// The month whose name stands at `at`, which moves behind it; the longest name wins, since
    /// some begin with another. 0 when there is none.
    int takeMonth(QStringView plain, qsizetype &at) const;
    /// The same for the half of the day.
    DateParts::Half takeHalf(QStringView plain, qsizetype &at) const;

private:
    struct Word
    {
        QString piece;
        int value = 0;
    };

    using Words = QList<Word>;

    static void add(Words &words, const QString &name, int value);
    static int take(const Words &words, QStringView plain, qsizetype &at);

    Words m_months;
    Words m_halves;
};

/// Moves `at` behind the next run of blanks.
void skipBlanks(QStringView plain, qsizetype &at);

/// Moves `at` behind `piece`, passing over blanks before it and inside it, but not inside
/// a number. `piece` holds no blanks.
/// False, with `at` unchanged, when it does not stand there.
bool takePiece(QStringView plain, qsizetype &at, QStringView piece);

/// The plain form of `text` without its blanks, as `takePiece` wants it.
QString plainPiece(QStringView text);

} // namespace Zel
