// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/accountrecord.h"
#include "common/contract/projectrecord.h"
#include "common/contract/studioservice.h"

#include <QByteArray>
#include <QJsonObject>

namespace QXSC {

// The records of the contract from the bodies of answers. Each throws AnswerProblem on an answer
// that is not what the service's interface promises.

QByteArray readSessionToken(const QByteArray &body);
AccountCollectionPtr readAccounts(const QByteArray &body);
/// Null when the service says null, an empty collection when it says [].
ProjectCollectionPtr readProjects(const QJsonObject &answer);
bool readPublished(const QByteArray &body);
QList<ProjectType> readProjectTypes(const QByteArray &body);
ProjectRecordPtr readCreatedProject(const QByteArray &body);

} // namespace QXSC
