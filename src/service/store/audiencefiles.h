// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/audience.h"
#include "service/store/polls.h"
#include "service/store/surveys.h"
#include "service/store/workspacefileerror.h"

#include <QList>
#include <QStringList>

namespace Zel {

/// What happened in one deployment, as readable files. A file is known by its name: registrants,
/// page-views, questions, votes and responses, each as .csv or with one JSON object a line as
/// .jsonl; polls.json, surveys.json; and NAME.mapping.json, which says how a table with one line a
/// respondent becomes responses.
struct ZEL_EXPORT AudienceFiles
{
    /// Rows with the places they stand at.
    template <class Row>
    struct Rows
    {
        QList<Row> rows;
        QList<FilePlace> places;
    };

    template <class Row>
    struct Definitions
    {
        FilePlace place;
        QList<Row> all;
        bool isGiven = false; ///< there is such a file
    };

    Rows<Registration> registrations;
    Rows<PageView> views;
    Rows<AskedQuestion> questions;
    Definitions<Poll> polls;
    Rows<Vote> votes;
    Definitions<Survey> surveys;
    Rows<SurveyReply> replies;

    /// Reads files, and of folders all that bear such a name. Throws `WorkspaceFileError` for what
    /// is wrong in a file and for a file that bears none.
    static AudienceFiles read(const QStringList &paths);

private:
    bool readFile(const QString &path);
    void readPolls(const QString &path);
    void readSurveys(const QString &path);
    void readMapping(const QString &path);
};

} // namespace Zel
