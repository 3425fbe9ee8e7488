// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/service/apifixture.h"

#include <QMap>

#include <optional>

namespace ZelTest {

/// A call that the service does.
struct GoodCall
{
    QByteArray method;
    QByteArray target;
    QByteArray authorization; ///< of the header; empty for none
    QJsonObject body;         ///< empty for none

    QByteArray path() const { return target.split('?').constFirst(); }

    /// Null for a call without one.
    QByteArray bodyText() const;
};

/// The service's interface over a database in which there is something to call every route for, and
/// the same in another account.
class GoodCalls
{
public:
    explicit GoodCalls(FilledDatabase filled);
    ~GoodCalls();
    Q_DISABLE_COPY_MOVE(GoodCalls)

    /// Whether there is a good call of a route. A new one that takes no places and no body needs
    /// none of its own.
    bool knows(const Zel::Service::Route &route) const;
    GoodCall of(const Zel::Service::Route &route) const;
    /// Whether a route is that of addresses with a signature, which are made by other routes.
    bool isOnlyAnAddress(const Zel::Service::Route &route) const;

    HttpReply send(const GoodCall &call) const;
    HttpReply send(const QByteArray &method, const QByteArray &target,
                   const QByteArray &authorization, const QByteArray &body) const;
    /// Sends bytes and ends the connection before an answer; returns when the service has noticed.
    void breakOff(const QByteArray &bytes) const;

    quint16 port() const { return m_api.port(); }

    qint64 hashes() { return m_api.store().hasher.hashes(); }

    /// Of a session with an account, which only tests of the session's own end.
    QByteArray token() const { return m_token; }

    QByteArray tokenWithoutAccount() const;

    QByteArray expiredToken() const { return m_expired; }

    QByteArray endedToken() const { return m_ended; }

    QByteArray deployment() const { return m_mine.value("deployment"); }

    /// The key of the deployment of the other account.
    QByteArray otherKey() const { return "Deployment " + keyOf(m_theirs.value("deployment")); }

    /// What the two accounts have, one of each kind by its id.
    QList<std::pair<QByteArray, QByteArray>> idsOfBoth() const;

    static QByteArray unknownGuid() { return "99999999-9999-4999-8999-999999999999"; }

    /// Reserves an upload of one file; the address of it.
    QByteArray newUpload(const QByteArray &bytes) const;
    /// The body that commits an upload of one file.
    static QByteArray checksums(const QByteArray &bytes);

    /// Of all rows of all tables, but for what calls leave behind whatever becomes of them: when a
    /// session was last seen and who failed to sign in.
    QByteArray checksum();

    /// An answer without what differs from call to call.
    static QByteArray comparable(const HttpReply &reply);

private:
    using Ids = QMap<QByteArray, QByteArray>;

    static QByteArray keyOf(const QByteArray &deployment) { return deployment + "-key"; }

    void addDisabledPerson();
    Ids fill(qint64 account, char digit);
    void fillDeployment(qint64 account, const Ids &ids);
    QByteArray newUpload(const QByteArray &token, const QByteArray &bytes) const;
    QByteArray newAsset(const QByteArray &token) const;
    QByteArray bearer(qint64 account) const;
    std::optional<GoodCall> find(const Zel::Service::Route &route) const;

    ApiFixture m_api;
    const QString m_connection; ///< of its own, to look at the rows
    QByteArray m_expired;
    QByteArray m_ended;
    QByteArray m_token;
    Ids m_mine;
    Ids m_theirs;
};

} // namespace ZelTest
