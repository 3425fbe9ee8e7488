// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/accounts.h"

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace Zel {

class Database;

/// Who asks: everything about folders and assets depends on the account and on the person.
struct AssetUser
{
    qint64 accountId = 0;
    QString userId;
    QString role;
};

struct AssetFolder
{
    qint64 folderId = 0; ///< 0 is the root
    qint64 parentId = 0;
    QString name;
    QString letters; ///< what the asking person may do: some of "RWD"
};

/// The folders of an account and the rights in them.
///
/// An owner has all rights. What another member may do in a folder is said by the nearest folder on
/// the way to the root that has an entry for the person; where none has, authors may do everything
/// and viewers may list. Viewers never get more than that.
class ZEL_EXPORT AssetFolders
{
public:
    static constexpr qsizetype longestName = 255;
    static constexpr qint64 largestId = 32767;

    enum class Outcome
    {
        Done,
        NotFound,
        NotAllowed,
        NameTaken, ///< another folder of the same parent has that name, whatever its case
        NotEmpty,
        Full ///< no number is left for another folder
    };

    AssetFolders(Database &database, Accounts &accounts);

    /// Whether a text can be the name of a folder: not blank, without "/", "\\" and control
    /// characters, not too long.
    static bool isUsableName(const QString &name);

    /// All folders below `parentId`; the root first when that is 0, parents before their children,
    /// then by name. Nothing when there is no such folder.
    std::optional<QList<AssetFolder>> list(const AssetUser &user, qint64 parentId);
    /// What the person may do in a folder; nothing when there is no such folder.
    std::optional<QString> letters(const AssetUser &user, qint64 folderId);
    Outcome create(const AssetUser &user, qint64 parentId, const QString &name, qint64 &folderId);
    /// Deletes a folder without folders and assets; assets in the trash do not count.
    Outcome remove(const AssetUser &user, qint64 folderId);

    // The following change the database and are called inside a transaction only.

    /// Makes a folder; the caller has seen that parent and name are fine.
    Outcome add(qint64 accountId, qint64 parentId, const QString &name, qint64 &folderId);
    /// The folder at "Pictures/Logos"; the empty path is the root.
    std::optional<qint64> findPath(qint64 accountId, const QString &path);
    /// Says what a member may do in a folder. False when it says so already.
    bool setLetters(qint64 accountId, qint64 folderId, const QString &userId,
                    const QString &letters);

private:
    struct Tree
    {
        QHash<qint64, AssetFolder> folders;
        QHash<qint64, QString> entries; ///< of the asking person
        QString fallback;
        bool isOwner = false;

        bool has(qint64 folderId) const { return folderId == 0 || folders.contains(folderId); }

        QString letters(qint64 folderId) const;
    };

    Tree tree(const AssetUser &user);
    QHash<qint64, AssetFolder> foldersOf(qint64 accountId);
    QString rootName(qint64 accountId);

    Database &m_database;
    Accounts &m_accounts;
};

} // namespace Zel
