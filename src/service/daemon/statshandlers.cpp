// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What happened in deployments.
#include "service/daemon/assetcalls.h"
#include "service/daemon/deploymentcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/listcall.h"

namespace Zel::Service {

namespace {

constexpr qsizetype longestWord = 256;

HttpResponse numberResponse(const char *name, qint64 number)
{
    JsonWriter json;
    json.beginObject().key(name).integer(number).endObject();
    return jsonResponse(json.json());
}

void writePerson(JsonWriter &json, const AudiencePerson &person)
{
    json.text(person.userId).text(person.firstName).text(person.lastName).text(person.email);
    json.integer(person.registeredAt);
}

HttpResponse participationResponse(const char *name, const QList<Participation> &rows,
                                   const ListCall &page, const std::optional<QJsonArray> &next)
{
    JsonWriter json;
    json.beginObject();
    beginTable(json, name,
               {"user", "firstName", "lastName", "email", "registered", "participated", "timeSpent",
                "firstViewed", "lastViewed"});
    for (const Participation &row : rows) {
        json.beginArray();
        writePerson(json, row.person);
        json.boolean(row.participated).integer(row.seconds);
        const auto time = [&row](qint64 at) {
            return row.participated ? std::optional(at) : std::nullopt;
        };
        json.integer(time(row.firstAt)).integer(time(row.lastAt)).endArray();
    }
    endTable(json);
    page.writeNext(json, next);
    json.endObject();
    return jsonResponse(json.json());
}

Statistics::Attribute attributeOf(const Call &call)
{
    const QString name = call.queryText("attribute", longestWord);
    if (name == QLatin1String("BrowserType"))
        return Statistics::Attribute::BrowserType;
    if (name == QLatin1String("JSVersion"))
        return Statistics::Attribute::JSVersion;
    if (name == QLatin1String("ScreenDepth"))
        return Statistics::Attribute::ScreenDepth;
    throw Problem::invalid(QStringLiteral("Page views have no attribute \"%1\".").arg(name));
}

Problem noSuchQuestion()
{
    return notFound(QStringLiteral("There is no such question."));
}

} // namespace

HttpResponse listDeployments(const Call &call)
{
    ListCall page(call, "deployments", mostLongRows);
    DeploymentPlace after;
    if (!page.isFirst())
        after = {page.number(), page.text()};
    const auto list = call.store.deployments.list(
        call.session.accountId, call.parameters.first().toLower(), after, page.limit());
    if (!list)
        throw notFound(QStringLiteral("There is no such project."));
    JsonWriter json;
    json.beginObject();
    beginTable(json, "deployments", {"guid", "name", "published"});
    for (const Deployment &deployment : list->rows) {
        json.beginArray().text(deployment.guid).text(deployment.name);
        json.integer(deployment.publishedAt).endArray();
    }
    endTable(json);
    page.writeNext(json, list->next
                             ? std::optional(QJsonArray{list->next->publishedAt, list->next->guid})
                             : std::nullopt);
    json.endObject();
    return jsonResponse(json.json());
}

HttpResponse deploymentStatistic(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    const Statistics::Totals totals = call.store.statistics.totals(deployment, rangeOf(call));
    const QString name = call.parameters.at(1);
    if (name == QLatin1String("TotalPageHits"))
        return numberResponse("value", totals.hits);
    if (name == QLatin1String("TotalPageViewTime"))
        return numberResponse("value", totals.seconds);
    throw Problem::invalid(QStringLiteral("There is no statistic \"%1\".").arg(name));
}

HttpResponse countParticipants(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    return numberResponse("count",
                          call.store.statistics.participantCount(deployment, rangeOf(call)));
}

HttpResponse countRegistrants(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    const QString participated = call.queryTextOrEmpty("participated", longestWord);
    Statistics &statistics = call.store.statistics;
    if (participated.isEmpty())
        return numberResponse("count", statistics.registrantCount(deployment));
    const TimeRange range = rangeOf(call);
    if (participated == QLatin1String("true"))
        return numberResponse("count", statistics.registeredParticipantCount(deployment, range));
    if (participated != QLatin1String("false"))
        throw Problem::invalid(QStringLiteral("\"participated\" must be true or false."));
    const qint64 others = call.store.database.snapshot([&] {
        return statistics.registrantCount(deployment) -
               statistics.registeredParticipantCount(deployment, range);
    });
    return numberResponse("count", others);
}

HttpResponse countPageViews(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    const Statistics::Attribute attribute = attributeOf(call);
    const QString comparison = call.queryText("op", longestWord);
    if (comparison != QLatin1String("="))
        throw Problem::invalid(
            QStringLiteral("Attributes cannot be compared by \"%1\".").arg(comparison));
    return numberResponse("count",
                          call.store.statistics.hitCount(deployment, rangeOf(call), attribute,
                                                         call.queryText("value", longestWord)));
}

HttpResponse listParticipants(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    ListCall page(call, "participants", mostLongRows);
    const qint64 after = page.isFirst() ? Statistics::beforeAll : page.number();
    const auto list =
        call.store.statistics.participants(deployment, rangeOf(call), after, page.limit());
    return participationResponse("participants", list.rows, page,
                                 list.next ? std::optional(QJsonArray{*list.next}) : std::nullopt);
}

HttpResponse listRegistrants(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    ListCall page(call, "registrants", mostLongRows);
    RegistrantPlace after;
    if (!page.isFirst())
        after = {page.number(), page.text()};
    const auto list =
        call.store.statistics.registrants(deployment, rangeOf(call), after, page.limit());
    return participationResponse(
        "registrants", list.rows, page,
        list.next ? std::optional(QJsonArray{list.next->at, list.next->userId}) : std::nullopt);
}

/// People stand in a table of their own, so that a view is four numbers. A page brings those it
/// names.
HttpResponse listPageViews(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    ListCall page(call, "page-views");
    PageViewList::Place after;
    if (!page.isFirst())
        after = {page.number(), page.bytes()};
    const PageViewList list =
        call.store.statistics.pageViews(deployment, rangeOf(call), after, page.limit());
    JsonWriter json;
    json.beginObject();
    beginTable(json, "people", {"user", "firstName", "lastName", "email", "registered"});
    for (const AudiencePerson &person : list.people) {
        json.beginArray();
        writePerson(json, person);
        json.endArray();
    }
    endTable(json);
    beginTable(json, "pageViews", {"person", "at", "timeSpent", "closed"});
    for (const PageViewList::View &view : list.views) {
        json.beginArray().integer(view.person).integer(view.at).integer(view.seconds);
        json.boolean(view.closed).endArray();
    }
    endTable(json);
    page.writeNext(
        json, list.next ? std::optional(QJsonArray{list.next->at, ListCall::valueOf(list.next->id)})
                        : std::nullopt);
    json.endObject();
    return jsonResponse(json.json());
}

HttpResponse listQuestions(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    const TimeRange range = openRangeOf(call);
    ListCall page(call, "questions", mostLongRows);
    Questions::Place after;
    if (!page.isFirst())
        after = {page.numberOrNull(), page.text()};
    return jsonResponse(call.store.database.snapshot([&] {
        JsonWriter json;
        json.beginObject();
        beginTable(json, "questions",
                   {"guid", "status", "user", "firstName", "lastName", "email", "registered",
                    "question", "answer", "submitted", "answered"});
        PageRows rows(json, page.limit());
        Questions::Place last;
        const auto write = [&](const StoredQuestion &question, const Questions::Place &place) {
            if (!rows.takeOne())
                return false;
            json.beginArray().text(question.guid).text(question.status);
            writePerson(json, question.person);
            json.text(question.questionText).text(question.answerText);
            json.integer(question.submittedAt).integer(question.answeredAt).endArray();
            last = place;
            return true;
        };
        call.store.questions.visitAfter(deployment, range, after, write);
        endTable(json);
        const QJsonValue at = last.submittedAt ? QJsonValue(*last.submittedAt) : QJsonValue();
        page.writeNext(json,
                       rows.hasMore() ? std::optional(QJsonArray{at, last.guid}) : std::nullopt);
        json.endObject();
        return json.json();
    }));
}

HttpResponse updateQuestion(const Call &call)
{
    refuseViewers(call);
    JsonFields fields(call.request.body);
    const QString answer = fields.text(QStringLiteral("answer"), longestQuestion);
    const QString question = fields.text(QStringLiteral("question"), longestQuestion);
    fields.expectNoMore();
    if (!call.store.questions.update(call.session.accountId, call.parameters.first().toLower(),
                                     answer, question))
        throw noSuchQuestion();
    return noContent();
}

HttpResponse setQuestionStatus(const Call &call)
{
    refuseViewers(call);
    JsonFields fields(call.request.body);
    const QString status = fields.text(QStringLiteral("status"), longestWord);
    fields.expectNoMore();
    if (!Questions::isModeration(status))
        throw Problem::invalid(
            QStringLiteral("A question is moved to STAGED, RETRACT or DELETE, not to \"%1\".")
                .arg(status));
    if (!call.store.questions.setStatus(call.session.accountId, call.parameters.first().toLower(),
                                        status))
        throw noSuchQuestion();
    return noContent();
}

} // namespace Zel::Service
