// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/audiencefixture.h"
#include "tests/contract/recordtext.h"
#include "tests/contract/serviceproxy.h"

#include <QMutex>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <thread>

using namespace QXSC;
using namespace ZelTest;

namespace {

constexpr qint64 noon = 1'800'000'000'000;
const QDateTime from = QDateTime::fromMSecsSinceEpoch(noon - 1000 * 3600);
const QDateTime to = QDateTime::fromMSecsSinceEpoch(noon + 1000 * 3600);

Zel::AskedQuestion asked(std::optional<qint64> at)
{
    Zel::AskedQuestion question;
    question.guid = newGuid();
    question.userId = QStringLiteral("someone");
    question.text = QStringLiteral("q");
    question.at = at;
    question.status = QStringLiteral("SUBMITTED");
    return question;
}

Zel::PageView viewOf(const QString &user, qint64 at)
{
    Zel::PageView view;
    view.id = QUuid::createUuid().toRfc4122();
    view.userId = user;
    view.at = at;
    view.seconds = 1;
    return view;
}

/// Does something again and again in a thread of its own, as long as it lives or until it fails.
class Meanwhile
{
public:
    explicit Meanwhile(std::function<void(int)> act)
        : m_thread([this, act = std::move(act)] {
            // A list that grew faster than it is read would never end.
            constexpr int most = 300;
            try {
                for (int i = 0; i < most && !m_stopping; ++i) {
                    act(i);
                    m_times = i + 1;
                }
            } catch (const std::exception &error) {
                const QMutexLocker lock(&m_mutex);
                m_failure = QString::fromUtf8(error.what());
            }
        })
    {
    }

    ~Meanwhile()
    {
        m_stopping = true;
        m_thread.join();
    }

    Q_DISABLE_COPY_MOVE(Meanwhile)

    int times() const { return m_times; }

    /// Why it does nothing more; empty while it has not failed.
    QString failure() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_failure;
    }

private:
    mutable QMutex m_mutex;
    QString m_failure;
    std::atomic_bool m_stopping = false;
    std::atomic_int m_times = 0;
    std::thread m_thread;
};

} // namespace

/// Long lists page by page, and changes whose answer is lost, through the client against the real
/// service.
class ContractPagesTest : public AudienceTest
{
    Q_OBJECT

private slots:
    void aListIsTheSameHoweverItIsCut_data();
    void aListIsTheSameHoweverItIsCut();
    void questionsStayWholeWhileOthersAreAsked();
    void participantsStayWholeWhileTheirViewsComeInLate();
    void viewsStayWholeWhileOthersComeIn();
    void projectsStayWholeWhileOthersComeAndGo();
    void aFolderWhoseAnswerIsLostIsMadeOnce();
    void aFolderIsDeletedOnce();
    void aQuestionWhoseAnswerIsLostIsChangedOnce();
    void aProjectWhoseAnswerIsLostIsMadeOnce();

private:
    static void cut(Client &client, qint64 rows)
    {
        NetworkPolicy policy = client.networkPolicy();
        policy.pageRows = rows;
        client.setNetworkPolicy(policy);
    }

    QStringList folderNames(Client &client)
    {
        QStringList names;
        const auto folders = client.GetAssetFolders(0);
        for (const AssetFolderRecordPtr &folder : *folders)
            names << folder->folderName;
        return names;
    }

    /// A client that reaches the service through a proxy.
    std::unique_ptr<Client> throughProxy(const ServiceProxy &proxy, const Person &person,
                                         qint64 account)
    {
        auto client = std::make_unique<Client>();
        authenticate(*client, proxy.address(), person.user, person.password);
        chooseAccount(*client, QString::number(account));
        return client;
    }
};

using ListText = std::function<QStringList(Client &)>;
Q_DECLARE_METATYPE(ListText)

