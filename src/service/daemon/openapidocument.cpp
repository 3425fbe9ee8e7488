// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/openapidocument.h"

#include "service/daemon/idempotency.h"
#include "service/daemon/openapianswers.h"
#include "service/daemon/openapiparts.h"
#include "service/daemon/openapischemas.h"
#include "service/daemon/problemcodes.h"

#include <QJsonArray>

namespace Zel::Service {

namespace {

QJsonObject parameter(const RouteParameter &one, const char *place)
{
    return object({{"name", text(one.name)},
                   {"in", QLatin1String(place)},
                   {"required", one.isRequired},
                   {"description", text(one.says)},
                   {"schema", reference("schemas", one.schema)}});
}

QJsonArray parameters(const Route &route)
{
    static const RouteParameter key{"Idempotency-Key", "IdempotencyKey",
                                    "A key of the caller's for this call. The same call under the "
                                    "same key, within a day, is not "
                                    "done again: it is answered as the first time.",
                                    false};
    QJsonArray all;
    for (const RouteParameter &one : route.text.places)
        all << parameter(one, "path");
    for (const RouteParameter &one : route.text.query)
        all << parameter(one, "query");
    if (takesIdempotencyKey(route))
        all << parameter(key, "header");
    return all;
}

QJsonObject requestBody(const Route &route)
{
    const RouteText &says = route.text;
    const QJsonObject schema =
        says.body.isEmpty() ? QJsonObject() : reference("schemas", says.body);
    return object({{"required", true},
                   {"description", QStringLiteral("At most %1 bytes.").arg(route.bodyLimit)},
                   {"content", content(says.bodyType, schema)}});
}

QJsonArray security(const Route &route)
{
    const QByteArray scheme =
        route.access == Access::Public ? route.text.permission : QByteArrayLiteral("session");
    return scheme.isEmpty() ? QJsonArray() : QJsonArray{QJsonObject{{text(scheme), QJsonArray()}}};
}

QString description(const Route &route)
{
    QStringList parts;
    if (!route.text.description.isEmpty())
        parts << text(route.text.description);
    if (route.access == Access::Account)
        parts << QStringLiteral("Needs a session that has chosen an account.");
    return parts.join(QLatin1Char(' '));
}

QJsonObject operation(const Route &route)
{
    QJsonObject result = object({{"operationId", text(route.text.id)},
                                 {"summary", text(route.text.summary)},
                                 {"tags", QJsonArray{text(route.text.topic)}},
                                 {"security", security(route)},
                                 {"responses", responses(route)}});
    if (const QString says = description(route); !says.isEmpty())
        result.insert(QStringLiteral("description"), says);
    if (const QJsonArray all = parameters(route); !all.isEmpty())
        result.insert(QStringLiteral("parameters"), all);
    if (!route.text.bodyType.isEmpty())
        result.insert(QStringLiteral("requestBody"), requestBody(route));
    return result;
}

/// The pattern as OpenAPI writes it: it has no places for several parts of a path.
QString pathOf(const Route &route)
{
    return text(route.pattern).replace(QLatin1String("*}"), QLatin1String("}"));
}

QJsonObject problemSchema(QJsonObject schema)
{
    QJsonArray codes;
    QStringList meanings;
    for (const ProblemCode &problem : problemCodes()) {
        codes << QString::fromLatin1(problem.code);
        meanings << QStringLiteral("* %1 %2").arg(problem.status).arg(meaningOf(problem.code));
    }
    QJsonObject properties = schema.value(QLatin1String("properties")).toObject();
    QJsonObject code = properties.value(QLatin1String("code")).toObject();
    code.insert(QStringLiteral("enum"), codes);
    code.insert(QStringLiteral("description"), code.value(QLatin1String("description")).toString() +
                                                   QLatin1String("\n\n") +
                                                   meanings.join(QLatin1Char('\n')));
    properties.insert(QStringLiteral("code"), code);
    schema.insert(QStringLiteral("properties"), properties);
    return schema;
}

} // namespace

QJsonObject openApiDocument(const QList<Route> &routes)
{
    QJsonObject paths;
    for (const Route &route : routes) {
        QJsonObject path = paths.value(pathOf(route)).toObject();
        path.insert(text(route.method.toLower()), operation(route));
        paths.insert(pathOf(route), path);
    }
    const QString problem = QStringLiteral("Problem");
    QJsonObject schemas = componentSchemas();
    schemas.insert(problem, problemSchema(schemas.value(problem).toObject()));
    QJsonObject document = documentFrame();
    QJsonObject components = document.value(QLatin1String("components")).toObject();
    components.insert(QStringLiteral("schemas"), schemas);
    components.insert(QStringLiteral("responses"), commonResponses());
    document.insert(QStringLiteral("components"), components);
    document.insert(QStringLiteral("paths"), paths);
    return document;
}

} // namespace Zel::Service
