// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/jsonwriter.h"
#include "service/daemon/logline.h"

#include <QRegularExpression>
#include <QScopeGuard>

#include <limits>

namespace Zel::Service {

namespace {

constexpr qsizetype longestFileName = 1024;

/// @param file the name of the file the sentence is about
[[noreturn]] void refuse(Uploads::Outcome outcome, const QString &file)
{
    switch (outcome) {
    case Uploads::Outcome::NotAllowed:
        throw notAllowed(QStringLiteral("You may not put assets into this folder."));
    case Uploads::Outcome::NoRoom:
        throw Problem(507, QByteArrayLiteral("storage-full"),
                      QStringLiteral("The service has no room for \"%1\".").arg(file));
    case Uploads::Outcome::TooLarge:
        throw Problem(413, QByteArrayLiteral("too-large"),
                      QStringLiteral("\"%1\" is larger than the service takes.").arg(file));
    case Uploads::Outcome::Busy:
        throw Problem(
            409, QByteArrayLiteral("busy"),
            QStringLiteral("Another call is writing \"%1\". Try again shortly.").arg(file));
    case Uploads::Outcome::Incomplete:
        throw Problem(409, QByteArrayLiteral("incomplete"),
                      QStringLiteral("Not all of \"%1\" has arrived.").arg(file));
    case Uploads::Outcome::Checksum:
        throw Problem(
            409, QByteArrayLiteral("checksum"),
            QStringLiteral("\"%1\" did not arrive as it was sent. Upload it again.").arg(file));
    default:
        throw notFound(QStringLiteral("There is no such upload."));
    }
}

NewUpload::File requestedFile(const QJsonObject &object)
{
    JsonFields fields(object);
    // Only the name counts of what may be a path somewhere else.
    const QString name = fields.text(QStringLiteral("name"), longestFileName);
    const NewUpload::File file{
        name.mid(name.lastIndexOf(QLatin1Char('/')) + 1),
        fields.integer(QStringLiteral("size"), 0, std::numeric_limits<qint64>::max())};
    fields.expectNoMore();
    if (file.name.isEmpty())
        throw Problem::invalid(QStringLiteral("A file needs a name."));
    if (file.size == 0)
        throw Problem::invalid(
            QStringLiteral("The file \"%1\" is empty. There is nothing to upload.").arg(file.name));
    return file;
}

NewUpload requestedUpload(const Call &call)
{
    JsonFields fields(call.request.body);
    NewUpload upload;
    upload.name = fields.text(QStringLiteral("name"), Assets::longestName);
    upload.detail = fields.text(QStringLiteral("detail"), Assets::longestDetail);
    upload.folderId = fields.integer(QStringLiteral("folderId"), 0, AssetFolders::largestId);
    const QJsonArray files = fields.list(QStringLiteral("files"));
    fields.expectNoMore();
    for (const QJsonValue &file : files) {
        if (!file.isObject())
            throw Problem::invalid(QStringLiteral("Each of \"files\" must be an object."));
        upload.files.append(requestedFile(file.toObject()));
    }
    if (upload.name.trimmed().isEmpty())
        throw Problem::invalid(QStringLiteral("An asset needs a name."));
    if (upload.files.isEmpty() || upload.files.size() > Uploads::mostFiles)
        throw Problem::invalid(
            QStringLiteral("An asset has one to %1 files.").arg(Uploads::mostFiles));
    return upload;
}

QString shownFiles(const NewUpload &upload)
{
    const QString first = upload.files.constFirst().name;
    const qsizetype others = upload.files.size() - 1;
    return others == 0 ? first : QStringLiteral("%1 (and %2 more)").arg(first).arg(others);
}

/// Appends a piece of a file to what has arrived of it.
class ChunkSink : public BodySink
{
public:
    ChunkSink(Uploads &uploads, Uploads::Part part)
        : m_uploads(uploads)
        , m_part(std::move(part))
    {
    }

    /// Also when the client went away in the middle: it goes on behind what has come.
    ~ChunkSink() override { closeQuietly(); }

