// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/assetfolders.h"

#include "service/store/database.h"
#include "service/store/storabletext.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace Zel {

namespace {

const SqlText listFolders(R"sql(
    SELECT folder_id, parent_id, name FROM asset_folder WHERE account_id = $1
)sql");

const SqlText listEntries(R"sql(
    SELECT folder_id, letters FROM folder_perm WHERE account_id = $1 AND user_id = $2
)sql");

const SqlText findEntry(R"sql(
    SELECT letters FROM folder_perm WHERE account_id = $1 AND folder_id = $2 AND user_id = $3
)sql");

const SqlText putEntry(R"sql(
    INSERT INTO folder_perm (account_id, folder_id, user_id, letters) VALUES ($1, $2, $3, $4)
    ON CONFLICT (account_id, folder_id, user_id) DO UPDATE SET letters = excluded.letters
)sql");

const SqlText dropEntries(R"sql(
    DELETE FROM folder_perm WHERE account_id = $1 AND folder_id = $2
)sql");

const SqlText nextNumber(R"sql(
    SELECT next_folder FROM asset_space WHERE account_id = $1
)sql");

const SqlText putNextNumber(R"sql(
    INSERT INTO asset_space (account_id, next_folder) VALUES ($1, $2)
    ON CONFLICT (account_id) DO UPDATE SET next_folder = excluded.next_folder
)sql");

const SqlText addFolder(R"sql(
    INSERT INTO asset_folder (account_id, folder_id, parent_id, name) VALUES ($1, $2, $3, $4)
)sql");

const SqlText dropFolder(R"sql(
    DELETE FROM asset_folder WHERE account_id = $1 AND folder_id = $2
)sql");

const SqlText countAssets(R"sql(
    SELECT COUNT(*) FROM asset
    WHERE account_id = $1 AND folder_id = $2 AND deleted_at IS NULL
)sql");

/// The children of each folder by the UTF-8 bytes of their folded names, as the databases order
/// texts, then by number.
QHash<qint64, QList<AssetFolder>> childrenOf(const QHash<qint64, AssetFolder> &folders)
{
    using Keyed = std::tuple<QByteArray, qint64>;
    std::vector<Keyed> order;
    order.reserve(static_cast<std::size_t>(folders.size()));
    for (const AssetFolder &folder : folders)
        order.emplace_back(foldedKey(folder.name).toUtf8(), folder.folderId);
    std::sort(order.begin(), order.end());
    QHash<qint64, QList<AssetFolder>> children;
    for (const auto &[key, folderId] : order) {
        const AssetFolder folder = folders.value(folderId);
        children[folder.parentId].append(folder);
    }
    return children;
}

} // namespace

AssetFolders::AssetFolders(Database &database, Accounts &accounts)
    : m_database(database)
    , m_accounts(accounts)
{
}

bool AssetFolders::isUsableName(const QString &name)
{
    return !name.trimmed().isEmpty() && name.size() <= longestName && isStorableText(name) &&
           std::none_of(name.begin(), name.end(), [](QChar c) {
               return c == QLatin1Char('/') || c == QLatin1Char('\\') ||
                      c.category() == QChar::Other_Control;
           });
}

QString AssetFolders::Tree::letters(qint64 folderId) const
{
    if (isOwner)
        return QStringLiteral("RWD");
    // A tree is never deeper than it has folders, whatever the table says.
    for (qsizetype left = folders.size(); folderId != 0 && left >= 0; --left) {
        const auto entry = entries.constFind(folderId);
        if (entry != entries.constEnd())
            return *entry;
        folderId = folders.value(folderId).parentId;
    }
    return entries.value(0, fallback);
}

QHash<qint64, AssetFolder> AssetFolders::foldersOf(qint64 accountId)
{
    QHash<qint64, AssetFolder> folders;
    m_database.query(listFolders, {accountId}, [&](const SqlRow &row) {
        folders.insert(row.integer(0), {row.integer(0), row.integer(1), row.text(2), QString()});
    });
    return folders;
}

AssetFolders::Tree AssetFolders::tree(const AssetUser &user)
{
    const bool isViewer = user.role == QLatin1String("viewer");
    Tree tree;
    tree.isOwner = user.role == QLatin1String("owner");
    tree.fallback = isViewer ? QStringLiteral("R") : QStringLiteral("RWD");
    tree.folders = foldersOf(user.accountId);
    m_database.query(listEntries, {user.accountId, user.userId}, [&](const SqlRow &row) {
        QString letters = row.text(1);
        if (isViewer)
            letters = letters.contains(QLatin1Char('R')) ? QStringLiteral("R") : QString();
        tree.entries.insert(row.integer(0), letters);
    });
    return tree;
}

