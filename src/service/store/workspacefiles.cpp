// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacefiles.h"

#include "service/store/recordfile.h"
#include "service/store/storabletext.h"
#include "service/store/users.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <array>
#include <limits>

namespace Zel {

namespace {

constexpr qint64 largestAccountId = std::numeric_limits<qint32>::max();
constexpr qsizetype longestName = 256;
constexpr qsizetype longestDescription = 1024 * 1024;

/// Throws when a key comes a second time.
void expectOnce(QSet<QString> &seen, const QString &key, const FileRecord &record)
{
    if (seen.contains(key))
        record.refuse(QStringLiteral("stands in this file twice."));
    seen.insert(key);
}

WorkspaceFiles::Membership membershipOf(const QJsonValue &value, const FilePlace &place)
{
    FileRecord record;
    record.place = place;
    if (!value.isObject())
        record.refuse(QStringLiteral("a membership must be an object."));
    record.fields = value.toObject();
    WorkspaceFiles::Membership membership;
    membership.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
    membership.role = record.text(QStringLiteral("role"), longestName);
    record.expectNoMore();
    static const QStringList roles{QStringLiteral("owner"), QStringLiteral("author"),
                                   QStringLiteral("viewer")};
    if (!roles.contains(membership.role))
        record.refuse(QStringLiteral("\"role\" must be owner, author or viewer."));
    return membership;
}

} // namespace

WorkspaceFiles WorkspaceFiles::read(const QStringList &paths)
{
    WorkspaceFiles files;
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (!info.isDir()) {
            files.readFile(path);
            continue;
        }
        const QStringList names = QDir(path).entryList(QDir::Files, QDir::Name);
        for (const QString &name : names) {
            if (!name.endsWith(QLatin1String(".md")))
                files.readFile(QDir(path).filePath(name));
        }
    }
    return files;
}

void WorkspaceFiles::readFile(const QString &path)
{
    struct Known
    {
        QLatin1String name;
        void (WorkspaceFiles::*read)(const QString &);
    };

    static constexpr std::array known{
        Known{QLatin1String("accounts.json"), &WorkspaceFiles::readAccounts},
        Known{QLatin1String("people.json"), &WorkspaceFiles::readPeople},
        Known{QLatin1String("project-types.json"), &WorkspaceFiles::readTypes},
        Known{QLatin1String("projects.csv"), &WorkspaceFiles::readProjects},
        Known{QLatin1String("asset-folders.csv"), &WorkspaceFiles::readFolders},
        Known{QLatin1String("asset-rights.csv"), &WorkspaceFiles::readRights},
        Known{QLatin1String("assets.csv"), &WorkspaceFiles::readAssets},
        Known{QLatin1String("templates.csv"), &WorkspaceFiles::readTemplates},
        Known{QLatin1String("themes.csv"), &WorkspaceFiles::readThemes},
        Known{QLatin1String("theme-templates.csv"), &WorkspaceFiles::readThemeTemplates},
    };
    const QString name = QFileInfo(path).fileName();
    for (const Known &one : known) {
        if (name == one.name)
            return (this->*one.read)(path);
    }
    throw WorkspaceFileError({path, 0},
                             QStringLiteral("is none of accounts.json, people.json, "
                                            "project-types.json, projects.csv, asset-folders.csv, "
                                            "asset-rights.csv, assets.csv, templates.csv, "
                                            "themes.csv and theme-templates.csv."));
}

void WorkspaceFiles::readAccounts(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readJsonRecords(path)) {
        AccountEntry entry;
        entry.place = record.place;
        entry.account.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.account.name = record.text(QStringLiteral("name"), longestName);
        record.expectNoMore();
        expectOnce(seen, QString::number(entry.account.accountId), record);
        accounts << entry;
    }
}

void WorkspaceFiles::readPeople(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readJsonRecords(path)) {
        PersonEntry entry;
        entry.place = record.place;
        entry.login = record.text(QStringLiteral("user"), Users::longestLogin);
        if (!Users::isUsableLogin(entry.login))
            record.refuse(QStringLiteral("\"user\" is too long."));
        entry.displayName = record.text(QStringLiteral("displayName"), longestName);
        entry.password = record.text(QStringLiteral("password"), Users::longestPassword);
        const QJsonArray list = record.list(QStringLiteral("accounts"));
        for (const QJsonValue &value : list)
            entry.memberships << membershipOf(value, record.place);
        record.expectNoMore();
        expectOnce(seen, foldedKey(entry.login), record);
        people << entry;
    }
}

