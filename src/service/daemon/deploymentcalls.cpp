// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/deploymentcalls.h"

#include "service/daemon/assetcalls.h"

#include <limits>

namespace Zel::Service {

namespace {

qint64 timeOf(const QByteArray &name, const QString &text)
{
    bool ok = false;
    const qint64 time = text.toLongLong(&ok);
    if (!ok)
        throw Problem::invalid(QStringLiteral("\"%1\" must be a time in whole milliseconds since "
                                              "1970.")
                                   .arg(QString::fromLatin1(name)));
    return time;
}

constexpr qsizetype longestNumber = 20;

} // namespace

DeploymentRef deploymentOf(const Call &call)
{
    const auto found =
        call.store.deployments.find(call.session.accountId, call.parameters.first().toLower());
    if (!found)
        throw notFound(QStringLiteral("There is no such deployment."));
    return *found;
}

TimeRange rangeOf(const Call &call)
{
    const auto time = [&call](const char *name) {
        return timeOf(name, call.queryText(name, longestNumber));
    };
    return {time("from"), time("to")};
}

TimeRange openRangeOf(const Call &call)
{
    const QString to = call.queryTextOrEmpty("to", longestNumber);
    return {timeOf("from", call.queryText("from", longestNumber)),
            to.isEmpty() ? std::numeric_limits<qint64>::max() : timeOf("to", to)};
}

void beginTable(JsonWriter &json, QByteArrayView name, std::span<const char *const> columns)
{
    json.key(name).beginObject().key("columns").beginArray();
    for (const char *column : columns)
        json.text(QString::fromLatin1(column));
    json.endArray().key("rows").beginArray();
}

void endTable(JsonWriter &json)
{
    json.endArray().endObject();
}

} // namespace Zel::Service
