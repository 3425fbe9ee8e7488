// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "statsfixture.h"
#include "testsupport/localefixture.h"
#include "testsupport/testcase.h"

#include <QDialog>

namespace {

const QString range = QStringLiteral("\"d1\", \"2007-01-09T08:00:00\", \"2007-01-09T18:00:00\"");

/// The eleven figures in the order they are asked for, and the box each goes to.
struct Figure
{
    QString call;
    const char *box;
    const char *text;
};

QString attributeCall(const char *attribute, const char *value)
{
    return QStringLiteral("GetPageHitCountByAttribute(%1, \"%2\", \"=\", \"%3\")")
        .arg(range, QLatin1String(attribute), QLatin1String(value));
}

QList<Figure> figures()
{
    return {
        {QStringLiteral("GetDeploymentStatistic(%1, \"TotalPageHits\")").arg(range),
         "summaryTotalHits", "20000"},
        {QStringLiteral("GetUniqueParticipantCount(%1)").arg(range), "summaryUniqueHits", "3000"},
        {QStringLiteral("GetRegistrantCount(\"d1\")"), "summaryReg", "1200"},
        {QStringLiteral("GetRegisteredParticipantCount(%1)").arg(range), "summaryRegPart", "900"},
        {QStringLiteral("GetRegisteredNonParticipantCount(%1)").arg(range), "summaryRegNonPart",
         "300"},
        {attributeCall("BrowserType", "IE"), "summaryIEHits", "32767"},
        {attributeCall("BrowserType", "NS"), "summaryNetscapeHits", "2"},
        {attributeCall("JSVersion", "1.3"), "summaryJS13Hits", "3"},
        {attributeCall("ScreenDepth", "24"), "summary24DepthHits", "4"},
        {attributeCall("ScreenDepth", "32"), "summary32DepthHits", "5"},
        {QStringLiteral("GetDeploymentStatistic(%1, \"TotalPageViewTime\")").arg(range),
         "totalViewLength", "01:02:05"},
    };
}

void script(ZelTest::RecordingClient &client)
{
    client.statistics = {{QStringLiteral("TotalPageHits"), 20000},
                         {QStringLiteral("TotalPageViewTime"), 3725}};
    client.uniqueParticipants = 3000;
    client.registrantCount = 1200;
    client.registeredParticipants = 900;
    client.registeredNonParticipants = 300;
    client.attributeHits[{QStringLiteral("BrowserType"), QStringLiteral("IE")}] = 32767;
    client.attributeHits[{QStringLiteral("BrowserType"), QStringLiteral("NS")}] = 2;
    client.attributeHits[{QStringLiteral("JSVersion"), QStringLiteral("1.3")}] = 3;
    client.attributeHits[{QStringLiteral("ScreenDepth"), QStringLiteral("24")}] = 4;
    client.attributeHits[{QStringLiteral("ScreenDepth"), QStringLiteral("32")}] = 5;
}

} // namespace

/// Running a report.
class tst_StatsReport : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void asksForElevenFiguresAndTheCurrentTab();
    void showsEachFigureInItsBox();
    void saysThatDataAreLoadedMeanwhile();
    void showsEachFigureAsItArrives();
    void readsThePickersAfreshForEachFigure();
    void followsWhatAPersonTypesIntoAPicker();

    void aFailureKeepsTheFiguresSoFar_data() { addFigures(); }

    void aFailureKeepsTheFiguresSoFar();
    void aFailingListLeavesTheButtonDisabled();
    void anotherInitBringsTheButtonBack();

    void survivesBeingDestroyedInACall_data() { addFigures(); }

    void survivesBeingDestroyedInACall();
    void failsOnceTheClientIsGone();
    void writesHitsAsADecimalNumber_data();
    void writesHitsAsADecimalNumber();
    void aTimeTooLongIsAnOverflow();
    void keepsTheKeyboardOnTheButton();
    void reloadsOnlyTheTabShown();
    void enterInADialogPressesNothing();

private:
    static void addFigures();
};

void tst_StatsReport::addFigures()
{
    QTest::addColumn<int>("failing");
    for (int i = 0; i < figures().size(); ++i)
        QTest::newRow(figures().at(i).box) << i;
}

void tst_StatsReport::asksForElevenFiguresAndTheCurrentTab()
{
    StatsFixture f;
    f.load();
    f.click(f.run());
    QStringList expected;
    for (const Figure &figure : figures())
        expected << figure.call;
    expected << QStringLiteral("GetParticipants(%1)").arg(range);
    QCOMPARE(f.takeTrail(), expected);
}

