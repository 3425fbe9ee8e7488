// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/contracttls.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>

namespace ZelTest {

ContractTls::ContractTls()
    : m_files(m_authority.make())
    , m_configuration(QSslConfiguration::defaultConfiguration())
{
    QFile key(m_files.key);
    if (!key.open(QIODevice::ReadOnly))
        qFatal("the key for the tests cannot be read");
    m_configuration.setCaCertificates(QSslCertificate::fromPath(caFile()));
    m_configuration.setLocalCertificateChain(QSslCertificate::fromPath(m_files.certificate));
    m_configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
}

const ContractTls *ContractTls::get()
{
    if (qgetenv("ZEL_CONTRACT_DATABASE") != "tls")
        return nullptr;
    static const ContractTls tls;
    return &tls;
}

QNetworkRequest requestOf(const QString &address)
{
    QNetworkRequest request{QUrl(address)};
    if (const ContractTls *tls = ContractTls::get()) {
        QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
        trusting.setCaCertificates(tls->configuration().caCertificates());
        request.setSslConfiguration(trusting);
    }
    return request;
}

} // namespace ZelTest
