// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/httpserviceclient.h"
#include "studio/embeddedservice.h"
#include "studio/errorcenter.h"
#include "studio/settings.h"
#include "studio/waitnotice.h"

#include <chrono>
#include <memory>
#include <optional>

namespace Studio {

class MainWindow;

/// What Studio is started with.
struct Options
{
    /// A service elsewhere; empty for the one on this computer.
    QString server;
    /// The workspace file of the service on this computer; empty for the sample workspace.
    QString workspace;
    /// The path of zel-service.
    QString serviceProgram;
    /// How long a call may stay without any answer.
    std::chrono::seconds timeLimit{30};
};

/// Puts Studio together: the client, the service on this computer when no other is named, the
/// window. The one place that knows which implementation stands behind the contract.
class StudioApp : public QObject
{
    Q_OBJECT

public:
    explicit StudioApp(const Options &options);
    ~StudioApp() override;

    void start();

    MainWindow &window() { return *m_window; }

    QXSC::HttpServiceClient &client() { return m_client; }

    ErrorCenter &errors() { return m_errors; }

    WaitNotice &waitNotice() { return *m_waitNotice; }

    /// Null when the service is elsewhere.
    EmbeddedService *embeddedService() { return m_service.get(); }

private:
    void startOwnService();
    void watchOwnService();
    void startInBackground();
    void ownServiceReady();
    void letPeopleIn();
    /// A file of certificate authorities besides the system's, for all that comes from the network.
    void trust(const QString &caFile);
    /// Whether people sign in here and not to a server they have named.
    bool usesOwnService() const;
    Problem stoppedProblem(const QString &details) const;
    /// The same for a call it interrupted.
    Problem interruptedProblem(const Problem &interrupted) const;

    Options m_options;
    Settings m_settings;
    ErrorCenter m_errors;
    QXSC::HttpServiceClient m_client;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<EmbeddedService> m_service;
    std::optional<WaitNotice> m_waitNotice;
};

/// The workspace file of the sample content.
QString sampleWorkspaceFile();

/// Where thumbnails are kept from one start to the next.
QString pictureFolder();

} // namespace Studio
