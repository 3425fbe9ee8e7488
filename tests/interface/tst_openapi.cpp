// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/openapidocument.h"
#include "service/daemon/openapischemas.h"
#include "service/daemon/problemcodes.h"
#include "tests/interface/jsonschemacheck.h"
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <functional>

using namespace Zel::Service;
using ZelTest::HttpProbe;
using ZelTest::HttpReply;

namespace {

const QString docs = QStringLiteral(ZEL_SOURCE_DIR "/docs/service.md");

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString nameOf(const Route &route)
{
    return QString::fromLatin1(route.method + ' ' + route.pattern);
}

/// "GET /v1/projects/{}/published": an address without the names of its places.
QString withoutNames(QString address)
{
    static const QRegularExpression place(QStringLiteral("\\{[^}]*\\}"));
    return address.replace(place, QStringLiteral("{}"));
}

/// What all "$ref" in a document name.
QSet<QString> referencesIn(const QJsonValue &value)
{
    QSet<QString> found;
    if (value.isArray()) {
        for (const QJsonValue &one : value.toArray())
            found += referencesIn(one);
    }
    const QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.key() == QLatin1String("$ref") && it.value().isString())
            found << it.value().toString();
        else
            found += referencesIn(it.value());
    }
    return found;
}

QJsonValue memberAt(const QJsonObject &document, const QString &reference)
{
    QJsonValue found = document;
    for (const QString &part : reference.mid(2).split(QLatin1Char('/')))
        found = found.toObject().value(part);
    return found;
}

using CodeOfStatus = std::pair<QString, int>;

/// Every problem that the sources of the service make, in all the ways they write one.
QSet<CodeOfStatus> problemsInSources()
{
    static const QRegularExpression made(
        QStringLiteral("Problem\\(\\s*(\\d{3}),\\s*(?:QByteArrayLiteral\\()?\"([a-z-]+)\""));
    static const QRegularExpression written(
        QStringLiteral("key\\(\"code\"\\)\\s*\\.text\\(u\"([a-z-]+)\"\\)"));
    QSet<CodeOfStatus> found;
    QDirIterator files(QStringLiteral(ZEL_SOURCE_DIR "/src/service/daemon"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files);
    while (files.hasNext()) {
        const QString text = QString::fromUtf8(readFile(files.next()));
        for (auto matches = made.globalMatch(text); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            found << CodeOfStatus{match.captured(2), match.captured(1).toInt()};
        }
        for (auto matches = written.globalMatch(text); matches.hasNext();) {
            const QString code = matches.next().captured(1);
            found << CodeOfStatus{code, statusOf(code.toLatin1())};
        }
    }
    return found;
}

/// The calls that docs/service.md tells people of; "..." stands for a deployment.
QSet<QString> callsInDocs()
{
    static const QRegularExpression call(
        QStringLiteral("`(GET|POST|PUT|DELETE) (\\.\\.\\.)?(/[^?` ]*)"));
    QSet<QString> found;
    const QString text = QString::fromUtf8(readFile(docs));
    for (auto matches = call.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString start =
            match.capturedLength(2) > 0 ? QStringLiteral("/v1/deployments/{guid}") : QString();
        found << withoutNames(match.captured(1) + QLatin1Char(' ') + start + match.captured(3));
    }
    return found;
}

QString listOf(QSet<QString> names)
{
    QStringList sorted(names.cbegin(), names.cend());
    sorted.sort();
    return sorted.join(QLatin1String(", "));
}

} // namespace

/// The document of the interface against the routes, the sources and the docs.
class OpenApiTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isMadeOfWhatOpenApiKnows();
    void describesEveryRoute_data();
    void describesEveryRoute();
    void namesEveryRouteOnce();
    void describesNothingElse();
    void tellsAboutEveryTopic();
    void usesEverySchemaAndLeadsNowhereElse();
    void requiresOnlyPropertiesThatAreThere();
    void listsEveryProblemOfTheSources();
    void listsNoProblemThatNobodyMakes();
    void saysWhoMayCall_data();
    void saysWhoMayCall();
    void isServed();
    void isToldToPeopleInFull();

private:
    const QJsonObject m_document = openApiDocument(Api::routes());
};

