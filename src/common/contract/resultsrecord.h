// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"
#include "platform/core/export.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>

#include <memory>
#include <optional>

namespace QXSC {

/// One answer that a poll question offers. Members are readable by name.
struct ZEL_EXPORT PollAnswer
{
    Q_GADGET
    Q_PROPERTY(QString guid MEMBER guid)
    Q_PROPERTY(QString answerTxt MEMBER answerTxt)
    Q_PROPERTY(qint32 count MEMBER count)

public:
    QString guid;
    QString answerTxt;
    /// Votes.
    qint32 count = 0;
};

using PollAnswerPtr = std::shared_ptr<const PollAnswer>;
using PollAnswerCollection = Zel::Collection<PollAnswerPtr>;
using PollAnswerCollectionPtr = std::shared_ptr<const PollAnswerCollection>;

/// One poll of a deployment: a question and what was voted.
struct ZEL_EXPORT PollQuestion
{
    Q_GADGET
    Q_PROPERTY(QString guid MEMBER guid)
    Q_PROPERTY(QString questionTxt MEMBER questionTxt)

public:
    QString guid;
    QString questionTxt;
    /// Never null in an answer of the service.
    PollAnswerCollectionPtr answers;
};

using PollQuestionPtr = std::shared_ptr<const PollQuestion>;
using PollQuestionCollection = Zel::Collection<PollQuestionPtr>;
using PollQuestionCollectionPtr = std::shared_ptr<const PollQuestionCollection>;

/// One vote of one person.
struct PollResponse
{
    QString userGuid;
    QString questionGuid;
    QString answerId;
    /// Local date-time.
    QDateTime answerDate;
};

/// All votes in order of arrival; without a value the array was never dimensioned.
using PollResponseArray = std::optional<QList<PollResponse>>;

/// One choice of a survey question. Members are readable by name.
struct ZEL_EXPORT SurveyAnswer
{
    Q_GADGET
    Q_PROPERTY(QString guid MEMBER guid)
    Q_PROPERTY(QString answerTxt MEMBER answerTxt)
    Q_PROPERTY(bool correct MEMBER correct)
    Q_PROPERTY(qint16 Row MEMBER Row)
    Q_PROPERTY(qint16 Col MEMBER Col)
    Q_PROPERTY(qint32 count MEMBER count)

public:
    QString guid;
    QString answerTxt;
    bool correct = false;
    /// Where it stands in the grid of choices, from 1.
    qint16 Row = 1;
    qint16 Col = 1;
    /// Respondents who chose it.
    qint32 count = 0;
};

using SurveyAnswerPtr = std::shared_ptr<const SurveyAnswer>;
using SurveyAnswerCollection = Zel::Collection<SurveyAnswerPtr>;
using SurveyAnswerCollectionPtr = std::shared_ptr<const SurveyAnswerCollection>;

/// One question of a survey or quiz. Members are readable by name.
struct ZEL_EXPORT SurveyQuestion
{
    Q_GADGET
    Q_PROPERTY(QString guid MEMBER guid)
    Q_PROPERTY(QString questionTxt MEMBER questionTxt)
    Q_PROPERTY(qint16 colCount MEMBER colCount)

public:
    QString guid;
    QString questionTxt;
    /// Columns of the grid of choices.
    qint16 colCount = 1;
    /// Never null in an answer of the service.
    SurveyAnswerCollectionPtr answers;
};

using SurveyQuestionPtr = std::shared_ptr<const SurveyQuestion>;
using SurveyQuestionCollection = Zel::Collection<SurveyQuestionPtr>;
using SurveyQuestionCollectionPtr = std::shared_ptr<const SurveyQuestionCollection>;

/// A survey or quiz of a deployment.
struct SurveyRecord
{
    QString guid;
    QString name;
    /// Never null in an answer of the service.
    SurveyQuestionCollectionPtr questions;
};

using SurveyRecordPtr = std::shared_ptr<const SurveyRecord>;
using SurveyCollection = Zel::Collection<SurveyRecordPtr>;
using SurveyCollectionPtr = std::shared_ptr<const SurveyCollection>;

/// One answered question of one respondent. The texts of one response array share their storage
/// where they are equal.
struct SurveyResponse
{
    QString userGuid;
    QString questionGuid;
    /// The choice, by its guid.
    QString answerGuid;
    /// Positions in the grid of choices, row by row from 1; several are parted by ":".
    QString answer;
    QString answerTxt;
    /// Local date-time.
    QDateTime answerDate;
};

/// All responses of a survey in order of arrival; without a value the array was never dimensioned.
using SurveyResponseArray = std::optional<QList<SurveyResponse>>;

} // namespace QXSC
