// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/studioapp.h"

#include "datavisualization/gridchart.h"
#include "records/datarecordmanager.h"
#include "studio/mainwindow.h"
#include "studio/sampleworkspace.h"
#include "studio/signinpage.h"
#include "webcontrols/webimagesource.h"

#include <QStandardPaths>

namespace Studio {

QString sampleWorkspaceFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/zel-studio/sample.workspace");
}

QString pictureFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/zel-studio/pictures");
}

StudioApp::StudioApp(const Options &options)
    : m_options(options)
{
    applyAppearance(m_settings.appearance());
    ZelWebServiceControls::introduceFieldWidgets();
    ZelDataVisualization::introduceGridChart();
    m_window = std::make_unique<MainWindow>(m_client, m_client, m_errors, m_settings);
    trust(m_settings.caFile());
    connect(m_window->signInPage(), &SignInPage::trustedFileChanged, this, &StudioApp::trust);
    ZelWebControls::WebImageSource::shared()->setCacheFolder(pictureFolder());
    m_waitNotice.emplace(m_window.get());
    m_client.setWaitObserver(&*m_waitNotice);
}

StudioApp::~StudioApp()
{
    m_client.setWaitObserver(nullptr);
    m_client.signOut(); // nobody else shall go on with a session that nobody needs
}

void StudioApp::trust(const QString &caFile)
{
    QXSC::NetworkPolicy policy = m_client.networkPolicy();
    policy.inactivityLimit = m_options.timeLimit;
    policy.caFile = caFile;
    m_client.setNetworkPolicy(policy);
    ZelWebControls::WebImageSource::shared()->setNetworkPolicy(policy);
}

void StudioApp::start()
{
    if (m_options.server.isEmpty()) {
        startOwnService();
    } else {
        m_client.setDefaultServer(m_options.server);
        m_window->signInPage()->setServer(m_options.server);
        m_window->signInPage()->open(&m_client);
    }
    m_window->show();
}

void StudioApp::startOwnService()
{
    const bool sample = m_options.workspace.isEmpty();
    m_service = std::make_unique<EmbeddedService>(
        m_options.serviceProgram, sample ? sampleWorkspaceFile() : m_options.workspace);
    SignInPage *page = m_window->signInPage();
    page->setServerHint(tr("This computer"));
    const QString samples = sample ? sampleFolder() : QString();
    if (!samples.isEmpty()) {
        m_service->setImports({samples});
        page->offerPeople(samplePeople(samples));
    }
    watchOwnService();
    startInBackground();
}

void StudioApp::startInBackground()
{
    m_window->signInPage()->setStarting(!m_service->isRunning());
    m_service->start();
}

void StudioApp::watchOwnService()
{
    connect(m_service.get(), &EmbeddedService::ready, this, &StudioApp::ownServiceReady);
    connect(m_service.get(), &EmbeddedService::failed, this, [this](const Problem &problem) {
        letPeopleIn(); // a server elsewhere can still be named
        m_errors.report(problem, [this] { startInBackground(); });
    });
    connect(m_service.get(), &EmbeddedService::ended, this, [this] {
        // A call that was under way has told it with what it interrupted, and retries that.
        if (usesOwnService() && !(m_errors.canRetry() && m_errors.problem().isConnection))
            m_errors.report(stoppedProblem(QString()), [this] { startInBackground(); });
    });
    m_errors.setRefine([this](Problem &problem) {
        if (problem.isConnection && usesOwnService() && m_service->hasEnded())
            problem = interruptedProblem(problem);
    });
    m_errors.setBeforeRetry(
        [this] { return !usesOwnService() || m_service->ensureRunning(&*m_waitNotice); });
}

bool StudioApp::usesOwnService() const
{
    return m_window->signInPage()->server().isEmpty();
}

Problem StudioApp::stoppedProblem(const QString &details) const
{
    Problem problem;
    problem.what = tr("The service on this computer has stopped.");
    problem.advice = tr("Nothing on screen is lost. Retry starts it again.");
    problem.details = m_service->logTail();
    if (!details.isEmpty())
        problem.details.prepend(details + QLatin1Char('\n'));
    problem.canRetry = true;
    problem.isConnection = true;
    return problem;
}

Problem StudioApp::interruptedProblem(const Problem &interrupted) const
{
    Problem problem = stoppedProblem(interrupted.details);
    // A sentence that begins with a name, as of a file, tells what else a person has to know.
    if (interrupted.what.startsWith(QLatin1Char('"'))) {
        problem.advice = problem.what + QLatin1Char(' ') + problem.advice;
        problem.what = interrupted.what;
        problem.details.prepend(interrupted.advice + QLatin1Char('\n'));
    }
    return problem;
}

void StudioApp::ownServiceReady()
{
    m_client.setDefaultServer(m_service->address());
    letPeopleIn();
}

void StudioApp::letPeopleIn()
{
    if (m_client.isSignedIn())
        return;
    m_window->signInPage()->setStarting(false);
    m_window->signInPage()->open(&m_client);
}

} // namespace Studio
