// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/runtimeerror.h"

namespace QXSC {

/// A call of the service that failed, as opposed to one that answered "no".
///
/// `description()` is a sentence for people that says what happened and what to do; `code()` is the
/// service's short machine word ("not-found"), `details()` what helps support (address, status,
/// request id) and never holds a password or token.
class ZEL_EXPORT ServiceError : public Zel::RuntimeError
{
public:
    enum class Kind
    {
        Unreachable,     ///< no connection could be made
        TimedOut,        ///< no answer within the time limit
        ConnectionLost,  ///< the connection ended in the middle of the call
        BadAnswer,       ///< an answer came that is none of the service's
        SignedOut,       ///< no session, or it has expired: sign in again
        Refused,         ///< the user may not do this
        NotFound,        ///< what the call names does not exist
        Conflict,        ///< what the call names has changed or exists already
        Invalid,         ///< the service does not accept the values
        TooManyAttempts, ///< wait before the next attempt
        Unavailable      ///< the service cannot answer now, or failed
    };

    /// Error numbers of service errors are this base plus the kind's ordinal.
    static constexpr int NumberBase =
        -2147220992; // 0x80040200, the first number free for a library

    ServiceError(Kind kind, const QString &description, const QString &code = QString(),
                 const QString &details = QString());
    ~ServiceError() override;
    ServiceError(const ServiceError &);
    ServiceError &operator=(const ServiceError &);

    Kind kind() const { return m_kind; }

    QString code() const { return m_code; }

    QString details() const { return m_details; }

    /// Whether the same call may succeed when it is made again.
    bool isTransient() const;

    ServiceError *clone() const override;
    [[noreturn]] void raise() const override;

private:
    Kind m_kind;
    QString m_code;
    QString m_details;
};

} // namespace QXSC
