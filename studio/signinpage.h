// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "studio/sampleworkspace.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ZelWebServiceControls {
class Login;
}

namespace Studio {

class ErrorCenter;
class Settings;
class TrustedFile;

/// The first page: the sign-in control in a card, the people of the sample workspace below it.
///
/// It says what the control leaves to its host: refusals, a user without accounts, that the service
/// is still starting. Server and user name of the last sign-in are remembered, the password is not;
/// its box is emptied as soon as it has done its work.
class SignInPage : public QWidget
{
    Q_OBJECT

public:
    SignInPage(ErrorCenter &errors, Settings &settings, QWidget *parent = nullptr);

    /// What an empty server address means, in grey.
    void setServerHint(const QString &hint);
    /// The server address as it stands on the page; empty for the client's default server.
    QString server() const;
    void setServer(const QString &address);
    /// Names the people of the sample workspace. Fills one in unless another person or server is
    /// remembered.
    void offerPeople(const QList<SamplePerson> &people);
    /// Says whether the service on this computer is being started; signing in waits for `open`.
    void setStarting(bool starting);
    /// Lets people sign in with a client.
    void open(QXSC::ServiceClient *client);
    /// Back to the credentials, keeping server and user name.
    void returnToCredentials();

    /// The name typed, and the account chosen, once signed in.
    QString userName() const;
    QString accountName() const;

signals:
    void signedIn();
    /// Somebody signed in, but goes back instead of choosing an account.
    void abandoned();
    /// Another file of certificate authorities is to be trusted besides the system's; empty for
    /// none. It is remembered in the settings.
    void trustedFileChanged(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    template <typename Widget>
    Widget *part(const char *name) const;

    void build();
    QLayout *makeHeading(QWidget *card);
    QWidget *makeCard();
    void makeTrustedFile(QWidget *card);
    void showTrustedFile();
    QPushButton *makePersonButton(const SamplePerson &person);
    void fillIn(const SamplePerson &person);
    void say(const QString &text, bool isProblem);
    void refused();
    void accountsShown();
    void accountAnswered(bool byChoice);
    void pressAgain();
    void accepted();
    void takeFocus();
    void applyColors();

    ErrorCenter &m_errors;
    Settings &m_settings;
    ZelWebServiceControls::Login *m_login;
    // Parts of the sign-in control.
    QLineEdit *m_server;
    QLineEdit *m_user;
    QLineEdit *m_password;
    QPushButton *m_signIn;
    QWidget *m_accountPart;
    QComboBox *m_accounts;
    QPushButton *m_continue;

    QLabel *m_title;
    QLabel *m_subtitle;
    QLabel *m_message;
    QPushButton *m_back;
    TrustedFile *m_trusted;
    QWidget *m_people;
    QVariant m_lastAccount;
    bool m_messageIsProblem = false;
    bool m_callFailed = false;
};

} // namespace Studio
