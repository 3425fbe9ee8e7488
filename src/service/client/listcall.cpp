// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/listcall.h"

#include <algorithm>

namespace QXSC {

QByteArray readNext(const QJsonObject &answer, const QByteArray &before)
{
    const QLatin1String name("next");
    const auto found = answer.constFind(name);
    if (found == answer.constEnd() || found->isNull())
        return QByteArray();
    const QByteArray next = readText(*found, name).toLatin1();
    const bool plain = std::all_of(next.begin(), next.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '-' || c == '_';
    });
    // A list that did not move on would never end.
    if (next.isEmpty() || !plain || next == before)
        throw AnswerProblem{QStringLiteral("\"next\" is no place to go on")};
    return next;
}

QByteArray pageQuery(const QByteArray &query, const QByteArray &place, qint64 rows)
{
    QByteArrayList parts;
    if (!query.isEmpty())
        parts << query;
    if (rows > 0)
        parts << "limit=" + QByteArray::number(rows);
    if (!place.isEmpty())
        parts << "after=" + place;
    return parts.join('&');
}

} // namespace QXSC
