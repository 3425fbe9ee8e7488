// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/statspage.h"

namespace ZelWebServiceControls {

/// The tabs of polls and of surveys.
StatsPage *makePollPage(QFrame *frame, const StatsSource &source);
StatsPage *makeSurveyPage(QFrame *frame, const StatsSource &source);

} // namespace ZelWebServiceControls
