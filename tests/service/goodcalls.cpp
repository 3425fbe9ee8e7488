// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/goodcalls.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

#include <algorithm>
#include <stdexcept>

using namespace Zel;

namespace ZelTest {

namespace {

constexpr qint64 mine = 1001;
constexpr qint64 theirs = 1002;
const QString maja = QStringLiteral("maja");

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

/// The tables of a database.
QStringList tablesOf(QSqlDatabase database)
{
    QStringList tables = database.tables();
    tables.removeIf([](const QString &name) { return name.startsWith(QLatin1String("sqlite_")); });
    tables.sort();
    return tables;
}

} // namespace

QByteArray GoodCall::bodyText() const
{
    return body.isEmpty() ? QByteArray() : QJsonDocument(body).toJson(QJsonDocument::Compact);
}

GoodCalls::GoodCalls(FilledDatabase filled)
    : m_api(std::move(filled))
    , m_connection(QStringLiteral("rows of ") + m_api.database().address().file +
                   m_api.database().address().database)
{
    const DatabaseAddress &address = m_api.database().address();
    const bool isFile = address.engine == DatabaseAddress::Engine::Sqlite;
    QSqlDatabase rows = QSqlDatabase::addDatabase(
        isFile ? QStringLiteral("QSQLITE") : QStringLiteral("QPSQL"), m_connection);
    rows.setDatabaseName(isFile ? address.file : address.database);
    rows.setHostName(address.host);
    rows.setPort(address.port);
    rows.setUserName(address.user);
    rows.setPassword(address.password);
    rows.setConnectOptions(isFile ? QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000") : address.options);
    if (!rows.open())
        throw std::runtime_error("the rows cannot be read");
    m_expired = bearer(mine);
    m_api.advance(13LL * 60 * 60 * 1000); // longer than a session sleeps
    addDisabledPerson();
    m_ended = bearer(mine);
    send("DELETE", "/v1/sessions/current", m_ended, QByteArray());
    m_theirs = fill(theirs, '2');
    m_mine = fill(mine, '1');
    m_token = bearer(mine);
}

GoodCalls::~GoodCalls()
{
    QSqlDatabase::removeDatabase(m_connection);
}

void GoodCalls::addDisabledPerson()
{
    const QString name = QStringLiteral("disabled");
    const SqlText disable("UPDATE app_user SET disabled = $2 WHERE user_id = $1");
    const QString hash = m_api.store().hasher.hash(QStringLiteral("sample-disabled"));
    m_api.database().tx([&] {
        const User user = m_api.store().users.add(name, name, hash);
        m_api.database().exec(disable, {user.userId, true});
    });
}

QByteArray GoodCalls::bearer(qint64 account) const
{
    return "Bearer " + m_api.token(maja, account).toLatin1();
}

QByteArray GoodCalls::tokenWithoutAccount() const
{
    return bearer(0);
}

GoodCalls::Ids GoodCalls::fill(qint64 account, char digit)
{
    // Ids that nothing else in an answer looks like.
    int count = 0;
    const auto next = [&] {
        return QByteArray(8, digit) + "-0000-4000-8000-" +
               QByteArray::number(++count).rightJustified(12, '0');
    };
    Ids ids;
    for (const char *kind :
         {"project", "deployment", "question", "survey", "item", "choice", "poll", "vote", "theme"})
        ids.insert(kind, next());
    Store &store = m_api.store();
    const QString userId = store.users.find(maja)->userId;
    m_api.database().tx([&] {
        Project project;
        project.guid = QString::fromLatin1(ids.value("project"));
        project.typeId = store.projects.types(account).first().typeId;
        project.name = QStringLiteral("p");
        project.createdById = userId;
        store.projects.add(account, project);
        Theme theme;
        theme.accountId = account;
        theme.guid = QString::fromLatin1(ids.value("theme"));
        theme.name = QStringLiteral("t");
        store.themes.add(theme);
        RecordEntry entry;
        entry.label = QStringLiteral("l");
        store.dataRecords.storeImported(account, theme.guid, {entry});
    });
    fillDeployment(account, ids);
    const QByteArray token = bearer(account);
    ids.insert("asset", newAsset(token));
    ids.insert("upload", newUpload(token, "bytes").mid(12));
    ids.insert("dropped", newUpload(token, "bytes").mid(12));
    ids.insert("folder", QByteArray::number(send("POST", "/v1/asset-folders", token,
                                                 R"({"parentId":0,"name":"empty"})")
                                                .json()
                                                .value(QLatin1String("folderId"))
                                                .toInt()));
    return ids;
}

void GoodCalls::fillDeployment(qint64 account, const Ids &ids)
{
    Store &store = m_api.store();
    const auto id = [&ids](const char *kind) { return QString::fromLatin1(ids.value(kind)); };
    const QString guid = id("deployment");
    m_api.database().tx([&] {
        store.deployments.put(account, {guid, id("project"), QStringLiteral("d"), 1});
        store.deployments.setKey(account, guid,
                                 QString::fromLatin1(keyOf(ids.value("deployment"))));
    });
    const DeploymentRef ref = store.deployments.find(account, guid).value();
    m_api.database().tx([&] {
        store.polls.define(ref, {{id("poll"), {}, false, {{id("vote"), {}, 0}}}});
        store.surveys.define(
            ref, {{id("survey"),
                   QStringLiteral("s"),
                   {{id("item"), {}, false, 1, {{id("choice"), {}, false, 1, 1, 0}}}}}});
    });
    AskedQuestion question;
    question.guid = id("question");
    question.userId = QStringLiteral("u");
    question.text = QStringLiteral("q");
    question.status = QStringLiteral("SUBMITTED");
    store.questions.take(ref, {question});
}

QByteArray GoodCalls::newUpload(const QByteArray &bytes) const
{
    return newUpload(m_token, bytes);
}

QByteArray GoodCalls::newUpload(const QByteArray &token, const QByteArray &bytes) const
{
    const HttpReply reply =
        send("POST", "/v1/uploads", token,
             R"({"name":"a","detail":"","folderId":0,"files":[{"name":"a.txt","size":)" +
                 QByteArray::number(bytes.size()) + "}]}");
    if (reply.status != 201)
        throw std::runtime_error(reply.body.toStdString());
    return "/v1/uploads/" + reply.json().value(QLatin1String("uploadId")).toString().toLatin1();
}

QByteArray GoodCalls::checksums(const QByteArray &bytes)
{
    return R"({"checksums":[")" +
           QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex() + R"("]})";
}

