// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/latebound.h"
#include "projectlistfixture.h"
#include "testsupport/testcase.h"

using QXSC::ServiceError;
using ZelTest::errorNumber;

/// Loading by Init and Refresh: the calls, what a failure leaves, and what the lines show.
class tst_ProjectListLoad : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isEmptyBeforeInit();
    void asksForTheTypeAndKeepsTheServersOrder();
    void asksForAnEmptyTypeWhenNoneIsGiven();
    void replacesTheLinesOnEveryInit();
    void refreshEmptiesFirstAndAsksForTheSameType();
    void keepsTheListWhenTheServiceAnswersNothing();
    void staysEmptyWhenARefreshIsAnsweredWithNothing();
    void showsAnEmptyListForAnEmptyAnswer();
    void asksToBeUnloadedAndFailsWithoutAClient();
    void asksToBeUnloadedOnceTheClientIsGone();
    void refreshWithoutAClientLeavesTheListEmpty();
    void passesErrorsOnAndKeepsTheList();
    void passesErrorsOfARefreshOn();
    void putsTheFormerPointerBack_data();
    void putsTheFormerPointerBack();
    void refusesAListWithANullRecord();
    void leavesTheClientAlone();
};

void tst_ProjectListLoad::isEmptyBeforeInit()
{
    ProjectListFixture f;
    QCOMPARE(f.view().count(), 0);
    QVERIFY(!f.list->GetSelectedProject());
    QCOMPARE(f.trail, QStringList());
}

void tst_ProjectListLoad::asksForTheTypeAndKeepsTheServersOrder()
{
    ProjectListFixture f;
    f.client.projects = ZelTest::projectList(projectsNumbered({3, 1, 2}));
    f.load();
    QCOMPARE(f.trail,
             QStringList{QStringLiteral("getProjectList(\"webcast\") | hourglass, 0 lines")});
    QCOMPARE(f.order(), QStringLiteral("g3 g1 g2"));
    QVERIFY(!f.view().isSorted());
}

void tst_ProjectListLoad::asksForAnEmptyTypeWhenNoneIsGiven()
{
    ProjectListFixture f;
    f.list->Init(&f.client);
    const Zel::LateBound list(f.list);
    list.call(QStringLiteral("Init"), {QVariant::fromValue<QObject *>(&f.client)});
    list.call(QStringLiteral("Init"),
              {QVariant::fromValue<QObject *>(&f.client), QStringLiteral("Poll ")});
    list.call(QStringLiteral("Refresh"));
    const QStringList expected{
        QStringLiteral("getProjectList(\"\")"), QStringLiteral("getProjectList(\"\")"),
        QStringLiteral("getProjectList(\"Poll \")"), QStringLiteral("getProjectList(\"Poll \")")};
    QCOMPARE(f.client.calls(), expected);
}

void tst_ProjectListLoad::replacesTheLinesOnEveryInit()
{
    ProjectListFixture f;
    f.load();
    ZelTest::RecordingClient other;
    other.projects = ZelTest::projectList(projectsNumbered({7}));
    f.list->Init(&other, QStringLiteral("poll"));
    QCOMPARE(f.order(), QStringLiteral("g7"));
    f.list->Refresh();
    const QStringList twice{QStringLiteral("getProjectList(\"poll\")"),
                            QStringLiteral("getProjectList(\"poll\")")};
    QCOMPARE(other.calls(), twice);
    QCOMPARE(f.client.calls().size(), 1);
}

void tst_ProjectListLoad::refreshEmptiesFirstAndAsksForTheSameType()
{
    ProjectListFixture f;
    f.load();
    f.takeTrail();
    f.client.projects = ZelTest::projectList(projectsNumbered({4, 5}));
    f.list->Refresh();
    QCOMPARE(f.trail,
             QStringList{QStringLiteral("getProjectList(\"webcast\") | hourglass, 0 lines")});
    QCOMPARE(f.order(), QStringLiteral("g4 g5"));
}

void tst_ProjectListLoad::keepsTheListWhenTheServiceAnswersNothing()
{
    ProjectListFixture f;
    f.load();
    f.list->SelectProject(QStringLiteral("g2"));
    ListTesting::clickHeader(f.view(), 0);
    f.takeTrail();
    f.client.projects = nullptr;
    f.load();
    QCOMPARE(f.trail,
             QStringList{QStringLiteral("getProjectList(\"webcast\") | hourglass, 3 lines")});
    QCOMPARE(f.order(), QStringLiteral("g3 g2 g1"));
    QCOMPARE(f.selected(), QStringLiteral("g2"));
    QVERIFY(f.view().isSorted());
    QCOMPARE(f.list->cursor().shape(), Qt::ArrowCursor);
}

void tst_ProjectListLoad::staysEmptyWhenARefreshIsAnsweredWithNothing()
{
    ProjectListFixture f;
    f.load();
    f.client.projects = nullptr;
    f.list->Refresh();
    QCOMPARE(f.view().count(), 0);
    QCOMPARE(f.selected(), QStringLiteral("nothing"));
    QCOMPARE(f.list->cursor().shape(), Qt::ArrowCursor);
}

void tst_ProjectListLoad::showsAnEmptyListForAnEmptyAnswer()
{
    ProjectListFixture f;
    f.load();
    f.load({});
    QCOMPARE(f.view().count(), 0);
    QVERIFY(!f.view().emptyText().isEmpty());
}