void WorkspaceFiles::readTypes(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readJsonRecords(path)) {
        TypeEntry entry;
        entry.place = record.place;
        entry.type.typeId = record.text(QStringLiteral("typeID"), longestName);
        entry.type.name = record.text(QStringLiteral("name"), longestName);
        entry.type.position = types.size() + 1;
        const QJsonArray list = record.list(QStringLiteral("accounts"));
        for (const QJsonValue &value : list) {
            entry.accountIds << value.toInteger();
            if (entry.accountIds.last() < 1 || entry.accountIds.last() > largestAccountId)
                record.refuse(QStringLiteral("\"accounts\" must list account numbers."));
        }
        record.expectNoMore();
        expectOnce(seen, entry.type.typeId, record);
        types << entry;
    }
}

void WorkspaceFiles::readProjects(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        ProjectEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.createdByLogin = record.text(QStringLiteral("createdBy"), Users::longestLogin);
        Project &project = entry.project;
        project.guid = record.guid(QStringLiteral("guid"));
        project.typeId = record.text(QStringLiteral("typeID"), longestName);
        project.name = record.text(QStringLiteral("name"), Projects::longestName);
        project.description = record.textOrEmpty(QStringLiteral("description"), longestDescription);
        project.createdAt = record.timeOrEmpty(QStringLiteral("created"));
        project.modifiedAt = record.timeOrEmpty(QStringLiteral("modified"));
        project.eventAt = record.timeOrEmpty(QStringLiteral("eventDate"));
        project.published = record.boolean(QStringLiteral("published"));
        if (record.has(QStringLiteral("theme")) &&
            !record.textOrEmpty(QStringLiteral("theme"), longestName).isEmpty())
            project.themeGuid = record.guid(QStringLiteral("theme"));
        record.expectNoMore();
        expectOnce(seen, QStringLiteral("%1/%2").arg(entry.accountId).arg(project.guid), record);
        projects << entry;
    }
}

void WorkspaceFiles::readFolders(const QString &path)
{
    for (FileRecord &record : readCsvRecords(path)) {
        FolderEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.path = record.text(QStringLiteral("folder"), longestDescription);
        record.expectNoMore();
        const QStringList names = entry.path.split(QLatin1Char('/'));
        for (const QString &name : names) {
            if (!AssetFolders::isUsableName(name))
                record.refuse(QStringLiteral("\"%1\" cannot be the name of a folder.").arg(name));
        }
        folders << entry;
    }
}

void WorkspaceFiles::readRights(const QString &path)
{
    for (FileRecord &record : readCsvRecords(path)) {
        RightEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.path = record.textOrEmpty(QStringLiteral("folder"), longestDescription);
        entry.login = record.text(QStringLiteral("user"), Users::longestLogin);
        entry.letters = record.textOrEmpty(QStringLiteral("letters"), longestName);
        record.expectNoMore();
        for (const QChar letter : std::as_const(entry.letters)) {
            if (!QStringLiteral("RWD").contains(letter) || entry.letters.count(letter) > 1)
                record.refuse(QStringLiteral("\"letters\" must be some of R, W and D."));
        }
        rights << entry;
    }
}

void WorkspaceFiles::readAssets(const QString &path)
{
    QSet<QString> seen;
    for (FileRecord &record : readCsvRecords(path)) {
        AssetEntry entry;
        entry.place = record.place;
        entry.accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        entry.asset.guid = record.guid(QStringLiteral("guid"));
        entry.folder = record.textOrEmpty(QStringLiteral("folder"), longestDescription);
        entry.asset.name = record.text(QStringLiteral("name"), Assets::longestName);
        entry.asset.detail =
            record.textOrEmpty(QStringLiteral("description"), Assets::longestDetail);
        entry.file =
            QFileInfo(path).dir().filePath(record.text(QStringLiteral("file"), longestDescription));
        const auto created = record.timeOrEmpty(QStringLiteral("created"));
        if (!created)
            record.refuse(QStringLiteral("\"created\" must be a time."));
        entry.asset.createdAt = *created;
        entry.createdByLogin = record.text(QStringLiteral("createdBy"), Users::longestLogin);
        record.expectNoMore();
        if (!QFileInfo(entry.file).isReadable() || !QFileInfo(entry.file).isFile())
            record.refuse(QStringLiteral("the file %1 cannot be read.").arg(entry.file));
        if (QFileInfo(entry.file).size() == 0)
            record.refuse(QStringLiteral("the file %1 is empty.").arg(entry.file));
        expectOnce(seen, QStringLiteral("%1/%2").arg(entry.accountId).arg(entry.asset.guid),
                   record);
        assets << entry;
    }
}

} // namespace Zel
