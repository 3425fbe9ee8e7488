// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/audiencefixture.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>
#include <QUuid>

#include <algorithm>
#include <ctime>

using namespace QXSC;
using namespace ZelTest;

namespace {

/// The time zone of the program for as long as it lives.
class LocalZone
{
public:
    explicit LocalZone(const QByteArray &zone)
        : m_before(qgetenv("TZ"))
        , m_wasSet(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", zone);
        tzset();
    }

    ~LocalZone()
    {
        if (m_wasSet)
            qputenv("TZ", m_before);
        else
            qunsetenv("TZ");
        tzset();
    }

private:
    Q_DISABLE_COPY_MOVE(LocalZone)

    QByteArray m_before;
    bool m_wasSet;
};

QDateTime utc(const QString &iso)
{
    return QDateTime::fromString(iso, Qt::ISODateWithMs);
}

QDateTime local(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds);
}

/// A range that holds everything.
const QDateTime dawn = utc(QStringLiteral("1900-01-01T00:00:00Z"));
const QDateTime dusk = utc(QStringLiteral("2100-01-01T00:00:00Z"));

Zel::PageView view(const QString &user, qint64 at, qint64 seconds = 1,
                   const QString &browser = QStringLiteral("IE"))
{
    Zel::PageView result;
    result.id = QUuid::createUuid().toRfc4122();
    result.userId = user;
    result.at = at;
    result.seconds = seconds;
    result.closed = seconds % 3 != 0;
    result.browserType = browser;
    result.jsVersion = seconds % 2 == 0 ? QStringLiteral("1.3") : QStringLiteral("1.5");
    result.screenDepth = seconds % 5 == 0 ? QStringLiteral("24") : QStringLiteral("32");
    return result;
}

Zel::Registration registration(const QString &user, qint64 at)
{
    Zel::Registration result;
    result.id = QUuid::createUuid().toRfc4122();
    result.userId = user;
    result.firstName = QStringLiteral("First ") + user;
    result.lastName = QString::fromUtf8("Łast 🎥");
    result.email = user + QStringLiteral("@example.org");
    result.at = at;
    return result;
}

/// What the eleven figures have to be, counted one by one.
struct Figures
{
    qint64 hits = 0;
    qint64 seconds = 0;
    qint64 participants = 0;
    qint64 registrants = 0;
    qint64 registeredParticipants = 0;
    qint64 ie = 0;
    qint64 ns = 0;
    qint64 js = 0;
    qint64 depth24 = 0;
    qint64 depth32 = 0;

    bool operator==(const Figures &) const = default;
};

Figures expected(const QList<Zel::PageView> &views, const QSet<QString> &registered, qint64 from,
                 qint64 to)
{
    Figures figures;
    QSet<QString> seen;
    figures.registrants = registered.size();
    for (const Zel::PageView &one : views) {
        if (one.at < from || one.at > to)
            continue;
        ++figures.hits;
        figures.seconds += one.seconds;
        figures.ie += one.browserType == QLatin1String("IE");
        figures.ns += one.browserType == QLatin1String("NS");
        figures.js += one.jsVersion == QLatin1String("1.3");
        figures.depth24 += one.screenDepth == QLatin1String("24");
        figures.depth32 += one.screenDepth == QLatin1String("32");
        if (!seen.contains(one.userId) && registered.contains(one.userId))
            ++figures.registeredParticipants;
        seen.insert(one.userId);
    }
    figures.participants = seen.size();
    return figures;
}

/// The figures as the client answers them.
Figures asked(Client &client, const QString &guid, const QDateTime &start, const QDateTime &end)
{
    const auto hits = [&](const char *attribute, const char *value) -> qint64 {
        return client.GetPageHitCountByAttribute(guid, start, end, QString::fromLatin1(attribute),
                                                 QStringLiteral("="), QString::fromLatin1(value));
    };
    Figures figures;
    figures.hits = static_cast<qint64>(
        client.GetDeploymentStatistic(guid, start, end, QStringLiteral("TotalPageHits")));
    figures.seconds = static_cast<qint64>(
        client.GetDeploymentStatistic(guid, start, end, QStringLiteral("TotalPageViewTime")));
    figures.participants = client.GetUniqueParticipantCount(guid, start, end);
    figures.registrants = client.GetRegistrantCount(guid);
    figures.registeredParticipants = client.GetRegisteredParticipantCount(guid, start, end);
    figures.ie = hits("BrowserType", "IE");
    figures.ns = hits("BrowserType", "NS");
    figures.js = hits("JSVersion", "1.3");
    figures.depth24 = hits("ScreenDepth", "24");
    figures.depth32 = hits("ScreenDepth", "32");
    return figures;
}

} // namespace

