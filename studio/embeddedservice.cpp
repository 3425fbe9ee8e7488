// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/embeddedservice.h"

#include "service/daemon/exitcodes.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QUrl>

namespace Studio {

namespace {

constexpr std::chrono::seconds StartLimit(30);
constexpr int StopLimit = 3000;        // milliseconds
constexpr qsizetype KeptLog = 8192;    // bytes of the service's log kept for problem details
constexpr qint64 PatienceOfEyes = 300; // milliseconds until waiting is shown
constexpr int Tick = 100;              // milliseconds

/// Added to the number of the signal that ended the service, as shells do.
constexpr int ExitBySignal = 128;

} // namespace

EmbeddedService::EmbeddedService(const QString &program, const QString &workspace, QObject *parent)
    : QObject(parent)
    , m_program(program)
    , m_workspace(workspace)
{
    m_startLimit.setSingleShot(true);
    m_startLimit.setInterval(StartLimit);
    connect(&m_startLimit, &QTimer::timeout, this, &EmbeddedService::giveUp);
    connect(&m_process, &QProcess::readyReadStandardOutput, this,
            &EmbeddedService::readAnnouncement);
    connect(&m_process, &QProcess::readyReadStandardError, this, &EmbeddedService::readLog);
    connect(&m_process, &QProcess::finished, this, &EmbeddedService::finished);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            failedToStart();
    });
}

EmbeddedService::~EmbeddedService()
{
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
    if (m_phase != Phase::Idle)
        return;
    QDir().mkpath(QFileInfo(m_workspace).absolutePath());
    m_log.clear();
    m_isTooLate = false;
    m_startLimit.start();
    next();
}

void EmbeddedService::next()
{
    if (!m_imports.isEmpty())
        run(Phase::Importing, {QStringLiteral("import"), m_imports.constFirst(),
                               QStringLiteral("--database"), m_workspace});
    else
        run(Phase::Starting,
            {QStringLiteral("serve"), QStringLiteral("--database"), m_workspace,
             QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(m_port),
             QStringLiteral("--exit-with-parent")});
}

void EmbeddedService::run(Phase phase, const QStringList &arguments)
{
    m_phase = phase;
    m_output.clear();
    m_process.start(m_program, arguments);
}

void EmbeddedService::readAnnouncement()
{
    static const QByteArray prefix = "listening on ";
    const QByteArray output = m_process.readAllStandardOutput();
    if (m_phase != Phase::Starting)
        return;
    m_output += output;
    if (!m_output.startsWith(prefix) || !m_output.contains('\n'))
        return;
    m_address = QString::fromLatin1(m_output.left(m_output.indexOf('\n')).mid(prefix.size()));
    m_port = QUrl(m_address).port();
    m_phase = Phase::Running;
    m_hasRun = true;
    m_startLimit.stop();
    emit ready();
}

void EmbeddedService::readLog()
{
    m_log = (m_log + m_process.readAllStandardError()).right(KeptLog);
}

void EmbeddedService::finished(int code, QProcess::ExitStatus status)
{
    const Phase phase = m_phase;
    const int exitCode = status == QProcess::NormalExit ? code : ExitBySignal + code;
    m_phase = Phase::Idle;
    m_address.clear();
    readLog();
    if (phase == Phase::Running) {
        emit ended();
    } else if (phase == Phase::Importing && exitCode == Zel::Service::ExitFine) {
        m_imports.removeFirst();
        next();
    } else if (phase == Phase::Starting && exitCode == Zel::Service::ExitAddressInUse &&
               m_port != 0) {
        m_port = 0; // the old port was taken meanwhile: any other will do
        next();
    } else {
        fail(startProblem(phase, exitCode));
    }
}

void EmbeddedService::failedToStart()
{
    m_phase = Phase::Idle;
    Problem problem;
    problem.what = tr("The program of the service could not be started.");
    problem.advice = tr("Check that zel-service is installed beside Studio, or name it with studio "
                        "--service-program FILE.");
    problem.details = QStringLiteral("Program: %1\n%2").arg(m_program, m_process.errorString());
    problem.canRetry = true;
    fail(problem);
}

void EmbeddedService::fail(const Problem &problem)
{
    m_startLimit.stop();
    emit failed(problem);
}

void EmbeddedService::giveUp()
{
    m_isTooLate = true;
    m_process.kill(); // `finished` tells the rest
}

bool EmbeddedService::ensureRunning(QXSC::WaitObserver *observer)
{
    if (m_phase == Phase::Running)
        m_process.waitForFinished(0); // the news of its end may not have arrived yet
    start();
    QElapsedTimer waited;
    waited.start();
    bool isShown = false;
    while (m_phase != Phase::Running && m_phase != Phase::Idle) {
        m_process.waitForReadyRead(Tick);
        if (waited.hasExpired(m_startLimit.interval()) && !m_isTooLate)
            giveUp();
        if (observer && waited.hasExpired(PatienceOfEyes)) {
            isShown = true;
            observer->waiting(std::chrono::milliseconds(waited.elapsed()));
        }
    }
    if (isShown)
        observer->finished();
    return m_phase == Phase::Running;
}

bool EmbeddedService::hasEnded()
{
    constexpr int Moment = 50; // milliseconds for the news of an end to arrive
    if (m_phase == Phase::Running)
        m_process.waitForFinished(Moment);
    return m_hasRun && m_phase == Phase::Idle;
}

Problem EmbeddedService::startProblem(Phase phase, int exitCode) const
{
    Problem problem;
    problem.what = phase == Phase::Importing
                       ? tr("The sample content could not be put into the workspace.")
                       : tr("The service on this computer could not be started.");
    problem.advice = tr("Try again. If it keeps failing, copy the details and send them to "
                        "support.");
    problem.canRetry = true;
    if (m_isTooLate) {
        problem.what = tr("The service on this computer did not come up in time.");
    } else if (exitCode == Zel::Service::ExitNewerDatabase) {
        problem.what = tr("The workspace was made by a newer version of this program.");
        problem.advice = tr("Update Studio, or start it with another workspace (studio --workspace "
                            "FILE). Nothing was changed.");
        problem.canRetry = false;
    } else if (exitCode == Zel::Service::ExitCorruptDatabase) {
        problem.what = tr("The workspace file is damaged or is no workspace.");
        problem.advice = tr("Start Studio with another workspace (studio --workspace FILE), or put "
                            "a copy of yours back and try again. The file was left as it is.");
    }
    problem.details = QStringLiteral("Workspace: %1\nProgram: %2 (exit code %3)")
                          .arg(m_workspace, m_program)
                          .arg(exitCode);
    if (!m_log.isEmpty())
        problem.details += QLatin1Char('\n') + logTail();
    return problem;
}

} // namespace Studio
