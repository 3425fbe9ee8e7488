// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/resultsrecord.h"

#include <QByteArray>
#include <QHash>
#include <QJsonObject>

namespace QXSC {

/// Gives equal texts one storage.
class SharedTexts
{
public:
    QString shared(const QString &text)
    {
        const auto known = m_texts.constFind(text);
        return known != m_texts.cend() ? *known : *m_texts.insert(text, text);
    }

private:
    QHash<QString, QString> m_texts;
};

// Polls and surveys from the bodies of answers; see recordreader.h. Equal texts of one list of
// responses share their storage.

PollQuestionCollectionPtr readPolls(const QByteArray &body);
PollResponseArray readPollResponses(const QJsonObject &answer, SharedTexts &texts);
SurveyCollectionPtr readSurveys(const QByteArray &body);
/// @param texts gives equal texts of all pages one storage
SurveyResponseArray readSurveyResponses(const QJsonObject &answer, SharedTexts &texts);

} // namespace QXSC
