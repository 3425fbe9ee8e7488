// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace Studio {

class TourActor;

/// Signs in: refused, as somebody without an account, then as somebody with two.
void tourSignIn(TourActor &actor);

} // namespace Studio
