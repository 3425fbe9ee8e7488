// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/bytesource.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace Zel::Service {

struct HttpHeader
{
    QByteArray name;
    QByteArray value;
};

/// A request as it came in. While it is being planned its body is still empty.
struct ZEL_EXPORT HttpRequest
{
    QByteArray method;
    QByteArray target; ///< path and query as sent, percent-encoded
    QList<HttpHeader> headers;
    QByteArray body;
    QByteArray requestId;
    QString peerAddress;
    quint16 localPort = 0;
    bool isEncrypted = false; ///< came by TLS

    /// The first header of that name whatever its case; empty when there is none.
    QByteArray header(QByteArrayView name) const;
    bool hasHeader(QByteArrayView name) const;
    /// The target without its query.
    QByteArray path() const;
};

struct HttpResponse
{
    int status = 200;
    QByteArray contentType; ///< left out when empty
    QByteArray body;
    QList<HttpHeader> headers;

    /// Instead of `body`: a section of a file, read on worker threads and sent piece by piece.
    struct FileSection
    {
        std::shared_ptr<ByteSource> bytes;
        qint64 offset = 0;
        qint64 length = 0;
    };

    std::optional<FileSection> file;
};

/// Takes in the body of a request piece by piece, so that it never lies in memory as a whole. Made,
/// used and destroyed on worker threads, by one at a time; destroyed early when the client goes
/// away.
class ZEL_EXPORT BodySink
{
public:
    virtual ~BodySink();
    /// The next piece. An answer ends the request: the rest of the body is not taken in.
    virtual std::optional<HttpResponse> take(QByteArrayView piece) = 0;
    /// The answer when the body has come to its end.
    virtual HttpResponse finish() = 0;
};

/// A sink, or the answer that refuses the body before it is read.
using BodyStart = std::variant<HttpResponse, std::shared_ptr<BodySink>>;

/// Where a request is answered.
enum class Lane
{
    Immediate, ///< on the socket's own thread: must not block
    Worker,    ///< on the worker pool: may block on the database
    SignIn,    ///< on the few threads that hash passwords
    Health     ///< on threads that nothing else keeps busy: for those who watch the service
};

/// What is to be done with a request, decided from its head before its body is read.
struct HttpPlan
{
    QByteArray route; ///< the pattern that matched, for the log
    qint64 bodyLimit = 0;
    Lane lane = Lane::Immediate;
    std::function<HttpResponse(const HttpRequest &)> handler;
    /// Instead of `handler`, for bodies that are taken in piece by piece; runs on the lane, too.
    std::function<BodyStart(const HttpRequest &)> begin;
};

/// One answered (or refused) request, for the log.
struct HttpLogEntry
{
    QByteArray requestId;
    QByteArray method;
    QByteArray route; ///< "-" for a request without a route
    QString peerAddress;
    int status = 0;
    qint64 microseconds = 0; ///< from the first byte of the request to its answer
    qint64 received = 0;     ///< bytes of the request, head and body
    qint64 sent = 0;         ///< bytes of the answer's body
};

} // namespace Zel::Service
