// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/route.h"

namespace Zel::Service {

/// Whether calls of a route may carry a key, in the header Idempotency-Key, by which they are known
/// when they come again. Those that change something of an account do, but for calls that are known
/// by what they bring: a project by its guid, an upload by its number.
ZEL_EXPORT bool takesIdempotencyKey(const Route &route);

/// The answer of a route that takes keys. A call under a key that was used is not done again: its
/// answer is that of the first time. Throws `Problem`, also for a key that was used for something
/// else; a refusal changes nothing and is not kept.
HttpResponse answerOnce(const Route &route, const Call &call);

} // namespace Zel::Service
