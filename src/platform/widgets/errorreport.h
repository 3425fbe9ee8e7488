// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "platform/core/runtimeerror.h"

#include <functional>

class QWidget;

namespace Zel {

/// Hands the error of a user action to whoever listens: the first control or form, from `origin`
/// (which may be gone: null) outward, whose `runtimeError` signal is connected. A form passes on to
/// the control that opened it. When nobody listens a message box shows number and text.
ZEL_EXPORT void reportRuntimeError(QWidget *origin, const RuntimeError &error);

/// Does what a person asked for in `origin`. A run-time error of it is reported from `origin`
/// outward, unchanged, after everything the action had begun is unwound; when the action destroyed
/// `origin`, from the nearest widget around it that is left. Nothing is thrown.
ZEL_EXPORT void guardUserAction(QWidget *origin, const std::function<void()> &action);

} // namespace Zel
