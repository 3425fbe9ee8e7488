// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/hostguard.h"
#include "service/daemon/tlscontext.h"

#include <QCommandLineParser>

#include <memory>

namespace Zel::Service {

/// What `serve` is told about encryption and about its own names: --certificate, --key and --host.
class TlsFiles
{
public:
    static void addOptions(QCommandLineParser &parser);

    /// Throws `UsageError`.
    explicit TlsFiles(const QCommandLineParser &parser);

    bool areGiven() const { return !m_certificate.isEmpty(); }

    /// Reads them as they are now, and logs what is questionable about them. Null when none are
    /// given. Throws `TlsError`.
    std::shared_ptr<const TlsContext> load() const;

    /// The names the service answers for: those of --host, else those of its certificate.
    HostGuard guard(const TlsContext *tls) const;

private:
    QString m_certificate;
    QString m_key;
    QStringList m_hosts;
};

} // namespace Zel::Service
