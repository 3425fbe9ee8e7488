// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The routes of themes, assets, uploads and of the bytes of files.
#include "service/daemon/handlers.h"
#include "service/daemon/routes.h"

namespace Zel::Service {

QList<Route> themeRoutes()
{
    const RouteParameter theme{"guid", "Guid", "The theme."};
    return {
        get("/v1/themes", listThemes)
            .named("listThemes", "Themes with their definitions, by name")
            .query("scope", "ThemeScope", "Whose themes are wanted.")
            .paged()
            .gives(200, "ThemeList"),
        get("/v1/templates", findTemplate)
            .named("findTemplate", "A template by its keys")
            .says("A template of the account goes before one of every account.")
            .query("key", "TemplateKey", "The template.")
            .query("version", "TemplateKey", "Its version.")
            .gives(200, "FoundTemplate"),
        get("/v1/themes/{guid}/data-record", dataRecord)
            .named("dataRecord", "The data record of a theme, with its version")
            .place(theme)
            .gives(200, "FoundDataRecord"),
        put("/v1/themes/{guid}/data-record", saveDataRecord, recordBodyLimit)
            .named("saveDataRecord", "Save the values of a data record, all of them or none")
            .says("The values are saved against the version they were read with. The same values "
                  "sent again by the same person straight after are the same save. Not for "
                  "viewers.")
            .place(theme)
            .takes("DataRecordValues")
            .gives(200, "SavedDataRecord")
            .refuses("not-allowed")
            .refuses("not-found")
            .refuses("version-conflict", "VersionConflict"),
    };
}

QList<Route> assetRoutes()
{
    const RouteParameter folder{"id", "FolderId", "The folder; 0 is the root of the account."};
    const RouteParameter asset{"guid", "Guid", "The asset."};
    return {
        get("/v1/asset-folders", listAssetFolders)
            .named("listAssetFolders", "The folders below a folder, parents before children")
            .says("The folder itself comes first.")
            .optionalQuery("parent", "FolderId", "Where to begin; the root when it is left out.")
            .gives(200, "AssetFolderList"),
        post("/v1/asset-folders", createAssetFolder)
            .named("createAssetFolder", "Make a folder")
            .says("Needs the right W in its parent.")
            .takes("NewAssetFolder")
            .gives(201, "CreatedAssetFolder")
            .refuses("not-allowed")
            .refuses("not-found")
            .refuses("conflict")
            .refuses("too-many-folders"),
        del("/v1/asset-folders/{id}", deleteAssetFolder)
            .named("deleteAssetFolder", "Delete an empty folder")
            .says("Needs the right D in it; nobody deletes the root.")
            .place(folder)
            .gives(204)
            .refuses("not-allowed")
            .refuses("not-found")
            .refuses("not-empty"),
        get("/v1/asset-folders/{id}/permissions", folderPermissions)
            .named("folderPermissions", "What the person may do in a folder")
            .place(folder)
            .gives(200, "FolderPermissions")
            .refuses("not-found"),
        get("/v1/asset-folders/{id}/assets", listAssets)
            .named("listAssets", "The assets of a folder, by name")
            .says("Needs the right R in it.")
            .place(folder)
            .optionalQuery("formats", "AssetFormats", "Only assets of these formats.")
            .optionalQuery("name", "NameFilter", "Only assets whose name contains this.")
            .optionalQuery("first", "RowNumber", "How many rows are passed over.")
            .optionalQuery("count", "RowNumber", "How many rows are wanted; 0 for all.")
            .paged()
            .gives(200, "AssetList")
            .refuses("not-allowed")
            .refuses("not-found"),
        del("/v1/assets/{guid}", deleteAsset)
            .named("deleteAsset", "Move an asset to the trash")
            .says("Needs the right D in its folder.")
            .place(asset)
            .gives(204)
            .refuses("not-allowed")
            .refuses("not-found"),
        get("/v1/assets/{guid}/value", assetValue)
            .named("assetValue", "The addresses of an asset's bytes")
            .says("Needs the right R in its folder.")
            .place(asset)
            .gives(200, "AssetValue")
            .refuses("not-allowed")
            .refuses("not-found"),
    };
}

QList<Route> uploadRoutes()
{
    const RouteParameter upload{"id", "UploadId", "The upload."};
    return {
        post("/v1/uploads", reserveUpload)
            .named("reserveUpload", "Reserve an upload")
            .says("Missing rights and missing room show here, before a byte is sent. Needs the "
                  "right W in the folder.")
            .takes("NewUpload")
            .gives(201, "ReservedUpload")
            .refuses("not-allowed")
            .refuses("not-found")
            .refuses("storage-full"),
        put("/v1/uploads/{id}/files/{n}", takeUploadChunk, Uploads::chunkBytes)
            .named("sendUploadPiece", "Send the next piece of a file")
            .says("A piece without bytes only asks how much has arrived.")
            .place(upload)
            .place({"n", "RowNumber", "The file, from 0."})
            .optionalQuery("offset", "Size", "Where in the file the piece begins.")
            .takesBytes()
            .gives(200, "UploadProgress")
            .refuses("not-allowed")
            .refuses("not-found")
            .refuses("offset", "UploadOffset")
            .refuses("busy")
            .refuses("storage-full"),
        post("/v1/uploads/{id}/commit", commitUpload)
            .named("commitUpload", "Make an asset of what was sent")
            .says("Compares every checksum first. The same call again gives the same asset.")
            .place(upload)
            .takes("UploadChecksums")
            .gives(201, "CreatedAsset")
            .refuses("not-allowed")
            .refuses("not-found")
            .refuses("busy")
            .refuses("incomplete")
            .refuses("checksum")
            .refuses("storage-full"),
        del("/v1/uploads/{id}", dropUpload)
            .named("dropUpload", "Give an upload up")
            .place(upload)
            .gives(204)
            .refuses("not-found")
            .refuses("busy"),
    };
}

QList<Route> fileRoutes()
{
    const RouteParameter asset{"guid", "Guid", "The asset."};
    const RouteParameter name{"name", "FileName", "For people; the service does not look at it."};
    const char *signature = "The signature that the address was made with.";
    const char *account = "The account, as the address was made with.";
    const char *expiry = "When the address ends.";
    return {
        get("/a/{guid}/{name}", assetBytes)
            .openedBy("signedAddress")
            .named("assetBytes", "The bytes of the first file of an asset")
            .place(asset)
            .place(name)
            .query("s", "Signature", signature)
            .givesFile("The file.")
            .refuses("bad-address")
            .refuses("not-found"),
        get("/a/{guid}/{n}/{name}", assetFileBytes)
            .openedBy("signedAddress")
            .named("assetFileBytes", "The bytes of a further file of an asset")
            .place(asset)
            .place({"n", "RowNumber", "The file, from 1."})
            .place(name)
            .query("s", "Signature", signature)
            .givesFile("The file.")
            .refuses("bad-address")
            .refuses("not-found"),
        get("/t/{guid}/{size}", assetThumbnail)
            .openedBy("signedAddress")
            .named("assetThumbnail", "A thumbnail of an asset")
            .place(asset)
            .place({"size", "ThumbnailSize", "Pixels along its longer edge."})
            .query("a", "AccountNumber", account)
            .query("e", "Time", expiry)
            .query("s", "Signature", signature)
            .givesFile("A PNG picture.")
            .refuses("bad-address")
            .refuses("expired-address")
            .refuses("not-found"),
        get("/p/{guid}/{version}", themePreview)
            .openedBy("signedAddress")
            .named("themePreview", "The preview of a theme")
            .place({"guid", "Guid", "The theme."})
            .place({"version", "PreviewVersion", "Changes with the picture."})
            .query("a", "AccountNumber", account)
            .query("e", "Time", expiry)
            .query("s", "Signature", signature)
            .givesFile("A picture.")
            .refuses("bad-address")
            .refuses("expired-address")
            .refuses("not-found"),
        get("/nexo/tools_v2/Components/{path*}", componentFile)
            .by(Access::Public)
            .on(Lane::Immediate)
            .named("componentFile", "A file of a component page")
            .says("Pages are files of the program itself.")
            .place({"path", "FileName", "The file, perhaps in folders."})
            .optionalQuery("stylesheet", "FileName",
                           "A further style sheet, which the page itself looks at.")
            .givesText(200, "*/*", "The file.")
            .gives(204, "", "The path ends in `/close`: a page says that it is done.")
            .gives(304, "", "It is as it was when it had the tag that `If-None-Match` names.")
            .refuses("not-found"),
    };
}

} // namespace Zel::Service
