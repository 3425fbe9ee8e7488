// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/deploymentimport.h"
#include "service/store/migrations.h"
#include "service/store/simulation.h"
#include "service/store/store.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

#include <memory>

using namespace Zel;

namespace {

const QString live = QStringLiteral("b80d4f7e-2ad6-57be-a7b3-0efa8160473c");
const QString rehearsal = QStringLiteral("8bb7927e-dfcf-534e-b554-ffd670748d4d");
const QString captions = QStringLiteral("5c400ad7-64e6-55e6-9e0a-11462ba0bba6");
constexpr qint64 brightwater = 1001;
const TimeRange always{-1'000'000'000'000'000, 1'000'000'000'000'000};

const QByteArray viewHead = "user,at,timeSpent,closed,browserType,jsVersion,screenDepth\n";
const QByteArray surveys = R"([{"guid":"00000000-0000-4000-8000-000000000001","name":"S",
  "questions":[{"guid":"00000000-0000-4000-8000-000000000002","question":"Q","multiple":true,
    "answers":[{"guid":"00000000-0000-4000-8000-00000000000a","answer":"yes","correct":true},
               {"guid":"00000000-0000-4000-8000-00000000000b","answer":"no"}]}]}])";
const QByteArray mapping = R"([{"survey":"00000000-0000-4000-8000-000000000001","file":"t/t.csv",
  "user":"who","atColumn":"when","values":{"ja":1,"nein":"00000000-0000-4000-8000-00000000000B"},
  "questions":[{"column":"a","question":"00000000-0000-4000-8000-000000000002"}]}])";

} // namespace

/// Deployments and what happened in them, taken in from files.
class AudienceImportTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void takesTheSampleInOnce();
    void readsTheSameFromCsvAndJsonLines();
    void readsTablesByTheirMapping();
    void namesThePlaceOfEveryFault_data();
    void namesThePlaceOfEveryFault();
    void storesNothingOfAFailedImport();
    void findsDeploymentsByTheirKey();
    void simulatesTheSameForTheSameNumbers();

private:
    void write(const QString &name, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(m_folder->filePath(name)).path());
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("the test file cannot be written");
    }

    /// What an import of the folder into the rehearsal says: counts, or what is wrong.
    QString take()
    {
        QString text;
        try {
            const AudienceFiles files = AudienceFiles::read({m_folder->path()});
            for (const ImportCount &count : importAudience(*m_store, ref(), files)) {
                if (count.added + count.changed + count.unchanged > 0)
                    text += QStringLiteral("%1 %2/%3/%4 ")
                                .arg(count.kind)
                                .arg(count.added)
                                .arg(count.changed)
                                .arg(count.unchanged);
            }
        } catch (const WorkspaceFileError &error) {
            return QString::fromUtf8(error.what()).remove(m_folder->path() + QLatin1Char('/'));
        }
        return text.trimmed();
    }

    DeploymentRef ref() { return m_store->deployments.find(brightwater, m_deployment).value(); }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_folder;
    QTemporaryDir m_files;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
    QString m_deployment;
};

void AudienceImportTest::init()
{
    TestCase::init();
    m_folder = std::make_unique<QTemporaryDir>();
    if (!m_store) {
        m_database =
            std::make_unique<Database>(m_databases.fresh(false), Database::Missing::Create);
        Migrations(*m_database).migrate();
        m_store = std::make_unique<Store>(*m_database, PasswordHasher::Cost::Minimal, systemClock(),
                                          m_files.path());
        importWorkspace(*m_store, WorkspaceFiles::read({ZelTest::ServiceProcess::sampleFolder()}));
    }
    m_deployment = QUuid::createUuid().toString(QUuid::WithoutBraces);
    m_database->tx([&] {
        m_store->deployments.put(brightwater,
                                 {m_deployment, captions, QStringLiteral("A deployment"), 0});
    });
}

void AudienceImportTest::cleanup()
{
    m_folder.reset();
}

void AudienceImportTest::takesTheSampleInOnce()
{
    const QList<ImportCount> again =
        importWorkspace(*m_store, WorkspaceFiles::read({ZelTest::ServiceProcess::sampleFolder()}));
    QStringList kinds;
    for (const ImportCount &count : again) {
        QCOMPARE(count.added + count.changed, 0);
        kinds << count.kind;
    }
    // Folders that have not changed are not read again; what a changed one still holds is known.
    QVERIFY(kinds.contains(QLatin1String("deployments")));
    QVERIFY(!kinds.contains(QLatin1String("page views")));
    m_database->tx([&] {
        for (const QString &guid : {live, rehearsal})
            m_store->deployments.setFilesHash(brightwater, guid, QByteArray(32, 'x'));
    });
    const QList<ImportCount> changed =
        importWorkspace(*m_store, WorkspaceFiles::read({ZelTest::ServiceProcess::sampleFolder()}));
    for (const ImportCount &count : changed) {
        QCOMPARE(count.added + count.changed, 0);
        kinds << count.kind;
    }
    for (const char *kind :
         {"deployments", "registrants", "page views", "questions", "votes", "responses"})
        QVERIFY(kinds.contains(QLatin1String(kind)));
    const Statistics::Totals totals =
        m_store->statistics.totals(m_store->deployments.find(brightwater, live).value(), always);
    QCOMPARE(totals.hits, 18840);
}

