// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/route.h"

namespace Zel::Service {

/// Which routes can answer a problem.
enum class Occurs
{
    Everywhere,     ///< every route
    WithSession,    ///< those that need a session
    WithAccount,    ///< those that need a chosen account
    WithText,       ///< those that read a text: of the path, the query or a JSON body
    WithValues,     ///< those that read the query or a JSON body
    WithKey,        ///< those that take a key of the header Idempotency-Key
    WithJson,       ///< those that read a JSON body
    WhereListed,    ///< those that say so in the route table
    OutsideOfRoutes ///< none: what is asked for is no route
};

/// A problem that the service answers: the one list of their codes.
struct ProblemCode
{
    const char *code;
    int status;
    Occurs occurs;
    const char *meaning;
};

/// All of them, by status.
ZEL_EXPORT const QList<ProblemCode> &problemCodes();

/// Those that a route can answer, each with the component schema of its answer.
ZEL_EXPORT QList<RouteRefusal> refusalsOf(const Route &route);

/// The status that a code goes with; 0 for one that is not in the list.
ZEL_EXPORT int statusOf(const QByteArray &code);

} // namespace Zel::Service
