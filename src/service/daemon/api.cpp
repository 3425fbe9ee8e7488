// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/api.h"

#include "service/daemon/hostguard.h"
#include "service/daemon/idempotency.h"
#include "service/daemon/logline.h"
#include "service/daemon/problem.h"
#include "service/daemon/routes.h"
#include "service/store/blobstore.h"
#include "service/store/databaseerror.h"

#include <new>

namespace Zel::Service {

namespace {

Problem unavailable()
{
    return Problem(503, QByteArrayLiteral("unavailable"),
                   QStringLiteral("The service cannot get at its data now. Try again shortly."),
                   {{QByteArrayLiteral("Retry-After"), QByteArrayLiteral("1")}});
}

Problem internal()
{
    return Problem(500, QByteArrayLiteral("internal"),
                   QStringLiteral("The service failed. The log names the cause under this id."));
}

Problem storageFull()
{
    return Problem(507, QByteArrayLiteral("storage-full"),
                   QStringLiteral("The service has no room for more files."));
}

Problem ofDatabase(const DatabaseError &error)
{
    switch (error.kind()) {
    case DatabaseError::Kind::Busy:
    case DatabaseError::Kind::Conflict:
    case DatabaseError::Kind::Full:
    case DatabaseError::Kind::Lost:
        return unavailable();
    default:
        return internal();
    }
}

/// The one place where a failure becomes an answer. What went wrong inside goes to the log only.
HttpResponse responseOfCurrentException(const QByteArray &requestId)
{
    const auto report = [&requestId](const char *what) {
        logLine("error",
                {{"id", QString::fromLatin1(requestId)}, {"cause", QString::fromUtf8(what)}});
    };
    try {
        throw;
    } catch (const Problem &problem) {
        return problem.response(requestId);
    } catch (const DatabaseError &error) {
        report(error.what());
        return ofDatabase(error).response(requestId);
    } catch (const BlobError &error) {
        report(error.what());
        return (error.isFull() ? storageFull() : unavailable()).response(requestId);
    } catch (const std::bad_alloc &error) {
        report(error.what());
        return unavailable().response(requestId);
    } catch (const std::exception &error) {
        report(error.what());
        return internal().response(requestId);
    }
}

template <class Function>
HttpResponse guarded(const HttpRequest &request, Function function)
{
    try {
        return function();
    } catch (...) {
        return responseOfCurrentException(request.requestId);
    }
}

/// Turns what a sink throws into an answer.
class GuardedSink : public BodySink
{
public:
    GuardedSink(const HttpRequest &request, std::shared_ptr<BodySink> sink)
        : m_request(request)
        , m_sink(std::move(sink))
    {
    }

    std::optional<HttpResponse> take(QByteArrayView piece) override
    {
        std::optional<HttpResponse> answer;
        bool passed = false;
        HttpResponse failure = guarded(m_request, [&] {
            answer = m_sink->take(piece);
            passed = true;
            return HttpResponse();
        });
        return passed ? answer : failure;
    }

