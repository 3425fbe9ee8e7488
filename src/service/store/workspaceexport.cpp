// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/workspaceexport.h"

#include "service/store/contenttype.h"
#include "service/store/exportjob.h"
#include "service/store/store.h"
#include "service/store/tableschema.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QUuid>

#include <algorithm>

namespace Zel {

namespace {

const SqlText countTrash(R"sql(
    SELECT COUNT(*) FROM asset WHERE account_id = $1 AND deleted_at IS NOT NULL
)sql");

const SqlText countKeys(R"sql(
    SELECT COUNT(*) FROM deployment WHERE account_id = $1 AND key_hash IS NOT NULL
)sql");

QList<Account> accountsOf(Store &store, const QList<qint64> &wanted)
{
    QList<Account> all = store.accounts.all();
    for (const qint64 number : wanted) {
        const bool isThere = std::any_of(all.begin(), all.end(), [number](const Account &one) {
            return one.accountId == number;
        });
        if (!isThere)
            throw ExportError(QStringLiteral("there is no account %1.").arg(number));
    }
    if (!wanted.isEmpty())
        erase_if(all, [&wanted](const Account &one) { return !wanted.contains(one.accountId); });
    return all;
}

qint64 sumOf(ExportJob &job, const SqlText &text)
{
    qint64 sum = 0;
    for (const Account &account : std::as_const(job.accounts))
        sum += job.store.database
                   .row(text, {account.accountId}, [](const SqlRow &row) { return row.integer(0); })
                   .value_or(0);
    return sum;
}

} // namespace

void ExportJob::count(const QString &kind, qint64 more)
{
    const auto same =
        std::find_if(report.counts.begin(), report.counts.end(),
                     [&kind](const ExportReport::Count &one) { return one.kind == kind; });
    if (same == report.counts.end())
        report.counts.append({kind, more});
    else
        same->count += more;
}

void ExportJob::writeJson(const QString &path, const QJsonArray &records)
{
    folder.write(path, QJsonDocument(records).toJson());
}

QString timeText(const std::optional<qint64> &time)
{
    if (!time)
        return QString();
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(*time, Qt::UTC);
    const int year = moment.date().year();
    if (year < 1 || year > 9999)
        throw ExportError(QStringLiteral("a time of the year %1 cannot be written.").arg(year));
    const bool isWhole = *time % 1000 == 0;
    return moment.toString(isWhole ? Qt::ISODate : Qt::ISODateWithMs);
}

QString flagText(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

QString idText(const QByteArray &id)
{
    return QUuid::fromRfc4122(id).toString(QUuid::WithoutBraces);
}

QString safeExtension(const QString &fileName)
{
    constexpr qsizetype longest = 10;
    const QString extension = extensionOf(fileName);
    const bool isSafe = std::all_of(extension.begin(), extension.end(), [](QChar c) {
        return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) ||
               (c >= QLatin1Char('0') && c <= QLatin1Char('9'));
    });
    return extension.isEmpty() || !isSafe || extension.size() > longest
               ? QString()
               : QLatin1Char('.') + extension;
}

void noteLeftOut(ExportJob &job)
{
    QStringList &left = job.report.leftOut;
    if (!job.options.passwordHashes)
        left << QStringLiteral("Passwords are not written: people get new ones with \"user "
                               "password\" where this is imported.");
    if (const qint64 keys = sumOf(job, countKeys); keys > 0)
        left << QStringLiteral("The keys of players are not written, because only their hashes are "
                               "known: %1 deployment(s) need a new one in deployments.csv.")
                    .arg(keys);
    if (const qint64 trash = sumOf(job, countTrash); trash > 0)
        left << QStringLiteral("What lies in the trash is not written: %1 asset(s).").arg(trash);
}

ExportReport exportWorkspace(Store &store, const QString &place, const ExportOptions &options)
{
    ExportFolder folder(place);
    ExportReport report;
    ExportJob job{store, options, folder, report, {}, {}, {}};
    const bool areInDatabase = store.blobs.kind() == BlobKind::Database;
    // Nothing in the folder of files is cleared away before its bytes have been copied. What lies
    // in the database stays readable as long as the snapshot does.
    const auto hold = store.blobs.hold(BlobHold::Mode::Store);
    store.database.snapshot([&] {
        allowLongWork(store.database);
        folder.clear();
        report = {};
        job.logins.clear();
        job.bytes.clear();
        job.accounts = accountsOf(store, options.accounts);
        exportPeople(job);
        exportThemes(job);
        exportDataRecords(job);
        exportProjects(job);
        exportAssets(job);
        exportDeployments(job);
        noteLeftOut(job);
        if (areInDatabase)
            exportBytes(job);
    });
    if (!areInDatabase)
        exportBytes(job);
    folder.finish();
    return report;
}

} // namespace Zel
