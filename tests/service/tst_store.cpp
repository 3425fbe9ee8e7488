// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/store.h"

#include "service/store/databaseerror.h"
#include "service/store/migrations.h"
#include "service/store/storabletext.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QRandomGenerator>
#include <QTest>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

using namespace Zel;

namespace {

constexpr qint64 start = 1'767'225'600'000; // 2026-01-01T00:00:00Z
const QString guidA = QStringLiteral("00000000-0000-4000-8000-00000000000a");
const QString address = QStringLiteral("127.0.0.1");

} // namespace

/// The store's classes, each function on SQLite and on PostgreSQL.
class StoreTest : public ZelTest::TestCase
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

    void cleanup()
    {
        m_store.reset();
        m_database.reset();
    }

    void verifiesAPasswordForItsUserOnly();
    void findsUsersWhateverTheCaseOfTheName();
    void refusesASecondUserOfTheSameName();
    void refusesADisabledUser();
    void takesPasswordsOfAnyScript();
    void makesTheDummyHashAsCostlyAsARealOne();
    void refusesNamesWhoseFoldedFormIsTooLong();
    void storesAStrongerHashAtSignIn();
    void neverStoresAWeakerHash();
    void keepsNoTokenInTheDatabase();
    void forgetsATokenThatWasEnded();
    void endsASessionThatIsIdle();
    void endsASessionAfterSevenDaysOfUse();
    void endsTheSessionsOfADisabledUser();
    void refusesForgedTokens_data();
    void refusesForgedTokens();
    void bindsASessionToAccountsOfItsUserOnly();
    void forgetsTheAccountWhenTheMembershipEnds();
    void sharesTokensBetweenDaemonsOfOneDatabase();
    void slowsDownAfterFiveFailures();
    void countsNamesThatDoNotExistAlike();
    void countsEachAddressByItself();
    void forgetsFailuresAfterAnHourOrASuccess();
    void keepsNoNameOfAFailedSignIn();
    void listsAccountsByNameInEveryScript();
    void answersNothingForAnUnknownType();
    void answersAnEmptyListForATypeWithoutProjects();
    void listsProjectsByFoldedNameThenGuid();
    void takesTheLongestNamesOfMixedCharacters();
    void makesAProjectOnceForOneGuid();
    void refusesAGuidThatMeansAnotherProject();
    void keepsAccountsApart();
    void makesOneProjectWhenManyAskAtOnce();
    void countsEveryFailureOfManyAtOnce();

private:
    QString addUser(const QString &login, const QString &password)
    {
        return m_database
            ->tx([&] { return m_store->users.add(login, login, m_store->hasher.hash(password)); })
            .userId;
    }

    void addAccount(qint64 id, const QString &name, const QString &member = QString())
    {
        m_database->tx([&] {
            m_store->accounts.add({id, name});
            if (!member.isEmpty())
                m_store->accounts.setRole(id, member, QStringLiteral("author"));
        });
    }

    void addType(qint64 accountId, const QString &typeId)
    {
        m_database->tx([&] { m_store->projects.storeType(accountId, {typeId, typeId, 1}); });
    }

    Project project(const QString &guid, const QString &name, const QString &creator) const
    {
        Project result;
        result.guid = guid;
        result.typeId = QStringLiteral("webcast");
        result.name = name;
        result.createdById = creator;
        return result;
    }

    Session sessionOf(const QString &token) { return m_store->sessions.find(token).value(); }

    void run(const QString &sql)
    {
        m_database->tx([&] { m_database->runNative(sql); });
    }

    ZelTest::TestDatabases m_databases;
    std::unique_ptr<Database> m_database;
    std::unique_ptr<Store> m_store;
    std::atomic<qint64> m_now{start};
    Clock m_clock = [this] { return m_now.load(); };
};

void StoreTest::init()
{
    TestCase::init();
    QFETCH_GLOBAL(bool, postgres);
    m_now = start;
    m_database = std::make_unique<Database>(m_databases.fresh(postgres), Database::Missing::Create);
    Migrations(*m_database).migrate();
    m_store = std::make_unique<Store>(*m_database, PasswordHasher::Cost::Minimal, m_clock);
}

