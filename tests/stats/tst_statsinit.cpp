// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "statsfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include "platform/core/datenumber.h"
#include "platform/widgets/latebound.h"

#include <QLabel>

/// Binding a statistics control, and what it shows before any report.
class tst_StatsInit : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void captionsAreThoseHostsKnow();
    void summaryCaptionsAreThoseHostsKnow();
    void summaryBoxesCannotBeEdited();
    void pickersAreEmptyAtFirst();
    void pickersShowDateAndTime();
    void pickersHoldCenturies();
    void keepsTheRangeGiven();
    void aRangeNotGivenIsTheLastDay_data();
    void aRangeNotGivenIsTheLastDay();
    void aStartNotGivenIsYesterdayWhateverTheEnd();
    void yesterdayIsTheSameClockTime();
    void callsNothingItself();
    void theTimerRunsTheReportOnce();
    void aSecondInitRunsOneReport();
    void fillsThePalette();
    void showsTheFirstTabWithoutALoad();
    void withoutAClientTheReportFails();
    void theTemplateLabelIsHidden();
};

void tst_StatsInit::captionsAreThoseHostsKnow()
{
    StatsFixture f;
    QCOMPARE(f.child<QGroupBox>("Frame1").title(), QStringLiteral("Report Parameters"));
    QCOMPARE(f.child<QLabel>("Label1").text(), QStringLiteral("Start Date"));
    QCOMPARE(f.child<QLabel>("Label2").text(), QStringLiteral("End Date"));
    QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
    QCOMPARE(f.child<QGroupBox>("Frame2").title(), QStringLiteral("Summary"));
    QStringList captions;
    for (int tab = 0; tab < f.tabs().count(); ++tab)
        captions << f.tabs().tabText(tab);
    const QStringList expected{QStringLiteral("Participants"), QStringLiteral("Registrants"),
                               QStringLiteral("Page Views"),   QStringLiteral("Q and A"),
                               QStringLiteral("Polls"),        QStringLiteral("Surveys/Quizzes")};
    QCOMPARE(captions, expected);
}

void tst_StatsInit::summaryCaptionsAreThoseHostsKnow()
{
    StatsFixture f;
    const std::pair<const char *, const char *> expected[] = {
        {"totalViewLength", "Total Page View Length (hh:mm:ss)"},
        {"summaryTotalHits", "Total Page Views (Hits)"},
        {"summaryUniqueHits", "Total Participants (Unique Viewers)"},
        {"summaryIEHits", "Visitors Using IE"},
        {"summaryNetscapeHits", "Visitors Using Netscape"},
        {"summaryJS13Hits", "Visitors Using JS 1.3"},
        {"summary24DepthHits", "Vistors Using 24 bit"},
        {"summary32DepthHits", "Vistors Using 32 bit"},
        {"summaryReg", "Total Registrants"},
        {"summaryRegPart", "Total Registered Participants"},
        {"summaryRegNonPart", "Total Registered Nonparticipants"},
    };
    int above = -1;
    for (const auto &[name, caption] : expected) {
        const auto &box = f.child<QLineEdit>(name);
        QLabel *label = nullptr;
        for (QLabel *candidate : f.child<QGroupBox>("Frame2").findChildren<QLabel *>()) {
            if (candidate->buddy() == &box)
                label = candidate;
        }
        QVERIFY2(label, name);
        QCOMPARE(label->text(), QLatin1String(caption));
        QCOMPARE(box.accessibleName(), QLatin1String(caption));
        QVERIFY2(box.y() > above, name);
        QVERIFY(qAbs(box.geometry().center().y() - label->geometry().center().y()) <= 2);
        above = box.y();
    }
}

void tst_StatsInit::summaryBoxesCannotBeEdited()
{
    StatsFixture f;
    const QList<QLineEdit *> boxes = f.child<QGroupBox>("Frame2").findChildren<QLineEdit *>();
    QCOMPARE(boxes.size(), 11);
    for (QLineEdit *box : boxes) {
        QTest::keyClicks(box, QStringLiteral("12"));
        QCOMPARE(box->text(), QString());
    }
}

