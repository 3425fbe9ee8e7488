// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspaceimport.h"

#include "service/store/migrations.h"
#include "service/store/store.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Zel;

namespace {

const char *const accountsText = R"([
  { "account": 1, "name": "One" },
  { "account": 2, "name": "Two" }
])";
const char *const peopleText = R"([
  { "user": "ann", "displayName": "Ann", "password": "x",
    "accounts": [ { "account": 1, "role": "owner" } ] }
])";
const char *const typesText = R"([ { "typeID": "webcast", "name": "Webcasts", "accounts": [1] } ])";
const char *const csvHead =
    "account,guid,typeID,name,description,created,modified,createdBy,eventDate,published\n";
const char *const csvRow =
    "1,00000000-0000-4000-8000-000000000001,webcast,Name,\"Line one\nand \"\"two\"\"\","
    "2026-01-02T03:04:05Z,,ann,2026-05-01T10:00:00+02:00,true\n";

} // namespace

/// Each function runs on SQLite and on PostgreSQL.
class WorkspaceImportTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase_data()
    {
        QTest::addColumn<bool>("postgres");
        QTest::newRow("sqlite") << false;
        QTest::newRow("postgres") << true;
    }

    void init();
    void cleanup();

    void takesTheSampleWorkspaceIn();
    void changesNothingTheSecondTime();
    void readsQuotedTextsAndTimesWithTheirZone();
    void changesWhatDiffers();
    void leavesWhatTheFilesDoNotMention();
    void namesThePlaceOfEveryFault_data();
    void namesThePlaceOfEveryFault();

