// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/piecesource.h"
#include "service/client/serveraddress.h"

#include <QByteArray>
#include <QNetworkReply>

#include <memory>
#include <utility>

namespace QXSC {

/// One call to the service, complete before it is sent.
struct Request
{
    QByteArray method;
    ServerAddress server;
    QByteArray path;                             ///< percent-encoded
    QByteArray query;                            ///< percent-encoded, without "?"
    QByteArray body;                             ///< empty for none
    QByteArray token;                            ///< empty for a call without a session
    QByteArray contentType = "application/json"; ///< of the body
    /// Instead of `body`: a piece of a file, which has a road of its own.
    std::shared_ptr<PieceSource> piece = nullptr;
    /// By which the service knows a call that changes something when it comes again; empty for
    /// none.
    QByteArray idempotencyKey = {};
    /// Whether it knows such a call by what stands in its body.
    bool isKnownByItsBody = false;

    /// Whether the service does what is asked for once only, however often the call comes.
    bool mayComeAgain() const { return isKnownByItsBody || !idempotencyKey.isEmpty(); }

    /// Whether making the call twice does the same as making it once, so that it may go out again
    /// when a connection that was kept open turns out to be closed.
    bool isRepeatable() const { return method != "POST"; }
};

/// How a call ended, whatever the service thinks of it.
struct Reply
{
    enum class Ending
    {
        Answered,  ///< a whole HTTP answer came; `status` tells which
        Failed,    ///< the network failed; see `networkError`
        Silent,    ///< given up: nothing moved for the inactivity limit
        Overdue,   ///< given up: the limit of the whole call is over
        TooLong,   ///< given up: the answer is longer than the limit
        BadCaFile, ///< not sent: the file of certificate authorities cannot be used
        Closed     ///< given up: the client is being destroyed
    };

    Ending ending = Ending::Closed;
    QNetworkReply::NetworkError networkError = QNetworkReply::NoError;
    QString networkText; ///< the network's words for a failure, without the address of the call
    int status = 0;      ///< HTTP status, 0 when no answer began
    QByteArray contentType;
    QByteArray requestId;
    QByteArray retryAfter;
    QByteArray location;
    QList<std::pair<QByteArray, QByteArray>> headers; ///< all of the answer, as they came
    QByteArray body;

    /// Whether the connection ended before a whole answer was there; what was asked for may have
    /// been done.
    bool isBroken() const
    {
        return ending == Ending::Failed && (networkError == QNetworkReply::RemoteHostClosedError ||
                                            networkError == QNetworkReply::ContentReSendError);
    }
};

} // namespace QXSC
