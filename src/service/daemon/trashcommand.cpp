// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/peoplecalls.h"
#include "service/daemon/program.h"
#include "service/store/store.h"

#include <QTimeZone>

namespace Zel::Service {

namespace {

QString shownTime(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, QTimeZone::utc()).toString(Qt::ISODate);
}

void show(const TrashedAsset &asset)
{
    print(QStringLiteral("%1  account %2  deleted %3  %4")
              .arg(asset.guid)
              .arg(asset.accountId)
              .arg(shownTime(asset.deletedAt), oneLine(asset.name)));
}

int list(Store &store)
{
    const QList<TrashedAsset> all = store.assets.trash();
    for (const TrashedAsset &asset : all)
        show(asset);
    print(QStringLiteral("%1 in the trash").arg(all.size()));
    return ExitFine;
}

int restore(Store &store, const QStringList &guids)
{
    for (const QString &guid : guids) {
        if (store.assets.restore(guid.toLower()) != Assets::Outcome::Done)
            throw std::runtime_error(
                QStringLiteral("no asset %1 lies in the trash.").arg(guid).toStdString());
        print(QStringLiteral("restored %1").arg(guid));
    }
    return ExitFine;
}

/// Says what `purge` would remove.
int listPurged(Store &store, qint64 deletedBefore)
{
    qint64 count = 0;
    const QList<TrashedAsset> all = store.assets.trash();
    for (const TrashedAsset &asset : all) {
        if (asset.deletedAt >= deletedBefore)
            continue;
        show(asset);
        ++count;
    }
    print(QStringLiteral("%1 would be removed for good; nothing was: this was a dry run.")
              .arg(count));
    return ExitFine;
}

int purge(Store &store, bool all, bool dryRun)
{
    const qint64 now = store.clock();
    const qint64 deletedBefore = all ? now + 1 : now - Assets::trashTimeMs;
    if (dryRun)
        return listPurged(store, deletedBefore);
    store.uploads.forgetExpired();
    const qint64 count = store.assets.purge(deletedBefore);
    print(QStringLiteral("%1 removed for good").arg(count));
    return ExitFine;
}

} // namespace

int trashCommand(const QStringList &arguments)
{
    QCommandLineParser parser;
    addFilesOption(parser);
    parser.addOption({QStringLiteral("all"),
                      QStringLiteral("With purge: also what was deleted less than 30 days ago.")});
    parser.addOption({QStringLiteral("dry-run"),
                      QStringLiteral("With purge: says what would be removed; removes nothing.")});
    parser.addPositionalArgument(
        QStringLiteral("list|restore|purge"),
        QStringLiteral("What to do; restore takes the assets' guids."),
        QStringLiteral("list | restore GUID... | purge [--all] [--dry-run]"));
    parseCommand(parser, QStringLiteral("trash"),
                 QStringLiteral("Deleted assets: lists them, puts them back, or removes for good "
                                "what was deleted more than 30 days ago."),
                 arguments);
    const QStringList words = parser.positionalArguments();
    const QString what = words.value(0);
    const bool restores = what == QLatin1String("restore");
    const bool isAlone =
        words.size() == 1 && (what == QLatin1String("list") || what == QLatin1String("purge"));
    if (!restores && !isAlone)
        throw UsageError(QStringLiteral("trash takes list, restore GUID... or purge."));
    const bool dryRun = parser.isSet(QStringLiteral("dry-run"));
    if (dryRun && what != QLatin1String("purge"))
        throw UsageError(QStringLiteral("--dry-run goes with purge."));
    if (restores && words.size() == 1)
        throw UsageError(QStringLiteral("say which asset to restore."));
    Database database(databaseAddress(parser));
    database.open();
    makeReady(database);
    Store store(database, PasswordHasher::Cost::Interactive, systemClock(),
                blobPlace(parser, database));
    if (restores)
        return restore(store, words.mid(1));
    if (what == QLatin1String("list"))
        return list(store);
    return purge(store, parser.isSet(QStringLiteral("all")), dryRun);
}

} // namespace Zel::Service
