// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "platform/core/export.h"
#include "stats/pollusers.h"
#include "stats/surveyusers.h"

#include <variant>

namespace ZelWebServiceControls {

/// A survey or quiz and the responses to it.
struct SurveyModels
{
    QXSC::SurveyRecordPtr survey;
    SurveyUsers users;
};

/// The polls of a deployment and the votes.
struct PollModels
{
    QXSC::PollQuestionCollectionPtr polls;
    PollUsers users;
};

using ResultsModels = std::variant<SurveyModels, PollModels>;

/// The kinds of file that results can be saved as.
enum class ResultsFormat
{
    /// XML Spreadsheet 2003 with whole namespaces and escaped texts.
    Xml,
    /// Office Open XML, with a chart for each of the first hundred questions.
    Xlsx,
    /// A line for each respondent, as RFC 4180 has it; UTF-8 with a byte order mark.
    Csv
};

/// The format a file name asks for by its ending, .xml and .csv in any case; .xlsx for any other.
ZEL_EXPORT ResultsFormat resultsFormat(const QString &fileName);

/// Saves results as a file that spreadsheet programs open with the figures that are charted.
///
/// The file is replaced only once it is whole. Formulas bring their values along. Characters that
/// no XML holds (control characters, halves of a surrogate pair) are saved as U+FFFD, line ends as
/// line feeds; a text is cut to the 32,767 characters a spreadsheet's cell takes. In .csv a text
/// that a spreadsheet would take for a formula begins with an apostrophe; nothing is cut.
///
/// Errors: 75 the file cannot be written, 5 more rows or columns than a spreadsheet has, 91 no
/// survey or polls.
ZEL_EXPORT void saveResults(const ResultsModels &models, const QString &fileName,
                            ResultsFormat format);

} // namespace ZelWebServiceControls
