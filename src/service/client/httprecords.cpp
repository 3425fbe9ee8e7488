// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The data record operations over HTTP.
#include "service/client/httpserviceclient.h"

#include "service/client/callfailure.h"
#include "service/client/datarecordreader.h"
#include "service/client/jsoncall.h"
#include "service/client/operationtime.h"
#include "service/client/transport.h"

namespace QXSC {

namespace {

/// The longest call the service reads. Of a longer one it stops reading in the middle, and its
/// answer is lost with the connection.
constexpr qsizetype longestCall = qsizetype(36) * 1024 * 1024;

/// Whether the text can stand in an address as one part of its path. One or two dots are taken for
/// a folder, however they are written.
bool canBeAsked(const QString &guid)
{
    return !guid.isEmpty() && guid != QLatin1String(".") && guid != QLatin1String("..");
}

QByteArray pathOf(const QString &themeGuid)
{
    return "/v1/themes/" + QUrl::toPercentEncoding(themeGuid) + "/data-record";
}

QJsonArray valuesOf(const DataRecord &record)
{
    QJsonArray values;
    if (!record.entries)
        return values;
    for (const DataRecordEntryPtr &entry : *record.entries)
        values.append(
            QJsonObject{{QStringLiteral("text"), entry->value.text},
                        {QStringLiteral("guid"), entry->value.guid},
                        {QStringLiteral("assetDependencies"), entry->value.assetDependencies}});
    return values;
}

} // namespace

DataRecordPtr HttpServiceClient::GetThemeDataRecord(const QString &themeGuid)
{
    const Request request = sessionRequest("GET", pathOf(themeGuid));
    if (!canBeAsked(themeGuid))
        return nullptr;
    return readAnswer(request, *ask(request), readDataRecord);
}

QString HttpServiceClient::serverUrl() const
{
    return m_session ? m_session->server.url(QByteArray()).toString(QUrl::FullyEncoded) : QString();
}

DataRecordSave HttpServiceClient::saveThemeDataRecord(const QString &themeGuid,
                                                      const DataRecord &record)
{
    const QJsonObject body{{QStringLiteral("version"), record.version},
                           {QStringLiteral("values"), valuesOf(record)}};
    Request request = sessionRequest("PUT", pathOf(themeGuid), {}, json(body));
    request.isKnownByItsBody = true; // the same values again are the same save
    if (!canBeAsked(themeGuid))
        throw ServiceError(ServiceError::Kind::NotFound,
                           tr("This theme has no identity the service could know it by."));
    if (request.body.size() > longestCall)
        throw ServiceError(ServiceError::Kind::Invalid,
                           tr("The values of this record are longer than the service takes, which "
                              "is 16 MiB. Shorten them and try again."),
                           QStringLiteral("too-large"));
    const OperationTime time(m_policy);
    const Reply reply = send(request, time);
    // The refusal carries what the service holds now, and so is an answer.
    if (refusalCode(reply) == QLatin1String("version-conflict"))
        return readAnswer(request, reply, readNewerRecord);
    return readAnswer(request, *taken(request, reply, time.policy()), readSavedRecord);
}

} // namespace QXSC
