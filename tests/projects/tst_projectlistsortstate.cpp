// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projectlistfixture.h"
#include "testsupport/testcase.h"

using ListTesting::clickHeader;

/// What a sort leaves as it was, and what it does meanwhile.
class tst_ProjectListSortState : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void aLoadEndsTheSortAndKeepsTheOrder();
    void textsAndTagsComeBackAsTheyWere();
    void theSelectionStaysOnItsProject();
    void theListWaitsAndIsFrozenMeanwhile();
    void theFormerPointerComesBack();
    void anEmptyListCanBeSorted();
    void sortingRaisesNothing();
};

void tst_ProjectListSortState::aLoadEndsTheSortAndKeepsTheOrder()
{
    ProjectListFixture f;
    f.load(projectsNumbered({2, 3, 1}));
    clickHeader(f.view(), Name);
    QVERIFY(ListTesting::header(f.view())->isSortIndicatorShown());
    f.list->Refresh();
    QCOMPARE(f.order(), QStringLiteral("g2 g3 g1"));
    QVERIFY(!f.view().isSorted());
    QVERIFY(!ListTesting::header(f.view())->isSortIndicatorShown());
    QCOMPARE(f.view().sortOrder(), Qt::DescendingOrder);
    clickHeader(f.view(), Name);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
    f.load(projectsNumbered({3, 1, 2}));
    QCOMPARE(f.order(), QStringLiteral("g3 g1 g2"));
    clickHeader(f.view(), Name);
    QCOMPARE(f.order(), QStringLiteral("g3 g2 g1"));
}

void tst_ProjectListSortState::textsAndTagsComeBackAsTheyWere()
{
    ProjectListFixture f;
    f.load({createdOn(1, QDateTime(QDate(2007, 1, 10), QTime(8, 0))),
            described(2, QString(u'a') + QChar(QChar::Null) + QString(u'b'))});
    f.view().setCellTag(0, Created, QStringLiteral("mine"));
    const QString created = f.view().text(0, Created);
    for (const int column : {Created, Description, Name, EventDate})
        clickHeader(f.view(), column);
    QCOMPARE(f.view().text(0, Created), created);
    QCOMPARE(f.view().text(1, Description), QString(u'a') + QChar(QChar::Null) + QString(u'b'));
    QCOMPARE(f.view().cellTag(0, Created), QVariant(QStringLiteral("mine")));
    QVERIFY(!f.view().cellTag(1, Created).isValid());
    QCOMPARE(f.view().tag(0).value<QXSC::ProjectRecordPtr>(), f.client.projects->item(1));
}

void tst_ProjectListSortState::theSelectionStaysOnItsProject()
{
    ProjectListFixture f;
    f.load(projectsNumbered({1, 2, 3}));
    ListTesting::click(f.view(), 0);
    clickHeader(f.view(), Name);
    QCOMPARE(f.selected(), QStringLiteral("g1"));
    QCOMPARE(f.view().positionOf(f.view().selectedRow()), 2);
}

void tst_ProjectListSortState::theListWaitsAndIsFrozenMeanwhile()
{
    for (const int column : {Name, Created}) {
        ProjectListFixture f;
        f.load();
        int seen = 0;
        connect(f.view().model(), &QAbstractItemModel::layoutAboutToBeChanged, this, [&] {
            ++seen;
            QCOMPARE(f.view().cursor().shape(), Qt::WaitCursor);
            QVERIFY(!f.view().updatesEnabled());
        });
        clickHeader(f.view(), column);
        QCOMPARE(seen, 1);
        QVERIFY(f.view().updatesEnabled());
        QCOMPARE(f.view().cursor().shape(), Qt::ArrowCursor);
        QVERIFY(!f.view().testAttribute(Qt::WA_SetCursor));
    }
}

void tst_ProjectListSortState::theFormerPointerComesBack()
{
    ProjectListFixture f;
    f.load();
    f.view().setCursor(Qt::CrossCursor);
    clickHeader(f.view(), Created);
    QCOMPARE(f.view().cursor().shape(), Qt::CrossCursor);
}

void tst_ProjectListSortState::anEmptyListCanBeSorted()
{
    ProjectListFixture f;
    for (int column = Name; column <= EventDate; ++column)
        clickHeader(f.view(), column);
    QCOMPARE(f.view().sortOrder(), Qt::AscendingOrder);
    f.load(projectsNumbered({2, 1}));
    QCOMPARE(f.order(), QStringLiteral("g2 g1"));
}

void tst_ProjectListSortState::sortingRaisesNothing()
{
    ProjectListFixture f;
    f.load();
    f.list->SelectProject(QStringLiteral("g2"));
    f.takeTrail();
    clickHeader(f.view(), Name);
    clickHeader(f.view(), Created);
    QCOMPARE(f.trail, QStringList());
}

ZEL_TEST_MAIN(tst_ProjectListSortState)
#include "tst_projectlistsortstate.moc"
