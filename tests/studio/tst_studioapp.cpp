// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/signinpage.h"
#include "tests/service/client/scriptedserver.h"
#include "tests/studio/runningstudio.h"
#include "testsupport/testcase.h"

#include <QLabel>
#include <QLineEdit>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <thread>

using Studio::Options;
using Studio::Settings;
using namespace StudioTesting;
using namespace WorkspaceFiles;
using Running = RunningStudio;

/// Studio with a real service, and with what services do to it.
class TestStudioApp : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        QVERIFY(m_folder.isValid());
        QVERIFY(makeSample(m_folder.filePath(QStringLiteral("sample"))));
    }

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void startsWithTheSampleWorkspace()
    {
        Options options;
        options.serviceProgram = serviceProgram();
        Running f(options);
        QCOMPARE(child<QLabel>(f.window, "signInMessage")->text(),
                 QStringLiteral("Starting the service on this computer…"));
        QVERIFY(!f.isShown("login"));
        QVERIFY(f.canSignIn());
        QVERIFY(QFile::exists(Studio::sampleWorkspaceFile()));
        QCOMPARE(child<QLineEdit>(f.window, "qxUrl")->placeholderText(),
                 QStringLiteral("This computer"));
        click(f.window, "samplePerson_maja");
        click(f.window, "login");
        QVERIFY(f.isShown("accountsList"));
        click(f.window, "selectAccount");
        QCOMPARE(f.list->count(), 26);
        QVERIFY(!f.isShown("errorBar"));
    }

    void offersNobodyOverAWorkspaceOfOnesOwn()
    {
        Running f(options());
        QVERIFY(f.canSignIn());
        QVERIFY(!f.isShown("samplePeople"));
        QVERIFY(f.isWorking());
    }

    void aServiceThatStopsAnsweringTimesOut()
    {
        Options limited = options();
        limited.timeLimit = std::chrono::seconds(2);
        Running f(limited);
        QVERIFY(f.isWorking());
        const qsizetype count = f.list->count();
        ::kill(f.process(), SIGSTOP);
        click(f.window, "refreshButton");
        QVERIFY(f.what().endsWith(QLatin1String("did not answer within 2 seconds.")));
        QVERIFY(f.isShown("errorRetry"));
        // The window works on.
        QCOMPARE(f.list->count(), count);
        type(f.window, "projectFilter", QStringLiteral("town hall"));
        QCOMPARE(f.list->filteredCount(), 4);
        click(f.window, "errorRetry");
        QVERIFY(f.isShown("errorRetry"));
        ::kill(f.process(), SIGCONT);
        click(f.window, "errorRetry");
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(f.list->filteredCount(), 4);
    }

    void aServiceKilledInTheMiddleOfACallIsBroughtBack()
    {
        Running f(options());
        QVERIFY(f.isWorking());
        const qsizetype count = f.list->count();
        const pid_t process = f.process();
        ::kill(process, SIGSTOP); // the call is under way for as long as we like
        std::thread killer([process] {
            std::this_thread::sleep_for(std::chrono::milliseconds(400));
            ::kill(process, SIGKILL);
        });
        click(f.window, "refreshButton");
        killer.join();
        QCOMPARE(f.what(), QStringLiteral("The service on this computer has stopped."));
        QCOMPARE(f.advice(), QStringLiteral("Nothing on screen is lost. Retry starts it again."));
        QCOMPARE(f.list->count(), count);
        click(f.window, "errorRetry");
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(f.list->count(), count);
        QVERIFY(f.app.client().isSignedIn());
        QVERIFY(f.process() != process);
    }

    void aServiceThatEndsMeanwhileIsToldAtOnce()
    {
        Running f(options());
        QVERIFY(f.isWorking());
        ::kill(f.process(), SIGKILL);
        QVERIFY(Running::comes([&] { return f.isShown("errorBar"); }));
        QCOMPARE(f.what(), QStringLiteral("The service on this computer has stopped."));
        click(f.window, "errorRetry");
        QVERIFY(!f.isShown("errorBar"));
        click(f.window, "refreshButton");
        QVERIFY(!f.isShown("errorBar"));
    }

    void aServiceThatComesBackElsewhereAsksToSignInAgain()
    {
        Running f(options());
        QVERIFY(f.isWorking());
        const qsizetype count = f.list->count();
        const QUrl address(f.app.embeddedService()->address());
        ::kill(f.process(), SIGKILL);
        QVERIFY(Running::comes([&] { return f.isShown("errorBar"); }));
        QTcpServer squatter;
        QVERIFY(squatter.listen(QHostAddress::LocalHost, static_cast<quint16>(address.port())));
        click(f.window, "errorRetry");
        QVERIFY(!f.isShown("errorBar"));
        click(f.window, "refreshButton");
        QVERIFY(f.isShown("errorSignIn"));
        QCOMPARE(f.list->count(), count);
        click(f.window, "errorSignIn");
        f.signIn();
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(f.list->count(), count);
        QVERIFY(!squatter.hasPendingConnections());
    }

    void aBadWorkspaceIsToldAndAGoodOneTakenInItsPlace()
    {
        Options bad = options();
        const QByteArray good = contentOf(bad.workspace);
        QVERIFY(write(bad.workspace, "not a workspace"));
        Running f(bad);
        QVERIFY(Running::comes([&] { return f.isShown("errorBar"); }));
        QCOMPARE(f.what(), QStringLiteral("The workspace file is damaged or is no workspace."));
        QVERIFY(!f.isShown("signInMessage")); // it is not being started any more
        click(f.window, "errorRetry");
        QCOMPARE(f.what(), QStringLiteral("The workspace file is damaged or is no workspace."));
        QCOMPARE(contentOf(bad.workspace), QByteArray("not a workspace"));
        QVERIFY(write(bad.workspace, good));
        click(f.window, "errorRetry");
        QVERIFY(!f.isShown("errorBar"));
        QVERIFY(f.isWorking());
    }

    void aNewerWorkspaceIsToldWithoutRetry()
    {
        Options newer = options();
        newer.workspace = m_folder.filePath(QStringLiteral("newer"));
        QVERIFY(makeNewer(newer.workspace));
        const QByteArray content = contentOf(newer.workspace);
        Running f(newer);
        QVERIFY(Running::comes([&] { return f.isShown("errorBar"); }));
        QCOMPARE(f.what(),
                 QStringLiteral("The workspace was made by a newer version of this program."));
        QVERIFY(!f.isShown("errorRetry"));
        QCOMPARE(contentOf(newer.workspace), content);
    }

    void worksWithAServerElsewhereWhenThereIsNoneHere()
    {
        Options none = options();
        none.serviceProgram = QStringLiteral("/nowhere/zel-service");
        Running f(none);
        QVERIFY(Running::comes([&] { return f.isShown("errorBar"); }));
        QCOMPARE(f.what(), QStringLiteral("The program of the service could not be started."));
        click(f.window, "errorRetry");
        QCOMPARE(f.what(), QStringLiteral("The program of the service could not be started."));
        QVERIFY(!f.isShown("signInMessage"));

        Running elsewhere(options());
        QVERIFY(elsewhere.canSignIn());
        click(f.window, "errorClose");
        type(f.window, "qxUrl", elsewhere.app.embeddedService()->address());
        QVERIFY(f.isWorking());
        // Retry there has nothing to do with the program that is missing here.
        ::kill(elsewhere.process(), SIGKILL);
        QVERIFY(Running::comes([&] { return !elsewhere.app.embeddedService()->isRunning(); }));
        click(f.window, "refreshButton");
        click(f.window, "errorRetry");
        QVERIFY(f.what().startsWith(QLatin1String("Nothing answers at http://127.0.0.1:")));
    }

    void aStoppedServiceHereIsNoMatterToWorkElsewhere()
    {
        Running elsewhere(options());
        QVERIFY(elsewhere.canSignIn());
        Running f(options());
        QVERIFY(f.canSignIn());
        type(f.window, "qxUrl", elsewhere.app.embeddedService()->address());
        QVERIFY(f.isWorking());
        ::kill(f.process(), SIGKILL);
        QVERIFY(Running::comes([&] { return !f.app.embeddedService()->isRunning(); }));
        QVERIFY(!f.isShown("errorBar"));
        click(f.window, "refreshButton");
        QVERIFY(!f.isShown("errorBar"));
        // And when the one elsewhere goes, nothing here is started for it.
        ::kill(elsewhere.process(), SIGKILL);
        QVERIFY(Running::comes([&] { return !elsewhere.app.embeddedService()->isRunning(); }));
        click(f.window, "refreshButton");
        QVERIFY(f.what().startsWith(QLatin1String("Nothing answers at http://127.0.0.1:")));
        click(f.window, "errorRetry");
        QVERIFY(f.isShown("errorRetry"));
        QVERIFY(!f.app.embeddedService()->isRunning());
    }

    void aNamedServerStandsInItsBox()
    {
        Settings().setServer(QStringLiteral("https://yesterday.example.org"));
        Options named;
        named.server = QStringLiteral("media.example.org");
        Running f(named);
        QVERIFY(!f.app.embeddedService());
        QVERIFY(f.isShown("login"));
        QVERIFY(!f.isShown("samplePeople"));
        QCOMPARE(f.window.signInPage()->server(), named.server);
    }

    void aServerThatIsNoServiceIsToldClearly_data()
    {
        using Script = ZelTest::ScriptedServer::Script;
        QTest::addColumn<Script>("script");
        QTest::addColumn<QString>("what");
        QTest::newRow("garbage") << ZelTest::respond(ZelTest::http(201, "{\"token\": [[\xff"))
                                 << "The answer from %1 is not one of the service (";
        QTest::newRow("a web page")
            << ZelTest::respond(ZelTest::http(200, "<html>Hello</html>", "text/html"))
            << "The answer from %1 is not one of the service (";
        QTest::newRow("says nothing")
            << Script([](const ZelTest::SeenRequest &, ZelTest::Wire &wire) { wire.stall(); })
            << "The service at %1 did not answer within 1 second.";
        QTest::newRow("hangs up") << Script([](const ZelTest::SeenRequest &, ZelTest::Wire &wire) {
            wire.reset();
        }) << "The connection to the service at %1 ended before";
    }

    void aServerThatIsNoServiceIsToldClearly()
    {
        QFETCH(const ZelTest::ScriptedServer::Script, script);
        QFETCH(const QString, what);
        ZelTest::ScriptedServer server(script);
        Options named;
        named.server = server.address();
        named.timeLimit = std::chrono::seconds(1);
        Running f(named);
        f.signIn();
        const QString said = f.what().remove(QChar(0x200b));
        QVERIFY2(said.startsWith(what.arg(QStringLiteral("http://") + server.address())),
                 qPrintable(said));
        QVERIFY(f.isShown("errorRetry"));
        QVERIFY(f.isShown("login"));
        QCOMPARE(child<QLineEdit>(f.window, "qxPassword")->text(), QStringLiteral("sample-tomas"));
    }

    void closingEndsTheSession()
    {
        using ZelTest::http;
        ZelTest::ScriptedServer server([](const ZelTest::SeenRequest &request,
                                          ZelTest::Wire &wire) {
            const QByteArray what = request.method + ' ' + request.target.split('?').constFirst();
            if (what == "POST /v1/sessions")
                wire.write(http(201, R"({"token":"t","expiresAt":99999999999999})"));
            else if (what == "GET /v1/accounts")
                wire.write(http(200, R"({"accounts":[{"accountID":7,"accountName":"Seven"}]})"));
            else if (what == "GET /v1/project-types")
                wire.write(http(200, R"({"types":[]})"));
            else if (what == "GET /v1/projects")
                wire.write(http(200, R"({"projects":null})"));
            else
                wire.write("HTTP/1.1 204 No Content\r\n\r\n");
        });
        {
            Options named;
            named.server = server.address();
            Running f(named);
            f.signIn();
            QVERIFY(f.isShown("projectsPage"));
            QVERIFY(!f.isShown("errorBar"));
            f.window.close();
        }
        const ZelTest::SeenRequest last = server.requests().constLast();
        QCOMPARE(last.method, QByteArray("DELETE"));
        QCOMPARE(last.target, QByteArray("/v1/sessions/current"));
        QCOMPARE(last.header("authorization"), QByteArray("Bearer t"));
    }

private:
    /// A workspace of its own with the sample content.
    Options options()
    {
        Options options;
        options.serviceProgram = serviceProgram();
        options.workspace = m_folder.filePath(QStringLiteral("workspace%1").arg(++m_count));
        QFile::copy(m_folder.filePath(QStringLiteral("sample")), options.workspace);
        return options;
    }

    QTemporaryDir m_folder;
    int m_count = 0;
};

ZEL_TEST_MAIN(TestStudioApp)
#include "tst_studioapp.moc"
