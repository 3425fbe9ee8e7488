// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/tlscontext.h"

#include "tests/contract/testauthority.h"
#include "testsupport/testcase.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace Zel::Service;
using ZelTest::TestAuthority;

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString written(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("a file of the test cannot be written");
    return path;
}

/// The sentence that a pair of files is refused with; empty when it is not.
QString refusalOf(const QString &certificate, const QString &key)
{
    try {
        TlsContext::load(certificate, key);
    } catch (const TlsError &error) {
        return QString::fromUtf8(error.what());
    }
    return QString();
}

} // namespace

class TlsContextTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void readsACertificateWithItsKey()
    {
        TestAuthority::Wish wish;
        wish.names = "DNS:Zel.Example.org,DNS:*.example.org,IP:10.1.2.3,IP:2001:db8::1,"
                     "email:someone@example.org";
        const auto files = m_authority.make(wish);
        const auto tls = TlsContext::load(files.certificate, files.key);
        QCOMPARE(tls->names(),
                 (QStringList{QStringLiteral("zel.example.org"), QStringLiteral("*.example.org"),
                              QStringLiteral("10.1.2.3"), QStringLiteral("2001:db8::1")}));
        QVERIFY(tls->warnings().isEmpty());
        const qint64 off = tls->validUntil().toSecsSinceEpoch() -
                           QDateTime::currentSecsSinceEpoch() - wish.validUntilSeconds;
        QVERIFY2(qAbs(off) < 3600, qPrintable(QString::number(off)));
        QVERIFY(tls->handle() != nullptr);
    }

    void readsAChainAndAKeyInOneFile()
    {
        const auto files = m_authority.make();
        const QByteArray chain =
            contentOf(files.certificate) + contentOf(m_authority.caFile()) + contentOf(files.key);
        const QString all = written(m_authority.path(QStringLiteral("all.pem")), chain);
        QVERIFY(QFile::setPermissions(all, QFileDevice::ReadOwner));
        QVERIFY(TlsContext::load(all, all)->warnings().isEmpty());
    }

    void hasNoNamesWithoutAny()
    {
        TestAuthority::Wish wish;
        wish.names.clear();
        const auto files = m_authority.make(wish);
        QVERIFY(TlsContext::load(files.certificate, files.key)->names().isEmpty());
    }

    void saysWhatIsWrongWithAFile_data()
    {
        QTest::addColumn<QString>("certificate");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("sentence");
        const auto good = m_authority.make();
        const auto other = m_authority.make();
        TestAuthority::Wish protectedWish;
        protectedWish.keyPassword = "secret word";
        const auto locked = m_authority.make(protectedWish);
        const QString missing = m_authority.path(QStringLiteral("missing.pem"));
        const QString text = written(m_authority.path(QStringLiteral("text")), "hello\n");
        const QString broken =
            written(m_authority.path(QStringLiteral("broken")),
                    "-----BEGIN CERTIFICATE-----\nAAAA\n-----END CERTIFICATE-----\n");
        const QString large =
            written(m_authority.path(QStringLiteral("large")), QByteArray(2'000'000, 'x'));
        const auto row = [](const char *name, const QString &certificate, const QString &key,
                            const char *sentence) {
            QTest::newRow(name) << certificate << key << QString::fromLatin1(sentence);
        };
        row("no certificate file", missing, good.key,
            "certificate .* cannot be read: No such file");
        row("no key file", good.certificate, missing, "key .* cannot be read: No such file");
        row("a folder", m_authority.path(QString()), good.key, "certificate .* cannot be read");
        row("text", text, good.key, "holds no certificate in PEM form");
        row("a broken certificate", broken, good.key, "holds no certificate in PEM form");
        row("a large file", large, good.key, "certificate .* is too large");
        row("a certificate for a key", good.certificate, good.certificate,
            "holds no private key in PEM form");
        row("another's key", good.certificate, other.key,
            "The key .* does not belong to the certificate");
        row("a key with a password", locked.certificate, locked.key,
            "is protected by a password.*openssl pkey");
    }

    void saysWhatIsWrongWithAFile()
    {
        QFETCH(QString, certificate);
        QFETCH(QString, key);
        QFETCH(QString, sentence);
        const QString refusal = refusalOf(certificate, key);
        QVERIFY2(QRegularExpression(sentence).match(refusal).hasMatch(), qPrintable(refusal));
        QVERIFY2(refusal.endsWith(QLatin1Char('.')), qPrintable(refusal));
    }

    void warnsOfACertificateOutOfItsTime()
    {
        TestAuthority::Wish wish;
        wish.validFromSeconds = -7200;
        wish.validUntilSeconds = -3600;
        const auto past = m_authority.make(wish);
        QCOMPARE(TlsContext::load(past.certificate, past.key)->warnings().size(), 1);
        QVERIFY(TlsContext::load(past.certificate, past.key)
                    ->warnings()
                    .first()
                    .contains(QLatin1String("expired on 20")));
        wish.validFromSeconds = 3600;
        wish.validUntilSeconds = 7200;
        const auto future = m_authority.make(wish);
        QVERIFY(TlsContext::load(future.certificate, future.key)
                    ->warnings()
                    .value(0)
                    .contains(QLatin1String("not valid before 20")));
    }

    void warnsOfAKeyThatEverybodyCanRead()
    {
        const auto files = m_authority.make();
        QVERIFY(QFile::setPermissions(files.key, QFileDevice::ReadOwner | QFileDevice::ReadGroup));
        QVERIFY(TlsContext::load(files.certificate, files.key)->warnings().isEmpty());
        QVERIFY(QFile::setPermissions(files.key, QFileDevice::ReadOwner | QFileDevice::ReadOther));
        const QStringList warnings = TlsContext::load(files.certificate, files.key)->warnings();
        QCOMPARE(warnings.size(), 1);
        QVERIFY(warnings.first().contains(QLatin1String("everybody on this machine")));
    }

private:
    TestAuthority m_authority;
};

ZEL_TEST_MAIN(TlsContextTest)
#include "tst_tlscontext.moc"
