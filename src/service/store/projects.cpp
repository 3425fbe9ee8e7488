// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/projects.h"

#include "service/store/listpage.h"
#include "service/store/storabletext.h"
#include "service/store/themes.h"

namespace Zel {

namespace {

const SqlText listTypes(R"sql(
    SELECT type_id, name, position FROM project_type
    WHERE account_id = $1
    ORDER BY position NULLS FIRST, type_id NULLS FIRST
)sql");

const SqlText findType(R"sql(
    SELECT type_id FROM project_type WHERE account_id = $1 AND type_id = $2
)sql");

const SqlText putType(R"sql(
    INSERT INTO project_type (account_id, type_id, name, position) VALUES ($1, $2, $3, $4)
    ON CONFLICT (account_id, type_id) DO UPDATE SET name = excluded.name,
        position = excluded.position
)sql");

const SqlText listProjects(R"sql(
    SELECT p.guid, p.type_id, p.name, p.description, p.created_at, p.modified_at, p.created_by,
           u.display_name, p.event_at, p.published, p.theme_guid, p.name_key
    FROM project p
    JOIN app_user u ON u.user_id = p.created_by
    WHERE p.account_id = $1 AND p.type_id = $2 AND (p.name_key, p.guid) > ($3, $4)
    ORDER BY p.name_key NULLS FIRST, p.guid NULLS FIRST
    LIMIT $5
)sql");

const SqlText findProject(R"sql(
    SELECT p.guid, p.type_id, p.name, p.description, p.created_at, p.modified_at, p.created_by,
           u.display_name, p.event_at, p.published, p.theme_guid
    FROM project p
    JOIN app_user u ON u.user_id = p.created_by
    WHERE p.account_id = $1 AND p.guid = $2
)sql");

const SqlText findPublished(R"sql(
    SELECT published FROM project WHERE account_id = $1 AND guid = $2
)sql");

const SqlText addProject(R"sql(
    INSERT INTO project (account_id, guid, type_id, name, name_key, description, created_at,
                         modified_at, created_by, event_at, published, theme_guid)
    VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12)
)sql");

const SqlText changeProject(R"sql(
    UPDATE project SET type_id = $3, name = $4, name_key = $5, description = $6, created_at = $7,
                       modified_at = $8, created_by = $9, event_at = $10, published = $11,
                       theme_guid = $12
    WHERE account_id = $1 AND guid = $2
)sql");

/// Of projects, whose descriptions may be long.
constexpr qint64 rowsAtOnce = 256;

Project projectOf(const SqlRow &row)
{
    Project project;
    project.guid = row.text(0);
    project.typeId = row.text(1);
    project.name = row.text(2);
    project.description = row.text(3);
    project.createdAt = row.optionalInteger(4);
    project.modifiedAt = row.optionalInteger(5);
    project.createdById = row.text(6);
    project.createdBy = row.text(7);
    project.eventAt = row.optionalInteger(8);
    project.published = row.boolean(9);
    project.themeGuid = row.optionalText(10).value_or(QString());
    return project;
}

SqlValues valuesOf(qint64 accountId, const Project &project)
{
    const std::optional<QString> theme =
        project.themeGuid.isEmpty() ? std::nullopt : std::optional(project.themeGuid);
    return {accountId,         project.guid,           project.typeId,
            project.name,      orderKey(project.name), project.description,
            project.createdAt, project.modifiedAt,     project.createdById,
            project.eventAt,   project.published,      theme};
}

/// Whether two projects were asked for with the same words by the same user.
bool isSameRequest(const Project &a, const Project &b)
{
    return a.createdById == b.createdById && a.typeId == b.typeId && a.name == b.name &&
           a.description == b.description && a.eventAt == b.eventAt && a.themeGuid == b.themeGuid;
}

} // namespace

Projects::Projects(Database &database, Themes &themes, const Clock &clock)
    : m_database(database)
    , m_themes(themes)
    , m_clock(clock)
{
}

QList<ProjectKind> Projects::types(qint64 accountId)
{
    return m_database.rows(listTypes, {accountId}, [](const SqlRow &row) {
        return ProjectKind{row.text(0), row.text(1), row.integer(2)};
    });
}

bool Projects::visitAfter(qint64 accountId, const QString &typeId, const Place &after,
                          const Visitor &visit)
{
    const auto known = m_database.row(findType, {accountId, typeId},
                                      [](const SqlRow &row) { return row.text(0); });
    if (!known)
        return false;
    readInBatches<Project, Place>(
        m_database, listProjects, rowsAtOnce, after,
        [&](const Place &place) {
            return SqlValues{accountId, typeId, place.nameKey, place.guid};
        },
        [](const SqlRow &row) {
            return std::pair(projectOf(row), Place{row.text(11), row.text(0)});
        },
        visit);
    return true;
}

std::optional<QList<Project>> Projects::list(qint64 accountId, const QString &typeId)
{
    return m_database.snapshot([&]() -> std::optional<QList<Project>> {
        QList<Project> projects;
        const bool known =
            visitAfter(accountId, typeId, {}, [&](const Project &project, const Place &) {
                projects << project;
                return true;
            });
        return known ? std::optional(projects) : std::nullopt;
    });
}

std::optional<Project> Projects::find(qint64 accountId, const QString &guid)
{
    return m_database.row(findProject, {accountId, guid}, projectOf);
}

std::optional<bool> Projects::isPublished(qint64 accountId, const QString &guid)
{
    return m_database.row(findPublished, {accountId, guid},
                          [](const SqlRow &row) { return row.boolean(0); });
}

Projects::Creation Projects::create(qint64 accountId, Project &project)
{
    return m_database.tx([&] {
        if (const auto known = find(accountId, project.guid)) {
            if (!isSameRequest(*known, project))
                return Creation::Conflict;
            project = *known;
            return Creation::Existing;
        }
        const auto type = m_database.row(findType, {accountId, project.typeId},
                                         [](const SqlRow &row) { return row.text(0); });
        if (!type)
            return Creation::UnknownType;
        if (!project.themeGuid.isEmpty() &&
            !m_themes.isVisible({accountId, project.createdById}, project.themeGuid))
            return Creation::UnknownTheme;
        project.createdAt = m_clock();
        project.modifiedAt = std::nullopt;
        project.published = false;
        add(accountId, project);
        project = find(accountId, project.guid).value();
        return Creation::Created;
    });
}

void Projects::storeType(qint64 accountId, const ProjectKind &type)
{
    m_database.exec(putType, {accountId, type.typeId, type.name, type.position});
}

void Projects::add(qint64 accountId, const Project &project)
{
    m_database.exec(addProject, valuesOf(accountId, project));
}

void Projects::change(qint64 accountId, const Project &project)
{
    m_database.exec(changeProject, valuesOf(accountId, project));
}

} // namespace Zel
