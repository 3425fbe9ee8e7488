// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/assetcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/jsonwriter.h"

#include <limits>

namespace Zel::Service {

namespace {

ThemeUser userOf(const Call &call)
{
    return {call.session.accountId, call.session.userId};
}

/// Guids are stored in lower case.
QString themeOf(const Call &call)
{
    return call.parameters.first().toLower();
}

void writeRecord(JsonWriter &json, const StoredRecord &record)
{
    json.beginObject().key("version").integer(record.version).key("entries").beginArray();
    for (const RecordEntry &entry : record.entries) {
        json.beginObject().key("label").text(entry.label).key("type").text(entry.type);
        json.key("text").text(entry.value.text).key("guid").text(entry.value.guid);
        json.key("assetDependencies").text(entry.value.dependencies);
        json.key("ext").text(entry.ext).key("hidden").boolean(entry.hidden);
        json.key("source").text(entry.source).key("buttonText").text(entry.buttonText);
        json.key("width").integer(entry.width).key("height").integer(entry.height).endObject();
    }
    json.endArray().endObject();
}

/// The refusal carries the record as it is now, so that nobody has to ask for it, and perhaps get
/// yet another one.
HttpResponse versionConflict(const HttpRequest &request, qint64 version, const StoredRecord &now)
{
    JsonWriter json;
    json.beginObject().key("code").text(u"version-conflict");
    json.key("detail").text(u"The record has been saved by somebody else meanwhile.");
    json.key("requestId").text(QString::fromLatin1(request.requestId));
    json.key("yourVersion").integer(version).key("version").integer(now.version).key("record");
    writeRecord(json, now);
    json.endObject();
    HttpResponse response = jsonResponse(json.json(), 409);
    response.contentType = QByteArrayLiteral("application/problem+json");
    return response;
}

Problem tooLarge()
{
    return Problem(413, QByteArrayLiteral("too-large"),
                   QStringLiteral("The values of a data record have at most %1 MiB.")
                       .arg(DataRecords::largestRecord / (1024 * 1024)));
}

QList<RecordValue> valuesIn(const QJsonArray &list)
{
    constexpr qsizetype longest = DataRecords::largestRecord;
    QList<RecordValue> values;
    qint64 size = 0;
    for (const QJsonValue &value : list) {
        if (!value.isObject())
            throw Problem::invalid(QStringLiteral("Each of \"values\" must be an object."));
        JsonFields fields(value.toObject());
        const auto text = [&fields](const char *name) {
            return fields.text(QString::fromLatin1(name), recordBodyLimit);
        };
        values.append({text("text"), text("guid"), text("assetDependencies")});
        fields.expectNoMore();
        size += DataRecords::sizeOf(values.last());
        if (size > longest)
            throw tooLarge();
    }
    return values;
}

HttpResponse save(const HttpRequest &request, DataRecords &records, const ThemeUser &user,
                  const QString &theme, const QByteArray &body)
{
    JsonFields fields(body);
    const qint64 version =
        fields.integer(QStringLiteral("version"), 0, std::numeric_limits<qint64>::max());
    const QList<RecordValue> values = valuesIn(fields.list(QStringLiteral("values")));
    fields.expectNoMore();
    const DataRecords::Save saved = records.save(user, theme, version, values);
    switch (saved.outcome) {
    case DataRecords::Outcome::Saved:
        break;
    case DataRecords::Outcome::Conflict:
        return versionConflict(request, version, saved.record);
    case DataRecords::Outcome::WrongCount:
        throw Problem::invalid(QStringLiteral("The record has %1 fields; %2 values came.")
                                   .arg(saved.record.entries.size())
                                   .arg(values.size()));
    case DataRecords::Outcome::Unknown:
        throw notFound(QStringLiteral("There is no such data record."));
    }
    JsonWriter json;
    json.beginObject().key("version").integer(saved.record.version).endObject();
    return jsonResponse(json.json());
}

/// Takes the body of a save in. A sink, so that nobody without a session can send that much.
class SaveSink : public BodySink
{
public:
    explicit SaveSink(const Call &call)
        : m_request(call.request)
        , m_records(call.store.dataRecords)
        , m_user(userOf(call))
        , m_theme(themeOf(call))
    {
    }

    std::optional<HttpResponse> take(QByteArrayView piece) override
    {
        if (m_body.size() + piece.size() > recordBodyLimit)
            throw tooLarge();
        m_body.append(piece.data(), piece.size());
        return std::nullopt;
    }

    HttpResponse finish() override { return save(m_request, m_records, m_user, m_theme, m_body); }

private:
    HttpRequest m_request;
    DataRecords &m_records;
    ThemeUser m_user;
    QString m_theme;
    QByteArray m_body;
};

} // namespace

HttpResponse dataRecord(const Call &call)
{
    const auto record = call.store.dataRecords.find(userOf(call), themeOf(call));
    JsonWriter json;
    json.beginObject().key("record");
    if (record)
        writeRecord(json, *record);
    else
        json.null();
    json.endObject();
    return jsonResponse(json.json());
}

std::shared_ptr<BodySink> saveDataRecord(const Call &call)
{
    refuseViewers(call);
    return std::make_shared<SaveSink>(call);
}

} // namespace Zel::Service
