// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/interface/interfacecheck.h"

#include "service/daemon/api.h"
#include "service/daemon/openapidocument.h"
#include "tests/interface/jsonschemacheck.h"
#include "tests/interface/schemaform.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <limits>

namespace ZelTest {

namespace {

QByteArray headerOf(const CheckedCall &call, const QString &name)
{
    for (const auto &[key, value] : call.headers) {
        if (key.compare(name.toLatin1(), Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

/// How many places a documented path has that a path fits; -1 when it does not. A last place named
/// "path" takes all the rest.
int placesIn(const QString &pattern, const QString &path)
{
    const QStringList expected = pattern.split(QLatin1Char('/'));
    QStringList found = path.split(QLatin1Char('/'));
    if (pattern.endsWith(QLatin1String("{path}")))
        found = found.mid(0, expected.size());
    if (expected.size() != found.size())
        return -1;
    int places = 0;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        if (expected.at(i).startsWith(QLatin1Char('{')) && !found.at(i).isEmpty())
            ++places;
        else if (expected.at(i) != found.at(i))
            return -1;
    }
    return places;
}

QByteArray jsonText(const QByteArray &text)
{
    const QJsonArray list{QString::fromUtf8(text)};
    return QJsonDocument(list).toJson(QJsonDocument::Compact).mid(1).chopped(1);
}

bool isNumber(const QByteArray &text)
{
    bool ok = false;
    text.toLongLong(&ok);
    return ok;
}

/// The parameters of a query by name, percent-decoded.
QMap<QString, QByteArray> itemsOf(const QByteArray &query)
{
    QMap<QString, QByteArray> items;
    for (const QByteArray &item : query.isEmpty() ? QByteArrayList() : query.split('&')) {
        const qsizetype equals = item.indexOf('=');
        const QByteArray name = equals < 0 ? item : item.left(equals);
        const QByteArray value = equals < 0 ? QByteArray() : item.mid(equals + 1);
        items.insert(QString::fromLatin1(name), QByteArray::fromPercentEncoding(value));
    }
    return items;
}

/// Rows that players report are refused one by one in an answer that is good all the same.
bool refusesRows(const CheckedCall &call)
{
    return !QJsonDocument::fromJson(call.body)
                .object()
                .value(QLatin1String("refused"))
                .toArray()
                .isEmpty();
}

} // namespace

InterfaceCheck::InterfaceCheck()
    : InterfaceCheck(Zel::Service::openApiDocument(Zel::Service::Api::routes()))
{
}

InterfaceCheck::InterfaceCheck(const QJsonObject &document)
    : m_document(document)
{
}

InterfaceCheck::~InterfaceCheck() = default;

QStringList InterfaceCheck::faultsOf(const CheckedCall &call)
{
    const QString upper =
        QString::fromLatin1(call.method == "HEAD" ? QByteArray("GET") : call.method);
    // "get" is no method of HTTP.
    const QString method = upper == upper.toUpper() ? upper.toLower() : QString();
    const QJsonObject operation = pathItem(call.path).value(method).toObject();
    const bool isNoRoute = call.status == 404 || call.status == 405;
    QStringList faults;
    if (operation.isEmpty() && isNoRoute)
        faults = faultsAgainst(
            {{QStringLiteral("$ref"), QStringLiteral("#/components/schemas/Problem")}}, call.body);
    else if (operation.isEmpty())
        faults << QStringLiteral("the document knows no such call");
    else
        faults << answerFaults(operation, call) << requestFaults(operation, call);
    const QString name = QString::fromLatin1(call.method + ' ' + call.path + " -> ") +
                         QString::number(call.status) + QLatin1String(": ");
    for (QString &fault : faults)
        fault.prepend(name);
    return faults;
}

/// Of all paths that fit the one with the fewest places.
QJsonObject InterfaceCheck::pathItem(const QByteArray &path) const
{
    const QJsonObject paths = m_document.value(QLatin1String("paths")).toObject();
    QJsonObject best;
    int fewest = std::numeric_limits<int>::max();
    for (auto it = paths.begin(); it != paths.end(); ++it) {
        const int places = placesIn(it.key(), QString::fromLatin1(path));
        if (places < 0 || places >= fewest)
            continue;
        best = it.value().toObject();
        fewest = places;
    }
    return best;
}

QJsonObject InterfaceCheck::resolved(const QJsonObject &object) const
{
    const QString reference = object.value(QLatin1String("$ref")).toString();
    if (reference.isEmpty())
        return object;
    QJsonValue found = m_document;
    for (const QString &part : reference.mid(2).split(QLatin1Char('/')))
        found = found.toObject().value(part);
    return found.toObject();
}

QStringList InterfaceCheck::answerFaults(const QJsonObject &operation, const CheckedCall &call)
{
    const QJsonValue response =
        operation.value(QLatin1String("responses")).toObject().value(QString::number(call.status));
    if (!response.isObject())
        return {QStringLiteral("no such status is documented")};
    const QJsonObject documented = resolved(response.toObject());
    return headerFaults(documented, call) + bodyFaults(documented, call);
}

QStringList InterfaceCheck::bodyFaults(const QJsonObject &response, const CheckedCall &call)
{
    const QJsonObject content = response.value(QLatin1String("content")).toObject();
    const QByteArray whole = headerOf(call, QStringLiteral("Content-Type"));
    const QString type = QString::fromLatin1(whole.split(';').constFirst().trimmed());
    if (content.isEmpty())
        return call.body.isEmpty() && type.isEmpty()
                   ? QStringList()
                   : QStringList{QStringLiteral("it has a body, of type \"%1\"").arg(type)};
    const QString any = QStringLiteral("*/*");
    if (!content.contains(type) && !content.contains(any))
        return {QStringLiteral("it is of type \"%1\"").arg(type)};
    const QJsonObject media = content.value(content.contains(type) ? type : any).toObject();
    const QJsonObject schema = media.value(QLatin1String("schema")).toObject();
    if (schema.isEmpty() || call.method == "HEAD")
        return {};
    return faultsAgainst(schema, call.body);
}

QStringList InterfaceCheck::headerFaults(const QJsonObject &response, const CheckedCall &call)
{
    QStringList faults;
    const QJsonObject headers = response.value(QLatin1String("headers")).toObject();
    for (auto it = headers.begin(); it != headers.end(); ++it) {
        const QJsonObject header = resolved(it.value().toObject());
        const QByteArray value = headerOf(call, it.key());
        const bool isMissing = value.isEmpty();
        if (isMissing && header.value(QLatin1String("required")).toBool())
            faults << QStringLiteral("the header %1 is missing").arg(it.key());
        else if (!isMissing && !fits(header, value))
            faults << QStringLiteral("the header %1 cannot be \"%2\"")
                          .arg(it.key(), QString::fromLatin1(value));
    }
    return faults;
}

QStringList InterfaceCheck::queryFaults(const QJsonObject &operation, const CheckedCall &call)
{
    QMap<QString, QByteArray> given = itemsOf(call.query);
    QStringList faults;
    const QJsonArray parameters = operation.value(QLatin1String("parameters")).toArray();
    for (const QJsonValue &value : parameters) {
        const QJsonObject parameter = value.toObject();
        if (parameter.value(QLatin1String("in")) != QLatin1String("query"))
            continue;
        const QString name = parameter.value(QLatin1String("name")).toString();
        const bool isThere = given.contains(name);
        const QByteArray text = given.take(name);
        if (!isThere && parameter.value(QLatin1String("required")).toBool())
            faults << QStringLiteral("the parameter %1 is missing").arg(name);
        else if (isThere && !fits(parameter, text))
            faults << QStringLiteral("the parameter %1 cannot be \"%2\"")
                          .arg(name, QString::fromUtf8(text));
    }
    given.remove(QString()); // two "&" in a row, or one at an end, part nothing
    const QStringList others = given.keys();
    for (const QString &name : others)
        faults << QStringLiteral("the parameter %1 is not documented").arg(name);
    return faults;
}

/// Whether the schema of a header or parameter takes a text, which may stand for a number.
bool InterfaceCheck::fits(const QJsonObject &place, const QByteArray &text)
{
    const QJsonObject schema = place.value(QLatin1String("schema")).toObject();
    return faultsAgainst(schema, jsonText(text)).isEmpty() ||
           (isNumber(text) && faultsAgainst(schema, text).isEmpty());
}

/// Only of a request that was taken: one that is refused may be as it likes.
QStringList InterfaceCheck::requestFaults(const QJsonObject &operation, const CheckedCall &call)
{
    if (call.status >= 300)
        return {};
    QStringList faults = queryFaults(operation, call);
    const QJsonObject schema = operation.value(QLatin1String("requestBody"))
                                   .toObject()
                                   .value(QLatin1String("content"))
                                   .toObject()
                                   .value(QLatin1String("application/json"))
                                   .toObject()
                                   .value(QLatin1String("schema"))
                                   .toObject();
    if (schema.isEmpty() || refusesRows(call))
        return faults;
    for (const QString &fault : faultsAgainst(schema, call.requestBody))
        faults << QLatin1String("the request: ") + fault;
    return faults;
}

QStringList InterfaceCheck::faultsAgainst(const QJsonObject &schema, const QByteArray &json)
{
    const QByteArray key = QJsonDocument(schema).toJson(QJsonDocument::Compact);
    const JsonSchemaCheck *check = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        std::unique_ptr<JsonSchemaCheck> &kept = m_schemas[key];
        if (!kept) {
            const QJsonObject components = m_document.value(QLatin1String("components")).toObject();
            kept = std::make_unique<JsonSchemaCheck>(
                validatorForm(schema, components.value(QLatin1String("schemas")).toObject()));
        }
        check = kept.get();
    }
    return check->faultsOf(json);
}

} // namespace ZelTest