    HttpResponse finish() override
    {
        return guarded(m_request, [this] { return m_sink->finish(); });
    }

private:
    HttpRequest m_request;
    std::shared_ptr<BodySink> m_sink;
};

/// A plan that answers with a problem, after the body has been read.
HttpPlan refusal(const Problem &problem)
{
    HttpPlan plan;
    plan.route = QByteArrayLiteral("-");
    plan.bodyLimit = jsonBodyLimit;
    plan.handler = [problem](const HttpRequest &request) {
        return problem.response(request.requestId);
    };
    return plan;
}

Problem methodNotAllowed(const QByteArrayList &allowed)
{
    return Problem(405, QByteArrayLiteral("method-not-allowed"),
                   QStringLiteral("This address does not take that method."),
                   {{QByteArrayLiteral("Allow"), allowed.join(", ")}});
}

QByteArrayList patterns()
{
    QByteArrayList result;
    for (const Route &route : Api::routes())
        result << route.pattern;
    return result;
}

/// Balancers ask whether the service is well by its bare address, and get to know nothing else.
bool answersForAnyHost(const QByteArray &path)
{
    return path == "/healthz" || path == "/readyz";
}

} // namespace

const QList<Route> &Api::routes()
{
    struct Topic
    {
        const char *name;
        QList<Route> (*routes)();
    };

    static const QList<Route> table = [] {
        QList<Route> all;
        for (const Topic &topic : {Topic{"Service", serviceRoutes},
                                   {"Sessions", sessionRoutes},
                                   {"Projects", projectRoutes},
                                   {"Themes", themeRoutes},
                                   {"Assets", assetRoutes},
                                   {"Uploads", uploadRoutes},
                                   {"Files", fileRoutes},
                                   {"Statistics", statisticsRoutes},
                                   {"Questions", questionRoutes},
                                   {"Results", resultsRoutes},
                                   {"Players", intakeRoutes}}) {
            for (Route &route : topic.routes()) {
                route.text.topic = topic.name;
                all << route;
            }
        }
        return all;
    }();
    return table;
}

Api::Api(Store &store)
    : m_store(store)
    , m_monitor(std::make_unique<Monitor>(store, patterns()))
    , m_guard(std::make_shared<HostGuard>())
{
}

Api::~Api() = default;

void Api::setHostGuard(const HostGuard &guard)
{
    m_guard = std::make_shared<HostGuard>(guard);
}

HttpPlan Api::plan(const HttpRequest &head) const
{
    try {
        const QByteArray path = head.path();
        if (!answersForAnyHost(path))
            m_guard.load()->check(head);
        const QByteArray method = head.method == "HEAD" ? QByteArrayLiteral("GET") : head.method;
        QByteArrayList allowed;
        for (const Route &route : routes()) {
            const auto parameters = matchPath(route.pattern, path);
            if (!parameters)
                continue;
            if (route.method == method)
                return planOf(route, *parameters);
            allowed << route.method;
        }
        if (!allowed.isEmpty())
            return refusal(methodNotAllowed(allowed));
        return refusal(Problem(404, QByteArrayLiteral("no-route"),
                               QStringLiteral("There is nothing at this address.")));
    } catch (const Problem &problem) {
        return refusal(problem);
    }
}

HttpPlan Api::planOf(const Route &route, const QStringList &parameters) const
{
    HttpPlan plan;
    plan.route = route.pattern;
    plan.bodyLimit = route.bodyLimit;
    plan.lane = route.lane;
    if (route.stream)
        plan.begin = [this, &route, parameters](const HttpRequest &request) {
            return begin(route, parameters, request);
        };
    else
        plan.handler = [this, &route, parameters](const HttpRequest &request) {
            return run(route, parameters, request);
        };
    return plan;
}

HttpResponse Api::run(const Route &route, const QStringList &parameters,
                      const HttpRequest &request) const
{
    return guarded(request, [&] {
        const Call call = callOf(route, parameters, request);
        return takesIdempotencyKey(route) ? answerOnce(route, call) : route.handler(call);
    });
}

BodyStart Api::begin(const Route &route, const QStringList &parameters,
                     const HttpRequest &request) const
{
    std::shared_ptr<BodySink> sink;
    HttpResponse refusal = guarded(request, [&] {
        sink = route.stream(callOf(route, parameters, request));
        return HttpResponse();
    });
    if (!sink)
        return refusal;
    return std::make_shared<GuardedSink>(request, std::move(sink));
}

Call Api::callOf(const Route &route, const QStringList &parameters,
                 const HttpRequest &request) const
{
    Call call{request, m_store, parameters, {}, m_monitor.get()};
    if (route.access != Access::Public)
        call.session = sessionOf(request);
    if (route.access == Access::Account && call.session.accountId == 0)
        throw Problem(403, QByteArrayLiteral("no-account"),
                      QStringLiteral("No account has been chosen."));
    return call;
}

Session Api::sessionOf(const HttpRequest &request) const
{
    static const QByteArray scheme = QByteArrayLiteral("Bearer ");
    const QByteArray value = request.header("Authorization");
    if (value.size() > scheme.size() &&
        value.left(scheme.size()).compare(scheme, Qt::CaseInsensitive) == 0) {
        const auto session =
            m_store.sessions.find(QString::fromLatin1(value.mid(scheme.size()).trimmed()));
        if (session)
            return *session;
    }
    throw Problem(401, QByteArrayLiteral("signed-out"), QStringLiteral("Please sign in again."),
                  {{QByteArrayLiteral("WWW-Authenticate"), QByteArrayLiteral("Bearer")}});
}

} // namespace Zel::Service
