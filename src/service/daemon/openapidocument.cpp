// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/openapidocument.h"

#include "service/daemon/idempotency.h"
#include "service/daemon/openapischemas.h"
#include "service/daemon/problemcodes.h"

#include <QJsonArray>
#include <QMap>

#include <algorithm>
#include <utility>

namespace Zel::Service {

namespace {

using Member = std::pair<const char *, QJsonValue>;

QJsonObject object(std::initializer_list<Member> members)
{
    QJsonObject result;
    for (const auto &[name, value] : members)
        result.insert(QLatin1String(name), value);
    return result;
}

QString text(const QByteArray &utf8)
{
    return QString::fromUtf8(utf8);
}

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

QJsonObject content(const QByteArray &type, const QJsonObject &schema)
{
    return {{text(type), schema.isEmpty() ? QJsonObject() : object({{"schema", schema}})}};
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

/// Whether what a route gives has a tag, by which a client asks whether it has changed.
bool hasTag(const RouteText &route)
{
    return std::any_of(route.answers.begin(), route.answers.end(),
                       [](const RouteAnswer &one) { return one.status == 304; });
}

/// The headers that an answer of that status has.
QJsonObject headers(const RouteText &route, int status)
{
    QJsonObject all = object({{"X-Request-Id", reference("headers", "RequestId")}});
    if (status == 429 || status == 503)
        all.insert(QStringLiteral("Retry-After"), reference("headers", "RetryAfter"));
    if (status == 401)
        all.insert(QStringLiteral("WWW-Authenticate"), reference("headers", "SignInAgain"));
    if (hasTag(route) && (status == 200 || status == 206 || status == 304))
        all.insert(QStringLiteral("ETag"), reference("headers", "Tag"));
    if (status == 206 || status == 416)
        all.insert(QStringLiteral("Content-Range"), reference("headers", "ContentRange"));
    return all;
}

QJsonObject answer(const RouteText &route, const RouteAnswer &one)
{
    static const QMap<int, QString> usual{{200, QStringLiteral("The answer.")},
                                          {201, QStringLiteral("It was made.")},
                                          {204, QStringLiteral("It is done.")}};
    const QString says = one.says.isEmpty() ? usual.value(one.status) : text(one.says);
    QJsonObject result = object({{"description", says}, {"headers", headers(route, one.status)}});
    if (!one.contentType.isEmpty())
        result.insert(QStringLiteral("content"),
                      content(one.contentType, one.schema.isEmpty()
                                                   ? QJsonObject()
                                                   : reference("schemas", one.schema)));
    return result;
}

QString meaningOf(const QByteArray &code)
{
    for (const ProblemCode &problem : problemCodes()) {
        if (code == problem.code)
            return QLatin1Char('`') + text(code) + QLatin1String("`: ") + text(problem.meaning);
    }
    return text(code);
}

/// The answer of a status that several refusals may have: each schema with the codes it has here.
QJsonObject refusal(const RouteText &route, int status, const QList<RouteRefusal> &refusals)
{
    QStringList meanings;
    QMap<QByteArray, QJsonArray> codes;
    for (const RouteRefusal &one : refusals) {
        meanings << meaningOf(one.code);
        codes[one.schema] << text(one.code);
    }
    QJsonArray schemas;
    for (auto it = codes.cbegin(); it != codes.cend(); ++it) {
        QJsonObject schema = reference("schemas", it.key());
        schema.insert(QStringLiteral("properties"),
                      object({{"code", object({{"enum", it.value()}})}}));
        schemas << schema;
    }
    const QJsonObject schema =
        schemas.size() == 1 ? schemas.first().toObject() : object({{"anyOf", schemas}});
    return object({{"description", meanings.join(QLatin1String("\n\n"))},
                   {"headers", headers(route, status)},
                   {"content", content("application/problem+json", schema)}});
}

QJsonObject responses(const Route &route)
{
    QJsonObject all;
    for (const RouteAnswer &one : route.text.answers)
        all.insert(QString::number(one.status), answer(route.text, one));
    QMap<int, QList<RouteRefusal>> byStatus;
    for (const RouteRefusal &one : refusalsOf(route))
        byStatus[statusOf(one.code)] << one;
    for (auto it = byStatus.cbegin(); it != byStatus.cend(); ++it)
        all.insert(QString::number(it.key()), refusal(route.text, it.key(), it.value()));
    return all;
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
    document.insert(QStringLiteral("components"), components);
    document.insert(QStringLiteral("paths"), paths);
    return document;
}

} // namespace Zel::Service
