// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/recordtext.h"
#include "tests/contract/workspacereader.h"
#include "testsupport/localefixture.h"

#include <QTest>
#include <QTimeZone>

using namespace ZelTest;

namespace {

const QString session = QStringLiteral("session");
const QString strangeType = QString::fromUtf8("a&b=c/d?e#f%20+;ü😀 \"'\\");

/// The sample and the contract workspace, as their files say.
QList<ProjectInFile> allProjects()
{
    return projectsInFolder(ServiceProcess::sampleFolder()) +
           projectsInFolder(ContractTest::workspaceFolder());
}

QStringList textsOf(const QXSC::ProjectCollectionPtr &projects)
{
    QStringList texts;
    for (const QXSC::ProjectRecordPtr &project : *projects)
        texts << textOf(*project);
    return texts;
}

/// Wall-clock time in local time and where it lies, "2026-03-29 03:00:00.000 +7200".
QString wallClock(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz ")) +
           QString::number(time.offsetFromUtc());
}

} // namespace

class TestContractProjects : public ContractTest
{
    Q_OBJECT

private slots:
    void answersEveryProjectAsTheFilesHaveIt_data();
    void answersEveryProjectAsTheFilesHaveIt();
    void answersDatesInLocalTime_data();
    void answersDatesInLocalTime();
    void keepsToTheClockAroundItsChanges_data();
    void keepsToTheClockAroundItsChanges();
    void leavesOutDatesThatAreNotSet();
    void answersNothingForATypeItDoesNotKnow_data();
    void answersNothingForATypeItDoesNotKnow();
    void answersAnEmptyListForATypeWithoutProjects();
    void refusesATypeItCannotKeep_data();
    void refusesATypeItCannotKeep();
    void saysWhatIsPublished();
    void saysWhatIsPublishedAtThisMoment();
    void knowsNoOtherProject_data();
    void knowsNoOtherProject();
    void listsTheTypesOfTheAccount();
    void refusesEveryCallWithoutAnAccount();
    void letsViewersRead();
};

void TestContractProjects::answersEveryProjectAsTheFilesHaveIt_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<qint64>("account");
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("count");
    const auto row = [](const char *name, const Person &person, qint64 account, const QString &type,
                        int count) {
        QTest::newRow(name) << person.user << person.password << account << type << count;
    };
    const QString webcast = QStringLiteral("webcast");
    const QString course = QStringLiteral("course");
    row("webcasts of Brightwater", maja(), brightwaterMedia, webcast, 26);
    row("courses of Brightwater", tomas(), brightwaterMedia, course, 5);
    row("webcasts of Harbour", maja(), harbourLearning, webcast, 3);
    row("courses of Harbour", maja(), harbourLearning, course, 6);
    row("strange names", nora(), quietRoom, session, 52);
    row("strange dates", nora(), clockTower, session, 15);
    row("strange type", nora(), quietRoom, strangeType, 1);
}

void TestContractProjects::answersEveryProjectAsTheFilesHaveIt()
{
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(qint64, account);
    QFETCH(QString, type);
    QFETCH(int, count);
    QStringList expected;
    for (const ProjectInFile &project : inServiceOrder(allProjects(), account, type))
        expected << textOf(project.record);
    const auto client = signIn({user, password}, account);
    const auto projects = projectsOf(*client, type);
    QVERIFY(projects);
    QCOMPARE(textsOf(projects), expected);
    QCOMPARE(projects->count(), count);
    QCOMPARE(textsOf(projectsOf(*client, type)), expected); // and again
}

void TestContractProjects::answersDatesInLocalTime_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone :
         {"Europe/Berlin", "America/New_York", "Asia/Kolkata", "Asia/Kathmandu", "Pacific/Auckland",
          "Pacific/Kiritimati", "Australia/Lord_Howe", "America/St_Johns", "UTC"})
        QTest::newRow(zone) << QByteArray(zone);
}

