// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/assetreader.h"

#include "platform/core/int16.h"
#include "service/client/tablereader.h"

namespace QXSC {

namespace {

constexpr std::array folderFields{
    QLatin1String("folderId"),   QLatin1String("parentId"),    QLatin1String("hasParent"),
    QLatin1String("folderName"), QLatin1String("permissions"),
};

constexpr std::array assetFields{
    QLatin1String("guid"), QLatin1String("name"),      QLatin1String("detail"),
    QLatin1String("date"), QLatin1String("thumbnail"), QLatin1String("type"),
};

/// A number of the service that has no room in 16 bits is an overflow, never another number.
qint16 readInt16(const QJsonValue &value, QLatin1String name)
{
    return Zel::Int16::from(readInt64(value, name)).value();
}

qint64 readSize(const QJsonValue &value, QLatin1String name)
{
    const qint64 number = value.toInteger(-1);
    if (number < 0)
        throw AnswerProblem{QStringLiteral("\"%1\" is no number of bytes").arg(name)};
    return number;
}

QString readTextMember(const QByteArray &body, QLatin1String name)
{
    return readText(readMember(readObject(body), name), name);
}

/// A word that may stand in an address as it is.
QByteArray readPlainWord(const QByteArray &body, QLatin1String name)
{
    const QByteArray word = readTextMember(body, name).toUtf8();
    const bool plain = std::all_of(word.begin(), word.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
    });
    if (word.isEmpty() || !plain)
        throw AnswerProblem{QStringLiteral("\"%1\" is not one").arg(name)};
    return word;
}

} // namespace

AssetFolderCollectionPtr readAssetFolders(const QByteArray &body)
{
    auto folders = std::make_shared<AssetFolderCollection>();
    const auto take = [&](const auto &valueAt) {
        auto record = std::make_shared<AssetFolderRecord>();
        record->folderId = readInt16(valueAt(0), folderFields[0]);
        record->parentId = readInt16(valueAt(1), folderFields[1]);
        record->hasParent = readFlag(valueAt(2), folderFields[2]);
        record->folderName = readText(valueAt(3), folderFields[3]);
        record->permissions = readText(valueAt(4), folderFields[4]);
        folders->add(record);
    };
    if (!readTable(body, QLatin1String("folders"), folderFields, take))
        return nullptr;
    return folders;
}

AssetCollectionPtr readAssets(const QJsonObject &answer)
{
    auto assets = std::make_shared<AssetCollection>();
    const auto take = [&](const auto &valueAt) {
        auto record = std::make_shared<AssetRecord>();
        record->guid = readText(valueAt(0), assetFields[0]);
        record->assetName = readText(valueAt(1), assetFields[1]);
        record->assetDetail = readText(valueAt(2), assetFields[2]);
        record->assetDate = readTime(valueAt(3), assetFields[3]).value_or(QDateTime());
        record->thumbnailUrl = readText(valueAt(4), assetFields[4]);
        record->assetType = readText(valueAt(5), assetFields[5]);
        assets->add(record);
    };
    if (!readTable(answer, QLatin1String("assets"), assetFields, take))
        return nullptr;
    return assets;
}

qint16 readFolderId(const QByteArray &body)
{
    const QLatin1String name("folderId");
    return readInt16(readMember(readObject(body), name), name);
}

QString readPermissions(const QByteArray &body)
{
    return readTextMember(body, QLatin1String("permissions"));
}

QString readAssetValue(const QByteArray &body)
{
    return readTextMember(body, QLatin1String("value"));
}

QString readAssetGuid(const QByteArray &body)
{
    return QString::fromLatin1(readPlainWord(body, QLatin1String("guid")));
}

UploadTicket readUploadTicket(const QByteArray &body)
{
    const QLatin1String chunk("chunk");
    UploadTicket ticket{readPlainWord(body, QLatin1String("uploadId")),
                        readSize(readMember(readObject(body), chunk), chunk)};
    constexpr qint64 largestPiece = 64LL * 1024 * 1024;
    if (ticket.chunk == 0 || ticket.chunk > largestPiece)
        throw AnswerProblem{QStringLiteral("\"chunk\" is no size for a piece")};
    return ticket;
}

qint64 readReceived(const QByteArray &body)
{
    const QLatin1String name("received");
    return readSize(readMember(readObject(body), name), name);
}

} // namespace QXSC