private:
    void write(const QString &name, const QByteArray &text)
    {
        QFile file(m_folder->filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            throw std::runtime_error("the test file cannot be written");
    }

    void writeWorkspace()
    {
        write(QStringLiteral("accounts.json"), accountsText);
        write(QStringLiteral("people.json"), peopleText);
        write(QStringLiteral("project-types.json"), typesText);
        write(QStringLiteral("projects.csv"), QByteArray(csvHead) + csvRow);
    }

    QList<ImportCount> take(const QStringList &paths)
    {
        return importWorkspace(*m_store, WorkspaceFiles::read(paths));
    }

    QList<ImportCount> takeFolder() { return take({m_folder->path()}); }

    /// Every row of every table but the secrets, as text.
    QString dump()
    {
        QString result;
        for (const char *columns :
             {"account_id, name, name_key FROM account",
              "login, display_name, pw_hash FROM app_user",
              "account_id, user_id, role FROM membership",
              "account_id, type_id, name, position FROM project_type",
              "account_id, guid, name, description, created_at, modified_at, created_by, event_at "
              "FROM project",
              "account_id, folder_id, parent_id, name FROM asset_folder",
              "account_id, folder_id, user_id, letters FROM folder_perm",
              "account_id, guid, folder_id, name, asset_type FROM asset",
              "account_id, sha, size, mime FROM blob"}) {
            const QStringList names = QString::fromLatin1(columns)
                                          .section(QLatin1String(" FROM "), 0, 0)
                                          .split(QLatin1String(", "));
            QStringList texts;
            for (const QString &name : names)
                texts << QStringLiteral("COALESCE(CAST(%1 AS TEXT), '-')").arg(name);
            const SqlText text(
                QStringLiteral("SELECT %1 FROM %2 ORDER BY 1")
                    .arg(texts.join(QLatin1String(" || '|' || ")),
                         QString::fromLatin1(columns).section(QLatin1String(" FROM "), 1))
                    .toUtf8()
                    .constData());
            result += m_database->rows(text, {}, [](const SqlRow &row) { return row.text(0); })
                          .join(QLatin1Char('\n')) +
                      QLatin1Char('\n');
        }
        return result;
    }

    static QString summary(const QList<ImportCount> &counts)
    {
        QStringList parts;
        for (const ImportCount &count : counts)
            parts << QStringLiteral("%1 %2/%3/%4")
                         .arg(count.kind)
                         .arg(count.added)
                         .arg(count.changed)
                         .arg(count.unchanged);
        return parts.join(QLatin1String(", "));
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
};

void WorkspaceImportTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(bool, postgres);
    m_folder = std::make_unique<QTemporaryDir>();
    m_database = std::make_unique<Database>(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(*m_database).migrate();
    m_store = std::make_unique<Store>(*m_database, PasswordHasher::Cost::Minimal, systemClock(),
                                      m_databases.folder() + QLatin1String("/files"));
}

void WorkspaceImportTest::cleanup()
{
    m_store.reset();
    m_database.reset();
    m_folder.reset();
}

void WorkspaceImportTest::takesTheSampleWorkspaceIn()
{
    QCOMPARE(summary(take(ZelTest::ServiceProcess::sampleWorkspace())),
             QStringLiteral("accounts 2/0/0, people 3/0/0, project types 2/0/0, templates 9/0/0, "
                            "themes 21/0/0, template lists 20/0/0, projects 40/0/0, "
                            "folders 9/0/0, folder rights 5/0/0, assets 32/0/0"));
    const User maja =
        m_store->users.verify(QStringLiteral("maja"), QStringLiteral("sample-maja")).value();
    const User tomas =
        m_store->users.verify(QStringLiteral("tomas"), QStringLiteral("sample-tomas")).value();
    const User ines =
        m_store->users.verify(QStringLiteral("ines"), QStringLiteral("sample-ines")).value();
    QCOMPARE(m_store->accounts.ofUser(maja.userId).size(), 2);
    QCOMPARE(m_store->accounts.ofUser(tomas.userId).size(), 1);
    QCOMPARE(m_store->accounts.ofUser(ines.userId).size(), 0);

    const qint64 first = m_store->accounts.ofUser(tomas.userId).first().accountId;
    const QList<ProjectKind> types = m_store->projects.types(first);
    QCOMPARE(types.size(), 2);
    const QList<Project> list = m_store->projects.list(first, types.first().typeId).value();
    QVERIFY(list.size() >= 24);
    const auto some = [&list](const std::function<bool(const Project &)> &is) {
        const auto count = std::count_if(list.begin(), list.end(), is);
        return count > 0 && count < list.size();
    };
    QVERIFY(some([](const Project &p) { return p.published; }));
    QVERIFY(some([](const Project &p) { return p.createdAt.has_value(); }));
    QVERIFY(some([](const Project &p) { return p.modifiedAt.has_value(); }));
    QVERIFY(some([](const Project &p) { return p.eventAt.has_value(); }));
    QVERIFY(some([&](const Project &p) { return p.createdById == tomas.userId; }));
}

void WorkspaceImportTest::changesNothingTheSecondTime()
{
    take(ZelTest::ServiceProcess::sampleWorkspace());
    const QString before = dump();
    QVERIFY(before.size() > 5000);
    QCOMPARE(summary(take(ZelTest::ServiceProcess::sampleWorkspace())),
             QStringLiteral("accounts 0/0/2, people 0/0/3, project types 0/0/2, templates 0/0/9, "
                            "themes 0/0/21, template lists 0/0/20, projects 0/0/40, "
                            "folders 0/0/9, folder rights 0/0/5, assets 0/0/32"));
    QCOMPARE(dump(), before);
}

void WorkspaceImportTest::readsQuotedTextsAndTimesWithTheirZone()
{
    writeWorkspace();
    takeFolder();
    const Project project = m_store->projects.list(1, QStringLiteral("webcast")).value().first();
    QCOMPARE(project.description, QStringLiteral("Line one\nand \"two\""));
    QCOMPARE(project.createdAt.value(),
             QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC).toMSecsSinceEpoch());
    QVERIFY(!project.modifiedAt);
    QCOMPARE(project.eventAt.value(),
             QDateTime(QDate(2026, 5, 1), QTime(8, 0), Qt::UTC).toMSecsSinceEpoch());
    QCOMPARE(project.createdBy, QStringLiteral("Ann"));
    QVERIFY(project.published);
}

