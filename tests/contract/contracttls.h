// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/testauthority.h"

#include <QNetworkRequest>
#include <QSslConfiguration>

namespace ZelTest {

/// What the tests encrypt with when ZEL_CONTRACT_DATABASE is "tls": an authority of their own and
/// a certificate for this machine. One for the program.
class ContractTls
{
public:
    /// Null when the tests speak plain HTTP.
    static const ContractTls *get();

    QString caFile() const { return m_authority.caFile(); }

    const TestAuthority::Files &files() const { return m_files; }

    /// Trusts the authority, and shows the certificate to those who ask.
    const QSslConfiguration &configuration() const { return m_configuration; }

private:
    ContractTls();

    TestAuthority m_authority;
    TestAuthority::Files m_files;
    QSslConfiguration m_configuration;
};

/// A request of an address of the service, which trusts it.
QNetworkRequest requestOf(const QString &address);

} // namespace ZelTest