void StoreTest::verifiesAPasswordForItsUserOnly()
{
    addUser(QStringLiteral("ann"), QStringLiteral("right"));
    QCOMPARE(m_store->users.verify(QStringLiteral("ann"), QStringLiteral("right"))->login,
             QStringLiteral("ann"));
    QVERIFY(!m_store->users.verify(QStringLiteral("ann"), QStringLiteral("wrong")));
    QVERIFY(!m_store->users.verify(QStringLiteral("ann"), QString()));
    QVERIFY(!m_store->users.verify(QStringLiteral("bob"), QStringLiteral("right")));
    QVERIFY(!m_store->users.verify(QString(), QStringLiteral("right")));
    QVERIFY(!m_store->users.verify(QString(5000, u'a'), QStringLiteral("right")));
    QVERIFY(!m_store->users.verify(QStringLiteral("ann"), QString(5000, u'a')));
}

void StoreTest::findsUsersWhateverTheCaseOfTheName()
{
    addUser(QString::fromUtf8("Jürgen"), QStringLiteral("x"));
    QVERIFY(m_store->users.find(QString::fromUtf8("JÜRGEN")));
    QVERIFY(m_store->users.find(QString::fromUtf8("ju\u0308rgen")));
    QVERIFY(!m_store->users.find(QStringLiteral("jurgen")));
}

void StoreTest::refusesASecondUserOfTheSameName()
{
    addUser(QStringLiteral("ann"), QStringLiteral("x"));
    try {
        addUser(QStringLiteral("ANN"), QStringLiteral("y"));
        QFAIL("the second one was taken");
    } catch (const DatabaseError &error) {
        QCOMPARE(error.kind(), DatabaseError::Kind::Unique);
    }
}

void StoreTest::refusesADisabledUser()
{
    addUser(QStringLiteral("ann"), QStringLiteral("right"));
    run(QStringLiteral("UPDATE app_user SET disabled = %1")
            .arg(m_database->address().engine == DatabaseAddress::Engine::Postgres
                     ? QStringLiteral("TRUE")
                     : QStringLiteral("1")));
    QVERIFY(!m_store->users.verify(QStringLiteral("ann"), QStringLiteral("right")));
}

void StoreTest::takesPasswordsOfAnyScript()
{
    addUser(QStringLiteral("ann"), QString::fromUtf8("pässwörd 日本 😀"));
    QVERIFY(m_store->users.verify(QStringLiteral("ann"),
                                  QString::fromUtf8("pa\u0308sswo\u0308rd 日本 😀")));
}

void StoreTest::makesTheDummyHashAsCostlyAsARealOne()
{
    // "$argon2id$v=19$m=65536,t=2,p=1$salt$hash": the cost is what stands before the salt.
    const auto costOf = [](const QString &hash) { return hash.section(QLatin1Char('$'), 0, 3); };
    for (const auto cost : {PasswordHasher::Cost::Minimal, PasswordHasher::Cost::Interactive}) {
        const PasswordHasher hasher(cost);
        QCOMPARE(costOf(hasher.dummy()), costOf(hasher.hash(QStringLiteral("x"))));
    }
    QCOMPARE(costOf(PasswordHasher().dummy()), QStringLiteral("$argon2id$v=19$m=65536,t=2,p=1"));
}

void StoreTest::refusesNamesWhoseFoldedFormIsTooLong()
{
    QVERIFY(Users::isUsableLogin(QString(256, u'a')));
    QVERIFY(!Users::isUsableLogin(QString(257, u'a')));
    QVERIFY(!Users::isUsableLogin(QString(256, QChar(0xfdfa)))); // folds to 18 characters each
    QVERIFY(!Users::isUsableLogin(QStringLiteral(" \t")));
}

void StoreTest::storesAStrongerHashAtSignIn()
{
    addUser(QStringLiteral("ann"), QStringLiteral("right"));
    const QString before = m_store->users.passwordHash(QStringLiteral("ann")).value();
    Store strong(*m_database, PasswordHasher::Cost::Interactive, m_clock);
    QVERIFY(strong.users.verify(QStringLiteral("ann"), QStringLiteral("right")));
    const QString after = m_store->users.passwordHash(QStringLiteral("ann")).value();
    QVERIFY(after != before);
    QVERIFY(after.startsWith(QLatin1String("$argon2id$")));
    QVERIFY(strong.users.verify(QStringLiteral("ann"), QStringLiteral("right")));
    QCOMPARE(m_store->users.passwordHash(QStringLiteral("ann")).value(), after);
}

