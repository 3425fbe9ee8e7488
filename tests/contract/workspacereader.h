// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "common/contract/projectrecord.h"

#include <QList>
#include <QString>

namespace ZelTest {

/// A project as it stands in a workspace's files.
struct ProjectInFile
{
    qint64 account = 0;
    QString typeID;
    QXSC::ProjectRecord record; ///< `createdBy` is the name to show, as the service answers it
};

/// Reads people.json and projects.csv of a folder. It shares nothing with the service's own import,
/// so that a fault there does not hide itself. Throws `std::runtime_error` where a file cannot be
/// understood.
QList<ProjectInFile> projectsInFolder(const QString &folder);

/// The projects of one account and type in the order in which the service is to answer them: by the
/// UTF-8 bytes of the first 200 characters of the name with compatibility forms unified and case
/// folded, then by guid.
QList<ProjectInFile> inServiceOrder(const QList<ProjectInFile> &all, qint64 account,
                                    const QString &typeID);

} // namespace ZelTest
