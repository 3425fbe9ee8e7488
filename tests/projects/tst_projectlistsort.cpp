// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projectlistfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

using ListTesting::clickHeader;

namespace {

/// A click on a header that a person cannot hit because its column is hidden.
void clickHiddenHeader(const Zel::ListView &list, int column)
{
    emit ListTesting::header(list)->sectionClicked(column);
}

} // namespace

/// Sorting by clicks on the column headers.
class tst_ProjectListSort : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void theFirstClickSortsDescending();
    void everyFurtherClickFlipsTheOneOrder();
    void datesSortInTheOrderOfTime();
    void everyDateColumnSortsByTime();
    void linesWithoutADateComeFirstAscending();
    void namesSortAsPeopleDo();
    void equalKeysKeepTheServersOrderBothWays();
    void hiddenColumnsSortToo();
    void numbersSortByValue();
    void cellsThatAreNoNumberComeFirst();
    void aTextThatIsNoDateSortsAsNone();
};

void tst_ProjectListSort::theFirstClickSortsDescending()
{
    ProjectListFixture f;
    f.load(projectsNumbered({2, 3, 1}));
    clickHeader(f.view(), Name);
    QCOMPARE(f.order(), QStringLiteral("g3 g2 g1"));
    QVERIFY(f.view().isSorted());
    QCOMPARE(f.view().sortKey(), Name);
    QCOMPARE(f.view().sortOrder(), Qt::DescendingOrder);
    clickHeader(f.view(), Name);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3"));
}

void tst_ProjectListSort::everyFurtherClickFlipsTheOneOrder()
{
    ProjectListFixture f;
    f.load({described(1, QStringLiteral("b")), described(2, QStringLiteral("a")),
            described(3, QStringLiteral("c"))});
    clickHeader(f.view(), Name);
    QCOMPARE(f.view().sortOrder(), Qt::DescendingOrder);
    clickHeader(f.view(), Description);
    QCOMPARE(f.view().sortOrder(), Qt::AscendingOrder);
    QCOMPARE(f.order(), QStringLiteral("g2 g1 g3"));
    clickHeader(f.view(), Created);
    QCOMPARE(f.view().sortOrder(), Qt::DescendingOrder);
    clickHeader(f.view(), Description);
    QCOMPARE(f.view().sortOrder(), Qt::AscendingOrder);
    clickHeader(f.view(), Description);
    QCOMPARE(f.order(), QStringLiteral("g3 g1 g2"));
}

void tst_ProjectListSort::datesSortInTheOrderOfTime()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    ProjectListFixture f;
    f.load({createdOn(1, QDateTime(QDate(2007, 1, 10), QTime(8, 0))),
            createdOn(2, QDateTime(QDate(2007, 1, 9), QTime(13, 0))),
            createdOn(3, QDateTime(QDate(2007, 1, 9), QTime(9, 0))),
            createdOn(4, QDateTime(QDate(2006, 12, 31), QTime(23, 59, 59)))});
    clickHeader(f.view(), Created);
    clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g4 g3 g2 g1"));
    // As texts they would stand in another order.
    QStringList texts = f.shown(Created);
    std::sort(texts.begin(), texts.end());
    QVERIFY(texts != f.shown(Created));
}

void tst_ProjectListSort::everyDateColumnSortsByTime()
{
    ProjectListFixture f;
    QList<QXSC::ProjectRecord> records = projectsNumbered({1, 2, 3});
    for (int i = 0; i < 3; ++i) {
        QXSC::ProjectRecord &record = records[i];
        record.hasModified = record.hasEventDate = true;
        record.modified = QDateTime(QDate(2020, 1, 9 + (i + 1) % 3), QTime(1, 0));
        record.eventDate = QDateTime(QDate(2020, 1, 9 + (i + 2) % 3), QTime(1, 0));
    }
    f.load(records);
    clickHeader(f.view(), Modified);
    QCOMPARE(f.order(), QStringLiteral("g2 g1 g3"));
    clickHeader(f.view(), EventDate);
    QCOMPARE(f.order(), QStringLiteral("g2 g3 g1"));
}

void tst_ProjectListSort::linesWithoutADateComeFirstAscending()
{
    ProjectListFixture f;
    f.load({createdOn(1, QDateTime(QDate(2007, 1, 10), QTime(8, 0))), project(2),
            createdOn(3, QDateTime(QDate(1, 1, 1), QTime(0, 0))), project(4)});
    clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g1 g3 g2 g4"));
    clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g2 g4 g3 g1"));
}

