// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/httpmessage.h"
#include "service/daemon/problem.h"

#include <boost/beast/core/string.hpp>
#include <boost/beast/http/field.hpp>

#include <QDateTime>
#include <QLocale>

// What the server itself says in an answer. For its one source file only: whoever includes it
// includes the HTTP library.

namespace Zel::Service {

inline QByteArray bytes(boost::beast::string_view text)
{
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

inline boost::beast::string_view view(const QByteArray &text)
{
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

/// The date in the form of HTTP (RFC 9110, 5.6.7).
inline QByteArray httpDate()
{
    return QLocale::c()
        .toString(QDateTime::currentDateTimeUtc(),
                  QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"))
        .toLatin1();
}

inline Problem noHttp()
{
    return Problem(400, QByteArrayLiteral("bad-request"),
                   QStringLiteral("The request is not valid HTTP."));
}

inline Problem notEncrypted()
{
    return Problem(400, QByteArrayLiteral("not-encrypted"),
                   QStringLiteral("This service takes encrypted connections only: write https:// "
                                  "in place of http://."));
}

inline Problem headTooLarge()
{
    return Problem(431, QByteArrayLiteral("header-too-large"),
                   QStringLiteral("The head of the request is too large."));
}

inline Problem tooLarge(qint64 limit)
{
    return Problem(413, QByteArrayLiteral("too-large"),
                   QStringLiteral("The request is larger than %1 bytes.").arg(limit));
}

inline Problem tooBusy()
{
    return Problem(503, QByteArrayLiteral("unavailable"),
                   QStringLiteral("The service has too much to do. Try again shortly."),
                   {{QByteArrayLiteral("Retry-After"), QByteArrayLiteral("1")}});
}

inline qint64 bodyBytes(const HttpResponse &response)
{
    return response.file ? response.file->length : qint64(response.body.size());
}

template <class Message>
void setHead(Message &message, const HttpResponse &response, const QByteArray &requestId,
             bool keepAlive)
{
    namespace http = boost::beast::http;
    message.set(http::field::date, view(httpDate()));
    message.set("X-Request-Id", view(requestId));
    message.set("X-Content-Type-Options", "nosniff");
    message.set(http::field::cache_control, "no-store"); // unless the answer says otherwise
    if (!response.contentType.isEmpty())
        message.set(http::field::content_type, view(response.contentType));
    for (const HttpHeader &header : response.headers)
        message.set(view(header.name), view(header.value));
    message.keep_alive(keepAlive);
    const bool bodyless = response.status == 204 || response.status == 304;
    if (!bodyless)
        message.content_length(static_cast<std::uint64_t>(bodyBytes(response)));
}

} // namespace Zel::Service
