// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/daemon/jsonwriter.h"
#include "service/daemon/route.h"

#include <initializer_list>
#include <span>

namespace Zel::Service {

// What the handlers of deployments share.

/// The deployment at the first place of the path; throws `Problem` when the account has none such.
DeploymentRef deploymentOf(const Call &call);
/// The times `from` and `to` of the query.
TimeRange rangeOf(const Call &call);
/// The same where `to` may be left out, which is the end of time.
TimeRange openRangeOf(const Call &call);
/// {name: {"columns": [...], "rows": [ and so on, up to where rows are written.
void beginTable(JsonWriter &json, QByteArrayView name, std::span<const char *const> columns);

inline void beginTable(JsonWriter &json, QByteArrayView name,
                       std::initializer_list<const char *> columns)
{
    beginTable(json, name, std::span<const char *const>(columns.begin(), columns.size()));
}

void endTable(JsonWriter &json);

} // namespace Zel::Service
