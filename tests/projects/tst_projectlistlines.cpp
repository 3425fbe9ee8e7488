// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projectlistfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

/// What the lines show of their records, and the records they keep.
class tst_ProjectListLines : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void fillsTheColumns();
    void leavesDatesOutUnlessTheyAreSaidToBeThere();
    void keepsTheRecordOnTheLine();
    void showsAwkwardRecords();
    void forgetsTheSelection();
};

void tst_ProjectListLines::fillsTheColumns()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    ProjectListFixture f;
    QXSC::ProjectRecord record = project(1);
    record.description = QStringLiteral("All hands & <b>more</b>");
    record.hasCreated = true;
    record.created = QDateTime(QDate(2007, 1, 9), QTime(15, 4, 5));
    record.hasModified = true;
    record.modified = QDateTime(QDate(2007, 1, 10), QTime(0, 0));
    record.createdBy = QStringLiteral("Mira");
    record.hasEventDate = true;
    record.eventDate = QDateTime(QDate(2031, 12, 24), QTime(9, 30, 0));
    f.load({record});
    const QStringList expected{QStringLiteral("Project 1"),
                               QStringLiteral("All hands & <b>more</b>"),
                               QStringLiteral("1/9/2007 3:04:05 PM"),
                               QStringLiteral("1/10/2007"),
                               QStringLiteral("Mira"),
                               QStringLiteral("12/24/2031 9:30:00 AM")};
    for (int column = 0; column < expected.size(); ++column) {
        QCOMPARE(f.view().text(0, column), expected.at(column));
        QVERIFY(!f.view().cellTag(0, column).isValid());
    }
}

void tst_ProjectListLines::leavesDatesOutUnlessTheyAreSaidToBeThere()
{
    ProjectListFixture f;
    QXSC::ProjectRecord record = project(1);
    record.created = record.modified = record.eventDate = QDateTime(QDate(2007, 1, 9), QTime(1, 2));
    QXSC::ProjectRecord invalid = project(2);
    invalid.hasCreated = invalid.hasModified = invalid.hasEventDate = true;
    f.load({record, invalid});
    for (const int column : {Created, Modified, EventDate}) {
        QCOMPARE(f.view().text(0, column), QString());
        QCOMPARE(f.view().text(1, column), QString());
    }
}

void tst_ProjectListLines::keepsTheRecordOnTheLine()
{
    ProjectListFixture f;
    f.load();
    const QXSC::ProjectRecordPtr tag = f.view().tag(1).value<QXSC::ProjectRecordPtr>();
    QCOMPARE(tag, f.client.projects->item(2));
    f.client.projects = nullptr;
    QCOMPARE(tag->guid, QStringLiteral("g2"));
}

void tst_ProjectListLines::showsAwkwardRecords()
{
    ProjectListFixture f;
    QXSC::ProjectRecord noGuid;
    noGuid.name = QStringLiteral("No guid");
    QXSC::ProjectRecord longName = project(2);
    longName.name = QString(10000, u'W');
    QXSC::ProjectRecord lines = project(3);
    lines.name = QStringLiteral("First\r\nsecond\n\tthird \U0001F30C");
    lines.description = QString(100000, u'\n');
    f.load({noGuid, longName, lines, project(4)});
    QCOMPARE(f.view().text(0), QStringLiteral("No guid"));
    QCOMPARE(f.view().text(1), longName.name);
    QCOMPARE(f.view().text(2), lines.name);
    QCOMPARE(f.view().text(2, 1), lines.description);
    // Lines are all of one height, whatever they hold, and the window stays as it is.
    for (int row = 1; row < 4; ++row)
        QCOMPARE(f.view().cellRect(row).height(), f.view().cellRect(0).height());
    QVERIFY(!f.form.grab().isNull());
    f.list->SelectProject(QString());
    QCOMPARE(f.selected(), QString());
    ListTesting::click(f.view(), 1);
    QCOMPARE(f.list->GetSelectedProject()->name.size(), 10000);
}

void tst_ProjectListLines::forgetsTheSelection()
{
    ProjectListFixture f;
    f.load();
    f.list->SelectProject(QStringLiteral("g2"));
    f.takeTrail();
    f.list->Refresh();
    QCOMPARE(f.selected(), QStringLiteral("nothing"));
    QCOMPARE(f.trail.size(), 1); // the call, and no click
}

ZEL_TEST_MAIN(tst_ProjectListLines)
#include "tst_projectlistlines.moc"
