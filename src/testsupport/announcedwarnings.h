// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QRegularExpression>

namespace ZelTest {

/// Matches every Qt warning that no test has to announce; each entry of the list has its reason
/// beside it in the source file.
ZEL_EXPORT QRegularExpression unannouncedWarnings();

} // namespace ZelTest
