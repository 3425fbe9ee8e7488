// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/idempotency.h"

#include "service/daemon/problem.h"
#include "service/store/databaseerror.h"

#include <QCryptographicHash>

#include <algorithm>

namespace Zel::Service {

namespace {

RepeatKey keyOf(const Call &call)
{
    const QByteArray key = call.request.header("Idempotency-Key");
    const bool plain =
        std::all_of(key.begin(), key.end(), [](char c) { return c > ' ' && c <= '~'; });
    if (key.isEmpty() || key.size() > Repeats::longestKey || !plain)
        throw Problem::invalid(
            QStringLiteral("The header Idempotency-Key must have 1 to %1 visible "
                           "characters of ASCII.")
                .arg(Repeats::longestKey));
    return {call.session.accountId, call.session.userId, QString::fromLatin1(key)};
}

QByteArray hashOf(const HttpRequest &request)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray &part : {request.method, request.target, request.body})
        hash.addData(QByteArray::number(part.size()) + ':' + part);
    return hash.result();
}

HttpResponse keptResponse(const RepeatAnswer &answer)
{
    HttpResponse response = jsonResponse(answer.body, answer.status);
    if (answer.body.isEmpty())
        response.contentType.clear();
    return response;
}

HttpResponse answerOrRepeat(const Route &route, const Call &call, const RepeatKey &key)
{
    const QByteArray hash = hashOf(call.request);
    Repeats &repeats = call.store.repeats;
    return call.store.database.tx([&] {
        if (const auto kept = repeats.find(key)) {
            if (kept->requestHash != hash)
                throw Problem(422, QByteArrayLiteral("key-reused"),
                              QStringLiteral("This Idempotency-Key was used for another call."));
            return keptResponse(*kept);
        }
        HttpResponse response = route.handler(call);
        if (response.status >= 200 && response.status < 300)
            repeats.put(key, {hash, response.status, response.body});
        return response;
    });
}

} // namespace

bool takesIdempotencyKey(const Route &route)
{
    const bool changes = route.method != "GET" && route.access == Access::Account && route.handler;
    return changes && route.pattern != "/v1/projects" && !route.pattern.startsWith("/v1/uploads");
}

HttpResponse answerOnce(const Route &route, const Call &call)
{
    if (!call.request.hasHeader("Idempotency-Key"))
        return route.handler(call);
    const RepeatKey key = keyOf(call);
    try {
        return answerOrRepeat(route, call, key);
    } catch (const DatabaseError &error) {
        // The change may have been stored although nobody came to know: the key tells.
        if (error.kind() != DatabaseError::Kind::Lost)
            throw;
        return answerOrRepeat(route, call, key);
    }
}

} // namespace Zel::Service
