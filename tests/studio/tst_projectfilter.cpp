// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "tests/studio/projectspagefixture.h"
#include "testsupport/testcase.h"

#include <QTest>

using namespace StudioTesting;

/// The filter line above the project list.
class TestProjectFilter : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Studio::Settings().reset();
    }

    void showsProjectsWithAllWords_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("count");
        QTest::newRow("by name") << "beta"
                                 << "Beta"
                                 << "1 of 4 projects";
        QTest::newRow("by description") << "river"
                                        << "Delta"
                                        << "1 of 4 projects";
        QTest::newRow("by author") << "maja"
                                   << "Alpha launch, Beta"
                                   << "2 of 4 projects";
        QTest::newRow("whatever the case") << "ALPHA"
                                           << "Alpha launch"
                                           << "1 of 4 projects";
        QTest::newRow("parts of words") << "amm"
                                        << "Gamma rays"
                                        << "1 of 4 projects";
        QTest::newRow("words in different places") << "maja first"
                                                   << "Alpha launch"
                                                   << "1 of 4 projects";
        QTest::newRow("order and blanks do not matter") << "  first   maja "
                                                        << "Alpha launch"
                                                        << "1 of 4 projects";
        QTest::newRow("all match") << "a"
                                   << "Delta, Alpha launch, Beta, Gamma rays"
                                   << "4 projects";
        QTest::newRow("nothing matches") << "first tomas"
                                         << ""
                                         << "0 of 4 projects";
        QTest::newRow("blanks alone are no filter") << "   "
                                                    << "Delta, Alpha launch, Beta, Gamma rays"
                                                    << "4 projects";
        QTest::newRow("no patterns") << "A.*a"
                                     << ""
                                     << "0 of 4 projects";
    }

    void showsProjectsWithAllWords()
    {
        QFETCH(const QString, typed);
        ProjectsPageFixture f;
        f.open();
        type(f.page, "projectFilter", typed);
        QTEST(f.names().join(QStringLiteral(", ")), "names");
        QTEST(f.text("projectCount"), "count");
        QVERIFY(f.client.calls().isEmpty());
    }

    void saysWhatDidNotMatch()
    {
        ProjectsPageFixture f;
        f.open();
        type(f.page, "projectFilter", QStringLiteral(" not there "));
        QCOMPARE(f.list->emptyText(), QStringLiteral("No project matches \"not there\""));
        type(f.page, "projectFilter", QString(200, QLatin1Char('q')));
        QVERIFY(f.list->emptyText().size() < 100);
    }

    void escClearsAndThenMeansSomethingElse()
    {
        ProjectsPageFixture f;
        f.open();
        type(f.page, "projectFilter", QStringLiteral("beta"));
        press(Qt::Key_Escape);
        QVERIFY(child<QLineEdit>(f.page, "projectFilter")->text().isEmpty());
        QCOMPARE(f.names().size(), 4);
        QCOMPARE(f.text("projectCount"), QStringLiteral("4 projects"));

        // With nothing to clear the key goes on to the window.
        struct Listener : QObject
        {
            bool eventFilter(QObject *, QEvent *event) override
            {
                if (event->type() == QEvent::KeyPress)
                    keys << static_cast<QKeyEvent *>(event)->key();
                return false;
            }

            QList<int> keys;
        } listener;

        f.window.installEventFilter(&listener);
        press(Qt::Key_Escape);
        QCOMPARE(listener.keys, QList<int>{Qt::Key_Escape});
    }

    void ctrlFGoesToTheFilterAndSelectsIt()
    {
        ProjectsPageFixture f;
        f.open();
        type(f.page, "projectFilter", QStringLiteral("beta"));
        f.list->setFocus();
        press(Qt::Key_F, Qt::ControlModifier);
        auto *box = child<QLineEdit>(f.page, "projectFilter");
        QCOMPARE(QApplication::focusWidget(), box);
        QCOMPARE(box->selectedText(), QStringLiteral("beta"));
    }

    void survivesARefreshAndAnotherType()
    {
        ProjectsPageFixture f;
        f.open();
        type(f.page, "projectFilter", QStringLiteral("beta"));
        f.client.projects =
            ZelTest::projectList({makeProject("g-3", "Beta"), makeProject("g-5", "Beta two"),
                                  makeProject("g-6", "Eta")});
        click(f.page, "refreshButton");
        QCOMPARE(f.names(), (QStringList{"Beta", "Beta two"}));
        QCOMPARE(f.text("projectCount"), QStringLiteral("2 of 3 projects"));
        f.chooseType(QStringLiteral("Courses"));
        QCOMPARE(f.names(), (QStringList{"Beta", "Beta two"}));
        QCOMPARE(child<QLineEdit>(f.page, "projectFilter")->text(), QStringLiteral("beta"));
    }

    void aFailingRefreshKeepsTheFilter()
    {
        ProjectsPageFixture f;
        f.open();
        type(f.page, "projectFilter", QStringLiteral("beta"));
        f.client.failNext(
            QStringLiteral("getProjectList"),
            QXSC::ServiceError(QXSC::ServiceError::Kind::TimedOut, QStringLiteral("No.")));
        click(f.page, "refreshButton");
        QCOMPARE(f.names(), QStringList{QStringLiteral("Beta")});
        QCOMPARE(f.text("projectCount"), QStringLiteral("1 of 4 projects"));
    }

    void letsGoOfASelectionItHides()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickLine(0);
        type(f.page, "projectFilter", QStringLiteral("beta"));
        QVERIFY(!f.projects->GetSelectedProject());
        QVERIFY(child(f.page, "projectHint")->isVisible());
        f.clickLine(2);
        QCOMPARE(f.text("detailName"), QStringLiteral("Beta"));
    }

    void worksOnASortedList()
    {
        ProjectsPageFixture f;
        f.open();
        f.clickHeader(0); // descending first
        type(f.page, "projectFilter", QStringLiteral("maja"));
        QCOMPARE(f.names(), (QStringList{"Beta", "Alpha launch"}));
        f.clickHeader(0);
        QCOMPARE(f.names(), (QStringList{"Alpha launch", "Beta"}));
    }
};

ZEL_TEST_MAIN(TestProjectFilter)
#include "tst_projectfilter.moc"
