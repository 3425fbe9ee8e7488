// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/problem.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace Zel::Service {

Problem::Problem(int status, const QByteArray &code, const QString &detail,
                 const QList<HttpHeader> &headers)
    : m_status(status)
    , m_code(code)
    , m_detail(detail)
    , m_headers(headers)
{
}

Problem::~Problem() = default;
Problem::Problem(const Problem &) = default;
Problem &Problem::operator=(const Problem &) = default;

Problem &Problem::with(const QString &name, qint64 value)
{
    m_numbers.append({name, value});
    return *this;
}

HttpResponse Problem::response(const QByteArray &requestId) const
{
    QJsonObject body{{QStringLiteral("code"), QString::fromLatin1(m_code)},
                     {QStringLiteral("detail"), m_detail},
                     {QStringLiteral("requestId"), QString::fromLatin1(requestId)}};
    for (const auto &[name, value] : m_numbers)
        body.insert(name, value);
    HttpResponse response;
    response.status = m_status;
    response.contentType = QByteArrayLiteral("application/problem+json");
    response.body = QJsonDocument(body).toJson(QJsonDocument::Compact);
    response.headers = m_headers;
    return response;
}

Problem Problem::invalid(const QString &detail)
{
    return Problem(400, QByteArrayLiteral("invalid"), detail);
}

Problem Problem::invalidText(const QString &field)
{
    return Problem(
        400, QByteArrayLiteral("invalid-text"),
        QStringLiteral("The text of \"%1\" has a character that cannot be stored.").arg(field));
}

} // namespace Zel::Service
