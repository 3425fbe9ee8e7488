// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/runtimeerror.h"

class QWidget;

namespace Zel {

/// Hands the error of a user action to whoever listens: the first control or form, from `origin`
/// (which may be gone: null) outward, whose `runtimeError` signal is connected. A form passes on to
/// the control that opened it. When nobody listens a message box shows number and text.
ZEL_EXPORT void reportRuntimeError(QWidget *origin, const RuntimeError &error);

} // namespace Zel
