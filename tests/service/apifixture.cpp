// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/apifixture.h"

#include "tests/interface/interfacecheck.h"

#include <QJsonDocument>
#include <QTest>

namespace ZelTest {

namespace {

/// What does not fit the published interface; nothing where there was no answer.
QString interfaceFaults(const QByteArray &method, const QByteArray &target, const QByteArray &body,
                        const HttpReply &reply)
{
    static InterfaceCheck check;
    if (reply.status == 0)
        return {};
    const qsizetype mark = target.indexOf('?');
    const QByteArray path = mark < 0 ? target : target.left(mark);
    const QByteArray query = mark < 0 ? QByteArray() : target.mid(mark + 1);
    CheckedCall call{method, path, query, body, reply.status, {}, reply.body};
    for (auto it = reply.headers.begin(); it != reply.headers.end(); ++it)
        call.headers << std::pair{it.key(), it.value()};
    return check.faultsOf(call).join(QLatin1Char('\n'));
}

} // namespace

ApiFixture::ApiFixture(FilledDatabase filled, const Zel::ThumbnailMaker &thumbnailMaker)
    : m_files(std::move(filled.files))
    , m_now(TestDatabases::filledAt)
    , m_database(filled.address)
    , m_store(
          m_database, Zel::PasswordHasher::Cost::Minimal, [this] { return m_now.load(); },
          {filled.blobs, m_files->path()}, thumbnailMaker)
    , m_api(m_store)
    , m_server(options())
{
    m_api.monitor().setServer([this] { return m_server.figures(); });
    m_server.start();
}

Zel::Service::HttpServerOptions ApiFixture::options() const
{
    Zel::Service::HttpServerOptions result;
    result.workers = workers;
    result.plan = [this](const Zel::Service::HttpRequest &head) { return m_api.plan(head); };
    result.log = [this](const Zel::Service::HttpLogEntry &entry) { m_api.monitor().count(entry); };
    return result;
}

HttpReply ApiFixture::request(const QByteArray &method, const QByteArray &target,
                              const QByteArray &body, const QByteArrayList &headers) const
{
    const HttpReply reply = HttpProbe::request(port(), method, target, body, headers);
    const QString faults = interfaceFaults(method, target, body, reply);
    if (!faults.isEmpty())
        QTest::qFail(qPrintable(faults), __FILE__, __LINE__);
    return reply;
}

HttpReply ApiFixture::call(const QByteArray &method, const QByteArray &target, const QString &token,
                           const QByteArray &body) const
{
    QByteArrayList headers;
    if (!token.isEmpty())
        headers << "Authorization: Bearer " + token.toUtf8();
    return request(method, target, body, headers);
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
