// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/openapianswers.h"

#include "service/daemon/openapiparts.h"
#include "service/daemon/openapischemas.h"
#include "service/daemon/problemcodes.h"

#include <QJsonArray>
#include <QMap>

#include <algorithm>

namespace Zel::Service {

QString meaningOf(const QByteArray &code)
{
    for (const ProblemCode &problem : problemCodes()) {
        if (code == problem.code)
            return QLatin1Char('`') + text(code) + QLatin1String("`: ") + text(problem.meaning);
    }
    return text(code);
}

namespace {

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

QMap<int, QList<RouteRefusal>> refusalsByStatus(const Route &route)
{
    QMap<int, QList<RouteRefusal>> byStatus;
    for (const RouteRefusal &one : refusalsOf(route))
        byStatus[statusOf(one.code)] << one;
    return byStatus;
}

/// The refusals that every route has.
QMap<int, QList<RouteRefusal>> commonRefusals()
{
    Route bare;
    bare.access = Access::Public;
    return refusalsByStatus(bare);
}

QByteArray commonName(int status)
{
    return "Refusal" + QByteArray::number(status);
}

bool isSame(const QList<RouteRefusal> &a, const QList<RouteRefusal> &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const RouteRefusal &one, const RouteRefusal &other) {
                          return one.code == other.code && one.schema == other.schema;
                      });
}

} // namespace

QJsonObject commonResponses()
{
    QJsonObject all;
    const auto common = commonRefusals();
    for (auto it = common.cbegin(); it != common.cend(); ++it)
        all.insert(text(commonName(it.key())), refusal({}, it.key(), it.value()));
    return all;
}

QJsonObject responses(const Route &route)
{
    static const auto common = commonRefusals();
    QJsonObject all;
    for (const RouteAnswer &one : route.text.answers)
        all.insert(QString::number(one.status), answer(route.text, one));
    const auto byStatus = refusalsByStatus(route);
    for (auto it = byStatus.cbegin(); it != byStatus.cend(); ++it)
        all.insert(QString::number(it.key()), isSame(it.value(), common.value(it.key()))
                                                  ? reference("responses", commonName(it.key()))
                                                  : refusal(route.text, it.key(), it.value()));
    return all;
}

} // namespace Zel::Service
