// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/interface/interfacecheck.h"
#include "testsupport/testcase.h"

#include <QTest>

using ZelTest::CheckedCall;

namespace {

const QByteArray json = "application/json";
const QByteArray problem = "application/problem+json";
const QByteArray guid = "2f2879d9-b497-5448-b567-8c3c7297dad4";

CheckedCall answered(const QByteArray &method, const QByteArray &path, int status,
                     const QByteArray &body, const QByteArray &type = json)
{
    CheckedCall call;
    call.method = method;
    call.path = path;
    call.status = status;
    call.body = body;
    call.headers = {{"x-request-id", "0123456789abcdef"}};
    if (!type.isEmpty())
        call.headers << std::pair<QByteArray, QByteArray>{"Content-Type", type};
    return call;
}

QByteArray refusal(const QByteArray &code)
{
    return "{\"code\":\"" + code + "\",\"detail\":\"No.\",\"requestId\":\"0123456789abcdef\"}";
}

/// A list of projects with that one row.
QByteArray projects(const QByteArray &row)
{
    return R"({"projects":{"columns":["guid","name","description","created","modified",)"
           R"("createdBy","eventDate","published"],"rows":[)" +
           row + R"(]},"next":null})";
}

QByteArray project(const QByteArray &created = "1780000000000")
{
    return "[\"" + guid + "\",\"N\",\"\"," + created + ",null,\"Maja\",null,true]";
}

CheckedCall projectList(const QByteArray &body)
{
    CheckedCall call = answered("GET", "/v1/projects", 200, body);
    call.query = "type=webcast";
    return call;
}

CheckedCall signIn(const QByteArray &requestBody)
{
    CheckedCall call = answered("POST", "/v1/sessions", 201,
                                "{\"token\":\"" + QByteArray(43, 'A') + "\",\"expiresAt\":1}");
    call.requestBody = requestBody;
    return call;
}

} // namespace

/// That the check which every test of the service relies on sees what is wrong.
class InterfaceCheckTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void takesWhatIsRight_data();
    void takesWhatIsRight();
    void seesWhatIsWrong_data();
    void seesWhatIsWrong();

private:
    ZelTest::InterfaceCheck m_check;
};

void InterfaceCheckTest::takesWhatIsRight_data()
{
    QTest::addColumn<CheckedCall>("call");
    QTest::newRow("object") << answered("GET", "/healthz", 200, R"({"status":"ok"})");
    QTest::newRow("head") << answered("HEAD", "/healthz", 200, "");
    QTest::newRow("row") << projectList(projects(project()));
    QTest::newRow("two rows") << projectList(projects(project() + ',' + project("null")));
    QTest::newRow("no rows") << projectList(projects(""));
    QTest::newRow("null for a list") << projectList(R"({"projects":null,"next":null})");
    QTest::newRow("nothing") << answered("DELETE", "/v1/sessions/current", 204, "", "");
    QTest::newRow("request") << signIn(R"({"user":"a","password":"b","appName":"c"})");
    QTest::newRow("refusal") << answered("GET", "/v1/accounts", 401, refusal("signed-out"),
                                         problem);
    QTest::newRow("bad request refused")
        << answered("POST", "/v1/sessions", 400, refusal("invalid"), problem);
    QTest::newRow("no route") << answered("GET", "/v2", 404, refusal("no-route"), problem);
    QTest::newRow("no method") << answered("PUT", "/healthz", 405, refusal("method-not-allowed"),
                                           problem);
    QTest::newRow("any type") << answered("GET", "/nexo/tools_v2/Components/colour/page.html", 204,
                                          "", "");
}

void InterfaceCheckTest::takesWhatIsRight()
{
    QFETCH(CheckedCall, call);
    QCOMPARE(m_check.faultsOf(call).join(QLatin1Char('\n')), QString());
}

