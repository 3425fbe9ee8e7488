// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/sortkeys.h"

#include "platform/core/datetextform.h"
#include "platform/core/numbertext.h"

namespace Zel {

namespace {

constexpr int keyDigits = 30;
constexpr int dateDigits = 14;

/// "9" for "0" up to "0" for "9", a blank for "-"; everything else stays.
QChar inverted(QChar c)
{
    if (c >= u'0' && c <= u'9')
        return QChar(u'0' + u'9' - c.unicode());
    return c == u'-' ? QChar(u' ') : c;
}

} // namespace

qint64 dateSortNumber(QStringView text, const QLocale &locale)
{
    const std::optional<DateFields> fields = DateTextForm::of(locale).read(text);
    if (!fields)
        return -1;
    int year = 0, month = 0, dayOfMonth = 0;
    fields->date.getDate(&year, &month, &dayOfMonth);
    const qint64 day = (year * 100LL + month) * 100 + dayOfMonth;
    const QTime time = fields->time;
    return ((day * 100 + time.hour()) * 100 + time.minute()) * 100 + time.second();
}

QString dateSortKey(QStringView text, const QLocale &locale)
{
    const qint64 number = dateSortNumber(text, locale);
    if (number < 0)
        return QString();
    return QString::number(number).rightJustified(dateDigits, u'0');
}

QString numberSortKey(QStringView text, const QLocale &locale)
{
    const std::optional<double> number = numberFromText(text, locale);
    if (!number)
        return QString();
    if (*number >= 0)
        return fixedText(*number, keyDigits, keyDigits);
    QString key = fixedText(-*number, keyDigits, keyDigits);
    for (QChar &c : key)
        c = inverted(c);
    return u'&' + key;
}

} // namespace Zel
