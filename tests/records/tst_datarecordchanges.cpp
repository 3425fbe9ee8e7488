// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagedialog.h"
#include "recordfixture.h"
#include "testsupport/testcase.h"

#include <QCheckBox>

/// What a host can ask about changes in a form.
class tst_DataRecordChanges : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        m = std::make_unique<RecordFixture>();
        QXSC::DataRecordEntry asset = entry("TEXTASSET", "Logo");
        asset.value.guid = "guid";
        QXSC::DataRecordEntry hidden = entry("TEXT", "Hidden");
        hidden.hidden = true;
        m->load({entry("TEXT", "Title", "a"), entry("TEXTAREA", "Intro", "a\r\n\u00a0"),
                 entry("CHECKBOX", "Live", "yes"), entry("CHECKBOX", "On", "tRUE"), asset,
                 entry("CUSTOM", "Colours", "#1"), hidden});
    }

    void cleanup() { m.reset(); }

    void nothingIsChangedAtFirst()
    {
        QCOMPARE(m->manager->changedLabels(), QStringList());
        m->manager->UpdateDataRecord();
        QCOMPARE(m->manager->changedLabels(), QStringList());
    }

    void changesAreTold()
    {
        QTest::keyClicks(m->box("widget_Title"), "x");
        QTest::keyClicks(m->box("widget_Intro"), "x");
        FieldTesting::call(m->field("widget_Logo"), "setGuid", {"other"});
        FieldTesting::call(m->field("widget_Colours"), "SetAssetDependencies", {"x"});
        m->manager->SetDataRecordValue("Live", "True");
        const QStringList all{"Title", "Intro", "Live", "Logo", "Colours"};
        QCOMPARE(m->manager->changedLabels(), all);
        // Also once they are in the record, and in a form that was built again.
        m->manager->UpdateDataRecord();
        QCOMPARE(m->manager->changedLabels(), all);
        m->manager->rebuild();
        QCOMPARE(m->manager->changedLabels(), all);
        m->manager->SetDataRecordValue("Title", "a");
        QCOMPARE(m->manager->changedLabels().constFirst(), QString("Intro"));
    }

    void whatIsTakenBackIsNoChange()
    {
        QTest::keyClicks(m->box("widget_Intro"), "x");
        QCOMPARE(m->manager->changedLabels(), QStringList{"Intro"});
        QTest::keyClick(m->box("widget_Intro"), Qt::Key_Backspace);
        QCOMPARE(m->manager->changedLabels(), QStringList());
    }

    void acceptedChangesAreNoneAnyMore()
    {
        QTest::keyClicks(m->box("widget_Title"), "x");
        m->manager->UpdateDataRecord();
        m->manager->acceptChanges();
        QCOMPARE(m->manager->changedLabels(), QStringList());
        m->manager->SetDataRecordValue("Title", "a");
        QCOMPARE(m->manager->changedLabels(), QStringList{"Title"});
    }

    void aNewRecordHasNoChanges()
    {
        QTest::keyClicks(m->box("widget_Title"), "x");
        m->load({entry("TEXT", "Title", "b")});
        QCOMPARE(m->manager->changedLabels(), QStringList());
    }

    void editsAreToldWithTheirLabels()
    {
        QStringList edited;
        m->manager->setFieldEditedHandler([&edited](const QString &label) { edited << label; });
        m->manager->SetDataRecordValue("Title", "b");
        QCOMPARE(edited, QStringList());
        QTest::keyClicks(m->box("widget_Title"), "x");
        QTest::keyClicks(m->box("widget_Intro"), "x");
        QTest::keyClick(m->box("widget_Live"), Qt::Key_Space);
        QTest::keyClicks(m->box("widget_Logo"), "x");
        QCOMPARE(edited, (QStringList{"Title", "Intro", "Live", "Logo"}));
        edited.clear();
        m->manager->rebuild();
        QCOMPARE(edited, QStringList());
        QTest::keyClicks(m->box("widget_Title"), "y");
        QCOMPARE(edited, QStringList{"Title"});
    }

    void aPageThatIsAcceptedIsAnEdit()
    {
        QStringList edited;
        m->manager->setFieldEditedHandler([&edited](const QString &label) { edited << label; });
        auto *dialog = new PageDialog;
        ZelWebServiceControls::setComponentDialogMaker([dialog] { return dialog; });
        dialog->code = 1;
        dialog->value = "#2";
        QTest::mouseClick(FieldTesting::child(m->field("widget_Colours"), "widgetButton"),
                          Qt::LeftButton);
        ZelWebServiceControls::setComponentDialogMaker({});
        QCOMPARE(edited, QStringList{"Colours"});
        QCOMPARE(m->manager->changedLabels(), QStringList{"Colours"});
        m->manager->UpdateDataRecord();
        QCOMPARE(m->manager->GetDataRecordEntry("Colours")->value.text, QString("#2"));
    }

    void marksStandBesideTheValue()
    {
        const int before = childCount();
        const QImage unmarked = m->manager->grab().toImage();
        m->manager->setFieldMark("Title", true);
        QCOMPARE(childCount(), before + 1);
        QVERIFY(m->manager->grab().toImage() != unmarked);
        m->manager->setFieldMark("Title", true);
        QCOMPARE(childCount(), before + 1);
        const QWidget *mark = marks().constFirst();
        const QRect field = m->field("widget_Title")->geometry();
        const QRect label =
            FieldTesting::child(m->field("widget_Title"), "widgetLabel")->geometry();
        QVERIFY(field.contains(mark->geometry()));
        QVERIFY(mark->geometry().left() > label.right());
        QVERIFY(mark->geometry().right() < m->box("widget_Title")->geometry().left());
        m->manager->setFieldMark("Title", false);
        QCOMPARE(childCount(), before);
        QCOMPARE(m->manager->grab().toImage(), unmarked);
    }

    void marksSurviveRebuildingAndGoWithTheRecord()
    {
        m->manager->setFieldMark("Live", true);
        m->manager->rebuild();
        QCOMPARE(marks().size(), 1);
        QCOMPARE(Zel::twipsGeometry(marks().constFirst()).top,
                 Zel::twipsGeometry(m->field("widget_Live")).top + 15);
        m->manager->setFieldMark("Live", false);
        QCOMPARE(marks().size(), 0);
        m->manager->setFieldMark("Live", true);
        m->load({entry("TEXT", "Live")});
        QCOMPARE(marks().size(), 0);
        m->manager->rebuild();
        QCOMPARE(marks().size(), 0);
    }

    void marksOfNoFieldAreNone()
    {
        m->manager->setFieldMark("Hidden", true);
        m->manager->setFieldMark("none", true);
        m->manager->setFieldMark("none", false);
        QCOMPARE(marks().size(), 0);
    }

    void aMarkLetsClicksThrough()
    {
        m->manager->setFieldMark("Live", true);
        const QPoint at = marks().constFirst()->geometry().center();
        QCOMPARE(m->frame()->childAt(at), m->field("widget_Live"));
    }

private:
    /// The children of the frame that are no fields.
    QWidgetList marks() const
    {
        QWidgetList result;
        for (QWidget *child :
             m->frame()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (child->objectName().isEmpty())
                result << child;
        }
        return result;
    }

    int childCount() const { return int(m->fields().size()); }

    std::unique_ptr<RecordFixture> m;
};

ZEL_TEST_MAIN(tst_DataRecordChanges)
#include "tst_datarecordchanges.moc"
