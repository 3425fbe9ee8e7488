// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/endurance/connectionstate.h"
#include "tests/endurance/rawsession.h"

#include <QJsonObject>
#include <QTest>

#include <limits>
#include <memory>

#include <sys/resource.h>

using namespace ZelTest;

/// No file of the service can grow any more, and then it can again. A limit on the size of files
/// stands in for a full disk.
class FullDiskTest : public ContractTest
{
    Q_OBJECT

private slots:
    void init();

    void cleanup()
    {
        makeRoom();
        ContractTest::cleanup();
    }

    void refusesWritesAndGoesOnReading();
    void keepsWhatArrivedOfAnUpload();

private:
    void limitFiles(quint64 most) { limitProcess(service().processId(), RLIMIT_FSIZE, most); }

    void makeRoom() { limitFiles(std::numeric_limits<quint64>::max()); }

    HttpReply make(const QByteArray &project)
    {
        return m_session->call("POST", "/v1/projects", project);
    }

    std::unique_ptr<RawSession> m_session;
};

void FullDiskTest::init()
{
    ContractTest::init();
    m_session = std::make_unique<RawSession>(service().port(), nora(), contractStudio);
}

void FullDiskTest::refusesWritesAndGoesOnReading()
{
    const QByteArray before = projectBody(newGuid());
    const QByteArray meanwhile = projectBody(newGuid());
    const HttpReply made = make(before);
    QCOMPARE(made.status, 201);
    const auto reader = signIn(olaf(), contractStudio);
    const auto list = [&] { return projectsOf(*reader, QStringLiteral("session"))->count(); };
    const qsizetype count = list();
    // So that the next call of the session, too, wants to write down that it was used.
    static const Zel::SqlText usedAnHourAgo(R"sql(
        UPDATE session SET seen_at = seen_at - 3600000
    )sql");
    database().tx([&] { database().exec(usedAnHourAgo); });

    limitFiles(512);
    QCOMPARE(list(), count);
    if (!postgres()) { // which is not on this disk
        for (int i = 0; i < 20; ++i) {
            const HttpReply refused = make(meanwhile);
            QVERIFY2(refused.status == 503 || refused.status == 507, refused.body.constData());
            QVERIFY(!refused.code().isEmpty());
        }
        QCOMPARE(HttpProbe::request(service().port(), "GET", "/healthz").status, 200);
        QCOMPARE(list(), count);
    }
    makeRoom();
    QCOMPARE(make(meanwhile).status, 201); // nothing of it had been made
    QCOMPARE(list(), count + 1);
    QCOMPARE(make(before).body, made.body);
    QByteArray said;
    QVERIFY2(service().runCommand({QStringLiteral("doctor")}, &said) == 0, said.constData());
    service().kill();
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QCOMPARE(make(meanwhile).status, 200);
    QCOMPARE(make(before).body, made.body);
}

void FullDiskTest::keepsWhatArrivedOfAnUpload()
{
    const QByteArray bytes = noise(3'000'000, 4);
    const QByteArray path = m_session->reserve("large.bin", bytes.size());
    const auto send = [&](qint64 offset, qint64 count) {
        return m_session->call("PUT", path + "/files/0?offset=" + QByteArray::number(offset),
                               bytes.mid(offset, count));
    };
    QCOMPARE(send(0, 1'000'000).status, 200);
    limitFiles(2'000'000);
    const HttpReply refused = send(1'000'000, 2'000'000);
    QCOMPARE(refused.status, 507);
    QCOMPARE(refused.code(), QStringLiteral("storage-full"));
    QCOMPARE(m_session->commit(path, sha256(bytes)).code(), QStringLiteral("incomplete"));
    makeRoom();
    const HttpReply asked = send(0, 0);
    const qint64 there = asked.json().value(QLatin1String("received")).toInteger();
    QCOMPARE(there, 2'000'000);
    QCOMPARE(send(there, bytes.size() - there).status, 200);
    const HttpReply made = m_session->commit(path, sha256(bytes));
    QCOMPARE(made.status, 201);
    const QString guid = made.json().value(QLatin1String("guid")).toString();
    QVERIFY(m_session->call("GET", m_session->addressesOf(guid).constFirst()).body == bytes);
}

ZEL_TEST_MAIN(FullDiskTest)
#include "tst_fulldisk.moc"
