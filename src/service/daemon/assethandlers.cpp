// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/filesection.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonwriter.h"
#include "service/daemon/signedaddress.h"

#include <QUrl>

#include <limits>

namespace Zel::Service {

namespace {

constexpr qsizetype longestFormats = 1000;
/// The size whose address a list gives; the others are there under the same rule.
constexpr int listedThumbnail = 256;

const QString noSuchAsset = QStringLiteral("There is no such asset.");

QString guidOf(const Call &call)
{
    return call.parameters.first().toLower();
}

void expectDone(Assets::Outcome outcome, const QString &notFoundSentence,
                const QString &notAllowedSentence)
{
    if (outcome == Assets::Outcome::NotFound)
        throw notFound(notFoundSentence);
    if (outcome == Assets::Outcome::NotAllowed)
        throw notAllowed(notAllowedSentence);
}

QString thumbnailAddress(const Call &call, const Asset &asset)
{
    if (!asset.thumbnail)
        return QString();
    const QByteArray path =
        "/t/" + asset.guid.toLatin1() + '/' + QByteArray::number(listedThumbnail);
    return QString::fromLatin1(signedAddress(call, path, thumbnailExpiry(call.store.clock())));
}

AssetFile signedFile(const Call &call)
{
    const qint64 account = accountOfSignedCall(call);
    const auto file = call.store.assets.file(account, guidOf(call));
    if (!file)
        throw notFound(noSuchAsset);
    return *file;
}

} // namespace

HttpResponse listAssets(const Call &call)
{
    constexpr qint64 most = std::numeric_limits<qint32>::max();
    Assets::Filter filter;
    filter.formats = call.queryTextOrEmpty("formats", longestFormats);
    filter.name = call.queryTextOrEmpty("name", Assets::longestName);
    filter.first = call.queryNumber("first", most, 0);
    filter.count = call.queryNumber("count", most, 0);
    QList<Asset> assets;
    expectDone(call.store.assets.list(assetUserOf(call), folderIdOf(call), filter, assets),
               QStringLiteral("There is no such folder."),
               QStringLiteral("You may not list this folder."));
    JsonWriter json;
    json.beginObject().key("assets").beginObject().key("columns").beginArray();
    for (const char *column : {"guid", "name", "detail", "date", "thumbnail", "type"})
        json.text(QString::fromLatin1(column));
    json.endArray().key("rows").beginArray();
    for (const Asset &asset : assets) {
        json.beginArray().text(asset.guid).text(asset.name).text(asset.detail);
        json.integer(asset.createdAt).text(thumbnailAddress(call, asset)).text(asset.assetType);
        json.endArray();
    }
    json.endArray().endObject().endObject();
    return jsonResponse(json.json());
}

HttpResponse deleteAsset(const Call &call)
{
    expectDone(call.store.assets.remove(assetUserOf(call), guidOf(call)), noSuchAsset,
               QStringLiteral("You may not delete assets of this folder."));
    HttpResponse response;
    response.status = 204;
    return response;
}

HttpResponse assetValue(const Call &call)
{
    AssetFile file;
    expectDone(call.store.assets.find(assetUserOf(call), guidOf(call), file), noSuchAsset,
               QStringLiteral("You may not use assets of this folder."));
    // Data records keep this address, so it has no end.
    const QByteArray address = signedAddress(call, "/a/" + guidOf(call).toLatin1(), 0);
    JsonWriter json;
    json.beginObject().key("value").text(QString::fromLatin1(address)).endObject();
    return jsonResponse(json.json());
}

HttpResponse assetBytes(const Call &call)
{
    const AssetFile file = signedFile(call);
    HttpResponse response = fileResponse(call.request, call.store.blobs.blobPath(file.sha),
                                         file.sha.toLatin1(), file.mime.toLatin1());
    response.headers.append(
        {"Content-Disposition", "inline; filename*=UTF-8''" + QUrl::toPercentEncoding(file.name)});
    return response;
}

HttpResponse assetThumbnail(const Call &call)
{
    const AssetFile file = signedFile(call);
    bool ok = false;
    const int size = call.parameters.at(1).toInt(&ok);
    if (!ok || !Thumbnails::isSize(size) || !file.thumbnail)
        throw notFound(QStringLiteral("There is no such thumbnail."));
    return fileResponse(call.request, call.store.blobs.thumbnailPath(file.sha, size),
                        file.sha.toLatin1() + '-' + QByteArray::number(size), "image/png");
}

} // namespace Zel::Service
