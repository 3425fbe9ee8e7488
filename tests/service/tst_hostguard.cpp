// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/hostguard.h"

#include "service/daemon/problem.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <stdexcept>

using namespace Zel::Service;

namespace {

HttpRequest request(const QByteArray &host, const QByteArray &origin, bool isEncrypted)
{
    HttpRequest result;
    result.headers.append(HttpHeader{"Host", host});
    if (!origin.isEmpty())
        result.headers.append(HttpHeader{"Origin", origin});
    result.localPort = 8443;
    result.isEncrypted = isEncrypted;
    return result;
}

/// The status a request is refused with; 200 when it is not.
int statusOf(const HostGuard &guard, const HttpRequest &request)
{
    try {
        guard.check(request);
    } catch (const Problem &problem) {
        return problem.status();
    }
    return 200;
}

} // namespace

/// Requests of a service at port 8443.
class HostGuardTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void answersForItsNames_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QByteArray>("host");
        QTest::addColumn<int>("status");
        const auto row = [](const char *names, const char *host, int status) {
            QTest::addRow("\"%s\": %s", names, host)
                << QString::fromLatin1(names).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                << QByteArray(host) << status;
        };
        row("", "127.0.0.1:8443", 200);
        row("", "localhost:8443", 200);
        row("", "[::1]:8443", 200);
        row("", "127.0.0.1", 421);
        row("", "zel.example.org:8443", 421);
        row("zel.example.org", "zel.example.org", 200);
        row("zel.example.org", "ZEL.example.org:8443", 200);
        row("zel.example.org", "zel.example.org:9", 200);
        row("Zel.Example.org", "zel.example.org", 200);
        row("zel.example.org", "127.0.0.1:8443", 200);
        row("zel.example.org", "127.0.0.1:1", 421);
        row("zel.example.org", "evil.example.org", 421);
        row("zel.example.org", "zel.example.org.evil.example", 421);
        row("zel.example.org", "evil@zel.example.org", 421);
        row("zel.example.org", "zel.example.org/x", 421);
        row("zel.example.org", "", 421);
        row("zel.example.org:443", "zel.example.org:443", 200);
        row("zel.example.org:443", "zel.example.org", 200);
        row("zel.example.org:80", "zel.example.org", 200);
        row("zel.example.org:443", "zel.example.org:8443", 421);
        row("zel.example.org:9000", "zel.example.org", 421);
        row("zel.example.org:9000", "zel.example.org:9000", 200);
        row("*.example.org", "a.example.org", 200);
        row("*.example.org", "a.b.example.org", 421);
        row("*.example.org", "example.org", 421);
        row("*.example.org", ".example.org", 421);
        row("*.example.org:9000", "a.example.org:9000", 200);
        row("*.example.org:9000", "a.example.org:9001", 421);
        row("10.0.0.7", "10.0.0.7:8443", 200);
        row("10.0.0.7", "10.0.0.8:8443", 421);
        row("2001:db8::1", "[2001:db8::1]:8443", 200);
        row("[2001:db8::1]:9000", "[2001:0db8:0::1]:9000", 200);
        row("127.0.0.1", "127.0.0.1:1", 200);
        row("a.example b.example:9", "a.example:5", 200);
        row("a.example b.example:9", "b.example:9", 200);
        row("a.example b.example:9", "b.example:5", 421);
    }

    void answersForItsNames()
    {
        QFETCH(QStringList, names);
        QFETCH(QByteArray, host);
        QFETCH(int, status);
        const HostGuard guard(names);
        QCOMPARE(statusOf(guard, request(host, {}, false)), status);
        QCOMPARE(statusOf(guard, request(host, {}, true)), status);
    }

    void leavesThePortOutWhereItIsTheUsualOne()
    {
        HttpRequest plain = request("localhost", {}, false);
        plain.localPort = 80;
        QCOMPARE(statusOf(HostGuard(), plain), 200);
        plain.isEncrypted = true;
        QCOMPARE(statusOf(HostGuard(), plain), 421);
        plain.localPort = 443;
        QCOMPARE(statusOf(HostGuard(), plain), 200);
    }

    void letsItsOwnPagesIn_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QByteArray>("origin");
        QTest::addColumn<int>("plain");
        QTest::addColumn<int>("encrypted");
        const QStringList named{QStringLiteral("zel.example.org"), QStringLiteral("10.0.0.7:443")};
        const auto row = [](const QStringList &names, const char *origin, int plain,
                            int encrypted) {
            QTest::addRow("%s %s", names.isEmpty() ? "no name" : "named", origin)
                << names << QByteArray(origin) << plain << encrypted;
        };
        row({}, "http://127.0.0.1:8443", 200, 403);
        row({}, "https://127.0.0.1:8443", 403, 200);
        row(named, "http://zel.example.org", 200, 403);
        row(named, "https://zel.example.org", 200, 200);
        row(named, "https://10.0.0.7", 200, 200);
        row(named, "https://10.0.0.7:8443", 403, 403);
        row(named, "https://evil.example", 403, 403);
        row(named, "ftp://zel.example.org", 403, 403);
        row(named, "zel.example.org", 403, 403);
        row(named, "null", 403, 403);
        row(named, "https://zel.example.org/page", 403, 403);
    }

    void letsItsOwnPagesIn()
    {
        QFETCH(QStringList, names);
        QFETCH(QByteArray, origin);
        QFETCH(int, plain);
        QFETCH(int, encrypted);
        const HostGuard guard(names);
        QCOMPARE(statusOf(guard, request("127.0.0.1:8443", origin, false)), plain);
        QCOMPARE(statusOf(guard, request("127.0.0.1:8443", origin, true)), encrypted);
    }

    void takesOneHostOnly()
    {
        HttpRequest two = request("zel.example.org", {}, true);
        two.headers.append(HttpHeader{"host", "zel.example.org"});
        QCOMPARE(statusOf(HostGuard({QStringLiteral("zel.example.org")}), two), 421);
        two.headers.clear();
        QCOMPARE(statusOf(HostGuard({QStringLiteral("zel.example.org")}), two), 421);
    }

    void knowsHowItIsCalled()
    {
        QCOMPARE(originOf(request("127.0.0.1:8443", {}, true)),
                 QByteArray("https://127.0.0.1:8443"));
        QCOMPARE(originOf(request("127.0.0.1:8080", {}, false)),
                 QByteArray("http://127.0.0.1:8080"));
        QCOMPARE(originOf(request("[::1]:1", {}, false)), QByteArray("http://[::1]:1"));
        QCOMPARE(originOf(request("localhost", {}, false)), QByteArray("http://localhost"));
        // By something that encrypts before it.
        QCOMPARE(originOf(request("zel.example.org", {}, false)),
                 QByteArray("https://zel.example.org"));
    }

    void refusesWhatIsNoName_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"", "http://a.example", "a.example/x", "a.example:0", "a b", "*",
                                 "*.", "me@a.example", "a.example:99999", "a.example?x"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void refusesWhatIsNoName()
    {
        QFETCH(QString, name);
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, HostGuard(QStringList{name}));
    }
};

ZEL_TEST_MAIN(HostGuardTest)
#include "tst_hostguard.moc"
