// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// The file of deployments.
#include "service/store/recordfile.h"
#include "service/store/workspacefiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <limits>

namespace Zel {

void WorkspaceFiles::readDeployments(const QString &path)
{
    constexpr qint64 largestAccount = std::numeric_limits<qint32>::max();
    constexpr qsizetype longestPath = 4096;
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        DeploymentEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccount);
        entry.deployment.guid = record.guid(QStringLiteral("guid"));
        entry.deployment.projectGuid = record.guid(QStringLiteral("project"));
        entry.deployment.name = record.text(QStringLiteral("name"), Deployments::longestName);
        entry.deployment.publishedAt = record.time(QStringLiteral("published"));
        entry.key = record.textOrEmpty(QStringLiteral("key"), Deployments::longestKey);
        const QString folder = record.textOrEmpty(QStringLiteral("folder"), longestPath);
        record.expectNoMore();
        if (!entry.key.isEmpty() && entry.key.size() < Deployments::shortestKey)
            record.refuse(QStringLiteral("\"key\" is shorter than %1 characters.")
                              .arg(Deployments::shortestKey));
        const QString key = QStringLiteral("%1/%2").arg(entry.accountId).arg(entry.deployment.guid);
        if (seen.contains(key))
            record.refuse(QStringLiteral("stands in this file twice."));
        seen.insert(key);
        if (!folder.isEmpty()) {
            const QString whole = QFileInfo(path).dir().filePath(folder);
            if (!QFileInfo(whole).isDir())
                record.refuse(QStringLiteral("there is no folder %1.").arg(whole));
            entry.audience = AudienceFiles::read({whole});
        }
        deployments << entry;
    }
}

} // namespace Zel
