// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspaceimport.h"

#include "service/store/datarecordimport.h"
#include "service/store/deploymentimport.h"
#include "service/store/importcount.h"
#include "service/store/stagedblobs.h"
#include "service/store/store.h"
#include "service/store/tableschema.h"
#include "service/store/themeimport.h"

#include <QHash>

#include <algorithm>

namespace Zel {

namespace {

/// How often an import is begun when bytes it counts on are cleared away meanwhile.
constexpr int attempts = 3;

/// Files whose bytes have been taken in already, by account and source.
using NewFiles = QHash<std::pair<qint64, WorkspaceFiles::AssetSource>, Uploads::Adopted>;

/// The work of one import inside its transaction; made anew when the transaction is repeated.
class Importer
{
public:
    Importer(Store &store, const WorkspaceFiles &files, const QHash<QString, QString> &newHashes,
             const NewFiles &newFiles, StagedBlobs &blobs,
             const QHash<QString, AudienceFiles> &audiences, const Progress &progress)
        : m_store(store)
        , m_files(files)
        , m_newHashes(newHashes)
        , m_newFiles(newFiles)
        , m_blobs(blobs)
        , m_audiences(audiences)
        , m_progress(progress)
    {
    }

    QList<ImportCount> run()
    {
        m_counts << count(QStringLiteral("accounts"), m_files.accounts, &Importer::takeAccount)
                 << count(QStringLiteral("people"), m_files.people, &Importer::takePerson)
                 << count(QStringLiteral("project types"), m_files.types, &Importer::takeType)
                 << ThemeImport(m_store, m_files, m_blobs).run()
                 << importDataRecords(m_store, m_files)
                 << count(QStringLiteral("projects"), m_files.projects, &Importer::takeProject)
                 << importDeployments(m_store, m_files, m_audiences, m_progress)
                 << count(QStringLiteral("folders"), m_files.folders, &Importer::takeFolder)
                 << count(QStringLiteral("folder rights"), m_files.rights, &Importer::takeRight)
                 << count(QStringLiteral("assets"), m_files.assets, &Importer::takeAsset);
        return m_counts;
    }

private:
    using Outcome = ImportOutcome;

    template <class Entry>
    ImportCount count(const QString &kind, const QList<Entry> &entries,
                      Outcome (Importer::*take)(const Entry &))
    {
        return countImports(kind, entries,
                            [&](const Entry &entry) { return (this->*take)(entry); });
    }

    void expectAccount(qint64 accountId, const FilePlace &place)
    {
        if (!m_store.accounts.find(accountId))
            throw WorkspaceFileError(place,
                                     QStringLiteral("there is no account %1.").arg(accountId));
    }

    Outcome takeAccount(const WorkspaceFiles::AccountEntry &entry)
    {
        const auto known = m_store.accounts.find(entry.account.accountId);
        if (known && known->name == entry.account.name)
            return Outcome::Unchanged;
        if (known)
            m_store.accounts.rename(entry.account);
        else
            m_store.accounts.add(entry.account);
        return known ? Outcome::Changed : Outcome::Added;
    }

    Outcome takePerson(const WorkspaceFiles::PersonEntry &entry)
    {
        const auto known = m_store.users.find(entry.login);
        const QString hash =
            entry.passwordHash.isEmpty() ? m_newHashes.value(entry.login) : entry.passwordHash;
        bool changed = false;
        QString userId;
        if (known) {
            userId = known->userId;
            if (known->displayName != entry.displayName) {
                m_store.users.changeDisplayName(userId, entry.displayName);
                changed = true;
            }
            if (!hash.isEmpty() && hash != m_store.users.passwordHash(entry.login)) {
                m_store.users.changePasswordHash(userId, hash);
                changed = true;
            }
        } else {
            userId = m_store.users.add(entry.login, entry.displayName, hash).userId;
        }
        if (entry.disabled && *entry.disabled != (known && known->disabled)) {
            m_store.users.setDisabled(userId, *entry.disabled);
            changed = true;
        }
        for (const WorkspaceFiles::Membership &membership : entry.memberships) {
            expectAccount(membership.accountId, entry.place);
            if (m_store.accounts.role(membership.accountId, userId) == membership.role)
                continue;
            m_store.accounts.setRole(membership.accountId, userId, membership.role);
            changed = true;
        }
        if (!known)
            return Outcome::Added;
        return changed ? Outcome::Changed : Outcome::Unchanged;
    }

