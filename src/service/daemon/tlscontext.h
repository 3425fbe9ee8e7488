// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <exception>
#include <memory>

struct ssl_ctx_st;

namespace Zel::Service {

/// A certificate or key that cannot be used; says so in a sentence.
class ZEL_EXPORT TlsError : public std::exception
{
public:
    explicit TlsError(const QString &sentence);
    ~TlsError() override;

    const char *what() const noexcept override { return m_text.constData(); }

private:
    QByteArray m_text;
};

/// A certificate with its key, ready to encrypt connections: TLS 1.2 and 1.3 with forward secrecy
/// and authenticated ciphers only, no renegotiation, no compression, HTTP/1.1 by ALPN. Does not
/// change once it is made; used by many threads.
class ZEL_EXPORT TlsContext
{
public:
    /// Reads two PEM files: the certificate, with the chain that leads to its authority behind it,
    /// and its key. Throws `TlsError`.
    static std::shared_ptr<const TlsContext> load(const QString &certificateFile,
                                                  const QString &keyFile);

    ~TlsContext();
    TlsContext(const TlsContext &) = delete;
    TlsContext &operator=(const TlsContext &) = delete;

    /// OpenSSL's own object, kept by this one.
    ssl_ctx_st *handle() const { return m_handle; }

    /// The host names and addresses the certificate is for, "*.example.org" among them.
    const QStringList &names() const { return m_names; }

    const QDateTime &validUntil() const { return m_validUntil; }

    /// What somebody should look at though it works: an expired certificate, a key that other
    /// people of this machine can read.
    const QStringList &warnings() const { return m_warnings; }

private:
    TlsContext();
    void useCertificate(const QString &file);
    void useKey(const QString &certificateFile, const QString &keyFile);

    ssl_ctx_st *m_handle;
    QStringList m_names;
    QDateTime m_validUntil;
    QStringList m_warnings;
};

} // namespace Zel::Service
