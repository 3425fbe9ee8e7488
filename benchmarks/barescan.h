// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audiencefill.h"

namespace Bench {

/// The statement that lists the page views of a deployment with their people.
QByteArray viewsSql(const AudienceFill::Filled &filled);

/// Milliseconds in which sqlite3 itself reads them from a file into structs.
double bareScan(const QString &file, const AudienceFill::Filled &filled);

} // namespace Bench
