// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "statsfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <limits>

using ListTesting::clickHeader;
using QXSC::PageViewRecord;
using QXSC::ParticipantRecord;
using QXSC::RegistrantRecord;

namespace {

/// A page view of a person that took some seconds.
PageViewRecord viewed(int personNumber, qint32 seconds, const QDateTime &when = onNinth(10))
{
    return pageView(person(personNumber), seconds, when);
}

/// The cells of a line from left to right.
QStringList cells(const Zel::ListView &list, qsizetype row)
{
    QStringList texts;
    for (int column = 0; column < list.columnCount(); ++column)
        texts << list.text(row, column);
    return texts;
}

QStringList captions(const Zel::ListView &list)
{
    QStringList texts;
    for (int column = 0; column < list.columnCount(); ++column)
        texts << list.columnCaption(column);
    return texts;
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QStringLiteral("|"));
}

} // namespace

/// The lists of participants, registrants and page views.
class tst_TrafficLists : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void columnsAreThoseHostsKnow();
    void aRegisteredParticipantShowsEverything();
    void anUnregisteredParticipantShowsNoName();
    void aRegistrantWhoParticipatedShowsEverything();
    void aRegistrantWhoDidNotShowsNothingViewed();
    void aPageViewShowsWhoWhenAndHowLong();
    void wordsAreTheSameInEveryLanguage();
    void linesStandInTheOrderOfTheAnswer();
    void linesKeepTheirRecords();
    void durationsAreWritten_data();
    void durationsAreWritten();
    void anAnswerOfNothingLeavesTheListEmpty();
    void anEmptyAnswerLeavesTheListEmpty();
    void sayNoneOnlyWhenTheServiceSaidSo();
    void aPersonOfWhomNothingIsKnownIsALine();
    void aRecordThatIsNoneIsAnError();
    void aFetchThatFailsLeavesTheListClear();
    void everyListSorts_data();
    void everyListSorts();
    void theOrderIsFlippedPerListNotPerColumn();
    void eachListHasAnOrderOfItsOwn();
    void datesAndDurationsSortAsText();
    void sortingStaysOverAReload();
    void aHostMayLetValuesSort();
    void valuesOfCellsNotShownComeFirst();
    void aMillionLinesAreMadeWhenSeen();
};

void tst_TrafficLists::columnsAreThoseHostsKnow()
{
    StatsFixture f;
    QCOMPARE(captions(f.list("participantList")),
             words("User ID|First Name|Last Name|Email|Registered|Time Spent|First Viewed|"
                   "Last Viewed|Date Registered"));
    QCOMPARE(captions(f.list("registrantList")),
             words("User ID|First Name|Last Name|Email|Participated|Date Registered|First Viewed|"
                   "Last Viewed|Time Spent"));
    QCOMPARE(captions(f.list("pageViewList")),
             words("User ID|First Name|Last Name|Email|Date|Tme Spent|Closed"));
    for (const char *name : {"participantList", "registrantList", "pageViewList"}) {
        for (int column = 0; column < f.list(name).columnCount(); ++column)
            QVERIFY(f.list(name).columnWidth(column) > 0);
    }
}

void tst_TrafficLists::aRegisteredParticipantShowsEverything()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.participants = ZelTest::recordList<ParticipantRecord>(
        {participant(person(7), true, 3725, onNinth(8), onNinth(17, 30, 1))});
    f.load();
    QCOMPARE(cells(f.list("participantList"), 0),
             words("u7|First7|Last7|u7@example.org|True|1:02:05|1/9/2007 8:00:00 AM|"
                   "1/9/2007 5:30:01 PM|12/1/2006 8:07:00 AM"));
}

void tst_TrafficLists::anUnregisteredParticipantShowsNoName()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.participants = ZelTest::recordList<ParticipantRecord>(
        {participant(person(7), false, 59, onNinth(8), onNinth(9))});
    f.load();
    QCOMPARE(cells(f.list("participantList"), 0),
             words("u7||||False|0:00:59|1/9/2007 8:00:00 AM|1/9/2007 9:00:00 AM|"));
}

