// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspaceexport.h"

#include "service/store/deploymentimport.h"
#include "service/store/exportfolder.h"
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "service/store/timerange.h"
#include "service/store/workspaceimport.h"
#include "tests/contract/serviceprocess.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>
#include <limits>
#include <memory>

using namespace Zel;

namespace {

const QString themeGuid = QStringLiteral("00000000-0000-4000-8000-000000000011");
const QString projectGuid = QStringLiteral("00000000-0000-4000-8000-000000000021");
const QString assetGuid = QStringLiteral("00000000-0000-4000-8000-000000000031");
const QString deploymentGuid = QStringLiteral("00000000-0000-4000-8000-000000000041");

/// Texts that readers of lists get wrong.
QStringList strangeTexts()
{
    const QString astral = QStringLiteral("\U0001F600 \U00020000");
    return {QStringLiteral("plain"),
            QStringLiteral("a \"quoted\", b"),
            QStringLiteral("\""),
            QStringLiteral("\"\""),
            QStringLiteral("one\r\ntwo\rthree\nfour"),
            QStringLiteral("\r\n"),
            QStringLiteral("=1+2"),
            QStringLiteral(",,,"),
            QStringLiteral("ends with a quote\""),
            QString(QChar(0xfeff)) + QStringLiteral("begins with a mark"),
            QString(QChar(0xfeff)),
            QStringLiteral("in the ") + QChar(0xfeff) + QStringLiteral(" middle"),
            QStringLiteral("  blanks around  "),
            QStringLiteral("\\n \\u0041 \\"),
            QStringLiteral("null"),
            QStringLiteral("true"),
            QStringLiteral("\x01\x1f\x7f"),
            QStringLiteral("\u2028\u2029\u00a0\u200b"),
            QStringLiteral("&amp; &lt;b&gt; <i> 'x'"),
            QStringLiteral("{\"a\": [1]}"),
            QStringLiteral("e\u0301 \u00e9"),
            astral,
            QString(5000, QLatin1Char('x')) + QChar(0xfeff) + QStringLiteral("\"\r\n")};
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(qPrintable(path + QLatin1String(" cannot be read")));
    return file.readAll();
}

/// The names and bytes of all files below a folder.
QMap<QString, QByteArray> contentOf(const QString &folder)
{
    QMap<QString, QByteArray> content;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        content.insert(QDir(folder).relativeFilePath(path), bytesOf(path));
    }
    return content;
}

/// A database with a store and files of its own.
class Place
{
public:
    Place(ZelTest::TestDatabases &databases, bool postgres, BlobKind blobs = BlobKind::Files)
        : m_database(databases.fresh(postgres), Database::Missing::Create)
        , m_store(migrated(m_database), PasswordHasher::Cost::Minimal, systemClock(),
                  BlobPlace(blobs, m_files.path()))
    {
    }

    Store &store() { return m_store; }

    QString files() const { return m_files.path(); }

    QList<ImportCount> take(const QStringList &paths, const ImportOptions &options = {})
    {
        return importWorkspace(m_store, WorkspaceFiles::read(paths), options);
    }

    void exportTo(const QString &folder, const ExportOptions &options = {})
    {
        m_report = exportWorkspace(m_store, folder, options);
    }

    /// The rows of a table by which PostgreSQL makes its plans; -1 before it has looked.
    qint64 plannedRows(const QString &table)
    {
        return m_database
            .runNative(
                QStringLiteral("SELECT reltuples FROM pg_class WHERE relname = '%1'").arg(table))
            .toLongLong();
    }

    const ExportReport &report() const { return m_report; }

    qint64 counted(const QString &kind) const
    {
        for (const ExportReport::Count &count : m_report.counts) {
            if (count.kind == kind)
                return count.count;
        }
        return 0;
    }

private:
    static Database &migrated(Database &database)
    {
        Migrations(database).migrate();
        return database;
    }

    QTemporaryDir m_files;
    Database m_database;
    Store m_store;
    ExportReport m_report;
};

