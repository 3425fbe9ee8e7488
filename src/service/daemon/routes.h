// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/route.h"

namespace Zel::Service {

// The route table, by topic; `Api::routes` is all of it.

QList<Route> serviceRoutes();
QList<Route> sessionRoutes();
QList<Route> projectRoutes();
QList<Route> themeRoutes();
QList<Route> assetRoutes();
QList<Route> uploadRoutes();
QList<Route> fileRoutes();
QList<Route> statisticsRoutes();
QList<Route> questionRoutes();
QList<Route> resultsRoutes();
QList<Route> intakeRoutes();

} // namespace Zel::Service
