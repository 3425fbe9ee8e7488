// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// What the players of a deployment report.
#include "service/daemon/deploymentcalls.h"
#include "service/daemon/handlers.h"
#include "service/daemon/jsonfields.h"
#include "service/daemon/problem.h"
#include "service/store/recordfile.h"

#include <algorithm>

namespace Zel::Service {

namespace {

constexpr qsizetype mostRows = 5000;

/// Rows of a request, each as a record, so that they are read as those of files are.
using Records = QList<FileRecord>;
using Taker = Intake (*)(Store &, const DeploymentRef &, Records &);

/// Reads each row and stores those that can be read. Refusals name the rows as they came.
template <class Row, class Take>
Intake takeReadable(Records &records, Row (*read)(FileRecord &), const Take &take)
{
    QList<Row> rows;
    QList<qsizetype> places;
    QList<Intake::Refusal> unreadable;
    for (qsizetype i = 0; i < records.size(); ++i) {
        try {
            if (!records.at(i).has(QStringLiteral("id")))
                records.at(i).refuse(QStringLiteral("\"id\" is missing."));
            rows << read(records[i]);
            places << i;
        } catch (const WorkspaceFileError &error) {
            unreadable.append({i, error.sentence()});
        }
    }
    Intake intake = take(rows);
    for (Intake::Refusal &refusal : intake.refused)
        refusal.row = places.at(refusal.row);
    intake.refused << unreadable;
    return intake;
}

Intake takeViews(Store &store, const DeploymentRef &deployment, Records &records)
{
    return takeReadable(records, pageViewIn, [&](const QList<PageView> &rows) {
        return store.audience.takeViews(deployment, rows);
    });
}

Intake takeRegistrations(Store &store, const DeploymentRef &deployment, Records &records)
{
    return takeReadable(records, registrationIn, [&](const QList<Registration> &rows) {
        return store.audience.takeRegistrations(deployment, rows);
    });
}

/// Answering is not for the audience.
AskedQuestion plainQuestionIn(FileRecord &record)
{
    for (const char *name : {"status", "answer", "answered"}) {
        if (record.has(QLatin1String(name)))
            record.refuse(QStringLiteral("\"%1\" is not known.").arg(QLatin1String(name)));
    }
    return questionIn(record);
}

Intake takeQuestions(Store &store, const DeploymentRef &deployment, Records &records)
{
    return takeReadable(records, plainQuestionIn, [&](const QList<AskedQuestion> &rows) {
        return store.questions.take(deployment, rows);
    });
}

Intake takeVotes(Store &store, const DeploymentRef &deployment, Records &records)
{
    return takeReadable(records, voteIn, [&](const QList<Vote> &rows) {
        return store.polls.take(deployment, rows);
    });
}

Intake takeReplies(Store &store, const DeploymentRef &deployment, Records &records)
{
    return takeReadable(records, surveyReplyIn, [&](const QList<SurveyReply> &rows) {
        return store.surveys.take(deployment, rows);
    });
}

struct PlayedQuestion
{
    QString guid;
    QString status;
};

PlayedQuestion playedQuestionIn(FileRecord &record)
{
    PlayedQuestion played{record.guid(QStringLiteral("id")),
                          record.text(QStringLiteral("status"), longestAttribute)};
    record.expectNoMore();
    if (!Questions::isPlayback(played.status))
        record.refuse(QStringLiteral("\"status\" must be PUBLISH or ANSWERED."));
    return played;
}

Intake takePlayed(Store &store, const DeploymentRef &deployment, Records &records)
{
    return takeReadable(records, playedQuestionIn, [&](const QList<PlayedQuestion> &rows) {
        Intake intake;
        for (qsizetype i = 0; i < rows.size(); ++i) {
            switch (store.questions.setPlayed(deployment, rows.at(i).guid, rows.at(i).status)) {
            case Questions::Played::Done:
                ++intake.changed;
                break;
            case Questions::Played::Known:
                ++intake.known;
                break;
            case Questions::Played::Unknown:
                intake.refused.append({i, QStringLiteral("there is no such question.")});
                break;
            case Questions::Played::NotStaged:
                intake.refused.append({i, QStringLiteral("the question is not staged.")});
                break;
            }
        }
        return intake;
    });
}

HttpResponse answered(const Intake &intake, const Records &records)
{
    QList<Intake::Refusal> refused = intake.refused;
    std::sort(refused.begin(), refused.end(),
              [](const Intake::Refusal &a, const Intake::Refusal &b) { return a.row < b.row; });
    JsonWriter json;
    json.beginObject().key("added").integer(intake.added).key("changed").integer(intake.changed);
    json.key("known").integer(intake.known).key("refused").beginArray();
    for (const Intake::Refusal &refusal : std::as_const(refused)) {
        json.beginObject().key("row").integer(refusal.row).key("id");
        json.text(records.at(refusal.row).fields.value(QLatin1String("id")).toString());
        json.key("why").text(refusal.why).endObject();
    }
    json.endArray().endObject();
    return jsonResponse(json.json());
}

/// The deployment whose key the request carries. Unknown deployments and wrong keys are not told
/// apart.
DeploymentRef playedDeployment(const Call &call)
{
    static const QByteArray scheme = QByteArrayLiteral("Deployment ");
    const QByteArray value = call.request.header("Authorization");
    if (value.left(scheme.size()).compare(scheme, Qt::CaseInsensitive) == 0) {
        const auto found =
            call.store.deployments.findByKey(call.parameters.first().toLower(),
                                             QString::fromUtf8(value.mid(scheme.size()).trimmed()));
        if (found)
            return *found;
    }
    throw Problem(401, QByteArrayLiteral("bad-key"),
                  QStringLiteral("This is not the key of the deployment."),
                  {{QByteArrayLiteral("WWW-Authenticate"), QByteArrayLiteral("Deployment")}});
}

/// Takes a body in. A sink, so that nobody without the key can send one.
class IntakeSink : public BodySink
{
public:
    IntakeSink(const Call &call, Taker taker)
        : m_store(call.store)
        , m_deployment(playedDeployment(call))
        , m_taker(taker)
    {
    }

