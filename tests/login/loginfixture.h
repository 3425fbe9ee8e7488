// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "login/login.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

/// A sign-in control on a form of its own, bound to nothing yet, and a trail of what happens: every
/// call, event and error in order, each with the view at that moment.
class LoginFixture
{
public:
    LoginFixture()
        : login(new ZelWebServiceControls::Login(&form))
    {
        using ZelWebServiceControls::Login;
        login->resize(480, 320);
        client.accounts = ZelTest::accountList({{QStringLiteral("Aurora"), 7}});
        client.atCall = [this](const QString &call) { note(call); };
        QObject::connect(login, &Login::Success, [this] { note(QStringLiteral("Success")); });
        QObject::connect(login, &Login::Failure, [this] { note(QStringLiteral("Failure")); });
        QObject::connect(login, &Login::runtimeError, [this](const Zel::RuntimeError &error) {
            note(QStringLiteral("error %1").arg(error.number()));
        });
        form.show();
        form.activateWindow();
    }

    ~LoginFixture()
    {
        // The trail must not be written to while the members go.
        delete login;
    }

    Q_DISABLE_COPY_MOVE(LoginFixture)

    void bind() { login->Init(&client, QStringLiteral("Stage")); }

    template <typename Widget = QWidget>
    Widget *child(const char *name) const
    {
        auto *found = login->findChild<Widget *>(QLatin1String(name));
        if (!found)
            qFatal("the control has no child %s", name);
        return found;
    }

    bool isShown(const char *name) const { return child(name)->isVisible(); }

    void click(const char *name) const { QTest::mouseClick(child(name), Qt::LeftButton); }

    /// Types over what a box holds.
    void type(const char *name, const QString &text) const
    {
        QTest::keyClick(child(name), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(child(name), Qt::Key_Delete);
        QTest::keyClicks(child(name), text);
    }

    void typeCredentials() const
    {
        type("qxUrl", QStringLiteral("https://media.example.org"));
        type("qxUserName", QStringLiteral("mira"));
        type("qxPassword", QStringLiteral("s3cret"));
    }

    /// Which of the two views a person sees.
    QString view() const
    {
        const bool credentials = isShown("loginFrame");
        const bool accounts = isShown("selectAccountFrame");
        if (credentials && accounts)
            return QStringLiteral("both views");
        if (credentials)
            return QStringLiteral("credentials");
        return accounts ? QStringLiteral("accounts") : QStringLiteral("neither view");
    }

    QStringList takeTrail() { return std::exchange(trail, {}); }

    ZelTest::RecordingClient client;
    ZelTest::MessageBoxDriver boxes;
    QWidget form;
    QPointer<ZelWebServiceControls::Login> login;
    QStringList trail;

private:
    void note(const QString &what)
    {
        trail << (login ? what + QStringLiteral(" | ") + view() : what);
    }
};
