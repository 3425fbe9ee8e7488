// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/tlscontext.h"

#include <QFile>
#include <QHostAddress>

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <stdexcept>
#include <string_view>

namespace Zel::Service {

namespace {

/// Far more than any chain takes.
constexpr qint64 largestFile = 1024 * 1024;

/// What TLS 1.2 may use: a key of its own for each connection, and ciphers that authenticate.
/// Those of TLS 1.3 are all of this kind.
constexpr const char *ciphers = "ECDHE+AESGCM:ECDHE+CHACHA20";

template <auto function>
struct Freeing
{
    template <class Type>
    void operator()(Type *pointer) const
    {
        function(pointer);
    }
};

using Bio = std::unique_ptr<BIO, Freeing<BIO_free_all>>;
using Certificate = std::unique_ptr<X509, Freeing<X509_free>>;
using Key = std::unique_ptr<EVP_PKEY, Freeing<EVP_PKEY_free>>;
using Names = std::unique_ptr<GENERAL_NAMES, Freeing<GENERAL_NAMES_free>>;

/// Why OpenSSL refused something, in its words. Empties its list of errors.
QString reason()
{
    const char *text = ERR_reason_error_string(ERR_peek_error());
    ERR_clear_error();
    return text ? QString::fromLatin1(text) : QStringLiteral("unknown cause");
}

QByteArray contentOf(const QString &path, const QString &kind)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw TlsError(
            QStringLiteral("The %1 %2 cannot be read: %3.").arg(kind, path, file.errorString()));
    const QByteArray content = file.read(largestFile + 1);
    if (content.size() > largestFile)
        throw TlsError(QStringLiteral("The %1 %2 is too large to be one.").arg(kind, path));
    return content;
}

Bio reading(const QByteArray &content)
{
    return Bio(BIO_new_mem_buf(content.constData(), static_cast<int>(content.size())));
}

QDateTime timeOf(const ASN1_TIME *time)
{
    tm parts{};
    if (ASN1_TIME_to_tm(time, &parts) != 1)
        return {};
    return QDateTime(QDate(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday),
                     QTime(parts.tm_hour, parts.tm_min, parts.tm_sec), Qt::UTC);
}

QString hostOf(const GENERAL_NAME *name)
{
    if (name->type == GEN_DNS)
        return QString::fromLatin1(
            reinterpret_cast<const char *>(ASN1_STRING_get0_data(name->d.dNSName)),
            ASN1_STRING_length(name->d.dNSName));
    if (name->type != GEN_IPADD)
        return QString();
    const unsigned char *bytes = ASN1_STRING_get0_data(name->d.iPAddress);
    switch (ASN1_STRING_length(name->d.iPAddress)) {
    case 4:
        return QHostAddress(quint32(bytes[0]) << 24 | quint32(bytes[1]) << 16 |
                            quint32(bytes[2]) << 8 | quint32(bytes[3]))
            .toString();
    case 16:
        return QHostAddress(bytes).toString();
    default:
        return QString();
    }
}

QStringList namesOf(X509 *certificate)
{
    QStringList result;
    const Names names(static_cast<GENERAL_NAMES *>(
        X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)));
    for (int i = 0; names && i < sk_GENERAL_NAME_num(names.get()); ++i) {
        const QString host = hostOf(sk_GENERAL_NAME_value(names.get(), i));
        if (!host.isEmpty())
            result << host.toLower();
    }
    return result;
}

/// Notes that a password was asked for, and has none.
int noPassword(char *, int, int, void *asked)
{
    *static_cast<bool *>(asked) = true;
    return -1;
}

/// Of what a client offers, HTTP/1.1. One that speaks something else only is told so.
int chooseProtocol(SSL *, const unsigned char **chosen, unsigned char *chosenLength,
                   const unsigned char *offered, unsigned int length, void *)
{
    constexpr std::string_view wanted = "http/1.1";
    for (unsigned int at = 0; at < length; at += 1U + offered[at]) {
        const std::string_view name(reinterpret_cast<const char *>(offered + at + 1), offered[at]);
        if (name != wanted)
            continue;
        *chosen = offered + at + 1;
        *chosenLength = offered[at];
        return SSL_TLSEXT_ERR_OK;
    }
    return SSL_TLSEXT_ERR_ALERT_FATAL;
}

} // namespace

TlsError::TlsError(const QString &sentence)
    : m_text(sentence.toUtf8())
{
}

TlsError::~TlsError() = default;