void StoreTest::neverStoresAWeakerHash()
{
    Store strong(*m_database, PasswordHasher::Cost::Interactive, m_clock);
    const QString hash = strong.hasher.hash(QStringLiteral("right"));
    m_database->tx([&] { m_store->users.add(QStringLiteral("ann"), QStringLiteral("Ann"), hash); });
    QVERIFY(m_store->users.verify(QStringLiteral("ann"), QStringLiteral("right")));
    QCOMPARE(m_store->users.passwordHash(QStringLiteral("ann")).value(), hash);
}

void StoreTest::keepsNoTokenInTheDatabase()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const NewSession session = m_store->sessions.create(user, QStringLiteral("test"));
    QCOMPARE(session.token.size(), 43);
    QCOMPARE(session.expiresAt, start + Sessions::absoluteLimitMs);
    QCOMPARE(sessionOf(session.token).userId, user);
    const QByteArray raw =
        QByteArray::fromBase64(session.token.toLatin1(), QByteArray::Base64UrlEncoding);
    const SqlText hashes("SELECT token_hash FROM session");
    m_database->query(hashes, {}, [&](const SqlRow &row) {
        QCOMPARE(row.bytes(0).size(), 32);
        QVERIFY(row.bytes(0) != raw);
        QVERIFY(!row.bytes(0).contains(session.token.toLatin1()));
    });
}

void StoreTest::forgetsATokenThatWasEnded()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const QString one = m_store->sessions.create(user, QStringLiteral("a")).token;
    const QString two = m_store->sessions.create(user, QStringLiteral("b")).token;
    m_store->sessions.end(sessionOf(one));
    QVERIFY(!m_store->sessions.find(one));
    QVERIFY(m_store->sessions.find(two));
}

void StoreTest::endsASessionThatIsIdle()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const QString token = m_store->sessions.create(user, QStringLiteral("a")).token;
    m_now += Sessions::idleLimitMs - 1;
    QVERIFY(m_store->sessions.find(token)); // which is a use
    m_now += Sessions::idleLimitMs - 1;
    QVERIFY(m_store->sessions.find(token));
    m_now += Sessions::idleLimitMs;
    QVERIFY(!m_store->sessions.find(token));
}

void StoreTest::endsASessionAfterSevenDaysOfUse()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const NewSession session = m_store->sessions.create(user, QStringLiteral("a"));
    while (m_now + Sessions::idleLimitMs / 2 < session.expiresAt) {
        m_now += Sessions::idleLimitMs / 2;
        QVERIFY(m_store->sessions.find(session.token));
    }
    m_now = session.expiresAt - 1;
    QVERIFY(m_store->sessions.find(session.token));
    m_now = session.expiresAt;
    QVERIFY(!m_store->sessions.find(session.token));
    // The next one to sign in clears it away.
    m_store->sessions.create(user, QStringLiteral("b"));
    QCOMPARE(m_database->runNative(QStringLiteral("SELECT COUNT(*) FROM session")).toInt(), 1);
}

void StoreTest::endsTheSessionsOfADisabledUser()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const QString token = m_store->sessions.create(user, QStringLiteral("a")).token;
    run(QStringLiteral("UPDATE app_user SET disabled = %1")
            .arg(m_database->address().engine == DatabaseAddress::Engine::Postgres
                     ? QStringLiteral("TRUE")
                     : QStringLiteral("1")));
    QVERIFY(!m_store->sessions.find(token));
}

void StoreTest::refusesForgedTokens_data()
{
    QTest::addColumn<QString>("token");
    QTest::newRow("empty") << QString();
    QTest::newRow("of the right form") << QString(43, u'A');
    QTest::newRow("long") << QString(100000, u'A');
    QTest::newRow("quotes") << QStringLiteral("' OR 1=1 --");
    QTest::newRow("with NUL") << QStringLiteral("a\0b");
}