void ContractPagesTest::aListIsTheSameHoweverItIsCut_data()
{
    QTest::addColumn<ListText>("read");
    const QDateTime begin(QDate(2000, 1, 1), QTime(0, 0));
    const QDateTime end(QDate(2100, 1, 1), QTime(0, 0));
    const auto row = [](const char *name, const ListText &read) { QTest::newRow(name) << read; };
    row("projects", [](Client &client) {
        QStringList texts;
        const auto list = projectsOf(client, QStringLiteral("webcast"));
        for (const ProjectRecordPtr &one : *list)
            texts << textOf(*one);
        return texts;
    });
    row("deployments", [](Client &client) {
        QStringList texts;
        const auto list = client.deployments(captionsProject);
        for (const auto &one : list)
            texts << one.guid + one.name;
        return texts;
    });
    row("questions", [=](Client &client) {
        QStringList texts;
        const auto list = client.GetQuestions(liveDeployment, begin, QDateTime());
        for (const QuestionRecordPtr &one : *list)
            texts << one->QuestionGuid + one->User->UserID;
        return texts;
    });
    row("participants", [=](Client &client) {
        QStringList texts;
        const auto list = client.GetParticipants(liveDeployment, begin, end);
        for (const ParticipantRecordPtr &one : *list)
            texts << one->User->UserID + QString::number(one->TimeSpent);
        return texts;
    });
    row("registrants", [=](Client &client) {
        QStringList texts;
        const auto list = client.GetRegistrants(liveDeployment, begin, end);
        for (const RegistrantRecordPtr &one : *list)
            texts << one->User->UserID + one->User->Email + QString::number(one->TimeSpent);
        return texts;
    });
    row("page views", [=](Client &client) {
        QStringList texts;
        const auto list = client.GetPageViews(liveDeployment, begin, end);
        for (const PageViewRecordPtr &one : *list)
            texts << one->User->UserID + QString::number(one->ViewDate.toMSecsSinceEpoch());
        return texts;
    });
    row("poll responses", [](Client &client) {
        QStringList texts;
        const auto list = client.GetPollResponses(liveDeployment);
        for (const PollResponse &one : *list)
            texts << one.userGuid + one.questionGuid + one.answerId;
        return texts;
    });
    row("survey responses", [](Client &client) {
        QStringList texts;
        const auto survey = client.GetSurveys(liveDeployment)->item(1);
        const auto list = client.GetSurveyResponses(liveDeployment, survey->guid);
        for (const SurveyResponse &one : *list)
            texts << one.userGuid + one.questionGuid + one.answer + one.answerTxt;
        return texts;
    });
    row("themes", [](Client &client) {
        QStringList texts;
        ThemeCollectionPtr list;
        client.callListMethod(QString(), QStringLiteral("getFullThemeList_Array"), list);
        for (const ThemeRecordPtr &one : *list)
            texts << one->guid + one->name + QString::number(one->templates->count());
        return texts;
    });
    row("assets", [](Client &client) {
        QStringList texts;
        const auto folders = client.GetAssetFolders(0);
        for (const AssetFolderRecordPtr &folder : *folders) {
            AssetCollectionPtr list;
            client.GetFolderAssets(folder->folderId, {}, {}, 0, 0, list);
            for (const AssetRecordPtr &one : *list)
                texts << one->guid + one->assetName;
        }
        return texts;
    });
}

void ContractPagesTest::aListIsTheSameHoweverItIsCut()
{
    QFETCH(ListText, read);
    const auto client = signIn(maja(), brightwaterMedia);
    const QStringList whole = read(*client);
    QVERIFY(whole.size() >= 2);
    // Few calls of long lists, and cuts at every place of short ones.
    constexpr qint64 most = 50'000; // rows of one page
    const qint64 least = 1 + whole.size() / 40;
    for (const qint64 rows : {least, least + 1, qint64(whole.size()) - 1, qint64(whole.size())}) {
        cut(*client, std::min(rows, most));
        QCOMPARE(read(*client), whole);
    }
}

