// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QList>

#include <functional>
#include <utility>

namespace QXSC {

struct Reply;
struct Request;

/// A call that the service has answered, for hosts that look for faults.
///
/// The token of the session is never in it, and neither is a password: signs of the same number
/// stand in their place. All else is as it was, so it is as confidential as what people work on.
struct ZEL_EXPORT CallReport
{
    QByteArray method;
    QByteArray path;        ///< percent-encoded
    QByteArray query;       ///< percent-encoded, without "?"
    QByteArray requestBody; ///< empty for none, and for pieces of files
    int status = 0;
    QList<std::pair<QByteArray, QByteArray>> headers; ///< of the answer, as they came
    QByteArray body;                                  ///< of the answer

    /// The first of these headers, whatever its case; empty when there is none.
    QByteArray header(QByteArrayView name) const;
};

using CallObserver = std::function<void(const CallReport &)>;

CallReport reportOf(const Request &request, const Reply &reply);

} // namespace QXSC
