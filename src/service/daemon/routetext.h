// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>

namespace Zel::Service {

/// A place of a route's path, or a parameter of its query.
struct RouteParameter
{
    QByteArray name;
    QByteArray schema; ///< its component schema
    QByteArray says;
    bool isRequired = true;
};

/// A good answer of a route.
struct RouteAnswer
{
    int status = 200;
    QByteArray schema;      ///< its component schema; empty for one without JSON
    QByteArray contentType; ///< "*/*" for the type a file has; empty for one without a body
    QByteArray says;
};

/// A refusal that not every route has.
struct RouteRefusal
{
    QByteArray code;   ///< of the table of problem codes
    QByteArray schema; ///< its component schema where it says more than "Problem"
};

/// What the interface says of a route: the document that the service gives is made of it.
struct RouteText
{
    QByteArray id;      ///< a name for programs, once in the table: "listProjects"
    QByteArray summary; ///< a line for people
    QByteArray description;
    QByteArray topic;      ///< one of those that openapi/document.json tells about
    QByteArray permission; ///< what else than a session opens the route: a security scheme
    QList<RouteParameter> places;
    QList<RouteParameter> query;
    QByteArray body;     ///< the component schema of a JSON body; empty for none
    QByteArray bodyType; ///< of a body; empty for none
    QList<RouteAnswer> answers;
    QList<RouteRefusal> refusals;
};

} // namespace Zel::Service
