// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/interface/schemaform.h"

#include <QJsonArray>
#include <QSet>

#include <stdexcept>

namespace ZelTest {

namespace {

/// Says nothing about what is valid.
bool isRemark(const QString &key)
{
    static const QSet<QString> remarks{QStringLiteral("description"), QStringLiteral("title"),
                                       QStringLiteral("format"), QStringLiteral("$ref")};
    return remarks.contains(key);
}

class Converter
{
public:
    explicit Converter(const QJsonObject &components)
        : m_components(components)
    {
    }

    QJsonValue schema(const QJsonValue &value, int depth = 0) const
    {
        if (!value.isObject())
            return value; // true or false
        if (depth > mostDepth)
            throw std::logic_error("a schema refers to itself");
        const QJsonObject object = value.toObject();
        const QJsonObject own = members(object, depth);
        const QString reference = object.value(QLatin1String("$ref")).toString();
        if (reference.isEmpty())
            return own;
        const QJsonValue named = schema(componentOf(reference), depth + 1);
        return own.isEmpty() ? named
                             : QJsonObject{{QStringLiteral("allOf"), QJsonArray{named, own}}};
    }

private:
    static constexpr int mostDepth = 50;

    QJsonValue componentOf(const QString &reference) const
    {
        static const QString prefix = QStringLiteral("#/components/schemas/");
        const QJsonValue found = m_components.value(reference.mid(prefix.size()));
        if (!reference.startsWith(prefix) || !found.isObject())
            throw std::logic_error(qPrintable(reference + QLatin1String(" leads nowhere")));
        return found;
    }

    QJsonArray schemas(const QJsonValue &list, int depth) const
    {
        QJsonArray result;
        const QJsonArray members = list.toArray();
        for (const QJsonValue &one : members)
            result << schema(one, depth + 1);
        return result;
    }

    QJsonObject members(const QJsonObject &object, int depth) const
    {
        QJsonObject result;
        for (auto it = object.begin(); it != object.end(); ++it) {
            const QString &key = it.key();
            if (isRemark(key))
                continue;
            if (key == QLatin1String("properties"))
                result.insert(key, properties(it.value().toObject(), depth));
            else if (key == QLatin1String("prefixItems"))
                result.insert(QStringLiteral("items"), schemas(it.value(), depth));
            else if (key == QLatin1String("anyOf") || key == QLatin1String("allOf"))
                result.insert(key, schemas(it.value(), depth));
            else if (key == QLatin1String("items") && object.contains(QLatin1String("prefixItems")))
                result.insert(QStringLiteral("additionalItems"), schema(it.value(), depth + 1));
            else if (key == QLatin1String("items"))
                result.insert(key, schema(it.value(), depth + 1));
            else
                result.insert(key, it.value());
        }
        const bool isOpen = !object.contains(QLatin1String("additionalProperties")) &&
                            object.contains(QLatin1String("properties")) &&
                            object.value(QLatin1String("type")) == QLatin1String("object");
        if (isOpen)
            result.insert(QStringLiteral("additionalProperties"), false);
        return result;
    }

    QJsonObject properties(const QJsonObject &object, int depth) const
    {
        QJsonObject result;
        for (auto it = object.begin(); it != object.end(); ++it)
            result.insert(it.key(), schema(it.value(), depth + 1));
        return result;
    }

    const QJsonObject &m_components;
};

} // namespace

QJsonObject validatorForm(const QJsonObject &schema, const QJsonObject &components)
{
    return Converter(components).schema(schema).toObject();
}

} // namespace ZelTest
