// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"
#include "platform/core/collection.h"
#include "platform/core/export.h"

#include <QDateTime>
#include <QMetaType>

namespace ZelWebServiceControls {

class SurveyResults;

/// One answer of a respondent: a view that is cheap to make and to copy; copies are the same
/// answer.
class ZEL_EXPORT SurveyUserAnswer
{
    Q_GADGET
    /// The values, in order.
    Q_PROPERTY(Zel::Collection<QString> answer READ answer)
    /// The text and the date-time of each value.
    Q_PROPERTY(Zel::Collection<QString> answerTxt READ answerTxt)
    Q_PROPERTY(Zel::Collection<QDateTime> answerDt READ answerDt)
    /// Whether the answer names a correct choice.
    Q_PROPERTY(bool correct READ correct WRITE setCorrect)

public:
    /// An answer of its own, without values.
    SurveyUserAnswer();
    SurveyUserAnswer(std::shared_ptr<SurveyResults> results, quint32 record);

    Zel::Collection<QString> answer() const;
    Zel::Collection<QString> answerTxt() const;
    Zel::Collection<QDateTime> answerDt() const;
    bool correct() const;
    void setCorrect(bool correct);

    /// All values joined with ",", as the workbook shows them; empty when there is none.
    Q_INVOKABLE QString GetAnswer() const;

private:
    const QXSC::SurveyResponse &response() const;

    std::shared_ptr<SurveyResults> m_results;
    quint32 m_record = 0;
};

/// One respondent's answers to one question; a view.
class ZEL_EXPORT SurveyUserQ
{
    Q_GADGET
    Q_PROPERTY(Zel::Collection<ZelWebServiceControls::SurveyUserAnswer> answers READ answers)

public:
    /// Answers of their own, none yet.
    SurveyUserQ();
    SurveyUserQ(std::shared_ptr<SurveyResults> results, quint32 respondent, quint32 question);

    /// In order of arrival.
    Zel::Collection<SurveyUserAnswer> answers() const;

    /// Appends an answer.
    /// @param guid the choice; the answer is correct when the first choice of `q` with this guid is
    /// @param answer the values, parted by ":"
    /// @param dt,answerTxt date-time and text of every value
    /// @param q the question; error 91 when null
    Q_INVOKABLE void AddAnswer(const QString &guid, const QString &answer, const QDateTime &dt,
                               const QString &answerTxt, const QXSC::SurveyQuestionPtr &q);

private:
    std::shared_ptr<SurveyResults> m_results;
    quint32 m_respondent = 0;
    quint32 m_question = 0;
};

/// One respondent; a view.
class ZEL_EXPORT SurveyUser
{
    Q_GADGET
    Q_PROPERTY(QString guid READ guid)

public:
    /// A respondent of its own; without a guid and questions until `Init`.
    SurveyUser();
    SurveyUser(std::shared_ptr<SurveyResults> results, quint32 respondent);

    QString guid() const;

    /// Starts a respondent of its own with this many questions without answers. Error 5 for a
    /// negative number.
    Q_INVOKABLE void Init(const QString &guid, qint16 questionCount);
    /// Records a response on the question's place. A respondent of `SurveyUsers` knows the places
    /// from the survey; one of its own gives each new question the next place. Error 91 when `q` is
    /// null, 9 when the question has no place.
    Q_INVOKABLE void SetAnswerForQuestion(const QXSC::SurveyQuestionPtr &q,
                                          const QXSC::SurveyResponse &sr);
    /// The answers to the question at an index from 0; error 9 outside.
    Q_INVOKABLE ZelWebServiceControls::SurveyUserQ GetQuestion(qint16 index) const;
    /// The greatest index: one less than there are questions, so -1 for none.
    Q_INVOKABLE qint16 GetQuestionCount() const;

private:
    std::shared_ptr<SurveyResults> m_results;
    quint32 m_respondent = 0;
};

} // namespace ZelWebServiceControls
