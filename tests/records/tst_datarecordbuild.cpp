// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "recordfixture.h"
#include "testsupport/testcase.h"

#include <QLabel>
#include <QPushButton>

using ZelTest::errorNumber;
using ZelWebServiceControls::DataRecordManager;
using ZelWebServiceControls::EntryLabels;

/// How a data record becomes a form.
class tst_DataRecordBuild : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m = std::make_unique<RecordFixture>();
    }

    void cleanup() { m.reset(); }

    void initOnlyKeepsWhatItIsGiven()
    {
        QCOMPARE(m->client.calls(), QStringList());
        QVERIFY(!m->manager->GetDataRecord());
        QCOMPARE(m->fields(), QStringList());
        QVERIFY(m->scroll()->isHidden());
    }

    void nothingHappensWithoutAClientOrTheme()
    {
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Title", "a")});
        m->client.takeCalls();
        m->manager->LoadThemeDataRecord(QString());
        QCOMPARE(m->client.calls(), QStringList());
        m->manager->Init(nullptr);
        m->manager->LoadThemeDataRecord("theme");
        QCOMPARE(m->client.calls(), QStringList());
        QCOMPARE(m->manager->GetDataRecord(), record);
        QCOMPARE(m->fields(), QStringList{"widget_Title"});
    }

    void aClientThatIsGoneIsNone()
    {
        auto client = std::make_unique<ZelTest::RecordingClient>();
        m->manager->Init(client.get());
        client.reset();
        m->manager->LoadThemeDataRecord("theme");
        QVERIFY(!m->manager->GetDataRecord());
    }

    void fetchesTheRecordOfTheTheme()
    {
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Title", "a")});
        QCOMPARE(m->client.calls(), QStringList{"GetThemeDataRecord(\"theme\")"});
        QCOMPARE(record, m->client.dataRecords["theme"]);
    }

    void aThemeWithoutRecordLeavesTheFormAndForgetsTheRecord()
    {
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Title", "a")});
        m->manager->LoadThemeDataRecord("another");
        QVERIFY(!m->manager->GetDataRecord());
        QVERIFY(!m->manager->GetDataRecordEntry("Title"));
        QCOMPARE(m->fields(), QStringList{"widget_Title"});
        // The form still shows values, but there is nothing to update.
        m->manager->SetDataRecordValue("Title", "b");
        QCOMPARE(m->value("widget_Title"), QString("b"));
        m->manager->UpdateDataRecord();
        QCOMPARE(record->entries->item(1)->value.text, QString("a"));
        QCOMPARE(m->manager->changedLabels(), QStringList());
        m->manager->rebuild();
        QCOMPARE(m->fields(), QStringList{"widget_Title"});
    }

    void aFailingServiceChangesNothing()
    {
        const QXSC::DataRecordPtr record = m->load({entry("TEXT", "Title", "a")});
        m->client.failNext("GetThemeDataRecord", Zel::RuntimeError(75));
        QCOMPARE(errorNumber([&] { m->manager->LoadThemeDataRecord("theme"); }), 75);
        QCOMPARE(m->manager->GetDataRecord(), record);
        QCOMPARE(m->fields(), QStringList{"widget_Title"});
    }

    void everyTypeGetsItsWidget()
    {
        m->load({entry("TEXT", "a"), entry("TEXTASSET", "b"), entry("TEXTAREA", "c"),
                 entry("CHECKBOX", "d"), entry("CUSTOM", "e")});
        const QStringList expected{"TextWidget", "TextAssetWidget", "TextAreaWidget",
                                   "CheckboxWidget", "CustomWidget"};
        QStringList classes;
        for (const char *name : {"widget_a", "widget_b", "widget_c", "widget_d", "widget_e"}) {
            QVERIFY(m->field(name)->isVisible());
            classes << QString::fromLatin1(m->field(name)->metaObject()->className()).mid(23);
        }
        QCOMPARE(classes, expected);
    }

    void otherTypesGetNone()
    {
        m->load({entry("text", "a"), entry("Text", "b"), entry("", "c"), entry("TEXT ", "d"),
                 entry("DATE", "e"), entry("TEXT", "f")});
        QCOMPARE(m->fields(), QStringList{"widget_f"});
        QCOMPARE(m->placeOf(m->field("widget_f")).top, 0.0);
    }

    void fieldsAreFilledFromTheEntry()
    {
        QXSC::DataRecordEntry asset = entry("TEXTASSET", "Logo", "logo.png");
        asset.value.guid = "guid-logo";
        QXSC::DataRecordEntry page = entry("CUSTOM", "Colours", "#123456");
        page.buttonText = "Choose";
        page.value.assetDependencies = "x,y";
        m->load({entry("TEXT", "Big Title", "Spring"), asset, entry("TEXTAREA", "Intro", "a\r\nb"),
                 entry("CHECKBOX", "Live", "true"), page});
        QCOMPARE(FieldTesting::text(m->field("widget_Big_Title"), "GetLabel"),
                 QString("Big Title"));
        QCOMPARE(m->value("widget_Big_Title"), QString("Spring"));
        QCOMPARE(m->value("widget_Logo"), QString("logo.png"));
        QCOMPARE(FieldTesting::text(m->field("widget_Logo"), "getGuid"), QString("guid-logo"));
        QCOMPARE(m->value("widget_Intro"), QString("a\r\nb"));
        QCOMPARE(m->value("widget_Live"), QString("True"));
        QCOMPARE(m->value("widget_Colours"), QString("#123456"));
        QCOMPARE(FieldTesting::text(m->field("widget_Colours"), "getAssetDependencies"),
                 QString("x,y"));
        QCOMPARE(
            FieldTesting::child<QPushButton>(m->field("widget_Colours"), "widgetButton")->text(),
            QString("Choose"));
    }

    void anAssetWithoutTextKeepsItsGuid()
    {
        QXSC::DataRecordEntry asset = entry("TEXTASSET", "Logo");
        asset.value.guid = "guid-logo";
        m->load({asset});
        QCOMPARE(FieldTesting::text(m->field("widget_Logo"), "getGuid"), QString("guid-logo"));
    }

    void blanksInNamesBecomeUnderscores()
    {
        m->load({entry("TEXT", "Intro text"), entry("TEXT", "  a  b "), entry("TEXT", "tab\there"),
                 entry("TEXT", "")});
        QCOMPARE(m->fields(), (QStringList{"widget_Intro_text", "widget___a__b_",
                                           "widget_tab\there", "widget_"}));
    }

    void aNameTwiceEndsTheBuild()
    {
        const int error = m->loadError({entry("TEXT", "Big Title", "a"), entry("TEXT", "Sub", "b"),
                                        entry("TEXT", "Big_Title", "c"), entry("TEXT", "Last")});
        QCOMPARE(error, 727);
        QCOMPARE(m->fields(), (QStringList{"widget_Big_Title", "widget_Sub"}));
        QCOMPARE(m->value("widget_Big_Title"), QString("a"));
        // The record is the new one all the same.
        QCOMPARE(m->manager->GetDataRecord()->entries->count(), 4);
    }

    void namesDifferInCase()
    {
        QCOMPARE(m->loadError({entry("TEXT", "Title"), entry("TEXT", "title")}), 0);
        QCOMPARE(m->fields().size(), 2);
    }

    void entriesWithoutFieldDoNotTakeNames()
    {
        QXSC::DataRecordEntry hidden = entry("TEXT", "Big Title");
        hidden.hidden = true;
        QCOMPARE(m->loadError({hidden, entry("DATE", "Big Title"), entry("TEXT", "Big_Title")}), 0);
    }

    void hiddenAndIgnoredEntriesGetNoField()
    {
        QXSC::DataRecordEntry hidden = entry("TEXT", "Hidden", "h");
        hidden.hidden = true;
        m->manager->Init(&m->client, std::make_shared<EntryLabels>(EntryLabels{"x", "Ignored"}));
        const QXSC::DataRecordPtr record =
            m->load({hidden, entry("TEXT", "Ignored", "i"), entry("TEXT", "ignored", "s")});
        QCOMPARE(m->fields(), QStringList{"widget_ignored"});
        FieldTesting::call(m->field("widget_ignored"), "setValue", {"t"});
        m->manager->UpdateDataRecord();
        QCOMPARE(record->entries->item(1)->value.text, QString("h"));
        QCOMPARE(record->entries->item(2)->value.text, QString("i"));
        QCOMPARE(record->entries->item(3)->value.text, QString("t"));
    }

    void labelColumnIsAsWideAsTheWidestLabel()
    {
        QXSC::DataRecordEntry hidden = entry("TEXT", "Far wider than all of the others");
        hidden.hidden = true;
        m->manager->Init(&m->client, std::make_shared<EntryLabels>(
                                         EntryLabels{"Just as wide as nobody would think"}));
        m->load({entry("TEXT", "a"), hidden, entry("TEXT", "Just as wide as nobody would think"),
                 entry("CHECKBOX", "A wide label")});
        const double expected = std::nearbyint(Zel::textWidthTwips("A wide label", m->manager));
        QVERIFY(expected > 500);
        for (const char *name : {"widget_a", "widget_A_wide_label"}) {
            QCOMPARE(FieldTesting::place(m->field(name), "widgetLabel").width, expected);
            QCOMPARE(FieldTesting::place(m->field(name), "widgetValue").left, expected + 150);
        }
    }

    void theWidestLabelIsSeenWhole()
    {
        for (const char *label : {"Subtitle of the event", "Intro", "Registration page", "Wwwwi"}) {
            m->load({entry("TEXT", label)});
            auto *shown =
                FieldTesting::child<QLabel>(m->field(m->fields().constFirst()), "widgetLabel");
            const QImage exact = shown->grab().toImage();
            // With room to spare it looks the same.
            shown->resize(shown->width() + 40, shown->height());
            const QImage roomy = shown->grab().toImage().copy(exact.rect());
            QCOMPARE(exact, roomy);
        }
    }

    void aLabelWithoutRoomIsCutWithDots()
    {
        m->load({entry("TEXT", "Subtitle of the event")});
        auto *shown =
            FieldTesting::child<QLabel>(m->field("widget_Subtitle_of_the_event"), "widgetLabel");
        const QImage whole = shown->grab().toImage();
        shown->resize(shown->width() - 20, shown->height());
        const QImage cut = shown->grab().toImage();
        QVERIFY(cut != whole.copy(cut.rect()));
        QCOMPARE(shown->text(), QString("Subtitle of the event"));
    }

    void unknownTypesWidenTheColumn()
    {
        m->load({entry("TEXT", "a"), entry("DATE", "Of an unknown type")});
        QCOMPARE(FieldTesting::place(m->field("widget_a"), "widgetLabel").width,
                 std::nearbyint(Zel::textWidthTwips("Of an unknown type", m->manager)));
    }

    void labelsTakeHalfOfTheFormAtMost()
    {
        m->size(4357, 5000); // the fields are 4002 wide
        m->load({entry("TEXT", QString(80, 'W'))});
        QCOMPARE(FieldTesting::place(m->field("widget_" + QString(80, 'W')), "widgetLabel").width,
                 2001.0);
        m->size(4358, 5000); // 4003: the half of 2001.5 goes to the even neighbour
        m->load({entry("TEXT", QString(80, 'W'))});
        QCOMPARE(FieldTesting::place(m->field("widget_" + QString(80, 'W')), "widgetLabel").width,
                 2002.0);
    }

    void withoutLabelsEveryFieldHasItsOwnColumn()
    {
        m->load({entry("TEXT", "", "a")});
        QCOMPARE(FieldTesting::place(m->field("widget_"), "widgetLabel").width,
                 std::nearbyint((8000 - 355) * 0.4));
    }

    void fieldsStandOnOneAnother()
    {
        m->load({entry("TEXT", "a"), entry("CHECKBOX", "b"), entry("TEXT", "c")});
        double top = 0;
        for (const char *name : {"widget_a", "widget_b", "widget_c"}) {
            const Zel::TwipsRect place = m->placeOf(m->field(name));
            QCOMPARE(place, (Zel::TwipsRect{0, top, 8000 - 355, 375}));
            top += 375;
        }
        QCOMPARE(m->placeOf(m->frame()).height, 1225.0);
    }

    void childrenFollowTheSizeOfTheControl()
    {
        m->size(8001.5, 4999.25);
        QCOMPARE(m->placeOf(m->container()), (Zel::TwipsRect{0, 0, 8001.5, 4999.25}));
        QCOMPARE(m->placeOf(m->frame()), (Zel::TwipsRect{0, 0, 7646.5, 4999.25}));
        const Zel::TwipsRect scroll = m->placeOf(m->scroll());
        QCOMPARE(scroll.left, 7746.5);
        QCOMPARE(scroll.height, 4999.25);
        QCOMPARE(m->frame()->parentWidget(), m->container());
    }

    void aResizeCutsTheFormUntilItIsBuiltAgain()
    {
        m->load({entry("TEXT", "a"), entry("TEXT", "b"), entry("TEXT", "c")});
        m->size(6000, 900);
        QCOMPARE(m->placeOf(m->frame()).height, 900.0);
        QCOMPARE(m->placeOf(m->field("widget_c")).width, 8000.0 - 355);
        QVERIFY(m->scroll()->isHidden());
        m->load({entry("TEXT", "a"), entry("TEXT", "b"), entry("TEXT", "c")});
        QCOMPARE(m->placeOf(m->frame()).height, 1225.0);
        QCOMPARE(m->placeOf(m->field("widget_c")).width, 6000.0 - 355);
        QVERIFY(!m->scroll()->isHidden());
    }

    void anotherRecordReplacesAllFields()
    {
        m->load({entry("TEXT", "a"), entry("TEXT", "b")});
        const QPointer<QWidget> former(m->field("widget_a"));
        m->load({entry("CHECKBOX", "a")});
        QVERIFY(!former);
        QCOMPARE(m->fields(), QStringList{"widget_a"});
    }

    void aRecordWithoutEntriesEmptiesTheForm()
    {
        m->load({entry("TEXT", "a")});
        m->load({});
        QCOMPARE(m->fields(), QStringList());
        QCOMPARE(m->placeOf(m->frame()).height, 100.0);
        QVERIFY(m->scroll()->isHidden());
        m->load({entry("TEXT", "a")});
        m->client.dataRecords["theme"] = std::make_shared<QXSC::DataRecord>();
        m->manager->LoadThemeDataRecord("theme");
        QCOMPARE(m->fields(), QStringList());
        QVERIFY(m->manager->GetDataRecord());
        QVERIFY(!m->manager->GetDataRecordEntry("a"));
        m->manager->UpdateDataRecord();
    }

    void anAbsentEntryIsAnError()
    {
        auto entries = std::make_shared<QXSC::DataRecordEntryCollection>();
        entries->add(std::make_shared<QXSC::DataRecordEntry>(entry("TEXT", "a")));
        entries->add(nullptr);
        auto record = std::make_shared<QXSC::DataRecord>();
        record->entries = entries;
        m->client.dataRecords["theme"] = record;
        QCOMPARE(errorNumber([&] { m->manager->LoadThemeDataRecord("theme"); }), 91);
        QVERIFY(!m->manager->GetDataRecordEntry("b"));
    }

    void eightySevenFieldsFitAndNotOneMore()
    {
        QCOMPARE(m->loadError(lines(87)), 0);
        QCOMPARE(m->fields().size(), 87);
        QCOMPARE(m->placeOf(m->frame()).height, 87 * 375.0 + 100);
        QCOMPARE(m->scroll()->Max(), 5000 - 87 * 375);

        m->load({entry("TEXT", "a")});
        QCOMPARE(m->loadError(lines(90)), 6);
        QCOMPARE(m->fields().size(), 88);
        // The one that failed has its label and place, and not its value.
        QCOMPARE(FieldTesting::text(m->field("widget_88"), "GetLabel"), QString("88"));
        QCOMPARE(m->placeOf(m->field("widget_88")).top, 87 * 375.0);
        QCOMPARE(m->value("widget_88"), QString());
        QCOMPARE(m->value("widget_87"), QString("value 87"));
        // Neither the scroll bar nor the frame was reached.
        QVERIFY(m->scroll()->isHidden());
        QCOMPARE(m->placeOf(m->frame()).height, 475.0);
    }

    void theFieldThatFailedIsStillWrittenBack()
    {
        QCOMPARE(m->loadError(lines(88)), 6);
        m->manager->UpdateDataRecord();
        QCOMPARE(m->manager->GetDataRecordEntry("87")->value.text, QString("value 87"));
        QCOMPARE(m->manager->GetDataRecordEntry("88")->value.text, QString());
    }

    void labelsWiderThan16BitsAreAnError()
    {
        QCOMPARE(m->loadError({entry("TEXT", "a"), entry("TEXT", QString(10000, 'x'))}), 6);
        QCOMPARE(m->fields(), QStringList());
        QXSC::DataRecordEntry hidden = entry("TEXT", QString(10000, 'x'));
        hidden.hidden = true;
        QCOMPARE(m->loadError({hidden, entry("TEXT", "a")}), 0);
    }

    void awkwardLabels_data()
    {
        QTest::addColumn<QString>("label");
        QTest::newRow("markup") << "<b>Title</b> &amp; <img src=x>";
        QTest::newRow("quotes") << "\"Title\" 'it'";
        QTest::newRow("tabs") << "a\tb\t\tc";
        QTest::newRow("right to left") << QString::fromUtf8("כותרת ראשית");
        QTest::newRow("ampersand") << "Cut & &paste";
        QTest::newRow("lines") << "a\r\nb";
        QTest::newRow("percent") << "%1 %2";
        QTest::newRow("no-break space") << QString("a\u00a0b");
    }

    void awkwardLabels()
    {
        QFETCH(QString, label);
        QXSC::DataRecordEntry page = entry("CUSTOM", label);
        for (const QXSC::DataRecordEntry &one :
             {entry("TEXT", label, "v"), entry("CHECKBOX", label), entry("TEXTAREA", label),
              entry("TEXTASSET", label), page}) {
            QCOMPARE(m->loadError({one}), 0);
            QCOMPARE(m->fields(), QStringList{"widget_" + QString(label).replace(' ', '_')});
            QCOMPARE(FieldTesting::text(m->field(m->fields().constFirst()), "GetLabel"), label);
            QCOMPARE(m->manager->GetDataRecordEntry(label)->type, one.type);
            m->manager->SetDataRecordValue(label, "TRUE");
            m->manager->UpdateDataRecord();
            QCOMPARE(m->manager->GetDataRecordEntry(label)->value.text.toUpper(), QString("TRUE"));
            m->form.grab();
        }
    }

    void fiveThousandEntries()
    {
        QList<QXSC::DataRecordEntry> entries;
        for (int i = 0; i < 5000; ++i) {
            entries << entry("TEXT", QString::number(i), "v");
            entries.last().hidden = i % 100 != 0;
        }
        QCOMPARE(m->loadError(entries), 0);
        QCOMPARE(m->fields().size(), 50);
        m->manager->UpdateDataRecord();
        QCOMPARE(m->manager->GetDataRecordEntry("4999")->value.text, QString("v"));
        // All shown they do not fit; the form ends where it must.
        for (QXSC::DataRecordEntry &one : entries)
            one.hidden = false;
        QCOMPARE(m->loadError(entries), 6);
        QCOMPARE(m->fields().size(), 88);
    }

    void valuesBeyondAMegabyteTravel()
    {
        const QString big = QString("A line, \u00e9\r\n").repeated(120'000);
        const QXSC::DataRecordPtr record =
            m->load({entry("TEXTAREA", "a", big), entry("CUSTOM", "b", big)});
        m->manager->UpdateDataRecord();
        QVERIFY(record->entries->item(1)->value.text == big);
        QVERIFY(record->entries->item(2)->value.text == big);
    }

private:
    static QList<QXSC::DataRecordEntry> lines(int count)
    {
        QList<QXSC::DataRecordEntry> entries;
        for (int i = 1; i <= count; ++i)
            entries << entry("TEXT", QString::number(i), QString("value %1").arg(i));
        return entries;
    }

    std::unique_ptr<RecordFixture> m;
};

ZEL_TEST_MAIN(tst_DataRecordBuild)
#include "tst_datarecordbuild.moc"