QByteArray GoodCalls::newAsset(const QByteArray &token) const
{
    const QByteArray upload = newUpload(token, "content");
    send("PUT", upload + "/files/0?offset=0", token, "content");
    const HttpReply reply = send("POST", upload + "/commit", token, checksums("content"));
    if (reply.status != 201)
        throw std::runtime_error(reply.body.toStdString());
    return reply.json().value(QLatin1String("guid")).toString().toLatin1();
}

bool GoodCalls::knows(const Service::Route &route) const
{
    return find(route).has_value();
}

GoodCall GoodCalls::of(const Service::Route &route) const
{
    const auto call = find(route);
    if (!call)
        throw std::runtime_error("no good call of this route is known");
    return *call;
}

bool GoodCalls::isOnlyAnAddress(const Service::Route &route) const
{
    return route.pattern.startsWith("/a/") || route.pattern.startsWith("/t/") ||
           route.pattern.startsWith("/p/");
}

std::optional<GoodCall> GoodCalls::find(const Service::Route &route) const
{
    struct Known
    {
        const char *query = "";
        QJsonObject body = {};
    };

    static const QMap<QByteArray, Known> known{
        {"POST /v1/sessions",
         {"", object(R"({"user":"maja","password":"sample-maja","appName":"t"})")}},
        {"PUT /v1/sessions/current/account", {"", object(R"({"accountId":"1001"})")}},
        {"GET /v1/projects", {"?type=webcast"}},
        {"POST /v1/projects",
         {"", object(R"({"guid":"33333333-0000-4000-8000-000000000001","name":"n",)"
                     R"("typeID":"webcast","description":"","eventDate":5})")}},
        {"GET /v1/deployments/{guid}/participants", {"?from=0&to=1"}},
        {"GET /v1/deployments/{guid}/participants/count", {"?from=0&to=1"}},
        {"GET /v1/deployments/{guid}/registrants", {"?from=0&to=1"}},
        {"GET /v1/deployments/{guid}/statistics/{name}", {"?from=0&to=1"}},
        {"GET /v1/deployments/{guid}/page-views", {"?from=0&to=1"}},
        {"GET /v1/deployments/{guid}/questions", {"?from=0&to=1"}},
        {"GET /v1/deployments/{guid}/page-views/count",
         {"?attribute=BrowserType&op==&value=IE&from=0&to=1"}},
        {"PUT /v1/questions/{guid}", {"", object(R"({"answer":"a","question":"q"})")}},
        {"PUT /v1/questions/{guid}/status", {"", object(R"({"status":"STAGED"})")}},
        {"GET /v1/themes", {"?scope=full"}},
        {"GET /v1/templates", {"?key=a&version=b"}},
        {"PUT /v1/themes/{guid}/data-record",
         {"", object(R"({"version":1,"values":[{"text":"t","guid":"","assetDependencies":""}]})")}},
        {"GET /v1/asset-folders", {"?parent=0"}},
        {"POST /v1/asset-folders", {"", object(R"({"parentId":0,"name":"new"})")}},
        {"GET /v1/asset-folders/{id}/assets", {"?formats=&name=&first=0&count=0"}},
        {"POST /v1/uploads",
         {"", object(R"({"name":"a","detail":"","folderId":0,)"
                     R"("files":[{"name":"a.txt","size":5}]})")}},
        {"PUT /v1/uploads/{id}/files/{n}", {"?offset=0"}},
        {"POST /v1/deployments/{guid}/page-views", {"", object(R"({"rows":[]})")}},
        {"POST /v1/deployments/{guid}/registrations", {"", object(R"({"rows":[]})")}},
        {"POST /v1/deployments/{guid}/questions", {"", object(R"({"rows":[]})")}},
        {"POST /v1/deployments/{guid}/question-states", {"", object(R"({"rows":[]})")}},
        {"POST /v1/deployments/{guid}/votes", {"", object(R"({"rows":[]})")}},
        {"POST /v1/deployments/{guid}/responses", {"", object(R"({"rows":[]})")}},
    };
    const QByteArray name = route.method + ' ' + route.pattern;
    // By what stands before them.
    const QList<std::pair<QByteArray, QByteArray>> places{
        {"/v1/projects/{guid}", "/v1/projects/" + m_mine.value("project")},
        {"/v1/deployments/{guid}", "/v1/deployments/" + m_mine.value("deployment")},
        {"/v1/questions/{guid}", "/v1/questions/" + m_mine.value("question")},
        {"/surveys/{survey}", "/surveys/" + m_mine.value("survey")},
        {"/statistics/{name}", "/statistics/TotalPageHits"},
        {"/v1/themes/{guid}", "/v1/themes/" + m_mine.value("theme")},
        {"/v1/asset-folders/{id}", "/v1/asset-folders/" + m_mine.value("folder")},
        {"/v1/assets/{guid}", "/v1/assets/" + m_mine.value("asset")},
        {"/v1/uploads/{id}",
         "/v1/uploads/" + m_mine.value(route.method == "DELETE" ? "dropped" : "upload")},
        {"/files/{n}", "/files/0"},
        {"/a/{guid}/{n}/{name}", "/a/" + m_mine.value("asset") + "/1/a"},
        {"/a/{guid}/{name}", "/a/" + m_mine.value("asset") + "/a"},
        {"/t/{guid}/{size}", "/t/" + m_mine.value("asset") + "/64"},
        {"/p/{guid}/{version}", "/p/" + m_mine.value("theme") + "/1"},
        {"/Components/{path*}", "/Components/studio.css"},
    };
    GoodCall call{route.method, route.pattern, QByteArray(), known.value(name).body};
    for (const auto &[place, value] : places)
        call.target.replace(place, value);
    if (name == "POST /v1/uploads/{id}/commit")
        call.body = QJsonDocument::fromJson(checksums("bytes")).object();
    const bool takesBody = route.method == "POST" || route.method == "PUT";
    const bool isPiece = route.pattern.startsWith("/v1/uploads/") && route.stream;
    if (call.target.contains('{') || (takesBody && call.body.isEmpty() && !isPiece))
        return std::nullopt;
    call.target += known.value(name).query;
    if (route.access != Service::Access::Public)
        call.authorization = m_token;
    else if (route.pattern.startsWith("/v1/deployments/"))
        call.authorization = "Deployment " + keyOf(deployment());
    return call;
}