void OpenApiTest::isMadeOfWhatOpenApiKnows()
{
    const QJsonObject schema =
        QJsonDocument::fromJson(
            readFile(QStringLiteral(ZEL_SOURCE_DIR "/tests/interface/openapi31.schema.json")))
            .object();
    QVERIFY(!schema.isEmpty());
    const ZelTest::JsonSchemaCheck check(schema);
    const QStringList faults = check.faultsOf(QJsonDocument(m_document).toJson());
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join(QLatin1Char('\n'))));
}

void OpenApiTest::describesEveryRoute_data()
{
    QTest::addColumn<qsizetype>("index");
    for (qsizetype i = 0; i < Api::routes().size(); ++i)
        QTest::newRow(qPrintable(nameOf(Api::routes().at(i)))) << i;
}

void OpenApiTest::describesEveryRoute()
{
    QFETCH(qsizetype, index);
    const Route &route = Api::routes().at(index);
    QVERIFY(!route.text.id.isEmpty());
    QVERIFY(!route.text.summary.isEmpty());
    QVERIFY(!route.text.summary.endsWith('.'));
    QVERIFY(!route.text.answers.isEmpty());
    QByteArrayList places;
    for (const RouteParameter &place : route.text.places) {
        places << place.name;
        QVERIFY(!place.says.isEmpty());
    }
    QByteArrayList pattern;
    for (const QByteArray &part : route.pattern.split('/')) {
        if (part.startsWith('{'))
            pattern << part.mid(1).chopped(1).replace("*", "");
    }
    QCOMPARE(places, pattern);
    const bool takesBody = route.method == "POST" || route.method == "PUT";
    // Commits and the like always have one; only what is read with GET or deleted has none.
    QCOMPARE(!route.text.bodyType.isEmpty(), takesBody);
    for (const RouteRefusal &refusal : route.text.refusals)
        QVERIFY2(statusOf(refusal.code) != 0, refusal.code.constData());
}

void OpenApiTest::namesEveryRouteOnce()
{
    QSet<QByteArray> ids;
    QSet<QString> names;
    for (const Route &route : Api::routes()) {
        QVERIFY2(!ids.contains(route.text.id), route.text.id.constData());
        QVERIFY2(!names.contains(nameOf(route)), qPrintable(nameOf(route)));
        ids << route.text.id;
        names << nameOf(route);
    }
}

void OpenApiTest::describesNothingElse()
{
    QSet<QString> routes;
    for (const Route &route : Api::routes())
        routes << nameOf(route).replace(QLatin1String("*}"), QLatin1String("}"));
    QSet<QString> described;
    const QJsonObject paths = m_document.value(QLatin1String("paths")).toObject();
    for (auto path = paths.begin(); path != paths.end(); ++path) {
        const QJsonObject methods = path.value().toObject();
        for (const QString &method : methods.keys())
            described << method.toUpper() + QLatin1Char(' ') + path.key();
    }
    QCOMPARE(listOf(described), listOf(routes));
}

void OpenApiTest::tellsAboutEveryTopic()
{
    QSet<QString> told;
    const QJsonArray tags = m_document.value(QLatin1String("tags")).toArray();
    for (const QJsonValue &tag : tags)
        told << tag.toObject().value(QLatin1String("name")).toString();
    QSet<QString> used;
    for (const Route &route : Api::routes())
        used << QString::fromLatin1(route.text.topic);
    QCOMPARE(listOf(told), listOf(used));
}

void OpenApiTest::usesEverySchemaAndLeadsNowhereElse()
{
    const QSet<QString> references = referencesIn(m_document);
    for (const QString &reference : references)
        QVERIFY2(memberAt(m_document, reference).isObject(), qPrintable(reference));
    const QJsonObject components = m_document.value(QLatin1String("components")).toObject();
    for (const char *kind : {"schemas", "headers", "responses"}) {
        const QJsonObject all = components.value(QLatin1String(kind)).toObject();
        QVERIFY(!all.isEmpty());
        for (const QString &name : all.keys()) {
            const QString reference =
                QStringLiteral("#/components/%1/%2").arg(QLatin1String(kind), name);
            QVERIFY2(references.contains(reference), qPrintable(reference + " is used nowhere"));
        }
    }
}

