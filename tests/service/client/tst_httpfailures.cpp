// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QTcpServer>
#include <QTest>

using namespace QXSC;
using namespace ZelTest;
using namespace std::chrono_literals;

Q_DECLARE_METATYPE(ZelTest::ScriptedServer::Script)

namespace {

using Kind = ServiceError::Kind;
using Script = ScriptedServer::Script;

Script writeAndClose(const QByteArray &bytes)
{
    return [bytes](const SeenRequest &, Wire &wire) {
        wire.write(bytes);
        wire.close();
    };
}

Script writeAndReset(const QByteArray &bytes)
{
    return [bytes](const SeenRequest &, Wire &wire) {
        wire.write(bytes);
        wire.sleep(20);
        wire.reset();
    };
}

Script writeAndStall(const QByteArray &bytes)
{
    return [bytes](const SeenRequest &, Wire &wire) {
        wire.write(bytes);
        wire.stall();
    };
}

NetworkPolicy withLimits(std::chrono::milliseconds inactivity, std::chrono::milliseconds call)
{
    NetworkPolicy policy;
    policy.inactivityLimit = inactivity;
    policy.callLimit = call;
    return policy;
}

/// What a person and support read must be fit to be shown, and must not give the session away.
void verifyTexts(const ServiceError &error)
{
    const QString sentence = error.description();
    QVERIFY(!sentence.isEmpty() && sentence.size() < 1200);
    QVERIFY2(sentence.endsWith(QLatin1Char('.')) || sentence.endsWith(QChar(0x2026)),
             qPrintable(sentence));
    QVERIFY2(!sentence.contains(QLatin1Char('%')), qPrintable(sentence));
    for (const QString &text : {sentence, error.details(), error.code()}) {
        QVERIFY2(!text.contains(QLatin1String(SignedIn::token)), qPrintable(text));
        QVERIFY2(!text.contains(QLatin1String("open sesame")), qPrintable(text));
        QVERIFY2(!text.contains(QLatin1String("type=")), qPrintable(text));
    }
    QCOMPARE(error.source(), QStringLiteral("QXServiceCLient"));
}

/// A list of two projects: a good one and the row given.
QByteArray projectsWith(const QByteArray &row)
{
    return projectsAnswer("[[\"g\",\"n\",\"\",null,null,\"\",null,true]," + row + "]");
}

} // namespace