HttpReply GoodCalls::send(const GoodCall &call) const
{
    const bool isPiece = call.method == "PUT" && call.body.isEmpty();
    const bool endsSession = call.target == "/v1/sessions/current";
    return send(call.method, call.target, endsSession ? bearer(mine) : call.authorization,
                isPiece ? QByteArray("bytes") : call.bodyText());
}

HttpReply GoodCalls::send(const QByteArray &method, const QByteArray &target,
                          const QByteArray &authorization, const QByteArray &body) const
{
    QByteArrayList headers;
    if (!authorization.isEmpty())
        headers << "Authorization: " + authorization;
    return HttpProbe::request(m_api.port(), method, target, body, headers);
}

void GoodCalls::breakOff(const QByteArray &bytes) const
{
    HttpProbe probe(m_api.port());
    probe.send(bytes);
    probe.abort();
}

QList<std::pair<QByteArray, QByteArray>> GoodCalls::idsOfBoth() const
{
    QList<std::pair<QByteArray, QByteArray>> ids;
    for (auto one = m_mine.begin(); one != m_mine.end(); ++one) {
        if (one.key() != "folder") // a number, which every account has
            ids.append({one.value(), m_theirs.value(one.key())});
    }
    return ids;
}

QByteArray GoodCalls::checksum()
{
    QSqlDatabase connection = QSqlDatabase::database(m_connection);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &table : tablesOf(connection)) {
        if (table == QLatin1String("sign_in_attempt"))
            continue;
        QSqlQuery query(connection);
        query.exec(QStringLiteral("SELECT * FROM %1").arg(table));
        QByteArrayList rows;
        while (query.next()) {
            QByteArray row;
            for (int column = 0; column < query.record().count(); ++column) {
                if (query.record().fieldName(column) != QLatin1String("seen_at"))
                    row += query.value(column).toByteArray() + '\x1f';
            }
            rows << row;
        }
        std::sort(rows.begin(), rows.end());
        hash.addData(table.toUtf8() + '\n' + rows.join('\n') + '\n');
    }
    return hash.result().toHex();
}

QByteArray GoodCalls::comparable(const HttpReply &reply)
{
    QByteArray text = QByteArray::number(reply.status) + reply.body;
    for (auto it = reply.headers.begin(); it != reply.headers.end(); ++it) {
        if (it.key() != "date")
            text += '\n' + it.key() + ": " + it.value();
    }
    return text.replace(reply.headers.value("x-request-id"), "REQUEST");
}

} // namespace ZelTest
