// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttest.h"
#include "tests/contract/recordtext.h"
#include "testsupport/localefixture.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTimeZone>

using namespace ZelTest;

namespace {

const QString session = QStringLiteral("session");

/// What stands for half a surrogate pair in a text.
const QChar halfPair(0xd83c);

QDateTime utc(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
}

constexpr qint64 firstMoment = -62135596800000; // 0001-01-01T00:00:00.000Z
constexpr qint64 lastMoment = 253402300799999;  // 9999-12-31T23:59:59.999Z

} // namespace

class TestContractCreateProject : public ContractTest
{
    Q_OBJECT

private slots:
    void init();
    void answersWhatWasSent();
    void findsItAgainAfterARestart();
    void makesItOnceHoweverOftenItIsAskedTo();
    void choosesAGuidWhenThereIsNone();
    void refusesAnotherProjectOfTheSameGuid_data();
    void refusesAnotherProjectOfTheSameGuid();
    void refusesTheSameProjectFromAnotherPerson();
    void knowsNothingOfOtherAccountsGuids();
    void keepsTextsCodeUnitForCodeUnit_data();
    void keepsTextsCodeUnitForCodeUnit();
    void keepsEventDatesToTheMillisecond_data();
    void keepsEventDatesToTheMillisecond();
    void takesLocalEventDates();
    void refusesWhatIsNoProject_data();
    void refusesWhatIsNoProject();
    void letsViewersMakeNone();

private:
    /// The project's line in the list, or what is wrong with its place there.
    QString listed(const QString &guid);

    qsizetype count() { return projectsOf(*m_client, session)->count(); }

    std::unique_ptr<Client> m_client;
};

Q_DECLARE_METATYPE(QXSC::NewProject)

void TestContractCreateProject::init()
{
    ContractTest::init();
    m_client = signIn(nora(), contractStudio);
}

QString TestContractCreateProject::listed(const QString &guid)
{
    const auto found = withGuid(projectsOf(*m_client, session), guid);
    return found.size() == 1 ? textOf(*found.first())
                             : QStringLiteral("%1 times in the list").arg(found.size());
}

void TestContractCreateProject::answersWhatWasSent()
{
    QXSC::NewProject project = newProject(QStringLiteral("Autumn gala"));
    project.description = QStringLiteral("Two stages,\none stream.");
    project.eventDate = utc(1790000000123);
    const qsizetype before = count();
    const qint64 from = QDateTime::currentMSecsSinceEpoch();
    const auto made = m_client->createProject(project);
    const qint64 to = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(made);
    QCOMPARE(made->guid, project.guid);
    QCOMPARE(made->name, project.name);
    QCOMPARE(made->description, project.description);
    QVERIFY(made->hasEventDate);
    QCOMPARE(made->eventDate, *project.eventDate);
    QCOMPARE(made->eventDate.timeSpec(), Qt::LocalTime);
    QVERIFY(made->hasCreated);
    QVERIFY(made->created.toMSecsSinceEpoch() >= from && made->created.toMSecsSinceEpoch() <= to);
    QVERIFY(!made->hasModified);
    QVERIFY(!made->published);
    QCOMPARE(made->createdBy, QStringLiteral("Nora \"Quote\" O'Brien"));
    QCOMPARE(listed(project.guid), textOf(*made));
    QCOMPARE(count(), before + 1);
    QVERIFY(!isPublished(*m_client, project.guid));
}

void TestContractCreateProject::findsItAgainAfterARestart()
{
    const auto made = m_client->createProject(newProject());
    const qsizetype before = count();
    QCOMPARE(service().stop(), 0);
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QCOMPARE(listed(made->guid), textOf(*made));
    QCOMPARE(count(), before);
    service().kill();
    QVERIFY2(service().startAgain(), qPrintable(service().error()));
    QCOMPARE(listed(made->guid), textOf(*made));
    QCOMPARE(count(), before);
}

void TestContractCreateProject::makesItOnceHoweverOftenItIsAskedTo()
{
    QXSC::NewProject project = newProject();
    project.eventDate = utc(0);
    const QString made = textOf(*m_client->createProject(project));
    const qsizetype before = count();
    QCOMPARE(textOf(*m_client->createProject(project)), made);
    const auto elsewhere = signIn(nora(), contractStudio);
    QCOMPARE(textOf(*elsewhere->createProject(project)), made);
    project.guid = project.guid.toUpper();
    QCOMPARE(textOf(*m_client->createProject(project)), made);
    QCOMPARE(count(), before);
}

