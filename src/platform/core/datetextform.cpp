// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datetextform.h"

#include "platform/core/plaintext.h"

#include <QHash>
#include <QReadWriteLock>

#include <memory>
#include <unordered_map>

namespace Zel {

namespace {

/// Longer texts are no dates: the longest written form of any locale has under 80 characters.
constexpr qsizetype longestDate = 200;

struct LocaleHash
{
    size_t operator()(const QLocale &locale) const { return qHash(locale, 0); }
};

struct Forms
{
    QReadWriteLock lock;
    std::unordered_map<QLocale, std::unique_ptr<const DateTextForm>, LocaleHash> byLocale;
};

} // namespace

DateTextForm::DateTextForm(const QLocale &locale)
    : DateTextForm({locale.dateFormat(QLocale::ShortFormat), locale.timeFormat(QLocale::LongFormat),
                    locale.timeFormat(QLocale::ShortFormat)},
                   DateNames::of(locale))
{
}

DateTextForm::DateTextForm(const Patterns &patterns, const DateNames &names)
    : m_names(names)
    , m_words(names)
    , m_date(patterns.date, names)
    , m_time(patterns.time, names)
    , m_shortTime(patterns.shortTime, names)
    , m_typedRules{m_date.dateOrder(), m_date.literals()}
{
}

const DateTextForm &DateTextForm::of(const QLocale &locale)
{
    static Forms forms;
    {
        const QReadLocker reading(&forms.lock);
        const auto found = forms.byLocale.find(locale);
        if (found != forms.byLocale.end())
            return *found->second;
    }
    auto made = std::make_unique<const DateTextForm>(locale);
    const QWriteLocker writing(&forms.lock);
    // Another thread may have been faster: its form stays, others may hold it already.
    return *forms.byLocale.try_emplace(locale, std::move(made)).first->second;
}

QString DateTextForm::text(const DateFields &fields) const
{
    if (!fields.date.isValid() || !fields.time.isValid())
        return QString();
    const bool timeAlone = fields.date == dayZero();
    const bool midnight = fields.time.msecsSinceStartOfDay() < 1000;
    PlainText out;
    if (!timeAlone)
        m_date.write(fields, m_names, out);
    if (!timeAlone && !midnight)
        out.append(u' ');
    if (timeAlone || !midnight)
        m_time.write(fields, m_names, out);
    return view(out).toString();
}

QString DateTextForm::text(const QDateTime &moment) const
{
    const QDateTime local = moment.timeSpec() == Qt::LocalTime ? moment : moment.toLocalTime();
    return text(DateFields{local.date(), local.time()});
}

std::optional<DateFields> DateTextForm::read(QStringView text) const
{
    if (text.size() > longestDate)
        return std::nullopt;
    const PlainText plain = plainText(text);
    const QStringView trimmed = view(plain).trimmed();
    for (const auto reading : {DatePattern::Reading::Exact, DatePattern::Reading::Tolerant}) {
        if (const auto fields = readOwn(trimmed, reading))
            return fields;
    }
    return readTypedDate(trimmed, m_typedRules, m_words);
}

std::optional<DateFields> DateTextForm::readOwn(QStringView plain,
                                                DatePattern::Reading reading) const
{
    if (const auto fields = readOwn(plain, m_time, reading))
        return fields;
    if (reading == DatePattern::Reading::Tolerant)
        return readOwn(plain, m_shortTime, reading);
    return std::nullopt;
}

/// The date, the date and the time, or the time alone.
std::optional<DateFields> DateTextForm::readOwn(QStringView plain, const DatePattern &time,
                                                DatePattern::Reading reading) const
{
    DateParts parts;
    qsizetype at = 0;
    const bool hasDate = m_date.read(plain, at, parts, m_words, reading);
    const bool hasTime = at < plain.size() || !hasDate;
    if (!hasDate)
        at = 0;
    else if (hasTime && plain[at] != u' ')
        return std::nullopt;
    if (hasTime && (!time.read(plain, at, parts, m_words, reading) || at < plain.size()))
        return std::nullopt;
    const DateFields fields{hasDate ? parts.date() : dayZero(), parts.time()};
    if (!fields.date.isValid() || !fields.time.isValid())
        return std::nullopt;
    return fields;
}

} // namespace Zel