void ContractPagesTest::questionsStayWholeWhileOthersAreAsked()
{
    const auto client = signIn(maja(), brightwaterMedia);
    cut(*client, 7);
    const QString deployment = newDeployment();
    QList<Zel::AskedQuestion> there;
    for (int i = 0; i < 60; ++i)
        there << asked(i < 20 ? std::nullopt : std::optional(noon + 10 * i));
    store().questions.take(refOf(deployment), there);
    const auto ref = refOf(deployment);
    const Meanwhile others([&](int i) {
        // Before, among and behind those that are there.
        store().questions.take(ref, {asked(noon + (i * 7919) % 700),
                                     asked(i % 5 == 0 ? std::nullopt : std::optional(noon - i))});
    });
    for (int round = 0; round < 8 || others.times() < 20; ++round) {
        QCOMPARE(others.failure(), QString());
        QSet<QString> seen;
        std::optional<QDateTime> before;
        const auto list = client->GetQuestions(deployment, from, to);
        for (const QuestionRecordPtr &one : *list) {
            QVERIFY(!seen.contains(one->QuestionGuid));
            seen.insert(one->QuestionGuid);
            if (!one->SubmittedSpecified)
                QVERIFY(!before);
            else
                QVERIFY(!before || *before <= one->Submitted);
            if (one->SubmittedSpecified)
                before = one->Submitted;
        }
        for (const Zel::AskedQuestion &question : std::as_const(there))
            QVERIFY(seen.contains(question.guid));
    }
}

void ContractPagesTest::participantsStayWholeWhileTheirViewsComeInLate()
{
    const auto client = signIn(maja(), brightwaterMedia);
    cut(*client, 5);
    const QString deployment = newDeployment();
    const auto ref = refOf(deployment);
    constexpr int people = 40;
    const auto user = [](int i) { return QStringLiteral("user %1").arg(i % people); };
    QList<Zel::PageView> views;
    for (int i = 0; i < people; ++i)
        views << viewOf(user(i), noon + i);
    store().audience.takeViews(ref, views);
    // Each of them turns out to have been there earlier than known.
    const Meanwhile others(
        [&](int i) { store().audience.takeViews(ref, {viewOf(user(i * 17), noon - i)}); });
    for (int round = 0; round < 8 || others.times() < people; ++round) {
        QCOMPARE(others.failure(), QString());
        QSet<QString> seen;
        const auto list = client->GetParticipants(deployment, from, to);
        for (const ParticipantRecordPtr &one : *list) {
            QVERIFY(!seen.contains(one->User->UserID));
            seen.insert(one->User->UserID);
        }
        QCOMPARE(seen.size(), people);
    }
}

void ContractPagesTest::viewsStayWholeWhileOthersComeIn()
{
    const auto client = signIn(maja(), brightwaterMedia);
    cut(*client, 9);
    const QString deployment = newDeployment();
    const auto ref = refOf(deployment);
    constexpr int count = 50;
    QList<Zel::PageView> views;
    for (int i = 0; i < count; ++i)
        views << viewOf(QStringLiteral("there %1").arg(i), noon + i / 10);
    store().audience.takeViews(ref, views);
    const Meanwhile others([&](int i) {
        // One of those that are there goes on, which changes it but not its place.
        Zel::PageView longer = views.at(i % count);
        longer.seconds = 2 + i;
        store().audience.takeViews(ref,
                                   {viewOf(QStringLiteral("other"), noon + i % 10 - 3), longer});
    });
    for (int round = 0; round < 8 || others.times() < count; ++round) {
        QCOMPARE(others.failure(), QString());
        QSet<QString> seen;
        const auto list = client->GetPageViews(deployment, from, to);
        for (const PageViewRecordPtr &one : *list) {
            if (one->User->UserID == QLatin1String("other"))
                continue;
            QVERIFY(!seen.contains(one->User->UserID));
            seen.insert(one->User->UserID);
        }
        QCOMPARE(seen.size(), count);
    }
}

void ContractPagesTest::projectsStayWholeWhileOthersComeAndGo()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const auto whole = projectsOf(*client, QStringLiteral("webcast"));
    cut(*client, 4);
    const Zel::SqlText drop("DELETE FROM project WHERE account_id = $1 AND guid = $2");
    Zel::Project project;
    project.typeId = QStringLiteral("webcast");
    project.createdById = store().users.find(maja().user)->userId;
    const Meanwhile others([&](int i) {
        project.guid = newGuid();
        project.name = QString(QChar(u'a' + i % 26));
        database().tx([&] { store().projects.add(brightwaterMedia, project); });
        database().tx([&] { database().exec(drop, {brightwaterMedia, project.guid}); });
    });
    for (int round = 0; round < 8 || others.times() < 20; ++round) {
        QCOMPARE(others.failure(), QString());
        QSet<QString> seen;
        const auto list = projectsOf(*client, QStringLiteral("webcast"));
        for (const ProjectRecordPtr &one : *list) {
            QVERIFY(!seen.contains(one->guid));
            seen.insert(one->guid);
        }
        for (const ProjectRecordPtr &one : *whole)
            QVERIFY(seen.contains(one->guid));
    }
}

