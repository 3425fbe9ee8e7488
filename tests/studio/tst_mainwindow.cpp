// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"
#include "platform/widgets/listview.h"
#include "projects/projectlist.h"
#include "studio/appearance.h"
#include "studio/errorcenter.h"
#include "studio/mainwindow.h"
#include "studio/settings.h"
#include "studio/signinpage.h"
#include "studio/statisticspage.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/recordingclient.h"
#include "testsupport/testcase.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScreen>
#include <QTabBar>
#include <QTest>
#include <QToolButton>

using QXSC::ServiceError;
using Studio::Appearance;
using Studio::MainWindow;
using Studio::Settings;
using namespace StudioTesting;

namespace {

QXSC::ProjectRecord project(const QString &guid, const QString &name)
{
    QXSC::ProjectRecord record;
    record.guid = guid;
    record.name = name;
    return record;
}

ServiceError signedOut()
{
    return ServiceError(ServiceError::Kind::SignedOut,
                        QStringLiteral("Your session has ended. Sign in again."));
}

/// Studio's window over a client that lets everybody in.
struct Studios
{
    Studios()
        : window(client, client, errors, settings)
    {
        client.accounts = ZelTest::accountList(
            {{QStringLiteral("Brightwater Media"), 7}, {QStringLiteral("Harbour Learning"), 9}});
        client.types = {{QStringLiteral("webcast"), QStringLiteral("Webcasts")}};
        client.projects = ZelTest::projectList(
            {project("g-1", "Delta"), project("g-2", "Alpha"), project("g-3", "Beta")});
        window.signInPage()->open(&client);
        StudioTesting::show(window);
        list = child<Zel::ListView>(window, "projectList");
        projects = child<ZelWebServiceControls::ProjectList>(window, "projects");
    }

    void signIn(const QString &user = QStringLiteral("maja"), int account = 0)
    {
        type(window, "qxUserName", user);
        type(window, "qxPassword", QStringLiteral("pw"));
        click(window, "login");
        auto *accounts = child<QComboBox>(window, "accountsList");
        QTest::keyClick(accounts, Qt::Key_Home);
        for (int i = 0; i < account; ++i)
            QTest::keyClick(accounts, Qt::Key_Down);
        click(window, "selectAccount");
    }

    bool isShown(const char *name) const { return child(window, name)->isVisible(); }

    QStringList names() const
    {
        QStringList shown;
        for (qsizetype position = 0; position < list->filteredCount(); ++position)
            shown << list->text(list->rowAt(position));
        return shown;
    }

    void clickLine(qsizetype row)
    {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->cellRect(row).center());
    }

    void sortByName()
    {
        auto *header = list->findChild<QHeaderView *>();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(40, header->height() / 2));
    }

    Settings settings;
    Studio::ErrorCenter errors;
    ZelTest::RecordingClient client;
    MainWindow window;
    Zel::ListView *list;
    ZelWebServiceControls::ProjectList *projects;
};

} // namespace