void tst_ProjectListSort::namesSortAsPeopleDo()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    ProjectListFixture f;
    QList<QXSC::ProjectRecord> records;
    for (const char *name : {"Zoe", "emil", "beta", "\u00c9mile", "Alpha", "apple", ""}) {
        records << project(static_cast<int>(records.size()));
        records.last().name = QString::fromUtf8(name);
    }
    f.load(records);
    clickHeader(f.view(), Name);
    clickHeader(f.view(), Name);
    const QStringList expected{QString(),
                               QStringLiteral("Alpha"),
                               QStringLiteral("apple"),
                               QStringLiteral("beta"),
                               QStringLiteral("emil"),
                               QStringLiteral("\u00c9mile"),
                               QStringLiteral("Zoe")};
    QCOMPARE(f.shown(), expected);
}

void tst_ProjectListSort::equalKeysKeepTheServersOrderBothWays()
{
    ProjectListFixture f;
    QList<QXSC::ProjectRecord> records = projectsNumbered({1, 2, 3, 4, 5, 6});
    for (int i = 0; i < 6; ++i) {
        records[i].createdBy = i % 2 ? QStringLiteral("MIRA") : QStringLiteral("mira");
        records[i].hasCreated = true;
        records[i].created = QDateTime(QDate(2020, 1, 1), QTime(1, 0, 0, i));
    }
    records[3].createdBy = QStringLiteral("Ada");
    f.load(records);
    clickHeader(f.view(), CreatedBy);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3 g5 g6 g4"));
    clickHeader(f.view(), CreatedBy);
    QCOMPARE(f.order(), QStringLiteral("g4 g1 g2 g3 g5 g6"));
    // Fractions of a second are not shown and do not count.
    clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3 g4 g5 g6"));
    clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g1 g2 g3 g4 g5 g6"));
}

void tst_ProjectListSort::hiddenColumnsSortToo()
{
    ProjectListFixture f;
    f.list->setPropertyBagText(
        QStringLiteral("<properties version=\"1\"><property name=\"ShowCreated\" type=\"boolean\" "
                       "value=\"False\"/>"
                       "</properties>"));
    QCOMPARE(f.view().columnWidth(Created), 0.0);
    f.load({createdOn(1, QDateTime(QDate(2007, 1, 10), QTime(8, 0))),
            createdOn(2, QDateTime(QDate(2007, 1, 11), QTime(8, 0))),
            createdOn(3, QDateTime(QDate(2007, 1, 9), QTime(8, 0)))});
    clickHiddenHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g2 g1 g3"));
    QCOMPARE(f.view().sortKey(), Created);
}

void tst_ProjectListSort::numbersSortByValue()
{
    ProjectListFixture f;
    f.view().setColumnTag(Description, QStringLiteral("NUMBER"));
    f.load({described(1, QStringLiteral("-2")), described(2, QStringLiteral("-10")),
            described(3, QStringLiteral("3")), described(4, QStringLiteral("20")),
            described(5, QStringLiteral("0")), described(6, QStringLiteral("-0.5"))});
    clickHeader(f.view(), Description);
    clickHeader(f.view(), Description);
    const QStringList expected{QStringLiteral("-10"), QStringLiteral("-2"), QStringLiteral("-0.5"),
                               QStringLiteral("0"),   QStringLiteral("3"),  QStringLiteral("20")};
    QCOMPARE(f.shown(Description), expected);
}

void tst_ProjectListSort::cellsThatAreNoNumberComeFirst()
{
    ProjectListFixture f;
    f.view().setColumnTag(Description, QStringLiteral("NUMBER"));
    f.load({described(1, QStringLiteral("7")), described(2, QStringLiteral("seven")),
            described(3, QStringLiteral("-7")), described(4, QString())});
    clickHeader(f.view(), Description);
    QCOMPARE(f.order(), QStringLiteral("g1 g3 g2 g4"));
    clickHeader(f.view(), Description);
    QCOMPARE(f.order(), QStringLiteral("g2 g4 g3 g1"));
    QCOMPARE(f.view().text(1, Description), QStringLiteral("seven"));
}

void tst_ProjectListSort::aTextThatIsNoDateSortsAsNone()
{
    ProjectListFixture f;
    f.load({createdOn(1, QDateTime(QDate(2007, 1, 10), QTime(8, 0))),
            createdOn(2, QDateTime(QDate(2007, 1, 11), QTime(8, 0))),
            createdOn(3, QDateTime(QDate(2007, 1, 9), QTime(8, 0)))});
    f.view().setText(1, Created, QStringLiteral("some day"));
    clickHeader(f.view(), Created);
    QCOMPARE(f.order(), QStringLiteral("g1 g3 g2"));
    QCOMPARE(f.view().text(1, Created), QStringLiteral("some day"));
}

ZEL_TEST_MAIN(tst_ProjectListSort)
#include "tst_projectlistsort.moc"
