// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>

#include <memory>

namespace QXSC {

/// A person as the statistics of a deployment know them.
struct StatsUser
{
    QString UserID;
    /// Empty for one who is not registered, as are the following.
    QString FirstName;
    QString LastName;
    QString Email;
    /// Local date-time; not valid for one who is not registered.
    QDateTime DateRegistered;
};

using StatsUserPtr = std::shared_ptr<const StatsUser>;

/// One who looked at pages of a deployment within a range.
struct ParticipantRecord
{
    /// Null when the service knows nothing of the person.
    StatsUserPtr User;
    bool Registered = false;
    /// Seconds.
    qint32 TimeSpent = 0;
    /// Local date-times.
    QDateTime FirstViewed;
    QDateTime LastViewed;
};

using ParticipantRecordPtr = std::shared_ptr<const ParticipantRecord>;
using ParticipantCollection = Zel::Collection<ParticipantRecordPtr>;
using ParticipantCollectionPtr = std::shared_ptr<const ParticipantCollection>;

/// One who registered for a deployment, with what they looked at within a range.
struct RegistrantRecord
{
    StatsUserPtr User;
    bool Participated = false;
    /// Local date-times; they and the time mean something only for one who participated.
    QDateTime FirstViewed;
    QDateTime LastViewed;
    /// Seconds.
    qint32 TimeSpent = 0;
};

using RegistrantRecordPtr = std::shared_ptr<const RegistrantRecord>;
using RegistrantCollection = Zel::Collection<RegistrantRecordPtr>;
using RegistrantCollectionPtr = std::shared_ptr<const RegistrantCollection>;

/// One look at one page.
struct PageViewRecord
{
    /// Shared by the views of one person.
    StatsUserPtr User;
    /// Local date-time.
    QDateTime ViewDate;
    /// Seconds.
    qint32 TimeSpent = 0;
    /// Whether the page was closed, so that its time is final.
    bool Closed = false;
};

using PageViewRecordPtr = std::shared_ptr<const PageViewRecord>;
using PageViewCollection = Zel::Collection<PageViewRecordPtr>;
using PageViewCollectionPtr = std::shared_ptr<const PageViewCollection>;

/// A question that somebody in the audience asked.
struct QuestionRecord
{
    QString QuestionGuid;
    /// "PUBLISH", "ANSWERED", "STAGED", "RETRACT", "DELETE" or another word of the service's.
    QString Status;
    StatsUserPtr User;
    /// With the five XML entities in place of the characters, as is the answer.
    QString QuestionText;
    /// Empty until the question is answered.
    QString AnswerText;
    /// Local date-times, each with a mark that says whether it is set.
    QDateTime Submitted;
    bool SubmittedSpecified = false;
    QDateTime Answered;
    bool AnsweredSpecified = false;
};

using QuestionRecordPtr = std::shared_ptr<const QuestionRecord>;
using QuestionCollection = Zel::Collection<QuestionRecordPtr>;
using QuestionCollectionPtr = std::shared_ptr<const QuestionCollection>;

} // namespace QXSC

Q_DECLARE_METATYPE(QXSC::QuestionRecordPtr)