void TestContractCreateProject::choosesAGuidWhenThereIsNone()
{
    QXSC::NewProject project = newProject();
    project.guid.clear();
    const auto one = m_client->createProject(project);
    const auto other = m_client->createProject(project);
    QVERIFY(one->guid != other->guid);
    QCOMPARE(listed(one->guid), textOf(*one));
    QCOMPARE(listed(other->guid), textOf(*other));
}

void TestContractCreateProject::refusesAnotherProjectOfTheSameGuid_data()
{
    QTest::addColumn<QXSC::NewProject>("other");
    const QXSC::NewProject same{QString(), QStringLiteral("A name"),
                                session,   QStringLiteral("A description"),
                                utc(1000), QString()};
    const auto row = [&same](const char *name, void (*change)(QXSC::NewProject &)) {
        QXSC::NewProject other = same;
        change(other);
        QTest::newRow(name) << other;
    };
    row("name", [](QXSC::NewProject &p) { p.name = QStringLiteral("Another name"); });
    row("name in another case", [](QXSC::NewProject &p) { p.name = QStringLiteral("a name"); });
    row("description", [](QXSC::NewProject &p) { p.description.clear(); });
    row("date", [](QXSC::NewProject &p) { p.eventDate = utc(1001); });
    row("no date", [](QXSC::NewProject &p) { p.eventDate.reset(); });
}

void TestContractCreateProject::refusesAnotherProjectOfTheSameGuid()
{
    QFETCH(QXSC::NewProject, other);
    other.guid = newGuid();
    const QXSC::NewProject project{other.guid, QStringLiteral("A name"),
                                   session,    QStringLiteral("A description"),
                                   utc(1000),  QString()};
    const QString made = textOf(*m_client->createProject(project));
    QCOMPARE(failureOf([&] { m_client->createProject(other); }),
             QStringLiteral("Conflict/conflict"));
    QCOMPARE(listed(project.guid), made);
}

void TestContractCreateProject::refusesTheSameProjectFromAnotherPerson()
{
    const QXSC::NewProject project = newProject();
    const QString made = textOf(*m_client->createProject(project));
    const auto other = signIn(olaf(), contractStudio);
    QCOMPARE(failureOf([&] { other->createProject(project); }),
             QStringLiteral("Conflict/conflict"));
    QCOMPARE(listed(project.guid), made);
}

void TestContractCreateProject::knowsNothingOfOtherAccountsGuids()
{
    const QXSC::NewProject project = newProject();
    const QString made = textOf(*m_client->createProject(project));
    const auto elsewhere = signIn(nora(), quietRoom);
    QCOMPARE(failureOf([&] { isPublished(*elsewhere, project.guid); }),
             QStringLiteral("NotFound/not-found"));
    QXSC::NewProject same = project;
    same.name = QStringLiteral("Another project");
    QCOMPARE(elsewhere->createProject(same)->name, same.name);
    QCOMPARE(listed(project.guid), made);
}