/// Deployments and what their audience did, through the client against the real service.
class ContractStatisticsTest : public AudienceTest
{
    Q_OBJECT

private slots:
    void listsTheDeploymentsOfAProjectNewestFirst();
    void knowsNoDeploymentsOfProjectsOfOthers();
    void answersTheFiguresOfTheSample();
    void listsTheSampleWithEveryField();
    void rowsAddUpToTheFigures_data();
    void rowsAddUpToTheFigures();
    void bothEndsBelongToTheRange();
    void aRangeThatEndsBeforeItBeginsIsEmpty();
    void aDeploymentWithoutAudienceHasEmptyLists();
    void countsAboveSixteenBitsAreAnOverflow();
    void timesAboveThirtyTwoBitsAreAnOverflow();
    void refusesWhatIsNotThere_data();
    void refusesWhatIsNotThere();
    void refusesStatisticsNobodyKnows();
    void needsASession();
    void rowsOfOneMillisecondKeepTheirOrder();
    void rangesReachFromTheYear1To9999();
    void viewersMayReadAll();

private:
    /// A deployment with views around changes of daylight-saving time in many zones.
    QString changingDeployment();
    void verify(Client &client, const QDateTime &start, const QDateTime &end);

    QString m_changing;
    QList<Zel::PageView> m_views;
    QSet<QString> m_registered;
};

void ContractStatisticsTest::listsTheDeploymentsOfAProjectNewestFirst()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QList<Deployment> deployments = client->deployments(captionsProject);
    QVERIFY(deployments.size() >= 2);
    QCOMPARE(deployments.at(0).guid, liveDeployment);
    QCOMPARE(deployments.at(0).name, QStringLiteral("Live broadcast"));
    QCOMPARE(deployments.at(0).published, utc(QStringLiteral("2026-05-07T00:00:00Z")));
    QCOMPARE(deployments.at(0).published.timeSpec(), Qt::LocalTime);
    QCOMPARE(deployments.at(1).guid, rehearsalDeployment);
    QVERIFY(client->deployments(QStringLiteral("2f2879d9-b497-5448-b567-8c3c7297dad4")).isEmpty());
    QVERIFY(client->deployments(captionsProject.toUpper()).size() >= 2);
}

void ContractStatisticsTest::knowsNoDeploymentsOfProjectsOfOthers()
{
    const auto client = signIn(maja(), harbourLearning);
    for (const QString &guid : {captionsProject, newGuid(), QString(), QStringLiteral(".."),
                                QStringLiteral("a/b"), QStringLiteral("%2e")})
        QVERIFY2(client->deployments(guid).isEmpty(), qPrintable(guid));
}

