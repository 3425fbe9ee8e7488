// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/mainwindow.h"
#include "studio/settings.h"
#include "studio/signinpage.h"
#include "tests/studio/recordpagefixture.h"
#include "testsupport/testcase.h"

#include <QComboBox>

using namespace StudioTesting;

namespace {

/// Studio's window over a client that lets everybody in and has one theme with a record.
struct Desk
{
    Desk()
    {
        ZelWebServiceControls::introduceFieldWidgets();
        client.accounts = ZelTest::accountList({{QStringLiteral("Brightwater Media"), 7}});
        client.types = {{QStringLiteral("webcast"), QStringLiteral("Webcasts")}};
        client.themeLists[QStringLiteral("getFullThemeList_Array")] =
            ZelTest::themeList({RecordPageFixture::makeTheme(QStringLiteral("Stage"))});
        client.dataRecords[QStringLiteral("guid of Stage")] =
            ZelTest::dataRecord(RecordPageFixture::fields());
        window.signInPage()->open(&client);
        StudioTesting::show(window);
    }

    void signIn(const QString &user = QStringLiteral("maja"))
    {
        type(window, "qxUserName", user);
        type(window, "qxPassword", QStringLiteral("pw"));
        click(window, "login");
    }

    bool isShown(const char *name) const { return child(window, name)->isVisible(); }

    QWidget &records() const { return *child(window, "recordPage"); }

    /// Edits the record's title.
    void edit(const QString &title) const
    {
        if (!isShown("recordPage"))
            click(window, "railPage_2");
        auto *themes = child<Zel::ListView>(records(), "ThemeListView");
        QTest::mouseClick(themes->viewport(), Qt::LeftButton, {}, themes->cellRect(0).center());
        click(records(), "editRecord");
        retitle(title);
    }

    QLineEdit &title() const
    {
        return *child<QLineEdit>(*child(records(), "widget_Title"), "widgetValue");
    }

    void retitle(const QString &text) const
    {
        title().setFocus();
        title().selectAll();
        QTest::keyClicks(&title(), text);
        QVERIFY(QTest::qWaitFor([this] { return child(records(), "saveRecord")->isEnabled(); }));
    }

    QString stored() const
    {
        return client.dataRecords[QStringLiteral("guid of Stage")]->entries->item(1)->value.text;
    }

    Studio::Settings settings;
    Studio::ErrorCenter errors;
    RecordClient client;
    Studio::MainWindow window{client, client, errors, settings};
};

} // namespace

/// What becomes of records that are not saved when a person turns to something else.
class TestRecordWindow : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Studio::Settings().reset();
        QDir(Studio::RecordDrafts::usualFolder()).removeRecursively();
    }

    void anotherPageAsks()
    {
        Desk f;
        f.signIn();
        f.edit(QStringLiteral("Summer"));
        QVERIFY(answerBox([&] { click(f.window, "railPage_1"); }, QMessageBox::Cancel));
        QVERIFY(f.isShown("recordPage"));
        QCOMPARE(f.title().text(), QStringLiteral("Summer"));
        QVERIFY(answerBox([&] { click(f.window, "railPage_1"); }, QMessageBox::Save));
        QVERIFY(f.isShown("assetsPage"));
        QCOMPARE(f.stored(), QStringLiteral("Summer"));
        // Without changes nobody is asked, and the record is still open.
        click(f.window, "railPage_2");
        QCOMPARE(f.title().text(), QStringLiteral("Summer"));
        click(f.window, "railPage_0");
        QVERIFY(f.isShown("projectsPage"));
    }

    void closingAsks()
    {
        Desk f;
        f.signIn();
        f.edit(QStringLiteral("Summer"));
        QVERIFY(answerBox([&] { f.window.close(); }, QMessageBox::Cancel));
        QVERIFY(f.window.isVisible());
        QVERIFY(answerBox([&] { f.window.close(); }, QMessageBox::Discard));
        QVERIFY(!f.window.isVisible());
        QCOMPARE(f.stored(), QStringLiteral("Spring"));
    }

    void closingAsksForAProjectThatIsBeingMade()
    {
        Desk f;
        f.signIn();
        click(f.window, "newProject");
        auto *themes =
            child<Zel::ListView>(*child(f.window, "newProjectFlow"), "ThemeListView");
        QTest::mouseClick(themes->viewport(), Qt::LeftButton, {}, themes->cellRect(0).center());
        click(f.window, "toProjectForm");
        click(f.window, "toProjectForm");
        type(f.window, "newName", QStringLiteral("Spring"));
        click(f.window, "railPage_1");
        QVERIFY(answerBox([&] { f.window.close(); }, QMessageBox::Cancel));
        QVERIFY(f.window.isVisible());
        QVERIFY(f.isShown("newProjectFlow"));
        QVERIFY(answerBox([&] { f.window.close(); }, QMessageBox::Discard));
        QVERIFY(!f.window.isVisible());
    }

    void signingOutAsks()
    {
        Desk f;
        f.signIn();
        f.edit(QStringLiteral("Summer"));
        QVERIFY(answerBox([&] { chooseFromMenu(f.window, "accountButton", {"signOut"}); },
                          QMessageBox::Cancel));
        QVERIFY(f.isShown("recordPage"));
        QVERIFY(answerBox([&] { chooseFromMenu(f.window, "accountButton", {"signOut"}); },
                          QMessageBox::Discard));
        QVERIFY(f.isShown("signInPage"));
        f.signIn();
        QVERIFY(!f.isShown("draftNotice"));
    }

    void aDraftIsOfferedAtTheNextStart()
    {
        {
            Desk f;
            f.signIn();
            f.edit(QStringLiteral("Summer"));
            QTest::qWait(900); // the draft is kept; then Studio ends without being asked
        }
        Desk other;
        other.signIn(QStringLiteral("tomas"));
        QVERIFY(!other.isShown("draftNotice"));
        Desk f;
        f.signIn();
        QVERIFY(f.isShown("draftNotice"));
        QVERIFY(child<QLabel>(f.window, "draftText")->text().contains(QLatin1String("Stage")));
        click(f.window, "goOnWithDraft");
        QVERIFY(!f.isShown("draftNotice"));
        QVERIFY(f.isShown("recordPage"));
        QCOMPARE(f.title().text(), QStringLiteral("Summer"));
        click(f.records(), "saveRecord");
        QCOMPARE(f.stored(), QStringLiteral("Summer"));
        Desk last;
        last.signIn();
        QVERIFY(!last.isShown("draftNotice"));
    }

    void aDraftCanWaitOrBeDiscarded()
    {
        {
            Desk f;
            f.signIn();
            f.edit(QStringLiteral("Summer"));
            QTest::qWait(900);
        }
        {
            Desk f;
            f.signIn();
            click(f.window, "draftLater");
            QVERIFY(!f.isShown("draftNotice"));
        }
        Desk f;
        f.signIn();
        QVERIFY(answerBox([&] { click(f.window, "discardDraft"); }, QMessageBox::Cancel));
        QVERIFY(f.isShown("draftNotice"));
        QVERIFY(answerBox([&] { click(f.window, "discardDraft"); }, QMessageBox::Discard));
        QVERIFY(!f.isShown("draftNotice"));
        Desk last;
        last.signIn();
        QVERIFY(!last.isShown("draftNotice"));
    }
};

ZEL_TEST_MAIN(TestRecordWindow)
#include "tst_recordwindow.moc"
