// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/callreport.h"

#include "service/client/message.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace QXSC {

namespace {

/// The object with a text hidden behind as many signs. Bodies without that text stay as they are.
QByteArray withHidden(const QByteArray &json, const QString &name)
{
    QJsonObject object = QJsonDocument::fromJson(json).object();
    if (!object.value(name).isString())
        return json;
    object.insert(name, QString(object.value(name).toString().size(), u'x'));
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray CallReport::header(QByteArrayView name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

CallReport reportOf(const Request &request, const Reply &reply)
{
    const bool isSignIn = request.token.isEmpty();
    return {request.method,
            request.path,
            request.query,
            isSignIn ? withHidden(request.body, QStringLiteral("password")) : request.body,
            reply.status,
            reply.headers,
            isSignIn ? withHidden(reply.body, QStringLiteral("token")) : reply.body};
}

} // namespace QXSC