void TestContractProjects::answersDatesInLocalTime()
{
    QFETCH(QByteArray, zone);
    const TimeZoneFixture local(zone);
    const QTimeZone there(zone);
    const auto client = signIn(maja(), brightwaterMedia);
    const auto projects = projectsOf(*client, QStringLiteral("webcast"));
    int dates = 0;
    for (const ProjectInFile &project :
         inServiceOrder(allProjects(), brightwaterMedia, QStringLiteral("webcast"))) {
        const auto answer = withGuid(projects, project.record.guid).value(0);
        QVERIFY(answer);
        const auto compare = [&](bool has, const QDateTime &answered, const QDateTime &inFile) {
            if (!has)
                return;
            ++dates;
            QCOMPARE(answered.timeSpec(), Qt::LocalTime);
            QCOMPARE(wallClock(answered),
                     wallClock(QDateTime::fromMSecsSinceEpoch(inFile.toMSecsSinceEpoch(), there)));
        };
        compare(answer->hasCreated, answer->created, project.record.created);
        compare(answer->hasModified, answer->modified, project.record.modified);
        compare(answer->hasEventDate, answer->eventDate, project.record.eventDate);
    }
    QCOMPARE(dates, 65);
}

void TestContractProjects::keepsToTheClockAroundItsChanges_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("created");
    QTest::addColumn<QString>("modified");
    QTest::addColumn<QString>("event");
    const auto row = [](const char *zone, const char *name, const char *created,
                        const char *modified, const char *event) {
        QTest::addRow("%s in %s", name, zone)
            << QByteArray(zone) << QString::fromLatin1(name) << QString::fromLatin1(created)
            << QString::fromLatin1(modified) << QString::fromLatin1(event);
    };
    row("Europe/Berlin", "Berlin springs forward", "2026-03-29 01:59:59.000 3600",
        "2026-03-29 03:00:00.000 7200", "2026-03-29 03:00:00.001 7200");
    row("Europe/Berlin", "Berlin falls back", "2026-10-25 02:30:00.000 7200",
        "2026-10-25 02:30:00.000 3600", "2026-10-25 02:59:59.999 7200");
    row("America/New_York", "New York springs forward", "2026-03-08 01:59:59.000 -18000",
        "2026-03-08 03:00:00.000 -14400", "2026-03-08 03:00:00.001 -14400");
    row("America/New_York", "New York falls back", "2026-11-01 01:30:00.000 -14400",
        "2026-11-01 01:30:00.000 -18000", "2026-11-01 01:59:59.999 -14400");
    row("America/New_York", "Berlin falls back", "2026-10-24 20:30:00.000 -14400",
        "2026-10-24 21:30:00.000 -14400", "2026-10-24 20:59:59.999 -14400");
    row("UTC", "First and last", "0001-01-01 00:00:00.000 0", "9999-12-31 23:59:59.999 0",
        "1970-01-01 00:00:00.000 0");
    row("UTC", "Before 1970", "1969-12-31 23:59:59.999 0", "1900-02-28 12:00:00.000 0",
        "1582-10-04 12:00:00.000 0");
    row("Asia/Kolkata", "After 2038", "2038-01-19 08:44:08.000 19800",
        "2100-02-28 17:30:00.000 19800", "2262-04-12 05:17:17.000 19800");
}

void TestContractProjects::keepsToTheClockAroundItsChanges()
{
    QFETCH(QByteArray, zone);
    QFETCH(QString, name);
    const TimeZoneFixture local(zone);
    const auto client = signIn(nora(), clockTower);
    const auto projects = projectsOf(*client, session);
    for (const QXSC::ProjectRecordPtr &project : *projects) {
        if (project->name != name)
            continue;
        QTEST(wallClock(project->created), "created");
        QTEST(wallClock(project->modified), "modified");
        QTEST(wallClock(project->eventDate), "event");
        return;
    }
    QFAIL("the project is not in the list");
}