void ContractStatisticsTest::answersTheFiguresOfTheSample()
{
    const auto client = signIn(maja(), brightwaterMedia);
    QList<Zel::PageView> views;
    for (const QStringList &row : sampleRows(QStringLiteral("captions/page-views.csv"))) {
        Zel::PageView one;
        one.userId = row.at(0);
        one.at = utc(row.at(1)).toMSecsSinceEpoch();
        one.seconds = row.at(2).toLongLong();
        one.browserType = row.at(4);
        one.jsVersion = row.at(5);
        one.screenDepth = row.at(6);
        views << one;
    }
    QSet<QString> registered;
    for (const QStringList &row : sampleRows(QStringLiteral("captions/registrants.csv")))
        registered.insert(row.at(0));
    const QDateTime event = utc(QStringLiteral("2026-05-07T15:20:30Z"));
    for (const auto &[start, end] : {std::pair(dawn, dusk), std::pair(dawn, event),
                                     std::pair(event, dusk), std::pair(event.addSecs(-600), event)})
        QVERIFY(asked(*client, liveDeployment, start, end) ==
                expected(views, registered, start.toMSecsSinceEpoch(), end.toMSecsSinceEpoch()));
    QCOMPARE(client->GetUniqueParticipantCount(liveDeployment, dawn, dusk) +
                 client->GetUniqueParticipantCount(rehearsalDeployment, dawn, dusk),
             3000);
    QCOMPARE(client->GetRegistrantCount(liveDeployment) +
                 client->GetRegistrantCount(rehearsalDeployment),
             1200);
    QCOMPARE(client->GetDeploymentStatistic(liveDeployment, dawn, dusk,
                                            QStringLiteral("TotalPageHits")) +
                 client->GetDeploymentStatistic(rehearsalDeployment, dawn, dusk,
                                                QStringLiteral("TotalPageHits")),
             20000.0);
}

void ContractStatisticsTest::listsTheSampleWithEveryField()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const auto registrants = client->GetRegistrants(rehearsalDeployment, dawn, dusk);
    QCOMPARE(registrants->count(), 60);
    const QStringList first =
        sampleRows(QStringLiteral("captions-rehearsal/registrants.csv")).at(0);
    const StatsUser &user = *registrants->item(1)->User;
    QCOMPARE(QStringList({user.UserID, user.FirstName, user.LastName, user.Email}),
             first.mid(0, 4));
    QCOMPARE(user.DateRegistered, utc(first.at(4)));
    const auto views = client->GetPageViews(rehearsalDeployment, dawn, dusk);
    const QList<QStringList> rows = sampleRows(QStringLiteral("captions-rehearsal/page-views.csv"));
    QCOMPARE(views->count(), rows.size());
    QSet<QString> shown;
    QSet<QString> given;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const PageViewRecord &one = *views->item(i + 1);
        shown.insert(QStringLiteral("%1 %2 %3 %4")
                         .arg(one.User->UserID, one.ViewDate.toUTC().toString(Qt::ISODate))
                         .arg(one.TimeSpent)
                         .arg(one.Closed ? QStringLiteral("true") : QStringLiteral("false")));
        given.insert(rows.at(i).mid(0, 4).join(QLatin1Char(' ')));
        QVERIFY(i == 0 || views->item(i)->ViewDate <= one.ViewDate);
    }
    QCOMPARE(shown, given);
    const auto participants = client->GetParticipants(rehearsalDeployment, dawn, dusk);
    QCOMPARE(participants->count(), 160);
    for (const ParticipantRecordPtr &one : *participants) {
        QCOMPARE(one->Registered, one->User->UserID.toInt() <= 80050);
        QCOMPARE(one->User->DateRegistered.isValid(), one->Registered);
        QCOMPARE(one->User->LastName.isEmpty(), !one->Registered);
    }
}

QString ContractStatisticsTest::changingDeployment()
{
    if (!m_changing.isEmpty())
        return m_changing;
    m_changing = newDeployment(QStringLiteral("Around the changes of the clocks"));
    QRandomGenerator dice(42);
    const auto time = [](const char *iso) {
        return utc(QString::fromLatin1(iso)).toMSecsSinceEpoch();
    };
    const QList<qint64> changes{
        time("2026-03-29T01:00:00Z"), time("2026-10-25T01:00:00Z"), // Europe
        time("2026-03-08T07:00:00Z"), time("2026-11-01T06:00:00Z"), // New York
        time("2026-04-04T15:00:00Z"), time("2026-10-03T15:30:00Z"), // Lord Howe, half an hour
        time("1969-12-31T23:30:00Z"),
    };
    for (const qint64 change : changes) {
        for (int i = 0; i < 150; ++i)
            m_views << view(QStringLiteral("user %1").arg(dice.bounded(60)),
                            change + dice.bounded(-14'400'000, 14'400'000), dice.bounded(5000),
                            i % 3 == 0 ? QStringLiteral("NS") : QStringLiteral("IE"));
        // Exactly on the edges that tallies and ranges have.
        m_views << view(QStringLiteral("user 0"), change)
                << view(QStringLiteral("user 1"), change - 1);
    }
    QList<Zel::Registration> registrations;
    for (int i = 0; i < 80; i += 2) {
        registrations << registration(QStringLiteral("user %1").arg(i), i * 1000);
        m_registered.insert(registrations.last().userId);
    }
    const Zel::DeploymentRef ref = refOf(m_changing);
    if (store().audience.takeViews(ref, m_views).added != m_views.size() ||
        store().audience.takeRegistrations(ref, registrations).added != registrations.size())
        throw std::runtime_error("the views could not be stored");
    return m_changing;
}