void OpenApiTest::requiresOnlyPropertiesThatAreThere()
{
    int seen = 0;
    const std::function<void(const QJsonValue &)> visit = [&](const QJsonValue &value) {
        if (value.isArray()) {
            for (const QJsonValue &one : value.toArray())
                visit(one);
        }
        const QJsonObject object = value.toObject();
        const QJsonValue required = object.value(QLatin1String("required"));
        const QJsonObject properties = object.value(QLatin1String("properties")).toObject();
        for (const QJsonValue &name : required.toArray()) {
            ++seen;
            QVERIFY2(properties.contains(name.toString()), qPrintable(name.toString()));
        }
        for (const QJsonValue &member : object)
            visit(member);
    };
    visit(m_document.value(QLatin1String("components")));
    QVERIFY(seen > 100);
}

void OpenApiTest::listsEveryProblemOfTheSources()
{
    const QSet<CodeOfStatus> made = problemsInSources();
    QVERIFY(made.size() > 20);
    for (const auto &[code, status] : made) {
        QVERIFY2(statusOf(code.toLatin1()) != 0, qPrintable(code + " is not in the list"));
        QCOMPARE(statusOf(code.toLatin1()), status);
    }
}

void OpenApiTest::listsNoProblemThatNobodyMakes()
{
    const QSet<CodeOfStatus> made = problemsInSources();
    QSet<QByteArray> answered;
    for (const Route &route : Api::routes()) {
        for (const RouteRefusal &refusal : refusalsOf(route))
            answered << refusal.code;
    }
    for (const ProblemCode &problem : problemCodes()) {
        QVERIFY2(made.contains({QString::fromLatin1(problem.code), problem.status}), problem.code);
        QVERIFY2(problem.occurs == Occurs::OutsideOfRoutes || answered.contains(problem.code),
                 problem.code);
    }
}

void OpenApiTest::saysWhoMayCall_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QString>("scheme");
    QTest::newRow("anyone") << "/v1/sessions"
                            << "post"
                            << "";
    QTest::newRow("session") << "/v1/accounts"
                             << "get"
                             << "session";
    QTest::newRow("account") << "/v1/projects"
                             << "get"
                             << "session";
    QTest::newRow("players") << "/v1/deployments/{guid}/votes"
                             << "post"
                             << "deploymentKey";
    QTest::newRow("address") << "/t/{guid}/{size}"
                             << "get"
                             << "signedAddress";
}

void OpenApiTest::saysWhoMayCall()
{
    QFETCH(QString, path);
    QFETCH(QString, method);
    QFETCH(QString, scheme);
    const QJsonArray security = m_document.value(QLatin1String("paths"))
                                    .toObject()
                                    .value(path)
                                    .toObject()
                                    .value(method)
                                    .toObject()
                                    .value(QLatin1String("security"))
                                    .toArray();
    QCOMPARE(security.size(), scheme.isEmpty() ? 0 : 1);
    if (!scheme.isEmpty())
        QVERIFY(security.first().toObject().contains(scheme));
}

void OpenApiTest::isServed()
{
    ZelTest::TestDatabases databases;
    const ZelTest::ApiFixture api(databases.filled(false));
    const HttpReply reply = HttpProbe::request(api.port(), "GET", "/v1/openapi.json");
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.headers.value("content-type"), QByteArray("application/json"));
    QCOMPARE(reply.json(), m_document);
    const QByteArray tag = reply.headers.value("etag");
    QVERIFY(tag.size() > 2);
    const HttpReply same =
        HttpProbe::request(api.port(), "GET", "/v1/openapi.json", {}, {"If-None-Match: " + tag});
    QCOMPARE(same.status, 304);
    QVERIFY(same.body.isEmpty());
    QCOMPARE(same.headers.value("etag"), tag);
    const HttpReply other = HttpProbe::request(api.port(), "GET", "/v1/openapi.json", {},
                                               {"If-None-Match: \"another\""});
    QCOMPARE(other.status, 200);
    QCOMPARE(HttpProbe::request(api.port(), "HEAD", "/v1/openapi.json").status, 200);
    QCOMPARE(HttpProbe::request(api.port(), "POST", "/v1/openapi.json", "{}").status, 405);
}

void OpenApiTest::isToldToPeopleInFull()
{
    QSet<QString> routes;
    for (const Route &route : Api::routes())
        routes << withoutNames(nameOf(route));
    QCOMPARE(listOf(callsInDocs()), listOf(routes));
    const QByteArray text = readFile(docs);
    for (const ProblemCode &problem : problemCodes())
        QVERIFY2(text.contains('`' + QByteArray(problem.code) + '`'), problem.code);
}

ZEL_TEST_MAIN(OpenApiTest)

#include "tst_openapi.moc"