class TestHttpFailures : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    // The network ---------------------------------------------------------------------------------

    void aServerThatMisbehavesIsAnError_data()
    {
        QTest::addColumn<Script>("script");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("says");
        const auto row = [](const char *name, const Script &script, Kind kind, const char *says) {
            QTest::newRow(name) << script << kind << QString::fromUtf8(says);
        };
        const char *ended = "ended before a whole answer was there";
        const char *silent = "did not answer within 0.3 seconds";
        const char *none = "is not one of the service";
        const QByteArray good = http(200, R"({"projects":null})");

        row("closes before answering", writeAndClose(""), Kind::ConnectionLost, ended);
        row("is killed before answering", writeAndReset(""), Kind::ConnectionLost, ended);
        row("closes inside the status line", writeAndClose("HTTP/1."), Kind::ConnectionLost, ended);
        row("closes inside the head", writeAndClose("HTTP/1.1 200 OK\r\nContent-Le"),
            Kind::ConnectionLost, ended);
        row("closes inside the body", writeAndClose(good.left(good.size() - 3)),
            Kind::ConnectionLost, ended);
        row("is killed inside the body", writeAndReset(good.left(good.size() - 3)),
            Kind::ConnectionLost, ended);
        row("never answers", writeAndStall(""), Kind::TimedOut, silent);
        row("stops inside the head", writeAndStall("HTTP/1.1 200 OK\r\n"), Kind::TimedOut, silent);
        row("stops inside the body", writeAndStall(good.left(good.size() - 3)), Kind::TimedOut,
            silent);
        row("promises more than it sends",
            writeAndStall("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{\"projects\":null}"),
            Kind::TimedOut, silent);
        row("sends more than it promises",
            respond("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n{\"projects\":null}"),
            Kind::BadAnswer, "at byte 5");
        row("sends more than it promises, and 200 bytes of it",
            respond("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}" + QByteArray(200, 'x')),
            Kind::BadAnswer, "\"projects\" is missing");
        row("sends no HTTP", writeAndClose("220 mail.example.org ESMTP\r\n\r\n"),
            Kind::ConnectionLost, ended);
        row("sends noise", writeAndClose(QByteArray(3000, '\xfe') + "\r\n\r\n"),
            Kind::ConnectionLost, ended);
        row("sends HTTP of another age", writeAndClose("HTTP/9.9 200 OK\r\n\r\n"), Kind::BadAnswer,
            none);
        row("sends a broken chunk",
            writeAndClose("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n{}\r\n"),
            Kind::BadAnswer, none);
        row("sends an unknown compression",
            respond(http(200, "xxxx", "application/json", "Content-Encoding: gzip\r\n")),
            Kind::BadAnswer, none);
    }

    void aServerThatMisbehavesIsAnError()
    {
        QFETCH(Script, script);
        QFETCH(Kind, kind);
        QFETCH(QString, says);
        SignedIn there(script);
        there.client.setNetworkPolicy(withLimits(300ms, 5min));
        auto projects = std::make_shared<const ProjectCollection>();
        const ProjectCollectionPtr before = projects;
        ProjectCollectionPtr answer = before;
        const auto error =
            errorOf([&] { there.client.getProjectList(QStringLiteral("t"), answer); });
        QVERIFY(error);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
        QCOMPARE(error->kind(), kind);
        verifyTexts(*error);
        QVERIFY(error->details().startsWith(
            QStringLiteral("GET http://%1/v1/projects").arg(there.server.address())));
        // Nothing is lost: the argument keeps its value, the session lasts.
        QCOMPARE(answer, before);
        QVERIFY(there.client.isSignedIn());
    }

    void anAnswerCutInsideAChunkIsAnError()
    {
        SignedIn there(
            writeAndClose("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nff\r\n{"));
        const auto error = errorOf([&] { there.client.projectTypes(); });
        QVERIFY(error);
        // Qt notices the missing end of the chunk or not, depending on how the packets come.
        QVERIFY(error->kind() == Kind::ConnectionLost || error->kind() == Kind::BadAnswer);
        QVERIFY(error->isTransient());
        verifyTexts(*error);
    }

    void aBadAnswerDoesNotSpoilTheNextCall()
    {
        int calls = 0;
        SignedIn there([&calls](const SeenRequest &, Wire &wire) {
            if (calls++ == 0)
                wire.write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\n{}" +
                           http(200, R"({"types":[{"typeID":"smuggled","name":""}]})"));
            else
                wire.write(http(200, R"({"types":[{"typeID":"right","name":""}]})"));
        });
        QVERIFY(errorOf([&] { there.client.projectTypes(); }));
        QCOMPARE(there.client.projectTypes().value(0).typeID, QStringLiteral("right"));
    }

    void aDeadPortCannotBeReached()
    {
        QTcpServer placeholder;
        QVERIFY(placeholder.listen(QHostAddress::LocalHost));
        const QString address = QStringLiteral("127.0.0.1:%1").arg(placeholder.serverPort());
        placeholder.close();
        HttpServiceClient client;
        const auto error = errorOf([&] { signIn(client, address); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::Unreachable);
        QVERIFY(error->isTransient());
        QVERIFY(error->description().contains(address));
        verifyTexts(*error);
    }

    void aServerThatGoesAwayIsNoticed()
    {
        HttpServiceClient client;
        {
            ScriptedServer server(respond(http(201, R"({"token":"t","expiresAt":1})")));
            QVERIFY(signIn(client, server.address()));
        }
        const auto error = errorOf([&] { client.projectTypes(); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::Unreachable);
    }

    void aCallThatMightDoSomethingTwiceIsNotRepeated()
    {
        ScriptedServer dying(writeAndClose(""));
        HttpServiceClient client;
        QVERIFY(errorOf([&] { signIn(client, dying.address()); }));
        QCOMPARE(dying.requests().size(), 1);
    }

    void aLongBodyArrivesWhole()
    {
        SignedIn there(respond(problem(409, "conflict")));
        NewProject project;
        project.description = QString(900000, QLatin1Char('~'));
        QVERIFY(errorOf([&] { there.client.createProject(project); }));
        QCOMPARE(there.lastRequest().body.count('~'), 900000);
    }

    void anEarlyRefusalOfALongBodyIsHeard()
    {
        SignedIn there(respond(problem(413, "too-large", "The text is too long.")),
                       ScriptedServer::Ask::HeadOnly);
        NewProject project;
        project.description = QString(2000000, QLatin1Char('d'));
        const auto error = errorOf([&] { there.client.createProject(project); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::Invalid);
        QCOMPARE(error->code(), QStringLiteral("too-large"));
        QCOMPARE(error->description(), QStringLiteral("The text is too long."));
    }

    void aServerThatGoesWhileALongBodyIsSentIsNoticed()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) { wire.reset(); },
                       ScriptedServer::Ask::HeadOnly);
        NewProject project;
        project.description = QString(20000000, QLatin1Char('d'));
        const auto error = errorOf([&] { there.client.createProject(project); });
        QVERIFY(error);
        QVERIFY2(error->kind() == Kind::ConnectionLost, qPrintable(error->details()));
        QCOMPARE(there.calls(), 2); // the guid tells the service that it is the same project
    }

    // Limits --------------------------------------------------------------------------------------

    void aServerThatDripsIsGivenUp()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) {
            wire.write("HTTP/1.1 200 OK\r\nContent-Length: 100000000\r\n\r\n");
            wire.drip();
        });
        there.client.setNetworkPolicy(withLimits(30s, 500ms));
        const auto error = errorOf([&] { there.client.projectTypes(); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::TimedOut);
        QVERIFY2(error->description().contains(QLatin1String("after 0.5 seconds")),
                 qPrintable(error->description()));
        verifyTexts(*error);
    }

    void aSlowAnswerThatKeepsMovingIsTaken()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) {
            const QByteArray answer =
                http(200, QByteArray(150, ' ') + R"({"types":[{"typeID":"t","name":"n"}]})");
            const qsizetype head = answer.indexOf("\r\n\r\n") + 4;
            wire.write(answer.left(head));
            for (const char byte : answer.mid(head)) {
                wire.write(QByteArray(1, byte));
                wire.sleep(10);
            }
        });
        there.client.setNetworkPolicy(withLimits(1s, 0ms));
        QCOMPARE(there.client.projectTypes().size(), 1); // it took longer than the limit of silence
    }

    void limitsOfZeroAreNone()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) {
            wire.sleep(150);
            wire.write(http(200, R"({"types":[]})"));
        });
        there.client.setNetworkPolicy(withLimits(0ms, -1ms));
        QVERIFY(there.client.projectTypes().isEmpty());
        there.client.setNetworkPolicy(
            withLimits(std::chrono::milliseconds::max(), std::chrono::milliseconds::max()));
        QVERIFY(there.client.projectTypes().isEmpty());
    }

    void aCallCanBeMadeAgainAfterATimeout()
    {
        int calls = 0;
        SignedIn there([&calls](const SeenRequest &, Wire &wire) {
            if (calls++ == 0)
                wire.stall();
            else
                wire.write(http(200, R"({"types":[]})"));
        });
        there.client.setNetworkPolicy(withLimits(200ms, 0ms));
        const auto error = errorOf([&] { there.client.projectTypes(); });
        QVERIFY(error);
        QVERIFY(error->isTransient());
        there.client.setNetworkPolicy(NetworkPolicy());
        QVERIFY(there.client.projectTypes().isEmpty());
    }

    void signOutDoesNotWaitForASilentServer()
    {
        SignedIn there(writeAndStall(""));
        there.client.setNetworkPolicy(withLimits(200ms, 0ms));
        there.client.signOut();
        QVERIFY(!there.client.isSignedIn());
    }

    void aLongAnswerIsRefused_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("announced") << QByteArray("Content-Length: 2000000\r\n");
        QTest::newRow("not announced") << QByteArray("Connection: close\r\n");
    }

    void aLongAnswerIsRefused()
    {
        QFETCH(QByteArray, head);
        SignedIn there([head](const SeenRequest &, Wire &wire) {
            wire.write("HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n" + head + "\r\n");
            for (int i = 0; i < 200 && wire.write(QByteArray(10000, ' ')); ++i) {
            }
            wire.close();
        });
        NetworkPolicy policy;
        policy.answerLimit = 1000000;
        there.client.setNetworkPolicy(policy);
        const auto error = errorOf([&] { there.client.projectTypes(); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::BadAnswer);
        QVERIFY2(error->description().contains(QLatin1String("longer than")),
                 qPrintable(error->description()));
        verifyTexts(*error);
    }

    void anAnswerAtTheLimitIsTaken()
    {
        const QByteArray body = R"({"types":[]})";
        SignedIn there(respond(http(200, body)));
        NetworkPolicy policy;
        policy.answerLimit = body.size();
        there.client.setNetworkPolicy(policy);
        QVERIFY(there.client.projectTypes().isEmpty());
        policy.answerLimit = body.size() - 1;
        there.client.setNetworkPolicy(policy);
        QVERIFY(errorOf([&] { there.client.projectTypes(); }));
    }

    // HTTP ----------------------------------------------------------------------------------------

    void refusalsBecomeErrors_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("says");
        const auto coded = [](int status, const char *code, Kind kind, const char *says,
                              const char *more = "") {
            QTest::newRow(code) << problem(status, code, "The name is too long.", more) << kind
                                << QString::fromLatin1(code) << QString::fromLatin1(says);
        };
        const auto plain = [](const char *name, const QByteArray &answer, Kind kind,
                              const char *says) {
            QTest::newRow(name) << answer << kind << QString() << QString::fromLatin1(says);
        };
        coded(401, "signed-out", Kind::SignedOut, "Sign in again");
        coded(403, "no-account", Kind::Refused, "choose one");
        coded(403, "account-refused", Kind::Refused, "The name is too long.");
        coded(404, "not-found", Kind::NotFound, "Refresh");
        coded(409, "conflict", Kind::Conflict, "The name is too long.");
        coded(400, "invalid", Kind::Invalid, "The name is too long.");
        coded(400, "invalid-text", Kind::Invalid, "The name is too long.");
        coded(400, "bad-json", Kind::Invalid, "The name is too long.");
        coded(413, "too-large", Kind::Invalid, "The name is too long.");
        coded(404, "no-route", Kind::BadAnswer, "older or newer");
        coded(405, "method-not-allowed", Kind::BadAnswer, "older or newer", "Allow: GET\r\n");
        coded(500, "internal", Kind::Unavailable, "pass the details");
        coded(503, "unavailable", Kind::Unavailable, "Try again in a moment");
        coded(429, "too-many-attempts", Kind::TooManyAttempts, "Wait 30 seconds",
              "Retry-After: 30\r\n");
        coded(401, "new-word-401", Kind::SignedOut, "Sign in again");
        coded(403, "new-word-403", Kind::Refused, "The name is too long.");
        coded(404, "new-word-404", Kind::NotFound, "Refresh");
        coded(412, "new-word-412", Kind::Conflict, "too long");
        coded(418, "new-word-418", Kind::Invalid, "too long");
        coded(507, "new-word-507", Kind::Unavailable, "Try again");

        const auto silent = [](const char *name, int status, Kind kind, const char *says) {
            QTest::newRow(name) << problem(status, "some-word", "") << kind
                                << QStringLiteral("some-word") << QString::fromLatin1(says);
        };
        silent("refusal without words", 403, Kind::Refused, "does not let you");
        silent("invalid without words", 400, Kind::Invalid, "Check the values");
        silent("conflict without words", 409, Kind::Conflict, "Refresh");

        plain("500 bare", http(500, ""), Kind::Unavailable, "cannot answer now");
        plain("502 page", http(502, "<html>Bad gateway</html>", "text/html"), Kind::Unavailable,
              "cannot answer now");
        plain("503 problem without code", http(503, "{}", "application/problem+json"),
              Kind::Unavailable, "cannot answer now");
        plain("500 garbled problem", http(500, "{\"code\":", "application/problem+json"),
              Kind::Unavailable, "cannot answer now");
        plain("500 code of a wrong type", http(500, "{\"code\":7}", "application/problem+json"),
              Kind::Unavailable, "cannot answer now");
        plain("429 bare", http(429, ""), Kind::TooManyAttempts, "Wait a while");
        plain("404 page", http(404, "<html>", "text/html"), Kind::BadAnswer, "HTTP status 404");
        plain("401 of another server", http(401, "", "text/plain", "WWW-Authenticate: Basic\r\n"),
              Kind::BadAnswer, "HTTP status 401");
        plain("403 JSON of another server", http(403, R"({"code":"no-account"})"), Kind::BadAnswer,
              "HTTP status 403");
        plain("moved", http(301, "", "text/html", "Location: https://evil.example/x?q=1\r\n"),
              Kind::BadAnswer, "sends calls on");
        plain("moved without a place", http(302, ""), Kind::BadAnswer, "sends calls on");
        plain("moved nearby", http(307, "", "text/html", "Location: /v1/accounts\r\n"),
              Kind::BadAnswer, "sends calls on");
        plain("not modified", "HTTP/1.1 304 Same\r\n\r\n", Kind::BadAnswer, "sends calls on");
        plain("no content", "HTTP/1.1 204 Done\r\n\r\n", Kind::BadAnswer, "it is empty");
        plain("odd status", http(999, ""), Kind::Unavailable, "cannot answer now");
    }

    void refusalsBecomeErrors()
    {
        QFETCH(QByteArray, answer);
        QFETCH(Kind, kind);
        QFETCH(QString, code);
        QFETCH(QString, says);
        SignedIn there(respond(answer));
        const auto error = errorOf([&] { there.client.projectTypes(); });
        QVERIFY(error);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
        QCOMPARE(error->kind(), kind);
        QCOMPARE(error->code(), code);
        verifyTexts(*error);
        QVERIFY(error->details().contains(QLatin1String("GET http://")));
        QVERIFY(error->details().contains(QLatin1String("/v1/project-types")));
        QVERIFY(error->details().contains(QLatin1String("Status: ")));
        if (!code.isEmpty())
            QVERIFY(error->details().contains(QLatin1String("Request id: req-42")));
        QCOMPARE(there.calls(), 1);
        QCOMPARE(there.client.isSignedIn(), code != QLatin1String("signed-out"));
    }

    void tooManyAttemptsSayHowLongToWait_data()
    {
        QTest::addColumn<QByteArray>("retryAfter");
        QTest::addColumn<QString>("says");
        QTest::newRow("none") << QByteArray() << QStringLiteral("Wait a while");
        QTest::newRow("1") << QByteArray("1") << QStringLiteral("Wait 1 second and");
        QTest::newRow("90") << QByteArray("90") << QStringLiteral("Wait 90 seconds");
        QTest::newRow("121") << QByteArray("121") << QStringLiteral("Wait 3 minutes");
        QTest::newRow("900") << QByteArray("900") << QStringLiteral("Wait 15 minutes");
        QTest::newRow("0") << QByteArray("0") << QStringLiteral("Wait a while");
        QTest::newRow("negative") << QByteArray("-5") << QStringLiteral("Wait a while");
        QTest::newRow("date") << QByteArray("Fri, 31 Dec 2100 23:59:59 GMT")
                              << QStringLiteral("Wait a while");
        QTest::newRow("endless") << QByteArray("99999999999999999999")
                                 << QStringLiteral("Wait a while");
    }

    void tooManyAttemptsSayHowLongToWait()
    {
        QFETCH(QByteArray, retryAfter);
        QFETCH(QString, says);
        const QByteArray header =
            retryAfter.isEmpty() ? QByteArray() : "Retry-After: " + retryAfter + "\r\n";
        ScriptedServer server(respond(problem(429, "too-many-attempts", "x", header)));
        HttpServiceClient client;
        const auto error = errorOf([&] { signIn(client, server.address()); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::TooManyAttempts);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
    }

    void aStrangerSayingNoIsNotTheServiceSayingNo()
    {
        ScriptedServer server(respond(http(401, "<html>", "text/html")));
        HttpServiceClient client;
        const auto error = errorOf([&] { signIn(client, server.address()); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::BadAnswer);
    }

    void whatTheServerSendsBackIsMadeFitToShow()
    {
        const QByteArray detail = QByteArray("Bad\\r\\n\\u0007\\u202Ename of ") + SignedIn::token +
                                  " " + QByteArray(100000, 'x');
        SignedIn there(respond(problem(400, "invalid", detail)));
        const auto error = errorOf([&] { there.client.createProject({}); });
        QVERIFY(error);
        verifyTexts(*error);
        QVERIFY2(error->description().startsWith(QStringLiteral("Bad name of \u2026 xxx")),
                 qPrintable(error->description()));
        QVERIFY(error->details().size() < 1000);
    }

    // JSON ----------------------------------------------------------------------------------------

    void answersThatAreNoneNameTheProblem_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("says");
        const auto body = [](const char *name, const QByteArray &json, const char *says) {
            QTest::newRow(name) << http(200, json) << QString::fromUtf8(says);
        };
        const auto table = [](const char *name, const QByteArray &row, const char *says) {
            QTest::newRow(name) << projectsWith(row) << QString::fromUtf8(says);
        };
        body("empty", "", "it is empty");
        body("blank", "  ", "at byte");
        body("no JSON", "hello", "at byte");
        body("cut", "{\"projects\":{\"columns\":[\"gu", "at byte");
        body("two documents", R"({"projects":null}{})", "at byte");
        body("invalid UTF-8", "{\"projects\":\"\xc3\x28\"}", "at byte");
        body("a list", "[]", "it is no object");
        body("deep", QByteArray(100000, '[') + QByteArray(100000, ']'), "at byte");
        body("no projects", "{}", "\"projects\" is missing");
        body("a text", R"({"projects":"no"})", "\"projects\" is not an object");
        body("bare list", R"({"projects":[]})", "\"projects\" is not an object");
        body("no columns", R"({"projects":{"rows":[]}})", "\"columns\" is missing");
        body("no rows", R"({"projects":{"columns":[]}})", "\"rows\" is missing");
        body("rows null", R"({"projects":{"columns":[],"rows":null}})", "\"rows\" is not a list");
        body("column missing", R"({"projects":{"columns":["guid"],"rows":[]}})",
             "column \"name\" is missing");
        body("columns of numbers", R"({"projects":{"columns":[1,2],"rows":[]}})",
             "column \"guid\" is missing");
        table("row null", "null", "row 2: \"row\" is not a list");
        table("row short", R"(["g","n"])", "row 2: 2 values for 8 columns");
        table("row long", R"(["g","n","",null,null,"",null,true,1])",
              "row 2: 9 values for 8 columns");
        table("guid null", R"([null,"n","",null,null,"",null,true])",
              "row 2: \"guid\" is not a text");
        table("name number", R"(["g",7,"",null,null,"",null,true])", "\"name\" is not a text");
        table("description list", R"(["g","n",[],null,null,"",null,true])",
              "\"description\" is not a text");
        table("created text", R"(["g","n","","2007-01-09",null,"",null,true])",
              "\"created\" is neither a time");
        table("modified fraction", R"(["g","n","",null,1.5,"",null,true])",
              "\"modified\" is neither a time");
        table("event date huge", R"(["g","n","",null,null,"",1e300,true])",
              "\"eventDate\" is neither a time");
        table("event date false", R"(["g","n","",null,null,"",false,true])",
              "\"eventDate\" is neither a time");
        table("created at the start of 64 bits",
              R"(["g","n","",-9223372036854775808,null,"",null,true])", "\"created\" is ");
        table("published number", R"(["g","n","",null,null,"",null,1])",
              "\"published\" is neither true nor false");
        table("published null", R"(["g","n","",null,null,"",null,null])",
              "\"published\" is neither true nor false");
        QTest::newRow("a web page")
            << http(200, "<!DOCTYPE html><html>Log in here</html>", "text/html; charset=utf-8")
            << QStringLiteral("text/html; charset=utf-8 instead of JSON");
    }

    void answersThatAreNoneNameTheProblem()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, says);
        SignedIn there(respond(answer));
        ProjectCollectionPtr projects;
        const auto error =
            errorOf([&] { there.client.getProjectList(QStringLiteral("t"), projects); });
        QVERIFY(error);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
        QVERIFY2(error->details().contains(says), qPrintable(error->details()));
        QCOMPARE(error->kind(), Kind::BadAnswer);
        QVERIFY(error->details().contains(QLatin1String("Request id: req-17")));
        verifyTexts(*error);
        QVERIFY(!projects);
    }

    void otherAnswersAreReadAsStrictly_data()
    {
        QTest::addColumn<int>("call");
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("says");
        const auto row = [](const char *name, int call, const char *json, const char *says) {
            QTest::newRow(name) << call << QByteArray(json) << QString::fromUtf8(says);
        };
        row("accounts missing", 0, "{}", "\"accounts\" is missing");
        row("accounts an object", 0, R"({"accounts":{}})", "\"accounts\" is not a list");
        row("account a number", 0, R"({"accounts":[1]})",
            "account 1: \"account\" is not an object");
        row("account without name", 0, R"({"accounts":[{"accountID":1}]})",
            "account 1: \"accountName\" is missing");
        row("account name null", 0, R"({"accounts":[{"accountID":1,"accountName":null}]})",
            "\"accountName\" is not a text");
        row("account id too large", 0,
            R"({"accounts":[{"accountID":2147483648,"accountName":""}]})",
            "\"accountID\" is not a 32-bit number");
        row("account id too small", 0,
            R"({"accounts":[{"accountID":-2147483649,"accountName":""}]})",
            "\"accountID\" is not a 32-bit number");
        row("account id a fraction", 0, R"({"accounts":[{"accountID":1.5,"accountName":""}]})",
            "\"accountID\" is not a 32-bit number");
        row("account id a text", 0, R"({"accounts":[{"accountID":"1","accountName":""}]})",
            "\"accountID\" is not a 32-bit number");
        row("published missing", 1, "{}", "\"published\" is missing");
        row("published a text", 1, R"({"published":"true"})", "neither true nor false");
        row("types null", 2, R"({"types":null})", "\"types\" is not a list");
        row("type without id", 2, R"({"types":[{"typeID":"a","name":""},{"name":""}]})",
            "type 2: \"typeID\" is missing");
        row("project missing", 3, "{}", "\"project\" is missing");
        row("project null", 3, R"({"project":null})", "\"project\" is not an object");
        row("project without name", 3, R"({"project":{"guid":"g"}})", "\"name\" is missing");
    }

    void otherAnswersAreReadAsStrictly()
    {
        QFETCH(int, call);
        QFETCH(QByteArray, json);
        QFETCH(QString, says);
        SignedIn there(respond(http(200, json)));
        AccountCollectionPtr accounts;
        bool published = false;
        const auto error = errorOf([&] {
            if (call == 0)
                there.client.getAccounts(accounts);
            else if (call == 1)
                there.client.isProjectPublished(QStringLiteral("g"), QString(), published);
            else if (call == 2)
                there.client.projectTypes();
            else
                there.client.createProject({});
        });
        QVERIFY(error);
        QVERIFY2(error->description().contains(says), qPrintable(error->description()));
        QCOMPARE(error->kind(), Kind::BadAnswer);
        verifyTexts(*error);
    }
};

ZEL_TEST_MAIN(TestHttpFailures)
#include "tst_httpfailures.moc"