TlsContext::TlsContext()
    : m_handle(SSL_CTX_new(TLS_server_method()))
{
    if (!m_handle)
        throw std::bad_alloc();
    // Compression has given secrets away, renegotiation lets a client make the service work.
    SSL_CTX_set_options(m_handle, SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION |
                                      SSL_OP_CIPHER_SERVER_PREFERENCE);
    SSL_CTX_set_mode(m_handle, SSL_MODE_RELEASE_BUFFERS);
    // Clients come back with tickets; nothing about them is kept here.
    SSL_CTX_set_session_cache_mode(m_handle, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_alpn_select_cb(m_handle, chooseProtocol, nullptr);
    if (SSL_CTX_set_min_proto_version(m_handle, TLS1_2_VERSION) != 1 ||
        SSL_CTX_set_cipher_list(m_handle, ciphers) != 1)
        throw TlsError(QStringLiteral("TLS cannot be set up: %1.").arg(reason()));
}

TlsContext::~TlsContext()
{
    SSL_CTX_free(m_handle);
}

std::shared_ptr<const TlsContext> TlsContext::load(const QString &certificateFile,
                                                   const QString &keyFile)
{
    ERR_clear_error();
    std::shared_ptr<TlsContext> context(new TlsContext);
    context->useCertificate(certificateFile);
    context->useKey(certificateFile, keyFile);
    return context;
}

void TlsContext::useCertificate(const QString &file)
{
    const QByteArray content = contentOf(file, QStringLiteral("certificate"));
    const Bio bio = reading(content);
    const Certificate own(PEM_read_bio_X509(bio.get(), nullptr, noPassword, nullptr));
    if (!own)
        throw TlsError(QStringLiteral("The file %1 holds no certificate in PEM form.").arg(file));
    if (SSL_CTX_use_certificate(m_handle, own.get()) != 1)
        throw TlsError(
            QStringLiteral("The certificate %1 cannot be used: %2.").arg(file, reason()));
    while (X509 *next = PEM_read_bio_X509(bio.get(), nullptr, noPassword, nullptr)) {
        if (SSL_CTX_add0_chain_cert(m_handle, next) == 1)
            continue;
        X509_free(next);
        throw TlsError(QStringLiteral("The chain in %1 cannot be used: %2.").arg(file, reason()));
    }
    ERR_clear_error(); // the end of the file
    m_names = namesOf(own.get());
    m_validUntil = timeOf(X509_get0_notAfter(own.get()));
    if (X509_cmp_current_time(X509_get0_notAfter(own.get())) < 0)
        m_warnings << QStringLiteral("The certificate %1 expired on %2.")
                          .arg(file, m_validUntil.toString(Qt::ISODate));
    if (X509_cmp_current_time(X509_get0_notBefore(own.get())) > 0)
        m_warnings << QStringLiteral("The certificate %1 is not valid before %2.")
                          .arg(file, timeOf(X509_get0_notBefore(own.get())).toString(Qt::ISODate));
}

void TlsContext::useKey(const QString &certificateFile, const QString &keyFile)
{
    const QByteArray content = contentOf(keyFile, QStringLiteral("key"));
    const Bio bio = reading(content);
    bool isProtected = false;
    const Key key(PEM_read_bio_PrivateKey(bio.get(), nullptr, noPassword, &isProtected));
    if (!key && isProtected)
        throw TlsError(QStringLiteral("The key %1 is protected by a password, which the service "
                                      "has nobody to ask for. Store it without one "
                                      "(\"openssl pkey -in %1 -out NEW-FILE\") in a file that "
                                      "only the service's own user can read.")
                           .arg(keyFile));
    if (!key)
        throw TlsError(
            QStringLiteral("The file %1 holds no private key in PEM form.").arg(keyFile));
    if (X509_check_private_key(SSL_CTX_get0_certificate(m_handle), key.get()) != 1)
        throw TlsError(QStringLiteral("The key %1 does not belong to the certificate %2.")
                           .arg(keyFile, certificateFile));
    if (SSL_CTX_use_PrivateKey(m_handle, key.get()) != 1)
        throw TlsError(QStringLiteral("The key %1 cannot be used: %2.").arg(keyFile, reason()));
    ERR_clear_error();
    if (QFile::permissions(keyFile) & (QFileDevice::ReadOther | QFileDevice::WriteOther))
        m_warnings << QStringLiteral("The key %1 can be read by everybody on this machine; take "
                                     "that right away (\"chmod o-rwx\").")
                          .arg(keyFile);
}

} // namespace Zel::Service
