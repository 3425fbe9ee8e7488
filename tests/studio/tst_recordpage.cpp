// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "studio/recordconflict.h"
#include "studio/recordeditor.h"
#include "tests/studio/recordpagefixture.h"
#include "testsupport/testcase.h"

#include <QRadioButton>
#include <QScrollBar>

using QXSC::ServiceError;
using namespace StudioTesting;

namespace {

/// Does `act` with the conflict dialog that `open` brings up. Returns whether one came.
template <typename Open, typename Act>
bool inConflict(const Open &open, const Act &act)
{
    bool came = false;
    QTimer timer;
    timer.callOnTimeout([&] {
        auto *dialog =
            qobject_cast<Studio::RecordConflictDialog *>(QApplication::activeModalWidget());
        if (!dialog || came)
            return;
        came = true;
        act(*dialog);
    });
    timer.start(0);
    open();
    return came;
}

const auto saveChosen = [](QWidget &dialog) { click(dialog, "saveChosen"); };
const auto keepEditing = [](QWidget &dialog) { click(dialog, "keepEditing"); };

} // namespace

/// Editing the records of themes in Studio.
class TestRecordPage : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void aThemeIsToBeChosenFirst()
    {
        RecordPageFixture f;
        QVERIFY(!f.isEnabled("editRecord"));
        f.choose("Stage");
        QVERIFY(f.isEnabled("editRecord"));
        QCOMPARE(f.text("recordChoice"), QStringLiteral("Theme: Stage"));
        f.client.takeCalls();
        press(Qt::Key_Return);
        QCOMPARE(f.client.takeCalls(), QStringList{"GetThemeDataRecord(\"guid of Stage\")"});
        QCOMPARE(f.text("recordTheme"), QStringLiteral("Stage"));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Spring"));
        QCOMPARE(QApplication::focusWidget(), &f.box("Title"));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("No changes"));
        QVERIFY(!f.isEnabled("saveRecord"));
        QVERIFY(!f.isEnabled("revertRecord"));
    }

    void changesAreMarkedCountedAndSaved()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.client.takeCalls();
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        QTest::mouseClick(&f.box<QCheckBox>("Agenda"), Qt::LeftButton);
        QVERIFY(f.says("2 fields changed"));
        press(Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(f.client.takeCalls().size(), 1);
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
        QCOMPARE(f.stored(2), QStringLiteral("Good\r\nmorning"));
        QVERIFY(f.text("recordStatus").startsWith(QLatin1String("Saved at ")));
        QVERIFY(!f.isEnabled("saveRecord"));
        press(Qt::Key_S, Qt::ControlModifier);
        QVERIFY(f.client.takeCalls().isEmpty());
        // A second save is made against the version of the first.
        f.typeInto("Title", "Autumn");
        QVERIFY(f.says("1 field changed"));
        click(f.page, "saveRecord");
        QCOMPARE(f.stored(1), QStringLiteral("Autumn"));
        QVERIFY(!f.errors.hasProblem());
    }

    void typingBackIsNoChange()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        f.typeInto("Title", "Spring");
        QVERIFY(f.says("No changes"));
        QVERIFY(!f.isEnabled("saveRecord"));
    }

    void revertBringsBackWhatWasLoaded()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        QVERIFY(answerBox([&] { click(f.page, "revertRecord"); }, QMessageBox::Cancel));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
        QVERIFY(answerBox([&] { click(f.page, "revertRecord"); }, QMessageBox::Discard));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Spring"));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("No changes"));
        QCOMPARE(f.client.dataRecords["guid of Stage"]->version, 1);
    }

    void aThemeWithoutARecordSaysSo()
    {
        RecordPageFixture f;
        f.edit("Bare");
        QVERIFY(f.isShown("recordMessage"));
        QVERIFY(f.text("recordMessage").contains(QLatin1String("no record")));
        QVERIFY(!f.isEnabled("saveRecord"));
        click(f.page, "backToRecordThemes");
        f.edit("Hidden");
        QVERIFY(f.text("recordMessage").contains(QLatin1String("no field")));
        click(f.page, "backToRecordThemes");
        f.edit("Stage");
        QVERIFY(!f.isShown("recordMessage"));
        QCOMPARE(f.box("Place").text(), QStringLiteral("Boathouse"));
    }

    void aRecordThatCannotBeLoadedIsLoadedByRetry()
    {
        RecordPageFixture f;
        f.client.failNext("GetThemeDataRecord",
                          ServiceError(ServiceError::Kind::Unavailable, "Out."));
        f.edit("Stage");
        QVERIFY(f.errors.canRetry());
        QVERIFY(f.text("recordMessage").contains(QLatin1String("could not be loaded")));
        QVERIFY(!f.isEnabled("saveRecord"));
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.box("Title").text(), QStringLiteral("Spring"));
    }

    void aRecordThatCannotBeBuiltCannotBeSaved()
    {
        RecordPageFixture f;
        f.client.dataRecords["guid of Stage"] = ZelTest::dataRecord(
            {recordField("TEXT", "Big Title", "1"), recordField("TEXT", "Big_Title", "2")});
        f.edit("Stage");
        QVERIFY(f.errors.hasProblem());
        QVERIFY(!f.form().isEnabled());
        QVERIFY(!f.isEnabled("saveRecord"));
        f.client.takeCalls();
        press(Qt::Key_S, Qt::ControlModifier);
        QVERIFY(f.client.takeCalls().isEmpty());
        QVERIFY(!f.page.holdsChanges());
    }

    void whatCannotBeSavedStays()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        f.client.failNext("saveThemeDataRecord",
                          ServiceError(ServiceError::Kind::ConnectionLost, "Gone."));
        click(f.page, "saveRecord");
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("1 field changed"));
        f.errors.retry();
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
    }

    void aRefusalWithoutTheNewerRecordIsToldAndLosesNothing()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        f.client.answersNoRecord = true;
        f.client.recordSave = {false, 4, nullptr};
        QVERIFY(f.says("1 field changed"));
        click(f.page, "saveRecord");
        QVERIFY(f.errors.hasProblem());
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
    }

    void aRecordThatMovedOnTheServerIsDecidedFieldByField()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        f.typeInto("Place", "Pier");
        QVERIFY(f.says("2 fields changed"));
        f.saveElsewhere(1, "Winter");
        f.saveElsewhere(4, "Harbour");
        f.saveElsewhere(3, "False");
        QVERIFY(inConflict([&] { click(f.page, "saveRecord"); },
                           [&](QWidget &dialog) {
                               // Title, Agenda, Place, in the record's order.
                               QVERIFY(child<QRadioButton>(dialog, "mine_0")->isChecked());
                               QVERIFY(child<QRadioButton>(dialog, "theirs_1")->isChecked());
                               QTest::mouseClick(child(dialog, "theirs_2"), Qt::LeftButton);
                               saveChosen(dialog);
                           }));
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
        QCOMPARE(f.stored(3), QStringLiteral("False"));
        QCOMPARE(f.stored(4), QStringLiteral("Harbour"));
        QCOMPARE(f.box("Place").text(), QStringLiteral("Harbour"));
        QVERIFY(!f.box<QCheckBox>("Agenda").isChecked());
        QVERIFY(f.text("recordStatus").startsWith(QLatin1String("Saved at ")));
        QVERIFY(f.drafts.waiting().isEmpty());
    }

    void cancellingTheDecisionSavesNothing()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        f.saveElsewhere(1, "Winter");
        QVERIFY(inConflict([&] { click(f.page, "saveRecord"); }, keepEditing));
        QCOMPARE(f.stored(1), QStringLiteral("Winter"));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("1 field changed"));
        QVERIFY(inConflict([&] { click(f.page, "saveRecord"); }, saveChosen));
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
    }

    void allOfTheirsLeavesNothingToSave()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        f.saveElsewhere(1, "Winter");
        f.client.takeCalls();
        QVERIFY(inConflict([&] { click(f.page, "saveRecord"); },
                           [](QWidget &dialog) {
                               click(dialog, "allMine");
                               click(dialog, "allTheirs");
                               saveChosen(dialog);
                           }));
        QCOMPARE(f.client.takeCalls().size(), 1);
        QCOMPARE(f.box("Title").text(), QStringLiteral("Winter"));
        QVERIFY(!f.isEnabled("saveRecord"));
    }

    void anEarlierSaveWhoseAnswerWasLostCounts()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        f.saveElsewhere(1, "Summer");
        click(f.page, "saveRecord");
        QVERIFY(!f.errors.hasProblem());
        QVERIFY(f.text("recordStatus").startsWith(QLatin1String("Saved at ")));
        f.typeInto("Title", "Autumn");
        QVERIFY(f.says("1 field changed"));
        click(f.page, "saveRecord");
        QCOMPARE(f.stored(1), QStringLiteral("Autumn"));
    }

    void leavingWithChangesAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("leaves");
        QTest::addColumn<QString>("stored");
        QTest::newRow("save") << int(QMessageBox::Save) << true << "Summer";
        QTest::newRow("discard") << int(QMessageBox::Discard) << true << "Spring";
        QTest::newRow("keep editing") << int(QMessageBox::Cancel) << false << "Spring";
    }

    void leavingWithChangesAsks()
    {
        QFETCH(int, answer);
        QFETCH(bool, leaves);
        QFETCH(QString, stored);
        RecordPageFixture f;
        f.edit("Stage");
        QVERIFY(f.page.mayLeave());
        f.typeInto("Title", "Summer");
        QVERIFY(answerBox([&] { click(f.page, "backToRecordThemes"); },
                          QMessageBox::StandardButton(answer)));
        QCOMPARE(f.isShown("ThemeListView"), leaves);
        QCOMPARE(f.stored(1), stored);
        QTest::qWait(700);
        f.page.leave();
        QCOMPARE(f.drafts.waiting().isEmpty(), leaves);
    }

    void aSaveThatFailsWhileLeavingStays()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        f.client.failNext("saveThemeDataRecord",
                          ServiceError(ServiceError::Kind::Refused, "Not yours."));
        QVERIFY(answerBox([&] { press(Qt::Key_Escape); }, QMessageBox::Save));
        QVERIFY(f.errors.hasProblem());
        QVERIFY(!f.isShown("ThemeListView"));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
    }

    void aDraftSurvivesAndIsGoneOnWith()
    {
        QTemporaryDir kept;
        {
            RecordPageFixture f;
            f.edit("Stage");
            f.typeInto("Title", "Summer");
            QVERIFY(QTest::qWaitFor([&] { return QDir(f.folder.path()).count() > 2; }));
            QVERIFY(f.drafts.waiting().isEmpty()); // it is being edited
            QVERIFY(QTest::qWaitFor(
                [&] { return !QDir(f.folder.path()).entryList({"*.json"}).isEmpty(); }));
            const QStringList files = QDir(f.folder.path()).entryList({"*.json"});
            QCOMPARE(files.size(), 1);
            QVERIFY(QFile::copy(f.folder.filePath(files.at(0)), kept.filePath(files.at(0))));
        }
        RecordPageFixture f;
        const QStringList files = QDir(kept.path()).entryList({"*.json"});
        QVERIFY(QFile::copy(kept.filePath(files.at(0)), f.folder.filePath(files.at(0))));
        const QList<Studio::RecordDraft> waiting = f.drafts.waiting();
        QCOMPARE(waiting.size(), 1);
        QCOMPARE(waiting.at(0).themeName, QStringLiteral("Stage"));
        f.errors.attempt([&] { f.page.resume(waiting.at(0)); });
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("1 field changed"));
        QVERIFY(f.drafts.waiting().isEmpty());
        click(f.page, "saveRecord");
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
        f.page.leave();
        QVERIFY(f.drafts.waiting().isEmpty());
    }

    void aDraftOlderThanTheServersRecordIsDecided()
    {
        RecordPageFixture f;
        QCOMPARE(f.drafts.begin()->keep(f.draftOfStage("Summer")), QString());
        f.saveElsewhere(1, "Winter");
        QVERIFY(
            inConflict([&] { f.errors.attempt([&] { f.page.resume(f.drafts.waiting().at(0)); }); },
                       keepEditing));
        QVERIFY(f.isShown("ThemeListView"));
        QCOMPARE(f.drafts.waiting().size(), 1);
        QVERIFY(
            inConflict([&] { f.errors.attempt([&] { f.page.resume(f.drafts.waiting().at(0)); }); },
                       saveChosen));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Summer"));
        QCOMPARE(f.stored(1), QStringLiteral("Winter"));
        click(f.page, "saveRecord");
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
        QVERIFY(!f.errors.hasProblem());
    }

    void aDraftGivenUpForTheServersValuesIsGone()
    {
        RecordPageFixture f;
        QCOMPARE(f.drafts.begin()->keep(f.draftOfStage("Summer")), QString());
        f.saveElsewhere(1, "Winter");
        QVERIFY(
            inConflict([&] { f.errors.attempt([&] { f.page.resume(f.drafts.waiting().at(0)); }); },
                       [](QWidget &dialog) {
                           click(dialog, "allTheirs");
                           saveChosen(dialog);
                       }));
        QCOMPARE(f.box("Title").text(), QStringLiteral("Winter"));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("No changes"));
        QVERIFY(f.drafts.waiting().isEmpty());
        QVERIFY(!f.errors.hasProblem());
    }

    void aDraftStaysWhoseOnlyChangeHasNoFieldAnyMore()
    {
        RecordPageFixture f;
        Studio::RecordDraft draft = f.draftOfStage("Summer");
        draft.entries[0].label = "Motto";
        QCOMPARE(f.drafts.begin()->keep(draft), QString());
        QVERIFY(
            inConflict([&] { f.errors.attempt([&] { f.page.resume(f.drafts.waiting().at(0)); }); },
                       saveChosen));
        QCOMPARE(f.text("recordStatus"), QStringLiteral("No changes"));
        QCOMPARE(f.drafts.waiting().size(), 1);
    }

    void aDraftOfAThemeWithoutARecordStays()
    {
        RecordPageFixture f;
        Studio::RecordDraft draft;
        draft.themeGuid = "guid of Bare";
        draft.themeName = "Bare";
        draft.kept = QDateTime::currentDateTimeUtc();
        draft.entries = Studio::draftEntries(*f.client.dataRecords["guid of Stage"]);
        QCOMPARE(f.drafts.begin()->keep(draft), QString());
        f.errors.attempt([&] { f.page.resume(f.drafts.waiting().at(0)); });
        QVERIFY(f.errors.problem().what.contains(QLatin1String("no record any more")));
        QVERIFY(f.isShown("recordMessage"));
        QCOMPARE(f.drafts.waiting().size(), 1);
    }

    void fieldsFollowTheHeightOfTheWindow()
    {
        RecordPageFixture f;
        QList<QXSC::DataRecordEntry> many;
        for (int i = 0; i < 60; ++i)
            many << recordField("TEXT", QStringLiteral("F%1").arg(i), QStringLiteral("x"));
        f.client.dataRecords["guid of Stage"] = ZelTest::dataRecord(many);
        f.edit("Stage");
        auto *bar = child<QScrollBar>(f.form(), "drVScroll");
        QVERIFY(bar->isVisible());
        f.page.resize(1200, 500);
        f.box("F59").setFocus();
        const auto isInView = [&] {
            const QRect shown = f.box("F59").visibleRegion().boundingRect();
            return shown.height() == f.box("F59").height();
        };
        QVERIFY(QTest::qWaitFor([&] {
            f.box("F0").setFocus();
            f.box("F59").setFocus();
            return isInView();
        }));
    }

    void aCheckBoxThatOnlySaysItOtherwiseIsNoChange()
    {
        RecordPageFixture f;
        f.client.dataRecords["guid of Stage"]->entries->item(3)->value.text = "true";
        f.edit("Stage");
        f.typeInto("Title", "Summer");
        QVERIFY(f.says("1 field changed"));
        f.saveElsewhere(3, "False");
        QVERIFY(inConflict([&] { click(f.page, "saveRecord"); },
                           [](QWidget &dialog) {
                               // Title was changed here, the box by somebody else alone.
                               QVERIFY(child<QRadioButton>(dialog, "theirs_1")->isChecked());
                               saveChosen(dialog);
                           }));
        QCOMPARE(f.stored(3), QStringLiteral("False"));
        QCOMPARE(f.stored(1), QStringLiteral("Summer"));
    }

    void aDraftWhoseRecordCannotBeLoadedStays()
    {
        RecordPageFixture f;
        Studio::RecordDraft draft;
        draft.themeGuid = "guid of Stage";
        draft.themeName = "Stage";
        draft.kept = QDateTime::currentDateTimeUtc();
        draft.entries = Studio::draftEntries(*f.client.dataRecords["guid of Stage"]);
        QCOMPARE(f.drafts.begin()->keep(draft), QString());
        f.client.failNext("GetThemeDataRecord",
                          ServiceError(ServiceError::Kind::Unavailable, "Out."));
        f.errors.attempt([&] { f.page.resume(f.drafts.waiting().at(0)); });
        QVERIFY(f.errors.hasProblem());
        QCOMPARE(f.drafts.waiting().size(), 1);
    }

    void fieldsFollowTheWindowAndKeepWhatWasTyped()
    {
        RecordPageFixture f;
        f.edit("Stage");
        f.typeInto("Place", "Pier");
        QVERIFY(f.says("1 field changed"));
        f.box("Place").setCursorPosition(2);
        const int before = f.box("Title").width();
        f.page.resize(800, 700);
        QVERIFY(QTest::qWaitFor([&] { return f.box("Title").width() < before; }));
        QCOMPARE(f.box("Place").text(), QStringLiteral("Pier"));
        QCOMPARE(QApplication::focusWidget(), &f.box("Place"));
        QCOMPARE(f.box("Place").cursorPosition(), 2);
        QCOMPARE(f.text("recordStatus"), QStringLiteral("1 field changed"));
        QVERIFY(f.isEnabled("saveRecord"));
    }

    void aDraftThatCannotBeKeptIsSaid()
    {
        RecordPageFixture f;
        f.edit("Stage");
        QVERIFY(f.folder.remove());
        QFile inTheWay(f.folder.path());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        f.typeInto("Title", "Summer");
        QVERIFY(QTest::qWaitFor(
            [&] { return f.text("recordStatus").startsWith(QLatin1String("Save soon")); }));
        inTheWay.remove();
    }
};

ZEL_TEST_MAIN(TestRecordPage)
#include "tst_recordpage.moc"
