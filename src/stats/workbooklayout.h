// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/resultsfile.h"
#include "stats/workbooksheets.h"

namespace ZelWebServiceControls {

class WorkbookSink;

/// Where things stand in a saved workbook.
struct WorkbookLayout
{
    WorkbookQuestions questions;
    qsizetype respondents = 0;
    /// Whether scores stand behind the questions.
    bool scored = false;

    qsizetype rows() const;

    qsizetype columns() const { return questions.size() + (scored ? 3 : 1); }
};

/// Error 91 when the models have no survey or polls.
WorkbookLayout workbookLayout(const ResultsModels &models);

/// Hands "Responses" and "Summary" to a sink.
void writeSheets(const ResultsModels &models, const WorkbookLayout &layout, WorkbookSink &sink);

/// The number a text writes, when it is the plain decimal form of one.
std::optional<double> plainNumber(const QString &text);

} // namespace ZelWebServiceControls