/// Stores the bytes of a file on this machine for account 1.
AssetFile stored(Store &store, const QString &path, const QString &name, QString &type)
{
    const auto hold = store.blobs.hold(BlobHold::Mode::Store);
    const Uploads::Adopted taken = store.uploads.adopt(1, path, name);
    store.database.tx([&] { store.blobs.name(taken.part, {1, taken.file.sha}); });
    store.blobs.dropPart(taken.part);
    type = taken.assetType;
    return taken.file;
}

/// Copies the sample folder, but only the beginnings of its long lists: rows of every kind.
void copyShortSample(const QString &folder)
{
    constexpr int lines = 200;
    std::filesystem::copy(ZelTest::ServiceProcess::sampleFolder().toStdString(),
                          folder.toStdString(), std::filesystem::copy_options::recursive);
    QDirIterator lists(folder,
                       {QStringLiteral("page-views.csv"), QStringLiteral("votes.csv"),
                        QStringLiteral("responses.csv")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (lists.hasNext()) {
        QFile list(lists.next());
        if (!list.open(QIODevice::ReadWrite))
            throw std::runtime_error(qPrintable(list.fileName() + QLatin1String(" is read-only")));
        for (int line = 0; line < lines; ++line)
            list.readLine();
        list.resize(list.pos());
    }
}

} // namespace

/// Each function exports from SQLite and from PostgreSQL, and imports into the other one.
class WorkspaceExportTest : public ZelTest::TestCase
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

    void comesBackTheSameAndChangesNothingWhereItCameFrom();
    void keepsStrangeTexts();
    void keepsWhatPeopleLeftBehind();
    void goesOnOverManyPages();
    void writesOneAccountThatStandsForItself();
    void refusesAnAccountNobodyHas();
    void leavesPasswordsOutUnlessAskedForThem();
    void saysWhatIsLeftOut();
    void refusesAFolderWithSomethingInIt_data();
    void refusesAFolderWithSomethingInIt();
    void hasTheBytesOfWhatIsPurgedMeanwhile();
    void leavesNothingBehindWhenBytesAreGone();
    void leavesNothingBehindWhenBytesAreDamaged();
    void dryRunOfAnImportStoresNothing();
    void namesTheFaultsOfTamperedFiles_data();
    void namesTheFaultsOfTamperedFiles();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    Place &from() { return *m_from; }

    Place &other()
    {
        QFETCH_GLOBAL(bool, postgres);
        if (!m_other)
            m_other = std::make_unique<Place>(m_databases, !postgres);
        return *m_other;
    }

    void write(const QString &name, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw std::runtime_error("the test file cannot be written");
    }

    /// There, and back through the other database.
    void compareRoundTrip(const ExportOptions &options = {})
    {
        from().exportTo(path(QStringLiteral("first")), options);
        other().take({path(QStringLiteral("first"))});
        other().exportTo(path(QStringLiteral("second")), options);
        const auto first = contentOf(path(QStringLiteral("first")));
        const auto second = contentOf(path(QStringLiteral("second")));
        QCOMPARE(second.keys(), first.keys());
        const QStringList names = first.keys();
        for (const QString &name : names)
            QVERIFY2(second.value(name) == first.value(name), qPrintable(name));
    }

    /// Two accounts, ann and bob in both, a project, a theme, a folder, a deployment.
    void fillSmall(Store &store)
    {
        store.database.tx([&] {
            for (const qint64 number : {1, 2})
                store.accounts.add({number, QStringLiteral("Account %1").arg(number)});
            for (const char *name : {"ann", "bob"}) {
                const User user = store.users.add(
                    QLatin1String(name), QLatin1String(name),
                    store.hasher.hash(QLatin1String("secret-") + QLatin1String(name)));
                for (const qint64 number : {1, 2})
                    store.accounts.setRole(number, user.userId, QStringLiteral("author"));
            }
            for (const qint64 number : {1, 2})
                store.projects.storeType(number,
                                         {QStringLiteral("webcast"), QStringLiteral("Web"), 1});
            Theme theme;
            theme.accountId = 1;
            theme.guid = themeGuid;
            theme.ownerId = idOf(store, "ann");
            theme.name = QStringLiteral("Theme");
            theme.definition = QString(QChar(0xfeff)) + QStringLiteral("<a>\r\n</a>");
            store.themes.add(theme);
            store.projects.add(1, project(store));
            store.deployments.put(1, {deploymentGuid, projectGuid, QStringLiteral("Live"), 7});
        });
    }

    static QString idOf(Store &store, const char *login)
    {
        return store.users.find(QLatin1String(login)).value().userId;
    }

    static Project project(Store &store)
    {
        Project project;
        project.guid = projectGuid;
        project.typeId = QStringLiteral("webcast");
        project.name = QStringLiteral("Project");
        project.createdById = idOf(store, "ann");
        project.createdAt = -62135596800000; // the first moment that can be written
        project.eventAt = 253402300799999;   // and the last
        project.modifiedAt = 1;
        project.themeGuid = themeGuid;
        return project;
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Place> m_from;
    std::unique_ptr<Place> m_other;
};

void WorkspaceExportTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(bool, postgres);
    m_folder = std::make_unique<QTemporaryDir>();
    m_from = std::make_unique<Place>(m_databases, postgres);
}

