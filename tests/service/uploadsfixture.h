// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/databaseblobs.h"
#include "tests/service/apifixture.h"
#include "tests/service/testdatabases.h"
#include "testsupport/testcase.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <memory>

namespace ZelTest {

inline constexpr qint64 brightwater = 1001;
inline constexpr qint64 harbour = 1002;
inline const QString maja = QStringLiteral("maja");
inline const QString tomas = QStringLiteral("tomas");

inline QByteArray sha(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

inline QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson();
}

inline QJsonObject fileOf(const QString &name, double size)
{
    return {{QStringLiteral("name"), name}, {QStringLiteral("size"), size}};
}

inline QJsonObject uploadOf(const QJsonArray &files, int folder = 0)
{
    return {{QStringLiteral("name"), QStringLiteral("An asset")},
            {QStringLiteral("detail"), QString()},
            {QStringLiteral("folderId"), folder},
            {QStringLiteral("files"), files}};
}

inline QString detailOf(const HttpReply &reply)
{
    return reply.json().value(QLatin1String("detail")).toString();
}

inline qint64 receivedOf(const HttpReply &reply)
{
    return reply.json().value(QLatin1String("received")).toInteger(-1);
}

/// A service that takes uploads, with the bytes of files and in both databases, and what a client
/// of it does.
class UploadsFixture : public TestCase
{
protected:
    static void addKinds()
    {
        QTest::addColumn<bool>("postgres");
        QTest::addColumn<bool>("chunks");
        QTest::newRow("sqlite, files") << false << false;
        QTest::newRow("sqlite, chunks") << false << true;
        QTest::newRow("postgres, chunks") << true << true;
    }

    void begin()
    {
        TestCase::init();
        QFETCH_GLOBAL(bool, postgres);
        QFETCH_GLOBAL(bool, chunks);
        m_chunks = chunks;
        // One service for all rows of a function.
        const QByteArray function = QTest::currentTestFunction() + QByteArray::number(postgres) +
                                    QByteArray::number(chunks);
        if (m_function != function) {
            m_api.reset();
            m_api = std::make_unique<ApiFixture>(m_databases.filled(postgres, kind()));
            m_function = function;
        }
        m_token = m_api->token(maja, harbour);
    }

    void end() { m_api.reset(); }

    HttpReply call(const QByteArray &method, const QByteArray &target,
                   const QByteArray &body = QByteArray())
    {
        return m_api->call(method, target, m_token, body);
    }

    /// The path of an upload that is reserved for one file, or several.
    QByteArray reserve(const QList<qint64> &sizes, int folder = 0)
    {
        QJsonArray files;
        for (const qint64 size : sizes)
            files.append(fileOf(QStringLiteral("file %1.bin").arg(files.size()), double(size)));
        const HttpReply reply = call("POST", "/v1/uploads", json(uploadOf(files, folder)));
        if (reply.status != 201)
            throw std::runtime_error("no upload: " + reply.body.toStdString());
        return "/v1/uploads/" + reply.json().value(QLatin1String("uploadId")).toString().toLatin1();
    }

    HttpReply put(const QByteArray &upload, qint64 offset, const QByteArray &bytes, int file = 0)
    {
        return call("PUT",
                    upload + "/files/" + QByteArray::number(file) +
                        "?offset=" + QByteArray::number(offset),
                    bytes);
    }

    HttpReply commit(const QByteArray &upload, const QByteArrayList &checksums)
    {
        QJsonArray list;
        for (const QByteArray &checksum : checksums)
            list.append(QString::fromLatin1(checksum));
        return call("POST", upload + "/commit", json({{QStringLiteral("checksums"), list}}));
    }

    QByteArray newAsset(const QByteArray &bytes)
    {
        const QByteArray upload = reserve({bytes.size()});
        put(upload, 0, bytes);
        return commit(upload, {sha(bytes)})
            .json()
            .value(QLatin1String("guid"))
            .toString()
            .toLatin1();
    }

    QByteArray addressOf(const QByteArray &guid)
    {
        return call("GET", "/v1/assets/" + guid + "/value")
            .json()
            .value(QLatin1String("value"))
            .toString()
            .toLatin1();
    }

    QJsonArray listed(int folder = 0)
    {
        return call("GET", "/v1/asset-folders/" + QByteArray::number(folder) + "/assets")
            .json()
            .value(QLatin1String("assets"))
            .toObject()
            .value(QLatin1String("rows"))
            .toArray();
    }

    Zel::BlobKind kind() const { return m_chunks ? Zel::BlobKind::Database : Zel::BlobKind::Files; }

    /// How many files are on their way.
    qint64 parts() const
    {
        if (!m_chunks)
            return QDir(m_api->files() + QStringLiteral("/uploads")).entryList(QDir::Files).size();
        return m_api->database()
            .runNative(QStringLiteral("SELECT COUNT(*) FROM blob_content WHERE sha IS NULL"))
            .toLongLong();
    }

    /// Begins to send a file and returns when the service waits for its bytes.
    void beginToSend(HttpProbe &probe, const QByteArray &upload, qint64 size) const
    {
        probe.send(
            "PUT " + upload + "/files/0?offset=0 HTTP/1.1\r\nHost: 127.0.0.1:" +
            QByteArray::number(m_api->port()) + "\r\nAuthorization: Bearer " + m_token.toLatin1() +
            "\r\nExpect: 100-continue\r\nContent-Length: " + QByteArray::number(size) + "\r\n\r\n");
        QCOMPARE(probe.read().status, 100);
    }

    /// The bytes as another daemon of the same database sees them.
    std::unique_ptr<Zel::Store> otherDaemon()
    {
        return std::make_unique<Zel::Store>(
            m_api->database(), Zel::PasswordHasher::Cost::Minimal, [this] { return m_api->now(); },
            Zel::BlobPlace(kind(), m_api->files()));
    }

    static Zel::PartId partOf(const QByteArray &upload)
    {
        return {harbour, QString::fromLatin1(upload.mid(upload.lastIndexOf('/') + 1)), 0};
    }

    TestDatabases m_databases;
    std::unique_ptr<ApiFixture> m_api;
    QByteArray m_function;
    bool m_chunks = false;
    QString m_token;
};

} // namespace ZelTest
