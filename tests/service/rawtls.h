// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QString>

#include <QtGlobal>

struct ssl_ctx_st;
struct ssl_st;

namespace ZelTest {

/// A client of TLS that does what a decent one would not: old versions, weak ciphers, half-closed
/// connections. It checks no certificate unless told to.
class RawTls
{
public:
    struct Wish
    {
        int oldestVersion = 0; ///< OpenSSL's numbers; 0 for any
        int newestVersion = 0;
        QByteArray ciphers;       ///< of TLS 1.2, in OpenSSL's names; any when empty
        QByteArrayList protocols; ///< offered by ALPN; none when empty
        QString caFile;           ///< to check the server's certificate with; unchecked when empty
    };

    /// Connects and shakes hands; see `error`.
    RawTls(quint16 port, const Wish &wish);
    ~RawTls();
    RawTls(const RawTls &) = delete;
    RawTls &operator=(const RawTls &) = delete;

    /// Why the last thing failed, in OpenSSL's words; empty when it did not.
    QByteArray error() const { return m_error; }

    bool isEncrypted() const { return m_error.isEmpty(); }

    QByteArray version() const;
    QByteArray protocol() const;

    bool send(const QByteArray &bytes);
    /// Everything until the server ends the connection.
    QByteArray readToEnd();

    /// Whether the server said good-bye before it ended the connection.
    bool hadGoodbye() const { return m_goodbye; }

    /// Says that nothing more will be sent, and goes on reading.
    void sayGoodbye();
    /// Asks for new keys of the old way; false when the server does not want to.
    bool renegotiate();

private:
    bool note(int result);

    ssl_ctx_st *m_context;
    ssl_st *m_ssl = nullptr;
    QByteArray m_error;
    bool m_goodbye = false;
};

} // namespace ZelTest
