// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"

#include <QByteArray>

namespace QXSC {

// Polls and surveys from the bodies of answers; see recordreader.h. Equal texts of one list of
// responses share their storage.

PollQuestionCollectionPtr readPolls(const QByteArray &body);
PollResponseArray readPollResponses(const QByteArray &body);
SurveyCollectionPtr readSurveys(const QByteArray &body);
SurveyResponseArray readSurveyResponses(const QByteArray &body);

} // namespace QXSC
