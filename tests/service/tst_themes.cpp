// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/themes.h"

#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/store.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Zel;

namespace {

const QString guid = QStringLiteral("00000000-0000-4000-8000-000000000001");
const QString otherGuid = QStringLiteral("00000000-0000-4000-8000-000000000002");

QString shaOf(const QByteArray &bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

Theme themeNamed(const QString &name, qint64 account = 0, const QString &themeGuid = guid)
{
    Theme theme;
    theme.accountId = account;
    theme.guid = themeGuid;
    theme.name = name;
    theme.description = QStringLiteral("d");
    theme.width = 2147483647;
    theme.height = 1;
    theme.createdAt = -62135596800000;
    theme.modifiedAt = 253402300799999;
    theme.definition = QStringLiteral("<WIZARD/>");
    return theme;
}

} // namespace

/// Each function runs on SQLite and on PostgreSQL, with the bytes of previews in files and in the
/// database.
class ThemesTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase_data()
    {
        QTest::addColumn<bool>("postgres");
        QTest::addColumn<bool>("chunks");
        QTest::newRow("sqlite, files") << false << false;
        QTest::newRow("sqlite, chunks") << false << true;
        QTest::newRow("postgres, files") << true << false;
        QTest::newRow("postgres, chunks") << true << true;
    }

    void init();
    void cleanup();

    void givesBackWhatWasStored();
    void changesEveryField();
    void keepsTheOrderOfTemplates();
    void refusesWhatTheTablesDoNotTake_data();
    void refusesWhatTheTablesDoNotTake();
    void refusesTemplatesOfAThemeThatIsNotThere();
    void answersThePreviewToItsAccountOnly();
    void keepsBytesThatAPreviewAndAnAssetShare();
    void removesFormerPreviewsWithTheTrash();
    void comesToDatabasesThatHoldProjects();

private:
    /// The name of the error a change ends in; empty when it does not.
    QString errorOf(const std::function<void()> &change)
    {
        try {
            m_database->tx([&] { change(); });
        } catch (const DatabaseError &error) {
            return QString::number(int(error.kind()));
        }
        return QString();
    }

    QList<Theme> listed(qint64 account, const QString &user, Themes::Scope scope)
    {
        return m_database->snapshot([&] {
            QList<Theme> themes;
            m_store->themes.list(
                {account, user}, scope,
                [&](const Theme &theme, const QList<TemplateUse> &) { themes << theme; });
            return themes;
        });
    }

    void addAccount(qint64 id)
    {
        m_database->tx([&] { m_store->accounts.add({id, QStringLiteral("Account")}); });
    }

    void storePreview(Theme &theme, const QByteArray &bytes)
    {
        MemorySource source(bytes);
        m_store->blobs.add({theme.accountId, shaOf(bytes)}, source, {});
        theme.preview = {shaOf(bytes), QStringLiteral("image/png"), bytes.size()};
    }

