// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/client/answerreader.h"
#include "service/client/callfailure.h"

#include <QJsonDocument>

namespace QXSC {

// What the operations over HTTP share.

inline QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

/// Reads the body of an answer with one of the functions of recordreader.h or assetreader.h.
template <typename Read>
auto readAnswer(const Request &request, const Reply &reply, Read read)
{
    try {
        return read(reply.body);
    } catch (const AnswerProblem &problem) {
        throw badAnswer(request, reply, problem.what);
    }
}

/// An answer that says "done" and nothing else. Anything that merely is not an error, such as the
/// page of a network that wants a log-in first, does not count.
inline void expectNoContent(const Request &request, const Reply &reply)
{
    if (reply.status != 204)
        throw badAnswer(request, reply, QStringLiteral("HTTP status %1").arg(reply.status));
}

} // namespace QXSC
