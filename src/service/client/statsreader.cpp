// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/client/statsreader.h"

#include "platform/core/int16.h"
#include "service/client/tablereader.h"

#include <limits>
#include <vector>

namespace QXSC {

namespace {

/// The columns that tell of a person, in this order wherever they stand.
constexpr std::array personFields{
    QLatin1String("user"),  QLatin1String("firstName"),  QLatin1String("lastName"),
    QLatin1String("email"), QLatin1String("registered"),
};

constexpr std::array participationFields{
    personFields[0],
    personFields[1],
    personFields[2],
    personFields[3],
    personFields[4],
    QLatin1String("participated"),
    QLatin1String("timeSpent"),
    QLatin1String("firstViewed"),
    QLatin1String("lastViewed"),
};

constexpr std::array viewFields{
    QLatin1String("person"),
    QLatin1String("at"),
    QLatin1String("timeSpent"),
    QLatin1String("closed"),
};

constexpr std::array questionFields{
    personFields[0],           personFields[1],
    personFields[2],           personFields[3],
    personFields[4],           QLatin1String("guid"),
    QLatin1String("status"),   QLatin1String("question"),
    QLatin1String("answer"),   QLatin1String("submitted"),
    QLatin1String("answered"),
};

constexpr std::array deploymentFields{
    QLatin1String("guid"),
    QLatin1String("name"),
    QLatin1String("published"),
};

QDateTime timeOrNone(const QJsonValue &value, QLatin1String name)
{
    return readTime(value, name).value_or(QDateTime());
}

QDateTime timeIn(const QJsonValue &value, QLatin1String name)
{
    const auto time = readTime(value, name);
    if (!time)
        throw AnswerProblem{QStringLiteral("\"%1\" is no time").arg(name)};
    return *time;
}

qint32 seconds(const QJsonValue &value, QLatin1String name)
{
    const qint64 number = readInt64(value, name);
    if (!std::in_range<qint32>(number))
        throw Zel::RuntimeError(Zel::RuntimeError::Overflow);
    return static_cast<qint32>(number);
}

/// @param valueAt gives the value of a field by its index; the first are `personFields`
template <typename ValueAt>
StatsUserPtr readPerson(const ValueAt &valueAt)
{
    auto person = std::make_shared<StatsUser>();
    person->UserID = readText(valueAt(0), personFields[0]);
    person->FirstName = readText(valueAt(1), personFields[1]);
    person->LastName = readText(valueAt(2), personFields[2]);
    person->Email = readText(valueAt(3), personFields[3]);
    person->DateRegistered = timeOrNone(valueAt(4), personFields[4]);
    return person;
}

/// Reads a table that must be there.
template <std::size_t Count, typename Take>
void readWholeTable(const QJsonObject &object, QLatin1String name,
                    const std::array<QLatin1String, Count> &fields, const Take &take)
{
    readTable(readObject(readMember(object, name), name), fields, take);
}

} // namespace

QList<Deployment> readDeployments(const QJsonObject &answer)
{
    QList<Deployment> deployments;
    readTable(answer, QLatin1String("deployments"), deploymentFields, [&](const auto &valueAt) {
        deployments.append({readText(valueAt(0), deploymentFields[0]),
                            readText(valueAt(1), deploymentFields[1]),
                            timeIn(valueAt(2), deploymentFields[2])});
    });
    return deployments;
}

double readStatistic(const QByteArray &body)
{
    const QLatin1String name("value");
    return static_cast<double>(readInt64(readMember(readObject(body), name), name));
}

qint16 readCount(const QByteArray &body)
{
    const QLatin1String name("count");
    return Zel::Int16::from(readInt64(readMember(readObject(body), name), name)).value();
}

ParticipantCollectionPtr readParticipants(const QJsonObject &answer)
{
    auto participants = std::make_shared<ParticipantCollection>();
    const auto take = [&](const auto &valueAt) {
        auto record = std::make_shared<ParticipantRecord>();
        record->User = readPerson(valueAt);
        record->Registered = record->User->DateRegistered.isValid();
        record->TimeSpent = seconds(valueAt(6), participationFields[6]);
        record->FirstViewed = timeIn(valueAt(7), participationFields[7]);
        record->LastViewed = timeIn(valueAt(8), participationFields[8]);
        participants->add(record);
    };
    if (!readTable(answer, QLatin1String("participants"), participationFields, take))
        return nullptr;
    return participants;
}

RegistrantCollectionPtr readRegistrants(const QJsonObject &answer)
{
    auto registrants = std::make_shared<RegistrantCollection>();
    const auto take = [&](const auto &valueAt) {
        auto record = std::make_shared<RegistrantRecord>();
        record->User = readPerson(valueAt);
        record->Participated = readFlag(valueAt(5), participationFields[5]);
        record->TimeSpent = seconds(valueAt(6), participationFields[6]);
        record->FirstViewed = timeOrNone(valueAt(7), participationFields[7]);
        record->LastViewed = timeOrNone(valueAt(8), participationFields[8]);
        registrants->add(record);
    };
    if (!readTable(answer, QLatin1String("registrants"), participationFields, take))
        return nullptr;
    return registrants;
}

PageViewCollectionPtr readPageViews(const QJsonObject &answer)
{
    const QLatin1String name("pageViews");
    if (readMember(answer, name).isNull())
        return nullptr;
    std::vector<StatsUserPtr> people;
    readWholeTable(answer, QLatin1String("people"), personFields,
                   [&](const auto &valueAt) { people.push_back(readPerson(valueAt)); });
    auto views = std::make_shared<PageViewCollection>();
    readWholeTable(answer, name, viewFields, [&](const auto &valueAt) {
        auto record = std::make_shared<PageViewRecord>();
        const qint64 person = readInt64(valueAt(0), viewFields[0]);
        if (person < 0 || static_cast<std::size_t>(person) >= people.size())
            throw AnswerProblem{QStringLiteral("there is no person %1").arg(person)};
        record->User = people[static_cast<std::size_t>(person)];
        record->ViewDate = timeIn(valueAt(1), viewFields[1]);
        record->TimeSpent = seconds(valueAt(2), viewFields[2]);
        record->Closed = readFlag(valueAt(3), viewFields[3]);
        views->add(record);
    });
    return views;
}

QuestionCollectionPtr readQuestions(const QJsonObject &answer)
{
    auto questions = std::make_shared<QuestionCollection>();
    const auto take = [&](const auto &valueAt) {
        auto record = std::make_shared<QuestionRecord>();
        record->User = readPerson(valueAt);
        record->QuestionGuid = readText(valueAt(5), questionFields[5]);
        record->Status = readText(valueAt(6), questionFields[6]);
        record->QuestionText = readText(valueAt(7), questionFields[7]);
        record->AnswerText = readText(valueAt(8), questionFields[8]);
        record->Submitted = timeOrNone(valueAt(9), questionFields[9]);
        record->SubmittedSpecified = record->Submitted.isValid();
        record->Answered = timeOrNone(valueAt(10), questionFields[10]);
        record->AnsweredSpecified = record->Answered.isValid();
        questions->add(record);
    };
    if (!readTable(answer, QLatin1String("questions"), questionFields, take))
        return nullptr;
    return questions;
}

} // namespace QXSC
