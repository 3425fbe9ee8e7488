// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/listcall.h"

#include "service/daemon/problem.h"
#include "service/store/storabletext.h"

#include <QJsonDocument>

#include <limits>

namespace Zel::Service {

namespace {

constexpr qsizetype longestPlace = 4096;
constexpr auto encoding = QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals;

Problem noPlace()
{
    return Problem::invalid(QStringLiteral("\"after\" is not the \"next\" of an answer to this "
                                           "call."));
}

} // namespace

ListCall::ListCall(const Call &call, const char *list, qint64 most)
    : m_list(list)
    , m_limit(std::min(most, call.queryNumber("limit", mostRows, most)))
{
    if (m_limit == 0)
        throw Problem::invalid(
            QStringLiteral("\"limit\" must be a whole number from 1 to %1.").arg(mostRows));
    const auto after = call.queryTextIfGiven("after", longestPlace);
    if (!after)
        return;
    const auto json = QByteArray::fromBase64Encoding(
        after->toLatin1(), encoding | QByteArray::AbortOnBase64DecodingErrors);
    m_place = json ? QJsonDocument::fromJson(*json).array() : QJsonArray();
    m_isFirst = false;
    if (take().toString() != QLatin1String(list) || m_place.isEmpty())
        throw noPlace();
}

QJsonValue ListCall::take()
{
    if (m_place.isEmpty())
        throw noPlace();
    return m_place.takeAt(0);
}

QString ListCall::text()
{
    const QJsonValue value = take();
    if (!value.isString() || !isStorableText(value.toString()))
        throw noPlace();
    return value.toString();
}

qint64 ListCall::number()
{
    const auto number = numberOrNull();
    if (!number)
        throw noPlace();
    return *number;
}

std::optional<qint64> ListCall::numberOrNull()
{
    const QJsonValue value = take();
    if (value.isNull())
        return std::nullopt;
    // What is no whole number of 64 bits comes back as the default given.
    constexpr qint64 none = std::numeric_limits<qint64>::min();
    const qint64 number = value.toInteger(none);
    if (number == none)
        throw noPlace();
    return number;
}

QByteArray ListCall::bytes()
{
    const QString hex = text();
    const QByteArray bytes = QByteArray::fromHex(hex.toLatin1());
    if (QString::fromLatin1(bytes.toHex()) != hex)
        throw noPlace();
    return bytes;
}

void ListCall::writeNext(JsonWriter &json, const std::optional<QJsonArray> &place) const
{
    json.key("next");
    if (!place) {
        json.null();
        return;
    }
    QJsonArray values = *place;
    values.prepend(QLatin1String(m_list));
    json.text(QString::fromLatin1(
        QJsonDocument(values).toJson(QJsonDocument::Compact).toBase64(encoding)));
}

QJsonValue ListCall::valueOf(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

} // namespace Zel::Service
