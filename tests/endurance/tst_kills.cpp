// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/audiencefixture.h"
#include "tests/contract/recordtext.h"
#include "tests/contract/writehold.h"
#include "tests/endurance/rawsession.h"
#include "tests/endurance/stubbornwriters.h"

#include <QTest>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <functional>

#include <signal.h>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr int kills = 50; // in each of two tests
constexpr int outages = 5;
constexpr int holds = 2; // of SQLite, each longer than the service waits
/// A service lives up to this long, at first. Where it gets nothing done it lives longer the next
/// time, so that kills fall into every part of a call on slow machines, too.
constexpr int firstLongestLifeMs = 80;
constexpr int leastLongestLifeMs = 20;
constexpr int longerMs = 8;
constexpr int shorterMs = 2;

/// Another one with each run; ZEL_KILLS_SEED repeats one.
quint32 seed()
{
    static const quint32 value = [] {
        const quint32 given = qEnvironmentVariable("ZEL_KILLS_SEED").toUInt();
        const quint32 chosen = given != 0 ? given : QRandomGenerator::system()->generate();
        std::printf("ZEL_KILLS_SEED=%u\n", chosen);
        std::fflush(stdout);
        return chosen;
    }();
    return value;
}

Zel::Poll pollOf(const QString &guid)
{
    Zel::Poll poll{guid, QStringLiteral("Which?"), false, {}};
    for (int i = 1; i <= 3; ++i)
        poll.choices.append({newGuid(), QStringLiteral("Answer %1").arg(i), 0});
    return poll;
}

} // namespace

/// The service, or its database, is killed again and again while people work with it.
class KillsTest : public AudienceTest
{
    Q_OBJECT

private slots:
    void losesNothingAcknowledgedWhenItIsKilled();
    void listsNoHalfUploadAndLosesNoneWhenItIsKilled();
    void comesBackByItselfWhenItsDatabaseDoes();

protected:
    QStringList samplePaths() const override { return ServiceProcess::sampleWorkspace(); }

private:
    using Interruption = std::function<void(WritersState &)>;

    /// Has them write while `interrupt` is at work, and end.
    void interruptWriters(WritersState &state, const QList<StubbornWriter *> &writers,
                          const Interruption &interrupt);
    /// The same with one of each kind, and looks for what they were told is stored.
    void interruptEverybody(const Interruption &interrupt);
    void killAgainAndAgain(WritersState &state);
    void interruptDatabase(WritersState &state);
    void verifyProjects(const ProjectWriter &writer);
    void verifyFolders(const FolderWriter &writer);
    void verifyAssets(const QSet<QString> &made);
    void verifyAudience(const AudienceWriter &writer, const Moderator &moderator);
    void expectContentDoctor();
    bool doSomething(WritersState &state, int more);

    QString m_deployment;
    QString m_poll;
    QRandomGenerator m_random{seed()};
};

void KillsTest::expectContentDoctor()
{
    QByteArray said;
    const int code = service().runCommand({QStringLiteral("doctor")}, &said);
    QVERIFY2(code == 0, said.constData());
}

