// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/apifixture.h"

#include "service/store/migrations.h"
#include "service/store/workspaceimport.h"
#include "tests/contract/serviceprocess.h"

#include <QJsonDocument>

namespace ZelTest {

namespace {

constexpr qint64 start = 1'780'000'000'000; // 2026-05-28

/// So that the database is ready before the store is made.
Zel::Database &migrated(Zel::Database &database)
{
    Zel::Migrations(database).migrate();
    return database;
}

} // namespace

ApiFixture::ApiFixture(const Zel::DatabaseAddress &address,
                       const Zel::ThumbnailMaker &thumbnailMaker, Zel::BlobKind blobs)
    : m_now(start)
    , m_database(address, Zel::Database::Missing::Create)
    , m_store(
          migrated(m_database), Zel::PasswordHasher::Cost::Minimal, [this] { return m_now.load(); },
          {blobs, m_files.path()}, thumbnailMaker)
    , m_api(m_store)
    , m_server(options())
{
    importWorkspace(m_store, Zel::WorkspaceFiles::read(ServiceProcess::sampleWorkspace()));
    m_server.start();
}

Zel::Service::HttpServerOptions ApiFixture::options() const
{
    Zel::Service::HttpServerOptions result;
    result.plan = [this](const Zel::Service::HttpRequest &head) { return m_api.plan(head); };
    return result;
}

HttpReply ApiFixture::call(const QByteArray &method, const QByteArray &target, const QString &token,
                           const QByteArray &body) const
{
    QByteArrayList headers;
    if (!token.isEmpty())
        headers << "Authorization: Bearer " + token.toUtf8();
    return HttpProbe::request(port(), method, target, body, headers);
}

HttpReply ApiFixture::call(const QByteArray &method, const QByteArray &target, const QString &token,
                           const QJsonObject &body) const
{
    return call(method, target, token, QJsonDocument(body).toJson());
}

HttpReply ApiFixture::signIn(const QString &user, const QString &password) const
{
    return call("POST", "/v1/sessions", QString(),
                QJsonObject{{QStringLiteral("user"), user},
                            {QStringLiteral("password"), password},
                            {QStringLiteral("appName"), QStringLiteral("test")}});
}

QString ApiFixture::token(const QString &user, qint64 account) const
{
    const QString token = signIn(user, QStringLiteral("sample-") + user)
                              .json()
                              .value(QLatin1String("token"))
                              .toString();
    if (account != 0)
        call("PUT", "/v1/sessions/current/account", token,
             QJsonObject{{QStringLiteral("accountId"), QString::number(account)}});
    return token;
}

QString ApiFixture::rowCounts()
{
    QStringList counts;
    for (const char *table :
         {"app_user", "account", "membership", "session", "project_type", "project"})
        counts << m_database
                      .runNative(
                          QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1String(table)))
                      .toString();
    return counts.join(QLatin1Char(' '));
}

} // namespace ZelTest
