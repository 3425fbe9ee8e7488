// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The answers to one question.

#include "datavisualization/figures.h"
#include "datavisualization/visualizationtexts.h"

#include <QLocale>

namespace ZelDataVisualization {

namespace {

constexpr int Colors = 10;

QString tr(const char *text)
{
    return VisualizationTexts::tr(text);
}

class AnswerFigures : public Figures
{
public:
    AnswerFigures(const SurveyResultsPtr &results, int question)
        : m_question(question)
        , m_text(results->question(question))
        , m_answers(results->answers(question))
        , m_base(results->baseOf(question))
        , m_isSurvey(results->hasScores())
    {
        for (const SurveyResults::Answer &answer : m_answers)
            m_hasCorrect = m_hasCorrect || answer.isCorrect;
    }

    qsizetype count() const override { return static_cast<qsizetype>(m_answers.size()); }

    QString title() const override
    {
        const QString number = QLocale().toString(m_question + 1);
        return m_text.isEmpty() ? tr("Question %1").arg(number)
                                : tr("Question %1: %2").arg(number, m_text);
    }

    QString note() const override
    {
        const QString base =
            (m_isSurvey ? tr("Answered by: %1.") : tr("Votes: %1.")).arg(countText(m_base));
        return m_hasCorrect ? tr("%1 Correct answers are hatched and marked ✓.").arg(base) : base;
    }

    QString emptyText() const override { return tr("This question has no answers."); }

    QString label(qsizetype index) const override { return at(index).text; }

    std::optional<double> value(qsizetype index) const override { return at(index).count; }

    QString valueText(qsizetype index) const override
    {
        return tr("%1 (%2)").arg(countText(at(index).count), share(index));
    }

    bool isCorrect(qsizetype index) const override { return at(index).isCorrect; }

    int color(qsizetype index) const override { return static_cast<int>(index % Colors); }

    bool isShare() const override { return false; }

    QStringList headers() const override
    {
        QStringList texts{tr("Answer"), tr("Count"), tr("Percentage")};
        if (m_hasCorrect)
            texts << tr("Correct");
        return texts;
    }

    QString text(qsizetype index, int column) const override
    {
        switch (column) {
        case Label:
            return at(index).text;
        case First:
            return countText(at(index).count);
        case Second:
            return share(index);
        default:
            return at(index).isCorrect ? tr("✓ Correct") : QString();
        }
    }

private:
    const SurveyResults::Answer &at(qsizetype index) const
    {
        return m_answers[static_cast<size_t>(index)];
    }

    QString share(qsizetype index) const
    {
        return percentText(m_base > 0 ? at(index).count * 100 / m_base : 0, 0);
    }

    int m_question;
    QString m_text;
    std::vector<SurveyResults::Answer> m_answers;
    double m_base;
    bool m_isSurvey;
    bool m_hasCorrect = false;
};

} // namespace

FiguresPtr answerFigures(const SurveyResultsPtr &results, int question)
{
    return std::make_shared<AnswerFigures>(results, question);
}

} // namespace ZelDataVisualization
