// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QJsonArray>
#include <QTest>

#include <memory>

using namespace Zel;
using ZelTest::ApiFixture;
using ZelTest::HttpReply;

namespace {

constexpr qint64 brightwater = 1001;
const QByteArray fireside = "/v1/themes/914523c4-f4c1-5e02-9bf9-370ad3ddd7cf/data-record";

/// The four values of that record.
QByteArray bodyWith(const QByteArray &first, const QByteArray &version = "1")
{
    const QByteArray other = R"(,{"text":"","guid":"","assetDependencies":""})";
    return R"({"version":)" + version + R"(,"values":[)" + first + other + other + other + "]}";
}

QByteArray valueOf(const QByteArray &text)
{
    return R"({"text":")" + text + R"(","guid":"","assetDependencies":""})";
}

} // namespace

/// The form of the routes of data records. What they mean is tested through the client.
class DataRecordRoutesTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        if (!m_api)
            m_api = std::make_unique<ApiFixture>(m_databases.filled(false));
        m_token = m_api->token(QStringLiteral("maja"), brightwater);
    }

    void cleanupTestCase() { m_api.reset(); }

    void namesTheMembersOfARecord();
    void aRefusedSaveNamesBothVersionsAndTheRecord();
    void refusesBodiesOfAnotherForm_data();
    void refusesBodiesOfAnotherForm();
    void measuresTheValuesAsUtf8();
    void readsNoBodyOfAStranger();
    void allowsTwoMethods();

private:
    QJsonObject record()
    {
        return m_api->call("GET", fireside, m_token)
            .json()
            .value(QLatin1String("record"))
            .toObject();
    }

    QByteArray version()
    {
        return QByteArray::number(record().value(QLatin1String("version")).toInteger());
    }

    HttpReply save(const QByteArray &body) { return m_api->call("PUT", fireside, m_token, body); }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<ApiFixture> m_api;
    QString m_token;
};

void DataRecordRoutesTest::namesTheMembersOfARecord()
{
    const HttpReply reply = m_api->call("GET", fireside, m_token);
    QCOMPARE(reply.status, 200);
    const QJsonObject record = reply.json().value(QLatin1String("record")).toObject();
    QCOMPARE(record.keys(), (QStringList{QStringLiteral("entries"), QStringLiteral("version")}));
    const QJsonArray entries = record.value(QLatin1String("entries")).toArray();
    QCOMPARE(entries.size(), 4);
    QStringList keys = entries.at(2).toObject().keys();
    keys.sort();
    QCOMPARE(keys.join(QLatin1Char(' ')),
             QStringLiteral("assetDependencies buttonText ext guid height hidden label source "
                            "text type width"));
    QCOMPARE(entries.at(2).toObject().value(QLatin1String("width")).toInt(), 620);
    QVERIFY(m_api->call("GET", QByteArray(fireside).replace("914523c4", "914523c5"), m_token)
                .json()
                .value(QLatin1String("record"))
                .isNull());
}

void DataRecordRoutesTest::aRefusedSaveNamesBothVersionsAndTheRecord()
{
    const qint64 first = version().toLongLong();
    QCOMPARE(save(bodyWith(valueOf("one"), version()))
                 .json()
                 .value(QLatin1String("version"))
                 .toInteger(),
             first + 1);
    QCOMPARE(save(bodyWith(valueOf("two"), version())).status, 200);
    const HttpReply refused = save(bodyWith(valueOf("three"), QByteArray::number(first)));
    QCOMPARE(refused.status, 409);
    QCOMPARE(refused.headers.value("content-type"), QByteArray("application/problem+json"));
    QCOMPARE(refused.code(), QStringLiteral("version-conflict"));
    const QJsonObject problem = refused.json();
    QCOMPARE(problem.value(QLatin1String("yourVersion")).toInteger(), first);
    QCOMPARE(problem.value(QLatin1String("version")).toInteger(), first + 2);
    QCOMPARE(problem.value(QLatin1String("requestId")).toString().toLatin1(),
             refused.headers.value("x-request-id"));
    QVERIFY(!problem.value(QLatin1String("detail")).toString().isEmpty());
    QCOMPARE(problem.value(QLatin1String("record")).toObject(), record());
}

