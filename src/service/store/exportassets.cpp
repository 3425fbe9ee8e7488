// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// Folders of assets, rights in them, and assets.
#include "common/contract/checksum.h"
#include "service/store/exportjob.h"
#include "service/store/listpage.h"
#include "service/store/store.h"

#include <QFile>

namespace Zel {

namespace {

const SqlText listRights(R"sql(
    SELECT p.folder_id, p.user_id, p.letters FROM folder_perm p
    JOIN app_user u ON u.user_id = p.user_id
    WHERE p.account_id = $1
    ORDER BY u.login_key NULLS FIRST
)sql");

const SqlText pageOfAssets(R"sql(
    SELECT a.guid, a.name, a.detail, a.created_at, a.created_by, a.name_key
    FROM asset a
    WHERE a.account_id = $1 AND a.folder_id = $2 AND a.deleted_at IS NULL
      AND (a.name_key, a.guid) > ($3, $4)
    ORDER BY a.name_key NULLS FIRST, a.guid NULLS FIRST LIMIT $5
)sql");

const SqlText listFiles(R"sql(
    SELECT name, sha FROM asset_file WHERE account_id = $1 AND guid = $2
    ORDER BY pos NULLS FIRST
)sql");

struct Row
{
    QString guid;
    QString name;
    QString detail;
    qint64 createdAt = 0;
    QString createdById;
};

struct File
{
    QString name;
    QString sha;
};

/// One account's part of the three lists.
class AccountAssets
{
public:
    AccountAssets(ExportJob &job, qint64 accountId, CsvWriter &assets, CsvWriter &further)
        : m_job(job)
        , m_accountId(accountId)
        , m_account(QString::number(accountId))
        , m_assets(assets)
        , m_further(further)
    {
    }

    void exportFolders(CsvWriter &folders)
    {
        // As somebody who may see all of them.
        const AssetUser owner{m_accountId, QString(), QStringLiteral("owner")};
        const auto all = m_job.store.folders.list(owner, 0).value_or(QList<AssetFolder>());
        for (const AssetFolder &folder : all) {
            if (folder.folderId == 0) {
                m_paths.append({0, QString()});
                continue;
            }
            const QString parent = pathOf(folder.parentId);
            const QString path =
                parent.isEmpty() ? folder.name : parent + QLatin1Char('/') + folder.name;
            m_pathOf.insert(folder.folderId, path);
            m_paths.append({folder.folderId, path});
            folders.add({m_account, path});
            m_job.count(QStringLiteral("folders"));
        }
    }

    void exportRights(CsvWriter &rights)
    {
        QHash<qint64, QList<QStringList>> lines;
        m_job.store.database.query(listRights, {m_accountId}, [&](const SqlRow &row) {
            lines[row.integer(0)].append(
                {m_account, pathOf(row.integer(0)), m_job.logins.value(row.text(1)), row.text(2)});
        });
        for (const auto &[folderId, path] : std::as_const(m_paths)) {
            const QList<QStringList> all = lines.value(folderId);
            for (const QStringList &line : all)
                rights.add(line);
            m_job.count(QStringLiteral("folder rights"), all.size());
        }
    }

    void exportAssets()
    {
        for (const auto &[folderId, path] : std::as_const(m_paths))
            exportFolder(folderId, path);
    }

private:
    QString pathOf(qint64 folderId) const { return m_pathOf.value(folderId); }

    void exportFolder(qint64 folderId, const QString &path)
    {
        using Place = Assets::Place;
        readInBatches<Row, Place>(
            m_job.store.database, pageOfAssets, exportRowsAtOnce, Place(),
            [&](const Place &after) {
                return SqlValues{m_accountId, folderId, after.nameKey, after.guid};
            },
            [](const SqlRow &row) {
                return std::pair(
                    Row{row.text(0), row.text(1), row.text(2), row.integer(3), row.text(4)},
                    Place{row.text(5), row.text(0)});
            },
            [&](const Row &row, const Place &) {
                add(row, path);
                return true;
            });
    }

