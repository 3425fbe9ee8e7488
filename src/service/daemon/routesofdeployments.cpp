// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The routes of deployments: figures, questions, results and what players report.
#include "service/daemon/handlers.h"
#include "service/daemon/routes.h"
#include "service/store/audience.h"

namespace Zel::Service {

namespace {

/// Of a question and its answer, with each character as the longest of JSON's escapes.
constexpr qint64 questionBodyLimit = 2 * 6 * longestQuestion + 1024;

const RouteParameter deployment{"guid", "Guid", "The deployment."};
const RouteParameter question{"guid", "Guid", "The question."};

/// A route that reads something of a deployment.
Route read(const char *pattern, Handler handler)
{
    return get(pattern, handler).place(deployment).refuses("not-found");
}

/// The same over a range of time.
Route readRange(const char *pattern, Handler handler)
{
    return read(pattern, handler)
        .query("from", "Time", "The first moment of the range.")
        .query("to", "Time", "The last moment of the range.");
}

/// A route by which players report.
Route report(const char *pattern, StreamHandler handler)
{
    return post(pattern, handler, intakeBodyLimit)
        .openedBy("deploymentKey")
        .place(deployment)
        .gives(200, "Intake")
        .refuses("bad-key");
}

} // namespace

QList<Route> statisticsRoutes()
{
    return {
        readRange("/v1/deployments/{guid}/statistics/{name}", deploymentStatistic)
            .named("deploymentStatistic", "A figure of a range of time")
            .place({"name", "StatisticName", "The figure."})
            .gives(200, "Statistic"),
        readRange("/v1/deployments/{guid}/participants/count", countParticipants)
            .named("countParticipants", "How many different persons looked at pages")
            .gives(200, "Count"),
        readRange("/v1/deployments/{guid}/participants", listParticipants)
            .named("listParticipants", "Those who looked at pages, by their first view")
            .paged()
            .gives(200, "ParticipantList"),
        read("/v1/deployments/{guid}/registrants/count", countRegistrants)
            .named("countRegistrants", "How many persons have registered")
            .says("With `participated` those who did, or did not, look at pages within the range, "
                  "which has to be given then.")
            .optionalQuery("participated", "TrueOrFalse", "Whether they took part.")
            .optionalQuery("from", "Time", "The first moment of the range.")
            .optionalQuery("to", "Time", "The last moment of the range.")
            .gives(200, "Count"),
        readRange("/v1/deployments/{guid}/registrants", listRegistrants)
            .named("listRegistrants", "All who have registered, by registration")
            .says("All are listed; the range says who of them took part.")
            .paged()
            .gives(200, "RegistrantList"),
        readRange("/v1/deployments/{guid}/page-views/count", countPageViews)
            .named("countPageViews", "How many page views have an attribute of that value")
            .query("attribute", "PageViewAttribute", "What is compared.")
            .query("op", "Comparison", "How.")
            .query("value", "AttributeValue", "With what.")
            .gives(200, "Count"),
        readRange("/v1/deployments/{guid}/page-views", listPageViews)
            .named("listPageViews", "The page views of a range, by time")
            .says("People stand in a table of their own; a view names its person by position.")
            .paged()
            .gives(200, "PageViewList"),
    };
}

QList<Route> questionRoutes()
{
    return {
        read("/v1/deployments/{guid}/questions", listQuestions)
            .named("listQuestions", "The questions of a range, by time")
            .says("A question whose time is not known is in every range.")
            .query("from", "Time", "The first moment of the range.")
            .optionalQuery("to", "Time", "The last moment of the range; without it there is none.")
            .paged()
            .gives(200, "QuestionList"),
        put("/v1/questions/{guid}", updateQuestion)
            .upTo(questionBodyLimit)
            .named("updateQuestion", "Answer and reword a question")
            .says("Not for viewers.")
            .place(question)
            .takes("QuestionTexts")
            .gives(204)
            .refuses("not-allowed")
            .refuses("not-found"),
        put("/v1/questions/{guid}/status", setQuestionStatus)
            .named("setQuestionStatus", "Move a question to another state")
            .says("From any state to any other. Not for viewers.")
            .place(question)
            .takes("QuestionMove")
            .gives(204)
            .refuses("not-allowed")
            .refuses("not-found"),
    };
}

QList<Route> resultsRoutes()
{
    return {
        read("/v1/deployments/{guid}/polls", listPolls)
            .named("listPolls", "The polls with their votes counted")
            .gives(200, "PollList"),
        read("/v1/deployments/{guid}/poll-responses", listPollResponses)
            .named("listPollResponses", "The votes in order of arrival")
            .paged()
            .gives(200, "PollResponseList"),
        read("/v1/deployments/{guid}/surveys", listSurveys)
            .named("listSurveys", "The surveys with their answers counted")
            .gives(200, "SurveyList"),
        read("/v1/deployments/{guid}/surveys/{survey}/responses", listSurveyResponses)
            .named("listSurveyResponses", "The responses to a survey in order of arrival")
            .says("Respondents and answers stand in lists of their own; a response names them by "
                  "position.")
            .place({"survey", "Guid", "The survey."})
            .paged()
            .gives(200, "SurveyResponseList"),
    };
}

QList<Route> intakeRoutes()
{
    return {
        report("/v1/deployments/{guid}/page-views", postPageViews)
            .named("reportPageViews", "Report page views")
            .says("A view that is not closed may come again with more time, and closed.")
            .takes("PageViewReport"),
        report("/v1/deployments/{guid}/registrations", postRegistrations)
            .named("reportRegistrations", "Report registrations, one of a person")
            .takes("RegistrationReport"),
        report("/v1/deployments/{guid}/questions", postQuestions)
            .named("reportQuestions", "Report questions")
            .says("The id becomes the guid of the question.")
            .takes("QuestionReport"),
        report("/v1/deployments/{guid}/question-states", postQuestionStates)
            .named("reportQuestionStates", "Report what was shown of staged questions")
            .takes("QuestionStateReport"),
        report("/v1/deployments/{guid}/votes", postVotes)
            .named("reportVotes", "Report votes")
            .takes("VoteReport"),
        report("/v1/deployments/{guid}/responses", postResponses)
            .named("reportResponses", "Report responses to surveys")
            .takes("ResponseReport"),
    };
}

} // namespace Zel::Service
