// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/postgresserver.h"

#include "tests/contract/ports.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

#include <csignal>

#include <grp.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace ZelTest {

namespace {

const QString toolFolder = QStringLiteral("/usr/lib/postgresql/15/bin/");
const QString superUser = QStringLiteral("zel");
constexpr int toolTimeMs = 60'000;

/// The user to run as when this process is root, which PostgreSQL refuses to run as.
const passwd *unprivilegedUser()
{
    if (geteuid() != 0)
        return nullptr;
    const passwd *user = getpwnam("postgres");
    return user ? user : getpwnam("nobody");
}

/// Runs in the child before the tool is: gives up root and dies with the parent.
void prepare(QProcess &process)
{
    const passwd *user = unprivilegedUser();
    const uid_t uid = user ? user->pw_uid : geteuid();
    const gid_t gid = user ? user->pw_gid : getegid();
    const bool change = user != nullptr;
    process.setChildProcessModifier([change, uid, gid] {
        if (change && (setgroups(0, nullptr) != 0 || setgid(gid) != 0 || setuid(uid) != 0))
            _exit(127);
        prctl(PR_SET_PDEATHSIG, SIGQUIT);
    });
    process.setProcessChannelMode(QProcess::MergedChannels);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    process.setProcessEnvironment(environment);
}

QString dataFolder(const QTemporaryDir &folder)
{
    return folder.filePath(QStringLiteral("data"));
}

/// Where files that nobody has worked with lie for others; those of each user apart.
QString keptFolder()
{
    return QStringLiteral(ZEL_TEST_FOLDER "/postgresql-15-%1").arg(geteuid());
}

/// With owners and rights, on which PostgreSQL insists.
bool copyFolder(const QString &from, const QString &to)
{
    return QProcess::execute(QStringLiteral("cp"),
                             {QStringLiteral("--archive"), QStringLiteral("--no-target-directory"),
                              from, to}) == 0;
}

} // namespace

PostgresServer::~PostgresServer()
{
    stop();
}

bool PostgresServer::fail(const QString &why)
{
    m_error = why;
    return false;
}

bool PostgresServer::start()
{
    for (const char *tool : {"initdb", "postgres"}) {
        if (!QFileInfo(toolFolder + QLatin1String(tool)).isExecutable())
            return fail(QStringLiteral("%1%2 is missing; install postgresql-15")
                            .arg(toolFolder, QLatin1String(tool)));
    }
    return initialize() && launch();
}

bool PostgresServer::initialize()
{
    if (!m_folder.isValid())
        return fail(QStringLiteral("no temporary folder: ") + m_folder.errorString());
    m_password = QUuid::createUuid().toString(QUuid::Id128);
    QFile passwordFile(m_folder.filePath(QStringLiteral("password")));
    if (!passwordFile.open(QIODevice::WriteOnly) || passwordFile.write(m_password.toLatin1()) < 0)
        return fail(QStringLiteral("the password file cannot be written"));
    passwordFile.close();
    if (const passwd *user = unprivilegedUser()) {
        for (const QString &path : {m_folder.path(), passwordFile.fileName()}) {
            if (chown(path.toLocal8Bit().constData(), user->pw_uid, user->pw_gid) != 0)
                return fail(QStringLiteral("the temporary folder cannot be given away"));
        }
    }
    if (takeKept())
        return true;
    if (!makeCluster(passwordFile.fileName()))
        return false;
    keep();
    return true;
}

bool PostgresServer::makeCluster(const QString &passwordFile)
{
    QProcess process;
    prepare(process);
    process.setWorkingDirectory(m_folder.path());
    process.start(toolFolder + QLatin1String("initdb"),
                  {QStringLiteral("--pgdata"), dataFolder(m_folder), QStringLiteral("--username"),
                   superUser, QStringLiteral("--pwfile"), passwordFile,
                   QStringLiteral("--auth=scram-sha-256"), QStringLiteral("--encoding=UTF8"),
                   QStringLiteral("--locale=C.UTF-8"), QStringLiteral("--no-sync"),
                   QStringLiteral("--no-instructions")});
    if (!process.waitForFinished(toolTimeMs) || process.exitCode() != 0)
        return fail(QStringLiteral("initdb failed: ") + QString::fromUtf8(process.readAll()));
    return true;
}

