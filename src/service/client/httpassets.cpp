// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The asset operations over HTTP.
#include "service/client/httpserviceclient.h"

#include "service/client/answerreader.h"
#include "service/client/assetreader.h"
#include "service/client/callfailure.h"
#include "service/client/exchange.h"
#include "service/client/jsoncall.h"
#include "service/client/listcall.h"
#include "service/client/readahead.h"
#include "service/client/transport.h"
#include "service/client/uploadfile.h"

#include <QPointer>

#include <algorithm>
#include <memory>
#include <vector>

namespace QXSC {

namespace {

/// How often, and after what pauses, an upload goes on after a failure that may pass.
class Retries
{
public:
    Retries(Transport &transport, const NetworkPolicy &policy)
        : m_transport(transport)
        , m_limit(policy.retryLimit)
    {
    }

    void startOver()
    {
        m_pause = firstPause;
        m_waited = {};
    }

    /// Waits before the next try; false when there is none.
    bool wait(const ServiceError &error)
    {
        const std::chrono::milliseconds pause = m_pause;
        m_pause = 2 * pause;
        m_waited += pause;
        return isTransient(error) && m_waited <= m_limit && m_transport.pause(pause);
    }

private:
    static constexpr std::chrono::milliseconds firstPause{250};

    static bool isTransient(const ServiceError &error)
    {
        return error.isTransient() || error.code() == QLatin1String("busy");
    }

    Transport &m_transport;
    const std::chrono::milliseconds m_limit;
    std::chrono::milliseconds m_pause = firstPause;
    std::chrono::milliseconds m_waited{0};
};

/// How large the next piece of a file should be. Small enough that a person sees the upload move,
/// and that one which breaks off loses little; else as large as can be, because the service has
/// nothing to do between two of them.
class PieceSize
{
public:
    PieceSize(qint64 fileSize, qint64 most)
        : m_most(std::min(most, std::max(least, fileSize / leastSteps)))
        , m_least(std::min(least, most))
        , m_next(m_least)
    {
    }

    void startOver() { m_next = m_least; }

    qint64 next() const { return m_next; }

    /// Goes by what the one before took, on slow and on fast connections.
    void took(qint64 size, Exchange::Clock::duration time)
    {
        const double seconds = std::chrono::duration<double>(time).count();
        const double wanted = double(size) * aimedSeconds / std::max(seconds, 1e-6);
        const double most = double(std::min(m_most, m_next * fastestGrowth));
        m_next = std::max(m_least, qint64(std::min(wanted, most)));
    }

private:
    static constexpr qint64 least = 256 * 1024;
    static constexpr qint64 leastSteps = 16; ///< of a large file
    static constexpr qint64 fastestGrowth = 8;
    static constexpr double aimedSeconds = 1;