void StoreTest::refusesForgedTokens()
{
    QFETCH(QString, token);
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    m_store->sessions.create(user, QStringLiteral("a"));
    QVERIFY(!m_store->sessions.find(token));
}

void StoreTest::bindsASessionToAccountsOfItsUserOnly()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("Mine"), user);
    addAccount(2, QStringLiteral("Theirs"));
    const QString token = m_store->sessions.create(user, QStringLiteral("a")).token;
    QCOMPARE(sessionOf(token).accountId, 0);
    QVERIFY(!m_store->sessions.bindAccount(sessionOf(token), 2));
    QVERIFY(!m_store->sessions.bindAccount(sessionOf(token), 3));
    QVERIFY(!m_store->sessions.bindAccount(sessionOf(token), 0));
    QCOMPARE(sessionOf(token).accountId, 0);
    QVERIFY(m_store->sessions.bindAccount(sessionOf(token), 1));
    QCOMPARE(sessionOf(token).accountId, 1);
    QCOMPARE(sessionOf(token).role, QStringLiteral("author"));
    QVERIFY(!m_store->sessions.bindAccount(sessionOf(token), 2));
    QCOMPARE(sessionOf(token).accountId, 1);
}

void StoreTest::forgetsTheAccountWhenTheMembershipEnds()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("Mine"), user);
    const QString token = m_store->sessions.create(user, QStringLiteral("a")).token;
    QVERIFY(m_store->sessions.bindAccount(sessionOf(token), 1));
    run(QStringLiteral("DELETE FROM membership"));
    QCOMPARE(sessionOf(token).accountId, 0);
}

void StoreTest::sharesTokensBetweenDaemonsOfOneDatabase()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const QString token = m_store->sessions.create(user, QStringLiteral("a")).token;
    Database database(m_database->address());
    Store other(database, PasswordHasher::Cost::Minimal, m_clock);
    QVERIFY(other.sessions.find(token));
}

void StoreTest::slowsDownAfterFiveFailures()
{
    const QString name = QStringLiteral("ann");
    const auto wait = [&] { return m_store->throttle.waitMs(name, address); };
    for (int i = 0; i < SignInThrottle::freeFailures - 1; ++i) {
        m_store->throttle.noteFailure(name, address);
        QCOMPARE(wait(), 0);
    }
    QList<qint64> waits;
    for (int i = 0; i < 12; ++i) {
        m_store->throttle.noteFailure(name, address);
        waits << wait() / 1000;
        m_now += wait();
        QCOMPARE(wait(), 0);
    }
    QCOMPARE(waits, (QList<qint64>{2, 4, 8, 16, 32, 64, 128, 256, 512, 900, 900, 900}));
}

void StoreTest::countsNamesThatDoNotExistAlike()
{
    addUser(QStringLiteral("ann"), QStringLiteral("x"));
    for (const char *name : {"ann", "nobody", ""}) {
        for (int i = 0; i < SignInThrottle::freeFailures; ++i)
            m_store->throttle.noteFailure(QString::fromLatin1(name), address);
        QCOMPARE(m_store->throttle.waitMs(QString::fromLatin1(name), address), 2000);
    }
    QCOMPARE(m_store->throttle.waitMs(QStringLiteral("ANN"), address), 2000);
}

void StoreTest::countsEachAddressByItself()
{
    for (int i = 0; i < SignInThrottle::freeFailures; ++i)
        m_store->throttle.noteFailure(QStringLiteral("ann"), address);
    QCOMPARE(m_store->throttle.waitMs(QStringLiteral("ann"), QStringLiteral("127.0.0.2")), 0);
}

void StoreTest::forgetsFailuresAfterAnHourOrASuccess()
{
    const QString name = QStringLiteral("ann");
    for (int i = 0; i < SignInThrottle::freeFailures; ++i)
        m_store->throttle.noteFailure(name, address);
    m_store->throttle.noteSuccess(name, address);
    QCOMPARE(m_store->throttle.waitMs(name, address), 0);
    for (int i = 0; i < SignInThrottle::freeFailures; ++i)
        m_store->throttle.noteFailure(name, address);
    QVERIFY(m_store->throttle.waitMs(name, address) > 0);
    m_now += SignInThrottle::forgottenAfterMs;
    m_store->throttle.noteFailure(QStringLiteral("someone else"), address);
    QCOMPARE(m_database->runNative(QStringLiteral("SELECT COUNT(*) FROM sign_in_attempt")).toInt(),
             1);
    m_store->throttle.noteFailure(name, address);
    QCOMPARE(m_store->throttle.waitMs(name, address), 0);
}

