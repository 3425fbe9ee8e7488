// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/serviceprocess.h"

#include "tests/contract/ports.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>

#include <sys/prctl.h>

namespace ZelTest {

namespace {

constexpr int startTimeMs = 60'000;
constexpr int commandTimeMs = 300'000; // an import of everything on a loaded machine

QString programPath()
{
    return QStringLiteral(ZEL_BIN_DIR "/zel-service");
}

} // namespace

ServiceProcess::~ServiceProcess()
{
    if (isRunning() && stop() == -1)
        kill();
}

QString ServiceProcess::sampleFolder()
{
    return QStringLiteral(ZEL_SOURCE_DIR "/samples/workspace");
}

QStringList ServiceProcess::sampleWorkspace()
{
    QStringList files;
    const QFileInfoList all = QDir(sampleFolder()).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : all) {
        if (file.fileName() != QLatin1String("deployments.csv"))
            files << file.filePath();
    }
    return files;
}

bool ServiceProcess::fail(const QString &why)
{
    m_error = why;
    return false;
}

bool ServiceProcess::start()
{
    return prepareDatabase() && startAgain();
}

bool ServiceProcess::hasFolder()
{
    return m_folder.isValid() ||
           fail(QStringLiteral("no temporary folder: ") + m_folder.errorString());
}

bool ServiceProcess::prepareDatabase()
{
    if (!hasFolder())
        return false;
    if (database.isEmpty())
        database = m_folder.filePath(QStringLiteral("workspace.db"));
    QByteArray output;
    if (runCommand({QStringLiteral("migrate")}, &output) != 0)
        return fail(QStringLiteral("migrate failed: ") + QString::fromUtf8(output));
    const QStringList import =
        QStringList{QStringLiteral("import"), QStringLiteral("--sign-in-cost"),
                    QStringLiteral("minimal")} +
        importPaths;
    if (!importPaths.isEmpty() && runCommand(import, &output) != 0)
        return fail(QStringLiteral("import failed: ") + QString::fromUtf8(output));
    return true;
}

QProcessEnvironment ServiceProcess::environment()
{
    if (files.isEmpty())
        files = m_folder.filePath(QStringLiteral("files"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZEL_FILES"), files);
    environment.insert(QStringLiteral("ZEL_BLOBS"), blobs);
    return environment;
}

QStringList ServiceProcess::serveArguments() const
{
    QStringList all{QStringLiteral("serve"),
                    QStringLiteral("--database"),
                    database,
                    QStringLiteral("--listen"),
                    QStringLiteral("127.0.0.1:%1").arg(m_port),
                    QStringLiteral("--sign-in-cost"),
                    QStringLiteral("minimal")};
    if (!tls.certificate.isEmpty())
        all << QStringLiteral("--certificate") << tls.certificate << QStringLiteral("--key")
            << tls.key;
    return all + arguments;
}

bool ServiceProcess::startAgain()
{
    if (!hasFolder())
        return false;
    if (m_port == 0)
        m_port = freePort();
    if (!tls.certificate.isEmpty())
        m_scheme = QStringLiteral("https://");
    m_process.setProcessEnvironment(environment());
    m_process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    // A pipe that nobody reads while a test waits for something else would fill and stop it.
    if (logPath.isEmpty())
        logPath = m_folder.filePath(QStringLiteral("service.log"));
    m_process.setStandardErrorFile(logPath, QIODevice::Append);
    m_process.start(programPath(), serveArguments());
    const QByteArray prefix = "listening on " + m_scheme.toLatin1() + "127.0.0.1:";
    QByteArray line;
    const QDeadlineTimer deadline(startTimeMs);
    while (!line.endsWith('\n')) {
        if (deadline.hasExpired() || (!isRunning() && m_process.bytesAvailable() == 0)) {
            kill();
            return fail(QStringLiteral("serve does not start: ") + QString::fromUtf8(line + log()));
        }
        m_process.waitForReadyRead(100);
        line += m_process.readLine();
    }
    m_port = line.startsWith(prefix) ? line.mid(prefix.size()).trimmed().toUShort() : 0;
    return m_port != 0 || fail(QStringLiteral("serve said: ") + QString::fromUtf8(line));
}

void ServiceProcess::terminate()
{
    if (isRunning())
        ::kill(static_cast<pid_t>(m_process.processId()), SIGTERM);
}

void ServiceProcess::hangUp()
{
    if (isRunning())
        ::kill(static_cast<pid_t>(m_process.processId()), SIGHUP);
}

int ServiceProcess::stop()
{
    terminate();
    return waitForEnd();
}

int ServiceProcess::waitForEnd(int milliseconds)
{
    if (isRunning() && !m_process.waitForFinished(milliseconds))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

void ServiceProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

QByteArray ServiceProcess::log() const
{
    QFile file(logPath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int ServiceProcess::runCommand(const QStringList &commandLine, QByteArray *output)
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(programPath(), commandLine + QStringList{QStringLiteral("--database"), database});
    process.closeWriteChannel();
    const bool ended = process.waitForFinished(commandTimeMs);
    if (output)
        *output = process.readAll();
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

} // namespace ZelTest
