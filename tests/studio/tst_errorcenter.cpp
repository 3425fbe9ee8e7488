// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "studio/errorcenter.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>
#include <QTest>

using QXSC::ServiceError;
using Studio::ErrorCenter;
using Studio::Problem;

namespace {

ServiceError failure(const char *text = "It failed. Try again.",
                     ServiceError::Kind kind = ServiceError::Kind::TimedOut)
{
    return ServiceError(kind, QString::fromLatin1(text));
}

Problem told(const char *what)
{
    Problem problem;
    problem.what = QString::fromLatin1(what);
    problem.canRetry = true;
    return problem;
}

} // namespace

class TestErrorCenter : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void aSuccessRaisesNothing()
    {
        ErrorCenter errors;
        const QSignalSpy raised(&errors, &ErrorCenter::raised);
        int done = 0;
        QVERIFY(errors.attempt([&] { ++done; }));
        QCOMPARE(done, 1);
        QVERIFY(raised.isEmpty());
        QVERIFY(!errors.hasProblem());
        QVERIFY(!errors.canRetry());
    }

    void aFailureIsRaisedWithItsActionToRetry()
    {
        ErrorCenter errors;
        const QSignalSpy raised(&errors, &ErrorCenter::raised);
        QVERIFY(!errors.attempt([] { throw failure(); }));
        QCOMPARE(raised.size(), 1);
        QCOMPARE(errors.problem().what, QStringLiteral("It failed."));
        QCOMPARE(errors.problem().advice, QStringLiteral("Try again."));
        QVERIFY(errors.canRetry());
    }

    void retryDoesTheActionAgainAndWithdrawsTheProblemOnSuccess()
    {
        ErrorCenter errors;
        const QSignalSpy cleared(&errors, &ErrorCenter::cleared);
        int calls = 0;
        errors.attempt([&] {
            if (++calls < 2)
                throw failure();
        });
        errors.retry();
        QCOMPARE(calls, 2);
        QCOMPARE(cleared.size(), 1);
        QVERIFY(!errors.hasProblem());
        errors.retry(); // nothing is left to retry
        QCOMPARE(calls, 2);
    }

    void theProblemStandsWhileItIsRetried()
    {
        ErrorCenter errors;
        QStringList seen;
        errors.attempt([&] {
            seen << errors.problem().what;
            throw failure();
        });
        const QSignalSpy cleared(&errors, &ErrorCenter::cleared);
        errors.retry();
        QCOMPARE(seen, (QStringList{QString(), QStringLiteral("It failed.")}));
        QVERIFY(cleared.isEmpty());
    }

    void aSecondFailureReplacesTheFirst()
    {
        ErrorCenter errors;
        const QSignalSpy raised(&errors, &ErrorCenter::raised);
        int first = 0;
        int second = 0;
        errors.attempt([&] {
            ++first;
            throw failure("The first failed.");
        });
        errors.attempt([&] {
            ++second;
            throw failure("The second failed.");
        });
        QCOMPARE(raised.size(), 2);
        QCOMPARE(errors.problem().what, QStringLiteral("The second failed."));
        errors.retry();
        QCOMPARE(first, 1);
        QCOMPARE(second, 2);
        errors.clear();
        QVERIFY(!errors.hasProblem()); // the first does not come back
    }

    void aLaterSuccessWithdrawsTheProblem()
    {
        ErrorCenter errors;
        errors.attempt([] { throw failure(); });
        QVERIFY(errors.attempt([] {}));
        QVERIFY(!errors.hasProblem());
        QVERIFY(!errors.canRetry());
    }

    void anActionThatReportsByItselfHasNotSucceeded()
    {
        // As a control does that tells its error by a signal.
        ErrorCenter errors;
        QVERIFY(!errors.attempt([&] { errors.report(told("The control failed.")); }));
        QCOMPARE(errors.problem().what, QStringLiteral("The control failed."));
        errors.report(told("Again."), [&] { errors.report(told("And again.")); });
        errors.retry();
        QCOMPARE(errors.problem().what, QStringLiteral("And again."));
    }

    void theHookRunsOnceBeforeEveryRetry()
    {
        ErrorCenter errors;
        QStringList trail;
        errors.setBeforeRetry([&] {
            trail << QStringLiteral("hook");
            return true;
        });
        errors.attempt([&] {
            trail << QStringLiteral("action");
            throw failure();
        });
        errors.retry();
        errors.retry();
        QCOMPARE(trail.join(QLatin1Char(' ')), QStringLiteral("action hook action hook action"));
    }

    void aHookThatFailsKeepsTheActionForTheNextRetry()
    {
        ErrorCenter errors;
        bool isBack = false;
        int calls = 0;
        int starts = 0;
        errors.setBeforeRetry([&] {
            if (!isBack)
                errors.report(told("It does not come back."), [&] { ++starts; });
            return isBack;
        });
        errors.attempt([&] {
            if (++calls < 2)
                throw failure();
        });
        errors.retry();
        QCOMPARE(calls, 1);
        QCOMPARE(errors.problem().what, QStringLiteral("It does not come back."));
        QVERIFY(errors.canRetry());
        isBack = true;
        errors.retry();
        QCOMPARE(calls, 2);
        QCOMPARE(starts, 0);
        QVERIFY(!errors.hasProblem());
    }

    void aRetryInsideARetryIsIgnored()
    {
        ErrorCenter errors;
        int calls = 0;
        errors.report(told("It failed."), [&] {
            ++calls;
            errors.retry();
        });
        errors.retry();
        QCOMPARE(calls, 1);
    }

    void theRefiningHookWordsErrorsButNotProblems()
    {
        ErrorCenter errors;
        errors.setRefine([](Problem &problem) { problem.what += QStringLiteral(" (refined)"); });
        errors.attempt([] { throw failure(); });
        QCOMPARE(errors.problem().what, QStringLiteral("It failed. (refined)"));
        errors.report(told("As it is."));
        QCOMPARE(errors.problem().what, QStringLiteral("As it is."));
    }

    void whatCannotHelpIsNotOffered()
    {
        ErrorCenter errors;
        int calls = 0;
        errors.attempt([&] {
            ++calls;
            throw failure("No.", ServiceError::Kind::Refused);
        });
        QVERIFY(!errors.canRetry());
        errors.retry();
        QCOMPARE(calls, 1);
        errors.report(failure()); // nothing to retry with
        QVERIFY(!errors.canRetry());
    }

    void cancellingADialogIsNoProblem()
    {
        ErrorCenter errors;
        QVERIFY(
            !errors.attempt([] { throw Zel::RuntimeError(Zel::RuntimeError::DialogCancelled); }));
        QVERIFY(!errors.hasProblem());
    }

    void clearingTellsOnceAndOnlyWhenThereWasSomething()
    {
        ErrorCenter errors;
        const QSignalSpy cleared(&errors, &ErrorCenter::cleared);
        errors.clear();
        QVERIFY(cleared.isEmpty());
        errors.report(told("It failed."), [] {});
        errors.clear();
        errors.clear();
        QCOMPARE(cleared.size(), 1);
        QVERIFY(!errors.canRetry());
    }
};

ZEL_TEST_MAIN(TestErrorCenter)
#include "tst_errorcenter.moc"