QString AssetFolders::rootName(qint64 accountId)
{
    const auto account = m_accounts.find(accountId);
    return account ? account->name : QString();
}

std::optional<QList<AssetFolder>> AssetFolders::list(const AssetUser &user, qint64 parentId)
{
    return m_database.snapshot([&]() -> std::optional<QList<AssetFolder>> {
        const Tree tree = this->tree(user);
        if (!tree.has(parentId))
            return std::nullopt;
        QList<AssetFolder> result;
        if (parentId == 0)
            result.append({0, 0, rootName(user.accountId), tree.letters(0)});
        const QHash<qint64, QList<AssetFolder>> children = childrenOf(tree.folders);
        // Breadth first: what is appended is visited later, so parents stand before their children.
        QList<qint64> parents{parentId};
        for (qsizetype i = 0; i < parents.size(); ++i) {
            for (AssetFolder folder : children.value(parents.at(i))) {
                folder.letters = tree.letters(folder.folderId);
                parents.append(folder.folderId);
                result.append(folder);
            }
        }
        return result;
    });
}

std::optional<QString> AssetFolders::letters(const AssetUser &user, qint64 folderId)
{
    return m_database.snapshot([&]() -> std::optional<QString> {
        const Tree tree = this->tree(user);
        if (!tree.has(folderId))
            return std::nullopt;
        return tree.letters(folderId);
    });
}

AssetFolders::Outcome AssetFolders::create(const AssetUser &user, qint64 parentId,
                                           const QString &name, qint64 &folderId)
{
    return m_database.tx([&] {
        const Tree tree = this->tree(user);
        if (!tree.has(parentId))
            return Outcome::NotFound;
        if (!tree.letters(parentId).contains(QLatin1Char('W')))
            return Outcome::NotAllowed;
        const QString key = foldedKey(name);
        for (const AssetFolder &folder : tree.folders) {
            if (folder.parentId == parentId && foldedKey(folder.name) == key)
                return Outcome::NameTaken;
        }
        return add(user.accountId, parentId, name, folderId);
    });
}

AssetFolders::Outcome AssetFolders::remove(const AssetUser &user, qint64 folderId)
{
    return m_database.tx([&] {
        const Tree tree = this->tree(user);
        if (!tree.has(folderId))
            return Outcome::NotFound;
        if (folderId == 0 || !tree.letters(folderId).contains(QLatin1Char('D')))
            return Outcome::NotAllowed;
        for (const AssetFolder &folder : tree.folders) {
            if (folder.parentId == folderId)
                return Outcome::NotEmpty;
        }
        const auto assets = m_database.row(countAssets, {user.accountId, folderId},
                                           [](const SqlRow &row) { return row.integer(0); });
        if (assets.value_or(0) > 0)
            return Outcome::NotEmpty;
        m_database.exec(dropEntries, {user.accountId, folderId});
        m_database.exec(dropFolder, {user.accountId, folderId});
        return Outcome::Done;
    });
}

AssetFolders::Outcome AssetFolders::add(qint64 accountId, qint64 parentId, const QString &name,
                                        qint64 &folderId)
{
    const auto next =
        m_database.row(nextNumber, {accountId}, [](const SqlRow &row) { return row.integer(0); });
    folderId = next.value_or(1);
    if (folderId > largestId) {
        // Numbers of deleted folders come up again only now.
        const QHash<qint64, AssetFolder> folders = foldersOf(accountId);
        folderId = 1;
        while (folders.contains(folderId))
            ++folderId;
        if (folderId > largestId)
            return Outcome::Full;
    } else {
        m_database.exec(putNextNumber, {accountId, folderId + 1});
    }
    m_database.exec(addFolder, {accountId, folderId, parentId, name});
    return Outcome::Done;
}

std::optional<qint64> AssetFolders::findPath(qint64 accountId, const QString &path)
{
    const QHash<qint64, AssetFolder> folders = foldersOf(accountId);
    qint64 at = 0;
    const QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &name : names) {
        const QString key = foldedKey(name);
        const auto found =
            std::find_if(folders.begin(), folders.end(), [&](const AssetFolder &folder) {
                return folder.parentId == at && foldedKey(folder.name) == key;
            });
        if (found == folders.end())
            return std::nullopt;
        at = found->folderId;
    }
    return at;
}

bool AssetFolders::setLetters(qint64 accountId, qint64 folderId, const QString &userId,
                              const QString &letters)
{
    const auto known = m_database.row(findEntry, {accountId, folderId, userId},
                                      [](const SqlRow &row) { return row.text(0); });
    if (known == letters)
        return false;
    m_database.exec(putEntry, {accountId, folderId, userId, letters});
    return true;
}

} // namespace Zel