void InterfaceCheckTest::seesWhatIsWrong_data()
{
    QTest::addColumn<CheckedCall>("call");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *name, const CheckedCall &call, const char *fault) {
        QTest::newRow(name) << call << QString::fromLatin1(fault);
    };
    row("unknown call", answered("GET", "/v2", 200, "{}"), "no such call");
    row("unknown status", answered("GET", "/healthz", 206, "{}"), "no such status");
    row("other type", answered("GET", "/healthz", 200, R"({"status":"ok"})", "text/html"),
        "of type");
    row("no type", answered("GET", "/healthz", 200, R"({"status":"ok"})", ""), "of type");
    row("a body", answered("DELETE", "/v1/sessions/current", 204, "{}"), "it has a body");
    row("no json", answered("GET", "/healthz", 200, R"({"status":"ok")"), "no JSON");
    row("no utf-8", projectList(projects(project().replace("Maja", "Maj\xff"))), "no JSON");
    row("other value", answered("GET", "/healthz", 200, R"({"status":"fine"})"), "/status");
    row("missing field", answered("GET", "/healthz", 200, "{}"), "status");
    row("further field", answered("GET", "/healthz", 200, R"({"status":"ok","x":1})"), "x");
    row("null for a list", answered("GET", "/v1/accounts", 200, R"({"accounts":null})"),
        "/accounts");
    row("list for null", projectList(R"({"projects":[],"next":null})"), "/projects");
    row("text for a time", projectList(projects(project("\"1\""))), "/projects");
    row("fraction for a time", projectList(projects(project("1.5"))), "/projects");
    row("short row", projectList(projects("[\"" + guid + "\"]")), "/projects");
    row("long row", projectList(projects(project().chopped(1) + ",1]")), "/projects");
    row("columns in another order",
        projectList(projects(project()).replace("\"guid\",\"name\"", "\"name\",\"guid\"")),
        "/projects");
    row("guid of other letters", projectList(projects(project().replace("2f28", "2F28"))),
        "/projects");
    row("refusal that is not listed",
        answered("GET", "/v1/accounts", 401, refusal("bad-key"), problem), "/code");
    row("unknown refusal", answered("GET", "/v2", 404, refusal("nowhere"), problem), "/code");
    row("refusal as plain JSON", answered("GET", "/v1/accounts", 401, refusal("signed-out")),
        "of type");
    row("nothing about when to come again",
        answered("GET", "/v1/accounts", 503, refusal("unavailable"), problem), "Retry-After");
    row("unknown field of a request",
        signIn(R"({"user":"a","password":"b","appName":"c","more":1})"), "the request");
    row("missing field of a request", signIn(R"({"user":"a","password":"b"})"), "the request");
    CheckedCall call = projectList(projects(""));
    call.query = "type=webcast&sort=name";
    row("unknown parameter", call, "parameter sort");
    call.query = "";
    row("missing parameter", call, "parameter type");
    call = answered("GET", "/v1/asset-folders", 200, R"({"folders":null})");
    call.query = "parent=root";
    row("parameter of another type", call, "parameter parent");
    call = answered("GET", "/healthz", 200, R"({"status":"ok"})");
    call.headers.removeFirst();
    row("no request id", call, "X-Request-Id");
    call.headers << std::pair<QByteArray, QByteArray>{"X-Request-Id", "abc"};
    row("other request id", call, "X-Request-Id");
}

void InterfaceCheckTest::seesWhatIsWrong()
{
    QFETCH(CheckedCall, call);
    QFETCH(QString, fault);
    const QStringList faults = m_check.faultsOf(call);
    QVERIFY2(!faults.isEmpty(), "nothing was seen");
    const QString all = faults.join(QLatin1Char('\n'));
    QVERIFY2(all.contains(fault), qPrintable(all));
    QVERIFY(all.startsWith(QString::fromLatin1(call.method + ' ' + call.path + " -> ")));
}

ZEL_TEST_MAIN(InterfaceCheckTest)

#include "tst_interfacecheck.moc"
