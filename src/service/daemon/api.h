// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/daemon/hostguard.h"
#include "service/daemon/monitor.h"
#include "service/daemon/route.h"

#include <QList>

#include <atomic>
#include <memory>

namespace Zel::Service {

/// The HTTP interface of the service: finds the route of a request, checks who calls, runs the
/// handler and turns every failure into a problem answer.
class ZEL_EXPORT Api
{
public:
    explicit Api(Store &store);
    ~Api();
    Api(const Api &) = delete;
    Api &operator=(const Api &) = delete;

    /// What is to be done with a request; made from its head alone, never throws.
    HttpPlan plan(const HttpRequest &head) const;

    static const QList<Route> &routes();

    /// What the service is called from now on. Any thread may say so.
    void setHostGuard(const HostGuard &guard);

    /// What is counted, and whether the service is ready.
    Monitor &monitor() const { return *m_monitor; }

private:
    HttpPlan planOf(const Route &route, const QStringList &parameters) const;
    HttpResponse run(const Route &route, const QStringList &parameters,
                     const HttpRequest &request) const;
    BodyStart begin(const Route &route, const QStringList &parameters,
                    const HttpRequest &request) const;
    Call callOf(const Route &route, const QStringList &parameters,
                const HttpRequest &request) const;
    Session sessionOf(const HttpRequest &request) const;

    Store &m_store;
    std::unique_ptr<Monitor> m_monitor;
    std::atomic<std::shared_ptr<const HostGuard>> m_guard;
};

} // namespace Zel::Service
