// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "testsupport/recordingclient.h"

#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QLabel>
#include <QTest>

using QXSC::ServiceError;
using ZelTest::accountList;
using ZelTest::errorNumber;
using ZelTest::projectList;
using ZelTest::RecordingClient;
using ZelTest::themeList;
using ZelTest::themeTemplates;

namespace {

bool signIn(QXSC::ServiceClient &client)
{
    bool success = false;
    client.authenticate(QStringLiteral("host:80"), QStringLiteral("anna"), QStringLiteral("p\"w"),
                        QStringLiteral("Studio"), QString(), false, true, success);
    return success;
}

QXSC::ProjectCollectionPtr projectsOf(QXSC::ServiceClient &client, const QString &type = {})
{
    // Not null, to see that a client answers nothing rather than not at all.
    QXSC::ProjectCollectionPtr projects = projectList({});
    client.getProjectList(type, projects);
    return projects;
}

} // namespace

class TestRecordingClient : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void keepsEveryCallInOrderWithItsArguments()
    {
        RecordingClient client;
        signIn(client);
        QXSC::AccountCollectionPtr accounts;
        client.getAccounts(accounts);
        bool accepted = false;
        client.setActiveAccount(QStringLiteral("7"), accepted);
        projectsOf(client, QStringLiteral("webcast"));
        bool published = false;
        client.isProjectPublished(QStringLiteral("g-1"), QString(), published);
        client.projectTypes();
        client.signOut();
        QCOMPARE(
            client.calls(),
            (QStringList{
                QStringLiteral(
                    "authenticate(\"host:80\", \"anna\", \"p\"w\", \"Studio\", \"\", False, True)"),
                QStringLiteral("getAccounts()"), QStringLiteral("setActiveAccount(\"7\")"),
                QStringLiteral("getProjectList(\"webcast\")"),
                QStringLiteral("isProjectPublished(\"g-1\", \"\")"),
                QStringLiteral("projectTypes()"), QStringLiteral("signOut()")}));
    }

    void takenCallsAreGone()
    {
        RecordingClient client;
        client.projectTypes();
        QCOMPARE(client.takeCalls(), QStringList{QStringLiteral("projectTypes()")});
        QCOMPARE(client.takeCalls(), QStringList());
        client.signOut();
        QCOMPARE(client.calls(), QStringList{QStringLiteral("signOut()")});
    }

    void answersAsScripted()
    {
        RecordingClient client;
        QVERIFY(signIn(client));
        client.authenticated = false;
        QVERIFY(!signIn(client));

        client.accounts =
            accountList({{QStringLiteral("Aurora"), 7}, {QStringLiteral("Borealis"), 8}});
        QXSC::AccountCollectionPtr accounts;
        client.getAccounts(accounts);
        QCOMPARE(accounts->count(), 2);
        QCOMPARE(accounts->item(2)->accountID, 8);

        bool accepted = false;
        client.setActiveAccount(QString(), accepted);
        QVERIFY(accepted);
        client.accountAccepted = false;
        client.setActiveAccount(QString(), accepted);
        QVERIFY(!accepted);
    }

    void aFreshClientAnswersEmptyLists()
    {
        RecordingClient client;
        QVERIFY(projectsOf(client));
        QCOMPARE(projectsOf(client)->count(), 0);
        QXSC::AccountCollectionPtr accounts;
        client.getAccounts(accounts);
        QVERIFY(accounts);
        QCOMPARE(accounts->count(), 0);
    }

    void aNullPointerAnswersNothing()
    {
        RecordingClient client;
        client.projects = nullptr;
        client.accounts = nullptr;
        QVERIFY(!projectsOf(client));
        QXSC::AccountCollectionPtr accounts = accountList({});
        client.getAccounts(accounts);
        QVERIFY(!accounts);
    }

    void publishedGoesByGuid()
    {
        RecordingClient client;
        client.published.insert(QStringLiteral("g-1"), true);
        bool published = false;
        client.isProjectPublished(QStringLiteral("g-1"), QString(), published);
        QVERIFY(published);
        client.isProjectPublished(QStringLiteral("g-2"), QString(), published);
        QVERIFY(!published);
    }

    void failsTheNextCallOfAnOperationOnce()
    {
        RecordingClient client;
        client.failNext(QStringLiteral("getProjectList"),
                        ServiceError(ServiceError::Kind::ConnectionLost, QStringLiteral("lost")));
        QVERIFY(signIn(client));
        try {
            projectsOf(client);
            QFAIL("nothing was thrown");
        } catch (const ServiceError &error) {
            QCOMPARE(error.kind(), ServiceError::Kind::ConnectionLost);
            QCOMPARE(error.description(), QStringLiteral("lost"));
        }
        QCOMPARE(client.calls().last(), QStringLiteral("getProjectList(\"\")"));
        QVERIFY(projectsOf(client));
        QCOMPARE(client.calls().size(), 3);
    }

    void aFailureLeavesTheAnswerUntouched()
    {
        RecordingClient client;
        client.failNext(QStringLiteral("getProjectList"), Zel::RuntimeError(6));
        QXSC::ProjectCollectionPtr projects;
        QCOMPARE(errorNumber([&] { client.getProjectList(QString(), projects); }), 6);
        QVERIFY(!projects);
    }

    void theHookSeesTheUserInterfaceAtTheMomentOfTheCall()
    {
        RecordingClient client;
        QLabel label(QStringLiteral("idle"));
        QStringList seen;
        client.atCall = [&](const QString &call) {
            seen << call + QLatin1Char(' ') + label.text();
        };
        label.setText(QStringLiteral("loading"));
        projectsOf(client);
        label.setText(QStringLiteral("done"));
        QCOMPARE(seen, QStringList{QStringLiteral("getProjectList(\"\") loading")});
    }

    void theHookComesBeforeTheAnswerAndTheFailure()
    {
        RecordingClient client;
        client.atCall = [&](const QString &) { client.projects = nullptr; };
        QVERIFY(!projectsOf(client));
        client.atCall = [&](const QString &) {
            client.failNext(QStringLiteral("getProjectList"), Zel::RuntimeError(5));
        };
        QCOMPARE(errorNumber([&] { projectsOf(client); }), 5);
    }

    void aProjectMadeIsInTheListFromThenOn()
    {
        RecordingClient client;
        client.projects = projectList({QXSC::ProjectRecord()});
        const QXSC::ProjectCollectionPtr before = client.projects;
        QXSC::NewProject project;
        project.guid = QStringLiteral("g-1");
        project.name = QStringLiteral("Launch");
        project.typeID = QStringLiteral("webcast");
        project.eventDate = QDateTime(QDate(2026, 3, 4), QTime(5, 6));
        const QXSC::ProjectRecordPtr made = client.createProject(project);
        QCOMPARE(made->guid, QStringLiteral("g-1"));
        QVERIFY(made->hasEventDate);
        QCOMPARE(made->eventDate, *project.eventDate);
        QCOMPARE(client.calls().last(),
                 QStringLiteral("createProject(\"Launch\", \"webcast\", \"\", \"\")"));
        QCOMPARE(projectsOf(client)->count(), 2);
        QCOMPARE(projectsOf(client)->item(2), made);
        // What was answered before does not change under its reader.
        QCOMPARE(before->count(), 1);
    }

    void themesAreAnsweredByTheMethodThatNamesThem()
    {
        RecordingClient client;
        QXSC::ThemeRecord theme;
        theme.name = QStringLiteral("Stage");
        QXSC::ThemeRecord other;
        other.templates = themeTemplates({{QStringLiteral("k"), QStringLiteral("v"), true},
                                          {QStringLiteral("l"), QStringLiteral("w"), false}});
        client.themeLists.insert(QStringLiteral("getFullThemeList_Array"),
                                 themeList({theme, other}));
        client.themeLists.insert(QStringLiteral("getUserThemeList_Array"), themeList({}));
        const auto themesOf = [&](const char *method) {
            // Not null, to see that a client answers nothing rather than not at all.
            QXSC::ThemeCollectionPtr themes = themeList({});
            client.callListMethod(QStringLiteral("Studio"), QString::fromLatin1(method), themes);
            return themes;
        };
        const auto full = themesOf("getFullThemeList_Array");
        QCOMPARE(full->count(), 2);
        QCOMPARE(full->item(1)->name, QStringLiteral("Stage"));
        QVERIFY(full->item(1)->templates); // as in every answer of the service
        QCOMPARE(full->item(1)->templates->count(), 0);
        QCOMPARE(full->item(2)->templates->count(), 2);
        QVERIFY(full->item(2)->templates->item(1)->required);
        QCOMPARE(full->item(2)->templates->item(2)->templateVersionKey, QStringLiteral("w"));
        QVERIFY(themesOf("getUserThemeList_Array"));
        QCOMPARE(themesOf("getUserThemeList_Array")->count(), 0);
        QVERIFY(!themesOf("getGlobalThemeList_Array"));
        QCOMPARE(client.calls().last(),
                 QStringLiteral("callListMethod(\"Studio\", \"getGlobalThemeList_Array\")"));
    }

    void templatesAreAnsweredByBothKeys()
    {
        RecordingClient client;
        const auto record = std::make_shared<QXSC::TemplateRecord>(
            QXSC::TemplateRecord{QStringLiteral("Form"), QStringLiteral("d")});
        client.templates.insert({QStringLiteral("k"), QStringLiteral("v")}, record);
        QXSC::TemplateRecordPtr found;
        client.getTemplate(QStringLiteral("k"), QStringLiteral("v"), found);
        QCOMPARE(found, record);
        client.getTemplate(QStringLiteral("v"), QStringLiteral("k"), found);
        QVERIFY(!found);
        QCOMPARE(client.calls(), (QStringList{QStringLiteral("getTemplate(\"k\", \"v\")"),
                                              QStringLiteral("getTemplate(\"v\", \"k\")")}));
    }

    void themeOperationsFailOnceToo()
    {
        RecordingClient client;
        const QXSC::ThemeCollectionPtr kept = themeList({});
        QXSC::ThemeCollectionPtr themes = kept;
        client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
        const auto lists = [&] {
            client.callListMethod(QStringLiteral("Studio"),
                                  QStringLiteral("getFullThemeList_Array"), themes);
        };
        QCOMPARE(errorNumber(lists), 6);
        QCOMPARE(themes, kept);
        lists();
        QVERIFY(!themes);
        client.failNext(QStringLiteral("getTemplate"), Zel::RuntimeError(7));
        QXSC::TemplateRecordPtr record;
        QCOMPARE(errorNumber([&] { client.getTemplate(QString(), QString(), record); }), 7);
    }

    void aClientMayRecordOperationsOfItsOwn()
    {
        class Extended : public RecordingClient
        {
        public:
            void ping(int count) { record(QStringLiteral("ping"), {count, true}); }
        };

        Extended client;
        client.failNext(QStringLiteral("ping"), Zel::RuntimeError(75));
        QCOMPARE(errorNumber([&] { client.ping(3); }), 75);
        client.ping(4);
        QCOMPARE(client.calls(),
                 (QStringList{QStringLiteral("ping(3, True)"), QStringLiteral("ping(4, True)")}));
    }
};

ZEL_TEST_MAIN(TestRecordingClient)
#include "tst_recordingclient.moc"
