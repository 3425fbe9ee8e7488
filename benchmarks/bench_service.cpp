// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_service [sqlite|postgres|both]
// What a service bears, on SQLite and on PostgreSQL: small calls, a large answer, a long list, a
// large upload, signing in, one who works beside 200 who do nothing, and what TLS adds. Each line
// states what is measured, our figure, that of a peer, and their ratio.
#include "audiencefill.h"
#include "barescan.h"
#include "keptconnection.h"
#include "largeupload.h"
#include "service/store/passwordhasher.h"
#include "tests/contract/postgresserver.h"
#include "tests/contract/serviceprocess.h"
#include "tests/contract/testauthority.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace Bench;
using QXSC::HttpServiceClient;

namespace {

constexpr int runs = 5;
constexpr int smallCalls = 2000;
constexpr int signInThreads = 2; // as many as the service hashes at once
constexpr int callers = 8;
constexpr int idleClients = 200;
constexpr int newConnections = 200;
constexpr qint64 listedViews = 100'000;
constexpr qint64 largeAnswer = 10 * 1024 * 1024;
constexpr std::chrono::milliseconds span{3000};

/// One line: a claim, our figure, that of a peer and what the first is of the second.
void line(const char *claim, double ours, const char *unit, const char *peer, double theirs)
{
    std::printf("%-46s %10.2f %-9s %-38s %10.2f %9.2f\n", claim, ours, unit, peer, theirs,
                ours / theirs);
    std::fflush(stdout);
}

/// A service over a fresh database with the sample, and how to sign in to it.
class Service
{
public:
    /// @param cost of the hash of passwords: "minimal" or "interactive"
    /// @param authority signs what the service encrypts with; plain HTTP when null
    explicit Service(bool postgres, const char *cost = "minimal",
                     ZelTest::TestAuthority *authority = nullptr)
    {
        if (authority) {
            m_process.tls = authority->make();
            m_caFile = authority->caFile();
            m_trust = KeptConnection::trustIn(m_caFile);
        }
        if (postgres) {
            if (!m_server.start())
                throw std::runtime_error(m_server.error().toStdString());
            m_process.database = m_server.newDatabase();
        }
        m_process.arguments = {QStringLiteral("--sign-in-cost"), QLatin1String(cost)};
        if (!m_process.start())
            throw std::runtime_error(m_process.error().toStdString());
    }

    ZelTest::ServiceProcess &process() { return m_process; }

    std::unique_ptr<KeptConnection> stranger() const
    {
        return std::make_unique<KeptConnection>(m_process.port(), m_trust);
    }

    /// A connection that is signed in.
    std::unique_ptr<KeptConnection> connection() const
    {
        auto kept = stranger();
        const QByteArray token =
            QJsonDocument::fromJson(kept->call("POST", "/v1/sessions", 201, signInBody))
                .object()
                .value(QLatin1String("token"))
                .toString()
                .toLatin1();
        kept->addHeader("Authorization: Bearer " + token);
        kept->call("PUT", "/v1/sessions/current/account", 204, R"({"accountId":"1001"})");
        return kept;
    }

    void signIn(HttpServiceClient &client)
    {
        QXSC::NetworkPolicy policy;
        policy.caFile = m_caFile;
        client.setNetworkPolicy(policy);
        bool ok = false;
        client.authenticate(m_process.address(), QStringLiteral("maja"),
                            QStringLiteral("sample-maja"), QStringLiteral("bench_service"),
                            QString(), false, true, ok);
        if (ok)
            client.setActiveAccount(QString::number(AudienceFill::account), ok);
        if (!ok)
            throw std::runtime_error("the sample's author may not sign in");
    }