    QByteArray stored(const Theme &theme, const QString &sha)
    {
        const auto source = m_store->blobs.open({theme.accountId, sha});
        return source ? source->readAll() : QByteArray("none");
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<QTemporaryDir> m_files;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
};

void ThemesTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(bool, postgres);
    QFETCH_GLOBAL(bool, chunks);
    m_files = std::make_unique<QTemporaryDir>();
    m_database = std::make_unique<Database>(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(*m_database).migrate();
    m_store = std::make_unique<Store>(
        *m_database, PasswordHasher::Cost::Minimal, systemClock(),
        BlobPlace(chunks ? BlobKind::Database : BlobKind::Files, m_files->path()));
}

void ThemesTest::cleanup()
{
    m_store.reset();
    m_database.reset();
    m_files.reset();
}

void ThemesTest::givesBackWhatWasStored()
{
    Theme theme = themeNamed(QStringLiteral("Name"), 7);
    storePreview(theme, "bytes");
    m_database->tx([&] { m_store->themes.add(theme); });
    QCOMPARE(m_store->themes.withGuid(guid), QList<Theme>{theme});
    QCOMPARE(listed(7, QString(), Themes::Scope::Account), QList<Theme>{theme});
    QCOMPARE(listed(7, QString(), Themes::Scope::Full), QList<Theme>{theme});
    QCOMPARE(listed(8, QString(), Themes::Scope::Full), QList<Theme>());
    QCOMPARE(listed(7, QString(), Themes::Scope::Global), QList<Theme>());
    QCOMPARE(listed(7, QString(), Themes::Scope::User), QList<Theme>());
    QCOMPARE(stored(theme, theme.preview.sha), QByteArray("bytes"));
    QVERIFY(m_store->themes.withGuid(otherGuid).isEmpty());
}

void ThemesTest::changesEveryField()
{
    const User ann = m_database->tx([&] {
        m_store->accounts.add({7, QStringLiteral("Account")});
        return m_store->users.add(QStringLiteral("ann"), QStringLiteral("Ann"),
                                  QStringLiteral("x"));
    });
    Theme theme = themeNamed(QStringLiteral("Name"), 7);
    m_database->tx([&] { m_store->themes.add(theme); });
    theme.ownerId = ann.userId;
    theme.name = QStringLiteral("Another");
    theme.description.clear();
    theme.width = 0;
    theme.height = 0;
    theme.createdAt = 1;
    theme.modifiedAt = 2;
    theme.definition.clear();
    storePreview(theme, "bytes");
    m_database->tx([&] { m_store->themes.change(theme); });
    QCOMPARE(listed(7, ann.userId, Themes::Scope::User), QList<Theme>{theme});
    QVERIFY(listed(7, ann.userId, Themes::Scope::Account).isEmpty());
    QVERIFY(listed(7, QStringLiteral("bob"), Themes::Scope::Full).isEmpty());
    QVERIFY(m_store->themes.isVisible({7, ann.userId}, guid));
    QVERIFY(!m_store->themes.isVisible({7, QStringLiteral("bob")}, guid));
    theme.preview = {};
    m_database->tx([&] { m_store->themes.change(theme); });
    QCOMPARE(m_store->themes.withGuid(guid), QList<Theme>{theme});
}

void ThemesTest::keepsTheOrderOfTemplates()
{
    QList<TemplateUse> uses;
    for (int i = 12; i > 0; --i)
        uses << TemplateUse{QString::number(i), QStringLiteral("v"), i % 2 == 0};
    m_database->tx([&] {
        m_store->themes.add(themeNamed(QStringLiteral("A")));
        m_store->themes.add(themeNamed(QStringLiteral("B"), 0, otherGuid));
        m_store->themes.setTemplates(0, guid, uses);
    });
    QCOMPARE(m_store->themes.templatesOf(0, guid), uses);
    QCOMPARE(m_store->themes.templatesOf(0, otherGuid), QList<TemplateUse>());
    m_database->snapshot([&] {
        m_store->themes.list({7, QString()}, Themes::Scope::Full,
                             [&](const Theme &theme, const QList<TemplateUse> &of) {
                                 QCOMPARE(of, theme.guid == guid ? uses : QList<TemplateUse>());
                             });
    });
    uses = uses.mid(3, 2);
    m_database->tx([&] { m_store->themes.setTemplates(0, guid, uses); });
    QCOMPARE(m_store->themes.templatesOf(0, guid), uses);
}

void ThemesTest::refusesWhatTheTablesDoNotTake_data()
{
    QTest::addColumn<Theme>("theme");
    QTest::addColumn<int>("kind");
    const auto row = [](const char *name, void (*change)(Theme &), DatabaseError::Kind kind) {
        Theme theme = themeNamed(QStringLiteral("Name"));
        change(theme);
        QTest::newRow(name) << theme << int(kind);
    };
    using Kind = DatabaseError::Kind;
    row(
        "owner of every account's", [](Theme &t) { t.ownerId = QStringLiteral("u"); }, Kind::Check);
    row(
        "unknown owner",
        [](Theme &t) {
            t.accountId = 7;
            t.ownerId = QStringLiteral("u");
        },
        Kind::ForeignKey);
    row(
        "account below 0", [](Theme &t) { t.accountId = -1; }, Kind::Check);
    row(
        "width below 0", [](Theme &t) { t.width = -1; }, Kind::Check);
    row(
        "height beyond 32 bits", [](Theme &t) { t.height = 2147483648; }, Kind::Check);
}

void ThemesTest::refusesWhatTheTablesDoNotTake()
{
    QFETCH(Theme, theme);
    QFETCH(int, kind);
    QCOMPARE(errorOf([&] { m_store->themes.add(theme); }), QString::number(kind));
    QVERIFY(m_store->themes.withGuid(guid).isEmpty());
}

void ThemesTest::refusesTemplatesOfAThemeThatIsNotThere()
{
    QCOMPARE(errorOf([&] {
                 m_store->themes.setTemplates(7, guid, {{QStringLiteral("k"), QString(), true}});
             }),
             QString::number(int(DatabaseError::Kind::ForeignKey)));
}

void ThemesTest::answersThePreviewToItsAccountOnly()
{
    Theme theme = themeNamed(QStringLiteral("Name"), 7);
    storePreview(theme, "one");
    Theme everybodys = themeNamed(QStringLiteral("Name"), 0, otherGuid);
    storePreview(everybodys, "two");
    m_database->tx([&] {
        m_store->themes.add(theme);
        m_store->themes.add(everybodys);
    });
    QCOMPARE(m_store->themes.preview(7, guid)->preview, theme.preview);
    QVERIFY(!m_store->themes.preview(8, guid));
    QCOMPARE(m_store->themes.preview(8, otherGuid)->preview, everybodys.preview);
    QCOMPARE(m_store->themes.preview(8, otherGuid)->accountId, 0);
    QVERIFY(!m_store->themes.preview(7, QStringLiteral("none")));
}

void ThemesTest::keepsBytesThatAPreviewAndAnAssetShare()
{
    addAccount(7);
    Theme theme = themeNamed(QStringLiteral("Name"));
    storePreview(theme, "shared");
    m_database->tx([&] {
        m_store->themes.add(theme);
        // A blob that no asset names any more, as a purge finds it.
        m_store->assets.addBlob(
            7, {QStringLiteral("a.png"), theme.preview.sha, QStringLiteral("image/png"), 6, false});
    });
    m_store->assets.purge(0);
    QCOMPARE(stored(theme, theme.preview.sha), QByteArray("shared"));
    QCOMPARE(m_store->themes.preview(7, guid)->preview, theme.preview);
}

void ThemesTest::removesFormerPreviewsWithTheTrash()
{
    Theme theme = themeNamed(QStringLiteral("Name"));
    storePreview(theme, "former");
    const QString former = theme.preview.sha;
    m_database->tx([&] { m_store->themes.add(theme); });
    storePreview(theme, "present");
    m_database->tx([&] { m_store->themes.change(theme); });
    QCOMPARE(stored(theme, former), QByteArray("former"));
    m_store->assets.purge(0);
    QCOMPARE(stored(theme, former), QByteArray("none"));
    QCOMPARE(stored(theme, theme.preview.sha), QByteArray("present"));
}

void ThemesTest::comesToDatabasesThatHoldProjects()
{
    QFETCH_GLOBAL(bool, postgres);
    Database old(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(old).migrate(2);
    old.tx([&] {
        for (const char *sql :
             {"INSERT INTO app_user VALUES ('u', 'ann', 'ann', 'Ann', 'h', $, 0)",
              "INSERT INTO account VALUES (7, 'Seven', 'seven')",
              "INSERT INTO project_type VALUES (7, 't', 'Type', 1)",
              "INSERT INTO project (account_id, guid, type_id, name, name_key, description, "
              "created_at, modified_at, created_by, event_at, published) VALUES (7, 'g', 't', "
              "'N', 'n', 'D', 1, NULL, 'u', 2, $)"})
            old.runNative(QString::fromLatin1(sql).replace(
                QLatin1Char('$'), postgres ? QStringLiteral("FALSE") : QStringLiteral("0")));
    });
    QCOMPARE(Migrations(old).migrate(), Migrations::latestVersion() - 2);
    Store store(old, PasswordHasher::Cost::Minimal, systemClock(), m_files->path());
    Project project = store.projects.find(7, QStringLiteral("g")).value();
    QCOMPARE(project.name, QStringLiteral("N"));
    QCOMPARE(project.eventAt.value(), 2);
    QCOMPARE(project.themeGuid, QString());
    old.tx([&] {
        store.themes.add(themeNamed(QStringLiteral("Name")));
        project.themeGuid = guid;
        store.projects.change(7, project);
    });
    QCOMPARE(store.projects.find(7, QStringLiteral("g"))->themeGuid, guid);
}

ZEL_TEST_MAIN(ThemesTest)
#include "tst_themes.moc"