    Outcome takeType(const WorkspaceFiles::TypeEntry &entry)
    {
        int added = 0;
        int changed = 0;
        for (const qint64 accountId : entry.accountIds) {
            expectAccount(accountId, entry.place);
            const auto known = findType(accountId, entry.type.typeId);
            if (known && known->name == entry.type.name && known->position == entry.type.position)
                continue;
            m_store.projects.storeType(accountId, entry.type);
            ++(known ? changed : added);
        }
        if (added > 0 && added == entry.accountIds.size())
            return Outcome::Added;
        return added + changed > 0 ? Outcome::Changed : Outcome::Unchanged;
    }

    std::optional<ProjectKind> findType(qint64 accountId, const QString &typeId)
    {
        const QList<ProjectKind> types = m_store.projects.types(accountId);
        for (const ProjectKind &type : types) {
            if (type.typeId == typeId)
                return type;
        }
        return std::nullopt;
    }

    Outcome takeProject(const WorkspaceFiles::ProjectEntry &entry)
    {
        expectAccount(entry.accountId, entry.place);
        if (!findType(entry.accountId, entry.project.typeId))
            throw WorkspaceFileError(entry.place,
                                     QStringLiteral("account %1 has no project type \"%2\".")
                                         .arg(entry.accountId)
                                         .arg(entry.project.typeId));
        const auto creator = m_store.users.find(entry.createdByLogin);
        if (!creator)
            throw WorkspaceFileError(
                entry.place, QStringLiteral("there is no user \"%1\".").arg(entry.createdByLogin));
        Project project = entry.project;
        project.createdById = creator->userId;
        project.createdBy = creator->displayName;
        if (!project.themeGuid.isEmpty() && !hasTheme(entry.accountId, project.themeGuid))
            throw WorkspaceFileError(entry.place, QStringLiteral("account %1 has no theme %2.")
                                                      .arg(entry.accountId)
                                                      .arg(project.themeGuid));
        const auto known = m_store.projects.find(entry.accountId, project.guid);
        if (!known) {
            m_store.projects.add(entry.accountId, project);
            return Outcome::Added;
        }
        if (*known == project)
            return Outcome::Unchanged;
        m_store.projects.change(entry.accountId, project);
        return Outcome::Changed;
    }

    /// A project keeps its theme even when that has become somebody else's.
    bool hasTheme(qint64 accountId, const QString &guid)
    {
        const QList<Theme> themes = m_store.themes.withGuid(guid);
        return std::any_of(themes.begin(), themes.end(), [accountId](const Theme &theme) {
            return theme.accountId == accountId || theme.accountId == 0;
        });
    }

    qint64 expectFolder(qint64 accountId, const QString &path, const FilePlace &place)
    {
        expectAccount(accountId, place);
        const auto folder = m_store.folders.findPath(accountId, path);
        if (!folder)
            throw WorkspaceFileError(
                place, QStringLiteral("account %1 has no folder \"%2\".").arg(accountId).arg(path));
        return *folder;
    }

    User expectUser(const QString &login, const FilePlace &place)
    {
        const auto user = m_store.users.find(login);
        if (!user)
            throw WorkspaceFileError(place, QStringLiteral("there is no user \"%1\".").arg(login));
        return *user;
    }

    Outcome takeFolder(const WorkspaceFiles::FolderEntry &entry)
    {
        expectAccount(entry.accountId, entry.place);
        if (m_store.folders.findPath(entry.accountId, entry.path))
            return Outcome::Unchanged;
        const qsizetype slash = entry.path.lastIndexOf(QLatin1Char('/'));
        const qint64 parent = expectFolder(
            entry.accountId, entry.path.left(std::max<qsizetype>(slash, 0)), entry.place);
        qint64 folderId = 0;
        if (m_store.folders.add(entry.accountId, parent, entry.path.mid(slash + 1), folderId) !=
            AssetFolders::Outcome::Done)
            throw WorkspaceFileError(entry.place,
                                     QStringLiteral("the account can have no more folders."));
        return Outcome::Added;
    }

    Outcome takeRight(const WorkspaceFiles::RightEntry &entry)
    {
        const qint64 folder = expectFolder(entry.accountId, entry.path, entry.place);
        const User user = expectUser(entry.login, entry.place);
        if (!m_store.accounts.role(entry.accountId, user.userId))
            throw WorkspaceFileError(entry.place,
                                     QStringLiteral("\"%1\" is no member of account %2.")
                                         .arg(entry.login)
                                         .arg(entry.accountId));
        return m_store.folders.setLetters(entry.accountId, folder, user.userId, entry.letters)
                   ? Outcome::Added
                   : Outcome::Unchanged;
    }