void ContractStatisticsTest::verify(Client &client, const QDateTime &start, const QDateTime &end)
{
    const QString guid = m_changing;
    const Figures figures = asked(client, guid, start, end);
    const qint64 to = end.toMSecsSinceEpoch();
    QVERIFY(figures == expected(m_views, m_registered, start.toMSecsSinceEpoch(),
                                to - ((to % 1000) + 1000) % 1000 + 999));
    QCOMPARE(client.GetRegisteredNonParticipantCount(guid, start, end),
             figures.registrants - figures.registeredParticipants);

    Figures sums;
    qint64 seconds = 0;
    const auto participants = client.GetParticipants(guid, start, end);
    for (const ParticipantRecordPtr &one : *participants) {
        seconds += one->TimeSpent;
        sums.registeredParticipants += one->Registered;
    }
    QCOMPARE(participants->count(), figures.participants);
    QCOMPARE(seconds, figures.seconds);
    QCOMPARE(sums.registeredParticipants, figures.registeredParticipants);

    qint64 took = 0;
    const auto registrants = client.GetRegistrants(guid, start, end);
    for (const RegistrantRecordPtr &one : *registrants)
        took += one->Participated;
    QCOMPARE(registrants->count(), figures.registrants);
    QCOMPARE(took, figures.registeredParticipants);

    QHash<QString, ParticipantRecord> byUser;
    const auto views = client.GetPageViews(guid, start, end);
    for (const PageViewRecordPtr &one : *views) {
        ParticipantRecord &sum = byUser[one->User->UserID];
        if (!sum.FirstViewed.isValid())
            sum.FirstViewed = one->ViewDate;
        sum.LastViewed = one->ViewDate;
        sum.TimeSpent += one->TimeSpent;
    }
    QCOMPARE(views->count(), figures.hits);
    QCOMPARE(byUser.size(), figures.participants);
    for (const ParticipantRecordPtr &one : *participants) {
        const ParticipantRecord sum = byUser.value(one->User->UserID);
        QCOMPARE(one->TimeSpent, sum.TimeSpent);
        QCOMPARE(one->FirstViewed, sum.FirstViewed);
        QCOMPARE(one->LastViewed, sum.LastViewed);
    }
}

void ContractStatisticsTest::rowsAddUpToTheFigures_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone : {"UTC", "Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                             "Asia/Kathmandu", "Pacific/Apia"})
        QTest::newRow(zone) << QByteArray(zone);
}

void ContractStatisticsTest::rowsAddUpToTheFigures()
{
    QFETCH(QByteArray, zone);
    const LocalZone here(zone);
    changingDeployment();
    const auto client = signIn(maja(), brightwaterMedia);
    QRandomGenerator dice(7);
    const auto edge = [&] {
        // Near some view, often to the second of a change of the clocks, never with a fraction.
        const qint64 at =
            m_views.at(dice.bounded(m_views.size())).at + dice.bounded(-3'600'000, 3'600'000);
        const QDateTime moment = local(dice.bounded(4) == 0 ? at / 3'600'000 * 3'600'000 : at);
        return QDateTime(moment.date(), QTime(moment.time().hour(), moment.time().minute(),
                                              moment.time().second()));
    };
    for (int round = 0; round < 12; ++round) {
        QDateTime start = edge();
        QDateTime end = round % 3 == 0 ? start.addSecs(dice.bounded(9000)) : edge();
        if (end < start)
            std::swap(start, end);
        verify(*client, start, end);
        if (QTest::currentTestFailed())
            return;
    }
}

