// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/piecetransfer.h"

#include "common/network/proxychoice.h"
#include "common/network/systemauthorities.h"

#include <QNetworkProxy>
#include <QSslCertificate>

#include <algorithm>
#include <cerrno>
#include <new>

namespace QXSC {

namespace {

/// How much libcurl takes from the piece at once.
constexpr long sendBufferBytes = 512L * 1024;

using Error = QNetworkReply::NetworkError;

Error connectError(bool hasProxy, long systemError)
{
    if (hasProxy)
        return Error::ProxyConnectionRefusedError;
    return systemError == ECONNREFUSED ? Error::ConnectionRefusedError : Error::UnknownNetworkError;
}

/// Qt's name for the failure, so that one place judges the failures of both roads.
Error networkError(CURLcode result, bool hasProxy, long systemError)
{
    switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return Error::HostNotFoundError;
    case CURLE_COULDNT_RESOLVE_PROXY:
        return Error::ProxyNotFoundError;
    case CURLE_COULDNT_CONNECT:
        return connectError(hasProxy, systemError);
    case CURLE_PROXY:
        return Error::UnknownProxyError;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_ISSUER_ERROR:
        return Error::SslHandshakeFailedError;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL: // an answer without the line that begins one
    case CURLE_BAD_CONTENT_ENCODING:
        return Error::ProtocolFailure;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_FAIL_REWIND:
        return Error::RemoteHostClosedError;
    default:
        return Error::UnknownNetworkError;
    }
}

} // namespace

QByteArray Authorities::pem(const QString &caFile)
{
    const auto known = m_known.constFind(caFile);
    if (known != m_known.constEnd())
        return *known;
    QList<QSslCertificate> all;
    if (!caFile.isEmpty()) {
        all = QSslCertificate::fromPath(caFile, QSsl::Pem);
        if (all.isEmpty())
            return {};
    }
    all += systemAuthorities();
    QByteArray text;
    for (const QSslCertificate &one : all)
        text += one.toPem();
    return *m_known.insert(caFile, text);
}

PieceTransfer::PieceTransfer(const std::shared_ptr<Exchange> &exchange, Authorities &authorities)
    : m_exchange(exchange)
    , m_easy(curl_easy_init(), curl_easy_cleanup)
    , m_headers(nullptr, curl_slist_free_all)
{
    if (!m_easy)
        throw std::bad_alloc();
    if (exchange->request().server.isEncrypted() && !setTls(authorities)) {
        Reply reply;
        reply.ending = Reply::Ending::BadCaFile;
        exchange->finish(std::move(reply));
        return;
    }
    setRequest();
    setProxy();
    m_ready = true;
}

PieceTransfer::~PieceTransfer()
{
    m_easy.reset();
    m_exchange->finish(Reply());
}

template <typename Value>
void PieceTransfer::set(CURLoption option, Value value)
{
    const CURLcode result = curl_easy_setopt(m_easy.get(), option, value);
    if (result != CURLE_OK)
        qFatal("libcurl: option %d: %s", int(option), curl_easy_strerror(result));
}

void PieceTransfer::addHeader(const QByteArray &line)
{
    curl_slist *const list = curl_slist_append(m_headers.get(), line.constData());
    if (!list)
        throw std::bad_alloc();
    m_headers.release();
    m_headers.reset(list);
}

void PieceTransfer::setRequest()
{
    const Request &call = m_exchange->request();
    set(CURLOPT_URL, call.server.url(call.path, call.query).toEncoded().constData());
    // Nothing but what is asked for: no other protocol, no redirect, no signal.
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_HTTP_VERSION, long(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // no waiting for the resolver when given up
    set(CURLOPT_ERRORBUFFER, m_errorText.data());

    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_INFILESIZE_LARGE, curl_off_t(call.piece->size()));
    set(CURLOPT_UPLOAD_BUFFERSIZE, sendBufferBytes);
    set(CURLOPT_READFUNCTION, &PieceTransfer::read);
    set(CURLOPT_READDATA, this);
    set(CURLOPT_SEEKFUNCTION, &PieceTransfer::seek);
    set(CURLOPT_SEEKDATA, this);
    set(CURLOPT_WRITEFUNCTION, &PieceTransfer::write);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &PieceTransfer::moved);
    set(CURLOPT_XFERINFODATA, this);

    addHeader("Accept: application/json");
    addHeader("User-Agent: ZelServiceClient");
    addHeader("Content-Type: " + call.contentType);
    addHeader("Expect:"); // a refusal is read while the piece is sent; asking first costs a turn
    if (!call.token.isEmpty())
        addHeader("Authorization: Bearer " + call.token);
    set(CURLOPT_HTTPHEADER, m_headers.get());
    // They are for the service, not for a proxy before it.
    set(CURLOPT_HEADEROPT, long(CURLHEADER_SEPARATE));
}

bool PieceTransfer::setTls(Authorities &authorities)
{
    const QByteArray pem = authorities.pem(m_exchange->policy().caFile);
    if (pem.isEmpty() && !m_exchange->policy().caFile.isEmpty())
        return false;
    curl_blob blob{};
    blob.data = const_cast<char *>(pem.constData()); // copied, as the flag says
    blob.len = std::size_t(pem.size());
    blob.flags = CURL_BLOB_COPY;
    set(CURLOPT_CAINFO_BLOB, &blob);
    set(CURLOPT_CAPATH, static_cast<const char *>(nullptr));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSLVERSION, long(CURL_SSLVERSION_TLSv1_2));
    return true;
}

