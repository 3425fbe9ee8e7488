// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/recordmerge.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include <QTest>

using Changed = Studio::FieldConflict::Changed;
using Studio::RecordDraft;

namespace {

QXSC::DataRecordEntry field(const QString &label, const QString &text,
                            const QString &type = QStringLiteral("TEXT"))
{
    QXSC::DataRecordEntry entry;
    entry.label = label;
    entry.type = type;
    entry.value.text = text;
    return entry;
}

RecordDraft::Entry edited(const QString &label, const QString &loaded, const QString &value,
                          const QString &type = QStringLiteral("TEXT"))
{
    return {label, type, {loaded, {}, {}}, {value, {}, {}}};
}

} // namespace

/// What differs between a record as it was edited and the one on the server.
class TestRecordMerge : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void equalRecordsHaveNoConflict()
    {
        const auto record = ZelTest::dataRecord({field("A", "1"), field("B", "2")});
        QVERIFY(Studio::conflictsBetween(Studio::draftEntries(*record), *record).isEmpty());
    }

    void theSameChangeOnBothSidesIsNoConflict()
    {
        const auto record = ZelTest::dataRecord({field("A", "new")});
        QVERIFY(Studio::conflictsBetween({edited("A", "old", "new")}, *record).isEmpty());
    }

    void whoChangedAFieldIsTold()
    {
        const auto server =
            ZelTest::dataRecord({field("Mine", "m"), field("Theirs", "t2"), field("Both", "b2")});
        const auto conflicts = Studio::conflictsBetween(
            {edited("Mine", "m", "m1"), edited("Theirs", "t", "t"), edited("Both", "b", "b1")},
            *server);
        QCOMPARE(conflicts.size(), 3);
        QCOMPARE(conflicts.at(0).changed, Changed::Here);
        QVERIFY(conflicts.at(0).keepsMine);
        QCOMPARE(conflicts.at(1).changed, Changed::OnServer);
        QVERIFY(!conflicts.at(1).keepsMine);
        QCOMPARE(conflicts.at(1).theirs.text, QStringLiteral("t2"));
        QCOMPARE(conflicts.at(2).changed, Changed::BothSides);
        QVERIFY(conflicts.at(2).keepsMine);
    }

    void equalLabelsAreToldApartByTypeAndOrder()
    {
        const auto server =
            ZelTest::dataRecord({field("A", "1"), field("A", "x", "TEXTAREA"), field("A", "2")});
        const auto conflicts = Studio::conflictsBetween(
            {edited("A", "1", "1"), edited("A", "2", "two"), edited("A", "x", "x", "TEXTAREA")},
            *server);
        QCOMPARE(conflicts.size(), 1);
        QCOMPARE(conflicts.at(0).position, 2);
        QCOMPARE(conflicts.at(0).mine.text, QStringLiteral("two"));
    }

    void aChangedFieldThatIsGoneIsTold()
    {
        const auto server = ZelTest::dataRecord({field("New", "n")});
        const auto conflicts = Studio::conflictsBetween(
            {edited("Kept", "k", "k"), edited("Lost", "l", "typed")}, *server);
        QCOMPARE(conflicts.size(), 1);
        QCOMPARE(conflicts.at(0).changed, Changed::Gone);
        QCOMPARE(conflicts.at(0).mine.text, QStringLiteral("typed"));
        QVERIFY(!conflicts.at(0).keepsMine);
        Studio::applyChoices(conflicts, *server);
        QCOMPARE(server->entries->item(1)->value.text, QStringLiteral("n"));
    }

    void choicesAreWrittenIntoTheRecord()
    {
        const auto server = ZelTest::dataRecord({field("A", "a2"), field("B", "b2")});
        auto conflicts =
            Studio::conflictsBetween({edited("A", "a", "a1"), edited("B", "b", "b1")}, *server);
        conflicts[1].keepsMine = false;
        Studio::applyChoices(conflicts, *server);
        QCOMPARE(server->entries->item(1)->value.text, QStringLiteral("a1"));
        QCOMPARE(server->entries->item(2)->value.text, QStringLiteral("b2"));
    }

    void assetsBehindEqualTextsCount()
    {
        auto mine = edited("Logo", "/a/1", "/a/1");
        mine.value.guid = QStringLiteral("other");
        const auto server = ZelTest::dataRecord({field("Logo", "/a/1")});
        QCOMPARE(Studio::conflictsBetween({mine}, *server).size(), 1);
    }
};

ZEL_TEST_MAIN(TestRecordMerge)
#include "tst_recordmerge.moc"
