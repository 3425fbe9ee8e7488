// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacecheck.h"

#include "service/store/blobstore.h"
#include "service/store/blobtransfer.h"
#include "service/store/database.h"
#include "service/store/tableschema.h"

#include <QMap>

#include <array>

namespace Zel {

namespace {

/// A count that has to be 0.
struct Check
{
    const char *sentence; ///< %1 is the count
    const SqlText &count;
};

const SqlText foldersWithoutParent(R"sql(
    SELECT COUNT(*) FROM asset_folder f WHERE f.parent_id <> 0 AND NOT EXISTS (
        SELECT p.folder_id FROM asset_folder p
        WHERE p.account_id = f.account_id AND p.folder_id = f.parent_id)
)sql");

// Assets in the trash may outlive their folder.
const SqlText assetsWithoutFolder(R"sql(
    SELECT COUNT(*) FROM asset a WHERE a.folder_id <> 0 AND a.deleted_at IS NULL AND NOT EXISTS (
        SELECT f.folder_id FROM asset_folder f
        WHERE f.account_id = a.account_id AND f.folder_id = a.folder_id)
)sql");

const SqlText rightsWithoutFolder(R"sql(
    SELECT COUNT(*) FROM folder_perm r WHERE r.folder_id <> 0 AND NOT EXISTS (
        SELECT f.folder_id FROM asset_folder f
        WHERE f.account_id = r.account_id AND f.folder_id = r.folder_id)
)sql");

const SqlText assetsWithoutFile(R"sql(
    SELECT COUNT(*) FROM asset a WHERE NOT EXISTS (
        SELECT f.pos FROM asset_file f
        WHERE f.account_id = a.account_id AND f.guid = a.guid)
)sql");

// The record that an account has saved may be of a theme of all accounts.
const SqlText recordsWithoutTheme(R"sql(
    SELECT COUNT(*) FROM data_record r WHERE NOT EXISTS (
        SELECT t.guid FROM theme t
        WHERE t.account_id IN (0, r.account_id) AND t.guid = r.theme_guid)
)sql");

const SqlText peopleWithoutDeployment(R"sql(
    SELECT COUNT(*) FROM audience_person p WHERE NOT EXISTS (
        SELECT d.guid FROM deployment d
        WHERE d.account_id = p.account_id AND d.dep_no = p.dep_no)
)sql");

const SqlText profilesWithoutDeployment(R"sql(
    SELECT COUNT(*) FROM view_profile p WHERE NOT EXISTS (
        SELECT d.guid FROM deployment d
        WHERE d.account_id = p.account_id AND d.dep_no = p.dep_no)
)sql");

const SqlText registrantsWithoutPerson(R"sql(
    SELECT COUNT(*) FROM registrant r WHERE NOT EXISTS (
        SELECT p.person_no FROM audience_person p
        WHERE p.account_id = r.account_id AND p.dep_no = r.dep_no AND p.person_no = r.person_no)
)sql");

const SqlText viewsWithoutPerson(R"sql(
    SELECT COUNT(*) FROM page_view v WHERE NOT EXISTS (
        SELECT p.person_no FROM audience_person p
        WHERE p.account_id = v.account_id AND p.dep_no = v.dep_no AND p.person_no = v.person_no)
)sql");

const SqlText viewsWithoutProfile(R"sql(
    SELECT COUNT(*) FROM page_view v WHERE NOT EXISTS (
        SELECT p.profile_no FROM view_profile p
        WHERE p.account_id = v.account_id AND p.dep_no = v.dep_no AND p.profile_no = v.profile_no)
)sql");

const SqlText questionsWithoutPerson(R"sql(
    SELECT COUNT(*) FROM question q WHERE NOT EXISTS (
        SELECT p.person_no FROM audience_person p
        WHERE p.account_id = q.account_id AND p.dep_no = q.dep_no AND p.person_no = q.person_no)
)sql");

const SqlText pollsWithoutDeployment(R"sql(
    SELECT COUNT(*) FROM poll_question q WHERE NOT EXISTS (
        SELECT d.guid FROM deployment d
        WHERE d.account_id = q.account_id AND d.dep_no = q.dep_no)
)sql");

const SqlText pollAnswersWithoutPoll(R"sql(
    SELECT COUNT(*) FROM poll_answer a WHERE NOT EXISTS (
        SELECT q.guid FROM poll_question q
        WHERE q.account_id = a.account_id AND q.dep_no = a.dep_no AND q.question_no = a.question_no)
)sql");

const SqlText votesWithoutAnswer(R"sql(
    SELECT COUNT(*) FROM poll_vote v WHERE NOT EXISTS (
        SELECT a.guid FROM poll_answer a
        WHERE a.account_id = v.account_id AND a.dep_no = v.dep_no
        AND a.question_no = v.question_no AND a.answer_no = v.answer_no)
)sql");

const SqlText surveysWithoutDeployment(R"sql(
    SELECT COUNT(*) FROM survey s WHERE NOT EXISTS (
        SELECT d.guid FROM deployment d
        WHERE d.account_id = s.account_id AND d.dep_no = s.dep_no)
)sql");

const SqlText surveyQuestionsWithoutSurvey(R"sql(
    SELECT COUNT(*) FROM survey_question q WHERE NOT EXISTS (
        SELECT s.guid FROM survey s
        WHERE s.account_id = q.account_id AND s.dep_no = q.dep_no AND s.survey_no = q.survey_no)
)sql");

const SqlText surveyAnswersWithoutQuestion(R"sql(
    SELECT COUNT(*) FROM survey_answer a WHERE NOT EXISTS (
        SELECT q.guid FROM survey_question q
        WHERE q.account_id = a.account_id AND q.dep_no = a.dep_no
        AND q.survey_no = a.survey_no AND q.question_no = a.question_no)
)sql");

const SqlText responsesWithoutQuestion(R"sql(
    SELECT COUNT(*) FROM survey_response r WHERE NOT EXISTS (
        SELECT q.guid FROM survey_question q
        WHERE q.account_id = r.account_id AND q.dep_no = r.dep_no
        AND q.survey_no = r.survey_no AND q.question_no = r.question_no)
)sql");

const std::array referenceChecks{
    Check{"%1 asset folders lie in a folder that is not there.", foldersWithoutParent},
    Check{"%1 assets lie in a folder that is not there.", assetsWithoutFolder},
    Check{"%1 rights are of a folder that is not there.", rightsWithoutFolder},
    Check{"%1 assets have no file.", assetsWithoutFile},
    Check{"%1 data records are of a theme that is not there.", recordsWithoutTheme},
    Check{"%1 people of an audience are of a deployment that is not there.",
          peopleWithoutDeployment},
    Check{"%1 browsers of an audience are of a deployment that is not there.",
          profilesWithoutDeployment},
    Check{"%1 registrants are nobody of the audience.", registrantsWithoutPerson},
    Check{"%1 page views are of nobody of the audience.", viewsWithoutPerson},
    Check{"%1 page views came from a browser that is not there.", viewsWithoutProfile},
    Check{"%1 questions are of nobody of the audience.", questionsWithoutPerson},
    Check{"%1 polls are of a deployment that is not there.", pollsWithoutDeployment},
    Check{"%1 answers of polls are of a poll that is not there.", pollAnswersWithoutPoll},
    Check{"%1 votes are for an answer that is not there.", votesWithoutAnswer},
    Check{"%1 surveys are of a deployment that is not there.", surveysWithoutDeployment},
    Check{"%1 questions of surveys are of a survey that is not there.",
          surveyQuestionsWithoutSurvey},
    Check{"%1 answers of surveys are of a question that is not there.",
          surveyAnswersWithoutQuestion},
    Check{"%1 responses are to a question that is not there.", responsesWithoutQuestion},
};

// Hours begin at whole multiples, also before 1970: division alone would round those up.
const SqlText wrongSums(R"sql(
    SELECT COUNT(*) FROM view_tally t LEFT JOIN (
        SELECT account_id, dep_no, hour_no, person_no, profile_no, COUNT(*) AS hits,
            SUM(time_spent) AS seconds, MIN(view_at) AS first_at, MAX(view_at) AS last_at
        FROM (
            SELECT account_id, dep_no, person_no, profile_no, time_spent, view_at,
                (view_at - (view_at % 3600000 + 3600000) % 3600000) / 3600000 AS hour_no
            FROM page_view) timed
        GROUP BY account_id, dep_no, hour_no, person_no, profile_no) v
    ON v.account_id = t.account_id AND v.dep_no = t.dep_no AND v.hour_no = t.hour_no
        AND v.person_no = t.person_no AND v.profile_no = t.profile_no
    WHERE v.hits IS NULL OR v.hits <> t.hits OR v.seconds <> t.seconds
        OR v.first_at <> t.first_at OR v.last_at <> t.last_at
)sql");

const SqlText viewsWithoutTally(R"sql(
    SELECT COUNT(*) FROM page_view v WHERE NOT EXISTS (
        SELECT t.hits FROM view_tally t
        WHERE t.account_id = v.account_id AND t.dep_no = v.dep_no
        AND t.hour_no = (v.view_at - (v.view_at % 3600000 + 3600000) % 3600000) / 3600000
        AND t.person_no = v.person_no AND t.profile_no = v.profile_no)
)sql");

const std::array tallyChecks{
    Check{"%1 sums of page views are wrong.", wrongSums},
    Check{"%1 page views are in no sum.", viewsWithoutTally},
};

template <class Checks>
QStringList run(Database &database, const Checks &checks, const QString &what,
                const Progress &progress)
{
    return database.snapshot([&] {
        allowLongWork(database);
        QStringList found;
        qint64 done = 0;
        for (const Check &check : checks) {
            const qint64 count =
                database.row(check.count, {}, [](const SqlRow &row) { return row.integer(0); })
                    .value_or(0);
            if (count > 0)
                found << QString::fromLatin1(check.sentence).arg(count);
            tell(progress, what, ++done, qint64(checks.size()));
        }
        return found;
    });
}

} // namespace

WorkspaceCheck::WorkspaceCheck(Database &database, BlobStore &blobs, const Progress &progress)
    : m_database(database)
    , m_blobs(blobs)
    , m_progress(progress)
{
}

QStringList WorkspaceCheck::brokenReferences()
{
    return run(m_database, referenceChecks, QStringLiteral("references"), m_progress);
}

QStringList WorkspaceCheck::wrongTallies()
{
    return run(m_database, tallyChecks, QStringLiteral("sums"), m_progress);
}

QStringList WorkspaceCheck::brokenFiles(Depth depth)
{
    const auto named = [this] {
        return m_database.snapshot([this] { return namedBlobs(m_database); });
    };
    const QList<NamedBlob> all = named();
    QMap<QString, QString> faults;
    m_checkedFiles = 0;
    for (const NamedBlob &blob : all) {
        const QString fault =
            depth == Depth::Bytes ? faultOfBytes(m_blobs, blob) : faultOfSize(m_blobs, blob);
        if (!fault.isEmpty())
            faults.insert(blob.sha, fault);
        tell(m_progress, QStringLiteral("files"), ++m_checkedFiles, all.size());
    }
    if (faults.isEmpty())
        return {};
    // Not those that were cleared away meanwhile, together with the rows that named them.
    QStringList found;
    for (const NamedBlob &blob : named()) {
        if (faults.contains(blob.sha))
            found << faults.value(blob.sha);
    }
    return found;
}

} // namespace Zel