void PieceTransfer::setProxy()
{
    set(CURLOPT_PROXY, ""); // never by the environment alone
    const Request &call = m_exchange->request();
    if (!m_exchange->policy().useSystemProxy || call.server.isLoopback())
        return;
    const QUrl url = call.server.url(call.path);
    const QList<QNetworkProxy> proxies = ProxyChoice().queryProxy(QNetworkProxyQuery(url));
    const auto usable = std::find_if(proxies.begin(), proxies.end(), [](const QNetworkProxy &one) {
        return one.type() != QNetworkProxy::FtpCachingProxy;
    });
    if (usable == proxies.end() || usable->type() == QNetworkProxy::NoProxy ||
        usable->type() == QNetworkProxy::DefaultProxy)
        return;
    m_hasProxy = true;
    const bool isSocks = usable->type() == QNetworkProxy::Socks5Proxy;
    set(CURLOPT_PROXY, usable->hostName().toUtf8().constData());
    set(CURLOPT_PROXYPORT, long(usable->port()));
    set(CURLOPT_PROXYTYPE, long(isSocks ? CURLPROXY_SOCKS5_HOSTNAME : CURLPROXY_HTTP));
    set(CURLOPT_NOPROXY, ""); // the exceptions were looked at already
    set(CURLOPT_PROXYAUTH, long(CURLAUTH_ANY));
    if (usable->user().isEmpty())
        return;
    set(CURLOPT_PROXYUSERNAME, usable->user().toUtf8().constData());
    set(CURLOPT_PROXYPASSWORD, usable->password().toUtf8().constData());
}

std::size_t PieceTransfer::read(char *to, std::size_t size, std::size_t count, void *self)
{
    auto &transfer = *static_cast<PieceTransfer *>(self);
    PieceSource &piece = *transfer.m_exchange->request().piece;
    if (transfer.m_sent == piece.size())
        return 0;
    const qint64 length = piece.read(to, qint64(size * count));
    if (length < 1)
        return CURL_READFUNC_ABORT;
    transfer.m_sent += length;
    return std::size_t(length);
}

int PieceTransfer::seek(void *self, curl_off_t offset, int origin)
{
    auto &transfer = *static_cast<PieceTransfer *>(self);
    if (origin != SEEK_SET || offset != 0)
        return CURL_SEEKFUNC_FAIL; // libcurl wants nothing but to begin again
    transfer.m_exchange->request().piece->rewind();
    transfer.m_sent = 0;
    return CURL_SEEKFUNC_OK;
}

std::size_t PieceTransfer::write(char *from, std::size_t size, std::size_t count, void *self)
{
    auto &transfer = *static_cast<PieceTransfer *>(self);
    const qint64 length = qint64(size * count);
    transfer.m_isTooLong =
        transfer.m_body.size() + length > transfer.m_exchange->policy().answerLimit;
    if (transfer.m_isTooLong)
        return 0; // ends the transfer
    transfer.m_body.append(from, qsizetype(length));
    return std::size_t(length);
}

int PieceTransfer::moved(void *self, curl_off_t, curl_off_t down, curl_off_t, curl_off_t up)
{
    auto &transfer = *static_cast<PieceTransfer *>(self);
    if (std::exchange(transfer.m_moved, down + up) != down + up)
        transfer.m_exchange->touch();
    return transfer.m_exchange->isFinished() ? 1 : 0;
}

QByteArray PieceTransfer::header(const char *name) const
{
    curl_header *found = nullptr;
    const CURLHcode result = curl_easy_header(m_easy.get(), name, 0, CURLH_HEADER, -1, &found);
    return result == CURLHE_OK ? QByteArray(found->value) : QByteArray();
}

void PieceTransfer::finish(CURLcode result)
{
    long status = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_RESPONSE_CODE, &status);
    Reply reply;
    reply.status = int(status);
    reply.contentType = header("Content-Type");
    reply.requestId = header("X-Request-Id");
    reply.retryAfter = header("Retry-After");
    reply.location = header("Location");
    curl_header *next = nullptr;
    while ((next = curl_easy_nextheader(m_easy.get(), CURLH_HEADER, -1, next)))
        reply.headers.append(std::pair<QByteArray, QByteArray>{next->name, next->value});
    if (m_isTooLong) {
        reply.ending = Reply::Ending::TooLong;
    } else if (result == CURLE_OK) {
        reply.ending = Reply::Ending::Answered;
        reply.body = std::move(m_body);
    } else {
        long systemError = 0;
        long proxyStatus = 0;
        curl_easy_getinfo(m_easy.get(), CURLINFO_OS_ERRNO, &systemError);
        curl_easy_getinfo(m_easy.get(), CURLINFO_HTTP_CONNECTCODE, &proxyStatus);
        const bool isRefusedByProxy = m_hasProxy && proxyStatus >= 300;
        reply.ending = Reply::Ending::Failed;
        reply.networkError = isRefusedByProxy ? Error::UnknownProxyError
                                              : networkError(result, m_hasProxy, systemError);
        reply.networkText =
            QString::fromUtf8(m_errorText[0] ? m_errorText.data() : curl_easy_strerror(result));
    }
    m_exchange->finish(std::move(reply));
}

} // namespace QXSC
