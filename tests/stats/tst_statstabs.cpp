// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/workbooktemplate.h"
#include "statsfixture.h"
#include "testsupport/testcase.h"

#include <QLabel>

/// The tab strip: reports are fetched when their tab is first shown.
class tst_StatsTabs : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void onlyTheCurrentFrameIsShown();
    void eachTabIsFetchedOnce();
    void pollsAndSurveysAreFetchedWithoutARange();
    void chartButtonsWithoutAnActionAreHiddenAtDesignTime();
    void theTemplateOfTheWorkbookIsKept();
    void theCurrentTabFetchesNothing();
    void theKeyboardChangesTabsToo();
    void aReportMakesEveryTabStale();
    void aLateTabFollowsThePickers();
    void anAnswerOfNothingCountsAsLoaded();
    void aTabThatFailedIsFetchedAgain();
    void yieldsBeforeAndAfterLoading();
    void aSecondClickMayComeBeforeTheLoad();
    void aSecondClickMayComeAfterTheLoad();
    void theReportMayRunBeforeTheLoad();
    void anotherInitMayComeBeforeTheLoad();
    void survivesBeingDestroyed_data();
    void survivesBeingDestroyed();
    void survivesBeingDestroyedInTheCall_data();
    void survivesBeingDestroyedInTheCall();
};

void tst_StatsTabs::onlyTheCurrentFrameIsShown()
{
    StatsFixture f;
    QCOMPARE(f.shownFrames(), QList<int>{Participants});
    f.load();
    for (const int tab : {Registrants, Surveys, PageViews, Polls, Questions, Participants}) {
        f.clickTab(tab);
        QCOMPARE(f.tabs().currentIndex(), tab);
        QCOMPARE(f.shownFrames(), QList<int>{tab});
    }
}

void tst_StatsTabs::pollsAndSurveysAreFetchedWithoutARange()
{
    StatsFixture f;
    f.load();
    f.clickTab(Polls);
    f.clickTab(Surveys);
    QCOMPARE(f.takeTrail(), QStringList({QStringLiteral("GetPolls(\"d1\")"),
                                         QStringLiteral("GetSurveys(\"d1\")")}));
    f.clickTab(Polls);
    QCOMPARE(f.takeTrail(), QStringList());
}

void tst_StatsTabs::chartButtonsWithoutAnActionAreHiddenAtDesignTime()
{
    for (const bool designTime : {true, false}) {
        ZelWebServiceControls::StatsControl control;
        if (designTime)
            control.setMode(Zel::Control::Mode::Design);
        control.show();
        control.findChild<QFrame *>(QStringLiteral("reportsTabFrame_4"))->show();
        control.findChild<QFrame *>(QStringLiteral("reportsTabFrame_5"))->show();
        for (const char *const name : {"pollChart2D", "pollChartPie", "surveyChart3D"}) {
            auto *button = control.findChild<QPushButton *>(QLatin1String(name));
            QVERIFY(button);
            QCOMPARE(button->isHidden(), designTime);
        }
    }
}

void tst_StatsTabs::theTemplateOfTheWorkbookIsKept()
{
    StatsFixture f;
    const auto &label = f.child<QLabel>("excelTemplate");
    QCOMPARE(label.text(), ZelWebServiceControls::workbookTemplate().toString());
    QVERIFY(label.isHidden());
}

void tst_StatsTabs::eachTabIsFetchedOnce()
{
    StatsFixture f;
    f.load();
    f.clickTab(Registrants);
    f.clickTab(PageViews);
    f.clickTab(Questions);
    const QString range =
        QStringLiteral("(\"d1\", \"2007-01-09T08:00:00\", \"2007-01-09T18:00:00\")");
    const QStringList expected{QStringLiteral("GetRegistrants") + range,
                               QStringLiteral("GetPageViews") + range,
                               QStringLiteral("GetQuestions") + range};
    QCOMPARE(f.takeTrail(), expected);
    for (const int tab : {Participants, PageViews, Registrants, Questions})
        f.clickTab(tab);
    QCOMPARE(f.trail, QStringList());
}

