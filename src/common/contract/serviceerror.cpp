// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceerror.h"

namespace QXSC {

ServiceError::ServiceError(Kind kind, const QString &description, const QString &code,
                           const QString &details)
    : RuntimeError(NumberBase + static_cast<int>(kind), description,
                   QStringLiteral("QXServiceCLient"))
    , m_kind(kind)
    , m_code(code)
    , m_details(details)
{
}

ServiceError::~ServiceError() = default;
ServiceError::ServiceError(const ServiceError &) = default;
ServiceError &ServiceError::operator=(const ServiceError &) = default;

bool ServiceError::isTransient() const
{
    switch (m_kind) {
    case Kind::Unreachable:
    case Kind::TimedOut:
    case Kind::ConnectionLost:
    case Kind::BadAnswer:
    case Kind::TooManyAttempts:
    case Kind::Unavailable:
        return true;
    default:
        return false;
    }
}

ServiceError *ServiceError::clone() const
{
    return new ServiceError(*this);
}

void ServiceError::raise() const
{
    throw ServiceError(*this);
}

} // namespace QXSC