void WorkspaceImportTest::changesWhatDiffers()
{
    writeWorkspace();
    takeFolder();
    write(QStringLiteral("accounts.json"), QByteArray(accountsText).replace("\"One\"", "\"Eins\""));
    write(QStringLiteral("people.json"), QByteArray(peopleText)
                                             .replace("\"x\"", "\"new\"")
                                             .replace("\"owner\"", "\"viewer\"")
                                             .replace("\"Ann\"", "\"Anna\""));
    write(QStringLiteral("project-types.json"),
          QByteArray(typesText).replace("Webcasts", "Live").replace("[1]", "[1, 2]"));
    write(QStringLiteral("projects.csv"),
          QByteArray(csvHead) + QByteArray(csvRow).replace("true", "false"));
    QCOMPARE(summary(takeFolder()),
             QStringLiteral("accounts 0/1/1, people 0/1/0, project types 0/1/0, templates 0/0/0, "
                            "themes 0/0/0, template lists 0/0/0, projects 0/1/0, "
                            "folders 0/0/0, folder rights 0/0/0, assets 0/0/0"));
    QCOMPARE(m_store->accounts.find(1)->name, QStringLiteral("Eins"));
    const User ann = m_store->users.verify(QStringLiteral("ann"), QStringLiteral("new")).value();
    QCOMPARE(ann.displayName, QStringLiteral("Anna"));
    QCOMPARE(m_store->accounts.role(1, ann.userId).value(), QStringLiteral("viewer"));
    QCOMPARE(m_store->projects.types(1).first().name, QStringLiteral("Live"));
    QCOMPARE(m_store->projects.types(2).size(), 1);
    QVERIFY(!m_store->projects.list(1, QStringLiteral("webcast")).value().first().published);
}

void WorkspaceImportTest::leavesWhatTheFilesDoNotMention()
{
    take(ZelTest::ServiceProcess::sampleWorkspace());
    writeWorkspace();
    QFile::remove(m_folder->filePath(QStringLiteral("projects.csv")));
    takeFolder();
    QVERIFY(m_store->users.find(QStringLiteral("maja")));
    QVERIFY(m_store->users.find(QStringLiteral("ann")));
    QVERIFY(m_store->projects.list(1001, QStringLiteral("webcast")).value().size() >= 24);
}

