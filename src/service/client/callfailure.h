// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/serviceerror.h"
#include "common/network/networkpolicy.h"
#include "service/client/message.h"

namespace QXSC {

/// The machine word of a refusal by the service ("not-found"); empty where the answer is no refusal
/// that the service itself made.
QString refusalCode(const Reply &reply);

/// The one place where a call that failed becomes an error for the host: failures of the network,
/// HTTP statuses and the service's own problem descriptions.
ServiceError failureOf(const Request &request, const Reply &reply, const NetworkPolicy &policy);

/// An answer that came well over the network and is none of the service's.
/// @param problem what is wrong with it, for support
ServiceError badAnswer(const Request &request, const Reply &reply, const QString &problem);

/// The error of a call that needs a session when there is none.
ServiceError signedOut();

} // namespace QXSC
