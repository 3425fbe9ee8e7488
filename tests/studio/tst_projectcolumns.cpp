// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "platform/core/propertybag.h"
#include "platform/widgets/twips.h"
#include "studio/columnwidths.h"
#include "tests/studio/projectspagefixture.h"
#include "testsupport/testcase.h"

#include <QRegularExpression>
#include <QSettings>
#include <QTest>

using Studio::Settings;
using namespace StudioTesting;

namespace {

constexpr int CreatedColumn = 2;
constexpr int ModifiedColumn = 3;

void announceUnreadableColumns()
{
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^The remembered columns: ")));
}

} // namespace

/// The column switches and what is remembered of the columns.
class TestProjectColumns : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
    }

    void aSwitchHidesAndShowsItsColumnAndIsRemembered_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<int>("column");
        QTest::newRow("Created") << "ShowCreated" << CreatedColumn;
        QTest::newRow("Modified") << "ShowModiffied" << ModifiedColumn;
        QTest::newRow("Created By") << "ShowCreatedBy" << 4;
        QTest::newRow("Event Date") << "ShowEventDate" << 5;
    }

    void aSwitchHidesAndShowsItsColumnAndIsRemembered()
    {
        QFETCH(const QString, property);
        QFETCH(const int, column);
        {
            ProjectsPageFixture f;
            f.open();
            QVERIFY(f.list->columnWidth(column) > 0);
            chooseFromMenu(f.page, "columnsButton", {property});
            QCOMPARE(f.list->columnWidth(column), 0.0);
            QVERIFY(!f.projects->property(property.toLatin1().constData()).toBool());
            QVERIFY(f.client.calls().isEmpty());
        }
        {
            ProjectsPageFixture f;
            f.open();
            QCOMPARE(f.list->columnWidth(column), 0.0);
            chooseFromMenu(f.page, "columnsButton", {property});
            QVERIFY(f.list->columnWidth(column) > 0);
        }
        ProjectsPageFixture f;
        f.open();
        QVERIFY(f.list->columnWidth(column) > 0);
        QVERIFY(f.projects->property(property.toLatin1().constData()).toBool());
    }

    void aSwitchWritesABagAndReadsItBack()
    {
        ProjectsPageFixture f;
        f.open();
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowCreated")});
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowEventDate")});
        const Zel::PropertyBag bag = Zel::PropertyBag::fromText(*f.settings.projectListBag());
        QVERIFY(bag.problems().isEmpty());
        QCOMPARE(bag, f.projects->writePropertyBag());
        QCOMPARE(bag.read(QStringLiteral("ShowCreated")), QVariant(false));
        QCOMPARE(bag.read(QStringLiteral("ShowEventDate")), QVariant(false));
        QVERIFY(!bag.contains(QStringLiteral("ShowModiffied"))); // the default is not stored
    }

    void theMarkerSwitchLoadsTheListAgainAndIsRemembered()
    {
        {
            ProjectsPageFixture f;
            f.open();
            QVERIFY(f.projects->ShowPublished()); // Studio shows it unless told otherwise
            QVERIFY(f.list->smallIcon(1) > 0);
            f.clickLine(1);
            chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowPublished")});
            QCOMPARE(f.client.takeCalls(),
                     QStringList{QStringLiteral("getProjectList(\"webcast\")")});
            QCOMPARE(f.list->smallIcon(1), 0);
            QCOMPARE(f.projects->GetSelectedProject()->guid, QStringLiteral("g-2"));
        }
        {
            // Now the bag holds nothing; that is not the same as never having been switched.
            ProjectsPageFixture f;
            f.open();
            QVERIFY(!f.projects->ShowPublished());
            chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowPublished")});
            QVERIFY(f.list->smallIcon(1) > 0);
        }
        ProjectsPageFixture f;
        QVERIFY(f.projects->ShowPublished());
    }

    void theMarkerSwitchSurvivesAFailingLoad()
    {
        ProjectsPageFixture f;
        f.open();
        f.client.failNext(
            QStringLiteral("getProjectList"),
            QXSC::ServiceError(QXSC::ServiceError::Kind::TimedOut, QStringLiteral("No.")));
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowPublished")});
        QVERIFY(f.errors.canRetry());
        QCOMPARE(f.names().size(), 4);
        f.errors.retry();
        QVERIFY(!f.errors.hasProblem());
        QCOMPARE(f.list->smallIcon(1), 0);
    }

    void theMenuShowsHowThingsStand()
    {
        Settings().setProjectListBag(
            QStringLiteral("<properties version=\"1\"><property name=\"ShowCreated\" "
                           "type=\"boolean\" value=\"False\"/></properties>"));
        ProjectsPageFixture f;
        f.open();
        auto *menu = child<QToolButton>(f.page, "columnsButton")->menu();
        emit menu->aboutToShow();
        QStringList checked;
        for (const QAction *action : menu->actions()) {
            QVERIFY(action->isCheckable());
            if (action->isChecked())
                checked << action->objectName();
        }
        QCOMPARE(menu->actions().size(), 5);
        QCOMPARE(checked, (QStringList{"ShowModiffied", "ShowCreatedBy", "ShowEventDate"}));
    }

    void anUnreadableBagIsToldAndReplacedByTheDefaults_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("garbage") << "\x01\x02 not a bag";
        QTest::newRow("cut off") << "<properties version=\"1\"><property name=\"ShowCreated";
        QTest::newRow("wrong type")
            << "<properties version=\"1\"><property name=\"ShowCreated\" type=\"text\" "
               "value=\"banana\"/></properties>";
        QTest::newRow("huge number")
            << "{\"version\":1,\"properties\":[{\"name\":\"ShowCreated\",\"type\":\"integer\","
               "\"value\":1e300}]}";
    }

    void anUnreadableBagIsToldAndReplacedByTheDefaults()
    {
        QFETCH(const QString, text);
        Settings().setProjectListBag(text);
        announceUnreadableColumns();
        ProjectsPageFixture f;
        f.open();
        QVERIFY(!f.errors.hasProblem());
        for (int column = 0; column < f.list->columnCount(); ++column)
            QVERIFY(f.list->columnWidth(column) > 0);
        QVERIFY(!f.projects->ShowPublished());
        // The next switch repairs what is remembered.
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowModiffied")});
        QVERIFY(Zel::PropertyBag::fromText(*f.settings.projectListBag()).problems().isEmpty());
    }

    void datesFitTheirColumnsAndNothingIsWiderThanTheList()
    {
        ProjectsPageFixture f;
        f.page.resize(1500, 600);
        f.open();
        const QFontMetrics metrics(f.list->font());
        const int dpi = Zel::logicalDpi(f.list);
        for (const int column : {CreatedColumn, ModifiedColumn, 5})
            QVERIFY(Zel::pixelsFromTwips(f.list->columnWidth(column), dpi) >
                    metrics.horizontalAdvance(QStringLiteral("28 Dec 2028 22:58:58")));
        double whole = 0;
        for (int column = 0; column < f.list->columnCount(); ++column)
            whole += f.list->columnWidth(column);
        QVERIFY(Zel::pixelsFromTwips(whole, dpi) <= f.list->width());
    }

    void draggedWidthsAreRemembered()
    {
        double width = 0;
        {
            ProjectsPageFixture f;
            f.open();
            const double before = f.list->columnWidth(CreatedColumn);
            f.dragColumn(CreatedColumn, 40);
            width = f.list->columnWidth(CreatedColumn);
            QVERIFY(width > before);
            f.page.remember();
        }
        ProjectsPageFixture f;
        f.open();
        QCOMPARE(f.list->columnWidth(CreatedColumn), width);
    }

    void draggedWidthsSurviveASwitch()
    {
        ProjectsPageFixture f;
        f.open();
        f.dragColumn(CreatedColumn, 40);
        f.dragColumn(ModifiedColumn, 25);
        const double created = f.list->columnWidth(CreatedColumn);
        const double modified = f.list->columnWidth(ModifiedColumn);
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowModiffied")});
        QCOMPARE(f.list->columnWidth(CreatedColumn), created);
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowModiffied")});
        QCOMPARE(f.list->columnWidth(CreatedColumn), created);
        QCOMPARE(f.list->columnWidth(ModifiedColumn), modified);
    }

    void widthsNobodyDraggedAreNotRemembered()
    {
        ProjectsPageFixture f;
        f.open();
        f.page.remember();
        QVERIFY(f.settings.projectColumnWidths().isEmpty());
        // The columns left share the room of one that is switched off.
        const double name = f.list->columnWidth(0);
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowModiffied")});
        QVERIFY(f.list->columnWidth(0) > name);
    }

    void aDateColumnShownForTheFirstTimeIsWideEnough()
    {
        // It was hidden when the others were dragged.
        Settings().setProjectListBag(
            QStringLiteral("<properties version=\"1\"><property name=\"ShowCreated\" "
                           "type=\"boolean\" value=\"False\"/></properties>"));
        {
            ProjectsPageFixture f;
            f.open();
            f.dragColumn(0, 30);
            f.page.remember();
        }
        ProjectsPageFixture f;
        f.open();
        chooseFromMenu(f.page, "columnsButton", {QStringLiteral("ShowCreated")});
        QCOMPARE(f.list->columnWidth(CreatedColumn), f.list->columnWidth(ModifiedColumn));
    }

    void unusableWidthsAreNoWidths_data()
    {
        QTest::addColumn<QVariantList>("stored");
        QTest::newRow("too few") << QVariantList{1000, 1000};
        QTest::newRow("no numbers") << QVariantList{"a", "b", "c", "d", "e", "f"};
        QTest::newRow("none at all") << QVariantList{"nan", 1, 1, 1, 1, 1};
        QTest::newRow("infinite") << QVariantList{"inf", 1000, 1000, 1000, 1000, 1000};
        QTest::newRow("beyond any screen") << QVariantList{1e300, 1000, 1000, 1000, 1000, 1000};
        QTest::newRow("negative") << QVariantList{-500, 1000, 1000, 1000, 1000, 1000};
    }

    void unusableWidthsAreNoWidths()
    {
        QFETCH(const QVariantList, stored);
        QList<double> fresh;
        {
            ProjectsPageFixture f;
            f.open();
            fresh = Studio::columnWidths(*f.list, {});
        }
        QSettings raw(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("zel"),
                      QStringLiteral("studio"));
        raw.setValue(QStringLiteral("projects/columnWidths"), stored);
        raw.sync();
        ProjectsPageFixture f;
        f.open();
        QCOMPARE(Studio::columnWidths(*f.list, {}), fresh);
    }
};

ZEL_TEST_MAIN(TestProjectColumns)
#include "tst_projectcolumns.moc"
