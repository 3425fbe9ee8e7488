// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "platform/core/export.h"

namespace ZelWebServiceControls {

class PollUsers;
class SurveyUsers;

/// The results of a survey or quiz as a workbook for the chart forms: the worksheets "Responses"
/// and "Summary" in the kept template.
///
/// Texts stand in it as received, markup included, and nothing in them is taken for a place to fill
/// in. Time and size grow with respondents times questions; the text is built in one piece of
/// storage. Errors: 91 the survey has no list of questions, 11 respondents and no questions. For a
/// file that opens anywhere see resultsfile.h.
ZEL_EXPORT QString surveyWorkbook(const QXSC::SurveyRecord &survey, const SurveyUsers &users);

/// The same for the polls of a deployment. Without anybody who voted there are no rows of
/// respondents, nor the one above them.
/// @param users may be null: nobody voted
ZEL_EXPORT QString pollWorkbook(const QXSC::PollQuestionCollection &polls, const PollUsers *users);

} // namespace ZelWebServiceControls