bool PostgresServer::takeKept()
{
    QFile password(keptFolder() + QLatin1String("/password"));
    if (!password.open(QIODevice::ReadOnly))
        return false;
    if (!copyFolder(keptFolder() + QLatin1String("/data"), dataFolder(m_folder))) {
        QDir(dataFolder(m_folder)).removeRecursively();
        return false;
    }
    m_password = QString::fromLatin1(password.readAll());
    return true;
}

void PostgresServer::keep()
{
    QTemporaryDir folder(keptFolder());
    QFile password(folder.filePath(QStringLiteral("password")));
    if (!folder.isValid() || !password.open(QIODevice::WriteOnly) ||
        password.write(m_password.toLatin1()) < 0)
        return;
    password.close();
    // Whole or not at all; another test may have come first.
    if (copyFolder(dataFolder(m_folder), dataFolder(folder)) &&
        QDir().rename(folder.path(), keptFolder()))
        folder.setAutoRemove(false);
}

bool PostgresServer::takeFreePort()
{
    m_port = freePort();
    return m_port != 0 || fail(QStringLiteral("no free port"));
}

bool PostgresServer::launch()
{
    // Someone may take the port in between; then another one is tried.
    for (int attempt = 0; attempt < 3; ++attempt) {
        if (takeFreePort() && startAgain())
            return true;
    }
    return false;
}

bool PostgresServer::startAgain()
{
    prepare(m_process);
    m_process.setWorkingDirectory(m_folder.path());
    // A pipe that nobody reads while a test waits for its threads would fill, and the server would
    // stand still with a page of its own locked.
    QFile log(m_folder.filePath(QStringLiteral("postgres.log")));
    m_process.setStandardOutputFile(log.fileName(), QIODevice::Append);
    const qint64 before = log.size();
    m_process.start(
        toolFolder + QLatin1String("postgres"),
        {QStringLiteral("-D"), m_folder.filePath(QStringLiteral("data")), QStringLiteral("-p"),
         QString::number(m_port), QStringLiteral("-clisten_addresses=127.0.0.1"),
         QStringLiteral("-cunix_socket_directories="), QStringLiteral("-cfsync=off"),
         QStringLiteral("-cfull_page_writes=off"), QStringLiteral("-cmax_connections=60")});
    QByteArray output;
    const QDeadlineTimer deadline(toolTimeMs);
    while (!output.contains("ready to accept connections")) {
        if (deadline.hasExpired() || m_process.state() == QProcess::NotRunning) {
            stop(true);
            return fail(QStringLiteral("postgres does not start: ") + QString::fromUtf8(output));
        }
        m_process.waitForFinished(20);
        if ((log.isOpen() || log.open(QIODevice::ReadOnly)) && log.seek(before))
            output = log.readAll();
    }
    return true;
}

void PostgresServer::stop(bool crash)
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    // SIGINT is the server's orderly, SIGQUIT its immediate end.
    kill(static_cast<pid_t>(m_process.processId()), crash ? SIGQUIT : SIGINT);
    if (m_process.waitForFinished(toolTimeMs))
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QString PostgresServer::run(const QString &sql)
{
    const QString name = QStringLiteral("postgres-server-run");
    QString result;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
        database.setHostName(QStringLiteral("127.0.0.1"));
        database.setPort(m_port);
        database.setUserName(superUser);
        database.setPassword(m_password);
        database.setDatabaseName(QStringLiteral("postgres"));
        QSqlQuery query(database);
        if (!database.open()) {
            m_error = database.lastError().text();
        } else if (!query.exec(sql)) {
            m_error = query.lastError().text();
        } else {
            result = QLatin1String("");
            if (query.next())
                result = query.value(0).toString();
        }
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

QString PostgresServer::newDatabase(const QString &copyOf)
{
    const QString name = QStringLiteral("zel_%1").arg(++m_databases);
    const QString from = copyOf.isEmpty() ? QStringLiteral("template1") : copyOf;
    if (run(QStringLiteral("CREATE DATABASE %1 TEMPLATE %2").arg(name, from)).isNull())
        return QString();
    return QStringLiteral("postgresql://%1:%2@127.0.0.1:%3/%4")
        .arg(superUser, m_password)
        .arg(m_port)
        .arg(name);
}

} // namespace ZelTest
