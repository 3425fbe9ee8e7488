// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projectlistfixture.h"
#include "testsupport/testcase.h"

#include <QTimer>

using ZelTest::errorNumber;
using ZelWebServiceControls::ProjectList;

/// A load lets the message loop run once before its call: anything may happen there.
class tst_ProjectListYield : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void comesBeforeTheCallAndUnderTheHourglass();
    void comesOnlyWithALoad();
    void survivesTheControlBeingDestroyed_data();
    void survivesTheControlBeingDestroyed();
    void survivesASecondRefresh();
    void survivesAnotherInit();
    void survivesTheClientGoing();
    void letsAPersonGoOn();
    void mayEndInTheUnloadRequest();
    void mayGetAClientInTheUnloadRequest();

private:
    /// Does something in the next turn of the message loop.
    static void inTheYield(const std::function<void()> &act) { QTimer::singleShot(0, qApp, act); }
};

void tst_ProjectListYield::comesBeforeTheCallAndUnderTheHourglass()
{
    ProjectListFixture f;
    inTheYield([&f] {
        f.trail << (f.list->cursor().shape() == Qt::WaitCursor ? QStringLiteral("hourglass")
                                                               : QStringLiteral("arrow"));
    });
    f.load();
    QCOMPARE(f.trail.size(), 2);
    QCOMPARE(f.trail.constFirst(), QStringLiteral("hourglass"));
    QVERIFY(f.trail.constLast().startsWith(QStringLiteral("getProjectList")));
}

void tst_ProjectListYield::comesOnlyWithALoad()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.load();
    bool yielded = false;
    inTheYield([&yielded] { yielded = true; });
    f.list->SelectProject(QStringLiteral("g2"));
    f.list->UpdateSelected();
    f.list->GetSelectedProject();
    ListTesting::clickHeader(f.view(), 0);
    QVERIFY(!yielded);
    QTRY_VERIFY(yielded);
}

void tst_ProjectListYield::survivesTheControlBeingDestroyed_data()
{
    QTest::addColumn<bool>("refresh");
    QTest::addColumn<bool>("hasClient");
    QTest::newRow("Init") << false << true;
    QTest::newRow("Refresh") << true << true;
    QTest::newRow("Init without a client") << false << false;
}

void tst_ProjectListYield::survivesTheControlBeingDestroyed()
{
    QFETCH(bool, refresh);
    QFETCH(bool, hasClient);
    ProjectListFixture f;
    f.load();
    f.client.takeCalls();
    inTheYield([&f] { delete f.list; });
    const int error = errorNumber([&] {
        if (refresh)
            f.list->Refresh();
        else
            f.list->Init(hasClient ? &f.client : nullptr);
    });
    QVERIFY(!f.list);
    QCOMPARE(error, 0);
    QCOMPARE(f.client.calls(), QStringList());
}

void tst_ProjectListYield::survivesASecondRefresh()
{
    ProjectListFixture f;
    f.load();
    f.takeTrail();
    inTheYield([&f] { f.list->Refresh(); });
    f.list->Refresh();
    const QStringList expected{
        QStringLiteral("getProjectList(\"webcast\") | hourglass, 0 lines"),
        QStringLiteral("getProjectList(\"webcast\") | hourglass, 3 lines"),
    };
    QCOMPARE(f.trail, expected);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
    QCOMPARE(f.list->cursor().shape(), Qt::ArrowCursor);
    QVERIFY(!f.list->testAttribute(Qt::WA_SetCursor));
}

void tst_ProjectListYield::survivesAnotherInit()
{
    ProjectListFixture f;
    ZelTest::RecordingClient other;
    other.projects = ZelTest::projectList(projectsNumbered({8, 9}));
    inTheYield([&] { f.list->Init(&other, QStringLiteral("poll")); });
    f.load();
    // Both loads are for the last binding.
    QCOMPARE(f.client.calls(), QStringList());
    QCOMPARE(other.calls().size(), 2);
    QCOMPARE(other.calls().constLast(), QStringLiteral("getProjectList(\"poll\")"));
    QCOMPARE(f.order(), QStringLiteral("g8 g9"));
}

void tst_ProjectListYield::survivesTheClientGoing()
{
    ProjectListFixture f;
    auto client = std::make_unique<ZelTest::RecordingClient>();
    inTheYield([&client] { client.reset(); });
    QCOMPARE(errorNumber([&] { f.list->Init(client.get()); }), 91);
    QCOMPARE(f.trail, QStringList());
    QVERIFY(!f.list->testAttribute(Qt::WA_SetCursor));
}

void tst_ProjectListYield::letsAPersonGoOn()
{
    ProjectListFixture f;
    f.load();
    f.takeTrail();
    inTheYield([&f] {
        ListTesting::click(f.view(), 1);
        ListTesting::clickHeader(f.view(), 0);
    });
    f.load();
    const QStringList expected{QStringLiteral("click g2 | hourglass, 3 lines"),
                               QStringLiteral("getProjectList(\"webcast\") | hourglass, 3 lines")};
    QCOMPARE(f.trail, expected);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
    QVERIFY(!f.view().isSorted());
}

void tst_ProjectListYield::mayEndInTheUnloadRequest()
{
    ProjectListFixture f;
    QObject::connect(f.list, &ProjectList::unloadRequested, qApp, [&f] { delete f.list; });
    QCOMPARE(errorNumber([&f] { f.list->Init(nullptr); }), 0);
    QVERIFY(!f.list);
}

void tst_ProjectListYield::mayGetAClientInTheUnloadRequest()
{
    ProjectListFixture f;
    QObject::connect(f.list, &ProjectList::unloadRequested, qApp, [&f] { f.load(); });
    QCOMPARE(errorNumber([&f] { f.list->Init(nullptr, QStringLiteral("poll")); }), 0);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
}

ZEL_TEST_MAIN(tst_ProjectListYield)
#include "tst_projectlistyield.moc"