    void add(const Row &row, const QString &folder)
    {
        const QList<File> files =
            m_job.store.database.rows(listFiles, {m_accountId, row.guid}, [](const SqlRow &file) {
                return File{file.text(0), file.text(1)};
            });
        qint64 number = 0;
        for (const File &file : files) {
            // Named by the guid: names people give are not names every disk takes.
            const QString suffix = ++number > 1 ? QStringLiteral("-%1").arg(number) : QString();
            const QString path = QStringLiteral("assets/%1/%2%3%4")
                                     .arg(m_account, row.guid, suffix, safeExtension(file.name));
            m_job.bytes.append({m_accountId, file.sha, path});
            if (number == 1)
                m_assets.add({m_account, row.guid, folder, row.name, row.detail, path, file.name,
                              timeText(row.createdAt), m_job.logins.value(row.createdById)});
            else
                m_further.add({m_account, row.guid, path, file.name});
        }
        m_job.count(QStringLiteral("assets"));
    }

    ExportJob &m_job;
    qint64 m_accountId;
    QString m_account;
    CsvWriter &m_assets;
    CsvWriter &m_further;
    QHash<qint64, QString> m_pathOf;
    QList<std::pair<qint64, QString>> m_paths; ///< parents first
};

void exportBlob(ExportJob &job, const ExportJob::Bytes &bytes)
{
    constexpr qint64 pieceBytes = 256 * 1024;
    const auto source = job.store.blobs.open({bytes.accountId, bytes.sha});
    if (!source)
        throw ExportError(QStringLiteral("the bytes of %1 are not there.").arg(bytes.path));
    const auto target = job.folder.open(bytes.path);
    QXSC::Checksum checksum;
    qint64 done = 0;
    for (;;) {
        const QByteArray piece = source->read(done, pieceBytes);
        if (piece.isEmpty())
            break;
        done += piece.size();
        checksum.add(piece.constData(), static_cast<std::size_t>(piece.size()));
        writeAll(*target, piece);
    }
    closeWhole(*target);
    if (QString::fromLatin1(checksum.hex()) != bytes.sha)
        throw ExportError(QStringLiteral("the bytes of %1 are damaged.").arg(bytes.path));
}

} // namespace

void exportAssets(ExportJob &job)
{
    const QString account = QStringLiteral("account");
    const QString folder = QStringLiteral("folder");
    const QString guid = QStringLiteral("guid");
    const QString file = QStringLiteral("file");
    const QString fileName = QStringLiteral("fileName");
    CsvWriter folders(job.folder, QStringLiteral("asset-folders.csv"), {account, folder});
    CsvWriter rights(job.folder, QStringLiteral("asset-rights.csv"),
                     {account, folder, QStringLiteral("user"), QStringLiteral("letters")});
    CsvWriter assets(job.folder, QStringLiteral("assets.csv"),
                     {account, guid, folder, QStringLiteral("name"), QStringLiteral("description"),
                      file, fileName, QStringLiteral("created"), QStringLiteral("createdBy")});
    CsvWriter further(job.folder, QStringLiteral("asset-files.csv"),
                      {account, guid, file, fileName});
    for (const Account &one : std::as_const(job.accounts)) {
        AccountAssets part(job, one.accountId, assets, further);
        part.exportFolders(folders);
        part.exportRights(rights);
        part.exportAssets();
    }
    folders.finish();
    rights.finish();
    assets.finish();
    further.finish();
}

void exportBytes(ExportJob &job)
{
    qint64 done = 0;
    for (const ExportJob::Bytes &bytes : std::as_const(job.bytes)) {
        exportBlob(job, bytes);
        tell(job.options.progress, QStringLiteral("files"), ++done, job.bytes.size());
    }
}

} // namespace Zel
