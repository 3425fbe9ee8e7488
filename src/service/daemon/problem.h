// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/httpmessage.h"

#include <stdexcept>

namespace Zel::Service {

/// A request that is answered with an error: thrown by handlers, turned into
/// `application/problem+json` {"code", "detail", "requestId"} in one place.
class ZEL_EXPORT Problem : public std::exception
{
public:
    /// `code` is the machine word that clients decide by; `detail` is a sentence for people.
    Problem(int status, const QByteArray &code, const QString &detail,
            const QList<HttpHeader> &headers = {});
    ~Problem() override;
    Problem(const Problem &);
    Problem &operator=(const Problem &);

    int status() const { return m_status; }

    const QByteArray &code() const { return m_code; }

    const char *what() const noexcept override { return m_code.constData(); }

    /// Adds a number to the answer, for clients to go on from ("received").
    Problem &with(const QString &name, qint64 value);

    HttpResponse response(const QByteArray &requestId) const;

    static Problem invalid(const QString &detail);
    static Problem invalidText(const QString &field);

private:
    int m_status;
    QByteArray m_code;
    QString m_detail;
    QList<HttpHeader> m_headers;
    QList<std::pair<QString, qint64>> m_numbers;
};

} // namespace Zel::Service