void WorkspaceExportTest::cleanup()
{
    m_from.reset();
    m_other.reset();
    m_folder.reset();
}

void WorkspaceExportTest::comesBackTheSameAndChangesNothingWhereItCameFrom()
{
    from().take({ZelTest::ServiceProcess::sampleFolder()});
    compareRoundTrip();
    const auto content = contentOf(path(QStringLiteral("first")));
    QVERIFY(content.size() > 80);
    QVERIFY(content.contains(QStringLiteral("deployments/1001/b80d4f7e-2ad6-57be-a7b3-0efa8160473c/"
                                            "polls.json")));
    QVERIFY(!content.value(QStringLiteral("projects.csv")).contains('\r'));
    QCOMPARE(from().counted(QStringLiteral("page views")), 20000);
    QCOMPARE(from().counted(QStringLiteral("responses")), 72954);
    QCOMPARE(from().counted(QStringLiteral("assets")), 32);

    // Else it may look for each of the many rows by an index that does not part them.
    QFETCH_GLOBAL(bool, postgres);
    if (postgres)
        QCOMPARE(from().plannedRows(QStringLiteral("page_view")), 20000);
    const QList<ImportCount> counts = from().take({path(QStringLiteral("first"))});
    QVERIFY(!counts.isEmpty());
    for (const ImportCount &count : counts)
        QVERIFY2(count.added == 0 && count.changed == 0, qPrintable(count.kind));
}

