// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/endurance/connectionstate.h"
#include "tests/endurance/rawsession.h"

#include <QFile>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <vector>

#include <sys/resource.h>

using namespace QXSC;
using namespace ZelTest;

namespace {

using Probe = std::unique_ptr<HttpProbe>;
using Probes = std::vector<Probe>;

constexpr int slowUploads = 60;
constexpr int idleClients = 200;
constexpr int badClients = 20;
constexpr int stormClients = 1100;
constexpr int usualFiles = 1024;

} // namespace

/// Many clients at once, most of which do nothing, are slow, or mean no good. Whoever works beside
/// them is answered; how fast is for the benchmark to say.
class CrowdTest : public ContractTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void answersOneBesideIdleClientsAndSlowUploads();
    void answersOneBesideClientsThatDripAndDoNotRead();
    void outlivesMoreConnectionsThanItTakes();

private:
    /// What an author does in a day, each step of which fails where the service does not answer.
    void work();
    QByteArray storedAddress(const QByteArray &bytes);

    QByteArray health() { return m_session->request("GET", "/healthz", {}); }

    std::unique_ptr<RawSession> m_session;
    QTemporaryDir m_folder;
};

void CrowdTest::initTestCase()
{
    // The service begins with what most systems give; the test needs more for its clients.
    limitProcess(0, RLIMIT_NOFILE, usualFiles);
    ContractTest::initTestCase();
    limitProcess(0, RLIMIT_NOFILE, stormClients + usualFiles);
}

void CrowdTest::init()
{
    ContractTest::init();
    m_session = std::make_unique<RawSession>(service().port(), nora(), contractStudio);
}

void CrowdTest::work()
{
    const auto client = signIn(olaf(), contractStudio);
    const auto project = client->createProject(newProject());
    QCOMPARE(withGuid(projectsOf(*client, QStringLiteral("session")), project->guid).size(), 1);
    const QByteArray bytes = noise(1'000'000, 7);
    QFile file(m_folder.filePath(QStringLiteral("work.bin")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    auto files = std::make_shared<AssetFileCollection>();
    files->add(std::make_shared<AssetFileEntry>(AssetFileEntry{file.fileName()}));
    const QString guid = client->CreateAsset(QStringLiteral("Work"), QString(), 0, files, QString(),
                                             QString(), nullptr);
    const QByteArray address = m_session->addressesOf(guid).constFirst();
    QVERIFY(m_session->call("GET", address).body == bytes);
    client->DeleteAsset(guid);
}

QByteArray CrowdTest::storedAddress(const QByteArray &bytes)
{
    const QByteArray path = m_session->reserve("stored.bin", bytes.size());
    m_session->call("PUT", path + "/files/0?offset=0", bytes);
    const HttpReply made = m_session->commit(path, sha256(bytes));
    return m_session->addressesOf(made.json().value(QLatin1String("guid")).toString()).value(0);
}

void CrowdTest::answersOneBesideIdleClientsAndSlowUploads()
{
    const QByteArray bytes = noise(300'000, 5);
    Probes idle;
    for (int i = 0; i < idleClients; ++i) {
        idle.push_back(std::make_unique<HttpProbe>(service().port()));
        idle.back()->send(health());
        QCOMPARE(idle.back()->read().status, 200);
    }
    QByteArrayList paths;
    Probes slow;
    for (int i = 0; i < slowUploads; ++i) {
        paths << m_session->reserve("slow.bin", bytes.size()) + "/files/0";
        slow.push_back(std::make_unique<HttpProbe>(service().port()));
        slow.back()->send(m_session->head("PUT", paths.last() + "?offset=0", bytes.size()) +
                          bytes.left(1000));
    }
    work();
    // None of them was given up for it.
    for (int i = 0; i < slowUploads; ++i) {
        slow.at(i)->send(bytes.mid(1000));
        const HttpReply reply = slow.at(i)->read();
        QCOMPARE(reply.status, 200);
        QCOMPARE(reply.json().value(QLatin1String("received")).toInteger(), bytes.size());
    }
    for (const Probe &client : idle) {
        client->send(health());
        QCOMPARE(client->read().status, 200);
    }
}

void CrowdTest::answersOneBesideClientsThatDripAndDoNotRead()
{
    const QByteArray bytes = noise(20'000'000, 6);
    const QByteArray address = storedAddress(bytes);
    QVERIFY(!address.isEmpty());
    Probes drips;
    Probes unread;
    for (int i = 0; i < badClients; ++i) {
        drips.push_back(std::make_unique<HttpProbe>(service().port()));
        drips.back()->send(i % 2 == 0 ? "GET /healthz HTTP/1.1\r\nX-Long: "
                                      : m_session->head("POST", "/v1/projects", 5000) + "{\"");
        unread.push_back(std::make_unique<HttpProbe>(service().port()));
        unread.back()->takeInLittle();
        unread.back()->send(m_session->request("GET", address, {}));
    }
    for (int round = 0; round < 5; ++round) {
        for (const Probe &client : drips)
            client->send("x");
        work();
    }
    // Going away in the middle is nothing to the service, either.
    for (const Probe &client : unread)
        client->abort();
    for (const Probe &client : drips)
        client->abort();
    work();
    QVERIFY(m_session->call("GET", address).body == bytes);
}

/// Those beyond its limit are let go of; who was there before goes on.
void CrowdTest::outlivesMoreConnectionsThanItTakes()
{
    HttpProbe early(service().port());
    early.send(health());
    QCOMPARE(early.read().status, 200);
    Probes storm;
    for (int i = 0; i < stormClients; ++i)
        storm.push_back(std::make_unique<HttpProbe>(service().port()));
    int closed = 0;
    for (int i = stormClients - 70; i < stormClients; ++i)
        closed += storm.at(i)->isClosed();
    QCOMPARE(closed, 70);
    // It has files left to work with.
    const QByteArray body = projectBody(newGuid());
    early.send(m_session->request("POST", "/v1/projects", body));
    QCOMPARE(early.read().status, 201);
    const QByteArray bytes = noise(300'000, 8);
    early.send(m_session->request(
        "POST", "/v1/uploads",
        R"({"name":"s","detail":"","folderId":0,"files":[{"name":"s.bin","size":300000}]})"));
    const QByteArray id =
        early.read().json().value(QLatin1String("uploadId")).toString().toLatin1();
    early.send(m_session->request("PUT", "/v1/uploads/" + id + "/files/0?offset=0", bytes));
    QCOMPARE(early.read().status, 200);
    early.send(m_session->request("POST", "/v1/uploads/" + id + "/commit",
                                  R"({"checksums":[")" + sha256(bytes) + R"("]})"));
    QCOMPARE(early.read().status, 201);
    storm.clear();
    QVERIFY(QTest::qWaitFor(
        [this] { return HttpProbe::request(service().port(), "GET", "/healthz").status == 200; },
        20'000));
    work();
}

ZEL_TEST_MAIN(CrowdTest)
#include "tst_crowd.moc"
