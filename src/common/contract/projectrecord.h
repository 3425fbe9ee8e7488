// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/collection.h"

#include <QDateTime>
#include <QMetaType>
#include <QString>

#include <memory>

namespace QXSC {

/// One project. A date counts only when its `has` flag is set; dates are local date-times.
struct ProjectRecord
{
    QString guid;
    QString name;
    QString description;
    bool hasCreated = false;
    QDateTime created;
    bool hasModified = false;
    QDateTime modified;
    QString createdBy;
    bool hasEventDate = false;
    QDateTime eventDate;
    bool published = false;
};

using ProjectRecordPtr = std::shared_ptr<const ProjectRecord>;
using ProjectCollection = Zel::Collection<ProjectRecordPtr>;
/// Null when the service answered nothing, which is not the same as a list without projects.
using ProjectCollectionPtr = std::shared_ptr<const ProjectCollection>;

} // namespace QXSC

Q_DECLARE_METATYPE(QXSC::ProjectRecordPtr)
