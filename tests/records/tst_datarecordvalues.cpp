// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "recordfixture.h"
#include "testsupport/testcase.h"

#include <QCheckBox>

using QXSC::DataRecordEntry;
using QXSC::DataRecordEntryCollection;

/// Values between the record, the form and the host.
class tst_DataRecordValues : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m = std::make_unique<RecordFixture>();
    }

    void cleanup() { m.reset(); }

    void findsTheFirstEntryOfExactlyThatLabel()
    {
        DataRecordEntry second = entry("TEXT", "Title", "second");
        second.hidden = true;
        m->load({entry("DATE", "Title", "first"), second, entry("TEXT", "title", "third")});
        QCOMPARE(m->manager->GetDataRecordEntry("Title")->value.text, QString("first"));
        QCOMPARE(m->manager->GetDataRecordEntry("title")->value.text, QString("third"));
        QVERIFY(!m->manager->GetDataRecordEntry("TITLE"));
        QVERIFY(!m->manager->GetDataRecordEntry(""));
    }

    void entriesAreThoseOfTheRecord()
    {
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Title")});
        QCOMPARE(m->manager->GetDataRecordEntry("Title"), record->entries->item(1));
    }

    void setsWhatAFieldShows()
    {
        const QXSC::DataRecordPtr record =
            m->load({entry("TEXT", "Big Title", "a"), entry("CHECKBOX", "Live")});
        m->manager->SetDataRecordValue("Big Title", "b");
        QCOMPARE(m->value("widget_Big_Title"), QString("b"));
        QCOMPARE(record->entries->item(1)->value.text, QString("a"));
        // The name counts, not the label.
        m->manager->SetDataRecordValue("Big_Title", "c");
        QCOMPARE(m->value("widget_Big_Title"), QString("c"));
        m->manager->SetDataRecordValue("Live", "TRUE");
        QVERIFY(qobject_cast<QCheckBox *>(m->box("widget_Live"))->isChecked());
    }

    void unknownLabelsAreIgnored()
    {
        m->manager->SetDataRecordValue("Title", "a");
        m->load({entry("TEXT", "Title", "a")});
        m->manager->SetDataRecordValue("title", "b");
        m->manager->SetDataRecordValue("", "b");
        m->manager->SetDataRecordValue("drFrame", "b");
        m->manager->SetDataRecordEntry(nullptr);
        m->manager->SetDataRecordEntry(std::make_shared<DataRecordEntry>(entry("TEXT", "x", "b")));
        QCOMPARE(m->value("widget_Title"), QString("a"));
    }

    void setsOnlyTheTextOfAnEntry()
    {
        DataRecordEntry asset = entry("TEXTASSET", "Logo", "a.png");
        asset.value.guid = "guid-a";
        DataRecordEntry page = entry("CUSTOM", "Colours", "#1");
        page.value.assetDependencies = "x";
        m->load({asset, page});
        asset.value = {"b.png", "guid-b", "y"};
        page.value = {"#2", "guid-b", "y"};
        m->manager->SetDataRecordEntry(std::make_shared<DataRecordEntry>(asset));
        m->manager->SetDataRecordEntry(std::make_shared<DataRecordEntry>(page));
        QCOMPARE(m->value("widget_Logo"), QString("b.png"));
        QCOMPARE(FieldTesting::text(m->field("widget_Logo"), "getGuid"), QString("guid-a"));
        QCOMPARE(m->value("widget_Colours"), QString("#2"));
        QCOMPARE(FieldTesting::text(m->field("widget_Colours"), "getAssetDependencies"),
                 QString("x"));
    }

    void populatesInOrder()
    {
        m->load({entry("TEXT", "a"), entry("TEXT", "b")});
        auto entries = std::make_shared<DataRecordEntryCollection>();
        for (const DataRecordEntry &one : {entry("TEXT", "a", "1"), entry("TEXT", "none", "2"),
                                           entry("TEXT", "b", "3"), entry("TEXT", "a", "4")})
            entries->add(std::make_shared<DataRecordEntry>(one));
        entries->add(nullptr);
        m->manager->populateDataRecord(entries);
        QCOMPARE(m->value("widget_a"), QString("4"));
        QCOMPARE(m->value("widget_b"), QString("3"));
        m->manager->populateDataRecord(nullptr);
        QCOMPARE(m->value("widget_a"), QString("4"));
    }

    void updatesTheRecordFromTheForm()
    {
        DataRecordEntry asset = entry("TEXTASSET", "Logo", "a.png");
        asset.value.guid = "guid-a";
        asset.value.assetDependencies = "kept";
        DataRecordEntry page = entry("CUSTOM", "Colours", "#1");
        page.value.guid = "kept";
        DataRecordEntry title = entry("TEXT", "Title", "a");
        title.value.guid = "kept";
        const QXSC::DataRecordPtr record =
            m->load({title, asset, page, entry("CHECKBOX", "Live", "yes")});
        QTest::keyClicks(m->box("widget_Title"), "x");
        m->manager->UpdateDataRecord();
        QCOMPARE(record->entries->item(1)->value, (QXSC::DataRecordValue{"xa", "kept", ""}));
        QCOMPARE(record->entries->item(2)->value,
                 (QXSC::DataRecordValue{"a.png", "guid-a", "kept"}));
        QCOMPARE(record->entries->item(3)->value, (QXSC::DataRecordValue{"#1", "kept", ""}));
        QCOMPARE(record->entries->item(4)->value.text, QString("False"));

        FieldTesting::call(m->field("widget_Logo"), "setGuid", {"guid-b"});
        FieldTesting::call(m->field("widget_Colours"), "SetAssetDependencies", {"x,y"});
        m->manager->UpdateDataRecord();
        QCOMPARE(record->entries->item(2)->value.guid, QString("guid-b"));
        QCOMPARE(record->entries->item(3)->value.assetDependencies, QString("x,y"));
    }

    void updatingWithoutARecordDoesNothing()
    {
        m->manager->UpdateDataRecord();
        QVERIFY(!m->manager->GetDataRecord());
    }

    void entriesWithoutAFieldOfTheirOwnAreNeverWritten()
    {
        DataRecordEntry hidden = entry("TEXT", "Big Title", "hidden");
        hidden.hidden = true;
        const QXSC::DataRecordPtr record = m->load(
            {hidden, entry("DATE", "Big Title", "unknown"), entry("TEXT", "Big_Title", "a")});
        m->manager->SetDataRecordValue("Big_Title", "b");
        m->manager->UpdateDataRecord();
        QStringList texts;
        for (const QXSC::DataRecordEntryPtr &one : *record->entries)
            texts << one->value.text;
        QCOMPARE(texts, (QStringList{"hidden", "unknown", "b"}));
    }

    void entriesBehindAFailureAreNeverWritten()
    {
        QCOMPARE(m->loadError({entry("TEXT", "Big Title", "a"), entry("TEXT", "Big_Title", "b"),
                               entry("TEXT", "Last", "c")}),
                 727);
        m->manager->SetDataRecordValue("Big_Title", "x");
        m->manager->UpdateDataRecord();
        QStringList texts;
        for (const QXSC::DataRecordEntryPtr &one : *m->manager->GetDataRecord()->entries)
            texts << one->value.text;
        QCOMPARE(texts, (QStringList{"x", "b", "c"}));
    }

    void aFieldThatIsGoneIsNotWritten()
    {
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Title", "a")});
        delete m->field("widget_Title");
        m->manager->SetDataRecordValue("Title", "b");
        m->manager->UpdateDataRecord();
        QCOMPARE(record->entries->item(1)->value.text, QString("a"));
        QCOMPARE(m->manager->changedLabels(), QStringList());
    }

    void aNewRecordIsAnotherRecord()
    {
        const QXSC::DataRecordPtr former = m->load({entry("TEXT", "Title", "a")});
        const QXSC::DataRecordPtr now = m->load({entry("TEXT", "Title", "b")});
        QVERIFY(former != now);
        m->manager->SetDataRecordValue("Title", "c");
        m->manager->UpdateDataRecord();
        QCOMPARE(former->entries->item(1)->value.text, QString("a"));
        QCOMPARE(now->entries->item(1)->value.text, QString("c"));
    }

private:
    std::unique_ptr<RecordFixture> m;
};

ZEL_TEST_MAIN(tst_DataRecordValues)
#include "tst_datarecordvalues.moc"
