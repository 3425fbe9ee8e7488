// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datetext.h"

#include "platform/core/datetextform.h"

namespace Zel {

QString generalDateText(const QDateTime &moment, const QLocale &locale)
{
    return DateTextForm::of(locale).text(moment);
}

std::optional<QDateTime> dateFromText(QStringView text, const QLocale &locale)
{
    if (const auto fields = DateTextForm::of(locale).read(text))
        return QDateTime(fields->date, fields->time);
    return std::nullopt;
}

bool isDate(QStringView text, const QLocale &locale)
{
    return DateTextForm::of(locale).read(text).has_value();
}

} // namespace Zel
