// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/log.h"

namespace Studio {

Q_LOGGING_CATEGORY(studioLog, "zel.studio")

} // namespace Studio
