// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "studio/sampleworkspace.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace ZelWebServiceControls {
class Login;
}

namespace Studio {

class ErrorCenter;
class Settings;

/// The first page: the sign-in control in a card, the people of the sample workspace below it.
class SignInPage : public QWidget
{
    Q_OBJECT

public:
    SignInPage(ErrorCenter &errors, Settings &settings, QWidget *parent = nullptr);

    /// Names the people of the sample workspace and fills the first one in.
    void offerPeople(const QList<SamplePerson> &people);
    /// Says that the service on this computer is being started; signing in waits for `open`.
    void showStarting();
    /// Lets people sign in with a client. `ownService`: an empty address means this computer.
    void open(QXSC::ServiceClient *client, bool ownService);
    /// Back to the credentials, keeping what was typed.
    void returnToCredentials();

    /// The name typed, and the account chosen, once signed in.
    QString userName() const;
    QString accountName() const;

signals:
    void signedIn();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void build();
    QWidget *makeCard();
    void fillIn(const SamplePerson &person);
    void say(const QString &text, bool isProblem);
    void accountsShown();
    void setHeading(const QString &title, const QString &subtitle);
    void remember();
    void applyColors();

    ErrorCenter &m_errors;
    Settings &m_settings;
    ZelWebServiceControls::Login *m_login;
    QWidget *m_card;
    QLabel *m_message;
    QLabel *m_title;
    QLabel *m_subtitle;
    QPushButton *m_back;
    QWidget *m_people;
    bool m_messageIsProblem = false;
};

} // namespace Studio
