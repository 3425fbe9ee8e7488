// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Studio {

class TourActor;

/// Looks at what happened in a project tab by tab, and answers, retracts and deletes questions.
void tourStatistics(TourActor &actor);

} // namespace Studio
