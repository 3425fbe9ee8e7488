// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/propertybag.h"
#include "platform/core/propertybagentry.h"
#include "platform/core/propertyescape.h"
#include "platform/core/propertyvalue.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace Zel {

namespace {

constexpr int formatVersion = 1;

QJsonObject entryObject(const QString &name, const QVariant &value)
{
    QJsonObject object;
    if (PropertyValue::needsEscape(name))
        object.insert(QLatin1String("escapedName"), PropertyValue::escaped(name));
    else
        object.insert(QLatin1String("name"), name);
    object.insert(QLatin1String("type"), PropertyValue::typeName(value));
    object.insert(QLatin1String("value"), PropertyValue::toJson(value));
    return object;
}

std::optional<QString> member(const QJsonObject &object, QLatin1String name)
{
    const QJsonValue value = object.value(name);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

QString shownJson(const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    const QString array =
        QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact));
    return array.sliced(1, array.size() - 2);
}

void readEntry(const QJsonValue &value, qsizetype number, PropertyBag &bag)
{
    const QJsonObject object = value.toObject();
    PropertyBagEntry entry;
    entry.place = PropertyBag::tr("number %1").arg(number);
    entry.name = member(object, QLatin1String("name"));
    entry.escapedName = member(object, QLatin1String("escapedName"));
    const QJsonValue type = object.value(QLatin1String("type"));
    entry.type = type.isUndefined() ? QStringLiteral("text") : type.toString();
    const QJsonValue content = object.value(QLatin1String("value"));
    if (!content.isUndefined()) {
        entry.hasValue = true;
        entry.shownValue = shownJson(content);
        entry.value = PropertyValue::fromJson(entry.type, content);
    }
    entry.addTo(bag);
}

PropertyBag fromJsonText(QStringView text)
{
    QJsonParseError error;
    const QByteArray utf8 = text.toUtf8();
    const QJsonDocument document = QJsonDocument::fromJson(utf8, &error);
    if (document.isObject())
        return PropertyBag::fromJson(document.object());
    const qsizetype line = utf8.first(qMin(qsizetype(error.offset), utf8.size())).count('\n') + 1;
    PropertyBag bag;
    bag.addProblem(PropertyBag::tr("The text is not well-formed JSON at line %1 (%2); nothing is "
                                   "read.")
                       .arg(line)
                       .arg(error.errorString()));
    return bag;
}

} // namespace

QJsonObject PropertyBag::toJson() const
{
    QJsonArray entries;
    for (const Entry &entry : m_entries)
        entries.append(entryObject(entry.name, entry.value));
    return QJsonObject{{QStringLiteral("version"), formatVersion},
                       {QStringLiteral("properties"), entries}};
}

PropertyBag PropertyBag::fromJson(const QJsonObject &object)
{
    PropertyBag bag;
    const QJsonValue entries = object.value(QLatin1String("properties"));
    if (!entries.isArray()) {
        bag.addProblem(tr("The JSON text holds no properties."));
        return bag;
    }
    if (object.value(QLatin1String("version")).toInt() > formatVersion)
        bag.addProblem(tr("The properties were saved by a newer version; what this one understands "
                          "is read."));
    qsizetype number = 0;
    for (const QJsonValue entry : entries.toArray())
        readEntry(entry, ++number, bag);
    return bag;
}

PropertyBag PropertyBag::fromText(QStringView text)
{
    constexpr QChar byteOrderMark = u'\uFEFF';
    const QStringView content = text.startsWith(byteOrderMark) ? text.sliced(1) : text;
    const QStringView trimmed = content.trimmed();
    if (trimmed.isEmpty())
        return PropertyBag();
    if (trimmed.startsWith(u'<') || text.size() > MostCharacters)
        return fromXml(content);
    if (trimmed.startsWith(u'{'))
        return fromJsonText(content);
    PropertyBag bag;
    bag.addProblem(tr("The text is neither XML nor JSON; nothing is read."));
    return bag;
}

} // namespace Zel
