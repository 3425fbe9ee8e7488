// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/serviceprocess.h"
#include "tests/service/httpprobe.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <thread>

#include <signal.h>

using namespace ZelTest;

namespace {

constexpr int killsOverFiles = 200;
constexpr int killsOverChunks = 100;
/// A service lives up to this long, at first. Where it gets nothing done it lives longer the next
/// time, so that kills fall into every part of an upload on slow machines, too.
constexpr int firstLongestLifeMs = 30;
constexpr int leastLongestLifeMs = 10;
constexpr int longerMs = 4;

QByteArray hash(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

} // namespace

/// The service is killed again and again in the middle of uploads.
class UploadKillsTest : public TestCase
{
    Q_OBJECT

private slots:
    void listsNothingThatIsNotWholeAndLosesNothingItAcknowledged_data();
    void listsNothingThatIsNotWholeAndLosesNothingItAcknowledged();

private:
    HttpReply call(const QByteArray &method, const QByteArray &target,
                   const QByteArray &body = QByteArray())
    {
        QByteArrayList headers;
        if (!m_token.isEmpty())
            headers << "Authorization: Bearer " + m_token;
        return HttpProbe::request(m_service->port(), method, target, body, headers);
    }

    void signIn();
    bool uploadOne(QRandomGenerator &random);
    void verify(int kills);

    TestDatabases m_databases;
    std::unique_ptr<ServiceProcess> m_service;
    QByteArray m_token;
    QSet<QString> m_acknowledged; ///< guids
};

void UploadKillsTest::signIn()
{
    const HttpReply reply =
        call("POST", "/v1/sessions",
             R"({"user": "maja", "password": "sample-maja", "appName": "kills"})");
    m_token = reply.json().value(QLatin1String("token")).toString().toLatin1();
    QCOMPARE(call("PUT", "/v1/sessions/current/account", R"({"accountId": "1002"})").status, 204);
}

/// An asset whose name is the checksum of its bytes; false when the service went away.
bool UploadKillsTest::uploadOne(QRandomGenerator &random)
{
    QByteArray bytes(random.bounded(1, 200'000), Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random.generate());
    const QByteArray sha = hash(bytes);
    const HttpReply reserved =
        call("POST", "/v1/uploads",
             R"({"name": ")" + sha + R"(", "detail": "", "folderId": 0, "files": [{"name": "x", )" +
                 R"("size": )" + QByteArray::number(bytes.size()) + "}]}");
    if (reserved.status == 0)
        return false;
    const QByteArray path =
        "/v1/uploads/" + reserved.json().value(QLatin1String("uploadId")).toString().toLatin1();
    const qsizetype middle = bytes.size() / 2;
    if (call("PUT", path + "/files/0?offset=0", bytes.left(middle)).status == 0 ||
        call("PUT", path + "/files/0?offset=" + QByteArray::number(middle), bytes.mid(middle))
                .status == 0)
        return false;
    const HttpReply done = call("POST", path + "/commit", R"({"checksums": [")" + sha + "\"]}");
    if (done.status != 201)
        return false;
    m_acknowledged.insert(done.json().value(QLatin1String("guid")).toString());
    return true;
}

void UploadKillsTest::verify(int kills)
{
    const QJsonArray rows = call("GET", "/v1/asset-folders/0/assets")
                                .json()
                                .value(QLatin1String("assets"))
                                .toObject()
                                .value(QLatin1String("rows"))
                                .toArray();
    QSet<QString> listed;
    for (const QJsonValue &row : rows) {
        const QString guid = row.toArray().at(0).toString();
        listed.insert(guid);
        const QString address = call("GET", "/v1/assets/" + guid.toLatin1() + "/value")
                                    .json()
                                    .value(QLatin1String("value"))
                                    .toString();
        const HttpReply reply = call("GET", address.toLatin1());
        QCOMPARE(reply.status, 200);
        QCOMPARE(QString::fromLatin1(hash(reply.body)), row.toArray().at(1).toString());
    }
    QVERIFY2(listed.contains(m_acknowledged), "an asset that was acknowledged is gone");
    QVERIFY(m_acknowledged.size() > kills / 10);
}

void UploadKillsTest::listsNothingThatIsNotWholeAndLosesNothingItAcknowledged_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QString>("blobs");
    QTest::addColumn<int>("kills");
    QTest::newRow("sqlite, files") << false << QStringLiteral("files") << killsOverFiles;
    QTest::newRow("postgres, chunks") << true << QStringLiteral("database") << killsOverChunks;
}

void UploadKillsTest::listsNothingThatIsNotWholeAndLosesNothingItAcknowledged()
{
    QFETCH(bool, postgres);
    QFETCH(QString, blobs);
    QFETCH(int, kills);
    m_service = std::make_unique<ServiceProcess>();
    m_service->blobs = blobs;
    if (postgres) {
        m_databases.fresh(true);
        m_service->database = m_databases.server().newDatabase();
    }
    m_token.clear();
    m_acknowledged.clear();
    QVERIFY2(m_service->start(), qPrintable(m_service->error()));
    signIn();
    QRandomGenerator random(20261121);
    int longestLifeMs = firstLongestLifeMs;
    for (int round = 0; round < kills; ++round) {
        const auto pid = static_cast<pid_t>(m_service->processId());
        const std::chrono::milliseconds life(random.bounded(longestLifeMs));
        std::thread killer([pid, life] {
            std::this_thread::sleep_for(life);
            ::kill(pid, SIGKILL);
        });
        bool gotOneDone = false;
        while (uploadOne(random))
            gotOneDone = true;
        longestLifeMs += gotOneDone ? -1 : longerMs;
        longestLifeMs = std::max(longestLifeMs, leastLongestLifeMs);
        killer.join();
        m_service->kill();
        QVERIFY2(m_service->startAgain(), qPrintable(m_service->error()));
    }
    verify(kills);
    QCOMPARE(m_service->stop(), 0);
}

ZEL_TEST_MAIN(UploadKillsTest)
#include "tst_uploadkills.moc"
