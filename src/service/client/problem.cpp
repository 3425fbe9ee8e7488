// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/problem.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace QXSC {

Problem problemOf(const Reply &reply)
{
    if (reply.ending != Reply::Ending::Answered || reply.status < 400 ||
        !reply.contentType.startsWith("application/problem+json"))
        return {};
    const QJsonObject object = QJsonDocument::fromJson(reply.body).object();
    return {object.value(QLatin1String("code")).toString(),
            object.value(QLatin1String("detail")).toString(),
            object.value(QLatin1String("requestId")).toString()};
}

QString tidy(QString text, const Request &request)
{
    constexpr qsizetype longest = 500;
    if (!request.token.isEmpty())
        text.replace(QLatin1String(request.token), QStringLiteral("\u2026"));
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format)
            c = QLatin1Char(' ');
    }
    text = text.simplified();
    return text.size() > longest ? text.left(longest) + QChar(0x2026) : text;
}

QString detailsOf(const Request &request, const Reply &reply, const QString &extra)
{
    const Problem problem = problemOf(reply);
    const QString id =
        problem.requestId.isEmpty() ? QString::fromUtf8(reply.requestId) : problem.requestId;
    QStringList lines{QString::fromLatin1(request.method) + QLatin1Char(' ') +
                      request.server.url(request.path).toString(QUrl::FullyEncoded)};
    if (reply.status > 0)
        lines << QStringLiteral("Status: %1").arg(reply.status);
    if (!problem.code.isEmpty())
        lines << QLatin1String("Code: ") + tidy(problem.code, request);
    if (!problem.detail.isEmpty())
        lines << QLatin1String("Detail: ") + tidy(problem.detail, request);
    if (!id.isEmpty())
        lines << QLatin1String("Request id: ") + tidy(id, request);
    if (!reply.networkText.isEmpty())
        lines << QLatin1String("Network: ") + tidy(reply.networkText, request);
    if (!extra.isEmpty())
        lines << QLatin1String("Problem: ") + tidy(extra, request);
    return lines.join(QLatin1Char('\n'));
}

} // namespace QXSC