void TestContractCreateProject::keepsTextsCodeUnitForCodeUnit_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("line ends") << QStringLiteral("a\r\nb\rc\nd\u2028e\u2029f\u0085g");
    QTest::newRow("ends in a line end") << QStringLiteral("a\r\n");
    QTest::newRow("quotes") << QStringLiteral("\"double\" 'single' \\back\\ `tick` „low“");
    QTest::newRow("markup") << QStringLiteral("<b>&amp;</b> %1 $1 :x ? {} [] -- /* */ ;");
    QTest::newRow("controls") << QStringLiteral("\x01\x1f\x7f\b\f\t\v");
    QTest::newRow("blanks") << QStringLiteral(" \u00a0\u3000 x \t");
    QTest::newRow("astral") << QString::fromUtf8("😀👩‍👩‍👧‍👦𝄞🇳🇴");
    QTest::newRow("first and last of the planes")
        << QString::fromUcs4(U"\U00010000\U0010fffd\ue000\ufffd");
    QTest::newRow("not composed") << QString::fromUtf8("A\u0308 Ä ﬁ Ａ ²");
    QTest::newRow("byte order marks") << QStringLiteral("\ufeffa\ufeff");
    QTest::newRow("two byte order marks") << QStringLiteral("\ufeff\ufeffa");
    QTest::newRow("right to left") << QString::fromUtf8("\u202eשלום\u202c عربي");
    QTest::newRow("looks like an escape") << QStringLiteral("\\u0000 \\ud83c \\n");
    QTest::newRow("looks like a number") << QStringLiteral("007");
    QTest::newRow("looks like nothing") << QStringLiteral("NULL");
    QTest::newRow("10,000 characters") << QString(10'000, QChar(0x65e5));
    // Databases compress what they index; this cannot be.
    QString mixed;
    QRandomGenerator random(1);
    while (mixed.size() < 10'000)
        mixed += QChar(random.bounded(0x4e00, 0x9fff));
    QTest::newRow("10,000 different characters") << mixed;
    QTest::newRow("5,000 astral ones") << QString::fromUtf8("😀").repeated(5'000);
}

void TestContractCreateProject::keepsTextsCodeUnitForCodeUnit()
{
    QFETCH(QString, text);
    QXSC::NewProject project = newProject(text);
    project.description = text.repeated(2);
    const auto made = m_client->createProject(project);
    QCOMPARE(made->name, text);
    QCOMPARE(made->description, project.description);
    const auto found = withGuid(projectsOf(*m_client, session), project.guid);
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.first()->name, text);
    QCOMPARE(found.first()->description, project.description);
}

void TestContractCreateProject::keepsEventDatesToTheMillisecond_data()
{
    QTest::addColumn<QDateTime>("date");
    QTest::newRow("first moment") << utc(firstMoment);
    QTest::newRow("last moment") << utc(lastMoment);
    QTest::newRow("1970") << utc(0);
    QTest::newRow("just before") << utc(-1);
    QTest::newRow("beyond 32 bits") << utc(2147483648000);
    QTest::newRow("beyond 32 bits of milliseconds") << utc(4294967296);
    QTest::newRow("leap day") << QDateTime(QDate(2028, 2, 29), QTime(23, 59, 59, 999), Qt::UTC);
    QTest::newRow("with an offset")
        << QDateTime(QDate(2026, 6, 7), QTime(8, 9, 10, 11), Qt::OffsetFromUTC, 20700);
    QTest::newRow("in another zone") << QDateTime(QDate(2026, 6, 7), QTime(8, 9, 10, 11),
                                                  QTimeZone(QByteArrayLiteral("Asia/Tokyo")));
}

void TestContractCreateProject::keepsEventDatesToTheMillisecond()
{
    QFETCH(QDateTime, date);
    QXSC::NewProject project = newProject();
    project.eventDate = date;
    const auto made = m_client->createProject(project);
    QVERIFY(made->hasEventDate);
    QCOMPARE(made->eventDate.toMSecsSinceEpoch(), date.toMSecsSinceEpoch());
    QCOMPARE(listed(project.guid), textOf(*made));
    QCOMPARE(textOf(*m_client->createProject(project)), textOf(*made)); // still the same request
}

void TestContractCreateProject::takesLocalEventDates()
{
    QXSC::NewProject project = newProject();
    {
        const TimeZoneFixture berlin("Europe/Berlin");
        project.eventDate = QDateTime(QDate(2026, 7, 1), QTime(0, 30));
        const auto made = m_client->createProject(project);
        QCOMPARE(made->eventDate, *project.eventDate);
        QCOMPARE(made->eventDate.date(), QDate(2026, 7, 1));
        QCOMPARE(made->eventDate.time(), QTime(0, 30));
    }
    const TimeZoneFixture newYork("America/New_York");
    const auto found = withGuid(projectsOf(*m_client, session), project.guid).value(0);
    QVERIFY(found);
    QCOMPARE(found->eventDate.date(), QDate(2026, 6, 30));
    QCOMPARE(found->eventDate.time(), QTime(18, 30));
}

void TestContractCreateProject::refusesWhatIsNoProject_data()
{
    QTest::addColumn<QXSC::NewProject>("project");
    QTest::addColumn<QString>("failure");
    const auto row = [](const char *name, void (*change)(QXSC::NewProject &),
                        const char *failure = "Invalid/invalid") {
        QXSC::NewProject project = newProject();
        change(project);
        QTest::newRow(name) << project << QString::fromLatin1(failure);
    };
    using New = QXSC::NewProject;
    row("no name", [](New &p) { p.name.clear(); });
    row("blank name", [](New &p) { p.name = QStringLiteral(" \t\r\n\u00a0\u3000"); });
    row("name of 10,001 characters", [](New &p) { p.name = QString(10'001, QLatin1Char('n')); });
    row("name of 5,001 astral characters",
        [](New &p) { p.name = QString::fromUtf8("😀").repeated(5'001); });
    row(
        "NUL in the name", [](New &p) { p.name += QChar(0); }, "Invalid/invalid-text");
    row(
        "half a pair in the name", [](New &p) { p.name += halfPair; }, "Invalid/invalid-text");
    row(
        "the other half", [](New &p) { p.name += QChar(0xdf89); }, "Invalid/invalid-text");
    row(
        "halves the wrong way round", [](New &p) { p.name += QString(QChar(0xdf89)) + halfPair; },
        "Invalid/invalid-text");
    row(
        "a non-character", [](New &p) { p.name += QChar(0xffff); }, "Invalid/invalid-text");
    row(
        "NUL in the description", [](New &p) { p.description = QString(1, QChar(0)); },
        "Invalid/invalid-text");
    row(
        "half a pair in the description", [](New &p) { p.description = halfPair; },
        "Invalid/invalid-text");
    row(
        "description of two million",
        [](New &p) { p.description = QString(2'000'000, QLatin1Char('d')); }, "Invalid/too-large");
    row("unknown type", [](New &p) { p.typeID = QStringLiteral("none"); });
    row("type in another case", [](New &p) { p.typeID = QStringLiteral("Session"); });
    row("another account's type", [](New &p) { p.typeID = QStringLiteral("webcast"); });
    row("no type", [](New &p) { p.typeID.clear(); });
    row("long type", [](New &p) { p.typeID = QString(10'000, QLatin1Char('t')); });
    row("guid in braces", [](New &p) { p.guid = QLatin1Char('{') + p.guid + QLatin1Char('}'); });
    row("guid without dashes", [](New &p) { p.guid.remove(QLatin1Char('-')); });
    row("guid all zero",
        [](New &p) { p.guid = QStringLiteral("00000000-0000-0000-0000-000000000000"); });
    row("guid a word", [](New &p) { p.guid = QStringLiteral("project"); });
    row("guid with a letter too far", [](New &p) { p.guid[35] = QLatin1Char('g'); });
    row("before the first moment", [](New &p) { p.eventDate = utc(firstMoment - 1); });
    row("after the last moment", [](New &p) { p.eventDate = utc(lastMoment + 1); });
    row(
        "no date at all", [](New &p) { p.eventDate = QDateTime(); }, "Invalid");
}

void TestContractCreateProject::refusesWhatIsNoProject()
{
    QFETCH(QXSC::NewProject, project);
    QFETCH(QString, failure);
    const qsizetype before = count();
    QCOMPARE(failureOf([&] { m_client->createProject(project); }), failure);
    QCOMPARE(count(), before);
    // The session and the connection are as good as before.
    QVERIFY(m_client->createProject(newProject()));
}

void TestContractCreateProject::letsViewersMakeNone()
{
    const auto viewer = signIn(vera(), contractStudio);
    const qsizetype before = count();
    QCOMPARE(failureOf([&] { viewer->createProject(newProject()); }),
             QStringLiteral("Refused/not-allowed"));
    QCOMPARE(count(), before);
    // Not even one that is there already tells more than that.
    QXSC::NewProject known = newProject();
    known.guid = QStringLiteral("11111111-2222-4333-8444-555555555555");
    QCOMPARE(failureOf([&] { viewer->createProject(known); }),
             QStringLiteral("Refused/not-allowed"));
    QVERIFY(chooseAccount(*viewer, QString::number(quietRoom)));
    QVERIFY(viewer->createProject(newProject())); // the owner she is elsewhere
}

ZEL_TEST_MAIN(TestContractCreateProject)
#include "tst_contractcreateproject.moc"