void WorkspaceImportTest::namesThePlaceOfEveryFault_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("word");
    const auto json = [](const char *name, const char *file, QByteArray text, const char *place,
                         const char *word) {
        QTest::newRow(name) << QString::fromLatin1(file) << text << QString::fromLatin1(place)
                            << QString::fromLatin1(word);
    };
    json("unfinished", "accounts.json", "[\n {\"account\": 1,\n", "accounts.json:3:", "JSON");
    json("no list", "accounts.json", "{}", "accounts.json:1:", "list");
    json("no object", "accounts.json", "[\n 7 ]", "accounts.json:1:", "object");
    json("field missing", "accounts.json",
         "[\n {\"account\": 1, \"name\": \"a\"},\n\n {\"account\": 2}]",
         "accounts.json:4:", "name");
    json("unknown field", "accounts.json",
         "[{\"account\": 1, \"name\": \"}]\\\"[\"},\n{\"account\": 2, \"name\": \"b\", \"x\": 1}]",
         "accounts.json:2:", "\"x\"");
    json("number out of range", "accounts.json", "[{\"account\": 2147483648, \"name\": \"a\"}]",
         "accounts.json:1:", "2147483647");
    json("number with a fraction", "accounts.json", "[{\"account\": 1.5, \"name\": \"a\"}]",
         "accounts.json:1:", "whole");
    json("same account twice", "accounts.json",
         "[{\"account\": 1, \"name\": \"a\"},\n{\"account\": 1, \"name\": \"b\"}]",
         "accounts.json:2:", "twice");
    json("unknown role", "people.json", QByteArray(peopleText).replace("owner", "boss"),
         "people.json:2:", "role");
    json("account nobody has", "people.json", QByteArray(peopleText).replace(": 1,", ": 77,"),
         "people.json:2:", "77");
    json("text with NUL", "people.json", QByteArray(peopleText).replace("Ann", "A\\u0000"),
         "people.json:2:", "displayName");
    json("type of an account nobody has", "project-types.json",
         QByteArray(typesText).replace("[1]", "[1, 9]"), "project-types.json:1:", "9");
    const auto csv = [&json](const char *name, const QByteArray &from, const QByteArray &to,
                             const char *word) {
        json(name, "projects.csv",
             QByteArray(csvHead) + csvRow +
                 QByteArray(csvRow).replace("0001,", "0002,").replace(from, to),
             "projects.csv:4:", word);
    };
    csv("time without a zone", "05Z", "05", "zone");
    csv("no time", "2026-01-02T03:04:05Z", "yesterday", "created");
    csv("unknown user", ",ann,", ",bob,", "bob");
    csv("unknown type", "webcast", "podcast", "podcast");
    csv("unknown account", "1,0000", "5,0000", "account 5");
    csv("no guid", "00000000-0000-4000-8000-000000000002", "{1}", "UUID");
    csv("neither true nor false", ",true", ",yes", "true or false");
    csv("empty name", "Name", " ", "name");
    csv("a cell too few", ",true", "", "cells");
    json("text after a quoted text", "projects.csv",
         QByteArray(csvHead) + csvRow + "1,\"two\nlines\"x", "projects.csv:5:", "comma");
    json("guid twice", "projects.csv", QByteArray(csvHead) + csvRow + csvRow,
         "projects.csv:4:", "twice");
    json("quote without end", "projects.csv", QByteArray(csvHead) + "1,\"abc\n\n",
         "projects.csv:4:", "end");
    json("no UTF-8", "projects.csv", QByteArray(csvHead) + "\xff", "projects.csv:", "UTF-8");
    json("empty file", "projects.csv", "", "projects.csv:1:", "columns");
    const auto folders = [&json](const char *name, const char *row, const char *word) {
        json(name, "asset-folders.csv", QByteArray("account,folder\n") + row,
             "asset-folders.csv:2:", word);
    };
    folders("folder without its parent", "1,A/B", "\"A\"");
    folders("folder without a name", "1,A//B", "name of a folder");
    folders("folder of an account nobody has", "9,A", "account 9");
    const auto rights = [&json](const char *name, const char *row, const char *word) {
        json(name, "asset-rights.csv", QByteArray("account,folder,user,letters\n") + row,
             "asset-rights.csv:2:", word);
    };
    rights("unknown right", "1,,ann,X", "R, W and D");
    rights("right of nobody", "1,,bob,R", "bob");
    rights("right in no folder", "1,None,ann,R", "None");
    const auto assets = [&json](const char *name, const QByteArray &from, const QByteArray &to,
                                const char *word) {
        json(name, "assets.csv",
             QByteArray("account,guid,folder,name,description,file,created,createdBy\n"
                        "1,00000000-0000-4000-8000-000000000009,,N,,accounts.json,"
                        "2026-01-02T03:04:05Z,ann\n")
                 .replace(from, to),
             "assets.csv:2:", word);
    };
    assets("asset without its file", "accounts.json", "none.png", "none.png");
    assets("asset of an empty file", "accounts.json", "files/empty.png", "empty.png is empty");
    assets("asset in no folder", "9,,N", "9,None,N", "None");
    assets("asset of nobody", "ann", "bob", "bob");
    assets("asset without a time", "2026-01-02T03:04:05Z", "", "time");
    json("a file of another name", "project.csv", csvHead, "project.csv:", "none of");
}

void WorkspaceImportTest::namesThePlaceOfEveryFault()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, text);
    QFETCH(QString, place);
    QFETCH(QString, word);
    writeWorkspace();
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("files")));
    write(QStringLiteral("files/empty.png"), QByteArray());
    write(file, text);
    const QString before = dump();
    try {
        takeFolder();
        QFAIL("it was taken in");
    } catch (const WorkspaceFileError &error) {
        const QString message = QString::fromUtf8(error.what());
        QVERIFY2(message.contains(QLatin1Char('/') + place), qPrintable(message));
        QVERIFY2(message.contains(word), qPrintable(message));
    }
    QCOMPARE(dump(), before);
}

ZEL_TEST_MAIN(WorkspaceImportTest)
#include "tst_workspaceimport.moc"