void AudienceImportTest::readsTheSameFromCsvAndJsonLines()
{
    write(QStringLiteral("page-views.csv"), viewHead + "u,2026-05-07T15:00:00Z,5,true,IE,1.3,24\n"
                                                       "v,2026-05-07T15:00:00Z,5,false,,,\n");
    write(QStringLiteral("registrants.csv"), "user,firstName,lastName,email,at\n"
                                             "u,\"A, B\",C,,2026-05-01T00:00:00Z\n");
    QCOMPARE(take(), QStringLiteral("registrants 1/0/0 page views 2/0/0"));
    QDir(m_folder->path()).remove(QStringLiteral("page-views.csv"));
    QDir(m_folder->path()).remove(QStringLiteral("registrants.csv"));
    write(QStringLiteral("page-views.jsonl"),
          R"({"user":"u","at":1778166000000,"timeSpent":5,"closed":true,"browserType":"IE",)"
          R"("jsVersion":"1.3","screenDepth":"24"})"
          "\r\n\n"
          R"({"user":"v","at":"2026-05-07T17:00:00+02:00","timeSpent":9,"closed":true,)"
          R"("browserType":"","jsVersion":"","screenDepth":""})");
    write(QStringLiteral("registrants.jsonl"),
          R"({"user":"u","firstName":"A, B","lastName":"C","email":"","at":1777593600000})");
    QCOMPARE(take(), QStringLiteral("registrants 0/0/1 page views 0/1/1"));
    QCOMPARE(m_store->statistics.totals(ref(), always).seconds, 14);
}

void AudienceImportTest::readsTablesByTheirMapping()
{
    write(QStringLiteral("surveys.json"), surveys);
    write(QStringLiteral("s.mapping.json"), mapping);
    write(QStringLiteral("t/t.csv"), "who,when,a,more\n"
                                     "1,2026-05-07T15:00:00Z,ja,x\n"
                                     "2,2026-05-07T15:00:00Z,,x\n"
                                     "3,2026-05-07T15:00:00Z,ja:nein,x\n");
    QCOMPARE(take(), QStringLiteral("responses 2/0/0"));
    QCOMPARE(take(), QStringLiteral("responses 0/0/2"));
    const SurveyItem item = m_store->surveys.list(ref()).first().items.first();
    QCOMPARE(item.choices.at(0).respondents, 2);
    QCOMPARE(item.choices.at(1).respondents, 1);
    write(QStringLiteral("t/t.csv"), "who,when,a\n1,2026-05-07T15:00:00Z,nein\n");
    QCOMPARE(take(), QStringLiteral("t/t.csv:2: another row has this id."));
}

void AudienceImportTest::namesThePlaceOfEveryFault_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("complaint");
    const auto row = [](const char *name, const char *file, const QByteArray &text,
                        const char *complaint) {
        QTest::newRow(name) << QString::fromLatin1(file) << text << QString::fromLatin1(complaint);
    };
    row("no user", "page-views.csv", viewHead + ",2026-05-07T15:00:00Z,5,true,,,\n",
        "page-views.csv:2: \"user\" is empty.");
    row("no zone", "page-views.csv", viewHead + "u,2026-05-07T15:00:00,5,true,,,\n",
        "page-views.csv:2: \"at\" must be a time with its zone like 2026-03-04T15:00:00Z.");
    row("no time", "page-views.csv", viewHead + "u,,5,true,,,\n",
        "page-views.csv:2: \"at\" must be a time.");
    row("a column more", "page-views.csv",
        "user,at,timeSpent,closed,browserType,jsVersion,screenDepth,x\n"
        "u,2026-05-07T15:00:00Z,5,true,,,,1\n",
        "page-views.csv:2: \"x\" is not known.");
    row("no JSON", "page-views.jsonl", "\n{",
        "page-views.jsonl:2: is not valid JSON: unterminated object.");
    row("no object", "votes.jsonl", "[]", "votes.jsonl:1: must be an object.");
    row("no state", "questions.jsonl",
        R"({"id":"00000000-0000-4000-8000-000000000009","user":"u","text":"t","at":1,"status":"X"})",
        "questions.jsonl:1: \"status\" is no state of a question.");
    row("an unknown poll", "votes.jsonl",
        R"({"user":"u","poll":"00000000-0000-4000-8000-000000000009","answer":"1","at":1})",
        "votes.jsonl:1: there is no such poll or answer.");
    row("an answer outside", "surveys.json",
        QByteArray(surveys).replace("\"no\"", "\"no\",\"col\":2"),
        "surveys.json:1: the answer stands outside of its grid.");
    row("two at one place", "surveys.json",
        QByteArray(surveys).replace("\"no\"", "\"no\",\"row\":1"),
        "surveys.json:1: \"row 1, col 1\" stands there twice.");
    row("an answer twice", "surveys.json", QByteArray(surveys).replace("00000b", "00000a"),
        "surveys.json:1: \"00000000-0000-4000-8000-00000000000a\" stands there twice.");
    row("a table that is not there", "s.mapping.json", mapping,
        "t/t.csv: cannot be read: No such file or directory.");
}