void ContractStatisticsTest::bothEndsBelongToTheRange()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const qint64 at = 1'800'000'000'000;
    store().audience.takeViews(
        refOf(guid), {view(QStringLiteral("a"), at), view(QStringLiteral("b"), at + 999),
                      view(QStringLiteral("c"), at + 1000), view(QStringLiteral("d"), at - 1)});
    const auto users = [&](qint64 start, qint64 end) {
        QStringList all;
        const auto views = client->GetPageViews(guid, local(start), local(end));
        for (const PageViewRecordPtr &one : *views)
            all << one->User->UserID;
        return all.join(QString());
    };
    QCOMPARE(users(at, at), QStringLiteral("ab"));
    QCOMPARE(users(at, at + 1000), QStringLiteral("abc"));
    QCOMPARE(users(at - 1000, at), QStringLiteral("dab"));
    QCOMPARE(users(at + 700, at + 700), QStringLiteral("ab")); // pickers show whole seconds
}

void ContractStatisticsTest::aRangeThatEndsBeforeItBeginsIsEmpty()
{
    const auto client = signIn(maja(), brightwaterMedia);
    Figures none;
    none.registrants = 60;
    QVERIFY(asked(*client, rehearsalDeployment, dusk, dawn) == none);
    QCOMPARE(client->GetPageViews(rehearsalDeployment, dusk, dawn)->count(), 0);
    QCOMPARE(client->GetParticipants(rehearsalDeployment, dusk, dawn)->count(), 0);
    const auto registrants = client->GetRegistrants(rehearsalDeployment, dusk, dawn);
    QCOMPARE(registrants->count(), 60);
    for (const RegistrantRecordPtr &one : *registrants) {
        QVERIFY(!one->Participated);
        QVERIFY(!one->FirstViewed.isValid());
        QCOMPARE(one->TimeSpent, 0);
    }
}

void ContractStatisticsTest::aDeploymentWithoutAudienceHasEmptyLists()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    QVERIFY(asked(*client, guid, dawn, dusk) == Figures());
    QCOMPARE(client->GetRegisteredNonParticipantCount(guid, dawn, dusk), 0);
    QVERIFY(client->GetParticipants(guid, dawn, dusk));
    QCOMPARE(client->GetParticipants(guid, dawn, dusk)->count(), 0);
    QCOMPARE(client->GetRegistrants(guid, dawn, dusk)->count(), 0);
    QCOMPARE(client->GetPageViews(guid, dawn, dusk)->count(), 0);
    QCOMPARE(client->GetQuestions(guid, dawn, QDateTime())->count(), 0);
    QCOMPARE(client->GetPolls(guid)->count(), 0);
    QVERIFY(client->GetPollResponses(guid).has_value());
    QVERIFY(client->GetPollResponses(guid)->isEmpty());
    QCOMPARE(client->GetSurveys(guid)->count(), 0);
}

void ContractStatisticsTest::countsAboveSixteenBitsAreAnOverflow()
{
    constexpr int most = 32767;
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    QList<Zel::PageView> views;
    QList<Zel::Registration> registrations;
    for (int i = 0; i < most; ++i) {
        const QString user = QStringLiteral("u%1").arg(i);
        views << view(user, i * 1000, 10);
        registrations << registration(user, i);
    }
    store().audience.takeViews(refOf(guid), views);
    store().audience.takeRegistrations(refOf(guid), registrations);
    const auto ie = [&] {
        return client->GetPageHitCountByAttribute(guid, dawn, dusk, QStringLiteral("BrowserType"),
                                                  QStringLiteral("="), QStringLiteral("IE"));
    };
    QCOMPARE(client->GetUniqueParticipantCount(guid, dawn, dusk), most);
    QCOMPARE(client->GetRegistrantCount(guid), most);
    QCOMPARE(client->GetRegisteredParticipantCount(guid, dawn, dusk), most);
    QCOMPARE(ie(), most);
    store().audience.takeViews(refOf(guid), {view(QStringLiteral("one more"), 5)});
    store().audience.takeRegistrations(refOf(guid), {registration(QStringLiteral("one more"), 5)});
    const auto numberOf = [](const auto &call) {
        try {
            call();
        } catch (const Zel::RuntimeError &error) {
            return error.number();
        }
        return 0;
    };
    QCOMPARE(numberOf([&] { client->GetUniqueParticipantCount(guid, dawn, dusk); }), 6);
    QCOMPARE(numberOf([&] { client->GetRegistrantCount(guid); }), 6);
    QCOMPARE(numberOf([&] { client->GetRegisteredParticipantCount(guid, dawn, dusk); }), 6);
    QCOMPARE(numberOf([&] { client->GetRegisteredNonParticipantCount(guid, dusk, dusk); }), 6);
    QCOMPARE(numberOf(ie), 6);
    QCOMPARE(client->GetDeploymentStatistic(guid, dawn, dusk, QStringLiteral("TotalPageHits")),
             most + 1.0);
    QCOMPARE(client->GetPageViews(guid, dawn, dusk)->count(), most + 1);
}