void StoreTest::keepsNoNameOfAFailedSignIn()
{
    m_store->throttle.noteFailure(QStringLiteral("my-password"), address);
    const SqlText buckets("SELECT bucket FROM sign_in_attempt");
    const auto found =
        m_database->rows(buckets, {}, [](const SqlRow &row) { return row.bytes(0); });
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first().size(), 32);
    QVERIFY(!found.first().contains("password"));
}

void StoreTest::listsAccountsByNameInEveryScript()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const QStringList names{QString::fromUtf8("日本"), QStringLiteral("beta"),
                            QStringLiteral("Alpha"), QString::fromUtf8("Ärmel"),
                            QStringLiteral("alpha")};
    for (qsizetype i = 0; i < names.size(); ++i)
        addAccount(i + 1, names.at(i), user);
    addAccount(99, QStringLiteral("Theirs"));
    QStringList listed;
    for (const Account &account : m_store->accounts.ofUser(user))
        listed << account.name;
    QCOMPARE(listed,
             (QStringList{names.at(2), names.at(4), names.at(1), names.at(3), names.at(0)}));
}

void StoreTest::answersNothingForAnUnknownType()
{
    addAccount(1, QStringLiteral("A"));
    QVERIFY(!m_store->projects.list(1, QStringLiteral("webcast")));
    QVERIFY(!m_store->projects.list(2, QStringLiteral("webcast")));
}

void StoreTest::answersAnEmptyListForATypeWithoutProjects()
{
    addAccount(1, QStringLiteral("A"));
    addType(1, QStringLiteral("webcast"));
    QCOMPARE(m_store->projects.list(1, QStringLiteral("webcast")).value().size(), 0);
    QVERIFY(!m_store->projects.list(1, QStringLiteral("Webcast")));
}

void StoreTest::listsProjectsByFoldedNameThenGuid()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("A"));
    addType(1, QStringLiteral("webcast"));
    const auto guid = [](int i) {
        return QStringLiteral("00000000-0000-4000-8000-00000000000%1").arg(i);
    };
    const QStringList names{QStringLiteral("beta"), QStringLiteral("ALPHA"),
                            QStringLiteral("alpha"), QString::fromUtf8("Ärger"),
                            QString::fromUtf8("ﬁne")};
    for (qsizetype i = names.size() - 1; i >= 0; --i) {
        Project one = project(guid(static_cast<int>(i)), names.at(i), user);
        QCOMPARE(m_store->projects.create(1, one), Projects::Creation::Created);
    }
    QStringList listed;
    const auto list = m_store->projects.list(1, QStringLiteral("webcast"));
    for (const Project &one : list.value())
        listed << one.name;
    QCOMPARE(listed,
             (QStringList{QStringLiteral("ALPHA"), QStringLiteral("alpha"), QStringLiteral("beta"),
                          QString::fromUtf8("ﬁne"), QString::fromUtf8("Ärger")}));
}

void StoreTest::takesTheLongestNamesOfMixedCharacters()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("A"));
    addType(1, QStringLiteral("webcast"));
    // Random, so that no database can compress it into its index.
    QRandomGenerator random(7);
    QString name;
    while (name.size() < Projects::longestName)
        name += QChar(static_cast<char16_t>(random.bounded(0x4e00, 0x9fff)));
    Project one = project(guidA, name, user);
    QCOMPARE(m_store->projects.create(1, one), Projects::Creation::Created);
    QCOMPARE(m_store->projects.find(1, guidA)->name, name);
}

void StoreTest::makesAProjectOnceForOneGuid()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("A"));
    addType(1, QStringLiteral("webcast"));
    Project first = project(guidA, QString::fromUtf8("Name 😀 \"quoted\"\r\n"), user);
    first.description = QStringLiteral("d");
    first.eventAt = -62135596800000;
    Project again = first;
    QCOMPARE(m_store->projects.create(1, first), Projects::Creation::Created);
    QCOMPARE(first.createdAt.value(), start);
    QVERIFY(!first.modifiedAt);
    QCOMPARE(first.createdBy, QStringLiteral("ann"));
    m_now += 1000;
    QCOMPARE(m_store->projects.create(1, again), Projects::Creation::Existing);
    QVERIFY(again == first);
    QCOMPARE(m_store->projects.list(1, QStringLiteral("webcast")).value(), QList<Project>{first});
}