void AudienceImportTest::namesThePlaceOfEveryFault()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(QString, complaint);
    write(file, text);
    QCOMPARE(take(), complaint);
    QCOMPARE(m_store->statistics.totals(ref(), always).hits, 0);
}

void AudienceImportTest::storesNothingOfAFailedImport()
{
    write(QStringLiteral("page-views.csv"), viewHead + "u,2026-05-07T15:00:00Z,5,true,IE,1.3,24\n");
    write(QStringLiteral("surveys.json"), surveys);
    write(QStringLiteral("responses.jsonl"),
          R"({"user":"u","survey":"00000000-0000-4000-8000-000000000001",)"
          R"("question":"00000000-0000-4000-8000-000000000002","answers":["3"],"at":1})");
    QVERIFY(take().startsWith(QLatin1String("responses.jsonl:1: \"answers\" names none")));
    QCOMPARE(m_store->statistics.totals(ref(), always).hits, 0);
    QVERIFY(m_store->surveys.list(ref()).isEmpty());
    try {
        AudienceFiles::read({m_folder->filePath(QStringLiteral("other.csv"))});
        QFAIL("it read a file that nobody knows");
    } catch (const WorkspaceFileError &error) {
        QVERIFY(error.sentence().startsWith(QLatin1String("is none of registrants")));
    }
}

void AudienceImportTest::findsDeploymentsByTheirKey()
{
    const QString key = QStringLiteral("sample-key-captions-live");
    QVERIFY(m_store->deployments.findByKey(live, key).has_value());
    QVERIFY(!m_store->deployments.findByKey(m_deployment, key));
    QVERIFY(!m_store->deployments.findByKey(live, QString()));
    QVERIFY(!m_store->deployments.findByKey(live, key.toUpper()));
    const QString next = QStringLiteral("another key of it");
    m_database->tx([&] {
        QVERIFY(m_store->deployments.setKey(brightwater, m_deployment, next));
        QVERIFY(!m_store->deployments.setKey(brightwater, m_deployment, next));
    });
    QVERIFY(m_store->deployments.findByKey(m_deployment, next).has_value());
}

void AudienceImportTest::simulatesTheSameForTheSameNumbers()
{
    SimulationPlan plan;
    plan.beginsAt = 1'778'112'000'000;
    const SimulatedCount first = simulate(m_store->audience, ref(), plan);
    const auto figures = [&](const QString &guid) {
        const DeploymentRef deployment = m_store->deployments.find(brightwater, guid).value();
        const TimeRange days{plan.beginsAt, plan.beginsAt + plan.days * 86'400'000 - 1};
        const Statistics::Totals totals = m_store->statistics.totals(deployment, days);
        return QList<qint64>{totals.hits,
                             totals.seconds,
                             m_store->statistics.participantCount(deployment, days),
                             m_store->statistics.registrantCount(deployment),
                             m_store->statistics.registeredParticipantCount(deployment, days),
                             m_store->statistics.hitCount(deployment, days,
                                                          Statistics::Attribute::BrowserType,
                                                          QStringLiteral("IE"))};
    };
    const QList<qint64> once = figures(m_deployment);
    QCOMPARE(once.at(0), first.views);
    QCOMPARE(once.at(2), plan.participants);
    QCOMPARE(once.at(3), first.registrants);
    QCOMPARE(once.at(4), plan.participants * 2 / 5);
    for (const qsizetype count : {0, 2, 3, 4, 5})
        QVERIFY(once.at(count) > 0 && once.at(count) <= 32767);
    const QString before = m_deployment;
    init();
    simulate(m_store->audience, ref(), plan);
    QCOMPARE(figures(m_deployment), once);
    init();
    plan.seed = 2;
    simulate(m_store->audience, ref(), plan);
    QVERIFY(figures(m_deployment) != figures(before));
}

ZEL_TEST_MAIN(AudienceImportTest)
#include "tst_audienceimport.moc"
