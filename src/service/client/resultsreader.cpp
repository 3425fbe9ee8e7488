// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/resultsreader.h"

#include "platform/core/int16.h"
#include "service/client/tablereader.h"

namespace QXSC {

namespace {

constexpr std::array voteFields{
    QLatin1String("user"),
    QLatin1String("question"),
    QLatin1String("answer"),
    QLatin1String("at"),
};

constexpr std::array answerFields{
    QLatin1String("question"),
    QLatin1String("choice"),
    QLatin1String("answer"),
    QLatin1String("answerTxt"),
};

constexpr std::array responseFields{
    QLatin1String("user"),
    QLatin1String("answer"),
    QLatin1String("at"),
};

QString textIn(const QJsonObject &object, QLatin1String name)
{
    return readText(readMember(object, name), name);
}

qint32 numberIn(const QJsonObject &object, QLatin1String name)
{
    return readInt32(readMember(object, name), name);
}

qint16 smallNumberIn(const QJsonObject &object, QLatin1String name)
{
    return Zel::Int16::from(numberIn(object, name)).value();
}

QDateTime timeIn(const QJsonValue &value, QLatin1String name)
{
    const auto time = readTime(value, name);
    if (!time)
        throw AnswerProblem{QStringLiteral("\"%1\" is no time").arg(name)};
    return *time;
}

/// Reads a list of objects.
template <typename Read>
void readObjects(const QJsonObject &object, QLatin1String name, const char *word, const Read &read)
{
    readEach(readList(readMember(object, name), name), word,
             [&](const QJsonValue &value) { read(readObject(value, QLatin1String(word))); });
}

PollAnswerPtr readPollAnswer(const QJsonObject &object)
{
    auto answer = std::make_shared<PollAnswer>();
    answer->guid = textIn(object, QLatin1String("guid"));
    answer->answerTxt = textIn(object, QLatin1String("answer"));
    answer->count = numberIn(object, QLatin1String("count"));
    return answer;
}

SurveyAnswerPtr readSurveyAnswer(const QJsonObject &object)
{
    const QLatin1String correct("correct");
    auto answer = std::make_shared<SurveyAnswer>();
    answer->guid = textIn(object, QLatin1String("guid"));
    answer->answerTxt = textIn(object, QLatin1String("answer"));
    answer->correct = readFlag(readMember(object, correct), correct);
    answer->Row = smallNumberIn(object, QLatin1String("row"));
    answer->Col = smallNumberIn(object, QLatin1String("col"));
    answer->count = numberIn(object, QLatin1String("count"));
    return answer;
}

SurveyQuestionPtr readSurveyQuestion(const QJsonObject &object)
{
    auto question = std::make_shared<SurveyQuestion>();
    question->guid = textIn(object, QLatin1String("guid"));
    question->questionTxt = textIn(object, QLatin1String("question"));
    question->colCount = smallNumberIn(object, QLatin1String("colCount"));
    auto answers = std::make_shared<SurveyAnswerCollection>();
    readObjects(object, QLatin1String("answers"), "answer",
                [&](const QJsonObject &answer) { answers->add(readSurveyAnswer(answer)); });
    question->answers = answers;
    return question;
}

/// An entry of a list by its position in another list.
template <typename List>
const auto &at(const List &list, const QJsonValue &value, QLatin1String name)
{
    const qint64 position = readInt64(value, name);
    if (position < 0 || position >= list.size())
        throw AnswerProblem{QStringLiteral("there is no \"%1\" %2").arg(name).arg(position)};
    return list.at(position);
}

} // namespace

PollQuestionCollectionPtr readPolls(const QByteArray &body)
{
    const QLatin1String name("polls");
    const QJsonObject object = readObject(body);
    if (readMember(object, name).isNull())
        return nullptr;
    auto polls = std::make_shared<PollQuestionCollection>();
    readObjects(object, name, "poll", [&](const QJsonObject &entry) {
        auto poll = std::make_shared<PollQuestion>();
        poll->guid = textIn(entry, QLatin1String("guid"));
        poll->questionTxt = textIn(entry, QLatin1String("question"));
        auto answers = std::make_shared<PollAnswerCollection>();
        readObjects(entry, QLatin1String("answers"), "answer",
                    [&](const QJsonObject &answer) { answers->add(readPollAnswer(answer)); });
        poll->answers = answers;
        polls->add(poll);
    });
    return polls;
}

PollResponseArray readPollResponses(const QJsonObject &answer, SharedTexts &texts)
{
    QList<PollResponse> responses;
    const auto take = [&](const auto &valueAt) {
        responses.append({texts.shared(readText(valueAt(0), voteFields[0])),
                          texts.shared(readText(valueAt(1), voteFields[1])),
                          texts.shared(readText(valueAt(2), voteFields[2])),
                          timeIn(valueAt(3), voteFields[3])});
    };
    if (!readTable(answer, QLatin1String("responses"), voteFields, take))
        return std::nullopt;
    return responses;
}

SurveyCollectionPtr readSurveys(const QByteArray &body)
{
    const QLatin1String name("surveys");
    const QJsonObject object = readObject(body);
    if (readMember(object, name).isNull())
        return nullptr;
    auto surveys = std::make_shared<SurveyCollection>();
    readObjects(object, name, "survey", [&](const QJsonObject &entry) {
        auto survey = std::make_shared<SurveyRecord>();
        survey->guid = textIn(entry, QLatin1String("guid"));
        survey->name = textIn(entry, QLatin1String("name"));
        auto questions = std::make_shared<SurveyQuestionCollection>();
        readObjects(
            entry, QLatin1String("questions"), "question",
            [&](const QJsonObject &question) { questions->add(readSurveyQuestion(question)); });
        survey->questions = questions;
        surveys->add(survey);
    });
    return surveys;
}

SurveyResponseArray readSurveyResponses(const QJsonObject &answer, SharedTexts &texts)
{
    const QLatin1String name("responses");
    const QLatin1String usersName("users");
    const QLatin1String answersName("answers");
    if (readMember(answer, name).isNull())
        return std::nullopt;
    QStringList users;
    readEach(readList(readMember(answer, usersName), usersName), "user",
             [&](const QJsonValue &user) { users << readText(user, QLatin1String("user")); });
    QList<SurveyResponse> answers;
    readTable(readObject(readMember(answer, answersName), answersName), answerFields,
              [&](const auto &valueAt) {
                  SurveyResponse response;
                  response.questionGuid = texts.shared(readText(valueAt(0), answerFields[0]));
                  response.answerGuid = texts.shared(readText(valueAt(1), answerFields[1]));
                  response.answer = texts.shared(readText(valueAt(2), answerFields[2]));
                  response.answerTxt = texts.shared(readText(valueAt(3), answerFields[3]));
                  answers << response;
              });
    QList<SurveyResponse> responses;
    readTable(readObject(readMember(answer, name), name), responseFields, [&](const auto &valueAt) {
        SurveyResponse response = at(answers, valueAt(1), responseFields[1]);
        response.userGuid = at(users, valueAt(0), responseFields[0]);
        response.answerDate = timeIn(valueAt(2), responseFields[2]);
        responses << response;
    });
    return responses;
}

} // namespace QXSC