    static inline const QByteArray signInBody =
        R"({"user":"maja","password":"sample-maja","appName":"bench_service"})";

private:
    ZelTest::PostgresServer m_server; // outlives the service
    ZelTest::ServiceProcess m_process;
    QString m_caFile;
    KeptConnection::Trust m_trust; ///< null without TLS
};

double medianMicroseconds(int count, const std::function<void()> &call)
{
    std::vector<double> times;
    for (int i = 0; i < count; ++i)
        times.push_back(milliseconds(call) * 1000);
    return medianOf(times);
}

/// How many calls a second several threads get done together; `begin` makes the call of a thread.
double rate(int threads, const std::function<std::function<void()>()> &begin)
{
    std::atomic_bool ending = false;
    std::atomic_int done = 0;
    std::vector<std::thread> all;
    for (int i = 0; i < threads; ++i) {
        all.emplace_back([&, call = begin()] {
            while (!ending) {
                call();
                ++done;
            }
        });
    }
    const int before = done;
    const double time = milliseconds([] { std::this_thread::sleep_for(span); });
    const int count = done - before;
    ending = true;
    for (std::thread &thread : all)
        thread.join();
    return count * 1000 / time;
}

/// A read of one row by its key with nothing between: what the service's small read asks.
double pointRead(const QString &file)
{
    sqlite3 *database = nullptr;
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_open(file.toUtf8().constData(), &database) != SQLITE_OK ||
        sqlite3_prepare_v2(database, "SELECT name FROM account WHERE account_id = ?1", -1,
                           &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error("the database cannot be opened");
    const double median = medianMicroseconds(smallCalls, [&] {
        sqlite3_bind_int64(statement, 1, AudienceFill::account);
        if (sqlite3_step(statement) != SQLITE_ROW)
            throw std::runtime_error("the account is gone");
        sqlite3_reset(statement);
    });
    sqlite3_finalize(statement);
    sqlite3_close(database);
    return median;
}

const QByteArray readTarget = "/v1/projects/5c400ad7-64e6-55e6-9e0a-11462ba0bba6/published";

void measureSmallCalls(Service &service, const QString &sqliteFile)
{
    const auto connection = service.connection();
    const auto health = [&] { connection->call("GET", "/healthz"); };
    const auto read = [&] { connection->call("GET", readTarget); };
    medianMicroseconds(smallCalls, read); // opens what is opened once
    const double bare = medianMicroseconds(smallCalls, health);
    const double withRead = medianMicroseconds(smallCalls, read);
    const double point = pointRead(sqliteFile);
    line("small call, no database", bare, "us", "sqlite3 point read", point);
    line("small call, session and one read", withRead, "us", "sqlite3 point read", point);
    line("small call, session and one read", withRead, "us", "small call, no database", bare);
    HttpServiceClient client;
    service.signIn(client);
    line("the same through the client",
         medianMicroseconds(smallCalls,
                            [&] {
                                bool published = false;
                                client.isProjectPublished(
                                    QStringLiteral("5c400ad7-64e6-55e6-9e0a-11462ba0bba6"),
                                    QString(), published);
                            }),
         "us", "without the client", withRead);
    const auto caller = [&service](const QByteArray &target) {
        return [&service, target]() -> std::function<void()> {
            const std::shared_ptr<KeptConnection> own = service.connection();
            return [own, target] { own->call("GET", target); };
        };
    };
    const double healthRate = rate(callers, caller("/healthz"));
    line("small calls of 8 clients, one read", rate(callers, caller(readTarget)), "calls/s",
         "the same without a database", healthRate);
}

void measureIdle(Service &service)
{
    const auto active = service.connection();
    const auto read = [&] { active->call("GET", readTarget); };
    medianMicroseconds(smallCalls, read);
    const double alone = medianMicroseconds(smallCalls, read);
    std::vector<std::unique_ptr<KeptConnection>> idle;
    for (int i = 0; i < idleClients; ++i) {
        idle.push_back(service.stranger());
        idle.back()->call("GET", "/healthz");
    }
    line("small call beside 200 idle clients", medianMicroseconds(smallCalls, read), "us",
         "without them", alone);
}

QString makeAsset(HttpServiceClient &client, const QString &path)
{
    auto files = std::make_shared<QXSC::AssetFileCollection>();
    files->add(std::make_shared<QXSC::AssetFileEntry>(QXSC::AssetFileEntry{path}));
    return client.CreateAsset(QStringLiteral("Large"), QString(), 0, files, QString(), QString(),
                              nullptr);
}

double readFile(const QString &path)
{
    QByteArray piece(256 * 1024, Qt::Uninitialized);
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        times.push_back(milliseconds([&] {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
                throw std::runtime_error("the file is gone");
            while (file.read(piece.data(), piece.size()) > 0) {
            }
        }));
    }
    return medianOf(times);
}

/// Milliseconds of downloading a file of `largeAnswer` bytes.
double largeAnswerTime(Service &service, const QString &path)
{
    HttpServiceClient client;
    service.signIn(client);
    const QString guid = makeAsset(client, path);
    const QByteArray address = client.GetAssetValue(guid).toLatin1();
    const auto connection = service.connection();
    std::vector<double> times;
    for (int run = 0; run < 4 * runs; ++run) {
        times.push_back(milliseconds([&] {
            if (connection->download(address) != largeAnswer)
                throw std::runtime_error("an answer is not whole");
        }));
    }
    return medianOf(times);
}

void measureLargeAnswer(Service &service)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("answer.bin"));
    makeFile(path, largeAnswer / 1024 / 1024);
    line("answer of 10 MiB", largeAnswerTime(service, path), "ms", "reading the file",
         readFile(path));
}

/// What encryption adds, whatever the database.
void measureTls()
{
    std::printf("\n%s\n", "TLS");
    ZelTest::TestAuthority authority;
    Service encrypting(false, "minimal", &authority);
    Service plain(false);
    const auto connecting = [](const Service &service) {
        return medianMicroseconds(newConnections,
                                  [&] { service.stranger()->call("GET", "/healthz"); });
    };
    const auto reading = [](const Service &service) {
        const auto connection = service.connection();
        const auto read = [&] { connection->call("GET", readTarget); };
        medianMicroseconds(smallCalls, read); // opens what is opened once
        return medianMicroseconds(smallCalls, read);
    };
    line("first call of a connection by TLS", connecting(encrypting), "us", "by plain HTTP",
         connecting(plain));
    line("small call, session and one read, by TLS", reading(encrypting), "us", "by plain HTTP",
         reading(plain));
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("answer.bin"));
    makeFile(path, largeAnswer / 1024 / 1024);
    line("answer of 10 MiB by TLS", largeAnswerTime(encrypting, path), "ms", "by plain HTTP",
         largeAnswerTime(plain, path));
}

