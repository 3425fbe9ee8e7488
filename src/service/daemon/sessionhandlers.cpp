// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/jsonwriter.h"
#include "service/daemon/problem.h"

#include <algorithm>

namespace Zel::Service {

namespace {

constexpr qsizetype longestAppName = 256;
constexpr qint64 msPerSecond = 1000;

/// Larger than what the store accepts, so that a name or password that is too long gets the same
/// answer as any other wrong one.
constexpr qsizetype longestCredential = 64 * 1024;

void refuseWhileThrottled(const Call &call, const QString &user)
{
    const qint64 wait = call.store.throttle.waitMs(user, call.request.peerAddress);
    if (wait <= 0)
        return;
    const qint64 seconds = (wait + msPerSecond - 1) / msPerSecond;
    throw Problem(429, QByteArrayLiteral("too-many-attempts"),
                  QStringLiteral("Too many attempts to sign in. Wait %1 seconds.").arg(seconds),
                  {{QByteArrayLiteral("Retry-After"), QByteArray::number(seconds)}});
}

/// The number in plain decimal digits; 0, which is no account, for anything else.
qint64 accountNumber(const QString &text)
{
    const bool digits = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
    return digits ? text.toLongLong() : 0;
}

} // namespace

HttpResponse health(const Call &)
{
    return jsonResponse(QByteArrayLiteral("{\"status\":\"ok\"}"));
}

HttpResponse createSession(const Call &call)
{
    JsonFields fields(call.request.body);
    const QString name = fields.text(QStringLiteral("user"), longestCredential);
    const QString password = fields.text(QStringLiteral("password"), longestCredential);
    const QString appName = fields.text(QStringLiteral("appName"), longestAppName);
    fields.expectNoMore();
    if (appName.isEmpty())
        throw Problem::invalid(QStringLiteral("The field \"appName\" must not be empty."));

    refuseWhileThrottled(call, name);
    const auto user = call.store.users.verify(name, password);
    if (!user) {
        call.store.throttle.noteFailure(name, call.request.peerAddress);
        throw Problem(401, QByteArrayLiteral("bad-credentials"),
                      QStringLiteral("The user name or the password is wrong."));
    }
    call.store.throttle.noteSuccess(name, call.request.peerAddress);
    const NewSession session = call.store.sessions.create(user->userId, appName);
    JsonWriter json;
    json.beginObject().key("token").text(session.token);
    json.key("expiresAt").integer(session.expiresAt).endObject();
    return jsonResponse(json.json(), 201);
}

HttpResponse endSession(const Call &call)
{
    call.store.sessions.end(call.session);
    return noContent();
}

HttpResponse chooseAccount(const Call &call)
{
    JsonFields fields(call.request.body);
    // Whatever is no number of an account is one that nobody can work for.
    const QString text = fields.text(QStringLiteral("accountId"), jsonBodyLimit);
    fields.expectNoMore();
    if (!call.store.sessions.bindAccount(call.session, accountNumber(text)))
        throw Problem(403, QByteArrayLiteral("account-refused"),
                      QStringLiteral("You cannot work for this account."));
    return noContent();
}

HttpResponse listAccounts(const Call &call)
{
    JsonWriter json;
    json.beginObject().key("accounts").beginArray();
    const QList<Account> accounts = call.store.accounts.ofUser(call.session.userId);
    for (const Account &account : accounts) {
        json.beginObject().key("accountID").integer(account.accountId);
        json.key("accountName").text(account.name).endObject();
    }
    json.endArray().endObject();
    return jsonResponse(json.json());
}

} // namespace Zel::Service