void TestContractProjects::leavesOutDatesThatAreNotSet()
{
    const auto client = signIn(nora(), clockTower);
    const auto projects = projectsOf(*client, session);
    for (int set = 0; set < 8; ++set) {
        const QString name = QStringLiteral("Dates %1").arg(set);
        const auto found =
            std::find_if(projects->begin(), projects->end(),
                         [&](const QXSC::ProjectRecordPtr &p) { return p->name == name; });
        QVERIFY(found != projects->end());
        QCOMPARE((*found)->hasCreated, (set & 1) != 0);
        QCOMPARE((*found)->hasModified, (set & 2) != 0);
        QCOMPARE((*found)->hasEventDate, (set & 4) != 0);
        QCOMPARE((*found)->created.isValid(), (set & 1) != 0);
        QCOMPARE((*found)->modified.isValid(), (set & 2) != 0);
        QCOMPARE((*found)->eventDate.isValid(), (set & 4) != 0);
    }
}

void TestContractProjects::answersNothingForATypeItDoesNotKnow_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"", "none", "Session", "SESSION", "session ", " session", "webcast",
                             "course", "zz", "a&b=c/d?e#f%20+;ü😀", "a&b=c/d?e#f +;ü😀 \"'\\",
                             "session' OR '1'='1", "%", "_", "session\n", "😀"})
        QTest::newRow(type) << QString::fromUtf8(type);
    QTest::newRow("as long as can be") << QString(256, QChar(0x65e5));
}

void TestContractProjects::answersNothingForATypeItDoesNotKnow()
{
    QFETCH(QString, type);
    const auto client = signIn(nora(), contractStudio);
    auto projects = std::make_shared<const QXSC::ProjectCollection>();
    QXSC::ProjectCollectionPtr answer = projects;
    client->getProjectList(type, answer);
    QVERIFY(!answer);
}

void TestContractProjects::answersAnEmptyListForATypeWithoutProjects()
{
    const auto client = signIn(nora(), quietRoom);
    const auto projects = projectsOf(*client, QStringLiteral("aa"));
    QVERIFY(projects);
    QCOMPARE(projects->count(), 0);
}

void TestContractProjects::refusesATypeItCannotKeep_data()
{
    QTest::addColumn<QString>("type");
    QTest::newRow("NUL") << QStringLiteral("session") + QChar(0);
    QTest::newRow("non-character") << QStringLiteral("session\uffff");
}

void TestContractProjects::refusesATypeItCannotKeep()
{
    QFETCH(QString, type);
    const auto client = signIn(nora(), contractStudio);
    QCOMPARE(failureOf([&] { projectsOf(*client, type); }), QStringLiteral("Invalid/invalid-text"));
}

void TestContractProjects::saysWhatIsPublished()
{
    const auto client = signIn(maja(), harbourLearning);
    int published = 0;
    int others = 0;
    for (const ProjectInFile &project : allProjects()) {
        if (project.account != harbourLearning)
            continue;
        QCOMPARE(isPublished(*client, project.record.guid), project.record.published);
        QCOMPARE(isPublished(*client, project.record.guid.toUpper()), project.record.published);
        ++(project.record.published ? published : others);
    }
    QCOMPARE(published, 6);
    QCOMPARE(others, 3);
}

void TestContractProjects::saysWhatIsPublishedAtThisMoment()
{
    static const Zel::SqlText publish(R"sql(
        UPDATE project SET published = $3 WHERE account_id = $1 AND guid = $2
    )sql");
    const auto client = signIn(nora(), contractStudio);
    const auto project = projectsOf(*client, session)->item(1);
    QVERIFY(project->published);
    for (const bool now : {false, true}) {
        database().tx([&] { database().exec(publish, {contractStudio, project->guid, now}); });
        QCOMPARE(isPublished(*client, project->guid), now);
        QCOMPARE(projectsOf(*client, session)->item(1)->published, now);
    }
}