double psqlToNowhere(const Zel::DatabaseAddress &address, const QByteArray &sql)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PGPASSWORD"), address.password);
    process.setProcessEnvironment(environment);
    process.setStandardOutputFile(QProcess::nullDevice());
    return milliseconds([&] {
        process.start(QStringLiteral("psql"),
                      {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-h"),
                       address.host, QStringLiteral("-p"), QString::number(address.port),
                       QStringLiteral("-U"), address.user, QStringLiteral("-d"), address.database,
                       QStringLiteral("-c"), QString::fromLatin1(sql)});
        if (!process.waitForFinished(-1) || process.exitCode() != 0)
            throw std::runtime_error("psql failed");
    });
}

void measureList(Service &service, bool postgres)
{
    const QString database = service.process().database;
    AudienceFill fill(database);
    const AudienceFill::Filled filled = fill.fill(listedViews);
    const QDateTime start = QDateTime::fromMSecsSinceEpoch(filled.range.from);
    const QDateTime end = QDateTime::fromMSecsSinceEpoch(filled.range.to);
    HttpServiceClient client;
    service.signIn(client);
    std::vector<double> ours;
    std::vector<double> peer;
    for (int run = 0; run < runs; ++run) {
        QXSC::PageViewCollectionPtr views;
        ours.push_back(milliseconds([&] { views = client.GetPageViews(filled.guid, start, end); }));
        if (views->count() != filled.views)
            throw std::runtime_error("the list has lost views");
        peer.push_back(postgres
                           ? psqlToNowhere(Zel::DatabaseAddress::parse(database), viewsSql(filled))
                           : bareScan(database, filled));
    }
    line("100,000 rows to records of the client", medianOf(ours), "ms",
         postgres ? "psql to /dev/null" : "sqlite3 scan into structs", medianOf(peer));
}

void measureSignIns(bool postgres)
{
    Service service(postgres, "interactive");
    // The first one stores a hash of that cost in place of the sample's.
    service.connection();
    const double ours = rate(signInThreads, [&]() -> std::function<void()> {
        const std::shared_ptr<KeptConnection> own = service.stranger();
        return [own] { own->call("POST", "/v1/sessions", 201, Service::signInBody); };
    });
    const auto hasher =
        std::make_shared<Zel::PasswordHasher>(Zel::PasswordHasher::Cost::Interactive);
    const QString hash = hasher->hash(QStringLiteral("sample-maja"));
    const double bare = rate(signInThreads, [&]() -> std::function<void()> {
        return [hasher, hash] {
            if (!hasher->verify(hash, QStringLiteral("sample-maja")))
                throw std::runtime_error("a hash is wrong");
        };
    });
    line("sign-ins", ours, "per s", "bare verifications, as many threads", bare);
}

void measureUpload(bool postgres)
{
    constexpr qint64 mebibytes = 1024;
    constexpr int uploadRuns = 3;
    QTemporaryDir folder;
    const QString source = folder.filePath(QStringLiteral("source.bin"));
    makeFile(source, mebibytes);
    Service service(postgres);
    HttpServiceClient client;
    service.signIn(client);
    std::vector<double> copies;
    std::vector<double> uploads;
    for (int run = 0; run < uploadRuns; ++run) {
        copies.push_back(copySeconds(source, folder.filePath(QStringLiteral("copy.bin"))));
        uploads.push_back(uploadSeconds(client, source));
        service.process().runCommand(
            {QStringLiteral("trash"), QStringLiteral("purge"), QStringLiteral("--all")});
    }
    line("upload of 1 GiB", medianOf(uploads), "s", "cp and fsync", medianOf(copies));
}

void measure(bool postgres)
{
    std::printf("\n%s\n%-46s %10s %-9s %-38s %10s %9s\n", postgres ? "PostgreSQL" : "SQLite",
                "claim", "ours", "", "beside", "theirs", "ratio");
    Service service(postgres);
    std::unique_ptr<Service> other; // bare reads are of SQLite in either case
    if (postgres)
        other = std::make_unique<Service>(false);
    measureSmallCalls(service, (other ? *other : service).process().database);
    other.reset();
    measureIdle(service);
    measureLargeAnswer(service);
    measureList(service, postgres);
    measureUpload(postgres);
    measureSignIns(postgres);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QByteArray which = argc > 1 ? argv[1] : "both";
    std::signal(SIGPIPE, SIG_IGN); // a service that is gone is an error to be told
    try {
        if (which != "postgres")
            measure(false);
        if (which != "sqlite")
            measure(true);
        measureTls();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "bench_service: %s\n", error.what());
        return 1;
    }
    return 0;
}
