// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/projectrecord.h"
#include "tests/studio/runningstudio.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QTemporaryDir>

#include <csignal>
#include <memory>

using namespace StudioTesting;
using namespace WorkspaceFiles;

namespace {

/// The name of the theme that the project of this name was made from, as the workspace keeps it.
QStringList themesOf(const QString &path, const QString &project)
{
    QStringList names;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "look");
        database.setDatabaseName(path);
        if (!database.open())
            return {QStringLiteral("not open")};
        QSqlQuery query(database);
        query.prepare("SELECT t.name FROM project p JOIN theme t ON t.guid = p.theme_guid "
                      "WHERE p.name = ?");
        query.addBindValue(project);
        if (!query.exec())
            return {QStringLiteral("no answer")};
        while (query.next())
            names << query.value(0).toString();
    }
    QSqlDatabase::removeDatabase("look");
    return names;
}

void clickTheme(const RunningStudio &f, const QString &name)
{
    auto *themes = child<Zel::ListView>(*child(f.window, "newProjectFlow"), "ThemeListView");
    for (qsizetype row = 0; row < themes->count(); ++row) {
        if (themes->text(row) != name)
            continue;
        themes->ensureVisible(row);
        QTest::mouseClick(themes->viewport(), Qt::LeftButton, {}, themes->cellRect(row).center());
        return;
    }
    QFAIL(qPrintable(name));
}

QString selectedProject(const RunningStudio &f)
{
    return f.list->selectedRow() < 0 ? QString() : f.list->text(f.list->selectedRow());
}

} // namespace

/// Making a project over the real service and the sample content.
class TestNewProjectEndToEnd : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init()
    {
        TestCase::init();
        Studio::Settings().reset();
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(makeSample(workspace()));
    }

    void theNewProjectIsSelectedAndKeepsItsTheme()
    {
        {
            RunningStudio f(options());
            QVERIFY(f.isWorking());
            fillIn(f);
            click(f.window, "saveNewProject");
            QVERIFY(!f.isShown("errorBar"));
            QCOMPARE(selectedProject(f), QStringLiteral("Spring town hall"));
        }
        RunningStudio again(options());
        QVERIFY(again.isWorking());
        int found = 0;
        for (qsizetype row = 0; row < again.list->count(); ++row)
            found += again.list->text(row) == QLatin1String("Spring town hall") ? 1 : 0;
        QCOMPARE(found, 1);
        QCOMPARE(themesOf(workspace(), QStringLiteral("Spring town hall")),
                 QStringList{QStringLiteral("Town hall")});
    }

    void aServiceThatDiesLosesNothing()
    {
        RunningStudio f(options());
        QVERIFY(f.isWorking());
        fillIn(f);
        ::kill(f.process(), SIGKILL);
        QVERIFY(f.comes([&] { return !f.app.embeddedService()->isRunning(); }));
        click(f.window, "saveNewProject");
        QVERIFY(f.isShown("errorBar"));
        QCOMPARE(child<QLineEdit>(f.window, "newName")->text(), QStringLiteral("Spring town hall"));
        click(f.window, "errorRetry");
        QVERIFY(f.comes([&] { return selectedProject(f) == QLatin1String("Spring town hall"); }));
        QCOMPARE(themesOf(workspace(), QStringLiteral("Spring town hall")),
                 QStringList{QStringLiteral("Town hall")});
    }

private:
    static void fillIn(const RunningStudio &f)
    {
        click(f.window, "newProject");
        clickTheme(f, QStringLiteral("Town hall"));
        click(f.window, "toProjectForm"); // to the theme's record
        click(f.window, "toProjectForm");
        type(f.window, "newName", QStringLiteral("Spring town hall"));
    }

    QString workspace() const { return m_folder->filePath(QStringLiteral("sample.workspace")); }

    Studio::Options options() const
    {
        Studio::Options options;
        options.workspace = workspace();
        options.serviceProgram = serviceProgram();
        return options;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

ZEL_TEST_MAIN(TestNewProjectEndToEnd)
#include "tst_newprojectendtoend.moc"
