// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The files that define polls and surveys, and how tables become responses.
#include "service/store/audiencefiles.h"

#include "service/store/recordfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSet>

#include <limits>

namespace Zel {

namespace {

constexpr qint64 largestPlace = std::numeric_limits<qint16>::max();

void expectNew(QSet<QString> &seen, const QString &key, const FileRecord &record)
{
    if (seen.contains(key))
        record.refuse(QStringLiteral("\"%1\" stands there twice.").arg(key));
    seen.insert(key);
}

/// The members of a list in a record, each an object.
QList<FileRecord> recordsIn(FileRecord &record, const QString &name, qsizetype most)
{
    QList<FileRecord> records;
    const QJsonArray list = record.list(name);
    if (list.size() > most)
        record.refuse(QStringLiteral("\"%1\" has more than %2 members.").arg(name).arg(most));
    for (const QJsonValue &value : list) {
        if (!value.isObject())
            record.refuse(QStringLiteral("\"%1\" must list objects.").arg(name));
        FileRecord member;
        member.place = record.place;
        member.fields = value.toObject();
        records << member;
    }
    return records;
}

bool flagIn(FileRecord &record, const QString &name)
{
    return record.has(name) && record.boolean(name);
}

qint64 placeIn(FileRecord &record, const QString &name, qint64 fallback)
{
    return record.has(name) ? record.integer(name, 1, largestPlace) : fallback;
}

Poll pollIn(FileRecord &record)
{
    Poll poll;
    poll.guid = record.guid(QStringLiteral("guid"));
    poll.text = record.text(QStringLiteral("question"), Polls::longestText);
    poll.multiple = flagIn(record, QStringLiteral("multiple"));
    QSet<QString> seen;
    QList<FileRecord> answers = recordsIn(record, QStringLiteral("answers"), Polls::mostChoices);
    for (FileRecord &answer : answers) {
        PollChoice choice;
        choice.guid = answer.guid(QStringLiteral("guid"));
        choice.text = answer.text(QStringLiteral("answer"), Polls::longestText);
        answer.expectNoMore();
        expectNew(seen, choice.guid, answer);
        poll.choices << choice;
    }
    record.expectNoMore();
    return poll;
}

/// Without a place of its own a choice stands in the next row of one column.
SurveyItem itemIn(FileRecord &record)
{
    SurveyItem item;
    item.guid = record.guid(QStringLiteral("guid"));
    item.text = record.text(QStringLiteral("question"), Surveys::longestText);
    item.multiple = flagIn(record, QStringLiteral("multiple"));
    item.colCount = placeIn(record, QStringLiteral("colCount"), 1);
    QSet<QString> seen;
    QList<FileRecord> answers = recordsIn(record, QStringLiteral("answers"), Surveys::mostChoices);
    for (FileRecord &answer : answers) {
        SurveyChoice choice;
        choice.guid = answer.guid(QStringLiteral("guid"));
        choice.text = answer.text(QStringLiteral("answer"), Surveys::longestText);
        choice.correct = flagIn(answer, QStringLiteral("correct"));
        choice.row = placeIn(answer, QStringLiteral("row"), item.choices.size() + 1);
        choice.col = placeIn(answer, QStringLiteral("col"), 1);
        answer.expectNoMore();
        if (choice.col > item.colCount || item.positionOf(choice) > largestPlace)
            answer.refuse(QStringLiteral("the answer stands outside of its grid."));
        expectNew(seen, choice.guid, answer);
        expectNew(seen, QStringLiteral("row %1, col %2").arg(choice.row).arg(choice.col), answer);
        item.choices << choice;
    }
    record.expectNoMore();
    return item;
}

Survey surveyIn(FileRecord &record)
{
    Survey survey;
    survey.guid = record.guid(QStringLiteral("guid"));
    survey.name = record.text(QStringLiteral("name"), Surveys::longestText);
    QSet<QString> seen;
    QList<FileRecord> items = recordsIn(record, QStringLiteral("questions"), Surveys::mostItems);
    for (FileRecord &one : items) {
        survey.items << itemIn(one);
        expectNew(seen, survey.items.last().guid, one);
    }
    record.expectNoMore();
    return survey;
}

template <class Row>
void readDefinitions(AudienceFiles::Definitions<Row> &into, const QString &path, qsizetype most,
                     Row (*read)(FileRecord &))
{
    QSet<QString> seen;
    into.place = {path, 0};
    into.isGiven = true;
    for (FileRecord &record : readJsonRecords(path)) {
        into.all << read(record);
        expectNew(seen, into.all.last().guid, record);
        if (into.all.size() > most)
            record.refuse(QStringLiteral("there are more than %1.").arg(most));
    }
}

/// What a mapping says.
struct Mapping
{
    QString survey;
    QString file;
    QString userColumn;
    QString atColumn; ///< empty where `at` is that of all
    qint64 at = 0;
    QList<std::pair<QString, QString>> questions; ///< column and guid
    QJsonObject values; ///< answers by what stands in the cells; empty where those are answers
};

Mapping mappingIn(FileRecord &record)
{
    constexpr qsizetype longestName = 4096;
    Mapping mapping;
    mapping.survey = record.guid(QStringLiteral("survey"));
    mapping.file = QFileInfo(record.place.file)
                       .dir()
                       .filePath(record.text(QStringLiteral("file"), longestName));
    mapping.userColumn = record.text(QStringLiteral("user"), longestName);
    if (record.has(QStringLiteral("atColumn")))
        mapping.atColumn = record.text(QStringLiteral("atColumn"), longestName);
    else
        mapping.at = record.time(QStringLiteral("at"));
    QList<FileRecord> questions =
        recordsIn(record, QStringLiteral("questions"), Surveys::mostItems);
    for (FileRecord &question : questions) {
        mapping.questions.append({question.text(QStringLiteral("column"), longestName),
                                  question.guid(QStringLiteral("question"))});
        question.expectNoMore();
    }
    if (record.has(QStringLiteral("values"))) {
        mapping.values = record.object(QStringLiteral("values"));
        if (mapping.values.isEmpty())
            record.refuse(QStringLiteral("\"values\" is empty."));
    }
    record.expectNoMore();
    return mapping;
}

/// The answers in a cell, several parted by ":", each by guid or number.
QStringList answersIn(const QString &cell, const Mapping &mapping, const FileRecord &row)
{
    QStringList answers = cell.split(QLatin1Char(':'));
    if (mapping.values.isEmpty())
        return answers;
    for (QString &answer : answers) {
        const QJsonValue known = mapping.values.value(answer);
        if (known.isUndefined())
            row.refuse(QStringLiteral("\"%1\" is none of the \"values\" of the mapping.")
                           .arg(answer.left(Surveys::longestText)));
        answer = known.isString() ? known.toString().toLower() : QString::number(known.toInteger());
    }
    return answers;
}

} // namespace

void AudienceFiles::readPolls(const QString &path)
{
    readDefinitions(polls, path, Polls::mostPolls, pollIn);
}

void AudienceFiles::readSurveys(const QString &path)
{
    readDefinitions(surveys, path, Surveys::mostSurveys, surveyIn);
}

void AudienceFiles::readMapping(const QString &path)
{
    QList<FileRecord> mappings = readJsonRecords(path);
    for (FileRecord &record : mappings) {
        const Mapping mapping = mappingIn(record);
        for (FileRecord &row : readCsvRecords(mapping.file)) {
            SurveyReply reply;
            reply.surveyGuid = mapping.survey;
            reply.userGuid = row.text(mapping.userColumn, longestUserId);
            reply.at = mapping.atColumn.isEmpty() ? mapping.at : row.time(mapping.atColumn);
            for (const auto &[column, question] : mapping.questions) {
                const QString cell = row.textOrEmpty(column, Surveys::longestText);
                if (cell.isEmpty())
                    continue; // not answered
                reply.itemGuid = question;
                reply.choiceGuids = answersIn(cell, mapping, row);
                reply.id = contentId({reply.surveyGuid, reply.itemGuid, reply.userGuid});
                replies.rows << reply;
                replies.places << row.place;
            }
        }
    }
}

} // namespace Zel
