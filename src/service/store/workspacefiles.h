// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/accounts.h"
#include "service/store/assets.h"
#include "service/store/datarecords.h"
#include "service/store/deployments.h"
#include "service/store/projects.h"
#include "service/store/themes.h"
#include "service/store/workspacefileerror.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace Zel {

/// What a folder of readable files holds, read and checked on its own. References between the files
/// are checked when it is stored, because they may point to what the database has already.
class ZEL_EXPORT WorkspaceFiles
{
public:
    struct Membership
    {
        qint64 accountId = 0;
        QString role;
    };

    struct PersonEntry
    {
        FilePlace place;
        QString login;
        QString displayName;
        std::optional<QString> password;
        QString passwordHash;         ///< in place of a password; empty for none
        std::optional<bool> disabled; ///< nothing: stays as it is
        QList<Membership> memberships;
    };

    struct AccountEntry
    {
        FilePlace place;
        Account account;
    };

    struct TypeEntry
    {
        FilePlace place;
        ProjectKind type;
        QList<qint64> accountIds;
    };

    struct ProjectEntry
    {
        FilePlace place;
        qint64 accountId = 0;
        QString createdByLogin;
        Project project;
    };

    struct FolderEntry
    {
        FilePlace place;
        qint64 accountId = 0;
        QString path; ///< "Pictures/Logos"
    };

    struct RightEntry
    {
        FilePlace place;
        qint64 accountId = 0;
        QString path; ///< empty for the root
        QString login;
        QString letters;
    };

    /// Where the bytes of a file of an asset are.
    struct AssetSource
    {
        QString path;
        QString name; ///< as the file is called; its path may be called otherwise

        bool operator==(const AssetSource &) const = default;
    };

    struct AssetEntry
    {
        FilePlace place;
        qint64 accountId = 0;
        QString folder;
        QString createdByLogin;
        QList<AssetSource> files; ///< one at least
        Asset asset;
    };

    struct ThemeEntry
    {
        FilePlace place;
        QString ownerLogin; ///< empty for everybody's
        Theme theme;        ///< without its definition, and of its preview the name of the bytes
        QString definitionFile;
        QString previewFile;
    };

    /// All templates of one theme.
    struct ThemeTemplatesEntry
    {
        FilePlace place; ///< of the first
        qint64 accountId = 0;
        QString guid;
        QList<TemplateUse> templates;
        QList<FilePlace> places; ///< of each
    };

    struct TemplateEntry
    {
        FilePlace place;
        qint64 accountId = 0;
        Template entry;
    };

    /// The data record of one theme.
    struct DataRecordEntry
    {
        FilePlace place; ///< of the first field
        qint64 accountId = 0;
        QString guid;
        QList<RecordEntry> entries;
        qint64 size = 0; ///< see `DataRecords::sizeOf`
    };

    /// The data record that an account has saved of a theme of its own or of every account.
    struct SavedRecordEntry
    {
        DataRecordEntry record; ///< of that account
        QString savedByLogin;
        qint64 version = 1;
    };

    struct DeploymentEntry
    {
        FilePlace place;
        qint64 accountId = 0;
        Deployment deployment;
        QString key;          ///< of its players; empty for none
        QString folder;       ///< what happened in it, see `AudienceFiles`; empty for none
        QByteArray filesHash; ///< of all that lies in the folder
    };

    QList<AccountEntry> accounts;
    QList<PersonEntry> people;
    QList<TypeEntry> types;
    QList<ProjectEntry> projects;
    QList<FolderEntry> folders;
    QList<RightEntry> rights;
    QList<AssetEntry> assets;
    QList<TemplateEntry> templates;
    QList<ThemeEntry> themes;
    QList<ThemeTemplatesEntry> themeTemplates;
    QList<DataRecordEntry> dataRecords;
    QList<SavedRecordEntry> savedRecords;
    QList<DeploymentEntry> deployments;

    /// Reads folders and files. A file is known by its name: accounts.json, people.json,
    /// project-types.json, projects.csv, asset-folders.csv, asset-rights.csv, assets.csv,
    /// asset-files.csv, templates.csv, themes.csv, theme-templates.csv, data-records.csv,
    /// saved-data-records.csv, deployments.csv. In a folder, Markdown and hidden files are passed
    /// over; any other name throws `WorkspaceFileError`, as every fault in a file does.
    static WorkspaceFiles read(const QStringList &paths);

private:
    void readFile(const QString &path);
    void readAccounts(const QString &path);
    void readPeople(const QString &path);
    void readTypes(const QString &path);
    void readProjects(const QString &path);
    void readFolders(const QString &path);
    void readRights(const QString &path);
    void readAssets(const QString &path);
    void readAssetFiles(const QString &path);
    void addAssetFiles();
    void readTemplates(const QString &path);
    void readThemes(const QString &path);
    void readThemeTemplates(const QString &path);
    void readDataRecords(const QString &path);
    void readSavedRecords(const QString &path);
    void readDeployments(const QString &path);

    /// A further file of an asset, until all assets are known.
    struct FurtherFile
    {
        FilePlace place;
        QString assetKey;
        AssetSource source;
    };

    QList<FurtherFile> m_furtherFiles;
};

inline size_t qHash(const WorkspaceFiles::AssetSource &source, size_t seed = 0)
{
    return qHashMulti(seed, source.path, source.name);
}

} // namespace Zel
