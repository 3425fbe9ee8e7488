// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/contract/testauthority.h"

#include <QFile>
#include <QUuid>

#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>

namespace ZelTest {

namespace {

template <class Type>
Type *require(Type *made)
{
    if (!made)
        throw std::runtime_error("a certificate for a test cannot be made");
    return made;
}

void extend(X509 *certificate, X509 *issuer, int kind, const char *value)
{
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    X509_EXTENSION *extension = require(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

template <class Write>
void writeFile(const QString &path, Write write)
{
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> bio(BIO_new(BIO_s_mem()), &BIO_free_all);
    char *text = nullptr;
    QFile file(path);
    if (write(bio.get()) != 1 ||
        !file.open(QIODevice::WriteOnly, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        throw std::runtime_error("a certificate for a test cannot be written");
    const long length = BIO_get_mem_data(bio.get(), &text);
    file.write(text, length);
}

void writeCertificate(const QString &path, X509 *certificate)
{
    writeFile(path, [&](BIO *bio) { return PEM_write_bio_X509(bio, certificate); });
}

} // namespace

TestAuthority::TestAuthority()
    : m_key(require(EVP_EC_gen("P-256")))
    , m_certificate(
          sign(m_key, "Test authority " + QUuid::createUuid().toByteArray(QUuid::Id128), {}, true))
{
    writeCertificate(caFile(), m_certificate);
}

TestAuthority::~TestAuthority()
{
    X509_free(m_certificate);
    EVP_PKEY_free(m_key);
}

X509 *TestAuthority::sign(EVP_PKEY *key, const QByteArray &subject, const Wish &wish,
                          bool isAuthority)
{
    X509 *certificate = require(X509_new());
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), ++m_made);
    X509_gmtime_adj(X509_getm_notBefore(certificate), wish.validFromSeconds);
    X509_gmtime_adj(X509_getm_notAfter(certificate), wish.validUntilSeconds);
    X509_set_pubkey(certificate, key);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char *>(subject.constData()), -1, -1,
                               0);
    X509 *issuer = isAuthority ? certificate : m_certificate;
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
    if (isAuthority) {
        extend(certificate, issuer, NID_basic_constraints, "critical,CA:TRUE");
        extend(certificate, issuer, NID_key_usage, "critical,keyCertSign,cRLSign");
    } else if (!wish.names.isEmpty()) {
        extend(certificate, issuer, NID_subject_alt_name, wish.names.constData());
    }
    X509_sign(certificate, m_key, EVP_sha256());
    return certificate;
}

TestAuthority::Files TestAuthority::make(const Wish &wish)
{
    EVP_PKEY *key = require(EVP_EC_gen("P-256"));
    X509 *certificate = sign(key, "A service for tests", wish, false);
    const Files files{path(QStringLiteral("server-%1.pem").arg(m_made)),
                      path(QStringLiteral("server-%1.key").arg(m_made))};
    writeCertificate(files.certificate, certificate);
    writeFile(files.key, [&](BIO *bio) {
        const EVP_CIPHER *cipher = wish.keyPassword.isEmpty() ? nullptr : EVP_aes_256_cbc();
        return PEM_write_bio_PrivateKey(
            bio, key, cipher, reinterpret_cast<const unsigned char *>(wish.keyPassword.constData()),
            static_cast<int>(wish.keyPassword.size()), nullptr, nullptr);
    });
    X509_free(certificate);
    EVP_PKEY_free(key);
    return files;
}

} // namespace ZelTest
