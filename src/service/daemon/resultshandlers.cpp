// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What polls and surveys of deployments brought.
#include "service/daemon/assetcalls.h"
#include "service/daemon/deploymentcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/listcall.h"

#include <QHash>

namespace Zel::Service {

namespace {

void writePoll(JsonWriter &json, const Poll &poll)
{
    json.beginObject().key("guid").text(poll.guid).key("question").text(poll.text);
    json.key("multiple").boolean(poll.multiple).key("answers").beginArray();
    for (const PollChoice &choice : poll.choices) {
        json.beginObject().key("guid").text(choice.guid).key("answer").text(choice.text);
        json.key("count").integer(choice.votes).endObject();
    }
    json.endArray().endObject();
}

void writeItem(JsonWriter &json, const SurveyItem &item)
{
    json.beginObject().key("guid").text(item.guid).key("question").text(item.text);
    json.key("multiple").boolean(item.multiple).key("colCount").integer(item.colCount);
    json.key("answers").beginArray();
    for (const SurveyChoice &choice : item.choices) {
        json.beginObject().key("guid").text(choice.guid).key("answer").text(choice.text);
        json.key("correct").boolean(choice.correct).key("row").integer(choice.row);
        json.key("col").integer(choice.col);
        json.key("count").integer(choice.respondents).endObject();
    }
    json.endArray().endObject();
}

void writeAnswer(JsonWriter &json, const Survey &survey, const SurveyReplyList::Answer &answer)
{
    const SurveyItem &item = survey.items.at(answer.item);
    QStringList positions;
    QStringList texts;
    for (const qint64 number : answer.choiceNos) {
        const SurveyChoice &choice = item.choices.at(number - 1);
        positions << QString::number(item.positionOf(choice));
        texts << choice.text;
    }
    json.beginArray().text(item.guid).text(item.choices.at(answer.choiceNos.first() - 1).guid);
    json.text(positions.join(QLatin1Char(':'))).text(texts.join(QLatin1String("; "))).endArray();
}

ArrivalPlace placeIn(ListCall &page)
{
    if (page.isFirst())
        return {};
    const qint64 arrived = page.number();
    return {arrived, page.bytes()};
}

std::optional<QJsonArray> valuesOf(const std::optional<ArrivalPlace> &place)
{
    if (!place)
        return std::nullopt;
    return QJsonArray{place->arrived, ListCall::valueOf(place->id)};
}

} // namespace

HttpResponse listPolls(const Call &call)
{
    const QList<Poll> polls = call.store.polls.list(deploymentOf(call));
    JsonWriter json;
    json.beginObject().key("polls").beginArray();
    for (const Poll &poll : polls)
        writePoll(json, poll);
    json.endArray().endObject();
    return jsonResponse(json.json());
}

/// An answer is named by its place, as the legend of a report numbers them.
HttpResponse listPollResponses(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    ListCall page(call, "poll-responses");
    const ArrivalPlace after = placeIn(page);
    QList<Poll> polls;
    ListPage<StoredVote, ArrivalPlace> votes;
    call.store.database.snapshot([&] {
        polls = call.store.polls.definitions(deployment);
        votes = call.store.polls.votes(deployment, after, page.limit());
    });
    JsonWriter json;
    json.beginObject();
    beginTable(json, "responses", {"user", "question", "answer", "at"});
    for (const StoredVote &vote : std::as_const(votes.rows)) {
        json.beginArray().text(vote.userGuid).text(polls.at(vote.pollNo - 1).guid);
        json.text(QString::number(vote.choiceNo)).integer(vote.at).endArray();
    }
    endTable(json);
    page.writeNext(json, valuesOf(votes.next));
    json.endObject();
    return jsonResponse(json.json());
}

HttpResponse listSurveys(const Call &call)
{
    const QList<Survey> surveys = call.store.surveys.list(deploymentOf(call));
    JsonWriter json;
    json.beginObject().key("surveys").beginArray();
    for (const Survey &survey : surveys) {
        json.beginObject().key("guid").text(survey.guid).key("name").text(survey.name);
        json.key("questions").beginArray();
        for (const SurveyItem &item : survey.items)
            writeItem(json, item);
        json.endArray().endObject();
    }
    json.endArray().endObject();
    return jsonResponse(json.json());
}

/// Respondents and answers stand in tables of their own, those of the page: a response is three
/// numbers.
HttpResponse listSurveyResponses(const Call &call)
{
    const DeploymentRef deployment = deploymentOf(call);
    const QString guid = call.parameters.at(1).toLower();
    ListCall page(call, "responses");
    const ArrivalPlace after = placeIn(page);
    QList<Survey> surveys;
    std::optional<SurveyReplyList> list;
    call.store.database.snapshot([&] {
        surveys = call.store.surveys.definitions(deployment);
        list = call.store.surveys.replies(deployment, guid, after, page.limit());
    });
    const auto survey = std::find_if(surveys.cbegin(), surveys.cend(),
                                     [&guid](const Survey &one) { return one.guid == guid; });
    if (survey == surveys.cend() || !list)
        throw notFound(QStringLiteral("There is no such survey."));
    JsonWriter json;
    json.beginObject().key("users").beginArray();
    for (const QString &user : std::as_const(list->users))
        json.text(user);
    json.endArray();
    beginTable(json, "answers", {"question", "choice", "answer", "answerTxt"});
    for (const SurveyReplyList::Answer &answer : std::as_const(list->answers))
        writeAnswer(json, *survey, answer);
    endTable(json);
    beginTable(json, "responses", {"user", "answer", "at"});
    for (const SurveyReplyList::Reply &reply : std::as_const(list->replies)) {
        json.beginArray().integer(reply.user).integer(reply.answer).integer(reply.at);
        json.endArray();
    }
    endTable(json);
    page.writeNext(json, valuesOf(list->next));
    json.endObject();
    return jsonResponse(json.json());
}

} // namespace Zel::Service
