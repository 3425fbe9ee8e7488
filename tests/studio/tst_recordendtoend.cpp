// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/datarecordmanager.h"
#include "tests/studio/runningstudio.h"
#include "testsupport/testcase.h"

#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <csignal>

using namespace StudioTesting;
using namespace WorkspaceFiles;

namespace {

const QString themeName = QStringLiteral("Town hall");

/// The values of the theme's record in the database, "label=text", as imported or as saved.
QStringList recordIn(const QString &path, bool edited)
{
    QStringList values;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "look");
        database.setDatabaseName(path);
        if (!database.open())
            return {QStringLiteral("not open")};
        QSqlQuery query(database);
        query.prepare("SELECT e.label, e.value_text FROM data_record_entry e JOIN theme t "
                      "ON t.guid = e.theme_guid WHERE t.name = ? AND e.edited = ? ORDER BY e.pos");
        query.addBindValue(themeName);
        query.addBindValue(edited);
        if (!query.exec())
            return {QStringLiteral("no answer")};
        while (query.next())
            values << query.value(0).toString() + QLatin1Char('=') + query.value(1).toString();
    }
    QSqlDatabase::removeDatabase("look");
    return values;
}

/// Studio over the sample content, on the record page with the theme's record open.
struct RunningRecord : RunningStudio
{
    explicit RunningRecord(const Studio::Options &options)
        : RunningStudio(options)
        , isReady(isWorking())
        , page(*child(window, "recordPage"))
    {
        if (isReady)
            open();
    }

    void open()
    {
        click(window, "railPage_2");
        auto *themes = child<Zel::ListView>(page, "ThemeListView");
        for (qsizetype row = 0; row < themes->count(); ++row) {
            if (themes->text(row) != themeName)
                continue;
            themes->ensureVisible(row);
            QTest::mouseClick(themes->viewport(), Qt::LeftButton, {},
                              themes->cellRect(row).center());
        }
        click(page, "editRecord");
        isReady = child(page, "record")->isVisible();
    }

    template <typename Box>
    Box &box(const char *label) const
    {
        return *child<Box>(*child(page, QStringLiteral("widget_") + QLatin1String(label)),
                           "widgetValue");
    }

    void retitle(const QString &title) const
    {
        auto &line = box<QLineEdit>("Title");
        line.setFocus();
        line.selectAll();
        QApplication::clipboard()->setText(title);
        press(Qt::Key_V, Qt::ControlModifier);
        QVERIFY(comes([this] { return child(page, "saveRecord")->isEnabled(); }));
    }

    QString status() const { return child<QLabel>(page, "recordStatus")->text(); }

    bool isReady;
    QWidget &page;
};

} // namespace

/// Records in Studio over the real service.
class TestRecordEndToEnd : public ZelTest::TestCase
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

    void whatIsEditedReadsBackEqualFromTheDatabase()
    {
        QStringList expected = recordIn(workspace(), false);
        QCOMPARE(expected.size(), 7);
        {
            RunningRecord f(options());
            QVERIFY(f.isReady);
            f.retitle(QStringLiteral("Spring <b>\u00e9\U0001F600&amp;\"'"));
            auto &rules = f.box<QPlainTextEdit>("Rules_of_the_house");
            rules.moveCursor(QTextCursor::End);
            QTest::keyClicks(&rules, QStringLiteral(" Amen."));
            QTest::mouseClick(&f.box<QCheckBox>("Hands_can_be_raised"), Qt::LeftButton);
            QVERIFY(f.comes([&] { return f.status() == QLatin1String("3 fields changed"); }));
            press(Qt::Key_S, Qt::ControlModifier);
            QVERIFY(f.status().startsWith(QLatin1String("Saved at ")));
        }
        expected[0] = QStringLiteral("Title=Spring <b>\u00e9\U0001F600&amp;\"'");
        const QStringList stored = recordIn(workspace(), true);
        QCOMPARE(stored.size(), expected.size());
        QCOMPARE(stored.at(0), expected.at(0));
        QVERIFY(stored.at(1).endsWith(QLatin1String(" Amen.")));
        QCOMPARE(stored.at(2), QStringLiteral("Hands can be raised=False"));
        QCOMPARE(stored.mid(3), expected.mid(3));
        RunningRecord again(options());
        QVERIFY(again.isReady);
        QCOMPARE(QStringLiteral("Title=") + again.box<QLineEdit>("Title").text(), stored.at(0));
        QVERIFY(!again.box<QCheckBox>("Hands_can_be_raised").isChecked());
        QCOMPARE(again.status(), QStringLiteral("No changes"));
    }

    void aServiceThatDiesLosesNothing()
    {
        RunningRecord f(options());
        QVERIFY(f.isReady);
        f.retitle(QStringLiteral("Late"));
        ::kill(f.process(), SIGKILL);
        QVERIFY(f.comes([&] { return !f.app.embeddedService()->isRunning(); }));
        click(f.page, "saveRecord");
        QVERIFY(f.isShown("errorBar"));
        QCOMPARE(f.box<QLineEdit>("Title").text(), QStringLiteral("Late"));
        QCOMPARE(f.status(), QStringLiteral("1 field changed"));
        click(f.window, "errorRetry");
        QVERIFY(f.comes([&] { return f.status().startsWith(QLatin1String("Saved at ")); }));
        QCOMPARE(recordIn(workspace(), true).value(0), QStringLiteral("Title=Late"));
    }

    void aDraftOutlivesStudio()
    {
        {
            RunningRecord f(options());
            QVERIFY(f.isReady);
            f.retitle(QStringLiteral("Not saved"));
            QTest::qWait(900);
        }
        QVERIFY(recordIn(workspace(), true).isEmpty());
        RunningStudio f(options());
        QVERIFY(f.isWorking());
        QVERIFY(f.isShown("draftNotice"));
        click(f.window, "goOnWithDraft");
        QWidget &page = *child(f.window, "recordPage");
        QVERIFY(page.isVisible());
        click(page, "saveRecord");
        QCOMPARE(recordIn(workspace(), true).value(0), QStringLiteral("Title=Not saved"));
    }

private:
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

ZEL_TEST_MAIN(TestRecordEndToEnd)
#include "tst_recordendtoend.moc"
