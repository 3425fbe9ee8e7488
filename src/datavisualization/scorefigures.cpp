// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The percentages of right answers, by question and by respondent.

#include "datavisualization/figures.h"
#include "datavisualization/visualizationtexts.h"

#include <QLocale>

namespace ZelDataVisualization {

namespace {

constexpr int Digits = 1; // as the workbook formats them, "0.0%"

QString tr(const char *text)
{
    return VisualizationTexts::tr(text);
}

class ScoreFigures : public Figures
{
public:
    ScoreFigures(const SurveyResultsPtr &results, const QString &title)
        : m_results(results)
        , m_title(title)
    {
    }

    QString title() const override { return m_title; }

    QString valueText(qsizetype index) const override
    {
        const std::optional<double> share = value(index);
        return share ? percentText(*share * 100, Digits) : tr("not known");
    }

    bool isShare() const override { return true; }

    bool canBeGrouped() const override { return true; }

    QString text(qsizetype index, int column) const override
    {
        if (column == Label)
            return label(index);
        if (column == Second)
            return valueText(index);
        const std::optional<double> count = right(index);
        return count ? countText(*count) : QString();
    }

protected:
    virtual std::optional<double> right(qsizetype index) const = 0;

    const SurveyResults &results() const { return *m_results; }

private:
    SurveyResultsPtr m_results;
    QString m_title;
};

class QuestionScores : public ScoreFigures
{
public:
    using ScoreFigures::ScoreFigures;

    qsizetype count() const override { return results().questionCount(); }

    QString name() const override
    {
        return title().isEmpty() ? tr("Percentage correct by question") : title();
    }

    QString emptyText() const override { return tr("The workbook has no questions."); }

    QString label(qsizetype index) const override
    {
        return tr("%1. %2").arg(QLocale().toString(index + 1),
                                results().question(static_cast<int>(index)));
    }

    std::optional<double> value(qsizetype index) const override
    {
        return results().shareOfQuestion(static_cast<int>(index));
    }

    int color(qsizetype) const override { return 2; }

    QStringList headers() const override
    {
        return {tr("Question"), tr("Correct"), tr("Percentage Correct")};
    }

protected:
    std::optional<double> right(qsizetype index) const override
    {
        return results().rightOfQuestion(static_cast<int>(index));
    }
};

class RespondentScores : public ScoreFigures
{
public:
    using ScoreFigures::ScoreFigures;

    qsizetype count() const override { return results().respondentCount(); }

    QString name() const override
    {
        return title().isEmpty() ? tr("Percentage correct by respondent") : title();
    }

    QString emptyText() const override { return tr("There are no respondents."); }

    QString label(qsizetype index) const override { return results().respondent(index); }

    std::optional<double> value(qsizetype index) const override
    {
        return results().shareOfRespondent(index);
    }

    int color(qsizetype) const override { return 5; }

    QStringList headers() const override
    {
        return {tr("Respondent"), tr("Correct"), tr("Percentage Correct")};
    }

protected:
    std::optional<double> right(qsizetype index) const override
    {
        return results().rightOfRespondent(index);
    }
};

template <typename Scores>
FiguresPtr scores(const SurveyResultsPtr &results, const QString &title)
{
    if (results->hasScores())
        return std::make_shared<Scores>(results, title);
    return noFigures(tr("This workbook has no scores, so there is no percentage correct to show."));
}

} // namespace

FiguresPtr questionScores(const SurveyResultsPtr &results, const QString &title)
{
    return scores<QuestionScores>(results, title);
}

FiguresPtr respondentScores(const SurveyResultsPtr &results, const QString &title)
{
    return scores<RespondentScores>(results, title);
}

} // namespace ZelDataVisualization
