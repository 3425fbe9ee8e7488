// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/store/store.h"

#include <QTimeZone>

namespace Zel::Service {

namespace {

QString shownTime(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, QTimeZone::utc()).toString(Qt::ISODate);
}

int list(Store &store)
{
    const QList<TrashedAsset> all = store.assets.trash();
    for (const TrashedAsset &asset : all)
        print(QStringLiteral("%1  account %2  deleted %3  %4")
                  .arg(asset.guid)
                  .arg(asset.accountId)
                  .arg(shownTime(asset.deletedAt), asset.name));
    print(QStringLiteral("%1 in the trash").arg(all.size()));
    return ExitFine;
}

int restore(Store &store, const QStringList &guids)
{
    if (guids.isEmpty())
        throw UsageError(QStringLiteral("say which asset to restore."));
    for (const QString &guid : guids) {
        if (store.assets.restore(guid.toLower()) != Assets::Outcome::Done)
            throw std::runtime_error(
                QStringLiteral("no asset %1 lies in the trash.").arg(guid).toStdString());
        print(QStringLiteral("restored %1").arg(guid));
    }
    return ExitFine;
}

int purge(Store &store, bool all)
{
    store.uploads.forgetExpired();
    const qint64 now = store.clock();
    const qint64 count = store.assets.purge(all ? now + 1 : now - Assets::trashTimeMs);
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
    parser.addPositionalArgument(QStringLiteral("list|restore|purge"),
                                 QStringLiteral("What to do; restore takes the assets' guids."),
                                 QStringLiteral("list | restore GUID... | purge [--all]"));
    parseCommand(parser, QStringLiteral("trash"),
                 QStringLiteral("Deleted assets: lists them, puts them back, or removes for good "
                                "what was deleted more than 30 days ago."),
                 arguments);
    const QStringList words = parser.positionalArguments();
    Database database(databaseAddress(parser));
    database.open();
    makeReady(database);
    Store store(database, PasswordHasher::Cost::Interactive, systemClock(),
                blobPlace(parser, database));
    if (words == QStringList{QStringLiteral("list")})
        return list(store);
    if (words.value(0) == QLatin1String("restore"))
        return restore(store, words.mid(1));
    if (words == QStringList{QStringLiteral("purge")})
        return purge(store, parser.isSet(QStringLiteral("all")));
    throw UsageError(QStringLiteral("trash takes list, restore GUID... or purge."));
}

} // namespace Zel::Service
