// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/accounts.h"
#include "service/store/database.h"
#include "service/store/deployments.h"
#include "service/store/exportfolder.h"
#include "service/store/themes.h"
#include "service/store/workspaceexport.h"

#include <QHash>
#include <QJsonArray>
#include <QSet>

namespace Zel {

/// What the parts of one export share.
struct ExportJob
{
    /// Bytes that are copied when everything else is written.
    struct Bytes
    {
        qint64 accountId = 0; ///< 0: of a theme of every account
        QString sha;
        QString path;
    };

    Store &store;
    const ExportOptions &options;
    ExportFolder &folder;
    ExportReport &report;
    QList<Account> accounts;        ///< to be written, by number
    QHash<QString, QString> logins; ///< of everybody, by user id
    QList<Bytes> bytes;

    /// Counts one more, or some more, of a kind.
    void count(const QString &kind, qint64 more = 1);
    void writeJson(const QString &path, const QJsonArray &records);
};

/// A time as ISO 8601 in UTC; milliseconds only where there are any. Empty for none.
QString timeText(const std::optional<qint64> &time);
QString flagText(bool flag);
/// An id of 16 bytes as a UUID.
QString idText(const QByteArray &id);
/// The extension of a file name where it can be one on any disk, with its dot; else empty.
QString safeExtension(const QString &fileName);

/// How many rows are asked for at once: PostgreSQL keeps all of them in memory.
constexpr qint64 exportRowsAtOnce = 5000;
/// The same for rows with long texts.
constexpr qint64 longRowsAtOnce = 100;

// The parts, inside the snapshot of an export.

void exportPeople(ExportJob &job);
void exportThemes(ExportJob &job);
void exportDataRecords(ExportJob &job);
void exportProjects(ExportJob &job);
void exportAssets(ExportJob &job);
void exportDeployments(ExportJob &job);
/// What happened in one deployment; false when that is nothing.
bool exportAudience(ExportJob &job, const DeploymentRef &deployment, const QString &folder);
void noteLeftOut(ExportJob &job);

/// Copies bytes of assets and previews, when everything else is written: they never change. Inside
/// the snapshot where they lie in the database, else under a hold of the folder they lie in.
void exportBytes(ExportJob &job);

} // namespace Zel
