// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace Zel;
using ZelTest::ApiFixture;
using ZelTest::HttpReply;

namespace {

constexpr qint64 brightwater = 1001;

/// What the client asks for, as bytes: the form of the routes of themes. What they mean is tested
/// through the client.
QString valueOf(const HttpReply &reply, const QString &row, const char *column)
{
    const QJsonObject table = reply.json().value(QLatin1String("themes")).toObject();
    const QJsonArray columns = table.value(QLatin1String("columns")).toArray();
    const QJsonArray rows = table.value(QLatin1String("rows")).toArray();
    for (qsizetype at = 0; at < columns.size(); ++at) {
        if (columns.at(at).toString() != QLatin1String(column))
            continue;
        for (const QJsonValue &one : rows) {
            if (one.toArray().at(1).toString() == row)
                return one.toArray().at(at).toString();
        }
    }
    return QStringLiteral("not there");
}

QByteArray targetOf(const QString &address)
{
    const QUrl url(address);
    return url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
}

} // namespace

class ThemeRoutesTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        if (!m_api)
            m_api = std::make_unique<ApiFixture>(m_databases.filled(false));
        m_token = m_api->token(QStringLiteral("tomas"), brightwater);
    }

    void cleanupTestCase() { m_api.reset(); }

    void namesTheColumnsOfThemes();
    void refusesOtherScopes_data();
    void refusesOtherScopes();
    void wantsBothKeysOfATemplate_data();
    void wantsBothKeysOfATemplate();
    void refusesAThemeThatIsNoText_data();
    void refusesAThemeThatIsNoText();
    void takesAProjectWithoutTheField();
    void sendsPreviewsAsFiles();
    void endsThePreviewAddressAfterADay();
    void keepsThePreviewAddressForAWhile();

private:
    ZelTest::TestDatabases m_databases;
    std::unique_ptr<ApiFixture> m_api;
    QString m_token;
};

void ThemeRoutesTest::namesTheColumnsOfThemes()
{
    const HttpReply reply = m_api->call("GET", "/v1/themes?scope=user", m_token);
    QCOMPARE(reply.status, 200);
    const QJsonObject table = reply.json().value(QLatin1String("themes")).toObject();
    QCOMPARE(table.value(QLatin1String("columns")).toArray(),
             QJsonArray::fromStringList(
                 {QStringLiteral("guid"), QStringLiteral("name"), QStringLiteral("description"),
                  QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("created"),
                  QStringLiteral("modified"), QStringLiteral("wizardXml"),
                  QStringLiteral("previewUrl"), QStringLiteral("templates")}));
    const QJsonArray rows = table.value(QLatin1String("rows")).toArray();
    QCOMPARE(rows.size(), 2);
    const QJsonArray podcast = rows.at(1).toArray();
    QCOMPARE(podcast.size(), 10);
    QVERIFY(podcast.at(3).isDouble() && podcast.at(5).isDouble());
    QCOMPARE(podcast.at(9).toArray(),
             (QJsonArray{QJsonArray{QStringLiteral("player"), QStringLiteral("2"), true},
                         QJsonArray{QStringLiteral("chapters"), QStringLiteral("1"), false}}));
}

void ThemeRoutesTest::refusesOtherScopes_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<QString>("code");
    const QString invalid = QStringLiteral("invalid");
    QTest::newRow("none") << QByteArray() << invalid;
    QTest::newRow("empty") << QByteArray("?scope=") << invalid;
    QTest::newRow("unknown") << QByteArray("?scope=mine") << invalid;
    QTest::newRow("in capitals") << QByteArray("?scope=Full") << invalid;
    QTest::newRow("twice") << QByteArray("?scope=full&scope=user") << invalid;
    QTest::newRow("long") << "?scope=" + QByteArray(1000, 'f') << invalid;
    QTest::newRow("NUL") << QByteArray("?scope=full%00") << QStringLiteral("invalid-text");
}

void ThemeRoutesTest::refusesOtherScopes()
{
    QFETCH(QByteArray, query);
    QFETCH(QString, code);
    const HttpReply reply = m_api->call("GET", "/v1/themes" + query, m_token);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), code);
}

