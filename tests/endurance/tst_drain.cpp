// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/writehold.h"
#include "tests/endurance/connectionstate.h"
#include "tests/endurance/rawsession.h"

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>
#include <vector>

using namespace ZelTest;

namespace {

constexpr int calls = 8;
using Probe = std::unique_ptr<HttpProbe>;

} // namespace

/// The service is told to stop while it has something to do.
class DrainTest : public ContractTest
{
    Q_OBJECT

private slots:
    void init();
    void losesNothingOfEightCallsASignInAndAnUpload();
    void letsAnUploadGoOnAtTheNextService();
    void endsAtOnceAtTheSecondSignal();
    void endsClientsThatKeepItFromEnding();

private:
    /// A connection whose request the service has taken in.
    Probe sent(const QByteArray &request)
    {
        auto probe = std::make_unique<HttpProbe>(service().port());
        probe->takeInLittle();
        probe->send(request);
        if (!isTakenIn(*probe))
            throw std::runtime_error("the service does not read a request");
        return probe;
    }

    bool isTakenIn(const HttpProbe &probe)
    {
        return QTest::qWaitFor([&] { return hasReadAll(service().port(), probe.localPort()); },
                               20'000);
    }

    bool refusesConnections()
    {
        return QTest::qWaitFor([&] { return !HttpProbe(service().port()).isConnected(); }, 20'000);
    }

    /// Calls that wait for the hold; told by PostgreSQL alone.
    bool areHeld(int count)
    {
        static const QString waiting =
            QStringLiteral("SELECT COUNT(DISTINCT pid) FROM pg_locks WHERE NOT granted");
        return !postgres() ||
               QTest::qWaitFor([&] { return postgres()->run(waiting).toInt() == count; }, 20'000);
    }

    std::unique_ptr<RawSession> m_session;
};

void DrainTest::init()
{
    ContractTest::init();
    m_session = std::make_unique<RawSession>(service().port(), nora(), contractStudio);
}

void DrainTest::losesNothingOfEightCallsASignInAndAnUpload()
{
    const quint16 port = service().port();
    const QByteArray bytes = noise(600'000, 1);
    const QByteArray path = m_session->reserve("drained.bin", bytes.size());
    const qsizetype half = bytes.size() / 2;
    const Probe upload =
        sent(m_session->head("PUT", path + "/files/0?offset=0", bytes.size()) + bytes.left(half));

    auto hold = std::make_unique<WriteHold>(database(), QStringLiteral("project, session"));
    QList<QByteArray> bodies;
    std::vector<Probe> projects;
    for (int i = 0; i < calls; ++i) {
        bodies << projectBody(newGuid());
        projects.push_back(sent(m_session->request("POST", "/v1/projects", bodies.last())));
    }
    const Probe signIn = sent(RawSession::signInRequest(port, olaf()));
    HttpProbe idle(port);
    QVERIFY(areHeld(calls + 1));

    service().terminate();
    QVERIFY(idle.isClosed());
    QVERIFY(refusesConnections());
    QVERIFY(service().isRunning());
    upload->send(bytes.mid(half));
    hold.reset();

    QList<QByteArray> answers;
    for (const Probe &call : projects) {
        const HttpReply reply = call->read();
        QCOMPARE(reply.status, 201);
        QCOMPARE(reply.headers.value("connection"), QByteArray("close"));
        QVERIFY(call->isClosed());
        answers << reply.body;
    }
    const HttpReply signedIn = signIn->read();
    QCOMPARE(signedIn.status, 201);
    const HttpReply received = upload->read();
    QCOMPARE(received.status, 200);
    QCOMPARE(received.json().value(QLatin1String("received")).toInteger(), bytes.size());
    QCOMPARE(service().waitForEnd(), 0);

    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    for (int i = 0; i < calls; ++i) {
        // Made already: the same call is answered with what there is.
        const HttpReply again = m_session->call("POST", "/v1/projects", bodies.at(i));
        QCOMPARE(again.status, 200);
        QCOMPARE(again.body, answers.at(i));
    }
    const QByteArray token = signedIn.json().value(QLatin1String("token")).toString().toLatin1();
    QCOMPARE(HttpProbe::request(port, "GET", "/v1/accounts", {}, {"Authorization: Bearer " + token})
                 .status,
             200);
    const HttpReply made = m_session->commit(path, sha256(bytes));
    QCOMPARE(made.status, 201);
    const QString guid = made.json().value(QLatin1String("guid")).toString();
    QVERIFY(m_session->call("GET", m_session->addressesOf(guid).constFirst()).body == bytes);
}

void DrainTest::letsAnUploadGoOnAtTheNextService()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("long.bin")));
    const QByteArray bytes = noise(40'000'000, 2);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    auto files = std::make_shared<QXSC::AssetFileCollection>();
    files->add(std::make_shared<QXSC::AssetFileEntry>(QXSC::AssetFileEntry{file.fileName()}));

    const auto client = signIn(nora(), contractStudio);
    bool isStopped = false;
    connect(client.get(), &QXSC::ServiceClient::CreateAssetFileProgress, this, [&](qint32 percent) {
        if (percent < 30 || std::exchange(isStopped, true))
            return;
        QCOMPARE(service().stop(), 0);
        QVERIFY2(service().startAgain(), qPrintable(service().error()));
    });
    const QString guid = client->CreateAsset(QStringLiteral("Long"), QString(), 0, files, QString(),
                                             QString(), nullptr);
    QVERIFY(isStopped);
    QVERIFY(m_session->call("GET", m_session->addressesOf(guid).constFirst()).body == bytes);
}

void DrainTest::endsAtOnceAtTheSecondSignal()
{
    const QString kept = newGuid();
    QCOMPARE(m_session->call("POST", "/v1/projects", projectBody(kept)).status, 201);
    const QByteArray given = projectBody(newGuid());
    {
        const WriteHold hold(database());
        const Probe call = sent(m_session->request("POST", "/v1/projects", given));
        service().terminate();
        QVERIFY(refusesConnections());
        QVERIFY(service().isRunning()); // for the call in flight
        service().terminate();
        QCOMPARE(service().waitForEnd(), -1); // by the signal, not in order
        QVERIFY(call->isClosed());            // and without an answer
    }
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QCOMPARE(m_session->call("POST", "/v1/projects", projectBody(kept)).status, 200);
    // Nobody was told that it is made; whoever asks again gets it once.
    const int status = m_session->call("POST", "/v1/projects", given).status;
    QVERIFY(status == 200 || status == 201);
    QCOMPARE(m_session->call("POST", "/v1/projects", given).status, 200);
}

void DrainTest::endsClientsThatKeepItFromEnding()
{
    const QByteArray bytes = noise(30'000'000, 3);
    const QByteArray path = m_session->reserve("unread.bin", bytes.size());
    QCOMPARE(m_session->call("PUT", path + "/files/0?offset=0", bytes).status, 200);
    const QString guid =
        m_session->commit(path, sha256(bytes)).json().value(QLatin1String("guid")).toString();
    const QByteArray address = m_session->addressesOf(guid).constFirst();

    QCOMPARE(service().stop(), 0);
    service().arguments = {QStringLiteral("--drain"), QStringLiteral("1")};
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    // One sends no more of its request, one of its body, and one does not read its answer.
    const Probe head = sent("GET /healthz HTTP/1.1\r\nHost:");
    const Probe body = sent(m_session->head("POST", "/v1/projects", 1000) + "{");
    const Probe answer = sent(m_session->request("GET", address, {}));
    service().terminate();
    // Any of them has longer than that while the service runs, and would have while it ends.
    QCOMPARE(service().waitForEnd(12'000), 0);
    QVERIFY(head->isClosed() && body->isClosed());
    QVERIFY(answer->readToEnd().size() < bytes.size());
    service().arguments.clear();
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QVERIFY(m_session->call("GET", address).body == bytes);
}

ZEL_TEST_MAIN(DrainTest)
#include "tst_drain.moc"
