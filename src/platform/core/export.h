// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

/// Marks what leaves a shared library. On the platforms built here exporting and importing are the
/// same attribute, so one macro serves every library.
#define ZEL_EXPORT Q_DECL_EXPORT