void TestContractProjects::knowsNoOtherProject_data()
{
    QTest::addColumn<QString>("guid");
    const QString own = QStringLiteral("11111111-2222-4333-8444-555555555555");
    const auto row = [](const char *name, const QString &guid) { QTest::newRow(name) << guid; };
    row("unknown", newGuid());
    row("another account's, where the person is a member",
        QStringLiteral("00000000-0000-4000-8000-000000000002"));
    row("another account's, where the person is none",
        QStringLiteral("2f2879d9-b497-5448-b567-8c3c7297dad4"));
    row("in braces", QLatin1Char('{') + own + QLatin1Char('}'));
    row("without dashes", QString(own).remove(QLatin1Char('-')));
    row("with a blank behind", own + QLatin1Char(' '));
    row("cut", own.chopped(1));
    row("all zero", QStringLiteral("00000000-0000-0000-0000-000000000000"));
    row("a word", QStringLiteral("project"));
    row("empty", QString());
    row("a blank", QStringLiteral(" "));
    row("a slash", QStringLiteral("a/b"));
    row("a way up", QStringLiteral("../projects"));
    row("the folder", QStringLiteral("."));
    row("the folder above", QStringLiteral(".."));
    row("a question", own + QStringLiteral("?x=1"));
    row("a percent sign", QStringLiteral("%2e%2e"));
    row("a condition", QStringLiteral("' OR '1'='1"));
    row("astral", QString::fromUtf8("😀"));
    row("long", QString(4000, QLatin1Char('a')));
}

void TestContractProjects::knowsNoOtherProject()
{
    QFETCH(QString, guid);
    const auto client = signIn(nora(), contractStudio);
    QCOMPARE(failureOf([&] { isPublished(*client, guid); }).section(QLatin1Char('/'), 0, 0),
             QStringLiteral("NotFound"));
    bool published = true;
    failureOf([&] { client->isProjectPublished(guid, QString(), published); });
    QVERIFY(!published);
}

void TestContractProjects::listsTheTypesOfTheAccount()
{
    const auto typesOf = [this](const Person &person, qint64 account) {
        QStringList types;
        const auto client = signIn(person, account);
        const auto projectTypes = client->projectTypes();
        for (const QXSC::ProjectType &type : projectTypes)
            types << type.typeID + QLatin1String(" = ") + type.name;
        return types;
    };
    const QStringList sample{QStringLiteral("webcast = Webcasts"),
                             QStringLiteral("course = Courses")};
    QCOMPARE(typesOf(maja(), brightwaterMedia), sample);
    QCOMPARE(typesOf(maja(), harbourLearning), sample);
    QCOMPARE(typesOf(nora(), contractStudio), QStringList{QStringLiteral("session = Sessions")});
    QCOMPARE(typesOf(nora(), quietRoom),
             (QStringList{QStringLiteral("session = Sessions"),
                          QStringLiteral("zz = First in the file, last by name"),
                          strangeType + QString::fromUtf8(" = & <b> \"quoted\" 😀"),
                          QStringLiteral("aa = Without projects")}));
    const Person many{QStringLiteral("many"), QStringLiteral("contract-many")};
    QCOMPARE(typesOf(many, 2101), QStringList());
}

void TestContractProjects::refusesEveryCallWithoutAnAccount()
{
    const auto client = signIn(nora());
    const QString refused = QStringLiteral("Refused/no-account");
    QCOMPARE(failureOf([&] { projectsOf(*client, session); }), refused);
    QCOMPARE(failureOf([&] { projectsOf(*client, QStringLiteral("none")); }), refused);
    QCOMPARE(failureOf([&] { isPublished(*client, newGuid()); }), refused);
    QCOMPARE(failureOf([&] { client->projectTypes(); }), refused);
    QCOMPARE(failureOf([&] { client->createProject(newProject()); }), refused);
    QVERIFY(client->isSignedIn());
}

void TestContractProjects::letsViewersRead()
{
    const auto client = signIn(vera(), contractStudio);
    const auto projects = projectsOf(*client, session);
    QCOMPARE(projects->count(), 1);
    QVERIFY(isPublished(*client, projects->item(1)->guid));
    QCOMPARE(client->projectTypes().size(), 1);
}

ZEL_TEST_MAIN(TestContractProjects)
#include "tst_contractprojects.moc"