    std::optional<HttpResponse> take(QByteArrayView piece) override
    {
        m_body.append(piece.data(), piece.size());
        return std::nullopt;
    }

    HttpResponse finish() override
    {
        JsonFields fields(m_body);
        const QJsonArray rows = fields.list(QStringLiteral("rows"));
        fields.expectNoMore();
        if (rows.size() > mostRows)
            throw Problem(413, QByteArrayLiteral("too-large"),
                          QStringLiteral("A call takes at most %1 rows.").arg(mostRows));
        Records records;
        for (const QJsonValue &row : rows) {
            if (!row.isObject())
                throw Problem::invalid(QStringLiteral("Each of \"rows\" must be an object."));
            FileRecord record;
            record.fields = row.toObject();
            records << record;
        }
        const Intake intake = m_taker(m_store, m_deployment, records);
        return answered(intake, records);
    }

private:
    Store &m_store;
    DeploymentRef m_deployment;
    Taker m_taker;
    QByteArray m_body;
};

template <Taker taker>
std::shared_ptr<BodySink> intake(const Call &call)
{
    return std::make_shared<IntakeSink>(call, taker);
}

} // namespace

std::shared_ptr<BodySink> postPageViews(const Call &call)
{
    return intake<takeViews>(call);
}

std::shared_ptr<BodySink> postRegistrations(const Call &call)
{
    return intake<takeRegistrations>(call);
}

std::shared_ptr<BodySink> postQuestions(const Call &call)
{
    return intake<takeQuestions>(call);
}

std::shared_ptr<BodySink> postQuestionStates(const Call &call)
{
    return intake<takePlayed>(call);
}

std::shared_ptr<BodySink> postVotes(const Call &call)
{
    return intake<takeVotes>(call);
}

std::shared_ptr<BodySink> postResponses(const Call &call)
{
    return intake<takeReplies>(call);
}

} // namespace Zel::Service
