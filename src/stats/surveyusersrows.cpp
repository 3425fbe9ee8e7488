// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of the workbook that SurveyUsers writes.
#include "platform/core/numbertext.h"
#include "stats/surveyresults.h"
#include "stats/surveyusers.h"
#include "stats/workbooktext.h"

namespace ZelWebServiceControls {

namespace {

/// More than the fixed characters of a cell, the skipped one included.
constexpr qsizetype cellBound = 128;
constexpr qsizetype rowBound = 3 * cellBound;

/// Score over questions as a text, for each score there can be.
QList<QString> shares(qsizetype questions)
{
    QList<QString> texts;
    for (qsizetype score = 0; score <= questions; ++score)
        texts.append(Zel::invariantNumberText(double(score) / double(questions)));
    return texts;
}

/// Appends the values of an answer; whether they are the key.
bool appendShown(WorkbookText &out, const QString &answer, const QString &key)
{
    out.text(answer);
    char16_t *const begin = out.end() - answer.size();
    for (char16_t *at = begin; at != out.end(); ++at) {
        if (*at == u':')
            *at = u',';
    }
    return QStringView(begin, answer.size()) == key;
}

/// Appends an answered cell; whether it is right. The style is known only when its text stands, so
/// its last digit is put in afterwards.
bool appendAnswered(WorkbookText &out, const QString &answer, bool single, const QString &key)
{
    if (single)
        out.literal(u"<Cell ss:StyleID='s29'><Data ss:Type='Number'>");
    else
        out.literal(u"<Cell ss:StyleID='s29'><Data ss:Type='String'>");
    constexpr qsizetype fromDigit = std::size(u"9'><Data ss:Type='Number'>") - 1;
    const qsizetype length = answer.size();
    const bool right = appendShown(out, answer, key);
    if (right)
        *(out.end() - length - fromDigit) = u'8';
    out.literal(u"</Data></Cell>");
    return right;
}

void appendSums(WorkbookText &out, qsizetype n, const Zel::Collection<QString> &answerKey)
{
    out.literal(u"<Row>\r\n<Cell ss:StyleID='s45'><Data ss:Type='String'>Correct</Data></Cell>");
    for (const QString &key : answerKey) {
        out.literal(u"<Cell ss:StyleID='s53' ss:Formula='=COUNTIF(R[-");
        out.number(n);
        out.literal(u"]C:R[-1]C,\"");
        out.text(key);
        out.literal(u"\")'></Cell>");
    }
    out.literal(u"<Cell ss:StyleID='s53' ss:Formula='=SUM(R[-");
    out.number(n);
    out.literal(u"]C:R[-1]C)'></Cell>");
    out.literal(u"<Cell ss:StyleID='s55' ss:Formula='=AVERAGE(R[-");
    out.number(n);
    out.literal(u"]C:R[-1]C)'></Cell></Row>\r\n");
}

void appendShares(WorkbookText &out, qsizetype n, qsizetype questions)
{
    out.literal(u"<Row>\r\n"
                u"<Cell ss:StyleID='s45'><Data ss:Type='String'>Percent Correct</Data></Cell>");
    for (qsizetype question = 0; question < questions; ++question) {
        out.literal(u"<Cell ss:StyleID='s55' ss:Formula='=(R[-1]C/");
        out.number(n);
        out.literal(u")'></Cell>");
    }
    out.literal(u"<Cell ss:StyleID='s55' ss:Formula='=AVERAGE(RC[-");
    out.number(questions);
    out.literal(u"]:RC[-1])'></Cell></Row>\r\n");
}

} // namespace

qsizetype SurveyUsers::rowsBound() const
{
    const qsizetype questions = m_answerKey.count();
    qsizetype keyLength = 0;
    for (const QString &key : m_answerKey)
        keyLength += key.size();
    // A respondent's rows hold each answer once at most; the two last rows a key each.
    return m_results->chains.guidLength() + m_results->answerLength + keyLength +
           (count() + 2) * rowBound + count() * questions * 75 + 2 * questions * cellBound;
}

void SurveyUsers::appendRows(WorkbookText &out) const
{
    const qsizetype questions = m_answerKey.count();
    if (count() > 0 && questions == 0)
        throw Zel::RuntimeError(Zel::RuntimeError::DivisionByZero);
    const QList<QString> shareTexts = questions ? shares(questions) : QList<QString>();
    SurveyCells cells(*m_results);
    for (quint32 respondent = 0; respondent < m_results->chains.respondentCount(); ++respondent) {
        cells.read(respondent);
        out.literal(u"<Row>\r\n<Cell><Data ss:Type='String'>");
        out.text(m_results->chains.guid(respondent));
        out.literal(u"</Data></Cell>");
        qsizetype score = 0;
        auto key = m_answerKey.begin();
        for (qsizetype question = 0; question < questions; ++question, ++key) {
            if (const QXSC::SurveyResponse *const first = cells.first(question)) {
                score += appendAnswered(out, first->answer, cells.isSingle(question), *key);
            } else {
                out.literal(u"<Cell ss:StyleID='s29'>"
                            u"<Data ss:Type='String'>(skipped)</Data></Cell>");
            }
        }
        out.literal(u"<Cell ss:StyleID='s53'><Data ss:Type='Number'>");
        out.number(score);
        out.literal(u"</Data></Cell><Cell ss:StyleID='s55'><Data ss:Type='Number'>");
        out.text(shareTexts[score]);
        out.literal(u"</Data></Cell></Row>\r\n");
    }
    appendSums(out, count(), m_answerKey);
    appendShares(out, count(), questions);
}

} // namespace ZelWebServiceControls
