// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLoggingCategory>

namespace Studio {

/// What Studio tells those who look after it: problems shown, settings that cannot be read. Never
/// passwords or tokens.
Q_DECLARE_LOGGING_CATEGORY(studioLog)

} // namespace Studio