void ContractPagesTest::aFolderWhoseAnswerIsLostIsMadeOnce()
{
    ServiceProxy proxy(service().port());
    const auto client = throughProxy(proxy, nora(), contractStudio);
    const QString name = newGuid();
    proxy.setFate(ServiceProxy::Fate::LoseNextAnswer);
    const int before = proxy.requests();
    const qint16 id = client->CreateAssetFolder(0, name);
    QCOMPARE(proxy.requests(), before + 2);
    QCOMPARE(folderNames(*client).count(name), 1);
    QVERIFY(id > 0);
    // Made a second time it would be refused.
    QCOMPARE(failureOf([&] { client->CreateAssetFolder(0, name); }),
             QStringLiteral("Conflict/conflict"));
}

void ContractPagesTest::aFolderIsDeletedOnce()
{
    ServiceProxy proxy(service().port());
    const auto client = throughProxy(proxy, nora(), contractStudio);
    const QString name = newGuid();
    const qint16 id = client->CreateAssetFolder(0, name);
    proxy.setFate(ServiceProxy::Fate::LoseNextAnswer);
    QCOMPARE(failureOf([&] { client->DeleteAssetFolder(id); }), QStringLiteral("none"));
    QVERIFY(!folderNames(*client).contains(name));
    QCOMPARE(failureOf([&] { client->DeleteAssetFolder(id); }),
             QStringLiteral("NotFound/not-found"));
}

void ContractPagesTest::aQuestionWhoseAnswerIsLostIsChangedOnce()
{
    ServiceProxy proxy(service().port());
    const auto client = throughProxy(proxy, maja(), brightwaterMedia);
    const QString deployment = newDeployment();
    const Zel::AskedQuestion question = asked(noon);
    store().questions.take(refOf(deployment), {question});
    const auto stored = [&] { return client->GetQuestions(deployment, from, to)->item(1); };
    proxy.setFate(ServiceProxy::Fate::LoseNextAnswer);
    QCOMPARE(client->SetQuestionStatus(question.guid, QStringLiteral("STAGED")), 0);
    QCOMPARE(stored()->Status, QStringLiteral("STAGED"));
    proxy.setFate(ServiceProxy::Fate::LoseNextAnswer);
    QCOMPARE(
        client->UpdateQuestion(question.guid, QStringLiteral("a < b"), QStringLiteral("r"), {}, {}),
        0);
    QCOMPARE(stored()->AnswerText, QStringLiteral("a &lt; b"));
    const QDateTime answered = stored()->Answered;
    // Only another answer has another time.
    QTest::qWait(5);
    QCOMPARE(
        client->UpdateQuestion(question.guid, QStringLiteral("a < b"), QStringLiteral("s"), {}, {}),
        0);
    QCOMPARE(stored()->QuestionText, QStringLiteral("s"));
    QCOMPARE(stored()->Answered, answered);
    QCOMPARE(
        client->UpdateQuestion(question.guid, QStringLiteral("b"), QStringLiteral("s"), {}, {}), 0);
    QVERIFY(stored()->Answered > answered);
    QCOMPARE(client->UpdateQuestion(question.guid, QString(), QStringLiteral("s"), {}, {}), 0);
    QVERIFY(!stored()->AnsweredSpecified);
}

void ContractPagesTest::aProjectWhoseAnswerIsLostIsMadeOnce()
{
    ServiceProxy proxy(service().port());
    const auto client = throughProxy(proxy, nora(), contractStudio);
    const NewProject project = newProject();
    proxy.setFate(ServiceProxy::Fate::LoseNextAnswer);
    QCOMPARE(client->createProject(project)->guid, project.guid);
    QCOMPARE(withGuid(projectsOf(*client, project.typeID), project.guid).size(), 1);
}

ZEL_TEST_MAIN(ContractPagesTest)
#include "tst_contractpages.moc"
