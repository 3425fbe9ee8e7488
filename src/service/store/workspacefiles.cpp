// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspacefiles.h"

#include "service/store/recordfile.h"
#include "service/store/storabletext.h"
#include "service/store/users.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <limits>

namespace Zel {

namespace {

constexpr qint64 largestAccountId = std::numeric_limits<qint32>::max();
constexpr qsizetype longestName = 256;
constexpr qsizetype longestDescription = 1024 * 1024;
constexpr qsizetype longestFileName = 1024;

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

QString assetKey(qint64 accountId, const QString &guid)
{
    return QStringLiteral("%1/%2").arg(accountId).arg(guid);
}

/// What a file is called need not be what it is called on the disk, which takes fewer names.
WorkspaceFiles::AssetSource sourceIn(FileRecord &record)
{
    WorkspaceFiles::AssetSource source;
    source.path = QFileInfo(record.place.file)
                      .dir()
                      .filePath(record.text(QStringLiteral("file"), longestDescription));
    if (record.has(QStringLiteral("fileName")))
        source.name = record.textOrEmpty(QStringLiteral("fileName"), longestFileName);
    if (source.name.isEmpty())
        source.name = QFileInfo(source.path).fileName();
    return source;
}

void expectFile(const WorkspaceFiles::AssetSource &source, const FileRecord &record)
{
    const QFileInfo info(source.path);
    if (!info.isReadable() || !info.isFile())
        record.refuse(QStringLiteral("the file %1 cannot be read.").arg(source.path));
    if (info.size() == 0)
        record.refuse(QStringLiteral("the file %1 is empty.").arg(source.path));
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
    files.addAssetFiles();
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
        Known{QLatin1String("asset-files.csv"), &WorkspaceFiles::readAssetFiles},
        Known{QLatin1String("templates.csv"), &WorkspaceFiles::readTemplates},
        Known{QLatin1String("themes.csv"), &WorkspaceFiles::readThemes},
        Known{QLatin1String("theme-templates.csv"), &WorkspaceFiles::readThemeTemplates},
        Known{QLatin1String("data-records.csv"), &WorkspaceFiles::readDataRecords},
        Known{QLatin1String("saved-data-records.csv"), &WorkspaceFiles::readSavedRecords},
        Known{QLatin1String("deployments.csv"), &WorkspaceFiles::readDeployments},
    };
    const QString name = QFileInfo(path).fileName();
    for (const Known &one : known) {
        if (name == one.name)
            return (this->*one.read)(path);
    }
    throw WorkspaceFileError({path, 0},
                             QStringLiteral("is none of accounts.json, people.json, "
                                            "project-types.json, projects.csv, asset-folders.csv, "
                                            "asset-rights.csv, assets.csv, asset-files.csv, "
                                            "templates.csv, themes.csv, theme-templates.csv, "
                                            "data-records.csv, saved-data-records.csv and "
                                            "deployments.csv."));
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
        if (record.has(QStringLiteral("password")))
            entry.password = record.text(QStringLiteral("password"), Users::longestPassword);
        if (record.has(QStringLiteral("passwordHash")))
            entry.passwordHash = record.text(QStringLiteral("passwordHash"), longestName);
        if (entry.password && !entry.passwordHash.isEmpty())
            record.refuse(QStringLiteral("has both a \"password\" and a \"passwordHash\"."));
        if (!entry.passwordHash.isEmpty() && !PasswordHasher::isHash(entry.passwordHash))
            record.refuse(QStringLiteral("\"passwordHash\" is no hash that can be checked."));
        if (record.has(QStringLiteral("disabled")))
            entry.disabled = record.boolean(QStringLiteral("disabled"));
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
        entry.type.position = record.has(QStringLiteral("position"))
                                  ? record.integer(QStringLiteral("position"), 1, largestAccountId)
                                  : types.size() + 1;
        const QJsonArray list = record.list(QStringLiteral("accounts"));
        for (const QJsonValue &value : list) {
            entry.accountIds << value.toInteger();
            if (entry.accountIds.last() < 1 || entry.accountIds.last() > largestAccountId)
                record.refuse(QStringLiteral("\"accounts\" must list account numbers."));
            expectOnce(seen,
                       QStringLiteral("%1/%2").arg(entry.accountIds.last()).arg(entry.type.typeId),
                       record);
        }
        record.expectNoMore();
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
        entry.files << sourceIn(record);
        const auto created = record.timeOrEmpty(QStringLiteral("created"));
        if (!created)
            record.refuse(QStringLiteral("\"created\" must be a time."));
        entry.asset.createdAt = *created;
        entry.createdByLogin = record.text(QStringLiteral("createdBy"), Users::longestLogin);
        record.expectNoMore();
        expectFile(entry.files.first(), record);
        expectOnce(seen, assetKey(entry.accountId, entry.asset.guid), record);
        assets << entry;
    }
}

void WorkspaceFiles::readAssetFiles(const QString &path)
{
    for (FileRecord &record : readCsvRecords(path)) {
        FurtherFile further;
        further.place = record.place;
        const qint64 accountId = record.integer(QStringLiteral("account"), 1, largestAccountId);
        further.assetKey = assetKey(accountId, record.guid(QStringLiteral("guid")));
        further.source = sourceIn(record);
        record.expectNoMore();
        expectFile(further.source, record);
        m_furtherFiles << further;
    }
}

/// The list of further files may have been read before that of the assets.
void WorkspaceFiles::addAssetFiles()
{
    QHash<QString, qsizetype> byKey;
    for (qsizetype i = 0; i < assets.size(); ++i)
        byKey.insert(assetKey(assets.at(i).accountId, assets.at(i).asset.guid), i);
    for (const FurtherFile &further : std::as_const(m_furtherFiles)) {
        const auto found = byKey.constFind(further.assetKey);
        if (found == byKey.cend())
            throw WorkspaceFileError(further.place,
                                     QStringLiteral("assets.csv has no such asset."));
        assets[*found].files << further.source;
    }
    m_furtherFiles.clear();
}

} // namespace Zel