void tst_TrafficLists::aRegistrantWhoParticipatedShowsEverything()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.registrants = ZelTest::recordList<RegistrantRecord>(
        {registrant(person(3), true, 360000, onNinth(8), onNinth(9))});
    f.load();
    f.clickTab(Registrants);
    QCOMPARE(cells(f.list("registrantList"), 0),
             words("u3|First3|Last3|u3@example.org|True|12/1/2006 8:03:00 AM|"
                   "1/9/2007 8:00:00 AM|1/9/2007 9:00:00 AM|100:00:00"));
}

void tst_TrafficLists::aRegistrantWhoDidNotShowsNothingViewed()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.registrants = ZelTest::recordList<RegistrantRecord>(
        {registrant(person(3), false, 5, onNinth(8), onNinth(9))});
    f.load();
    f.clickTab(Registrants);
    QCOMPARE(cells(f.list("registrantList"), 0),
             words("u3|First3|Last3|u3@example.org|False|12/1/2006 8:03:00 AM|||"));
}

void tst_TrafficLists::aPageViewShowsWhoWhenAndHowLong()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.pageViews = ZelTest::recordList<PageViewRecord>(
        {pageView(person(2), 0, onNinth(0), true), pageView(person(2), 60, onNinth(12))});
    f.load();
    f.clickTab(PageViews);
    // A midnight shows the date alone.
    QCOMPARE(cells(f.list("pageViewList"), 0),
             words("u2|First2|Last2|u2@example.org|1/9/2007|0:00:00|True"));
    QCOMPARE(cells(f.list("pageViewList"), 1),
             words("u2|First2|Last2|u2@example.org|1/9/2007 12:00:00 PM|0:01:00|False"));
}

void tst_TrafficLists::wordsAreTheSameInEveryLanguage()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("de_DE")));
    StatsFixture f;
    f.client.pageViews = ZelTest::recordList<PageViewRecord>({viewed(1, 5, onNinth(13))});
    f.load();
    f.clickTab(PageViews);
    QCOMPARE(f.list("pageViewList").text(0, 6), QStringLiteral("False"));
    QCOMPARE(f.list("pageViewList").text(0, 4), QStringLiteral("09.01.2007 13:00:00"));
}

void tst_TrafficLists::linesStandInTheOrderOfTheAnswer()
{
    StatsFixture f;
    f.client.pageViews =
        ZelTest::recordList<PageViewRecord>({viewed(3, 1), viewed(1, 1), viewed(2, 1)});
    f.load();
    f.clickTab(PageViews);
    QCOMPARE(ListTesting::shownTexts(f.list("pageViewList")), words("u3|u1|u2"));
}

void tst_TrafficLists::linesKeepTheirRecords()
{
    StatsFixture f;
    f.client.participants =
        ZelTest::recordList<ParticipantRecord>({participant(person(1)), participant(person(2))});
    f.client.registrants = ZelTest::recordList<RegistrantRecord>({registrant(person(1))});
    f.client.pageViews = ZelTest::recordList<PageViewRecord>({pageView(person(1))});
    f.load();
    f.clickTab(Registrants);
    f.clickTab(PageViews);
    QCOMPARE(f.list("participantList").tag(1).value<QXSC::ParticipantRecordPtr>(),
             f.client.participants->item(2));
    QCOMPARE(f.list("registrantList").tag(0).value<QXSC::RegistrantRecordPtr>(),
             f.client.registrants->item(1));
    QCOMPARE(f.list("pageViewList").tag(0).value<QXSC::PageViewRecordPtr>(),
             f.client.pageViews->item(1));
}

void tst_TrafficLists::durationsAreWritten_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0 << QStringLiteral("0:00:00");
    QTest::newRow("under a minute") << 59 << QStringLiteral("0:00:59");
    QTest::newRow("a minute") << 60 << QStringLiteral("0:01:00");
    QTest::newRow("under an hour") << 3599 << QStringLiteral("0:59:59");
    QTest::newRow("over an hour") << 3725 << QStringLiteral("1:02:05");
    QTest::newRow("a hundred hours") << 360000 << QStringLiteral("100:00:00");
    QTest::newRow("more hours than 16 bits count") << 32768 * 3600 << QStringLiteral("32768:00:00");
    QTest::newRow("the longest") << std::numeric_limits<int>::max()
                                 << QStringLiteral("596523:14:07");
}