void ContractStatisticsTest::timesAboveThirtyTwoBitsAreAnOverflow()
{
    constexpr qint64 most = std::numeric_limits<qint32>::max();
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    store().audience.takeViews(refOf(guid), {view(QStringLiteral("u"), 0, most)});
    QCOMPARE(client->GetParticipants(guid, dawn, dusk)->item(1)->TimeSpent, most);
    store().audience.takeViews(refOf(guid), {view(QStringLiteral("u"), 1, 1)});
    QCOMPARE(client->GetDeploymentStatistic(guid, dawn, dusk, QStringLiteral("TotalPageViewTime")),
             most + 1.0);
    try {
        client->GetParticipants(guid, dawn, dusk);
        QFAIL("it answered a time that does not fit");
    } catch (const Zel::RuntimeError &error) {
        QCOMPARE(error.number(), 6);
    }
}

void ContractStatisticsTest::refusesWhatIsNotThere_data()
{
    QTest::addColumn<QString>("guid");
    QTest::addColumn<qint64>("account");
    QTest::addColumn<QString>("failure");
    const QString unknown = QStringLiteral("NotFound/not-found");
    QTest::newRow("unknown") << newGuid() << brightwaterMedia << unknown;
    QTest::newRow("of another account") << liveDeployment << harbourLearning << unknown;
    QTest::newRow("a project") << captionsProject << brightwaterMedia << unknown;
    QTest::newRow("empty") << QString() << brightwaterMedia << QStringLiteral("NotFound");
    QTest::newRow("a folder") << QStringLiteral("..") << brightwaterMedia
                              << QStringLiteral("NotFound");
    QTest::newRow("with a slash") << QStringLiteral("a/b?c#d") << brightwaterMedia << unknown;
    QTest::newRow("no account") << liveDeployment << qint64(0)
                                << QStringLiteral("Refused/no-account");
}

void ContractStatisticsTest::refusesWhatIsNotThere()
{
    QFETCH(QString, guid);
    QFETCH(qint64, account);
    QFETCH(QString, failure);
    const QString survey =
        signIn(maja(), brightwaterMedia)->GetSurveys(liveDeployment)->item(1)->guid;
    const auto client = signIn(maja(), account);
    const auto fails = [&](const std::function<void()> &call) {
        QCOMPARE(failureOf(call), failure);
    };
    fails(
        [&] { client->GetDeploymentStatistic(guid, dawn, dusk, QStringLiteral("TotalPageHits")); });
    fails([&] { client->GetUniqueParticipantCount(guid, dawn, dusk); });
    fails([&] { client->GetRegistrantCount(guid); });
    fails([&] { client->GetRegisteredParticipantCount(guid, dawn, dusk); });
    fails([&] { client->GetRegisteredNonParticipantCount(guid, dawn, dusk); });
    fails([&] {
        client->GetPageHitCountByAttribute(guid, dawn, dusk, QStringLiteral("JSVersion"),
                                           QStringLiteral("="), QStringLiteral("1.3"));
    });
    fails([&] { client->GetParticipants(guid, dawn, dusk); });
    fails([&] { client->GetRegistrants(guid, dawn, dusk); });
    fails([&] { client->GetPageViews(guid, dawn, dusk); });
    fails([&] { client->GetQuestions(guid, dawn, dusk); });
    fails([&] { client->GetPolls(guid); });
    fails([&] { client->GetPollResponses(guid); });
    fails([&] { client->GetSurveys(guid); });
    fails([&] { client->GetSurveyResponses(guid, survey); });
}

