// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/service/rawtls.h"

#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

namespace ZelTest {

RawTls::RawTls(quint16 port, const Wish &wish)
    : m_context(SSL_CTX_new(TLS_client_method()))
{
    SSL_CTX_set_security_level(m_context, 0); // or it would refuse old versions by itself
    SSL_CTX_set_min_proto_version(m_context, wish.oldestVersion);
    SSL_CTX_set_max_proto_version(m_context, wish.newestVersion);
    if (!wish.ciphers.isEmpty())
        SSL_CTX_set_cipher_list(m_context, wish.ciphers.constData());
    if (!wish.caFile.isEmpty()) {
        SSL_CTX_load_verify_locations(m_context, wish.caFile.toLocal8Bit().constData(), nullptr);
        SSL_CTX_set_verify(m_context, SSL_VERIFY_PEER, nullptr);
    }
    QByteArray protocols;
    for (const QByteArray &name : wish.protocols)
        protocols += static_cast<char>(name.size()) + name;
    if (!protocols.isEmpty())
        SSL_CTX_set_alpn_protos(m_context,
                                reinterpret_cast<const unsigned char *>(protocols.constData()),
                                static_cast<unsigned>(protocols.size()));
    BIO *connection = BIO_new_connect(("127.0.0.1:" + QByteArray::number(port)).constData());
    m_ssl = SSL_new(m_context);
    SSL_set_bio(m_ssl, connection, connection);
    ERR_clear_error();
    if (BIO_do_connect(connection) != 1)
        m_error = "no connection";
    else
        note(SSL_connect(m_ssl));
}

RawTls::~RawTls()
{
    SSL_free(m_ssl);
    SSL_CTX_free(m_context);
}

bool RawTls::note(int result)
{
    if (result == 1) {
        m_error.clear();
        return true;
    }
    const char *reason = ERR_reason_error_string(ERR_peek_error());
    m_error = reason ? reason : "the connection ended";
    ERR_clear_error();
    return false;
}

QByteArray RawTls::version() const
{
    return SSL_get_version(m_ssl);
}

QByteArray RawTls::protocol() const
{
    const unsigned char *name = nullptr;
    unsigned length = 0;
    SSL_get0_alpn_selected(m_ssl, &name, &length);
    return QByteArray(reinterpret_cast<const char *>(name), static_cast<qsizetype>(length));
}

bool RawTls::send(const QByteArray &bytes)
{
    return note(SSL_write(m_ssl, bytes.constData(), static_cast<int>(bytes.size())) ==
                static_cast<int>(bytes.size()));
}

QByteArray RawTls::readToEnd()
{
    QByteArray all;
    char buffer[16 * 1024];
    for (;;) {
        const int count = SSL_read(m_ssl, buffer, sizeof buffer);
        if (count > 0) {
            all.append(buffer, count);
            continue;
        }
        m_goodbye = SSL_get_error(m_ssl, count) == SSL_ERROR_ZERO_RETURN;
        if (m_goodbye)
            m_error.clear();
        else
            note(0);
        return all;
    }
}

void RawTls::sayGoodbye()
{
    SSL_shutdown(m_ssl);
}

bool RawTls::renegotiate()
{
    return note(SSL_renegotiate(m_ssl)) && note(SSL_do_handshake(m_ssl)) && send("x");
}

} // namespace ZelTest
