// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"
#include "platform/core/export.h"

#include <QList>

#include <optional>

namespace QXSC {

/// A kind of project an account can hold; `typeID` is what `getProjectList` takes.
struct ProjectType
{
    QString typeID;
    QString name;
};

/// What a new project starts with.
struct NewProject
{
    /// Chosen by the caller (a UUID without braces). Sending the same guid again after a lost
    /// answer returns the project already made instead of a second one.
    QString guid;
    QString name;
    QString typeID;
    QString description;
    /// Local date-time of the event, when it is known.
    std::optional<QDateTime> eventDate;
    /// The theme it is made from; empty for none.
    QString themeGuid;
};

/// What Studio needs of the service beyond the operations that controls use. Implemented by the
/// same client object; controls never ask for it.
class ZEL_EXPORT StudioService
{
public:
    virtual ~StudioService();

    /// The project types of the active account, in the order they are to be offered.
    virtual QList<ProjectType> projectTypes() = 0;
    /// Makes a project in the active account and returns its record.
    virtual ProjectRecordPtr createProject(const NewProject &project) = 0;
    /// The whole address of an asset's bytes, for use outside this program. What `GetAssetValue`
    /// gives may be relative to the service, so that it holds wherever the service moves.
    virtual QString assetAddress(const QString &guid) = 0;
    /// Ends the session on the server and forgets it here. Never throws: a session that cannot be
    /// ended on the server runs out there by itself.
    virtual void signOut() = 0;
};

} // namespace QXSC
