// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QNetworkProxyFactory>

namespace QXSC {

/// The proxy of a call that may take one: the one the host application set for itself, else the
/// system's.
class ZEL_EXPORT ProxyChoice : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override;
};

} // namespace QXSC
