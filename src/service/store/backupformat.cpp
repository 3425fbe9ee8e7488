// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/backupformat.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace Zel {

namespace {

const QString formatName = QStringLiteral("zel-service backup");

constexpr std::array kindNames{"integer", "integer", "text", "bytes"};

QJsonObject tableToJson(const TableInfo &table)
{
    QJsonArray columns;
    for (const TableColumn &column : table.columns)
        columns << QJsonArray{column.name,
                              QString::fromLatin1(kindNames.at(std::size_t(column.kind)))};
    QJsonArray key;
    for (const int place : table.key)
        key << place;
    return {{QStringLiteral("name"), table.name},
            {QStringLiteral("columns"), columns},
            {QStringLiteral("key"), key}};
}

std::optional<TableInfo> tableFromJson(const QJsonObject &json)
{
    TableInfo table;
    table.name = json.value(QLatin1String("name")).toString();
    const QJsonArray columns = json.value(QLatin1String("columns")).toArray();
    for (const QJsonValue &column : columns) {
        const QByteArray kind = column.toArray().at(1).toString().toLatin1();
        const auto *found = std::find(kindNames.begin(), kindNames.end(), kind);
        if (found == kindNames.end())
            return std::nullopt;
        table.columns.append(
            {column.toArray().at(0).toString(), ColumnKind(found - kindNames.begin())});
    }
    const QJsonArray key = json.value(QLatin1String("key")).toArray();
    for (const QJsonValue &place : key)
        table.key << place.toInt(-1);
    const bool isTable = !table.name.isEmpty() && !table.columns.isEmpty();
    return isTable ? std::optional(table) : std::nullopt;
}

} // namespace

QString sha256Of(const QByteArray &bytes)
{
    QXSC::Checksum checksum;
    checksum.add(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return QString::fromLatin1(checksum.hex());
}

QByteArray manifestSumLine(const QByteArray &manifest)
{
    return sha256Of(manifest).toLatin1() + "  " + backupManifestName + '\n';
}

QByteArray fileLine(const QString &name, qint64 size, const QString &sha256)
{
    return sha256.toLatin1() + ' ' + QByteArray::number(size) + ' ' + name.toUtf8() + '\n';
}

QByteArray BackupHeader::toJson() const
{
    QJsonArray all;
    for (const TableInfo &table : tables)
        all << tableToJson(table);
    return QJsonDocument(QJsonObject{{QStringLiteral("format"), formatName},
                                     {QStringLiteral("version"), format},
                                     {QStringLiteral("step"), step},
                                     {QStringLiteral("database"), engine},
                                     {QStringLiteral("blobs"), blobs},
                                     {QStringLiteral("createdAt"), createdAt},
                                     {QStringLiteral("tables"), all}})
        .toJson(QJsonDocument::Indented);
}

std::optional<BackupHeader> BackupHeader::fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    if (object.value(QLatin1String("format")).toString() != formatName)
        return std::nullopt;
    BackupHeader header;
    header.format = object.value(QLatin1String("version")).toInt();
    if (header.format != formatVersion)
        return header;
    header.step = object.value(QLatin1String("step")).toInt();
    header.engine = object.value(QLatin1String("database")).toString();
    header.blobs = object.value(QLatin1String("blobs")).toString();
    header.createdAt = object.value(QLatin1String("createdAt")).toInteger();
    const QJsonArray all = object.value(QLatin1String("tables")).toArray();
    for (const QJsonValue &one : all) {
        const auto table = tableFromJson(one.toObject());
        if (!table)
            return std::nullopt;
        header.tables << *table;
    }
    return header.step > 0 ? std::optional(header) : std::nullopt;
}

QByteArray BackupManifest::toJson() const
{
    QJsonArray all;
    for (const TableSum &table : tables)
        all << QJsonObject{{QStringLiteral("name"), table.table},
                           {QStringLiteral("rows"), table.rows},
                           {QStringLiteral("sha256"), table.sha256}};
    return QJsonDocument(QJsonObject{{QStringLiteral("header"), headerSha256},
                                     {QStringLiteral("tables"), all},
                                     {QStringLiteral("blobs"), blobs},
                                     {QStringLiteral("blobBytes"), blobBytes},
                                     {QStringLiteral("files"), filesSha256}})
        .toJson(QJsonDocument::Indented);
}

std::optional<BackupManifest> BackupManifest::fromJson(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    BackupManifest manifest;
    manifest.headerSha256 = object.value(QLatin1String("header")).toString();
    const QJsonArray all = object.value(QLatin1String("tables")).toArray();
    for (const QJsonValue &one : all)
        manifest.tables.append({one[QLatin1String("name")].toString(),
                                one[QLatin1String("rows")].toInteger(),
                                one[QLatin1String("sha256")].toString()});
    manifest.blobs = object.value(QLatin1String("blobs")).toInteger();
    manifest.blobBytes = object.value(QLatin1String("blobBytes")).toInteger();
    manifest.filesSha256 = object.value(QLatin1String("files")).toString();
    return manifest;
}

} // namespace Zel
