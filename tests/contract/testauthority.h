// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

struct evp_pkey_st;
struct x509_st;

namespace ZelTest {

/// A certificate authority that nobody else trusts, and the certificates it signs, as PEM files in
/// a folder that goes with this object. Functions throw `std::runtime_error`.
class TestAuthority
{
public:
    struct Files
    {
        QString certificate;
        QString key;
    };

    /// What a certificate is to be.
    struct Wish
    {
        QByteArray names = "IP:127.0.0.1,DNS:localhost"; ///< empty for none
        int validFromSeconds = -3600;                    ///< from now
        int validUntilSeconds = 30 * 86'400;
        QByteArray keyPassword; ///< empty for a key without one
    };

    TestAuthority();
    ~TestAuthority();
    TestAuthority(const TestAuthority &) = delete;
    TestAuthority &operator=(const TestAuthority &) = delete;

    /// The authority's own certificate, for clients to trust.
    QString caFile() const { return m_folder.filePath(QStringLiteral("authority.pem")); }

    Files make(const Wish &wish);

    Files make() { return make(Wish()); }

    /// A path in the folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    x509_st *sign(evp_pkey_st *key, const QByteArray &subject, const Wish &wish, bool isAuthority);

    QTemporaryDir m_folder;
    evp_pkey_st *m_key = nullptr;
    x509_st *m_certificate = nullptr;
    int m_made = 0;
};

} // namespace ZelTest
