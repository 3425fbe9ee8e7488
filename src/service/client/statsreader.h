// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/statsrecord.h"
#include "common/contract/studioservice.h"

#include <QByteArray>

namespace QXSC {

// Statistics from the bodies of answers; see recordreader.h. A number that the contract has no room
// for is run-time error 6 (overflow).

QList<Deployment> readDeployments(const QByteArray &body);
double readStatistic(const QByteArray &body);
qint16 readCount(const QByteArray &body);
ParticipantCollectionPtr readParticipants(const QByteArray &body);
RegistrantCollectionPtr readRegistrants(const QByteArray &body);
PageViewCollectionPtr readPageViews(const QByteArray &body);
QuestionCollectionPtr readQuestions(const QByteArray &body);

} // namespace QXSC
