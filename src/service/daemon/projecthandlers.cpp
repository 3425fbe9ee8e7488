// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/deploymentcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/listcall.h"
#include "service/daemon/problem.h"

#include <QUuid>

#include <array>

namespace Zel::Service {

namespace {

constexpr qsizetype longestTypeId = 256;
/// No project type is that long, so there is nothing of a longer one; only the address of a call
/// has to end somewhere.
constexpr qsizetype longestTypeAskedFor = 16 * 1024;
constexpr qsizetype longestGuid = 36;

constexpr std::array columns{"guid",     "name",      "description", "created",
                             "modified", "createdBy", "eventDate",   "published"};

/// The one form in which a project's guid is stored and compared: 36 characters, lower case,
/// without braces. Empty for a text that is no guid.
QString canonicalGuid(const QString &text)
{
    if (text.size() != longestGuid || QUuid::fromString(text).isNull())
        return QString();
    return text.toLower();
}

/// Writes a project's values in the order of `columns`, each after what `before` writes for it.
template <class Before>
void writeProject(JsonWriter &json, const Project &project, Before before)
{
    std::size_t column = 0;
    const auto next = [&]() -> JsonWriter & {
        before(columns.at(column++));
        return json;
    };
    next().text(project.guid);
    next().text(project.name);
    next().text(project.description);
    next().integer(project.createdAt);
    next().integer(project.modifiedAt);
    next().text(project.createdBy);
    next().integer(project.eventAt);
    next().boolean(project.published);
}

Problem unknownTheme(const QString &guid)
{
    return Problem::invalid(QStringLiteral("There is no theme \"%1\" to choose.").arg(guid));
}

Project requestedProject(const Call &call)
{
    JsonFields fields(call.request.body);
    Project project;
    project.guid = canonicalGuid(fields.text(QStringLiteral("guid"), longestGuid));
    project.name = fields.text(QStringLiteral("name"), Projects::longestName);
    project.typeId = fields.text(QStringLiteral("typeID"), longestTypeId);
    project.description = fields.text(QStringLiteral("description"), jsonBodyLimit);
    project.eventAt = fields.timeOrNull(QStringLiteral("eventDate"));
    project.createdById = call.session.userId;
    const QString theme = fields.textOrEmpty(QStringLiteral("themeGuid"), longestGuid);
    project.themeGuid = canonicalGuid(theme);
    fields.expectNoMore();
    if (project.guid.isEmpty())
        throw Problem::invalid(QStringLiteral("The field \"guid\" must be a UUID without braces."));
    if (project.name.trimmed().isEmpty())
        throw Problem::invalid(QStringLiteral("A project needs a name."));
    if (project.themeGuid.isEmpty() && !theme.isEmpty())
        throw unknownTheme(theme);
    return project;
}

HttpResponse projectResponse(const Project &project, int status)
{
    JsonWriter json;
    json.beginObject().key("project").beginObject();
    writeProject(json, project, [&json](const char *column) { json.key(column); });
    json.endObject().endObject();
    return jsonResponse(json.json(), status);
}

} // namespace

HttpResponse listProjectTypes(const Call &call)
{
    JsonWriter json;
    json.beginObject().key("types").beginArray();
    const QList<ProjectKind> types = call.store.projects.types(call.session.accountId);
    for (const ProjectKind &type : types) {
        json.beginObject().key("typeID").text(type.typeId);
        json.key("name").text(type.name).endObject();
    }
    json.endArray().endObject();
    return jsonResponse(json.json());
}

HttpResponse listProjects(const Call &call)
{
    const QString type = call.queryText("type", longestTypeAskedFor);
    ListCall page(call, "projects");
    Projects::Place after;
    if (!page.isFirst())
        after = {page.text(), page.text()};
    return jsonResponse(call.store.database.snapshot([&] {
        JsonWriter json;
        json.beginObject();
        beginTable(json, "projects", columns);
        PageRows rows(json, page.limit());
        Projects::Place last;
        const bool known = call.store.projects.visitAfter(
            call.session.accountId, type, after,
            [&](const Project &project, const Projects::Place &place) {
                if (!rows.takeOne())
                    return false;
                json.beginArray();
                writeProject(json, project, [](const char *) {});
                json.endArray();
                last = place;
                return true;
            });
        if (!known)
            return QByteArrayLiteral("{\"projects\":null,\"next\":null}");
        endTable(json);
        page.writeNext(json, rows.hasMore() ? std::optional(QJsonArray{last.nameKey, last.guid})
                                            : std::nullopt);
        json.endObject();
        return json.json();
    }));
}

HttpResponse createProject(const Call &call)
{
    refuseViewers(call);
    Project project = requestedProject(call);
    switch (call.store.projects.create(call.session.accountId, project)) {
    case Projects::Creation::Created:
        return projectResponse(project, 201);
    case Projects::Creation::Existing:
        return projectResponse(project, 200);
    case Projects::Creation::UnknownType:
        throw Problem::invalid(
            QStringLiteral("The account has no project type \"%1\".").arg(project.typeId));
    case Projects::Creation::UnknownTheme:
        throw unknownTheme(project.themeGuid);
    case Projects::Creation::Conflict:
        break;
    }
    throw Problem(409, QByteArrayLiteral("conflict"),
                  QStringLiteral("Another project has this guid already."));
}

HttpResponse projectPublished(const Call &call)
{
    const QString guid = canonicalGuid(call.parameters.first());
    const auto published = guid.isEmpty()
                               ? std::nullopt
                               : call.store.projects.isPublished(call.session.accountId, guid);
    if (!published)
        throw notFound(QStringLiteral("There is no such project."));
    JsonWriter json;
    json.beginObject().key("published").boolean(*published).endObject();
    return jsonResponse(json.json());
}

} // namespace Zel::Service