class TestMainWindow : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Settings().reset();
        Studio::applyAppearance(Appearance::Light);
    }

    void startsAtTheSignInPage()
    {
        Studios f;
        QVERIFY(f.isShown("signInPage"));
        QVERIFY(!f.isShown("navigationRail"));
        QCOMPARE(f.window.windowTitle(), QStringLiteral("Studio"));
    }

    void aProjectOpensOnItsStatistics()
    {
        Studios f;
        f.signIn();
        f.clickLine(1);
        click(f.window, "openStatistics");
        QVERIFY(f.isShown("statisticsPage"));
        QVERIFY(
            child<QLabel>(f.window, "statisticsEmpty")->text().contains(QLatin1String("Alpha")));
        click(f.window, "chooseProject");
        QVERIFY(f.isShown("projectsPage"));
        f.clickLine(0);
        QTest::mouseDClick(f.list->viewport(), Qt::LeftButton, {}, f.list->cellRect(0).center());
        QVERIFY(f.isShown("statisticsPage"));
        QVERIFY(
            child<QLabel>(f.window, "statisticsEmpty")->text().contains(QLatin1String("Delta")));
    }

    void newQuestionsAreCountedOnTheRail()
    {
        Studios f;
        f.signIn();
        auto *page = child<Studio::StatisticsPage>(f.window, "statisticsPage");
        emit page->newQuestions(7);
        QVERIFY(f.isShown("railCount_3"));
        QCOMPARE(child<QLabel>(f.window, "railCount_3")->text(), QStringLiteral("7"));
        QCOMPARE(child<QToolButton>(f.window, "railPage_3")->accessibleDescription(),
                 QStringLiteral("7 new questions"));
        emit page->newQuestions(120);
        QCOMPARE(child<QLabel>(f.window, "railCount_3")->text(), QStringLiteral("99+"));
        emit page->newQuestions(0);
        QVERIFY(!f.isShown("railCount_3"));
    }

    void signingInOpensThePages()
    {
        Studios f;
        f.signIn();
        QVERIFY(!f.isShown("signInPage"));
        QVERIFY(f.isShown("projectsPage"));
        QCOMPARE(f.names(), (QStringList{"Delta", "Alpha", "Beta"}));
        QCOMPARE(f.window.windowTitle(), QStringLiteral("Brightwater Media – Studio"));
        auto *account = child<QToolButton>(f.window, "accountButton");
        QCOMPARE(account->text(), QStringLiteral("Brightwater\nMedia"));
        QCOMPARE(account->toolTip(), QStringLiteral("Brightwater Media, signed in as maja"));
        QVERIFY(child<QToolButton>(f.window, "railPage_0")->isChecked());
        // The keyboard is on the projects.
        QVERIFY(f.list->isAncestorOf(QApplication::focusWidget()));
        press(Qt::Key_Down);
        QVERIFY(f.projects->GetSelectedProject());
    }

    void aPageThatFailsToOpenSaysSo()
    {
        Studios f;
        f.client.failNext(QStringLiteral("getProjectList"),
                          ServiceError(ServiceError::Kind::TimedOut, QStringLiteral("No.")));
        f.signIn();
        QVERIFY(f.isShown("projectsPage"));
        QVERIFY(f.isShown("errorBar"));
        click(f.window, "errorRetry");
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(f.names().size(), 3);
    }

    void signingOutForgetsTheAccount()
    {
        Studios f;
        f.signIn();
        f.clickLine(0);
        f.client.takeCalls();
        chooseFromMenu(f.window, "accountButton", {QStringLiteral("signOut")});
        QCOMPARE(f.client.calls(), QStringList{QStringLiteral("signOut()")});
        QVERIFY(f.isShown("signInPage"));
        QVERIFY(f.isShown("login"));
        QCOMPARE(f.window.windowTitle(), QStringLiteral("Studio"));
        QCOMPARE(f.list->count(), 0);
        QVERIFY(child<QLabel>(f.window, "detailName")->text().isEmpty());
        QTRY_COMPARE(QApplication::focusWidget(), child(f.window, "qxPassword"));
    }

    void leavingTheAccountChoiceEndsTheSession()
    {
        Studios f;
        type(f.window, "qxUserName", QStringLiteral("maja"));
        type(f.window, "qxPassword", QStringLiteral("pw"));
        click(f.window, "login");
        f.client.takeCalls();
        click(f.window, "signInBack");
        QCOMPARE(f.client.calls(), QStringList{QStringLiteral("signOut()")});
    }

    void anEndedSessionLosesNothingOnScreen()
    {
        Studios f;
        f.signIn();
        f.sortByName(); // descending: Delta, Beta, Alpha
        type(f.window, "projectFilter", QStringLiteral("lta"));
        type(f.window, "projectFilter", QStringLiteral("a"));
        f.clickLine(2);
        f.client.failNext(QStringLiteral("getProjectList"), signedOut());
        click(f.window, "refreshButton");
        QVERIFY(f.isShown("errorSignIn"));
        QVERIFY(!f.isShown("errorRetry"));
        QCOMPARE(f.names(), (QStringList{"Delta", "Beta", "Alpha"}));

        click(f.window, "errorSignIn");
        QVERIFY(f.isShown("signInPage"));
        QVERIFY(!f.isShown("errorBar"));
        QCOMPARE(child<QLineEdit>(f.window, "qxUserName")->text(), QStringLiteral("maja"));
        QCOMPARE(QApplication::focusWidget(), child(f.window, "qxPassword"));
        f.signIn();
        QCOMPARE(f.names(), (QStringList{"Delta", "Beta", "Alpha"}));
        QCOMPARE(child<QLineEdit>(f.window, "projectFilter")->text(), QStringLiteral("a"));
        QCOMPARE(f.projects->GetSelectedProject()->guid, QStringLiteral("g-3"));
        QCOMPARE(child<QLabel>(f.window, "detailName")->text(), QStringLiteral("Beta"));
    }

    void nobodySeesWhatTheOneBeforeHadOnScreen_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<int>("account");
        QTest::addColumn<QString>("server");
        QTest::newRow("another person") << "tomas" << 0 << "";
        QTest::newRow("another account") << "maja" << 1 << "";
        QTest::newRow("another server") << "maja" << 0 << "other.example.org";
    }

    void nobodySeesWhatTheOneBeforeHadOnScreen()
    {
        QFETCH(const QString, user);
        QFETCH(const int, account);
        QFETCH(const QString, server);
        Studios f;
        f.signIn();
        f.clickLine(0);
        f.client.failNext(QStringLiteral("getProjectList"), signedOut());
        click(f.window, "refreshButton");
        click(f.window, "errorSignIn");
        f.client.failNext(QStringLiteral("getProjectList"),
                          ServiceError(ServiceError::Kind::TimedOut, QStringLiteral("No.")));
        type(f.window, "qxUrl", server);
        f.signIn(user, account);
        QVERIFY(f.isShown("errorRetry"));
        QCOMPARE(f.list->count(), 0);
        QVERIFY(!f.isShown("detailName"));
    }

    void escClosesTheStripFromAnywhere()
    {
        Studios f;
        f.signIn();
        f.client.failNext(QStringLiteral("getProjectList"),
                          ServiceError(ServiceError::Kind::TimedOut, QStringLiteral("No.")));
        click(f.window, "refreshButton");
        QVERIFY(f.isShown("errorBar"));
        f.list->setFocus();
        press(Qt::Key_Escape);
        QVERIFY(!f.isShown("errorBar"));
        QVERIFY(f.list->isAncestorOf(QApplication::focusWidget()));
        // Where Esc has a meaning of its own, that comes first.
        f.client.failNext(QStringLiteral("getProjectList"),
                          ServiceError(ServiceError::Kind::TimedOut, QStringLiteral("No.")));
        click(f.window, "refreshButton");
        type(f.window, "projectFilter", QStringLiteral("x"));
        press(Qt::Key_Escape);
        QVERIFY(f.isShown("errorBar"));
        press(Qt::Key_Escape);
        QVERIFY(!f.isShown("errorBar"));
    }

    void theRailOpensPagesByMouseAndKey()
    {
        Studios f;
        f.signIn();
        f.client.takeCalls();
        click(f.window, "railPage_0");
        QCOMPARE(f.client.takeCalls().constLast(), QStringLiteral("getProjectList(\"webcast\")"));
        press(Qt::Key_1, Qt::AltModifier);
        QTRY_COMPARE(f.client.calls().size(), 2);
        auto *button = child<QToolButton>(f.window, "railPage_0");
        QVERIFY(button->isChecked());
        QCOMPARE(button->toolTip(), QStringLiteral("Projects (Alt+1)"));
        QVERIFY(button->focusPolicy() & Qt::TabFocus);
    }

    void theAssetsAreLoadedWhenTheirPageIsFirstShown()
    {
        Studios f;
        f.client.assetFolders =
            ZelTest::assetFolderList({{0, 0, false, QString(), QStringLiteral("RWD")}});
        f.signIn();
        QVERIFY(f.client.calls().filter(QStringLiteral("Asset")).isEmpty());
        f.client.takeCalls();
        press(Qt::Key_2, Qt::AltModifier); // the button looks pressed for a moment first
        QTRY_VERIFY(f.isShown("assetsPage"));
        QCOMPARE(f.client.takeCalls(),
                 (QStringList{QStringLiteral("GetAssetFolders(0)"),
                              QStringLiteral("GetFolderAssets(0, \"\", \"\", 0, 0)")}));
        QVERIFY(child<QToolButton>(f.window, "railPage_1")->isChecked());
        QCOMPARE(QApplication::focusWidget(), child(f.window, "assetFolderView"));
        click(f.window, "railPage_0");
        click(f.window, "railPage_1");
        QVERIFY(f.client.calls().filter(QStringLiteral("Asset")).isEmpty());
    }

    void anEndedSessionLosesNothingOfTheAssets()
    {
        Studios f;
        f.client.assetFolders =
            ZelTest::assetFolderList({{0, 0, false, QString(), QStringLiteral("RWD")}});
        f.signIn();
        click(f.window, "railPage_1");
        auto *batch = child<QListWidget>(f.window, "batchList");
        batch->addItems({QStringLiteral("/a.png"), QStringLiteral("/b.png")});
        click(f.window, "newAsset");
        child<QTabBar>(f.window, "newAssetTabStrip")->setCurrentIndex(1);
        f.client.failNext(QStringLiteral("CreateAsset"), signedOut());
        click(f.window, "batchNewAssetSave");
        click(f.window, "errorSignIn");
        f.signIn();
        QVERIFY(f.isShown("assetsPage"));
        QCOMPARE(batch->count(), 2);
        f.client.takeCalls();
        click(f.window, "uploadRest");
        QCOMPARE(f.client.calls().filter(QStringLiteral("CreateAsset(")).size(), 2);
        // Somebody else finds nothing of it.
        batch->addItem(QStringLiteral("/c.png"));
        f.errors.report(signedOut());
        click(f.window, "errorSignIn");
        f.signIn(QStringLiteral("tomas"));
        QCOMPARE(batch->count(), 0);
    }

    void aLongAccountNameIsShortenedOnTheRail()
    {
        Studios f;
        const QString name =
            QStringLiteral("Internationale Vereinigung & ") + QString(5000, QLatin1Char('x'));
        f.client.accounts = ZelTest::accountList({{name, 7}});
        type(f.window, "qxUserName", QStringLiteral("maja"));
        click(f.window, "login");
        auto *rail = child(f.window, "navigationRail");
        auto *button = child<QToolButton>(f.window, "accountButton");
        QCOMPARE(button->text().count(QLatin1Char('\n')), 1);
        QVERIFY(button->sizeHint().width() <= rail->width());
        QCOMPARE(button->accessibleName(), QStringLiteral("Account ") + name);
        QVERIFY(f.window.minimumSizeHint().width() < 1400);
    }

    void theMenuSwitchesTheColoursAndRemembersThem()
    {
        Studios f;
        f.signIn();
        f.errors.report(signedOut());
        const auto textContrast = [&](const char *name) {
            const auto *label = child<QLabel>(f.window, name);
            // What a person reads it on is the window's ground.
            const QColor text = label->palette().color(QPalette::WindowText);
            const QColor ground = label->palette().color(QPalette::Window);
            return qAbs(text.lightness() - ground.lightness());
        };
        for (const Appearance appearance : {Appearance::Dark, Appearance::Light}) {
            const QString key = Studio::appearanceKey(appearance);
            chooseFromMenu(f.window, "accountButton",
                           {QStringLiteral("appearanceMenu"), QStringLiteral("appearance_") + key});
            QCoreApplication::processEvents(); // palettes are handed down by events
            const bool dark = appearance == Appearance::Dark;
            QCOMPARE(Studio::isDark(QApplication::palette()), dark);
            QCOMPARE(Settings().appearance(), appearance);
            for (const char *name : {"projectCount", "projectHint", "errorWhat", "errorAdvice"}) {
                QVERIFY2(textContrast(name) > 90,
                         qPrintable(QStringLiteral("%1 %2").arg(key, QLatin1String(name))));
                QCOMPARE(child(f.window, name)->palette().color(QPalette::WindowText).lightness() >
                             128,
                         dark);
            }
            for (const char *name : {"navigationRail", "errorBar", "signIn"})
                QVERIFY2(Studio::isDark(child(f.window, name)->palette()) == dark, name);
            QVERIFY(child<QAction>(f.window, QStringLiteral("appearance_") + key)->isChecked());
        }
        QCOMPARE(child<QAction>(f.window, QStringLiteral("appearance_dark"))->isChecked(), false);
    }

    void withoutADesktopTheSystemsColoursAreLight()
    {
        Studio::applyAppearance(Appearance::Dark);
        QVERIFY(Studio::isDark(QApplication::palette()));
        Studio::applyAppearance(Appearance::System);
        QVERIFY(!Studio::isDark(QApplication::palette()));
    }

    void theFirstWindowFitsTheScreen()
    {
        Studios f;
        QVERIFY(f.window.screen()->availableSize().width() >= f.window.width());
        QVERIFY(f.window.screen()->availableSize().height() >= f.window.height());
    }

    void theWindowComesBackWhereItWas()
    {
        QRect place;
        {
            Studios f;
            f.window.setGeometry(40, 30, 760, 500);
            place = f.window.geometry();
            f.window.close();
        }
        Studios f;
        QCOMPARE(f.window.geometry(), place);
    }

    void anUnreadableGeometryIsNone()
    {
        Settings().setWindowGeometry(QByteArray("\x01garbage"));
        Studios f;
        QVERIFY(f.window.width() > 600);
    }

    void closingRemembersThePages()
    {
        Studios f;
        f.signIn();
        f.list->setColumnWidth(0, 3333);
        f.window.close();
        QCOMPARE(Settings().projectColumnWidths().value(0), 3333.0);
    }

    void ctrlQCloses()
    {
        Studios f;
        QTest::keyClick(&f.window, Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!f.window.isVisible());
        Studios signedIn;
        signedIn.signIn();
        press(Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!signedIn.window.isVisible());
    }

    void everythingThatTakesTheKeyboardHasAName()
    {
        Studios f;
        const auto unnamed = [&] {
            QStringList found;
            for (QWidget *widget : f.window.findChildren<QWidget *>()) {
                if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus))
                    continue;
                QAccessibleInterface *face = QAccessible::queryAccessibleInterface(widget);
                if (!face || face->text(QAccessible::Name).isEmpty())
                    found << QStringLiteral("%1 \"%2\"")
                                 .arg(QLatin1String(widget->metaObject()->className()),
                                      widget->objectName());
            }
            return found.join(u' ');
        };
        QCOMPARE(unnamed(), QString());
        f.signIn();
        f.clickLine(0);
        f.errors.report(signedOut());
        click(f.window, "errorDetailsButton");
        QCOMPARE(unnamed(), QString());
        f.client.assetFolders =
            ZelTest::assetFolderList({{0, 0, false, QString(), QStringLiteral("RWD")}});
        click(f.window, "railPage_1");
        QCOMPARE(unnamed(), QString());
        click(f.window, "newAsset");
        QCOMPARE(unnamed(), QString());
        child<QTabBar>(f.window, "newAssetTabStrip")->setCurrentIndex(1);
        QCOMPARE(unnamed(), QString());
    }
};

ZEL_TEST_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
