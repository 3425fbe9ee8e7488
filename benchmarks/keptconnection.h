// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace Bench {

/// A connection to a service on this machine that is kept from call to call, with as little of its
/// own as can be: what it measures is the service. Functions throw `std::runtime_error`.
class KeptConnection
{
public:
    explicit KeptConnection(quint16 port);
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
    void send(const QByteArray &method, const QByteArray &target, const QByteArray &body);
    /// Returns how long the body is; what came of it already is left in the buffer.
    qint64 readHead(int status);
    void readMore();

    int m_handle = -1;
    QByteArray m_host;
    QByteArray m_headers;
    QByteArray m_buffer;
};

} // namespace Bench
