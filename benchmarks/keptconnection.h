// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct ssl_ctx_st;
struct ssl_st;

namespace Bench {

/// A connection to a service on this machine that is kept from call to call, with as little of its
/// own as can be: what it measures is the service. Functions throw `std::runtime_error`.
class KeptConnection
{
public:
    /// Whom encrypted connections trust.
    using Trust = std::shared_ptr<ssl_ctx_st>;
    /// The authority in a PEM file, and nobody else.
    static Trust trustIn(const QString &caFile);

    /// Plain HTTP without trust.
    explicit KeptConnection(quint16 port, const Trust &trust = nullptr);
    ~KeptConnection();
    KeptConnection(const KeptConnection &) = delete;
    KeptConnection &operator=(const KeptConnection &) = delete;

    /// Sends with each further call, too: "Name: value".
    void addHeader(const QByteArray &line) { m_headers += line + "\r\n"; }

    /// Makes a call and returns the body of its answer, which must have that status.
    QByteArray call(const QByteArray &method, const QByteArray &target, int status = 200,
                    const QByteArray &body = QByteArray());

    /// Reads an answer of any length and keeps nothing of it. Returns the length of its body.
    qint64 download(const QByteArray &target);

private:
    void connect(quint16 port);
    void encrypt(ssl_ctx_st *trust);
    void send(const QByteArray &method, const QByteArray &target, const QByteArray &body);
    /// Returns how long the body is; what came of it already is left in the buffer.
    qint64 readHead(int status);
    void readMore();
    /// Some bytes that have come, at least one.
    qsizetype receive(char *bytes, qsizetype atMost);

    int m_handle = -1;
    std::unique_ptr<ssl_st, void (*)(ssl_st *)> m_tls;
    QByteArray m_host;
    QByteArray m_headers;
    QByteArray m_buffer;
};

} // namespace Bench