bool KillsTest::doSomething(WritersState &state, int more)
{
    const int before = state.acknowledged;
    return QTest::qWaitFor([&] { return state.acknowledged >= before + more; }, 60'000);
}

void KillsTest::interruptWriters(WritersState &state, const QList<StubbornWriter *> &writers,
                                 const Interruption &interrupt)
{
    state.address = service().address();
    for (StubbornWriter *writer : writers)
        writer->start();
    interrupt(state);
    state.ending = true;
    for (StubbornWriter *writer : writers)
        writer->wait();
    QCOMPARE(state.faults.join(QLatin1Char('\n')), QString());
    std::printf("%d acknowledged, %d interrupted\n", state.acknowledged.load(),
                state.interrupted.load());
    QVERIFY(state.interrupted > 0);
    expectContentDoctor();
}

void KillsTest::interruptEverybody(const Interruption &interrupt)
{
    m_deployment = newDeployment();
    m_poll = newGuid();
    database().tx([&] { QVERIFY(store().polls.define(refOf(m_deployment), {pollOf(m_poll)})); });
    WritersState state;
    ProjectWriter projects(state);
    FolderWriter folders(state);
    AssetWriter assets(state, m_random.generate());
    AudienceWriter audience(state, m_deployment, m_poll);
    Moderator moderator(state);
    SignInWriter signIns(state);
    interruptWriters(state, {&projects, &folders, &assets, &audience, &moderator, &signIns},
                     interrupt);
    verifyProjects(projects);
    verifyFolders(folders);
    verifyAssets(assets.made);
    verifyAudience(audience, moderator);
}

void KillsTest::verifyProjects(const ProjectWriter &writer)
{
    QVERIFY(!writer.made.isEmpty());
    QMap<QString, QString> listed;
    const auto client = signIn(nora(), contractStudio);
    const auto projects = projectsOf(*client, QStringLiteral("session"));
    for (const ProjectRecordPtr &project : *projects) {
        QVERIFY2(!listed.contains(project->guid), "a project is listed twice");
        listed.insert(project->guid, textOf(*project));
    }
    for (auto made = writer.made.begin(); made != writer.made.end(); ++made)
        QCOMPARE(listed.value(made.key()), made.value());
}

void KillsTest::verifyFolders(const FolderWriter &writer)
{
    QVERIFY(!writer.made.isEmpty());
    QMap<qint16, QString> listed;
    const auto client = signIn(nora(), contractStudio);
    const auto folders = client->GetAssetFolders(0);
    for (const AssetFolderRecordPtr &folder : *folders) {
        QVERIFY2(!listed.contains(folder->folderId), "a number was given twice");
        listed.insert(folder->folderId, folder->folderName);
    }
    for (auto made = writer.made.begin(); made != writer.made.end(); ++made)
        QCOMPARE(listed.value(made.key()), made.value());
}

/// Whatever is listed is whole, acknowledged or not.
void KillsTest::verifyAssets(const QSet<QString> &made)
{
    QVERIFY(!made.isEmpty());
    const RawSession session(service().port(), olaf(), contractStudio);
    const auto client = signIn(olaf(), contractStudio);
    AssetCollectionPtr assets;
    client->GetFolderAssets(0, QString(), QStringLiteral("0"), 0, 0, assets);
    QSet<QString> listed;
    for (const AssetRecordPtr &asset : *assets) {
        if (!asset->assetName.startsWith(QLatin1String("sums:")))
            continue; // of somebody else
        QVERIFY2(!listed.contains(asset->guid), "an asset is listed twice");
        listed.insert(asset->guid);
        QByteArrayList contents;
        for (const QByteArray &address : session.addressesOf(asset->guid)) {
            const HttpReply reply = session.call("GET", address);
            QCOMPARE(reply.status, 200);
            contents << reply.body;
        }
        QCOMPARE(asset->assetName, AssetWriter::nameFor(contents));
    }
    QVERIFY2(listed.contains(made), "an asset that was acknowledged is gone");
}

void KillsTest::verifyAudience(const AudienceWriter &writer, const Moderator &moderator)
{
    QVERIFY(!writer.votes.isEmpty() && !moderator.answers.isEmpty());
    const auto client = signIn(maja(), brightwaterMedia);
    const auto questions =
        client->GetQuestions(m_deployment, QDateTime(QDate(1900, 1, 1), QTime()), QDateTime());
    QCOMPARE(questions->count(), writer.texts.size());
    for (const QuestionRecordPtr &question : *questions) {
        const QString guid = question->QuestionGuid;
        QVERIFY(writer.texts.contains(guid));
        if (!moderator.answers.contains(guid))
            continue; // or on its way to be: the last one a moderator had in hand
        QCOMPARE(question->AnswerText, moderator.answers.value(guid));
        QCOMPARE(question->QuestionText, QStringLiteral("Reworded"));
        QCOMPARE(question->Status, QStringLiteral("STAGED"));
    }
    const auto votes = client->GetPollResponses(m_deployment);
    QVERIFY(votes.has_value());
    QCOMPARE(votes->size(), writer.votes.size());
    for (const PollResponse &vote : *votes)
        QCOMPARE(vote.answerId.toInt(), writer.votes.value(vote.userGuid));
}

void KillsTest::killAgainAndAgain(WritersState &state)
{
    int longestLifeMs = firstLongestLifeMs;
    for (int round = 1; round <= kills; ++round) {
        const int before = state.acknowledged;
        QThread::msleep(static_cast<unsigned long>(m_random.bounded(longestLifeMs)));
        service().kill();
        longestLifeMs += state.acknowledged > before ? -shorterMs : longerMs;
        longestLifeMs = std::max(longestLifeMs, leastLongestLifeMs);
        if (round % 20 == 0)
            expectContentDoctor();
        QVERIFY2(service().startAgain(), qPrintable(service().error()));
    }
    QVERIFY(doSomething(state, 10));
}

void KillsTest::losesNothingAcknowledgedWhenItIsKilled()
{
    interruptEverybody([this](WritersState &state) { killAgainAndAgain(state); });
}

void KillsTest::listsNoHalfUploadAndLosesNoneWhenItIsKilled()
{
    WritersState state;
    PieceWriter pieces(state, m_random.generate());
    PieceWriter more(state, m_random.generate());
    interruptWriters(state, {&pieces, &more},
                     [this](WritersState &writers) { killAgainAndAgain(writers); });
    QVERIFY(state.acknowledged > kills / 4);
    verifyAssets(pieces.made + more.made);
}

void KillsTest::interruptDatabase(WritersState &state)
{
    const qint64 process = service().processId();
    for (int round = 0; round < (postgres() ? outages : holds); ++round) {
        QVERIFY(doSomething(state, 1 + m_random.bounded(20)));
        if (!postgres()) {
            const WriteHold hold(database());
            const int before = state.interrupted;
            QVERIFY(QTest::qWaitFor([&] { return state.interrupted > before; }, 60'000));
            continue;
        }
        // The end of one of its servers makes PostgreSQL end all of them and recover.
        const QString one =
            postgres()->run(QStringLiteral("SELECT pid FROM pg_stat_activity "
                                           "WHERE datname = '%1' AND pid <> pg_backend_pid()")
                                .arg(database().address().database));
        QVERIFY2(!one.isEmpty(), qPrintable(postgres()->error()));
        ::kill(static_cast<pid_t>(one.toInt()), SIGKILL);
        QVERIFY(doSomething(state, 1 + m_random.bounded(20)));
        postgres()->stop(true);
        const int before = state.interrupted;
        QVERIFY(QTest::qWaitFor([&] { return state.interrupted > before; }, 60'000));
        QVERIFY2(postgres()->startAgain(), qPrintable(postgres()->error()));
    }
    QVERIFY(doSomething(state, 30));
    QCOMPARE(service().processId(), process);
}

void KillsTest::comesBackByItselfWhenItsDatabaseDoes()
{
    interruptEverybody([this](WritersState &state) { interruptDatabase(state); });
}

ZEL_TEST_MAIN(KillsTest)
#include "tst_kills.moc"
