// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scriptedserver.h"
#include "testsupport/testcase.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>

using namespace QXSC;
using namespace ZelTest;
using namespace std::chrono_literals;

namespace {

constexpr const char *noTypes = R"({"types":[]})";

/// Answers "/v1/project-types" after the given time and every other call at once.
ScriptedServer::Script slowTypes(int milliseconds)
{
    return [milliseconds](const SeenRequest &request, Wire &wire) {
        if (request.target == "/v1/project-types") {
            wire.sleep(milliseconds);
            wire.write(http(200, noTypes));
        } else {
            wire.write(http(200, R"({"accounts":[],"projects":null})"));
        }
    };
}

/// Keeps what it is told, and does what the test wants inside.
struct Listener : WaitObserver
{
    void waiting(std::chrono::milliseconds waited) noexcept override
    {
        ++depth;
        deepest = qMax(deepest, depth);
        times << waited;
        onTheCallersThread &= QThread::currentThread() == qApp->thread();
        if (whenWaiting)
            whenWaiting();
        --depth;
    }

    void finished() noexcept override { ++ends; }

    std::function<void()> whenWaiting;
    QList<std::chrono::milliseconds> times;
    int ends = 0;
    int depth = 0;
    int deepest = 0;
    bool onTheCallersThread = true;
};

} // namespace

