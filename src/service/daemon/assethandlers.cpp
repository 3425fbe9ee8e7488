// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/deploymentcalls.h"
#include "service/daemon/filesection.h"
#include "service/daemon/handlers.h"
#include "service/daemon/listcall.h"
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

QString thumbnailAddress(const AddressSigner &signer, const Asset &asset, qint64 expiry)
{
    if (!asset.thumbnail)
        return QString();
    const QByteArray path =
        "/t/" + asset.guid.toLatin1() + '/' + QByteArray::number(listedThumbnail);
    return QString::fromLatin1(signer.address(path, expiry));
}

AssetFile fileOf(const Call &call, qint64 accountId, qint64 position)
{
    const auto file = call.store.assets.file(accountId, guidOf(call), position);
    if (!file)
        throw notFound(noSuchAsset);
    return *file;
}

/// The bytes of a file, for the holder of the asset's address.
HttpResponse bytesOf(const Call &call, qint64 position)
{
    const qint64 account = accountOfAssetCall(call, guidOf(call));
    const AssetFile file = fileOf(call, account, position);
    HttpResponse response = fileResponse(call.request, call.store.blobs.open({account, file.sha}),
                                         file.sha.toLatin1(), file.mime.toLatin1());
    response.headers.append(
        {"Content-Disposition", "inline; filename*=UTF-8''" + QUrl::toPercentEncoding(file.name)});
    return response;
}

} // namespace

/// `first` and `count` name a section of the list, which comes page by page: its place carries how
/// many rows of it are still to come.
HttpResponse listAssets(const Call &call)
{
    constexpr qint64 most = std::numeric_limits<qint32>::max();
    constexpr qint64 allOfThem = -1;
    const Assets::Filter filter{call.queryTextOrEmpty("name", Assets::longestName),
                                call.queryTextOrEmpty("formats", longestFormats)};
    const qint64 first = call.queryNumber("first", most, 0);
    const qint64 count = call.queryNumber("count", most, 0);
    const AddressSigner signer(call);
    const qint64 expiry = thumbnailExpiry(call.store.clock());
    ListCall page(call, "assets");
    Assets::Place after;
    qint64 wanted = count == 0 ? allOfThem : count;
    if (!page.isFirst()) {
        after = {page.text(), page.text()};
        wanted = page.number();
    }
    return jsonResponse(call.store.database.snapshot([&] {
        JsonWriter json;
        json.beginObject();
        beginTable(json, "assets", {"guid", "name", "detail", "date", "thumbnail", "type"});
        PageRows rows(json, page.limit());
        Assets::Place last;
        qint64 toPass = page.isFirst() ? first : 0;
        qint64 left = wanted;
        const auto write = [&](const Asset &asset, const Assets::Place &place) {
            if (toPass > 0) {
                --toPass;
                return true;
            }
            if (left == 0 || !rows.takeOne())
                return false;
            json.beginArray().text(asset.guid).text(asset.name).text(asset.detail);
            json.integer(asset.createdAt).text(thumbnailAddress(signer, asset, expiry));
            json.text(asset.assetType).endArray();
            last = place;
            left -= left > 0 ? 1 : 0;
            return true;
        };
        expectDone(
            call.store.assets.visitAfter(assetUserOf(call), folderIdOf(call), filter, after, write),
            QStringLiteral("There is no such folder."),
            QStringLiteral("You may not list this folder."));
        endTable(json);
        page.writeNext(json, rows.hasMore()
                                 ? std::optional(QJsonArray{last.nameKey, last.guid, left})
                                 : std::nullopt);
        json.endObject();
        return json.json();
    }));
}

HttpResponse deleteAsset(const Call &call)
{
    expectDone(call.store.assets.remove(assetUserOf(call), guidOf(call)), noSuchAsset,
               QStringLiteral("You may not delete assets of this folder."));
    return noContent();
}

HttpResponse assetValue(const Call &call)
{
    QList<AssetFile> files;
    expectDone(call.store.assets.find(assetUserOf(call), guidOf(call), files), noSuchAsset,
               QStringLiteral("You may not use assets of this folder."));
    const auto addressOf = [&](qsizetype position) {
        return QString::fromLatin1(
            assetAddress(call, guidOf(call), position, files.at(position).name));
    };
    JsonWriter json;
    json.beginObject().key("value").text(addressOf(0)).key("files").beginArray();
    for (qsizetype i = 0; i < files.size(); ++i) {
        const AssetFile &file = files.at(i);
        json.beginObject().key("name").text(file.name).key("type").text(file.mime);
        json.key("size").integer(file.size).key("value").text(addressOf(i)).endObject();
    }
    json.endArray().endObject();
    return jsonResponse(json.json());
}

HttpResponse assetBytes(const Call &call)
{
    return bytesOf(call, 0);
}

HttpResponse assetFileBytes(const Call &call)
{
    bool ok = false;
    const qint64 position = call.parameters.at(1).toLongLong(&ok);
    if (!ok || position < 0)
        throw notFound(noSuchAsset);
    return bytesOf(call, position);
}

HttpResponse assetThumbnail(const Call &call)
{
    const qint64 account = accountOfSignedCall(call);
    const AssetFile file = fileOf(call, account, 0);
    bool ok = false;
    const int size = call.parameters.at(1).toInt(&ok);
    if (!ok || !Thumbnails::isSize(size) || !file.thumbnail)
        throw notFound(QStringLiteral("There is no such thumbnail."));
    return fileResponse(call.request, call.store.blobs.openThumbnail({account, file.sha}, size),
                        file.sha.toLatin1() + '-' + QByteArray::number(size), "image/png");
}

} // namespace Zel::Service