void WorkspaceExportTest::keepsStrangeTexts()
{
    Store &store = from().store();
    fillSmall(store);
    const QStringList texts = strangeTexts();
    const QString ann = idOf(store, "ann");
    const DeploymentRef deployment = store.deployments.find(1, deploymentGuid).value();
    store.database.tx([&] {
        QList<Poll> polls;
        QList<Survey> surveys;
        StoredRecord record{7, ann, {}};
        qint64 number = 0;
        const auto guid = [&number](int kind) {
            return QStringLiteral("%1-0000-4000-8000-%2")
                .arg(kind, 8, 10, QLatin1Char('0'))
                .arg(number, 12, 10, QLatin1Char('0'));
        };
        for (const QString &text : texts) {
            ++number;
            Project project = this->project(store);
            project.guid = guid(1);
            project.name = text.trimmed().isEmpty() ? QStringLiteral("-") : text;
            project.description = text;
            store.projects.add(1, project);
            RecordEntry entry;
            entry.label = text;
            entry.type = text.left(1000);
            entry.source = text.left(1000);
            entry.value = {text, text, text};
            record.entries << entry;
            const QString shown = text.trimmed().isEmpty() ? QStringLiteral("-") : text;
            polls << Poll{guid(2), shown, number % 2 == 0, {{guid(3), shown, 0}}};
            surveys << Survey{guid(4), shown, {{guid(5), shown, false, 1, {{guid(6), shown}}}}};
            const QString userId =
                text.left(256).trimmed().isEmpty() ? QStringLiteral("u") : text.left(256);
            PageView view;
            view.id = contentId({text});
            view.userId = userId;
            view.at = number;
            view.browserType = view.jsVersion = view.screenDepth = text.left(64);
            QCOMPARE(store.audience.takeViews(deployment, {view}).added, 1);
            const Registration row{contentId({text, text}), userId,         text.left(256),
                                   text.left(256),          text.left(256), number};
            store.audience.takeRegistrations(deployment, {row});
            const AskedQuestion question{
                guid(7), userId, text, std::nullopt, QStringLiteral("STAGED"), text, number};
            QCOMPARE(store.questions.take(deployment, {question}).added, 1);
        }
        store.dataRecords.storeImported(1, themeGuid, record.entries.mid(0, 9));
        store.dataRecords.storeSaved(1, themeGuid, record);
        QVERIFY(store.polls.define(deployment, polls));
        QVERIFY(store.surveys.define(deployment, surveys));
    });
    compareRoundTrip();
    // What came back is what was put in, not only the same text twice.
    Store &back = other().store();
    const DeploymentRef there = back.deployments.find(1, deploymentGuid).value();
    const StoredRecord saved = back.dataRecords.saved(1, themeGuid).value();
    QCOMPARE(saved.entries, store.dataRecords.saved(1, themeGuid)->entries);
    QCOMPARE(saved.version, 7);
    const QList<StoredQuestion> questions = back.questions.list(there, {0, 1});
    QCOMPARE(questions.size(), texts.size());
    QSet<QString> asked;
    for (const StoredQuestion &question : questions)
        asked.insert(Questions::unescaped(question.questionText));
    QCOMPARE(asked, QSet<QString>(texts.begin(), texts.end()));
    QSet<QString> described;
    const QList<Project> projects = back.projects.list(1, QStringLiteral("webcast")).value();
    for (const Project &one : projects)
        described.insert(one.description);
    QVERIFY(described.contains(QSet<QString>(texts.begin(), texts.end())));
    QCOMPARE(back.themes.withGuid(themeGuid).first().definition,
             store.themes.withGuid(themeGuid).first().definition);
    QCOMPARE(back.polls.list(there).size(), texts.size());
    QCOMPARE(back.polls.list(there).at(9).text, texts.at(9));
    QCOMPARE(back.projects.find(1, projectGuid)->createdAt,
             store.projects.find(1, projectGuid)->createdAt);
    QCOMPARE(back.projects.find(1, projectGuid)->eventAt,
             store.projects.find(1, projectGuid)->eventAt);
}

/// States that come about while people work, not by an import.
void WorkspaceExportTest::keepsWhatPeopleLeftBehind()
{
    Store &store = from().store();
    fillSmall(store);
    const QString ann = idOf(store, "ann");
    const QString bob = idOf(store, "bob");
    const DeploymentRef deployment = store.deployments.find(1, deploymentGuid).value();
    write(QStringLiteral("one.txt"), "first bytes");
    write(QStringLiteral("two.txt"), "\x89PNG no picture");
    QString type;
    const AssetFile one = stored(store, path(QStringLiteral("one.txt")),
                                 QStringLiteral("../odd \"name\"\n.TXT"), type);
    const AssetFile two =
        stored(store, path(QStringLiteral("two.txt")), QString(300, QLatin1Char('n')), type);
    store.database.tx([&] {
        // A person who has left, with a theme, a project, a saved record; another one is disabled.
        store.accounts.removeMember(1, ann);
        store.users.setDisabled(bob, true);
        RecordEntry entry;
        entry.label = QStringLiteral("Label");
        store.dataRecords.storeSaved(1, themeGuid, {3, bob, {entry}});
        // The same type at other places and under other names.
        store.projects.storeType(1, {QStringLiteral("video"), QStringLiteral("Video"), 1});
        store.projects.storeType(2, {QStringLiteral("video"), QStringLiteral("Films"), 5});
        qint64 folder = 0;
        qint64 inner = 0;
        QCOMPARE(store.folders.add(1, 0, QStringLiteral("z, \"é\" .. "), folder),
                 AssetFolders::Outcome::Done);
        QCOMPARE(store.folders.add(1, folder, QStringLiteral("a"), inner),
                 AssetFolders::Outcome::Done);
        store.folders.setLetters(1, inner, bob, QString());
        store.folders.setLetters(1, 0, bob, QStringLiteral("RW"));
        store.assets.addBlob(1, one);
        store.assets.addBlob(1, two);
        store.assets.add(1, {assetGuid, inner, QStringLiteral("Asset"), QString(), type, 5, ann},
                         {one, two, one});
        // A moderator has taken away all words.
        const AskedQuestion question{assetGuid,   QStringLiteral("u"),         QStringLiteral("?"),
                                     9,           QStringLiteral("SUBMITTED"), QString(),
                                     std::nullopt};
        store.questions.take(deployment, {question});
        store.questions.update(1, assetGuid, QStringLiteral(" "), QString());
    });
    compareRoundTrip();
    Store &back = other().store();
    QVERIFY(back.users.find(QStringLiteral("bob"))->disabled);
    QVERIFY(!back.accounts.role(1, idOf(back, "ann")));
    QCOMPARE(back.accounts.role(2, idOf(back, "ann")).value(), QStringLiteral("author"));
    QCOMPARE(back.themes.withGuid(themeGuid).first().ownerId, idOf(back, "ann"));
    QCOMPARE(back.projects.types(2).last().position, 5);
    const auto third = back.assets.file(1, assetGuid, 2).value();
    QCOMPARE(third.name, one.name);
    QCOMPARE(third.sha, one.sha);
    QCOMPARE(back.assets.file(1, assetGuid, 1)->name, two.name);
}

