// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "common/contract/serviceclient.h"

#include "common/contract/studioservice.h"

namespace QXSC {

SessionOperations::~SessionOperations() = default;
ProjectOperations::~ProjectOperations() = default;
AssetOperations::~AssetOperations() = default;
ThemeOperations::~ThemeOperations() = default;
StudioService::~StudioService() = default;

ServiceClient::ServiceClient(QObject *parent)
    : QObject(parent)
{
}

ServiceClient::~ServiceClient() = default;

} // namespace QXSC
