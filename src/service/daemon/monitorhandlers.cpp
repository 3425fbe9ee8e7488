// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What is answered to those who watch over the service.
#include "service/daemon/handlers.h"
#include "service/daemon/monitor.h"
#include "service/daemon/problem.h"

namespace Zel::Service {

HttpResponse readiness(const Call &call)
{
    const QString missing = call.monitor->missing();
    if (!missing.isEmpty())
        throw Problem(503, QByteArrayLiteral("not-ready"), missing,
                      {{QByteArrayLiteral("Retry-After"), QByteArrayLiteral("1")}});
    return jsonResponse(QByteArrayLiteral("{\"status\":\"ready\"}"));
}

HttpResponse metrics(const Call &call)
{
    call.monitor->requireMetricsReader(call.request);
    HttpResponse response;
    response.contentType = MetricsText::contentType;
    response.body = call.monitor->metrics();
    return response;
}

} // namespace Zel::Service
