// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/datarecordreader.h"

#include "service/client/tablereader.h"

#include <limits>

namespace QXSC {

namespace {

constexpr QLatin1String recordName("record");
constexpr QLatin1String versionName("version");

QString textIn(const QJsonObject &object, QLatin1String name)
{
    return readText(readMember(object, name), name);
}

qint16 sizeIn(const QJsonObject &object, QLatin1String name)
{
    const qint32 size = readInt32(readMember(object, name), name);
    if (size < std::numeric_limits<qint16>::min() || size > std::numeric_limits<qint16>::max())
        throw AnswerProblem{QStringLiteral("\"%1\" is not a 16-bit number").arg(name)};
    return static_cast<qint16>(size);
}

DataRecordEntryPtr readEntry(const QJsonValue &value)
{
    const QJsonObject object = readObject(value, QLatin1String("entry"));
    auto entry = std::make_shared<DataRecordEntry>();
    entry->label = textIn(object, QLatin1String("label"));
    entry->type = textIn(object, QLatin1String("type"));
    entry->value.text = textIn(object, QLatin1String("text"));
    entry->value.guid = textIn(object, QLatin1String("guid"));
    entry->value.assetDependencies = textIn(object, QLatin1String("assetDependencies"));
    entry->ext = textIn(object, QLatin1String("ext"));
    entry->hidden = readFlag(readMember(object, QLatin1String("hidden")), QLatin1String("hidden"));
    entry->source = textIn(object, QLatin1String("source"));
    entry->buttonText = textIn(object, QLatin1String("buttonText"));
    entry->width = sizeIn(object, QLatin1String("width"));
    entry->height = sizeIn(object, QLatin1String("height"));
    return entry;
}

DataRecordPtr readRecord(const QJsonValue &value)
{
    const QJsonObject object = readObject(value, recordName);
    auto record = std::make_shared<DataRecord>();
    record->version = readInt64(readMember(object, versionName), versionName);
    auto entries = std::make_shared<DataRecordEntryCollection>();
    const QLatin1String name("entries");
    readEach(readList(readMember(object, name), name), "entry",
             [&](const QJsonValue &entry) { entries->add(readEntry(entry)); });
    record->entries = entries;
    return record;
}

} // namespace

DataRecordPtr readDataRecord(const QByteArray &body)
{
    const QJsonValue value = readMember(readObject(body), recordName);
    return value.isNull() ? nullptr : readRecord(value);
}

DataRecordSave readSavedRecord(const QByteArray &body)
{
    return {true, readInt64(readMember(readObject(body), versionName), versionName), nullptr};
}

DataRecordSave readNewerRecord(const QByteArray &body)
{
    const QJsonObject object = readObject(body);
    const qint64 version = readInt64(readMember(object, versionName), versionName);
    return {false, version, readRecord(readMember(object, recordName))};
}

} // namespace QXSC