class TestHttpWaiting : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    // The observer --------------------------------------------------------------------------------

    void aLongWaitIsObserved()
    {
        SignedIn there(slowTypes(700));
        Listener listener;
        there.client.setWaitObserver(&listener);
        there.client.projectTypes();
        QVERIFY(!listener.times.isEmpty());
        QVERIFY(listener.times.first() >= 300ms);
        for (qsizetype i = 1; i < listener.times.size(); ++i)
            QVERIFY(listener.times[i] - listener.times[i - 1] >= 100ms);
        QVERIFY(listener.onTheCallersThread);
        QCOMPARE(listener.ends, 1);
    }

    void theEndIsToldWhenTheCallFails()
    {
        SignedIn there([](const SeenRequest &, Wire &wire) { wire.stall(); });
        NetworkPolicy policy;
        policy.inactivityLimit = 600ms;
        there.client.setNetworkPolicy(policy);
        Listener listener;
        there.client.setWaitObserver(&listener);
        QVERIFY(errorOf([&] { there.client.projectTypes(); }));
        QVERIFY(!listener.times.isEmpty());
        QCOMPARE(listener.ends, 1);
    }

    void noEndIsToldWithoutAWait()
    {
        SignedIn there(respond(http(200, noTypes)));
        Listener listener;
        there.client.setWaitObserver(&listener);
        for (int i = 0; i < 5; ++i) {
            const qsizetype told = listener.times.size();
            const int ended = listener.ends;
            there.client.projectTypes();
            QCOMPARE(listener.ends - ended, listener.times.size() > told ? 1 : 0);
        }
    }

    void anObserverThatWasTakenAwayHearsNothing()
    {
        SignedIn there(slowTypes(700));
        Listener listener;
        there.client.setWaitObserver(&listener);
        listener.whenWaiting = [&] { there.client.setWaitObserver(nullptr); };
        there.client.projectTypes();
        QCOMPARE(listener.times.size(), 1);
        QCOMPARE(listener.ends, 0);
    }

    void anotherObserverTakesOver()
    {
        SignedIn there(slowTypes(900));
        Listener first;
        Listener second;
        there.client.setWaitObserver(&first);
        first.whenWaiting = [&] { there.client.setWaitObserver(&second); };
        there.client.projectTypes();
        QCOMPARE(first.times.size(), 1);
        QCOMPARE(first.ends, 0);
        QVERIFY(!second.times.isEmpty());
        QCOMPARE(second.ends, 1);
    }

    // Nested calls --------------------------------------------------------------------------------

    void aCallInsideAWaitIsAnswered()
    {
        SignedIn there(slowTypes(700));
        Listener listener;
        there.client.setWaitObserver(&listener);
        int answers = 0;
        listener.whenWaiting = [&] {
            AccountCollectionPtr accounts;
            there.client.getAccounts(accounts);
            answers += accounts ? 1 : 0;
        };
        QVERIFY(there.client.projectTypes().isEmpty());
        QVERIFY(answers > 0);
        QCOMPARE(answers, listener.times.size());
        QCOMPARE(listener.ends, 1);
    }

    void aSlowCallInsideAWaitIsPartOfIt()
    {
        SignedIn there(slowTypes(600));
        Listener listener;
        there.client.setWaitObserver(&listener);
        listener.whenWaiting = [&] { there.client.projectTypes(); };
        there.client.projectTypes();
        QVERIFY(there.calls() > 1);
        QCOMPARE(listener.deepest, 1);
        QCOMPARE(listener.ends, 1);
    }

    void anAnswerThatCameDuringALongNestedCallIsTaken()
    {
        SignedIn there([](const SeenRequest &request, Wire &wire) {
            wire.sleep(request.target == "/v1/accounts" ? 700 : 400);
            wire.write(http(200, R"({"types":[],"accounts":[]})"));
        });
        NetworkPolicy policy;
        policy.inactivityLimit = 600ms;
        policy.callLimit = 900ms;
        there.client.setNetworkPolicy(policy);
        Listener listener;
        there.client.setWaitObserver(&listener);
        listener.whenWaiting = [&] {
            there.client.setNetworkPolicy(NetworkPolicy());
            AccountCollectionPtr accounts;
            there.client.getAccounts(accounts);
            // By now the limits of the outer call are over, and its answer has been there for long.
        };
        QVERIFY(there.client.projectTypes().isEmpty());
        QCOMPARE(listener.times.size(), 1);
    }

    void aFailureInsideAWaitLeavesTheCallAlone()
    {
        SignedIn there([](const SeenRequest &request, Wire &wire) {
            if (request.target == "/v1/accounts") {
                wire.close();
            } else {
                wire.sleep(600);
                wire.write(http(200, noTypes));
            }
        });
        Listener listener;
        there.client.setWaitObserver(&listener);
        int failures = 0;
        listener.whenWaiting = [&] {
            AccountCollectionPtr accounts;
            failures += errorOf([&] { there.client.getAccounts(accounts); }) ? 1 : 0;
        };
        QVERIFY(there.client.projectTypes().isEmpty());
        QVERIFY(failures > 0);
    }

    void signingOutInsideAWaitLeavesTheCallAlone()
    {
        SignedIn there(slowTypes(600));
        Listener listener;
        there.client.setWaitObserver(&listener);
        listener.whenWaiting = [&] { there.client.signOut(); };
        QVERIFY(there.client.projectTypes().isEmpty());
        QVERIFY(!there.client.isSignedIn());
    }

    void anOldSessionThatEndsDoesNotTakeTheNewOneAlong()
    {
        ScriptedServer other(respond(http(201, R"({"token":"new","expiresAt":1})")));
        SignedIn there([](const SeenRequest &, Wire &wire) {
            wire.sleep(600);
            wire.write(problem(401, "signed-out"));
        });
        Listener listener;
        there.client.setWaitObserver(&listener);
        listener.whenWaiting = [&] {
            there.client.setWaitObserver(nullptr);
            signIn(there.client, other.address());
        };
        QVERIFY(errorOf([&] { there.client.projectTypes(); }));
        QVERIFY(there.client.isSignedIn());
    }

    // The host's events ---------------------------------------------------------------------------

    void nothingOfTheHostRunsInsideACall()
    {
        SignedIn there(slowTypes(200));
        int timeouts = 0;
        int events = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] { ++timeouts; });
        timer.start(1);
        QMetaObject::invokeMethod(
            this, [&] { ++events; }, Qt::QueuedConnection);
        there.client.projectTypes();
        QCOMPARE(timeouts, 0);
        QCOMPARE(events, 0);
        QTRY_VERIFY(timeouts > 0); // they were due all the time
        QCOMPARE(events, 1);
    }

    void anObserverMayHandleEvents()
    {
        SignedIn there(slowTypes(700));
        int timeouts = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [&] {
            ++timeouts;
            AccountCollectionPtr accounts;
            there.client.getAccounts(accounts); // as a click on a control would
        });
        timer.start(1);
        Listener listener;
        there.client.setWaitObserver(&listener);
        listener.whenWaiting = [] { QCoreApplication::processEvents(); };
        QVERIFY(there.client.projectTypes().isEmpty());
        QVERIFY(timeouts > 0);
        QCOMPARE(listener.ends, 1);
    }

    // The client's end ----------------------------------------------------------------------------

    void aClientThatNeverCalledGoesQuietly()
    {
        for (int i = 0; i < 20; ++i)
            HttpServiceClient client;
    }

    void aClientGoesRightAfterATimeout()
    {
        ScriptedServer server([](const SeenRequest &, Wire &wire) { wire.stall(); });
        for (int i = 0; i < 5; ++i) {
            HttpServiceClient client;
            NetworkPolicy policy;
            policy.inactivityLimit = 50ms;
            client.setNetworkPolicy(policy);
            QVERIFY(errorOf([&] { signIn(client, server.address()); }));
        }
    }

    void aClientMayGoInsideItsOwnCall()
    {
        ScriptedServer server([](const SeenRequest &, Wire &wire) { wire.stall(); });
        auto client = std::make_unique<HttpServiceClient>();
        Listener listener;
        client->setWaitObserver(&listener);
        listener.whenWaiting = [&] { client.reset(); };
        HttpServiceClient *gone = client.get();
        const auto error = errorOf([&] { signIn(*gone, server.address()); });
        QVERIFY(!client);
        QVERIFY(error);
        QCOMPARE(error->kind(), ServiceError::Kind::ConnectionLost);
        QVERIFY(error->description().contains(QLatin1String("given up")));
        QCOMPARE(listener.times.size(), 1);
    }
};

ZEL_TEST_MAIN(TestHttpWaiting)
#include "tst_httpwaiting.moc"