void tst_TrafficLists::durationsAreWritten()
{
    QFETCH(int, seconds);
    QFETCH(QString, text);
    StatsFixture f;
    f.client.participants =
        ZelTest::recordList<ParticipantRecord>({participant(person(1), false, seconds)});
    f.load();
    QCOMPARE(f.list("participantList").text(0, 5), text);
}

void tst_TrafficLists::anAnswerOfNothingLeavesTheListEmpty()
{
    StatsFixture f;
    f.client.participants = ZelTest::recordList<ParticipantRecord>({participant(person(1))});
    f.load();
    f.client.participants = nullptr;
    f.click(f.run());
    QCOMPARE(f.list("participantList").count(), 0);
    QVERIFY(f.run().isEnabled());
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_TrafficLists::anEmptyAnswerLeavesTheListEmpty()
{
    StatsFixture f;
    f.client.participants = ZelTest::recordList<ParticipantRecord>({});
    f.load();
    QCOMPARE(f.list("participantList").count(), 0);
    clickHeader(f.list("participantList"), 0);
    QVERIFY(f.run().isEnabled());
}

void tst_TrafficLists::sayNoneOnlyWhenTheServiceSaidSo()
{
    StatsFixture f;
    const Zel::ListView &list = f.list("participantList");
    QCOMPARE(list.emptyText(), QString());
    f.load();
    QCOMPARE(list.emptyText(), QStringLiteral("No participants in this range"));
    f.client.failNext(QStringLiteral("GetParticipants"), Zel::RuntimeError(5));
    f.click(f.run());
    QCOMPARE(list.emptyText(), QString());
}

void tst_TrafficLists::aPersonOfWhomNothingIsKnownIsALine()
{
    StatsFixture f;
    const auto empty = std::make_shared<QXSC::StatsUser>();
    f.client.participants = ZelTest::recordList<ParticipantRecord>(
        {participant(nullptr, true, 5), participant(empty, true, 6)});
    f.client.registrants = ZelTest::recordList<RegistrantRecord>(
        {registrant(nullptr, true, 5), registrant(empty, true, 6)});
    f.client.pageViews = ZelTest::recordList<PageViewRecord>(
        {pageView(nullptr, 5, {}, true), pageView(empty, 6, {}, true)});
    f.load();
    f.clickTab(Registrants);
    f.clickTab(PageViews);
    QCOMPARE(cells(f.list("participantList"), 0), words("||||True|0:00:05|||"));
    QCOMPARE(cells(f.list("participantList"), 1), words("||||True|0:00:06|||"));
    QCOMPARE(cells(f.list("registrantList"), 0), words("||||True||||0:00:05"));
    QCOMPARE(cells(f.list("registrantList"), 1), words("||||True||||0:00:06"));
    QCOMPARE(cells(f.list("pageViewList"), 0), words("|||||0:00:05|True"));
    QCOMPARE(cells(f.list("pageViewList"), 1), words("|||||0:00:06|True"));
    for (const char *name : {"participantList", "registrantList", "pageViewList"}) {
        f.list(name).setSortByValue(true);
        for (int column = 0; column < f.list(name).columnCount(); ++column)
            f.list(name).sortBy(column, Qt::AscendingOrder);
        QCOMPARE(f.list(name).count(), 2);
    }
}

void tst_TrafficLists::aRecordThatIsNoneIsAnError()
{
    StatsFixture f;
    auto records = std::make_shared<QXSC::ParticipantCollection>();
    records->add(std::make_shared<ParticipantRecord>());
    records->add(nullptr);
    f.client.participants = records;
    f.init();
    QTRY_COMPARE(f.trail.size(), 13);
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 91"));
    QCOMPARE(f.list("participantList").count(), 0);
}

void tst_TrafficLists::aFetchThatFailsLeavesTheListClear()
{
    StatsFixture f;
    f.client.pageViews = ZelTest::recordList<PageViewRecord>({viewed(1, 1)});
    f.load();
    f.clickTab(PageViews);
    QCOMPARE(f.list("pageViewList").count(), 1);
    f.takeTrail();
    f.atCall = [&f](const QString &call) {
        if (call.startsWith(QLatin1String("GetPageViews")))
            f.trail << QStringLiteral("%1 lines").arg(f.list("pageViewList").count());
    };
    f.client.failNext(QStringLiteral("GetPageViews"), Zel::RuntimeError(5));
    f.click(f.run());
    QCOMPARE(f.trail.mid(12), words("0 lines|error 5"));
    QCOMPARE(f.list("pageViewList").count(), 0);
}

void tst_TrafficLists::everyListSorts_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("participants") << int(Participants) << QByteArray("participantList");
    QTest::newRow("registrants") << int(Registrants) << QByteArray("registrantList");
    QTest::newRow("page views") << int(PageViews) << QByteArray("pageViewList");
}