void WorkspaceExportTest::goesOnOverManyPages()
{
    Store &store = from().store();
    fillSmall(store);
    const DeploymentRef deployment = store.deployments.find(1, deploymentGuid).value();
    constexpr int viewCount = 10'001;
    constexpr int projectCount = 205;
    store.database.tx([&] {
        QList<PageView> views;
        for (int i = 0; i < viewCount; ++i) {
            PageView view;
            view.userId = QString::number(i % 100);
            view.id = contentId({QString::number(i)});
            view.at = 5; // all in the same moment
            views << view;
        }
        QCOMPARE(store.audience.takeViews(deployment, views).added, viewCount);
        Poll poll{assetGuid, QStringLiteral("?"), false, {{projectGuid, QStringLiteral("!"), 0}}};
        QVERIFY(store.polls.define(deployment, {poll}));
        QList<Vote> votes;
        for (int i = 0; i < viewCount; ++i)
            votes << Vote{contentId({QString::number(i)}), QString::number(i), poll.guid,
                          poll.choices.first().guid, 5};
        QCOMPARE(store.polls.take(deployment, votes).added, viewCount);
        for (int i = 0; i < projectCount; ++i) {
            Project project = this->project(store);
            project.guid =
                QStringLiteral("00000000-0000-4000-9000-%1").arg(i, 12, 10, QLatin1Char('0'));
            project.name = QStringLiteral("Same name");
            store.projects.add(1, project);
        }
    });
    compareRoundTrip();
    QCOMPARE(from().counted(QStringLiteral("page views")), viewCount);
    QCOMPARE(from().counted(QStringLiteral("votes")), viewCount);
    QCOMPARE(from().counted(QStringLiteral("projects")), projectCount + 1);
    // Votes stand in the order in which they came.
    const QList<StoredVote> votes = store.polls.votes(deployment).rows;
    Store &back = other().store();
    const QList<StoredVote> there =
        back.polls.votes(back.deployments.find(1, deploymentGuid).value()).rows;
    QCOMPARE(there.size(), votes.size());
    for (qsizetype i = 0; i < votes.size(); ++i)
        QCOMPARE(there.at(i).userGuid, votes.at(i).userGuid);
}

