// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/api.h"
#include "service/daemon/httpserver.h"
#include "service/store/store.h"
#include "tests/service/httpprobe.h"
#include "tests/service/testdatabases.h"

#include <QJsonObject>
#include <QTemporaryDir>

#include <atomic>
#include <memory>

namespace ZelTest {

/// The service's HTTP interface over a database with the sample workspace, in this process, with a
/// clock that only the test moves.
class ApiFixture
{
public:
    /// How many calls are handled at once, however many processors there are.
    static constexpr int workers = 8;

    explicit ApiFixture(FilledDatabase filled,
                        const Zel::ThumbnailMaker &thumbnailMaker = Zel::Thumbnails::decodeFile);

    quint16 port() const { return m_server.port(); }

    Zel::Store &store() { return m_store; }

    Zel::Database &database() { return m_database; }

    Zel::Service::Monitor &monitor() const { return m_api.monitor(); }

    void advance(qint64 milliseconds) { m_now += milliseconds; }

    qint64 now() const { return m_now; }

    /// One request. Here, and so in all that follow, the test fails when the answer, or a request
    /// that was taken, does not fit the interface that the service publishes.
    HttpReply request(const QByteArray &method, const QByteArray &target,
                      const QByteArray &body = QByteArray(),
                      const QByteArrayList &headers = {}) const;

    /// One call; `token` empty for none.
    HttpReply call(const QByteArray &method, const QByteArray &target, const QString &token,
                   const QByteArray &body = QByteArray()) const;
    HttpReply call(const QByteArray &method, const QByteArray &target, const QString &token,
                   const QJsonObject &body) const;

    /// The folder of the bytes of assets.
    QString files() const { return m_files->path(); }

    HttpReply signIn(const QString &user, const QString &password) const;
    /// The token of a sample person ("maja", "tomas", "ines"); with an account chosen unless 0.
    QString token(const QString &user, qint64 account = 0) const;

    /// How many rows each table has, to see that nothing has changed.
    QString rowCounts();

private:
    Zel::Service::HttpServerOptions options() const;

    const std::unique_ptr<QTemporaryDir> m_files;
    std::atomic<qint64> m_now;
    Zel::Database m_database;
    Zel::Store m_store;
    Zel::Service::Api m_api;
    Zel::Service::HttpServer m_server;
};

} // namespace ZelTest
