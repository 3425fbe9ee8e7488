// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listview.h"
#include "studio/mainwindow.h"
#include "studio/studioapp.h"
#include "tests/studio/studiotesting.h"
#include "tests/studio/workspacefiles.h"

#include <QLabel>

/// The whole of Studio, as the program starts it.
struct RunningStudio
{
    static constexpr int Patience = 30000; // milliseconds; a loaded machine takes its time

    explicit RunningStudio(const Studio::Options &options)
        : app(options)
        , window(app.window())
    {
        app.start();
        window.activateWindow();
        list = StudioTesting::child<Zel::ListView>(window, "projectList");
    }

    /// Whether something comes true while events are handled.
    template <typename Condition>
    static bool comes(const Condition &condition)
    {
        return QTest::qWaitFor(condition, Patience);
    }

    bool isShown(const char *name) const { return StudioTesting::child(window, name)->isVisible(); }

    bool canSignIn() const
    {
        return comes([this] { return isShown("login") || isShown("errorBar"); }) &&
               isShown("login");
    }

    void signIn(const QString &user = QStringLiteral("tomas"),
                const QString &password = QStringLiteral("sample-tomas"))
    {
        StudioTesting::type(window, "qxUserName", user);
        StudioTesting::type(window, "qxPassword", password);
        StudioTesting::click(window, "login");
    }

    /// Signed in to the sample content; its one account is taken by itself.
    bool isWorking()
    {
        if (!canSignIn())
            return false;
        signIn();
        return list->count() > 20 && isShown("projectsPage") && !isShown("errorBar");
    }

    QString what() const { return StudioTesting::child<QLabel>(window, "errorWhat")->text(); }

    QString advice() const { return StudioTesting::child<QLabel>(window, "errorAdvice")->text(); }

    pid_t process() { return static_cast<pid_t>(app.embeddedService()->processId()); }

    Studio::StudioApp app;
    Studio::MainWindow &window;
    Zel::ListView *list;
};
