// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"
#include "platform/core/export.h"

namespace QXSC {

/// Listing projects of the active account.
class ZEL_EXPORT ProjectOperations
{
public:
    virtual ~ProjectOperations();

    /// The projects of a type in the server's order. A type the server does not know is answered
    /// with nothing (null).
    virtual void getProjectList(const QString &projectType, ProjectCollectionPtr &projects) = 0;
    /// Whether a project is published at this moment. `reserved` is always empty.
    virtual void isProjectPublished(const QString &guid, const QString &reserved,
                                    bool &published) = 0;
};

} // namespace QXSC
