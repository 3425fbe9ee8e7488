// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The sentences in which the route table is written.
#include "service/daemon/route.h"

namespace Zel::Service {

Route &Route::by(Access who)
{
    access = who;
    return *this;
}

Route &Route::on(Lane where)
{
    lane = where;
    return *this;
}

Route &Route::upTo(qint64 bytes)
{
    bodyLimit = bytes;
    return *this;
}

Route &Route::named(const char *id, const char *summary)
{
    text.id = id;
    text.summary = summary;
    return *this;
}

Route &Route::says(const char *description)
{
    text.description = description;
    return *this;
}

Route &Route::openedBy(const char *permission)
{
    access = Access::Public;
    text.permission = permission;
    return *this;
}

Route &Route::place(const RouteParameter &place)
{
    text.places << place;
    return *this;
}

Route &Route::query(const char *name, const char *schema, const char *says)
{
    text.query << RouteParameter{name, schema, says, true};
    return *this;
}

Route &Route::optionalQuery(const char *name, const char *schema, const char *says)
{
    text.query << RouteParameter{name, schema, says, false};
    return *this;
}

Route &Route::paged()
{
    optionalQuery("limit", "PageLimit", "The most rows of the answer, which may have fewer.");
    return optionalQuery("after", "PagePlace", "The `next` of the answer before, to go on there.");
}

Route &Route::takes(const char *schema)
{
    text.body = schema;
    text.bodyType = QByteArrayLiteral("application/json");
    return *this;
}

Route &Route::takesBytes(const char *contentType)
{
    text.bodyType = contentType;
    return *this;
}

Route &Route::gives(int status, const char *schema, const char *says)
{
    const QByteArray name(schema);
    const QByteArray type = name.isEmpty() ? QByteArray() : QByteArrayLiteral("application/json");
    text.answers << RouteAnswer{status, name, type, says};
    return *this;
}

Route &Route::givesText(int status, const char *contentType, const char *says)
{
    text.answers << RouteAnswer{status, {}, contentType, says};
    return *this;
}

Route &Route::givesFile(const char *says)
{
    givesText(200, "*/*", says);
    givesText(206, "*/*", "The section that the header `Range` asks for.");
    gives(304, "", "It is as it was when it had the tag that `If-None-Match` names.");
    return refuses("bad-range");
}

Route &Route::refuses(const char *code, const char *schema)
{
    text.refusals << RouteRefusal{code, schema};
    return *this;
}

namespace {

Route route(const char *method, const char *pattern, Handler handler)
{
    Route result;
    result.method = method;
    result.pattern = pattern;
    result.handler = handler;
    return result;
}

Route route(const char *method, const char *pattern, StreamHandler handler, qint64 bodyLimit)
{
    Route result;
    result.method = method;
    result.pattern = pattern;
    result.stream = handler;
    result.bodyLimit = bodyLimit;
    return result;
}

} // namespace

Route get(const char *pattern, Handler handler)
{
    return route("GET", pattern, handler);
}

Route post(const char *pattern, Handler handler)
{
    return route("POST", pattern, handler);
}

Route post(const char *pattern, StreamHandler handler, qint64 bodyLimit)
{
    return route("POST", pattern, handler, bodyLimit);
}

Route put(const char *pattern, Handler handler)
{
    return route("PUT", pattern, handler);
}

Route put(const char *pattern, StreamHandler handler, qint64 bodyLimit)
{
    return route("PUT", pattern, handler, bodyLimit);
}

Route del(const char *pattern, Handler handler)
{
    return route("DELETE", pattern, handler);
}

} // namespace Zel::Service