    const qint64 m_most;
    const qint64 m_least;
    qint64 m_next;
};

QByteArray folderPath(qint16 folderId, const char *rest = "")
{
    return "/v1/asset-folders/" + QByteArray::number(folderId) + rest;
}

/// The same error, with the name of the file in its sentence: what a person has to know of many.
ServiceError about(const UploadFile &file, const ServiceError &error)
{
    if (error.description().contains(file.name()))
        return error;
    return ServiceError(
        error.kind(),
        HttpServiceClient::tr("\"%1\" was not uploaded. %2").arg(file.name(), error.description()),
        error.code(), error.details());
}

} // namespace

AssetFolderCollectionPtr HttpServiceClient::GetAssetFolders(qint16 parentId)
{
    const Request request =
        sessionRequest("GET", "/v1/asset-folders", "parent=" + QByteArray::number(parentId));
    return readAnswer(request, *ask(request), readAssetFolders);
}

void HttpServiceClient::GetFolderAssets(qint16 folderId, const QString &nameFilter,
                                        const QString &formats, qint32 first, qint32 count,
                                        AssetCollectionPtr &assets)
{
    // An address cannot say it; what would be sent instead is another text.
    if (!nameFilter.isValidUtf16())
        throw ServiceError(ServiceError::Kind::Invalid,
                           tr("What is looked for holds half of a character. Type it again."),
                           QStringLiteral("invalid-text"));
    const Request request = sessionRequest("GET", folderPath(folderId, "/assets"),
                                           "formats=" + QUrl::toPercentEncoding(formats) +
                                               "&name=" + QUrl::toPercentEncoding(nameFilter) +
                                               "&first=" + QByteArray::number(first) +
                                               "&count=" + QByteArray::number(count));
    assets = readList(request, readAssets);
}

qint16 HttpServiceClient::CreateAssetFolder(qint16 parentId, const QString &name)
{
    const Request request = changeRequest(
        "POST", "/v1/asset-folders",
        json({{QStringLiteral("parentId"), parentId}, {QStringLiteral("name"), name}}));
    return readAnswer(request, *ask(request), readFolderId);
}

QString HttpServiceClient::GetFolderPermissions(qint16 folderId)
{
    const Request request = sessionRequest("GET", folderPath(folderId, "/permissions"));
    return readAnswer(request, *ask(request), readPermissions);
}

void HttpServiceClient::DeleteAssetFolder(qint16 folderId)
{
    const Request request = changeRequest("DELETE", folderPath(folderId));
    expectNoContent(request, *ask(request));
}

void HttpServiceClient::DeleteAsset(const QString &guid)
{
    const Request request = changeRequest("DELETE", assetPath(guid));
    expectNoContent(request, *ask(request));
}

QString HttpServiceClient::GetAssetValue(const QString &guid)
{
    const Request request = sessionRequest("GET", assetPath(guid) + "/value");
    return readAnswer(request, *ask(request), readAssetValue);
}

QString HttpServiceClient::assetAddress(const QString &guid)
{
    const QUrl value(GetAssetValue(guid));
    return m_session->server.url("/").resolved(value).toString(QUrl::FullyEncoded);
}

QByteArray HttpServiceClient::assetPath(const QString &guid) const
{
    // An address takes one or two dots for a folder, however they are written.
    if (guid.isEmpty() || guid == QLatin1String(".") || guid == QLatin1String(".."))
        throw ServiceError(ServiceError::Kind::NotFound,
                           tr("This asset has no identity the service could know it by."));
    return "/v1/assets/" + QUrl::toPercentEncoding(guid);
}

QString HttpServiceClient::CreateAsset(const QString &name, const QString &description,
                                       qint16 folderId, const AssetFileCollectionPtr &files,
                                       const QString &, const QString &,
                                       const AssetFileCollectionPtr &)
{
    if (!files || files->count() == 0)
        throw ServiceError(ServiceError::Kind::Invalid, tr("Choose a file to upload first."));
    // Every file is opened before anything is sent.
    std::vector<std::unique_ptr<UploadFile>> open;
    QJsonArray list;
    for (const AssetFileEntryPtr &entry : *files) {
        open.push_back(std::make_unique<UploadFile>(entry->localPath));
        list.append(QJsonObject{{QStringLiteral("name"), open.back()->name()},
                                {QStringLiteral("size"), open.back()->size()}});
    }
    const Request request = sessionRequest("POST", "/v1/uploads", {},
                                           json({{QStringLiteral("name"), name},
                                                 {QStringLiteral("detail"), description},
                                                 {QStringLiteral("folderId"), folderId},
                                                 {QStringLiteral("files"), list}}));
    const UploadFile *current = open.front().get();
    try {
        const UploadTicket ticket = readAnswer(request, *ask(request), readUploadTicket);
        return sendUpload(ticket, open, current);
    } catch (const ServiceError &error) {
        throw about(*current, error);
    }
}

QString HttpServiceClient::sendUpload(const UploadTicket &ticket,
                                      const std::vector<std::unique_ptr<UploadFile>> &files,
                                      const UploadFile *&current)
{
    const QPointer<HttpServiceClient> self(this);
    try {
        QJsonArray checksums;
        for (std::size_t i = 0; i < files.size(); ++i) {
            current = files[i].get();
            sendFile(ticket, static_cast<int>(i), *files[i]);
            checksums.append(QString::fromLatin1(files[i]->checksum()));
            reportProgress(100, files[i]->path());
        }
        return commitUpload(ticket, checksums, files);
    } catch (...) {
        if (self)
            dropUpload(ticket);
        throw;
    }
}

void HttpServiceClient::sendFile(const UploadTicket &ticket, int position, UploadFile &file)
{
    // This object may go away in a call and in a pause.
    const std::shared_ptr<Transport> transport = m_transport;
    const QByteArray path = "/v1/uploads/" + ticket.id + "/files/" + QByteArray::number(position);
    ReadAhead pieces(file);
    PieceSize pieceSize(file.size(), ticket.chunk);
    qint64 offset = 0;
    Retries retries(*transport, m_policy);
    bool isAsking = false;
    int shown = -1;
    while (offset < file.size()) {
        // Never as a whole in memory. After a failure a piece without bytes asks how far the
        // service has got.
        const qint64 size = isAsking ? 0 : std::min(pieceSize.next(), file.size() - offset);
        try {
            const Exchange::Clock::time_point begun = Exchange::Clock::now();
            const qint64 received = sendPiece(path, offset, pieces.piece(offset, size));
            if (received > offset)
                retries.startOver();
            if (!isAsking && received == offset + size)
                pieceSize.took(size, Exchange::Clock::now() - begun);
            isAsking = false;
            offset = received;
        } catch (const ServiceError &error) {
            pieces.check();
            if (!retries.wait(error))
                throw;
            pieceSize.startOver();
            isAsking = true;
            continue;
        }
        if (offset > file.size())
            throw ServiceError(
                ServiceError::Kind::BadAnswer,
                tr("The service has more of \"%1\" than there is.").arg(file.path()));
        const int percent = static_cast<int>(double(offset) * 100 / double(file.size()));
        if (percent > shown && percent < 100)
            reportProgress(shown = percent, file.path());
    }
}

qint64 HttpServiceClient::sendPiece(const QByteArray &path, qint64 offset,
                                    const std::shared_ptr<PieceSource> &piece)
{
    Request request = sessionRequest("PUT", path, "offset=" + QByteArray::number(offset));
    request.contentType = "application/octet-stream";
    request.piece = piece;
    const NetworkPolicy policy = m_policy;
    const Reply reply = m_transport->call(request, policy);
    if (reply.ending == Reply::Ending::Answered && reply.status == 409 &&
        refusalCode(reply) == QLatin1String("offset"))
        return readAnswer(request, reply, readReceived);
    return readAnswer(request, *taken(request, reply, policy), readReceived);
}

QString HttpServiceClient::commitUpload(const UploadTicket &ticket, const QJsonArray &checksums,
                                        const std::vector<std::unique_ptr<UploadFile>> &files)
{
    // This object may go away in a call and in a pause.
    const std::shared_ptr<Transport> transport = m_transport;
    // The service reads all of it once more before it answers.
    constexpr qint64 slowestBytesPerMs = 10'000;
    qint64 total = 0;
    for (const auto &file : files)
        total += file->size();
    NetworkPolicy policy = m_policy;
    const std::chrono::milliseconds more(total / slowestBytesPerMs);
    if (policy.inactivityLimit.count() > 0)
        policy.inactivityLimit += more;
    if (policy.callLimit.count() > 0)
        policy.callLimit += more;
    // Sent as what may be repeated: a second time the service says the same again.
    const Request request = sessionRequest("POST", "/v1/uploads/" + ticket.id + "/commit", {},
                                           json({{QStringLiteral("checksums"), checksums}}));
    for (Retries retries(*transport, m_policy);;) {
        try {
            const Reply reply = m_transport->call(request, policy);
            return readAnswer(request, *taken(request, reply, policy), readAssetGuid);
        } catch (const ServiceError &error) {
            if (!retries.wait(error))
                throw;
        }
    }
}

void HttpServiceClient::dropUpload(const UploadTicket &ticket)
{
    if (!m_session)
        return;
    NetworkPolicy policy = m_policy;
    policy.callLimit = std::chrono::seconds(5); // the service forgets it by itself, too
    m_transport->call(sessionRequest("DELETE", "/v1/uploads/" + ticket.id), policy);
}

void HttpServiceClient::reportProgress(int percent, const QString &path)
{
    const QPointer<HttpServiceClient> self(this);
    emit CreateAssetFileProgress(percent, path);
    if (!self)
        throw ServiceError(ServiceError::Kind::ConnectionLost,
                           tr("The upload of \"%1\" was given up.").arg(path));
}

} // namespace QXSC
