// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/datepattern.h"
#include "platform/core/export.h"
#include "platform/core/typeddate.h"

#include <QDateTime>
#include <QLocale>

#include <optional>

namespace Zel {

/// The general date text of one locale: writer and reader.
///
/// What a locale writes it also reads, to the second: reading begins with the very patterns that
/// write. Making a form is slow, using it fast, and `of` keeps one for each locale; take the form
/// once where many dates are written or read. A form may be used from several threads.
class ZEL_EXPORT DateTextForm
{
public:
    /// Patterns in Qt's letters; see DatePattern for their reading.
    struct Patterns
    {
        QString date;
        QString time;
        /// Read only: the time as people type it, without seconds.
        QString shortTime;
    };

    explicit DateTextForm(const QLocale &locale);
    DateTextForm(const Patterns &patterns, const DateNames &names);

    /// The form of a locale, made at its first use and kept until the program ends.
    static const DateTextForm &of(const QLocale &locale);

    /// Date and time; the date alone at midnight; the time alone on day zero (1899-12-30). Empty
    /// when the date or the time is not valid. Fractions of a second are not shown.
    QString text(const DateFields &fields) const;
    /// The same of the local date and time of `moment`. A moment inside the hour that is skipped in
    /// spring is written as it stands.
    QString text(const QDateTime &moment) const;

    /// Reads what `text` writes, and what people type: see `dateFromText`.
    std::optional<DateFields> read(QStringView text) const;

private:
    std::optional<DateFields> readOwn(QStringView plain, DatePattern::Reading reading) const;
    std::optional<DateFields> readOwn(QStringView plain, const DatePattern &time,
                                      DatePattern::Reading reading) const;

    DateNames m_names;
    DateWords m_words;
    DatePattern m_date;
    DatePattern m_time;
    DatePattern m_shortTime;
    TypedDateRules m_typedRules;
};

} // namespace Zel
