// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/surveyresults.h"
#include "platform/core/numbertext.h"

#include <QStringList>

/// Everything that results say, as readable lines.
inline QString resultsText(const ZelDataVisualization::SurveyResults &results)
{
    const auto number = [](const std::optional<double> &value) {
        return value ? Zel::invariantNumberText(*value) : QStringLiteral("-");
    };
    QStringList lines;
    for (int q = 0; q < results.questionCount(); ++q) {
        lines << QStringLiteral("question %1: %2").arg(q + 1).arg(results.question(q));
        for (const auto &answer : results.answers(q))
            lines << QStringLiteral("  %1 = %2%3")
                         .arg(answer.text, number(answer.count),
                              answer.isCorrect ? QStringLiteral(" correct") : QString());
        lines << QStringLiteral("  of %1; right %2, share %3")
                     .arg(number(results.baseOf(q)), number(results.rightOfQuestion(q)),
                          number(results.shareOfQuestion(q)));
    }
    for (qsizetype i = 0; i < results.respondentCount(); ++i)
        lines << QStringLiteral("respondent %1: right %2, share %3")
                     .arg(results.respondent(i), number(results.rightOfRespondent(i)),
                          number(results.shareOfRespondent(i)));
    lines << (results.hasScores() ? QStringLiteral("with scores") : QStringLiteral("no scores"));
    return lines.join(u'\n') + u'\n';
}
