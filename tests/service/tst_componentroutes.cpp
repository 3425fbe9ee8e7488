// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QRegularExpression>
#include <QTest>

#include <memory>

using ZelTest::ApiFixture;
using ZelTest::HttpReply;

namespace {

const QByteArray folder = "/nexo/tools_v2/Components/";

} // namespace

/// How the files of component pages are served. What the pages do is tested in a browser.
class ComponentRoutesTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        if (!m_api)
            m_api = std::make_unique<ApiFixture>(m_databases.filled(false));
    }

    void cleanupTestCase() { m_api.reset(); }

    void servesFilesToAnyone_data();
    void servesFilesToAnyone();
    void sendsAFileOnce();
    void answersCloseWithNothing_data();
    void answersCloseWithNothing();
    void knowsNoOtherFile_data();
    void knowsNoOtherFile();
    void takesNothingIn();
    void everyPageNamesFilesThatAreThere_data();
    void everyPageNamesFilesThatAreThere();

private:
    HttpReply get(const QByteArray &path) { return m_api->call("GET", folder + path, QString()); }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<ApiFixture> m_api;
};

void ComponentRoutesTest::servesFilesToAnyone_data()
{
    QTest::addColumn<QByteArray>("type");
    const auto row = [](const QByteArray &path, const char *type) {
        QTest::newRow(path.constData()) << QByteArray(type);
    };
    row("studio.css", "text/css; charset=utf-8");
    row("component.js", "text/javascript; charset=utf-8");
    for (const char *page : {"colour/page", "slides/page", "schedule/page"}) {
        row(QByteArray(page) + ".html", "text/html; charset=utf-8");
        row(QByteArray(page) + ".html?stylesheet=studio.css", "text/html; charset=utf-8");
        row(QByteArray(page) + ".js", "text/javascript; charset=utf-8");
        row(QByteArray(page) + ".css", "text/css; charset=utf-8");
    }
}

void ComponentRoutesTest::servesFilesToAnyone()
{
    QFETCH(QByteArray, type);
    const HttpReply reply = get(QTest::currentDataTag());
    QCOMPARE(reply.status, 200);
    QCOMPARE(reply.headers.value("content-type"), type);
    QVERIFY(reply.body.contains("SPDX-License-Identifier"));
    QCOMPARE(reply.headers.value("x-content-type-options"), QByteArray("nosniff"));
    const QByteArray policy = reply.headers.value("content-security-policy");
    QVERIFY(policy.contains("default-src 'none'"));
    QVERIFY(policy.contains("script-src 'self';"));
    QVERIFY(policy.contains("style-src 'self';"));
    QVERIFY(!policy.contains("unsafe"));
}

void ComponentRoutesTest::sendsAFileOnce()
{
    const HttpReply first = get("colour/page.js");
    const QByteArray tag = first.headers.value("etag");
    QVERIFY(tag.size() > 10);
    // Asked for each time, so that the next version of the service is not shown with old scripts.
    QCOMPARE(first.headers.value("cache-control"), QByteArray("no-cache"));
    const HttpReply again =
        m_api->request("GET", folder + "colour/page.js", "", {"If-None-Match: " + tag});
    QCOMPARE(again.status, 304);
    QCOMPARE(again.body, QByteArray());
    QVERIFY(get("slides/page.js").headers.value("etag") != tag);
    QCOMPARE(m_api->request("GET", folder + "slides/page.js", "", {"If-None-Match: " + tag}).status,
             200);
}

void ComponentRoutesTest::answersCloseWithNothing_data()
{
    QTest::addColumn<QByteArray>("path");
    for (const char *path :
         {"close", "colour/close", "a/b/c/close", "slides/close?stylesheet=studio.css"})
        QTest::newRow(path) << QByteArray(path);
}

void ComponentRoutesTest::answersCloseWithNothing()
{
    QFETCH(QByteArray, path);
    const HttpReply reply = get(path);
    QCOMPARE(reply.status, 204);
    QCOMPARE(reply.body, QByteArray());
}

void ComponentRoutesTest::knowsNoOtherFile_data()
{
    QTest::addColumn<int>("status");
    for (const char *path : {"",
                             "colour",
                             "colour/",
                             "colour/page",
                             "Colour/page.html",
                             "colour/page.html/",
                             "page.html",
                             "colour//page.html",
                             "colour/closed",
                             "colour/close/",
                             "colour/CLOSE",
                             "/studio.css",
                             "../studio.css",
                             "..%2fstudio.css",
                             "colour/../studio.css",
                             "colour/..%2fstudio.css",
                             "%2e%2e/%2e%2e/etc/passwd",
                             "..\\studio.css",
                             "colour/%2e/page.html",
                             "%3a/zel/components/studio.css",
                             "../migrations/0001-accounts-and-projects.sql"})
        QTest::newRow(path) << 404;
    QTest::newRow("studio.css%00") << 400;
    QTest::newRow("%ff") << 400;
}

void ComponentRoutesTest::knowsNoOtherFile()
{
    QFETCH(int, status);
    const HttpReply reply = get(QTest::currentDataTag());
    QCOMPARE(reply.status, status);
    QCOMPARE(reply.headers.value("content-type"), QByteArray("application/problem+json"));
}

void ComponentRoutesTest::takesNothingIn()
{
    const HttpReply reply =
        m_api->call("POST", folder + "colour/page.html", QString(), QByteArray("x"));
    QCOMPARE(reply.status, 405);
    QCOMPARE(reply.headers.value("allow"), QByteArray("GET"));
    QCOMPARE(m_api->call("DELETE", folder + "studio.css", QString()).status, 405);
}

void ComponentRoutesTest::everyPageNamesFilesThatAreThere_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"colour", "slides", "schedule"})
        QTest::newRow(name) << QByteArray(name);
}

void ComponentRoutesTest::everyPageNamesFilesThatAreThere()
{
    QFETCH(QByteArray, name);
    const QString page = QString::fromUtf8(get(name + "/page.html").body);
    // Inline script and style would be refused by the policy without a word to the author.
    static const QRegularExpression inlined(
        QStringLiteral("<style|style=|<script(?![^>]*\\bsrc=)|\\son\\w+="));
    QVERIFY(!page.contains(inlined));
    static const QRegularExpression named(QStringLiteral("(?:src|href)=\"([^\"]+)\""));
    int count = 0;
    auto matches = named.globalMatch(page);
    while (matches.hasNext()) {
        QByteArray path = matches.next().captured(1).toLatin1();
        path = path.startsWith("../") ? path.mid(3) : name + '/' + path;
        QVERIFY2(get(path).status == 200, path.constData());
        ++count;
    }
    QCOMPARE(count, 3);
}

ZEL_TEST_MAIN(ComponentRoutesTest)
#include "tst_componentroutes.moc"
