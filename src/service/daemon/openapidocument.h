// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/route.h"

#include <QJsonObject>

namespace Zel::Service {

/// The interface as OpenAPI 3.1, made of the route table and of openapi/*.json. Nothing of it is
/// written by hand a second time.
ZEL_EXPORT QJsonObject openApiDocument(const QList<Route> &routes);

} // namespace Zel::Service
