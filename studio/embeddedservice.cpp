// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/embeddedservice.h"

#include "common/contract/serviceerror.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace Studio {

namespace {

constexpr int StartLimit = 10000; // milliseconds
constexpr int StopLimit = 3000;
constexpr qsizetype KeptLog = 8192; // bytes of the service's log kept for problem details
constexpr int ExitNewerWorkspace = 3;
constexpr int ExitCorruptWorkspace = 4;
constexpr int ExitPortInUse = 5;

} // namespace

EmbeddedService::EmbeddedService(const QString &program, const QString &workspace, QObject *parent)
    : QObject(parent)
    , m_program(program)
    , m_workspace(workspace)
{
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            &EmbeddedService::readAnnouncement);
    connect(&m_process, &QProcess::readyReadStandardError, this,
            [this] { m_log = (m_log + m_process.readAllStandardError()).right(KeptLog); });
    connect(&m_process, &QProcess::finished, this, &EmbeddedService::processFinished);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            processFinished(-1, QProcess::CrashExit);
    });
}

EmbeddedService::~EmbeddedService()
{
    m_phase = Phase::Stopping;
    m_process.disconnect(this);
    if (m_process.state() == QProcess::NotRunning)
        return;
    // The end of its input tells the service to finish what it does and go.
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(StopLimit)) {
        m_process.kill();
        m_process.waitForFinished(StopLimit);
    }
}

void EmbeddedService::start()
{
    QDir().mkpath(QFileInfo(m_workspace).absolutePath());
    importNext();
}

void EmbeddedService::importNext()
{
    m_log.clear();
    if (m_imports.isEmpty()) {
        serve();
        return;
    }
    m_phase = Phase::Importing;
    m_process.start(m_program, {QStringLiteral("import"), m_imports.constFirst(),
                                QStringLiteral("--database"), m_workspace});
}

void EmbeddedService::serve()
{
    m_phase = Phase::Starting;
    m_output.clear();
    m_address.clear();
    m_process.start(m_program,
                    {QStringLiteral("serve"), QStringLiteral("--database"), m_workspace,
                     QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(m_port),
                     QStringLiteral("--exit-with-parent")});
}

void EmbeddedService::readAnnouncement()
{
    m_output += m_process.readAllStandardOutput();
    static const QByteArray prefix = "listening on ";
    if (m_phase != Phase::Starting || !m_output.startsWith(prefix) || !m_output.contains('\n'))
        return;
    m_address = QString::fromLatin1(m_output.left(m_output.indexOf('\n')).mid(prefix.size()));
    m_port = QUrl(m_address).port();
    m_phase = Phase::Running;
    emit ready();
}

void EmbeddedService::processFinished(int exitCode, QProcess::ExitStatus status)
{
    const Phase phase = m_phase;
    m_phase = Phase::Idle;
    m_address.clear();
    m_log = (m_log + m_process.readAllStandardError()).right(KeptLog);
    const bool fine = status == QProcess::NormalExit && exitCode == 0;
    if (phase == Phase::Importing && fine) {
        m_imports.removeFirst();
        importNext();
    } else if (phase == Phase::Starting && exitCode == ExitPortInUse && m_port != 0) {
        m_port = 0; // the old port was taken meanwhile: any other will do
        serve();
    } else if (phase == Phase::Running) {
        emit ended();
    } else if (phase == Phase::Importing) {
        emit failed(
            failure(tr("The sample content could not be put into the workspace."), exitCode));
    } else if (phase == Phase::Starting) {
        emit failed(failure(tr("The service on this computer could not be started."), exitCode));
    }
}

void EmbeddedService::ensureRunning()
{
    if (m_phase == Phase::Running && m_process.state() == QProcess::Running)
        return;
    if (m_phase == Phase::Running) {
        m_phase = Phase::Idle;
        m_address.clear();
    }
    if (m_phase == Phase::Idle)
        importNext();
    QDeadlineTimer deadline(StartLimit);
    while (!isRunning() && m_phase != Phase::Idle && !deadline.hasExpired())
        m_process.waitForReadyRead(100);
    if (!isRunning())
        throw QXSC::ServiceError(QXSC::ServiceError::Kind::Unreachable,
                                 tr("The service on this computer did not come back."), QString(),
                                 QString::fromUtf8(m_log));
}

bool EmbeddedService::hasEnded()
{
    constexpr int Moment = 50; // milliseconds for the news of an end to arrive
    if (m_phase == Phase::Running)
        m_process.waitForFinished(Moment);
    return m_phase == Phase::Idle && m_port != 0;
}

Problem EmbeddedService::failure(const QString &what, int exitCode) const
{
    Problem problem;
    problem.what = what;
    problem.canRetry = true;
    switch (exitCode) {
    case ExitNewerWorkspace:
        problem.what = tr("The workspace was made by a newer version of this program.");
        problem.advice =
            tr("Update Studio, or start it with another workspace. Nothing was changed.");
        problem.canRetry = false;
        break;
    case ExitCorruptWorkspace:
        problem.what = tr("The workspace file is damaged or is no workspace.");
        problem.advice =
            tr("Start Studio with another workspace (studio --workspace FILE), or put a "
               "copy of yours back. The file was left as it is.");
        problem.canRetry = false;
        break;
    default:
        problem.advice = tr("Try again. If it keeps failing, copy the details and send them to "
                            "support.");
    }
    problem.details =
        tr("Workspace: %1\nProgram: %2 (exit code %3)").arg(m_workspace, m_program).arg(exitCode);
    if (!m_log.isEmpty())
        problem.details += QLatin1Char('\n') + QString::fromUtf8(m_log).trimmed();
    return problem;
}

} // namespace Studio
