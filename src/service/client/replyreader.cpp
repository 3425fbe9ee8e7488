// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/replyreader.h"

#include <QSslError>

namespace QXSC {

namespace {

constexpr qint64 pieceSize = 65536;

/// Qt reports every status of 400 and above as an error of its own; such an answer is whole unless
/// the error is one of the connection.
bool isWholeAnswer(int status, QNetworkReply::NetworkError error)
{
    if (status == 0)
        return false;
    if (error == QNetworkReply::NoError)
        return true;
    return status >= 400 && error > QNetworkReply::UnknownProxyError &&
           error != QNetworkReply::ContentReSendError && error != QNetworkReply::ProtocolFailure;
}

/// Qt now and then takes a body that a reset connection cut short for a whole one.
bool isCutShort(const QNetworkReply &reply, qsizetype bodySize)
{
    if (reply.hasRawHeader("Content-Encoding"))
        return false; // the length is that of the compressed body
    return bodySize < reply.rawHeader("Content-Length").toLongLong();
}

QString withoutAddress(QString text, const QUrl &url)
{
    const QString bare = url.toString(QUrl::RemoveQuery);
    for (const auto form : {QUrl::PrettyDecoded, QUrl::FullyEncoded})
        text.replace(url.toString(QUrl::ComponentFormattingOptions(form)), bare);
    return text;
}

} // namespace

ReplyReader::ReplyReader(QNetworkReply *reply, const std::shared_ptr<Exchange> &exchange)
    : QObject(reply)
    , m_reply(reply)
    , m_exchange(exchange)
{
    const auto touch = [this] { m_exchange->touch(); };
    connect(reply, &QNetworkReply::socketStartedConnecting, this, touch);
    connect(reply, &QNetworkReply::encrypted, this, touch);
    connect(reply, &QNetworkReply::requestSent, this, [this, touch] {
        m_isConnected = true;
        touch();
    });
    connect(reply, &QNetworkReply::uploadProgress, this, [this, touch](qint64 sent) {
        m_isConnected |= sent > 0;
        touch();
    });
    connect(reply, &QNetworkReply::metaDataChanged, this, &ReplyReader::readHead);
    connect(reply, &QNetworkReply::readyRead, this, &ReplyReader::readBody);
    connect(reply, &QNetworkReply::finished, this, &ReplyReader::finish);
    connect(reply, &QNetworkReply::sslErrors, this, [this](const QList<QSslError> &errors) {
        QStringList texts;
        for (const QSslError &error : errors)
            texts << error.errorString();
        texts.removeDuplicates();
        m_tlsText = texts.join(QLatin1String("; "));
    });
}

ReplyReader::~ReplyReader()
{
    m_exchange->finish(Reply());
}

void ReplyReader::abort()
{
    m_reply->abort();
    // At once: what the network's own thread still sends of it would be an error too many.
    delete m_reply; // and this with it
}

void ReplyReader::readHead()
{
    m_exchange->touch();
    const qint64 length = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (length > m_exchange->policy().answerLimit)
        refuseLength();
}

void ReplyReader::readBody()
{
    m_exchange->touch();
    const qint64 limit = m_exchange->policy().answerLimit;
    // In pieces, because a small compressed answer may unpack to any size.
    while (m_reply->isOpen() && m_reply->bytesAvailable() > 0) {
        const QByteArray piece = m_reply->read(pieceSize);
        if (piece.isEmpty())
            return;
        m_body += piece;
        if (m_body.size() > limit) {
            refuseLength();
            return;
        }
    }
}

void ReplyReader::refuseLength()
{
    Reply result;
    result.ending = Reply::Ending::TooLong;
    result.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    m_exchange->finish(std::move(result));
    m_body.clear();
    m_reply->abort();
}

void ReplyReader::finish()
{
    Reply result;
    result.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.networkError = m_reply->error();
    result.contentType = m_reply->rawHeader("Content-Type");
    result.requestId = m_reply->rawHeader("X-Request-Id");
    result.retryAfter = m_reply->rawHeader("Retry-After");
    result.location = m_reply->rawHeader("Location");
    result.headers = m_reply->rawHeaderPairs();
    readBody();
    if (isWholeAnswer(result.status, result.networkError) && !isCutShort(*m_reply, m_body.size())) {
        result.ending = Reply::Ending::Answered;
        result.body = std::move(m_body);
    } else {
        result.ending = Reply::Ending::Failed;
        // Qt has no name for a connection that breaks while the request is being sent.
        if (result.networkError == QNetworkReply::NoError ||
            (result.networkError == QNetworkReply::UnknownNetworkError && m_isConnected))
            result.networkError = QNetworkReply::RemoteHostClosedError;
        const QString text = m_tlsText.isEmpty() ? m_reply->errorString() : m_tlsText;
        result.networkText = withoutAddress(text, m_reply->url());
    }
    m_exchange->finish(std::move(result));
    m_reply->deleteLater();
}

} // namespace QXSC
