// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/contract/contracttest.h"
#include "tests/service/httpprobe.h"

namespace ZelTest {

/// A person who is signed in and whose calls are made byte by byte, so that a test can stop in the
/// middle of them.
class RawSession
{
public:
    /// Throws `std::runtime_error` when the person may not sign in.
    RawSession(quint16 port, const Person &person, qint64 account);

    /// What signs a person in, whole.
    static QByteArray signInRequest(quint16 port, const Person &person);

    HttpReply call(const QByteArray &method, const QByteArray &target,
                   const QByteArray &body = QByteArray()) const;

    /// The head of a request whose body is to follow.
    QByteArray head(const QByteArray &method, const QByteArray &target, qint64 length) const;

    QByteArray request(const QByteArray &method, const QByteArray &target,
                       const QByteArray &body) const
    {
        return head(method, target, body.size()) + body;
    }

    /// Asks for an upload of one file.
    HttpReply askForUpload(const QByteArray &name, qint64 size) const;
    /// The path of the upload that an answer gives leave to.
    static QByteArray pathIn(const HttpReply &answer);
    /// Begins an upload of one file; its path. Throws when it is refused.
    QByteArray reserve(const QByteArray &name, qint64 size) const;
    /// Makes an asset of an upload that has arrived.
    HttpReply commit(const QByteArray &upload, const QByteArray &sha256) const;
    /// Where the bytes of each file of an asset are, without a server.
    QByteArrayList addressesOf(const QString &guid) const;

private:
    quint16 m_port;
    QByteArray m_token;
};

/// The request that makes a project of the account "Contract Studio".
QByteArray projectBody(const QString &guid);

/// Bytes that no file system can store as less, other ones for each seed.
QByteArray noise(qsizetype size, quint32 seed);

/// SHA-256 in hexadecimal digits.
QByteArray sha256(const QByteArray &bytes);

} // namespace ZelTest