void StoreTest::refusesAGuidThatMeansAnotherProject()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    const QString other = addUser(QStringLiteral("bob"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("A"));
    addType(1, QStringLiteral("webcast"));
    Project first = project(guidA, QStringLiteral("Name"), user);
    QCOMPARE(m_store->projects.create(1, first), Projects::Creation::Created);
    const auto create = [&](const std::function<void(Project &)> &change) {
        Project changed = project(guidA, QStringLiteral("Name"), user);
        change(changed);
        return m_store->projects.create(1, changed);
    };
    QCOMPARE(create([](Project &) {}), Projects::Creation::Existing);
    QCOMPARE(create([](Project &p) { p.name = QStringLiteral("name"); }),
             Projects::Creation::Conflict);
    QCOMPARE(create([](Project &p) { p.description = QStringLiteral("x"); }),
             Projects::Creation::Conflict);
    QCOMPARE(create([](Project &p) { p.eventAt = 0; }), Projects::Creation::Conflict);
    QCOMPARE(create([&](Project &p) { p.createdById = other; }), Projects::Creation::Conflict);
    Project unknown = project(QStringLiteral("00000000-0000-4000-8000-00000000000b"),
                              QStringLiteral("Name"), user);
    unknown.typeId = QStringLiteral("none");
    QCOMPARE(m_store->projects.create(1, unknown), Projects::Creation::UnknownType);
    QCOMPARE(m_store->projects.list(1, QStringLiteral("webcast")).value(), QList<Project>{first});
}

void StoreTest::keepsAccountsApart()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    for (const qint64 account : {1, 2}) {
        addAccount(account, QString::number(account));
        addType(account, QStringLiteral("webcast"));
    }
    Project mine = project(guidA, QStringLiteral("Mine"), user);
    QCOMPARE(m_store->projects.create(1, mine), Projects::Creation::Created);
    QVERIFY(!m_store->projects.isPublished(2, guidA));
    QCOMPARE(m_store->projects.isPublished(1, guidA), std::optional<bool>(false));
    QVERIFY(!m_store->projects.find(2, guidA));
    QCOMPARE(m_store->projects.list(2, QStringLiteral("webcast")).value().size(), 0);
    // The same guid is free in the other account: a conflict would tell that it exists.
    Project theirs = project(guidA, QStringLiteral("Theirs"), user);
    QCOMPARE(m_store->projects.create(2, theirs), Projects::Creation::Created);
}

void StoreTest::makesOneProjectWhenManyAskAtOnce()
{
    const QString user = addUser(QStringLiteral("ann"), QStringLiteral("x"));
    addAccount(1, QStringLiteral("A"));
    addType(1, QStringLiteral("webcast"));
    std::atomic<int> created{0};
    std::atomic<int> existing{0};
    std::mutex guard;
    QStringList failures;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            try {
                Project one = project(guidA, QStringLiteral("Name"), user);
                const auto outcome = m_store->projects.create(1, one);
                created += outcome == Projects::Creation::Created;
                existing += outcome == Projects::Creation::Existing;
            } catch (const std::exception &failure) {
                const std::lock_guard lock(guard);
                failures << QString::fromUtf8(failure.what());
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(failures.join(QLatin1Char('\n')), QString());
    QCOMPARE(created.load(), 1);
    QCOMPARE(existing.load(), 7);
}

void StoreTest::countsEveryFailureOfManyAtOnce()
{
    std::atomic<int> failed{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            try {
                m_store->throttle.noteFailure(QStringLiteral("ann"), address);
            } catch (const std::exception &) {
                ++failed;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(failed.load(), 0);
    QCOMPARE(m_store->throttle.waitMs(QStringLiteral("ann"), address), 16000);
}

ZEL_TEST_MAIN(StoreTest)
#include "tst_store.moc"