void tst_StatsTabs::theCurrentTabFetchesNothing()
{
    StatsFixture f;
    f.init();
    f.clickTab(Participants);
    QCOMPARE(f.trail, QStringList());
}

void tst_StatsTabs::theKeyboardChangesTabsToo()
{
    StatsFixture f;
    f.load();
    f.tabs().setFocus();
    QTest::keyClick(&f.tabs(), Qt::Key_Right);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetRegistrants")});
    QCOMPARE(f.shownFrames(), QList<int>{Registrants});
}

void tst_StatsTabs::aReportMakesEveryTabStale()
{
    StatsFixture f;
    f.load();
    for (const int tab : {Registrants, PageViews, Questions, Participants})
        f.clickTab(tab);
    f.click(f.run());
    f.takeTrail();
    for (const int tab : {Questions, PageViews, Registrants, Participants})
        f.clickTab(tab);
    const QStringList expected{QStringLiteral("GetQuestions"), QStringLiteral("GetPageViews"),
                               QStringLiteral("GetRegistrants")};
    QCOMPARE(f.takeOperations(), expected);
}

void tst_StatsTabs::aLateTabFollowsThePickers()
{
    StatsFixture f;
    f.load();
    f.child<QDateTimeEdit>("startDateTime").setDateTime(onNinth(9, 30));
    QCOMPARE(f.trail, QStringList());
    f.clickTab(Registrants);
    QCOMPARE(f.takeTrail(),
             QStringList{QStringLiteral(
                 "GetRegistrants(\"d1\", \"2007-01-09T09:30:00\", \"2007-01-09T18:00:00\")")});
}

void tst_StatsTabs::anAnswerOfNothingCountsAsLoaded()
{
    StatsFixture f;
    f.load();
    QVERIFY(!f.client.registrants);
    f.clickTab(Registrants);
    f.clickTab(Participants);
    f.takeTrail();
    f.clickTab(Registrants);
    QCOMPARE(f.trail, QStringList());
}

void tst_StatsTabs::aTabThatFailedIsFetchedAgain()
{
    StatsFixture f;
    f.load();
    f.client.failNext(QStringLiteral("GetRegistrants"), Zel::RuntimeError(6));
    f.clickTab(Registrants);
    QCOMPARE(f.takeTrail().constLast(), QStringLiteral("error 6"));
    QCOMPARE(f.shownFrames(), QList<int>{Registrants});
    f.clickTab(Participants);
    f.clickTab(Registrants);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetRegistrants")});
}

void tst_StatsTabs::yieldsBeforeAndAfterLoading()
{
    StatsFixture f;
    f.load();
    f.atCall = [&f](const QString &) {
        // In the message loop after the call.
        f.inTheYield([&f] { f.trail << QStringLiteral("after"); });
    };
    f.inTheYield(
        [&f] { f.trail << QStringLiteral("before, frame %1").arg(f.shownFrames().constFirst()); });
    f.clickTab(Registrants);
    QCOMPARE(f.trail.size(), 3);
    QCOMPARE(f.trail.constFirst(), QStringLiteral("before, frame 1"));
    QVERIFY(f.trail.at(1).startsWith(QStringLiteral("GetRegistrants")));
    QCOMPARE(f.trail.constLast(), QStringLiteral("after"));
}

void tst_StatsTabs::aSecondClickMayComeBeforeTheLoad()
{
    StatsFixture f;
    f.load();
    f.inTheYield([&f] { f.clickTab(PageViews); });
    f.clickTab(Registrants);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetPageViews")});
    QCOMPARE(f.shownFrames(), QList<int>{PageViews});
    QCOMPARE(f.tabs().currentIndex(), int(PageViews));
    f.clickTab(Registrants);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetRegistrants")});
}