void tst_ProjectListLoad::asksToBeUnloadedAndFailsWithoutAClient()
{
    ProjectListFixture f;
    QCOMPARE(errorNumber([&f] { f.list->Init(nullptr, QStringLiteral("webcast")); }), 91);
    QCOMPARE(f.trail, QStringList{QStringLiteral("unload | arrow, 0 lines")});
    QCOMPARE(f.list->cursor().shape(), Qt::ArrowCursor);
    QVERIFY(!f.list->testAttribute(Qt::WA_SetCursor));
}

void tst_ProjectListLoad::asksToBeUnloadedOnceTheClientIsGone()
{
    ProjectListFixture f;
    {
        ZelTest::RecordingClient shortLived;
        shortLived.projects = f.client.projects;
        f.list->Init(&shortLived);
    }
    QCOMPARE(f.view().count(), 3);
    QCOMPARE(errorNumber([&f] { f.list->Refresh(); }), 91);
    QCOMPARE(f.trail, QStringList{QStringLiteral("unload | arrow, 0 lines")});
}

void tst_ProjectListLoad::refreshWithoutAClientLeavesTheListEmpty()
{
    ProjectListFixture f;
    f.load();
    QCOMPARE(errorNumber([&f] { f.list->Init(nullptr); }), 91);
    QCOMPARE(f.view().count(), 3);
    QCOMPARE(errorNumber([&f] { f.list->Refresh(); }), 91);
    QCOMPARE(f.view().count(), 0);
    f.load();
    QCOMPARE(f.view().count(), 3);
}

void tst_ProjectListLoad::passesErrorsOnAndKeepsTheList()
{
    ProjectListFixture f;
    f.load();
    f.client.failNext(QStringLiteral("getProjectList"),
                      ServiceError(ServiceError::Kind::SignedOut, QStringLiteral("Sign in again."),
                                   QStringLiteral("expired")));
    bool caught = false;
    try {
        f.list->Init(&f.client, QStringLiteral("poll"));
    } catch (const ServiceError &error) {
        caught = true;
        QCOMPARE(error.kind(), ServiceError::Kind::SignedOut);
        QCOMPARE(error.code(), QStringLiteral("expired"));
    }
    QVERIFY(caught);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
    QCOMPARE(f.trail.size(), 2); // the two calls, and no error event
    QCOMPARE(f.boxes.shown().size(), 0);
    // The binding is kept all the same: the next refresh is for the new type.
    f.list->Refresh();
    QCOMPARE(f.client.calls().constLast(), QStringLiteral("getProjectList(\"poll\")"));
}

void tst_ProjectListLoad::passesErrorsOfARefreshOn()
{
    ProjectListFixture f;
    f.load();
    f.client.failNext(QStringLiteral("getProjectList"), Zel::RuntimeError(6));
    QCOMPARE(errorNumber([&f] { f.list->Refresh(); }), 6);
    QCOMPARE(f.view().count(), 0);
    f.list->Refresh();
    QCOMPARE(f.view().count(), 3);
}

void tst_ProjectListLoad::putsTheFormerPointerBack_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"lines", "nothing", "error", "null record", "no client"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void tst_ProjectListLoad::putsTheFormerPointerBack()
{
    QFETCH(QString, way);
    for (const bool ownPointer : {false, true}) {
        ProjectListFixture f;
        if (ownPointer)
            f.list->setCursor(Qt::CrossCursor);
        if (way == QStringLiteral("nothing"))
            f.client.projects = nullptr;
        if (way == QStringLiteral("null record"))
            f.client.projects =
                std::make_shared<QXSC::ProjectCollection>(QXSC::ProjectCollection{nullptr});
        if (way == QStringLiteral("error"))
            f.client.failNext(QStringLiteral("getProjectList"), Zel::RuntimeError(6));
        QXSC::ServiceClient *client = way == QStringLiteral("no client") ? nullptr : &f.client;
        errorNumber([&] { f.list->Init(client); });
        QCOMPARE(f.trail.size(), 1);
        QVERIFY(!client || f.trail.constFirst().contains(QStringLiteral("hourglass")));
        QCOMPARE(f.list->testAttribute(Qt::WA_SetCursor), ownPointer);
        QCOMPARE(f.list->cursor().shape(), ownPointer ? Qt::CrossCursor : Qt::ArrowCursor);
    }
}

void tst_ProjectListLoad::refusesAListWithANullRecord()
{
    ProjectListFixture f;
    f.load();
    auto broken = std::make_shared<QXSC::ProjectCollection>(*f.client.projects);
    broken->add(nullptr);
    f.client.projects = broken;
    QCOMPARE(errorNumber([&f] { f.load(); }), 91);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
    QCOMPARE(errorNumber([&f] { f.list->Refresh(); }), 91);
    QCOMPARE(f.view().count(), 0);
}

void tst_ProjectListLoad::leavesTheClientAlone()
{
    ZelTest::RecordingClient client;
    {
        ZelWebServiceControls::ProjectList list;
        list.Init(&client);
        QCOMPARE(client.parent(), nullptr);
    }
    QCOMPARE(client.calls().size(), 1);
}

ZEL_TEST_MAIN(tst_ProjectListLoad)
#include "tst_projectlistload.moc"
