// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/runtimeerror.h"

namespace Studio {

/// A failure as people are told about it.
struct Problem
{
    /// What happened, one sentence; never empty in a problem that is shown.
    QString what;
    /// What to do about it; may be empty.
    QString advice;
    /// Number, code, address and request id, to copy for support; not translated, never a secret.
    QString details;
    /// Whether doing the same again may succeed.
    bool canRetry = false;
    /// Whether the service could not be reached or went away.
    bool isConnection = false;
    /// Whether signing in again is what helps.
    bool needsSignIn = false;

    bool operator==(const Problem &) const = default;
};

/// Tells an error in people's words. The one place where error classes become sentences.
Problem describeError(const Zel::RuntimeError &error);

} // namespace Studio
