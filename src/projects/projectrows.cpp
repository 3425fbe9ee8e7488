// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/projectrows.h"

#include "platform/core/datetext.h"

namespace ZelWebServiceControls {

namespace {

constexpr qint64 SecondsPerDay = 86400;

/// The date a column shows; null when it shows none.
const QDateTime *dateOf(const QXSC::ProjectRecord &project, int column)
{
    switch (column) {
    case ProjectRows::Created:
        return project.hasCreated ? &project.created : nullptr;
    case ProjectRows::Modified:
        return project.hasModified ? &project.modified : nullptr;
    case ProjectRows::EventDate:
        return project.hasEventDate ? &project.eventDate : nullptr;
    default:
        return nullptr;
    }
}

/// Orders as the date's text does once it is read back: by whole seconds of the local clock, an
/// hour that the clocks skip in spring included, and like no date where the text reads as none.
qint64 sortValue(const QDateTime &moment)
{
    static const QDate first(1, 1, 1);
    static const QDate last(9999, 12, 31);
    const QDateTime local = moment.timeSpec() == Qt::LocalTime ? moment : moment.toLocalTime();
    const QDate date = local.date();
    const QTime time = local.time();
    if (date < first || date > last || !time.isValid())
        return Zel::ListRowProvider::NoSortValue;
    return date.toJulianDay() * SecondsPerDay + time.msecsSinceStartOfDay() / 1000;
}

} // namespace

ProjectRows::ProjectRows(QXSC::ProjectCollectionPtr projects, bool markPublished)
    : m_projects(std::move(projects))
    , m_markPublished(markPublished)
{
}

qsizetype ProjectRows::rowCount() const
{
    return m_projects->count();
}

QString ProjectRows::text(qsizetype row, int column) const
{
    const QXSC::ProjectRecord &project = *m_projects->item(row + 1);
    switch (column) {
    case Name:
        return project.name;
    case Description:
        return project.description;
    case CreatedBy:
        return project.createdBy;
    default:
        const QDateTime *date = dateOf(project, column);
        return date ? Zel::generalDateText(*date) : QString();
    }
}

QVariant ProjectRows::tag(qsizetype row) const
{
    return QVariant::fromValue(m_projects->item(row + 1));
}

int ProjectRows::smallIcon(qsizetype row) const
{
    return m_markPublished && m_projects->item(row + 1)->published ? PublishedImage : 0;
}

bool ProjectRows::sortValues(int column, std::span<qint64> out) const
{
    if (column != Created && column != Modified && column != EventDate)
        return false;
    auto value = out.begin();
    for (const QXSC::ProjectRecordPtr &project : *m_projects) {
        const QDateTime *date = dateOf(*project, column);
        *value++ = date ? sortValue(*date) : NoSortValue;
    }
    return true;
}

} // namespace ZelWebServiceControls
