// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/deployments.h"
#include "service/store/progress.h"

namespace Zel {

class Audience;

/// An audience that is made up: the same for the same numbers.
struct SimulationPlan
{
    qint64 participants = 3000;
    qint64 days = 2;
    qint64 seed = 1;

    /// Two fifths of the participants are registered, and as many people again by a fifth who do
    /// not come.
    qint64 registrants() const { return participants * 2 / 5 + participants * 2 / 25; }

    /// Begins at midnight in UTC, `days` long.
    qint64 beginsAt = 0;

    static constexpr qint64 mostParticipants = 10'000'000;
    static constexpr qint64 mostDays = 3650;
};

struct SimulatedCount
{
    qint64 registrants = 0;
    qint64 views = 0;
};

/// Stores the audience of a plan in a deployment, part by part, each in a transaction of its own.
ZEL_EXPORT SimulatedCount simulate(Audience &audience, const DeploymentRef &deployment,
                                   const SimulationPlan &plan, const Progress &progress = {});

/// How many `simulate` would store.
ZEL_EXPORT SimulatedCount countSimulated(const SimulationPlan &plan);

} // namespace Zel
