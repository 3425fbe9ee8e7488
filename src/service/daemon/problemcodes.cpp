// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/problemcodes.h"

#include "service/daemon/idempotency.h"

namespace Zel::Service {

const QList<ProblemCode> &problemCodes()
{
    using enum Occurs;
    static const QList<ProblemCode> all{
        {"bad-request", 400, Everywhere, "It is not valid HTTP."},
        {"not-encrypted", 400, Everywhere, "The service takes encrypted connections only."},
        {"bad-json", 400, WithJson, "The body is not valid JSON."},
        {"invalid", 400, WithValues, "A value is missing, not known or not as it has to be."},
        {"invalid-text", 400, WithText, "A text has a character that cannot be stored."},
        {"signed-out", 401, WithSession, "There is no valid token: sign in again."},
        {"bad-credentials", 401, WhereListed, "The user name or the password is wrong."},
        {"bad-key", 401, WhereListed, "It is not the key that opens this."},
        {"foreign-origin", 403, Everywhere, "A page of another site made a browser ask."},
        {"no-account", 403, WithAccount, "The session has not chosen an account."},
        {"account-refused", 403, WhereListed, "The person cannot work for that account."},
        {"not-allowed", 403, WhereListed, "The person lacks the right to do it."},
        {"bad-address", 403, WhereListed, "The service did not make that address."},
        {"expired-address", 403, WhereListed, "The time of the address is over."},
        {"no-route", 404, OutsideOfRoutes, "There is nothing at that address."},
        {"not-found", 404, WhereListed, "There is no such thing, or not for this person."},
        {"method-not-allowed", 405, OutsideOfRoutes, "The address does not take that method."},
        {"conflict", 409, WhereListed, "Something else has that name or guid."},
        {"not-empty", 409, WhereListed, "The folder is not empty."},
        {"too-many-folders", 409, WhereListed, "The account can have no more folders."},
        {"version-conflict", 409, WhereListed, "Somebody else has saved the record meanwhile."},
        {"offset", 409, WhereListed, "The file has arrived up to another place."},
        {"busy", 409, WhereListed, "Another call is writing the same upload. Try again."},
        {"incomplete", 409, WhereListed, "Not all of a file has arrived."},
        {"checksum", 409, WhereListed, "A file did not arrive as it was sent."},
        {"too-large", 413, Everywhere, "It is larger than the service takes."},
        {"bad-range", 416, WhereListed, "The file has no such section."},
        {"wrong-host", 421, Everywhere, "The service does not answer for that host name."},
        {"key-reused", 422, WithKey, "The Idempotency-Key was used for another call."},
        {"too-many-attempts", 429, WhereListed, "Too many attempts to sign in. Wait."},
        {"header-too-large", 431, Everywhere, "The head of the request is over 16 KiB."},
        {"internal", 500, Everywhere, "The service failed; its log names the cause."},
        {"unavailable", 503, Everywhere, "The service cannot do it now. Try again shortly."},
        {"not-ready", 503, WhereListed, "The service cannot do its work, or is about to stop."},
        {"storage-full", 507, WhereListed, "The service has no room for more files."},
    };
    return all;
}

namespace {

bool canOccur(Occurs occurs, const Route &route)
{
    const bool takesJson = !route.text.body.isEmpty();
    const bool takesKey = takesIdempotencyKey(route);
    const bool takesValues = takesJson || takesKey || !route.text.query.isEmpty();
    switch (occurs) {
    case Occurs::Everywhere:
        return true;
    case Occurs::WithSession:
        return route.access != Access::Public;
    case Occurs::WithAccount:
        return route.access == Access::Account;
    case Occurs::WithText:
        return takesValues || !route.text.places.isEmpty();
    case Occurs::WithValues:
        return takesValues;
    case Occurs::WithKey:
        return takesKey;
    case Occurs::WithJson:
        return takesJson;
    case Occurs::WhereListed:
    case Occurs::OutsideOfRoutes:
        break;
    }
    return false;
}

} // namespace

QList<RouteRefusal> refusalsOf(const Route &route)
{
    QList<RouteRefusal> refusals = route.text.refusals;
    for (const ProblemCode &problem : problemCodes()) {
        if (canOccur(problem.occurs, route))
            refusals << RouteRefusal{problem.code, {}};
    }
    for (RouteRefusal &refusal : refusals) {
        if (refusal.schema.isEmpty())
            refusal.schema = QByteArrayLiteral("Problem");
    }
    return refusals;
}

int statusOf(const QByteArray &code)
{
    for (const ProblemCode &problem : problemCodes()) {
        if (code == problem.code)
            return problem.status;
    }
    return 0;
}

} // namespace Zel::Service
