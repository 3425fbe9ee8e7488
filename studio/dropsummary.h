// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "studio/dropreader.h"
#include "studio/problem.h"

namespace Studio {

/// Tells at once all that was left out of a drop: the first names in the sentence, every path in
/// the details. Without `what` when nothing was.
Problem dropSummary(const DropContents &contents);

/// Tells why nothing of a drop was taken.
Problem refusedDrop(const QString &reason);

} // namespace Studio