void DataRecordRoutesTest::refusesBodiesOfAnotherForm_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *name, const QByteArray &body, const char *code = "invalid") {
        QTest::newRow(name) << body << QString::fromLatin1(code);
    };
    row("nothing", "", "bad-json");
    row("no JSON", "{", "bad-json");
    row("no object", "[]");
    row("no version", R"({"values":[]})");
    row("no values", R"({"version":1})");
    row("values that are no list", R"({"version":1,"values":{}})");
    row("one more member", R"({"version":1,"values":[],"entries":[]})");
    for (const char *version : {"null", "\"1\"", "1.5", "-1", "99999999999999999999"})
        row(qPrintable(QLatin1String("version ") + QLatin1String(version)),
            bodyWith(valueOf("x"), version));
    row("a value that is none", bodyWith("null"));
    row("a value without guid", bodyWith(R"({"text":"","assetDependencies":""})"));
    row("null as text", bodyWith(R"({"text":null,"guid":"","assetDependencies":""})"));
    row("a number as guid", bodyWith(R"({"text":"","guid":1,"assetDependencies":""})"));
    row("a value with more",
        bodyWith(R"({"text":"","guid":"","assetDependencies":"","label":""})"));
    row("one value more", bodyWith(valueOf("x") + "," + valueOf("y")));
    row("NUL", bodyWith(valueOf("\\u0000")), "invalid-text");
    row("half a pair", bodyWith(valueOf("\\ud800")), "invalid-text");
}

void DataRecordRoutesTest::refusesBodiesOfAnotherForm()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, code);
    const QJsonObject before = record();
    const HttpReply reply =
        save(body.contains("\"version\":1,")
                 ? body.replace("\"version\":1,", "\"version\":" + version() + ',')
                 : body);
    QCOMPARE(reply.status, 400);
    QCOMPARE(reply.code(), code);
    QCOMPARE(record(), before);
}

void DataRecordRoutesTest::measuresTheValuesAsUtf8()
{
    constexpr qsizetype limit = DataRecords::largestRecord;
    const HttpReply over = save(
        bodyWith(valueOf(QByteArray("\xf0\x9f\x98\x80").repeated(limit / 4) + "x"), version()));
    QCOMPARE(over.status, 413);
    QCOMPARE(over.code(), QStringLiteral("too-large"));
    QCOMPARE(save(bodyWith(valueOf(QByteArray("\xf0\x9f\x98\x80").repeated(limit / 4)), version()))
                 .status,
             200);
    QCOMPARE(DataRecords::sizeOf(
                 {QString::fromUtf8("a\u00e9\u20ac😀"), QStringLiteral("b"), QStringLiteral("cd")}),
             1 + 2 + 3 + 4 + 1 + 2);
}

void DataRecordRoutesTest::readsNoBodyOfAStranger()
{
    // Only the head: the answer must not wait for a body that is allowed to be this long.
    const HttpReply reply = m_api->request("PUT", fireside, QByteArray(3 * 1024 * 1024, 'x'), {});
    QCOMPARE(reply.status, 401);
    QCOMPARE(reply.code(), QStringLiteral("signed-out"));
}

void DataRecordRoutesTest::allowsTwoMethods()
{
    const HttpReply reply = m_api->call("DELETE", fireside, m_token);
    QCOMPARE(reply.status, 405);
    QCOMPARE(reply.headers.value("allow"), QByteArray("GET, PUT"));
}

ZEL_TEST_MAIN(DataRecordRoutesTest)
#include "tst_datarecordroutes.moc"
