// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/projectrows.h"

#include "platform/core/datetext.h"

namespace ZelWebServiceControls {

namespace {

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
        *value++ = date ? sortValueOf(*date) : NoSortValue;
    }
    return true;
}

} // namespace ZelWebServiceControls