void tst_StatsReport::showsEachFigureInItsBox()
{
    StatsFixture f;
    script(f.client);
    f.load();
    for (const Figure &figure : figures())
        QCOMPARE(f.box(figure.box), QLatin1String(figure.text));
}

void tst_StatsReport::saysThatDataAreLoadedMeanwhile()
{
    StatsFixture f;
    f.load();
    f.atCall = [&f](const QString &) {
        QCOMPARE(f.run().text(), QStringLiteral("Loading data..."));
        QVERIFY(!f.run().isEnabled());
    };
    f.click(f.run());
    QCOMPARE(f.takeTrail().size(), 12);
    QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
    QVERIFY(f.run().isEnabled());
}

void tst_StatsReport::showsEachFigureAsItArrives()
{
    StatsFixture f;
    script(f.client);
    QStringList filled;
    f.atCall = [&](const QString &) {
        int count = 0;
        for (const Figure &figure : figures())
            count += f.box(figure.box) == QLatin1String(figure.text) ? 1 : 0;
        filled << QString::number(count);
    };
    f.load();
    QCOMPARE(filled.join(u' '), QStringLiteral("0 1 2 3 4 5 6 7 8 9 10 11"));
}

void tst_StatsReport::readsThePickersAfreshForEachFigure()
{
    StatsFixture f;
    f.load();
    f.atCall = [&f](const QString &call) {
        if (call.startsWith(QLatin1String("GetUniqueParticipantCount")))
            f.child<QDateTimeEdit>("endDateTime").setDateTime(onNinth(19));
    };
    f.click(f.run());
    QVERIFY(f.trail.at(1).contains(QLatin1String("2007-01-09T18:00:00")));
    QVERIFY(f.trail.at(3).contains(QLatin1String("2007-01-09T19:00:00")));
    QVERIFY(f.trail.at(11).contains(QLatin1String("2007-01-09T19:00:00")));
}

void tst_StatsReport::followsWhatAPersonTypesIntoAPicker()
{
    StatsFixture f;
    f.load();
    auto &picker = f.child<QDateTimeEdit>("startDateTime");
    picker.setFocus();
    picker.setSelectedSection(QDateTimeEdit::YearSection);
    QTest::keyClicks(&picker, QStringLiteral("1907"));
    QCOMPARE(f.trail, QStringList());
    f.click(f.run());
    QCOMPARE(f.trail.constLast(), QStringLiteral("GetParticipants(\"d1\", \"1907-01-09T08:00:00\", "
                                                 "\"2007-01-09T18:00:00\")"));
}

void tst_StatsReport::aFailureKeepsTheFiguresSoFar()
{
    QFETCH(int, failing);
    StatsFixture f;
    f.load();
    QStringList former;
    for (const Figure &figure : figures())
        former << f.box(figure.box);
    script(f.client);
    int calls = 0;
    f.atCall = [&](const QString &call) {
        if (calls++ == failing)
            f.client.failNext(call.section(u'(', 0, 0), Zel::RuntimeError(6));
    };
    f.click(f.run());
    QCOMPARE(calls, failing + 1);
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 6"));
    for (int i = 0; i < figures().size(); ++i)
        QCOMPARE(f.box(figures().at(i).box),
                 i < failing ? QLatin1String(figures().at(i).text) : former.at(i));
    QCOMPARE(f.run().text(), QStringLiteral("Loading data..."));
    QVERIFY(!f.run().isEnabled());
    // The tabs have not been told to load again.
    f.atCall = nullptr;
    f.takeTrail();
    f.clickTab(Registrants);
    f.takeTrail();
    f.clickTab(Participants);
    QCOMPARE(f.trail, QStringList());
}

void tst_StatsReport::aFailingListLeavesTheButtonDisabled()
{
    StatsFixture f;
    f.client.participants = ZelTest::recordList<QXSC::ParticipantRecord>({participant(person(1))});
    f.load();
    QCOMPARE(f.list("participantList").count(), 1);
    f.client.failNext(QStringLiteral("GetParticipants"), Zel::RuntimeError(6));
    f.click(f.run());
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 6"));
    QCOMPARE(f.list("participantList").count(), 0);
    QCOMPARE(f.run().text(), QStringLiteral("Loading data..."));
    QVERIFY(!f.run().isEnabled());
}