    std::optional<HttpResponse> take(QByteArrayView piece) override
    {
        // Before a refusal is answered, as below.
        auto closing = qScopeGuard([this] { closeQuietly(); });
        if (piece.size() > m_part.size - m_part.received)
            throw Problem(413, QByteArrayLiteral("too-large"),
                          QStringLiteral("\"%1\" is longer than was said.").arg(m_part.name));
        busyIsAnAnswer([&] { m_part.part->append(piece.data(), piece.size()); });
        m_part.received += piece.size();
        closing.dismiss();
        return std::nullopt;
    }

    HttpResponse finish() override
    {
        // Before the answer, which the next piece may follow at once.
        busyIsAnAnswer([this] { m_uploads.close(m_part); });
        JsonWriter json;
        json.beginObject().key("received").integer(m_part.received).endObject();
        return jsonResponse(json.json());
    }

private:
    template <class Function>
    void busyIsAnAnswer(Function function)
    {
        try {
            function();
        } catch (const BlobBusy &) {
            refuse(Uploads::Outcome::Busy, m_part.name);
        }
    }

    /// Where nobody is told that the last bytes have arrived; those that have not are sent again.
    void closeQuietly()
    {
        if (!m_part.part)
            return;
        try {
            m_uploads.close(m_part);
        } catch (const std::exception &error) {
            logLine("error", {{"event", QStringLiteral("a piece was lost")},
                              {"cause", QString::fromUtf8(error.what())}});
        }
    }

    Uploads &m_uploads;
    Uploads::Part m_part;
};

} // namespace

HttpResponse reserveUpload(const Call &call)
{
    const NewUpload upload = requestedUpload(call);
    QString uploadId;
    const auto outcome = call.store.uploads.reserve(assetUserOf(call), upload, uploadId);
    if (outcome == Uploads::Outcome::NotFound)
        throw notFound(QStringLiteral("There is no such folder."));
    if (outcome != Uploads::Outcome::Done)
        refuse(outcome, shownFiles(upload));
    JsonWriter json;
    json.beginObject().key("uploadId").text(uploadId);
    json.key("chunk").integer(Uploads::chunkBytes).endObject();
    return jsonResponse(json.json(), 201);
}

std::shared_ptr<BodySink> takeUploadChunk(const Call &call)
{
    const qint64 most = std::numeric_limits<qint64>::max();
    const qint64 offset = call.queryNumber("offset", most, 0);
    bool ok = false;
    const qint64 position = call.parameters.at(1).toLongLong(&ok);
    Uploads::Part part;
    const auto outcome = call.store.uploads.open(assetUserOf(call), call.parameters.first(),
                                                 ok ? position : -1, part);
    if (outcome != Uploads::Outcome::Done)
        refuse(outcome, part.name);
    if (offset != part.received) {
        call.store.uploads.close(part); // which keeps its checksum for the piece that follows
        throw Problem(409, QByteArrayLiteral("offset"),
                      QStringLiteral("\"%1\" has arrived up to another place.").arg(part.name))
            .with(QStringLiteral("received"), part.received);
    }
    return std::make_shared<ChunkSink>(call.store.uploads, std::move(part));
}

HttpResponse commitUpload(const Call &call)
{
    JsonFields fields(call.request.body);
    const QJsonArray list = fields.list(QStringLiteral("checksums"));
    fields.expectNoMore();
    static const QRegularExpression form(QStringLiteral("\\A[0-9a-f]{64}\\z"));
    QStringList checksums;
    for (const QJsonValue &value : list) {
        if (!form.match(value.toString()).hasMatch())
            throw Problem::invalid(
                QStringLiteral("Each of \"checksums\" must be a SHA-256 in 64 digits."));
        checksums << value.toString();
    }
    const Uploads::Commit commit =
        call.store.uploads.commit(assetUserOf(call), call.parameters.first(), checksums);
    if (commit.outcome != Uploads::Outcome::Done)
        refuse(commit.outcome, commit.file);
    JsonWriter json;
    json.beginObject().key("guid").text(commit.guid).endObject();
    return jsonResponse(json.json(), 201);
}

HttpResponse dropUpload(const Call &call)
{
    const auto outcome = call.store.uploads.drop(assetUserOf(call), call.parameters.first());
    if (outcome != Uploads::Outcome::Done)
        refuse(outcome, QString());
    return noContent();
}

} // namespace Zel::Service