void tst_StatsTabs::aSecondClickMayComeAfterTheLoad()
{
    StatsFixture f;
    f.load();
    f.atCall = [&f](const QString &call) {
        if (call.startsWith(QLatin1String("GetRegistrants")))
            f.inTheYield([&f] { f.clickTab(PageViews); });
    };
    f.clickTab(Registrants);
    const QStringList expected{QStringLiteral("GetRegistrants"), QStringLiteral("GetPageViews")};
    QCOMPARE(f.takeOperations(), expected);
    QCOMPARE(f.shownFrames(), QList<int>{PageViews});
}

void tst_StatsTabs::theReportMayRunBeforeTheLoad()
{
    StatsFixture f;
    f.load();
    f.inTheYield([&f] { f.click(f.run()); });
    f.clickTab(Registrants);
    const QStringList operations = f.takeOperations();
    QCOMPARE(operations.size(), 12);
    QCOMPARE(operations.constLast(), QStringLiteral("GetRegistrants"));
    QVERIFY(f.run().isEnabled());
}

void tst_StatsTabs::anotherInitMayComeBeforeTheLoad()
{
    StatsFixture f;
    f.load();
    f.inTheYield([&f] { f.stats->Init(&f.client, QStringLiteral("d2"), onNinth(8), onNinth(18)); });
    f.clickTab(Registrants);
    QCOMPARE(f.shownFrames(), QList<int>{Participants});
    QVERIFY(!f.list("participantList").isHidden());
    f.takeTrail();
    // The report that follows is for the last binding.
    QTRY_COMPARE(f.trail.size(), 12);
    QVERIFY(f.trail.constLast().startsWith(QStringLiteral("GetParticipants(\"d2\"")));
}

void tst_StatsTabs::survivesBeingDestroyed_data()
{
    QTest::addColumn<bool>("afterTheCall");
    QTest::newRow("before the call") << false;
    QTest::newRow("after the call") << true;
}

void tst_StatsTabs::survivesBeingDestroyed()
{
    QFETCH(bool, afterTheCall);
    StatsFixture f;
    f.load();
    const auto destroy = [&f] { f.inTheYield([&f] { delete f.stats; }); };
    if (afterTheCall)
        f.atCall = [destroy](const QString &) { destroy(); };
    else
        destroy();
    // By code: a press on the tab would end in the destroyed tab strip.
    QMetaObject::invokeMethod(&f.tabs(), "currentChanged", Qt::QueuedConnection,
                              Q_ARG(int, Registrants));
    QTRY_VERIFY(!f.stats);
    QCOMPARE(f.trail.size(), afterTheCall ? 1 : 0);
}

void tst_StatsTabs::survivesBeingDestroyedInTheCall_data()
{
    QTest::addColumn<int>("tab");
    QTest::newRow("registrants") << int(Registrants);
    QTest::newRow("page views") << int(PageViews);
    QTest::newRow("questions") << int(Questions);
}

void tst_StatsTabs::survivesBeingDestroyedInTheCall()
{
    QFETCH(int, tab);
    StatsFixture f;
    f.load();
    f.client.registrants = ZelTest::recordList<QXSC::RegistrantRecord>({registrant(person(1))});
    f.client.pageViews = ZelTest::recordList<QXSC::PageViewRecord>({pageView(person(1))});
    f.client.questions =
        ZelTest::recordList<QXSC::QuestionRecord>({question(QStringLiteral("q1"))});
    f.atCall = [&f](const QString &) { delete f.stats; };
    QMetaObject::invokeMethod(&f.tabs(), "currentChanged", Qt::QueuedConnection, Q_ARG(int, tab));
    QTRY_VERIFY(!f.stats);
    QCOMPARE(f.trail.size(), 1);
}

ZEL_TEST_MAIN(tst_StatsTabs)
#include "tst_statstabs.moc"