void WorkspaceExportTest::writesOneAccountThatStandsForItself()
{
    from().take(ZelTest::ServiceProcess::sampleWorkspace());
    ExportOptions options;
    options.accounts = {1002};
    compareRoundTrip(options);
    const auto content = contentOf(path(QStringLiteral("first")));
    QVERIFY(content.value(QStringLiteral("themes.csv")).contains("\n0,"));
    for (auto it = content.begin(); it != content.end(); ++it)
        QVERIFY2(!it.value().contains("1001,") && !it.value().contains("\"account\": 1001"),
                 qPrintable(it.key()));
    const QByteArray people = content.value(QStringLiteral("people.json"));
    QVERIFY(people.contains("maja") && !people.contains("ines"));
    QCOMPARE(other().store().accounts.ofUser(idOf(other().store(), "maja")).size(), 1);
}

void WorkspaceExportTest::refusesAnAccountNobodyHas()
{
    fillSmall(from().store());
    ExportOptions options;
    options.accounts = {1, 9};
    QVERIFY_THROWS_EXCEPTION(ExportError, from().exportTo(path(QStringLiteral("x")), options));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
}

void WorkspaceExportTest::leavesPasswordsOutUnlessAskedForThem()
{
    fillSmall(from().store());
    const QString ann = QStringLiteral("ann");
    const QString secret = QStringLiteral("secret-ann");
    from().exportTo(path(QStringLiteral("without")));
    QVERIFY(!contentOf(path(QStringLiteral("without")))
                 .value(QStringLiteral("people.json"))
                 .contains("argon2"));
    other().take({path(QStringLiteral("without"))});
    Store &back = other().store();
    QVERIFY(!back.users.verify(ann, secret));
    QVERIFY(!back.users.verify(ann, QString()));
    QCOMPARE(back.users.passwordHash(ann).value(), QString());
    // A password that was given there stays when the files come again.
    back.database.tx([&] {
        back.users.changePasswordHash(idOf(back, "ann"), back.hasher.hash(QStringLiteral("new")));
    });
    other().take({path(QStringLiteral("without"))});
    QVERIFY(back.users.verify(ann, QStringLiteral("new")));

    ExportOptions options;
    options.passwordHashes = true;
    compareRoundTrip(options);
    QVERIFY(back.users.verify(ann, secret));
}

void WorkspaceExportTest::saysWhatIsLeftOut()
{
    Store &store = from().store();
    fillSmall(store);
    from().exportTo(path(QStringLiteral("a")));
    QCOMPARE(from().report().leftOut.size(), 1);
    write(QStringLiteral("one.txt"), "bytes");
    QString type;
    const AssetFile file =
        stored(store, path(QStringLiteral("one.txt")), QStringLiteral("one.txt"), type);
    store.database.tx([&] {
        store.deployments.setKey(1, deploymentGuid, QStringLiteral("a-key-of-players"));
        store.assets.addBlob(1, file);
        store.assets.add(
            1, {assetGuid, 0, QStringLiteral("A"), QString(), type, 5, idOf(store, "ann")}, {file});
    });
    QCOMPARE(store.assets.remove({1, idOf(store, "ann"), QStringLiteral("owner")}, assetGuid),
             Assets::Outcome::Done);
    from().exportTo(path(QStringLiteral("b")));
    QCOMPARE(from().report().leftOut.size(), 3);
    QVERIFY(from().report().leftOut.at(1).contains(QLatin1String("1 deployment(s)")));
    QVERIFY(from().report().leftOut.at(2).contains(QLatin1String("trash")));
    QVERIFY(!contentOf(path(QStringLiteral("b")))
                 .value(QStringLiteral("assets.csv"))
                 .contains(assetGuid.toLatin1()));
}

void WorkspaceExportTest::refusesAFolderWithSomethingInIt_data()
{
    QTest::addColumn<QString>("there");
    QTest::addColumn<bool>("fine");
    QTest::newRow("a file in it") << QStringLiteral("out/file") << false;
    QTest::newRow("a hidden file in it") << QStringLiteral("out/.file") << false;
    QTest::newRow("a file") << QStringLiteral("out") << false;
    QTest::newRow("an empty folder") << QStringLiteral("out/") << true;
    QTest::newRow("nothing") << QString() << true;
}

