// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datavisualization/surveyresults.h"

#include <QStringList>

namespace ZelDataVisualization {

/// What the chart shows at the moment: one figure a bar and one a line of the table.
class ZEL_EXPORT Figures
{
public:
    enum Column
    {
        Label,
        First,
        Second,
        Mark ///< of answers, whether they are correct
    };

    virtual ~Figures();

    virtual qsizetype count() const = 0;

    /// What the graph is called; empty for nothing above it.
    virtual QString title() const = 0;

    /// What the graph is called where it cannot do without a name.
    virtual QString name() const { return title(); }

    /// A sentence below the title, empty for none.
    virtual QString note() const { return QString(); }

    /// Says, where there are no figures, why.
    virtual QString emptyText() const = 0;

    virtual QString label(qsizetype index) const = 0;
    /// Nothing where the workbook has none.
    virtual std::optional<double> value(qsizetype index) const = 0;
    /// The value as it stands beside the bar.
    virtual QString valueText(qsizetype index) const = 0;

    virtual bool isCorrect(qsizetype) const { return false; }

    /// A place among the ten colours of the chart.
    virtual int color(qsizetype) const { return 0; }

    /// Values are shares of 1; otherwise they are counts.
    virtual bool isShare() const = 0;

    /// Whether one bar may stand for the average of many figures.
    virtual bool canBeGrouped() const { return false; }

    /// The table beside the graph.
    virtual QStringList headers() const = 0;
    virtual QString text(qsizetype index, int column) const = 0;

    /// Everything about a figure in one line, as it is announced: "2 - Yes: 12 (40 %), correct".
    QString spoken(qsizetype index) const;
};

using FiguresPtr = std::shared_ptr<const Figures>;
using SurveyResultsPtr = std::shared_ptr<const SurveyResults>;

/// No figures, and a sentence that says why.
FiguresPtr noFigures(const QString &sentence);
/// The answers to a question, from 0.
FiguresPtr answerFigures(const SurveyResultsPtr &results, int question);
FiguresPtr questionScores(const SurveyResultsPtr &results, const QString &title);
FiguresPtr respondentScores(const SurveyResultsPtr &results, const QString &title);

/// "33.3 %" as the locale writes it, with so many digits behind the separator.
QString percentText(double percent, int digits);
/// A count as the locale writes it.
QString countText(double count);

} // namespace ZelDataVisualization
