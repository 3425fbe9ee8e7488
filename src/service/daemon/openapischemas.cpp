// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/openapischemas.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <stdexcept>

namespace Zel::Service {

namespace {

const QString folder = QStringLiteral(":/zel/openapi");
const QString frameName = QStringLiteral("document.json");

/// These are files of the program itself, so a fault in one is a fault of the program.
QJsonObject objectIn(const QString &path)
{
    QFile file(path);
    QJsonParseError error;
    const QJsonDocument document = file.open(QIODevice::ReadOnly)
                                       ? QJsonDocument::fromJson(file.readAll(), &error)
                                       : QJsonDocument();
    if (!document.isObject())
        throw std::logic_error(qPrintable(path + QLatin1String(" is no JSON object")));
    return document.object();
}

QJsonObject tableSchema(const QJsonArray &columns)
{
    QJsonArray names;
    QJsonArray values;
    for (const QJsonValue &column : columns) {
        QJsonObject value = column.toObject();
        const QJsonValue name = value.take(QStringLiteral("column"));
        names << name;
        value.insert(QStringLiteral("title"), name);
        values << value;
    }
    const QJsonObject row{{QStringLiteral("type"), QStringLiteral("array")},
                          {QStringLiteral("prefixItems"), values},
                          {QStringLiteral("minItems"), values.size()},
                          {QStringLiteral("maxItems"), values.size()},
                          {QStringLiteral("items"), false}};
    const QJsonObject rows{{QStringLiteral("type"), QStringLiteral("array")},
                           {QStringLiteral("items"), row}};
    return {
        {QStringLiteral("type"), QStringLiteral("object")},
        {QStringLiteral("required"), QJsonArray{QStringLiteral("columns"), QStringLiteral("rows")}},
        {QStringLiteral("properties"),
         QJsonObject{{QStringLiteral("columns"), QJsonObject{{QStringLiteral("const"), names}}},
                     {QStringLiteral("rows"), rows}}}};
}

QJsonObject readSchemas()
{
    QJsonObject all;
    QDirIterator files(folder, {QStringLiteral("*.json")}, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        if (files.fileName() == frameName)
            continue;
        const QJsonObject schemas = objectIn(path);
        for (auto it = schemas.begin(); it != schemas.end(); ++it) {
            const QJsonObject schema = it.value().toObject();
            if (all.contains(it.key()))
                throw std::logic_error(qPrintable(it.key() + QLatin1String(" stands twice")));
            const QJsonValue table = schema.value(QLatin1String("table"));
            all.insert(it.key(), table.isArray() ? tableSchema(table.toArray()) : schema);
        }
    }
    return all;
}

} // namespace

const QJsonObject &componentSchemas()
{
    static const QJsonObject all = readSchemas();
    return all;
}

QJsonObject documentFrame()
{
    return objectIn(folder + QLatin1Char('/') + frameName);
}

QJsonObject reference(const char *kind, const QByteArray &name)
{
    return {{QStringLiteral("$ref"), QLatin1String("#/components/") + QLatin1String(kind) +
                                         QLatin1Char('/') + QLatin1String(name)}};
}

} // namespace Zel::Service