void tst_StatsInit::pickersAreEmptyAtFirst()
{
    StatsFixture f;
    for (const char *name : {"startDateTime", "endDateTime"})
        QCOMPARE(f.child<QDateTimeEdit>(name).text().trimmed(), QString());
    f.stats->Init(&f.client, QStringLiteral("d1"));
    for (const char *name : {"startDateTime", "endDateTime"})
        QCOMPARE(f.child<QDateTimeEdit>(name).text().size(), 23);
}

void tst_StatsInit::pickersShowDateAndTime()
{
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.stats->Init(&f.client, QStringLiteral("d1"), onNinth(15, 4, 5), onNinth(0, 0, 9));
    QCOMPARE(f.child<QDateTimeEdit>("startDateTime").text(),
             QStringLiteral("01/09/2007  03:04:05 PM"));
    QCOMPARE(f.child<QDateTimeEdit>("endDateTime").text(),
             QStringLiteral("01/09/2007  12:00:09 AM"));
}

void tst_StatsInit::pickersHoldCenturies()
{
    StatsFixture f;
    const QDateTime first(QDate(1599, 2, 3), QTime(4, 5, 6));
    const QDateTime last(QDate(9998, 7, 8), QTime(9, 10, 11));
    f.stats->Init(&f.client, QStringLiteral("d1"), first, last);
    QCOMPARE(f.child<QDateTimeEdit>("startDateTime").dateTime(), first);
    QCOMPARE(f.child<QDateTimeEdit>("endDateTime").dateTime(), last);
    // A range that ends before it starts is for the service to judge.
    f.stats->Init(&f.client, QStringLiteral("d1"), last, first);
    QCOMPARE(f.child<QDateTimeEdit>("startDateTime").dateTime(), last);
    QCOMPARE(f.child<QDateTimeEdit>("endDateTime").dateTime(), first);
}

void tst_StatsInit::keepsTheRangeGiven()
{
    StatsFixture f;
    const QDateTime withFraction(QDate(2007, 1, 9), QTime(8, 0, 0, 700));
    f.stats->Init(&f.client, QStringLiteral("d1"), withFraction, onNinth(18));
    QCOMPARE(f.child<QDateTimeEdit>("startDateTime").dateTime(), onNinth(8));
    QCOMPARE(f.child<QDateTimeEdit>("endDateTime").dateTime(), onNinth(18));
}

void tst_StatsInit::aRangeNotGivenIsTheLastDay_data()
{
    QTest::addColumn<QVariantList>("dates");
    const QVariant zero(Zel::dateFromNumber(0));
    QTest::newRow("left out") << QVariantList();
    QTest::newRow("not valid") << QVariantList{QDateTime(), QDateTime()};
    QTest::newRow("day zero") << QVariantList{zero, zero};
}

void tst_StatsInit::aRangeNotGivenIsTheLastDay()
{
    QFETCH(QVariantList, dates);
    StatsFixture f;
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    Zel::LateBound(f.stats.data())
        .call(QStringLiteral("Init"),
              QVariantList{QVariant::fromValue<QXSC::ServiceClient *>(&f.client),
                           QStringLiteral("d1")} +
                  dates);
    const QDateTime after = QDateTime::currentDateTime();
    const QDateTime start = f.child<QDateTimeEdit>("startDateTime").dateTime();
    const QDateTime end = f.child<QDateTimeEdit>("endDateTime").dateTime();
    QVERIFY2(before < end && end <= after, qPrintable(end.toString(Qt::ISODateWithMs)));
    QCOMPARE(start, end.addDays(-1));
}

void tst_StatsInit::aStartNotGivenIsYesterdayWhateverTheEnd()
{
    StatsFixture f;
    const QDateTime before = QDateTime::currentDateTime().addDays(-1).addSecs(-1);
    f.stats->Init(&f.client, QStringLiteral("d1"), QDateTime(), onNinth(18));
    const QDateTime start = f.child<QDateTimeEdit>("startDateTime").dateTime();
    QVERIFY(before < start && start <= QDateTime::currentDateTime().addDays(-1));
    QCOMPARE(f.child<QDateTimeEdit>("endDateTime").dateTime(), onNinth(18));
}

