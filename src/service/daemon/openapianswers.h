// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/route.h"

#include <QJsonObject>

namespace Zel::Service {

/// The answers of a route by status, good ones and refusals.
QJsonObject responses(const Route &route);

/// The refusals that many routes have in common, by name, so that they stand in the document once.
QJsonObject commonResponses();

/// A code with what it means, for people.
QString meaningOf(const QByteArray &code);

} // namespace Zel::Service