void ContractStatisticsTest::refusesStatisticsNobodyKnows()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString invalid = QStringLiteral("Invalid/invalid");
    QCOMPARE(failureOf([&] {
                 client->GetDeploymentStatistic(liveDeployment, dawn, dusk,
                                                QStringLiteral("totalpagehits"));
             }),
             invalid);
    const auto hits = [&](const char *attribute, const char *comparison) {
        return failureOf([&] {
            client->GetPageHitCountByAttribute(
                liveDeployment, dawn, dusk, QString::fromLatin1(attribute),
                QString::fromLatin1(comparison), QStringLiteral("a&b=c %41+\"'"));
        });
    };
    QCOMPARE(hits("ScreenDepth", "="), QStringLiteral("none"));
    QCOMPARE(hits("ScreenDepth", "<"), invalid);
    QCOMPARE(hits("screendepth", "="), invalid);
    QCOMPARE(failureOf([&] { client->GetPageViews(liveDeployment, QDateTime(), dusk); }),
             QStringLiteral("Invalid"));
    QCOMPARE(failureOf([&] { client->GetPageViews(liveDeployment, dawn, QDateTime()); }),
             QStringLiteral("Invalid"));
}

void ContractStatisticsTest::needsASession()
{
    Client client;
    const QString signedOut = QStringLiteral("SignedOut");
    QCOMPARE(failureOf([&] { client.GetRegistrantCount(liveDeployment); }), signedOut);
    QCOMPARE(failureOf([&] { client.deployments(captionsProject); }), signedOut);
    QCOMPARE(failureOf([&] { client.SetQuestionStatus(newGuid(), QStringLiteral("STAGED")); }),
             signedOut);
    QCOMPARE(failureOf([&] { client.GetPolls(liveDeployment); }), signedOut);
}

/// That of their ids, whatever the order in which they came.
void ContractStatisticsTest::rowsOfOneMillisecondKeepTheirOrder()
{
    const auto client = signIn(maja(), brightwaterMedia);
    constexpr qint64 at = 1'800'000'000'000;
    QList<Zel::PageView> views;
    for (const char *user : {"b", "a", "c", "a", "b", "a"}) {
        views << view(QString::fromLatin1(user), at, 9 - views.size());
        views.last().id[0] = static_cast<char>(0x40 * (views.size() % 4)); // as unsigned bytes
        views.last().id[1] = static_cast<char>(views.size());
    }
    const auto lineOf = [](const QString &user, qint64 seconds) {
        return QStringLiteral("%1 %2").arg(user).arg(seconds);
    };
    const auto listed = [&] {
        const QString guid = newDeployment();
        for (const Zel::PageView &one : std::as_const(views))
            store().audience.takeViews(refOf(guid), {one});
        QStringList lines;
        const auto all = client->GetPageViews(guid, local(at), local(at));
        for (const PageViewRecordPtr &one : *all)
            lines << lineOf(one->User->UserID, one->TimeSpent);
        return lines;
    };
    const QStringList lines = listed();
    std::reverse(views.begin(), views.end());
    QCOMPARE(listed(), lines);
    std::sort(views.begin(), views.end(),
              [](const Zel::PageView &a, const Zel::PageView &b) { return a.id < b.id; });
    QStringList expectedLines;
    for (const Zel::PageView &one : std::as_const(views))
        expectedLines << lineOf(one.userId, one.seconds);
    QCOMPARE(lines, expectedLines);
}