void tst_TrafficLists::everyListSorts()
{
    QFETCH(int, tab);
    QFETCH(QByteArray, list);
    StatsFixture f;
    f.client.participants = ZelTest::recordList<ParticipantRecord>(
        {participant(person(2), true), participant(person(3), true), participant(person(1))});
    f.client.registrants = ZelTest::recordList<RegistrantRecord>(
        {registrant(person(2)), registrant(person(3)), registrant(person(1))});
    f.client.pageViews = ZelTest::recordList<PageViewRecord>(
        {pageView(person(2)), pageView(person(3)), pageView(person(1))});
    f.load();
    f.clickTab(tab);
    Zel::ListView &view = f.list(list.constData());
    QVERIFY(!view.isSorted());
    clickHeader(view, 0);
    QCOMPARE(ListTesting::shownTexts(view), words("u3|u2|u1"));
    QVERIFY(view.isSorted());
    QCOMPARE(view.sortKey(), 0);
    clickHeader(view, 0);
    QCOMPARE(ListTesting::shownTexts(view), words("u1|u2|u3"));
    QCOMPARE(f.trail.filter(QStringLiteral("error")), QStringList());
}

void tst_TrafficLists::theOrderIsFlippedPerListNotPerColumn()
{
    StatsFixture f;
    f.client.pageViews =
        ZelTest::recordList<PageViewRecord>({viewed(2, 1), viewed(3, 3), viewed(1, 2)});
    f.load();
    f.clickTab(PageViews);
    const Zel::ListView &list = f.list("pageViewList");
    clickHeader(list, 0);
    QCOMPARE(list.sortOrder(), Qt::DescendingOrder);
    clickHeader(list, 5);
    QCOMPARE(list.sortOrder(), Qt::AscendingOrder);
    QCOMPARE(list.sortKey(), 5);
    QCOMPARE(ListTesting::shownTexts(list), words("u2|u1|u3"));
    clickHeader(list, 0);
    QCOMPARE(list.sortOrder(), Qt::DescendingOrder);
    QCOMPARE(ListTesting::shownTexts(list), words("u3|u2|u1"));
}

void tst_TrafficLists::eachListHasAnOrderOfItsOwn()
{
    StatsFixture f;
    f.load();
    clickHeader(f.list("participantList"), 1);
    f.clickTab(Registrants);
    clickHeader(f.list("registrantList"), 2);
    QCOMPARE(f.list("participantList").sortOrder(), Qt::DescendingOrder);
    QCOMPARE(f.list("registrantList").sortOrder(), Qt::DescendingOrder);
    QCOMPARE(f.list("registrantList").sortKey(), 2);
    QCOMPARE(f.list("participantList").sortKey(), 1);
}

void tst_TrafficLists::datesAndDurationsSortAsText()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.pageViews = ZelTest::recordList<PageViewRecord>({viewed(1, 10 * 3600, onNinth(10)),
                                                              viewed(2, 9 * 3600, onNinth(9)),
                                                              viewed(3, 100 * 3600, onNinth(23))});
    f.load();
    f.clickTab(PageViews);
    const Zel::ListView &list = f.list("pageViewList");
    clickHeader(list, 5);
    clickHeader(list, 5);
    QCOMPARE(ListTesting::shownTexts(list, 5), words("10:00:00|100:00:00|9:00:00"));
    clickHeader(list, 4);
    QCOMPARE(ListTesting::shownTexts(list, 4),
             words("1/9/2007 9:00:00 AM|1/9/2007 11:00:00 PM|1/9/2007 10:00:00 AM"));
}

