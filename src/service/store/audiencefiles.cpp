// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/audiencefiles.h"

#include "service/store/recordfile.h"

#include <QDir>
#include <QFileInfo>

namespace Zel {

namespace {

void visitRecords(const QString &path, const RecordVisitor &visit)
{
    if (path.endsWith(QLatin1String(".csv")))
        visitCsvRecords(path, visit);
    else
        visitJsonLines(path, visit);
}

template <class Row>
void readRows(AudienceFiles::Rows<Row> &into, const QString &path, Row (*read)(FileRecord &))
{
    visitRecords(path, [&](FileRecord &record) {
        into.rows << read(record);
        into.places << record.place;
    });
}

} // namespace

AudienceFiles AudienceFiles::read(const QStringList &paths)
{
    AudienceFiles files;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isDir()) {
            if (!files.readFile(path))
                throw WorkspaceFileError(
                    {path, 0},
                    QStringLiteral("is none of registrants, page-views, questions, votes and "
                                   "responses (.csv or .jsonl), polls.json, surveys.json and "
                                   "NAME.mapping.json."));
            continue;
        }
        // A folder may hold more, such as the tables that mappings name.
        const QStringList names = QDir(path).entryList(QDir::Files, QDir::Name);
        for (const QString &name : names)
            files.readFile(QDir(path).filePath(name));
    }
    return files;
}

bool AudienceFiles::readFile(const QString &path)
{
    const QFileInfo info(path);
    const QString name = info.fileName();
    const QString base = info.completeBaseName();
    const bool isRows =
        info.suffix() == QLatin1String("csv") || info.suffix() == QLatin1String("jsonl");
    if (name == QLatin1String("polls.json"))
        readPolls(path);
    else if (name == QLatin1String("surveys.json"))
        readSurveys(path);
    else if (name.endsWith(QLatin1String(".mapping.json")))
        readMapping(path);
    else if (isRows && base == QLatin1String("registrants"))
        readRows(registrations, path, registrationIn);
    else if (isRows && base == QLatin1String("page-views"))
        readRows(views, path, pageViewIn);
    else if (isRows && base == QLatin1String("questions"))
        readRows(questions, path, questionIn);
    else if (isRows && base == QLatin1String("votes"))
        readRows(votes, path, voteIn);
    else if (isRows && base == QLatin1String("responses"))
        readRows(replies, path, surveyReplyIn);
    else
        return false;
    return true;
}

} // namespace Zel
