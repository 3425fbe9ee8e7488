// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/statsrecord.h"
#include "common/contract/studioservice.h"

#include <QByteArray>
#include <QJsonObject>

namespace QXSC {

// Statistics from the bodies of answers; see recordreader.h. A number that the contract has no room
// for is run-time error 6 (overflow).

QList<Deployment> readDeployments(const QJsonObject &answer);
double readStatistic(const QByteArray &body);
qint16 readCount(const QByteArray &body);
ParticipantCollectionPtr readParticipants(const QJsonObject &answer);
RegistrantCollectionPtr readRegistrants(const QJsonObject &answer);
PageViewCollectionPtr readPageViews(const QJsonObject &answer);
QuestionCollectionPtr readQuestions(const QJsonObject &answer);

} // namespace QXSC
