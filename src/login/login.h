// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceclient.h"
#include "platform/widgets/control.h"
#include "platform/widgets/systemcolor.h"

#include <QPointer>

class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ZelWebServiceControls {

/// Signs a person in to the service and lets them choose an account: the first control a host
/// shows.
///
///     auto *login = new Login(this);
///     connect(login, &Login::Success, this, &Window::openProjects);
///     login->Init(&client, "My Application");
///
/// The host keeps the client alive and hands the same object, now signed in, to its other controls.
/// `Success` comes once an account is active, `Failure` when the service refused the credentials;
/// the control itself says nothing about a refusal. A call that fails, as opposed to one refused,
/// reaches the host as a run-time error.
///
/// Use it when people type their credentials; a host that has them already signs in through the
/// client itself.
class ZEL_EXPORT Login : public Zel::Control
{
    Q_OBJECT
    /// Background of the control and its frames; default the system's button face, 0x8000000F.
    Q_PROPERTY(uint BackColor READ BackColor WRITE setBackColor STORED false)
    /// The text of the server address box; default empty.
    Q_PROPERTY(QString LoginURL READ LoginURL WRITE setLoginURL STORED false)
    /// The text of the user name box; default empty.
    Q_PROPERTY(QString UserName READ UserName WRITE setUserName STORED false)
    /// The text of the password box; default empty.
    Q_PROPERTY(QString Password READ Password WRITE setPassword STORED false)
    /// Whether the server address row is shown; default true.
    Q_PROPERTY(bool ShowLoginURL READ ShowLoginURL WRITE setShowLoginURL STORED false)
    /// Whether calls go through the system's proxy; default false. Design time only: error 382 when
    /// set in run mode.
    Q_PROPERTY(bool UseProxy READ UseProxy WRITE setUseProxy STORED false)

public:
    explicit Login(QWidget *parent = nullptr);
    ~Login() override;

    uint BackColor() const { return m_backColor; }

    void setBackColor(uint color);
    QString LoginURL() const;
    void setLoginURL(const QString &url);
    QString UserName() const;
    void setUserName(const QString &name);
    QString Password() const;
    void setPassword(const QString &password);

    bool ShowLoginURL() const { return m_showLoginURL; }

    void setShowLoginURL(bool show);

    bool UseProxy() const { return m_useProxy; }

    void setUseProxy(bool useProxy);

    /// Shows or hides the server address row without marking the property changed; the rows below
    /// close up.
    Q_INVOKABLE void SetControlShowLoginURL(bool new_val);
    /// Binds the control to the client and lets people sign in. An empty application name is
    /// refused with a message box and nothing is stored.
    Q_INVOKABLE void Init(QXSC::ServiceClient *m_qxs, const QString &appName);
    /// Returns to the credentials; what was typed stays.
    Q_INVOKABLE void Reset();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// An account is active.
    void Success();
    /// The service refused the credentials.
    void Failure();

protected:
    void readProperties(const Zel::PropertyBag &bag) override;
    void writeProperties(Zel::PropertyBag &bag) const override;
    void resized() override;
    void appearanceChanged() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void build();
    void arrange();
    void updateFocusProxy();
    void applyBackColor();
    void signIn();
    void confirmAccount();
    void showAccounts(const QXSC::AccountCollection &accounts);
    void swapFrames(QFrame *former, QFrame *next, QWidget *focus);
    QXSC::ServiceClient &client() const;

    QPointer<QXSC::ServiceClient> m_client;
    QString m_appName;
    bool m_showLoginURL = true;
    bool m_useProxy = false;
    uint m_backColor = Zel::ButtonFace;

    QFrame *m_loginFrame;
    QLabel *m_urlLabel;
    QLineEdit *m_url;
    QFrame *m_upFrame;
    QLabel *m_userLabel;
    QLineEdit *m_userName;
    QLabel *m_passwordLabel;
    QLineEdit *m_password;
    QPushButton *m_login;
    QFrame *m_accountFrame;
    QLabel *m_accountLabel;
    QComboBox *m_accounts;
    QPushButton *m_selectAccount;
};

} // namespace ZelWebServiceControls
