// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Studio {

class StudioApp;
class TourActor;

/// Sorts, filters and looks at projects, and lives through the end of the service.
void tourProjects(TourActor &actor, StudioApp &studio);

} // namespace Studio
