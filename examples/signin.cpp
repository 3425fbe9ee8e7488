// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A form of your own with the sign-in control: what to connect, and when to hand over the client.

#include "login/login.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

using ZelWebServiceControls::Login;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);

    // The one client of the program. This one only plays a service, which lets in whoever gives a
    // name, so that the example runs by itself; a real host makes a QXSC::HttpServiceClient.
    ZelTest::RecordingClient client;
    client.accounts = ZelTest::accountList(
        {{QStringLiteral("Aurora Media"), 7}, {QStringLiteral("Borealis Events"), 8}});

    QWidget form;
    Login login(&form);
    QLabel message(&form);
    QVBoxLayout column(&form);
    column.addWidget(&login);
    column.addWidget(&message);
    client.atCall = [&](const QString &) { client.authenticated = !login.UserName().isEmpty(); };

    // An account is active: the client can go to the Init of every other control now.
    QObject::connect(&login, &Login::Success,
                     [&] { message.setText(QStringLiteral("Signed in: ") + login.UserName()); });
    // The service said no. The control shows nothing itself; telling the person is the host's part.
    QObject::connect(&login, &Login::Failure,
                     [&] { message.setText(QStringLiteral("User name or password is wrong.")); });
    // A call failed, for instance because the network is down.
    QObject::connect(&login, &Login::runtimeError,
                     [&](const Zel::RuntimeError &error) { message.setText(error.description()); });

    // Until here there is no button to sign in with.
    login.Init(&client, QStringLiteral("Sign-in example"));
    form.show();
    if (QApplication::arguments().contains(QStringLiteral("--smoke")))
        QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}