void ContractStatisticsTest::rangesReachFromTheYear1To9999()
{
    const auto client = signIn(maja(), brightwaterMedia);
    const QString guid = newDeployment();
    const QDateTime first = utc(QStringLiteral("0001-01-01T00:00:00Z"));
    const QDateTime last = utc(QStringLiteral("9999-12-31T23:59:59Z"));
    const QString user = QStringLiteral("u");
    QCOMPARE(store()
                 .audience
                 .takeViews(refOf(guid), {view(user, first.toMSecsSinceEpoch()), view(user, 0),
                                          view(user, last.toMSecsSinceEpoch() + 999)})
                 .added,
             3);
    const auto times = [&](const QDateTime &start, const QDateTime &end) {
        QList<qint64> all;
        const auto views = client->GetPageViews(guid, start, end);
        for (const PageViewRecordPtr &one : *views)
            all << one->ViewDate.toMSecsSinceEpoch();
        const double hits =
            client->GetDeploymentStatistic(guid, start, end, QStringLiteral("TotalPageHits"));
        return hits == double(all.size()) ? all : QList<qint64>{-1};
    };
    const qint64 one = first.toMSecsSinceEpoch();
    const qint64 three = last.toMSecsSinceEpoch() + 999;
    QCOMPARE(times(first, last), (QList<qint64>{one, 0, three}));
    QCOMPARE(times(first, first), QList<qint64>{one});
    QCOMPARE(times(last, last), QList<qint64>{three});
    QCOMPARE(times(first.addSecs(1), last.addSecs(-1)), QList<qint64>{0});
    // A longer range says nothing more.
    QCOMPARE(times(first.addYears(-3000), last.addYears(3000)), (QList<qint64>{one, 0, three}));
    QCOMPARE(times(last.addYears(1), last.addYears(2)), QList<qint64>());
    const auto participants = client->GetParticipants(guid, first, last);
    QCOMPARE(participants->item(1)->FirstViewed.toMSecsSinceEpoch(), one);
    QCOMPARE(participants->item(1)->LastViewed.toMSecsSinceEpoch(), three);
}

void ContractStatisticsTest::viewersMayReadAll()
{
    const NewProject project = newProject();
    signIn(nora(), contractStudio)->createProject(project);
    const QString guid = newGuid();
    database().tx([&] {
        store().deployments.put(contractStudio, {guid, project.guid, QStringLiteral("D"), 0});
    });
    const Zel::DeploymentRef ref = store().deployments.find(contractStudio, guid).value();
    store().audience.takeViews(ref, {view(QStringLiteral("u"), 1000)});
    store().audience.takeRegistrations(ref, {registration(QStringLiteral("u"), 1)});
    Zel::SurveyItem item{newGuid(), QStringLiteral("Q"), false, 1, {}};
    item.choices << Zel::SurveyChoice{newGuid(), QStringLiteral("yes"), true, 1, 1, 0};
    const Zel::Survey survey{newGuid(), QStringLiteral("Survey"), {item}};
    QVERIFY(database().tx([&] { return store().surveys.define(ref, {survey}); }));

    const auto client = signIn(vera(), contractStudio);
    QCOMPARE(client->deployments(project.guid).size(), 1);
    const Figures figures = asked(*client, guid, dawn, dusk);
    QCOMPARE(figures.hits, 1);
    QCOMPARE(figures.registeredParticipants, 1);
    QCOMPARE(client->GetRegisteredNonParticipantCount(guid, dawn, dusk), 0);
    QCOMPARE(client->GetParticipants(guid, dawn, dusk)->count(), 1);
    QCOMPARE(client->GetRegistrants(guid, dawn, dusk)->count(), 1);
    QCOMPARE(client->GetPageViews(guid, dawn, dusk)->count(), 1);
    QCOMPARE(client->GetQuestions(guid, dawn, dusk)->count(), 0);
    QCOMPARE(client->GetPolls(guid)->count(), 0);
    QVERIFY(client->GetPollResponses(guid)->isEmpty());
    QCOMPARE(client->GetSurveys(guid)->count(), 1);
    QVERIFY(client->GetSurveyResponses(guid, survey.guid)->isEmpty());
}

ZEL_TEST_MAIN(ContractStatisticsTest)
#include "tst_contractstatistics.moc"
