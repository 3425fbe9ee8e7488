// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "login/login.h"

#include "platform/core/propertybag.h"
#include "platform/widgets/messageboxes.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace ZelWebServiceControls {

namespace {

/// Error 91 unless the service answered a collection that holds nothing but accounts.
void requireAccounts(const QXSC::AccountCollection *accounts)
{
    if (!accounts || std::count(accounts->begin(), accounts->end(), nullptr) > 0)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
}

} // namespace

Login::Login(QWidget *parent)
    : Control(parent)
{
    build();
    onUser(m_login, &QPushButton::clicked, &Login::signIn);
    onUser(m_selectAccount, &QPushButton::clicked, &Login::confirmAccount);
    applyBackColor();
}

Login::~Login() = default;

void Login::setBackColor(uint color)
{
    m_backColor = color;
    applyBackColor();
    markChanged();
}

QString Login::LoginURL() const
{
    return m_url->text();
}

void Login::setLoginURL(const QString &url)
{
    m_url->setText(url);
    markChanged();
}

QString Login::UserName() const
{
    return m_userName->text();
}

void Login::setUserName(const QString &name)
{
    m_userName->setText(name);
    markChanged();
}

QString Login::Password() const
{
    return m_password->text();
}

void Login::setPassword(const QString &password)
{
    m_password->setText(password);
    markChanged();
}

void Login::setShowLoginURL(bool show)
{
    SetControlShowLoginURL(show);
    markChanged();
}

void Login::setUseProxy(bool useProxy)
{
    requireDesignTime();
    m_useProxy = useProxy;
    markChanged();
}

void Login::readProperties(const Zel::PropertyBag &bag)
{
    setBackColor(bag.readColor(QStringLiteral("BackColor"), Zel::ButtonFace));
    setUserName(bag.readString(QStringLiteral("UserName"), QString()));
    setPassword(bag.readString(QStringLiteral("Password"), QString()));
    setLoginURL(bag.readString(QStringLiteral("LoginURL"), QString()));
    SetControlShowLoginURL(bag.readBool(QStringLiteral("ShowLoginURL"), true));
    m_useProxy = bag.readBool(QStringLiteral("UseProxy"), false);
}

void Login::writeProperties(Zel::PropertyBag &bag) const
{
    bag.write(QStringLiteral("BackColor"), m_backColor, Zel::ButtonFace);
    bag.write(QStringLiteral("UserName"), UserName(), QString());
    bag.write(QStringLiteral("Password"), Password(), QString());
    bag.write(QStringLiteral("LoginURL"), LoginURL(), QString());
    bag.write(QStringLiteral("ShowLoginURL"), m_showLoginURL, true);
    bag.write(QStringLiteral("UseProxy"), m_useProxy, false);
}

void Login::Init(QXSC::ServiceClient *m_qxs, const QString &appName)
{
    if (appName.isEmpty()) {
        Zel::informUser(this, tr("Please supply a valid application name to the Login component"));
        return;
    }
    m_appName = appName;
    m_client = m_qxs;
    m_login->setVisible(true);
}

void Login::Reset()
{
    swapFrames(m_accountFrame, m_loginFrame, m_password);
}

void Login::swapFrames(QFrame *former, QFrame *next, QWidget *focus)
{
    // Handed on before the frame is hidden, or Qt would send the focus out of the control.
    const bool hadFocus = former->isAncestorOf(window()->focusWidget());
    next->setVisible(true);
    if (hadFocus)
        focus->setFocus(Qt::OtherFocusReason);
    former->setVisible(false);
    updateFocusProxy();
}

QXSC::ServiceClient &Login::client() const
{
    if (!m_client)
        throw Zel::RuntimeError(Zel::RuntimeError::ObjectNotSet);
    return *m_client;
}

void Login::signIn()
{
    bool success = false;
    client().authenticate(LoginURL(), UserName(), Password(), m_appName, QString(), m_useProxy,
                          true, success);
    if (!success) {
        Reset();
        emit Failure();
        return;
    }
    QXSC::AccountCollectionPtr accounts;
    client().getAccounts(accounts);
    requireAccounts(accounts.get());
    showAccounts(*accounts);
    if (accounts->count() == 1)
        confirmAccount();
}

void Login::showAccounts(const QXSC::AccountCollection &accounts)
{
    m_accounts->clear();
    for (const QXSC::AccountRecordPtr &account : accounts)
        m_accounts->addItem(account->accountName, account->accountID);
    m_accounts->setCurrentIndex(m_accounts->count() > 0 ? 0 : -1);
    swapFrames(m_loginFrame, m_accountFrame, m_accounts);
}

void Login::confirmAccount()
{
    // An empty list has no current line; its item data reads as 0.
    bool success = false;
    client().setActiveAccount(QString::number(m_accounts->currentData().toInt()), success);
    if (!success)
        return;
    m_accountFrame->setVisible(false);
    updateFocusProxy();
    emit Success();
}

} // namespace ZelWebServiceControls
