// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Studio {

class StudioApp;
class TourActor;

/// Edits a theme's record: fields of every type, an asset and component pages, a record that
/// somebody else has saved meanwhile, and leaving with changes.
void tourRecord(TourActor &actor, StudioApp &studio);

} // namespace Studio
