// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/jsonwriter.h"

namespace Zel::Service {

namespace {

const QString noSuchFolder = QStringLiteral("There is no such folder.");

[[noreturn]] void refuse(AssetFolders::Outcome outcome, const QString &notAllowedSentence)
{
    switch (outcome) {
    case AssetFolders::Outcome::NotAllowed:
        throw notAllowed(notAllowedSentence);
    case AssetFolders::Outcome::NameTaken:
        throw Problem(409, QByteArrayLiteral("conflict"),
                      QStringLiteral("There is a folder of that name already."));
    case AssetFolders::Outcome::NotEmpty:
        throw Problem(409, QByteArrayLiteral("not-empty"),
                      QStringLiteral("The folder is not empty."));
    case AssetFolders::Outcome::Full:
        throw Problem(409, QByteArrayLiteral("too-many-folders"),
                      QStringLiteral("The account can have no more folders."));
    default:
        throw notFound(noSuchFolder);
    }
}

} // namespace

HttpResponse listAssetFolders(const Call &call)
{
    const qint64 parent = call.queryNumber("parent", AssetFolders::largestId, 0);
    const auto folders = call.store.folders.list(assetUserOf(call), parent);
    if (!folders)
        return jsonResponse(QByteArrayLiteral("{\"folders\":null}"));
    JsonWriter json;
    json.beginObject().key("folders").beginObject().key("columns").beginArray();
    for (const char *column : {"folderId", "parentId", "hasParent", "folderName", "permissions"})
        json.text(QString::fromLatin1(column));
    json.endArray().key("rows").beginArray();
    for (const AssetFolder &folder : *folders) {
        json.beginArray().integer(folder.folderId).integer(folder.parentId);
        json.boolean(folder.parentId != 0).text(folder.name).text(folder.letters).endArray();
    }
    json.endArray().endObject().endObject();
    return jsonResponse(json.json());
}

HttpResponse createAssetFolder(const Call &call)
{
    JsonFields fields(call.request.body);
    const qint64 parent = fields.integer(QStringLiteral("parentId"), 0, AssetFolders::largestId);
    const QString name = fields.text(QStringLiteral("name"), AssetFolders::longestName);
    fields.expectNoMore();
    if (!AssetFolders::isUsableName(name))
        throw Problem::invalid(QStringLiteral(
            "A folder needs a name without \"/\", \"\\\\\" and control characters."));
    qint64 folderId = 0;
    const auto outcome = call.store.folders.create(assetUserOf(call), parent, name, folderId);
    if (outcome != AssetFolders::Outcome::Done)
        refuse(outcome, QStringLiteral("You may not make folders in this folder."));
    JsonWriter json;
    json.beginObject().key("folderId").integer(folderId).endObject();
    return jsonResponse(json.json(), 201);
}

HttpResponse deleteAssetFolder(const Call &call)
{
    const auto outcome = call.store.folders.remove(assetUserOf(call), folderIdOf(call));
    if (outcome != AssetFolders::Outcome::Done)
        refuse(outcome, QStringLiteral("You may not delete this folder."));
    return noContent();
}

HttpResponse folderPermissions(const Call &call)
{
    const auto letters = call.store.folders.letters(assetUserOf(call), folderIdOf(call));
    if (!letters)
        throw notFound(noSuchFolder);
    JsonWriter json;
    json.beginObject().key("permissions").text(*letters).endObject();
    return jsonResponse(json.json());
}

} // namespace Zel::Service
