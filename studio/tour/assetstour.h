// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Studio {

class StudioApp;
class TourActor;

/// Browses assets, makes a folder, drops files into it and uploads them, picks one, deletes all and
/// leaves the assets as they were.
void tourAssets(TourActor &actor, StudioApp &studio);

} // namespace Studio