void tst_StatsReport::anotherInitBringsTheButtonBack()
{
    StatsFixture f;
    script(f.client);
    f.client.failNext(QStringLiteral("GetRegistrantCount"), Zel::RuntimeError(6));
    f.init();
    QTRY_COMPARE(f.trail.value(f.trail.size() - 1), QStringLiteral("error 6"));
    QVERIFY(!f.run().isEnabled());
    f.load();
    QVERIFY(f.run().isEnabled());
    QCOMPARE(f.run().text(), QStringLiteral("Run New Report"));
    QCOMPARE(f.box("summaryReg"), QStringLiteral("1200"));
}

void tst_StatsReport::survivesBeingDestroyedInACall()
{
    QFETCH(int, failing);
    StatsFixture f;
    f.load();
    int calls = 0;
    f.atCall = [&](const QString &) {
        if (calls++ == failing)
            delete f.stats;
    };
    // Not by a click: the button that is clicked would be destroyed under the test's own hands.
    QMetaObject::invokeMethod(&f.timer(), "timeout", Qt::QueuedConnection);
    QTRY_VERIFY(!f.stats);
    QCOMPARE(calls, failing + 1);
}

void tst_StatsReport::failsOnceTheClientIsGone()
{
    StatsFixture f;
    auto client = std::make_unique<ZelTest::RecordingClient>();
    f.stats->Init(client.get(), QStringLiteral("d1"));
    int calls = 0;
    client->atCall = [&](const QString &) {
        if (++calls == 3)
            client.release()->deleteLater();
    };
    QTRY_COMPARE(calls, 12);
    QTRY_VERIFY(f.run().isEnabled());
    f.click(f.run());
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91")});
}

void tst_StatsReport::writesHitsAsADecimalNumber_data()
{
    QTest::addColumn<double>("hits");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0.0 << QStringLiteral("0");
    QTest::newRow("more than 16 bits") << 40000.0 << QStringLiteral("40000");
    QTest::newRow("more than 32 bits") << 123456789012.0 << QStringLiteral("123456789012");
    QTest::newRow("fraction") << 2.5 << QStringLiteral("2.5");
    QTest::newRow("tenths") << 0.1 + 0.2 << QStringLiteral("0.3");
}

void tst_StatsReport::writesHitsAsADecimalNumber()
{
    QFETCH(double, hits);
    QFETCH(QString, text);
    const ZelTest::LocaleFixture locale(QLocale(QStringLiteral("en_US")));
    StatsFixture f;
    f.client.statistics[QStringLiteral("TotalPageHits")] = hits;
    f.load();
    QCOMPARE(f.box("summaryTotalHits"), text);
}

void tst_StatsReport::aTimeTooLongIsAnOverflow()
{
    StatsFixture f;
    f.client.statistics[QStringLiteral("TotalPageViewTime")] = 32767.0 * 3600 + 3599;
    f.load();
    QCOMPARE(f.box("totalViewLength"), QStringLiteral("32767:59:59"));
    f.client.statistics[QStringLiteral("TotalPageViewTime")] = 32768.0 * 3600;
    f.click(f.run());
    QCOMPARE(f.trail.constLast(), QStringLiteral("error 6"));
    QCOMPARE(f.box("totalViewLength"), QStringLiteral("32767:59:59"));
    QVERIFY(!f.run().isEnabled());
}

void tst_StatsReport::keepsTheKeyboardOnTheButton()
{
    StatsFixture f;
    QVERIFY(QTest::qWaitForWindowActive(&f.form));
    f.load();
    f.run().setFocus();
    QTest::keyClick(&f.run(), Qt::Key_Space);
    QCOMPARE(f.takeTrail().size(), 12);
    QVERIFY(f.run().hasFocus());
}

void tst_StatsReport::reloadsOnlyTheTabShown()
{
    StatsFixture f;
    f.load();
    f.clickTab(Questions);
    f.takeTrail();
    f.click(f.run());
    QCOMPARE(f.takeOperations().mid(11), QStringList{QStringLiteral("GetQuestions")});
    f.clickTab(Participants);
    QCOMPARE(f.takeOperations(), QStringList{QStringLiteral("GetParticipants")});
}

void tst_StatsReport::enterInADialogPressesNothing()
{
    QDialog dialog;
    auto *stats = new ZelWebServiceControls::StatsControl(&dialog);
    for (const QPushButton *button : stats->findChildren<QPushButton *>())
        QVERIFY2(!button->autoDefault(), qPrintable(button->objectName()));
}

ZEL_TEST_MAIN(tst_StatsReport)
#include "tst_statsreport.moc"