void tst_TrafficLists::sortingStaysOverAReload()
{
    StatsFixture f;
    f.client.pageViews = ZelTest::recordList<PageViewRecord>({viewed(1, 1), viewed(2, 1)});
    f.load();
    f.clickTab(PageViews);
    clickHeader(f.list("pageViewList"), 0);
    f.client.pageViews =
        ZelTest::recordList<PageViewRecord>({viewed(1, 1), viewed(3, 1), viewed(2, 1)});
    f.click(f.run());
    QCOMPARE(ListTesting::shownTexts(f.list("pageViewList")), words("u3|u2|u1"));
    clickHeader(f.list("pageViewList"), 0);
    QCOMPARE(ListTesting::shownTexts(f.list("pageViewList")), words("u1|u2|u3"));
}

void tst_TrafficLists::aHostMayLetValuesSort()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.pageViews = ZelTest::recordList<PageViewRecord>({viewed(1, 10 * 3600, onNinth(10)),
                                                              viewed(2, 9 * 3600, onNinth(9)),
                                                              viewed(3, 100 * 3600, onNinth(23))});
    f.load();
    f.clickTab(PageViews);
    Zel::ListView &list = f.list("pageViewList");
    list.setSortByValue(true);
    clickHeader(list, 5);
    QCOMPARE(ListTesting::shownTexts(list, 5), words("100:00:00|10:00:00|9:00:00"));
    clickHeader(list, 4);
    QCOMPARE(ListTesting::shownTexts(list), words("u2|u1|u3"));
    // Texts go on to sort as texts.
    clickHeader(list, 3);
    QCOMPARE(ListTesting::shownTexts(list), words("u3|u2|u1"));
}

void tst_TrafficLists::valuesOfCellsNotShownComeFirst()
{
    StatsFixture f;
    f.client.registrants = ZelTest::recordList<RegistrantRecord>(
        {registrant(person(1), true, 9, onNinth(9), onNinth(9)),
         registrant(person(2), false, 8, onNinth(8), onNinth(8)),
         registrant(person(3), true, 8, onNinth(8), onNinth(8))});
    f.client.participants = ZelTest::recordList<ParticipantRecord>({participant(person(1), true),
                                                                    participant(person(3), true),
                                                                    participant(person(2), false)});
    f.load();
    f.clickTab(Registrants);
    Zel::ListView &registrants = f.list("registrantList");
    registrants.setSortByValue(true);
    for (const int column : {6, 7, 8}) {
        registrants.sortBy(column, Qt::AscendingOrder);
        QCOMPARE(ListTesting::shownTexts(registrants), words("u2|u3|u1"));
    }
    Zel::ListView &participants = f.list("participantList");
    participants.setSortByValue(true);
    participants.sortBy(8, Qt::DescendingOrder);
    QCOMPARE(ListTesting::shownTexts(participants), words("u3|u1|u2"));
}

void tst_TrafficLists::aMillionLinesAreMadeWhenSeen()
{
    auto views = std::make_shared<QXSC::PageViewCollection>();
    const auto view = std::make_shared<PageViewRecord>(viewed(1, 1));
    const auto other = std::make_shared<PageViewRecord>(viewed(2, 2));
    constexpr int count = 1'000'000;
    views->reserve(count);
    for (int i = 0; i < count; ++i)
        views->add(i % 2 ? other : view);
    StatsFixture f;
    f.client.pageViews = views;
    f.load();
    f.clickTab(PageViews);
    Zel::ListView &list = f.list("pageViewList");
    QCOMPARE(list.count(), count);
    QCOMPARE(list.text(count - 1, 0), QStringLiteral("u2"));
    list.ensureVisible(count - 1);
    QVERIFY(list.viewport()->rect().intersects(list.cellRect(count - 1)));
    list.setSortByValue(true);
    clickHeader(list, 5);
    QCOMPARE(list.rowAt(0), 1);
    QCOMPARE(list.rowAt(count - 1), count - 2);
}

ZEL_TEST_MAIN(tst_TrafficLists)
#include "tst_trafficlists.moc"