void WorkspaceExportTest::refusesAFolderWithSomethingInIt()
{
    QFETCH(QString, there);
    QFETCH(bool, fine);
    fillSmall(from().store());
    if (there.endsWith(QLatin1Char('/')))
        QVERIFY(QDir().mkdir(path(there)));
    else if (!there.isEmpty())
        write(there, "mine");
    const QString out = path(QStringLiteral("out"));
    if (fine) {
        from().exportTo(out + QLatin1Char('/'));
        QVERIFY(QFile::exists(out + QLatin1String("/people.json")));
        QVERIFY(!(QFileInfo(out).permissions() & (QFile::ReadOther | QFile::ReadGroup)));
    } else {
        QVERIFY_THROWS_EXCEPTION(ExportError, from().exportTo(out));
        QCOMPARE(bytesOf(path(there)), QByteArray("mine"));
    }
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("out")});
}

/// Of files in the database: those in a folder are held.
void WorkspaceExportTest::hasTheBytesOfWhatIsPurgedMeanwhile()
{
    QFETCH_GLOBAL(bool, postgres);
    m_from = std::make_unique<Place>(m_databases, postgres, BlobKind::Database);
    Store &store = from().store();
    fillSmall(store);
    const AssetUser ann{1, idOf(store, "ann"), QStringLiteral("owner")};
    QStringList guids;
    for (int i = 0; i < 3; ++i) {
        write(QStringLiteral("bytes"), QByteArray(300'000, static_cast<char>('a' + i)));
        QString type;
        const AssetFile file =
            stored(store, path(QStringLiteral("bytes")), QStringLiteral("a.txt"), type);
        guids << assetGuid.chopped(1) + QString::number(i);
        store.database.tx([&] {
            store.assets.addBlob(1, file);
            store.assets.add(1, {guids.last(), 0, guids.last(), QString(), type, 5, ann.userId},
                             {file});
        });
    }
    Database another(store.database.address(), Database::Missing::Refuse);
    Store others(another, PasswordHasher::Cost::Minimal, systemClock(),
                 BlobPlace(BlobKind::Database, QString()));
    qint64 purged = 0;
    QString limit;
    ExportOptions options;
    options.progress = [&](const QString &what, qint64 done, qint64) {
        if (what != QLatin1String("files") || done != 1)
            return;
        for (const QString &guid : guids)
            others.assets.remove(ann, guid);
        purged = others.assets.purge(std::numeric_limits<qint64>::max());
        if (postgres)
            limit = store.database.runNative(QStringLiteral("SHOW statement_timeout")).toString();
    };
    from().exportTo(path(QStringLiteral("x")), options);
    QCOMPARE(purged, 3);
    QCOMPARE(limit, postgres ? QStringLiteral("0") : QString()); // it may take its time
    const auto content = contentOf(path(QStringLiteral("x")));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(content.value(QStringLiteral("assets/1/%1.txt").arg(guids.at(i))),
                 QByteArray(300'000, static_cast<char>('a' + i)));
}

void WorkspaceExportTest::leavesNothingBehindWhenBytesAreGone()
{
    from().take(ZelTest::ServiceProcess::sampleWorkspace());
    QDir(from().files() + QLatin1String("/blobs")).removeRecursively();
    QVERIFY_THROWS_EXCEPTION(ExportError, from().exportTo(path(QStringLiteral("x"))));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
}

void WorkspaceExportTest::leavesNothingBehindWhenBytesAreDamaged()
{
    from().take(ZelTest::ServiceProcess::sampleWorkspace());
    QDirIterator blobs(from().files() + QLatin1String("/blobs"), QDir::Files,
                       QDirIterator::Subdirectories);
    QVERIFY(blobs.hasNext());
    QFile blob(blobs.next());
    QVERIFY(blob.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    QVERIFY(blob.open(QIODevice::ReadWrite));
    const char first = blob.peek(1).at(0);
    QVERIFY(blob.putChar(static_cast<char>(first + 1)));
    blob.close();
    QVERIFY_THROWS_EXCEPTION(ExportError, from().exportTo(path(QStringLiteral("x"))));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList());
}

void WorkspaceExportTest::dryRunOfAnImportStoresNothing()
{
    const QString sample = path(QStringLiteral("sample"));
    copyShortSample(sample);
    ImportOptions options;
    options.dryRun = true;
    const QList<ImportCount> wouldBe = from().take({sample}, options);
    from().exportTo(path(QStringLiteral("empty")));
    QCOMPARE(from().counted(QStringLiteral("people")), 0);
    QCOMPARE(from().counted(QStringLiteral("deployments")), 0);
    QVERIFY(QDir(from().files() + QLatin1String("/blobs")).isEmpty());
    // It says what then really happens.
    const QList<ImportCount> is = from().take({sample});
    QCOMPARE(wouldBe.size(), is.size());
    for (qsizetype i = 0; i < is.size(); ++i) {
        QVERIFY2(is.at(i).added > 0, qPrintable(is.at(i).kind));
        QCOMPARE(wouldBe.at(i).kind, is.at(i).kind);
        QCOMPARE(wouldBe.at(i).added, is.at(i).added);
    }
}

void WorkspaceExportTest::namesTheFaultsOfTamperedFiles_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QString>("word");
    const auto row = [](const char *name, const char *file, const char *before, const char *after,
                        const char *word) {
        QTest::newRow(name) << QString::fromLatin1(file) << QByteArray(before) << QByteArray(after)
                            << QString::fromLatin1(word);
    };
    row("both passwords", "people.json", "\"passwordHash\"",
        "\"password\": \"x\", \"passwordHash\"", "both");
    row("no hash", "people.json", "$argon2id", "$argon1id", "no hash");
    row("a hash that costs too much", "people.json", "$m=8,", "$m=99999999,", "no hash");
    row("disabled no truth", "people.json", "\"disabled\": false", "\"disabled\": 1", "disabled");
    row("a type twice", "project-types.json", "\"position\": 1,", "\"position\": 0,", "position");
    row("a further file of nothing", "asset-files.csv", "000000000031,", "000000000032,",
        "no such asset");
    row("a further file that is gone", "asset-files.csv", "-2.txt", "-3.txt", "cannot be read");
    row("a saved record of no theme", "saved-data-records.csv", "000000000011", "000000000012",
        "no theme");
    row("a saved record of nobody", "saved-data-records.csv", ",bob,", ",eve,", "eve");
    row("a version of none", "saved-data-records.csv", ",bob,3,", ",bob,0,", "version");
    row("a saved record of no account", "saved-data-records.csv", "\n1,", "\n9,", "account 9");
    row("a time before all years", "projects.csv", "0001-01-01T00:00:00Z",
        "0001-01-01T00:00:00+14:00", "years");
}

void WorkspaceExportTest::namesTheFaultsOfTamperedFiles()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QString, word);
    Store &store = this->from().store();
    fillSmall(store);
    write(QStringLiteral("one.txt"), "first bytes");
    QString type;
    const AssetFile one =
        stored(store, path(QStringLiteral("one.txt")), QStringLiteral("one.txt"), type);
    store.database.tx([&] {
        store.assets.addBlob(1, one);
        store.assets.add(
            1, {assetGuid, 0, QStringLiteral("A"), QString(), type, 5, idOf(store, "ann")},
            {one, one});
        RecordEntry entry;
        store.dataRecords.storeSaved(1, themeGuid, {3, idOf(store, "bob"), {entry}});
    });
    ExportOptions options;
    options.passwordHashes = true;
    this->from().exportTo(path(QStringLiteral("x")), options);
    const QByteArray before = bytesOf(path(QStringLiteral("x/") + file));
    QVERIFY2(before.contains(from), before.constData());
    write(QStringLiteral("x/") + file, QByteArray(before).replace(from, to));
    try {
        other().take({path(QStringLiteral("x"))});
        QFAIL("it was taken in");
    } catch (const WorkspaceFileError &error) {
        const QString message = QString::fromUtf8(error.what());
        QVERIFY2(message.contains(file) && message.contains(word), qPrintable(message));
    }
    QVERIFY(!other().store().users.find(QStringLiteral("ann")));
}

ZEL_TEST_MAIN(WorkspaceExportTest)
#include "tst_workspaceexport.moc"