void ThemeRoutesTest::wantsBothKeysOfATemplate_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::addColumn<int>("status");
    QTest::newRow("both") << QByteArray("?key=player&version=2") << 200;
    QTest::newRow("neither") << QByteArray() << 400;
    QTest::newRow("key only") << QByteArray("?key=player") << 400;
    QTest::newRow("version only") << QByteArray("?version=2") << 400;
    QTest::newRow("a key twice") << QByteArray("?key=player&key=player&version=2") << 400;
    QTest::newRow("long") << "?key=player&version=" + QByteArray(257, '2') << 400;
}

void ThemeRoutesTest::wantsBothKeysOfATemplate()
{
    QFETCH(QByteArray, query);
    QFETCH(int, status);
    QCOMPARE(m_api->call("GET", "/v1/templates" + query, m_token).status, status);
}

void ThemeRoutesTest::refusesAThemeThatIsNoText_data()
{
    QTest::addColumn<QByteArray>("theme");
    for (const char *theme : {"null", "1", "[]", "{}", "true"})
        QTest::newRow(theme) << QByteArray(theme);
}

void ThemeRoutesTest::refusesAThemeThatIsNoText()
{
    QFETCH(QByteArray, theme);
    const QString before = m_api->rowCounts();
    const HttpReply reply = m_api->call(
        "POST", "/v1/projects", m_token,
        QByteArray(R"({"guid":"0f8fad5b-d9cb-469f-a165-70867728950e","name":"N",)"
                   R"("typeID":"webcast","description":"","eventDate":null,"themeGuid":)") +
            theme + "}");
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), QStringLiteral("invalid"));
    QCOMPARE(m_api->rowCounts(), before);
}

void ThemeRoutesTest::takesAProjectWithoutTheField()
{
    const QByteArray start = R"({"guid":"0f8fad5b-d9cb-469f-a165-708677289510","name":"N",)"
                             R"("typeID":"webcast","description":"","eventDate":null)";
    QCOMPARE(m_api->call("POST", "/v1/projects", m_token, start + "}").status, 201);
    // An empty text says the same.
    QCOMPARE(m_api->call("POST", "/v1/projects", m_token, start + R"(,"themeGuid":""})").status,
             200);
}

void ThemeRoutesTest::sendsPreviewsAsFiles()
{
    const HttpReply list = m_api->call("GET", "/v1/themes?scope=full", m_token);
    const QByteArray target = targetOf(valueOf(list, QStringLiteral("Award night"), "previewUrl"));
    const HttpReply whole = m_api->call("GET", target, QString());
    QCOMPARE(whole.status, 200);
    QCOMPARE(whole.headers.value("content-type"), QByteArray("image/svg+xml"));
    // A drawing is a document, too: it must not act as a page of the service.
    QVERIFY(whole.headers.value("content-security-policy").contains("sandbox"));
    QCOMPARE(whole.headers.value("x-content-type-options"), QByteArray("nosniff"));
    QVERIFY(whole.body.startsWith("<svg "));
    const HttpReply part = m_api->request("GET", target, "", {"Range: bytes=0-4"});
    QCOMPARE(part.status, 206);
    QCOMPARE(part.body, QByteArray("<svg "));
    const QByteArray tag = whole.headers.value("etag");
    QVERIFY(tag.size() > 10);
    QCOMPARE(m_api->request("GET", target, "", {"If-None-Match: " + tag}).status, 304);
    QCOMPARE(m_api->call("POST", target, QString()).status, 405);
    QCOMPARE(m_api->call("GET", target.left(target.indexOf('?')), QString()).status, 403);
}

void ThemeRoutesTest::endsThePreviewAddressAfterADay()
{
    constexpr qint64 hour = 60LL * 60 * 1000;
    const HttpReply list = m_api->call("GET", "/v1/themes?scope=account", m_token);
    const QByteArray target = targetOf(valueOf(list, QStringLiteral("Countdown"), "previewUrl"));
    m_api->advance(24 * hour);
    QCOMPARE(m_api->call("GET", target, QString()).status, 200);
    m_api->advance(2 * hour);
    const HttpReply late = m_api->call("GET", target, QString());
    QCOMPARE(late.status, 403);
    QCOMPARE(late.code(), QStringLiteral("expired-address"));
}

void ThemeRoutesTest::keepsThePreviewAddressForAWhile()
{
    const HttpReply first = m_api->call("GET", "/v1/themes?scope=full", m_token);
    const HttpReply second = m_api->call("GET", "/v1/themes?scope=full", m_token);
    QCOMPARE(first.body, second.body);
}

ZEL_TEST_MAIN(ThemeRoutesTest)
#include "tst_themeroutes.moc"
