// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Studio {

class TourActor;

/// Makes a project: the themes of every scope, a theme's details and templates, why others are not
/// shown, the form, and the new project in the list.
void tourNewProject(TourActor &actor);

} // namespace Studio