    Outcome takeAsset(const WorkspaceFiles::AssetEntry &entry)
    {
        const qint64 folder = expectFolder(entry.accountId, entry.folder, entry.place);
        const User user = expectUser(entry.createdByLogin, entry.place);
        if (m_store.assets.isKnown(entry.accountId, entry.asset.guid))
            return Outcome::Unchanged;
        Asset asset = entry.asset;
        asset.folderId = folder;
        asset.createdById = user.userId;
        QList<AssetFile> files;
        for (const WorkspaceFiles::AssetSource &source : entry.files) {
            const Uploads::Adopted file = m_newFiles.value({entry.accountId, source});
            if (files.isEmpty())
                asset.assetType = file.assetType;
            m_blobs.name({entry.accountId, file.file.sha});
            m_store.assets.addBlob(entry.accountId, file.file);
            files << file.file;
        }
        m_store.assets.add(entry.accountId, asset, files);
        return Outcome::Added;
    }

    Store &m_store;
    const WorkspaceFiles &m_files;
    const QHash<QString, QString> &m_newHashes;
    const NewFiles &m_newFiles;
    StagedBlobs &m_blobs;
    const QHash<QString, AudienceFiles> &m_audiences;
    const Progress &m_progress;
    QList<ImportCount> m_counts;
};

/// Hashes for the people whose password is not yet what the file says. Made before the transaction:
/// hashing is slow on purpose, and nobody could write meanwhile.
QHash<QString, QString> newHashes(Store &store, const WorkspaceFiles &files,
                                  const ImportOptions &options)
{
    QHash<QString, QString> result;
    qint64 done = 0;
    for (const WorkspaceFiles::PersonEntry &person : files.people) {
        tell(options.progress, QStringLiteral("people"), ++done, files.people.size());
        if (!person.password)
            continue;
        const auto known = store.users.passwordHash(person.login);
        if (known && !known->isEmpty() && store.hasher.verify(*known, *person.password))
            continue;
        // What is not stored need not be worth the time.
        result.insert(person.login,
                      options.dryRun ? store.hasher.dummy() : store.hasher.hash(*person.password));
    }
    return result;
}

/// Takes in the bytes of the assets that are not there yet: rows must not come before them.
NewFiles newFiles(Store &store, const WorkspaceFiles &files, StagedBlobs &blobs,
                  const ImportOptions &options)
{
    NewFiles result;
    qint64 done = 0;
    for (const WorkspaceFiles::AssetEntry &entry : files.assets) {
        tell(options.progress, QStringLiteral("assets"), ++done, files.assets.size());
        if (store.assets.isKnown(entry.accountId, entry.asset.guid))
            continue;
        for (const WorkspaceFiles::AssetSource &source : entry.files) {
            const auto key = std::make_pair(entry.accountId, source);
            if (result.contains(key))
                continue;
            Uploads::Adopted taken;
            if (options.dryRun) {
                taken.file = {source.name, QStringLiteral("-"), QString(), 0, false};
            } else {
                taken = store.uploads.adopt(entry.accountId, source.path, source.name);
                blobs.add({entry.accountId, taken.file.sha}, taken.part);
            }
            result.insert(key, taken);
        }
    }
    return result;
}

/// Ends the transaction of a dry run; what it has counted outlives it.
struct NothingStored
{
};

} // namespace

QList<ImportCount> importWorkspace(Store &store, const WorkspaceFiles &files,
                                   const ImportOptions &options)
{
    const QHash<QString, QString> hashes = newHashes(store, files, options);
    const QHash<QString, AudienceFiles> audiences = newAudiences(store, files, options.progress);
    std::unique_ptr<BlobHold> hold;
    if (!options.dryRun && !(files.assets.isEmpty() && files.themes.isEmpty()))
        hold = store.blobs.hold(BlobHold::Mode::Store);
    for (int attempt = 1;; ++attempt) {
        StagedBlobs blobs(store.blobs, options.dryRun ? StagedBlobs::Mode::NameNothing
                                                      : StagedBlobs::Mode::Name);
        const NewFiles taken = newFiles(store, files, blobs, options);
        if (!options.dryRun)
            stageNewPreviews(store, files, blobs);
        try {
            const QList<ImportCount> counts = importInside(store, options, [&] {
                return Importer(store, files, hashes, taken, blobs, audiences, options.progress)
                    .run();
            });
            blobs.settle();
            return counts;
        } catch (const BlobGone &) {
            // What was there is taken in the next time.
            if (attempt == attempts)
                throw;
        }
    }
}

QList<ImportCount> importInside(Store &store, const ImportOptions &options,
                                const std::function<QList<ImportCount>()> &take)
{
    QList<ImportCount> counts;
    try {
        store.database.tx([&] {
            counts = take();
            if (options.dryRun)
                throw NothingStored();
        });
        refreshPlans(store.database);
    } catch (const NothingStored &) {
        // as was asked for
    }
    return counts;
}

} // namespace Zel