void tst_StatsInit::yesterdayIsTheSameClockTime()
{
    StatsFixture f;
    f.stats->Init(&f.client, QStringLiteral("d1"));
    const QDateTime start = f.child<QDateTimeEdit>("startDateTime").dateTime();
    const QDateTime end = f.child<QDateTimeEdit>("endDateTime").dateTime();
    QCOMPARE(start.time(), end.time());
    QCOMPARE(start.date().addDays(1), end.date());
    QCOMPARE(end.time().msec(), 0);
}

void tst_StatsInit::callsNothingItself()
{
    StatsFixture f;
    QVERIFY(!f.timer().isActive());
    QCOMPARE(f.timer().interval(), 100);
    f.init();
    QVERIFY(f.timer().isActive());
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
    QVERIFY(f.run().isEnabled());
}

void tst_StatsInit::theTimerRunsTheReportOnce()
{
    StatsFixture f;
    f.atCall = [&f](const QString &) { QVERIFY(!f.timer().isActive()); };
    f.init();
    QTRY_COMPARE(f.trail.size(), 12);
    QCOMPARE(f.takeOperations().constLast(), QStringLiteral("GetParticipants"));
    QTest::qWait(250);
    QCOMPARE(f.trail, QStringList());
}

void tst_StatsInit::aSecondInitRunsOneReport()
{
    StatsFixture f;
    ZelTest::RecordingClient first;
    f.stats->Init(&first, QStringLiteral("d0"));
    f.init();
    QTRY_COMPARE(f.trail.size(), 12);
    QTest::qWait(250);
    QCOMPARE(f.trail.size(), 12);
    QCOMPARE(first.calls(), QStringList());
    QCOMPARE(f.trail.at(2), QStringLiteral("GetRegistrantCount(\"d1\")"));
}

void tst_StatsInit::fillsThePalette()
{
    StatsFixture f;
    QCOMPARE(f.stats->chartColours(), QList<QColor>());
    f.init();
    const QList<QColor> expected{QColor(0, 255, 0),    QColor(255, 0, 0),     QColor(0, 0, 255),
                                 QColor(255, 255, 0),  QColor(255, 0, 255),   QColor(0, 255, 255),
                                 QColor(232, 192, 64), QColor(128, 128, 128), QColor(172, 236, 172),
                                 QColor(164, 134, 106)};
    QCOMPARE(f.stats->chartColours(), expected);
    f.init();
    QCOMPARE(f.stats->chartColours(), expected);
}

void tst_StatsInit::showsTheFirstTabWithoutALoad()
{
    StatsFixture f;
    f.client.participants = ZelTest::recordList<QXSC::ParticipantRecord>({participant(person(1))});
    f.load();
    f.clickTab(PageViews);
    f.takeTrail();
    QCOMPARE(f.shownFrames(), QList<int>{PageViews});
    f.init();
    QCOMPARE(f.tabs().currentIndex(), 0);
    QCOMPARE(f.shownFrames(), QList<int>{Participants});
    QCOMPARE(f.trail, QStringList());
    // The other tabs stay fetched until the report is run.
    f.clickTab(PageViews);
    f.clickTab(Participants);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetParticipants")});
    QTRY_VERIFY(!f.timer().isActive());
    f.takeTrail();
    f.clickTab(PageViews);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetPageViews")});
}

void tst_StatsInit::withoutAClientTheReportFails()
{
    StatsFixture f;
    f.click(f.run());
    QCOMPARE(f.takeTrail(), QStringList{QStringLiteral("error 91")});
    f.stats->Init(nullptr, QStringLiteral("d1"));
    QTRY_COMPARE(f.trail.size(), 1);
    QCOMPARE(f.takeTrail(), QStringList{QStringLiteral("error 91")});
    auto client = std::make_unique<ZelTest::RecordingClient>();
    f.stats->Init(client.get(), QStringLiteral("d1"));
    client.reset();
    QTRY_COMPARE(f.trail.size(), 1);
    QCOMPARE(f.takeTrail(), QStringList{QStringLiteral("error 91")});
    QCOMPARE(f.run().text(), QStringLiteral("Loading data..."));
}

void tst_StatsInit::theTemplateLabelIsHidden()
{
    StatsFixture f;
    QVERIFY(f.child<QLabel>("excelTemplate").isHidden());
}

ZEL_TEST_MAIN(tst_StatsInit)
#include "tst_statsinit.moc"
