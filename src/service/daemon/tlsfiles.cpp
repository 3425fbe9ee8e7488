// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/tlsfiles.h"

#include "service/daemon/logline.h"
#include "service/daemon/program.h"

#include <stdexcept>

namespace Zel::Service {

void TlsFiles::addOptions(QCommandLineParser &parser)
{
    parser.addOptions(
        {{QStringLiteral("certificate"),
          QStringLiteral("Encrypts with this certificate (PEM, its chain behind it). SIGHUP reads "
                         "it and its key again."),
          QStringLiteral("file")},
         {QStringLiteral("key"), QStringLiteral("The key of the certificate (PEM)."),
          QStringLiteral("file")},
         {QStringLiteral("host"),
          QStringLiteral("A name by which clients call the service, when it is not one of the "
                         "certificate's; may be given more than once. Without a port any will do."),
          QStringLiteral("name[:port]")}});
}

TlsFiles::TlsFiles(const QCommandLineParser &parser)
    : m_certificate(parser.value(QStringLiteral("certificate")))
    , m_key(parser.value(QStringLiteral("key")))
    , m_hosts(parser.values(QStringLiteral("host")))
{
    if (m_certificate.isEmpty() != m_key.isEmpty())
        throw UsageError(
            QStringLiteral("--certificate and --key go together; %1 is missing.")
                .arg(m_key.isEmpty() ? QStringLiteral("--key") : QStringLiteral("--certificate")));
    for (const QString &host : m_hosts) {
        try {
            HostGuard({host});
        } catch (const std::invalid_argument &) {
            throw UsageError(
                QStringLiteral("--host takes a name like zel.example.org or zel.example.org:8443, "
                               "not \"%1\".")
                    .arg(host));
        }
    }
}

std::shared_ptr<const TlsContext> TlsFiles::load() const
{
    if (!areGiven())
        return nullptr;
    auto tls = TlsContext::load(m_certificate, m_key);
    if (m_hosts.isEmpty() && tls->names().isEmpty())
        throw TlsError(QStringLiteral("The certificate %1 names no host (subjectAltName). Say with "
                                      "--host what the service is called.")
                           .arg(m_certificate));
    for (const QString &warning : tls->warnings())
        logLine("warning", {{"event", QStringLiteral("certificate")}, {"cause", warning}});
    return tls;
}

HostGuard TlsFiles::guard(const TlsContext *tls) const
{
    if (!m_hosts.isEmpty() || !tls)
        return HostGuard(m_hosts);
    QStringList usable;
    for (const QString &name : tls->names()) {
        try {
            HostGuard({name});
            usable << name;
        } catch (const std::invalid_argument &) {
            // A certificate can hold anything; what is no host name matches no request.
        }
    }
    return HostGuard(usable);
}

} // namespace Zel::Service
