// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/numberoption.h"
#include "service/daemon/program.h"
#include "service/daemon/progressline.h"
#include "service/store/migrations.h"
#include "service/store/simulation.h"
#include "service/store/store.h"
#include "service/store/tableschema.h"

#include <QUuid>

#include <limits>
#include <stdexcept>

namespace Zel::Service {

namespace {

void addNumber(QCommandLineParser &parser, const char *name, const QString &text, qint64 fallback)
{
    parser.addOption(
        {QLatin1String(name), text, QStringLiteral("number"), QString::number(fallback)});
}

qint64 numberOption(const QCommandLineParser &parser, const char *name, qint64 least, qint64 most)
{
    return numberIn(parser.value(QLatin1String(name)), QLatin1String("--") + QLatin1String(name),
                    least, most);
}

} // namespace

int simulateCommand(const QStringList &arguments)
{
    SimulationPlan plan;
    QCommandLineParser parser;
    addNumber(parser, "participants", QStringLiteral("How many look at pages."), plan.participants);
    addNumber(parser, "days", QStringLiteral("For how many days."), plan.days);
    addNumber(parser, "seed", QStringLiteral("The same number makes the same audience."),
              plan.seed);
    parser.addOption({QStringLiteral("account"), QStringLiteral("The account of the project."),
                      QStringLiteral("number")});
    parser.addOption({QStringLiteral("project"),
                      QStringLiteral("The project that gets the new deployment."),
                      QStringLiteral("guid")});
    parser.addOption(
        {QStringLiteral("dry-run"), QStringLiteral("Says what would be made; stores nothing.")});
    addQuietOption(parser);
    parseCommand(parser, QStringLiteral("simulate"),
                 QStringLiteral("Makes a deployment with a made-up audience, for trying things out "
                                "and measuring."),
                 arguments);
    if (!parser.positionalArguments().isEmpty())
        throw UsageError(QStringLiteral("simulate takes no further arguments."));
    plan.participants = numberOption(parser, "participants", 1, SimulationPlan::mostParticipants);
    plan.days = numberOption(parser, "days", 1, SimulationPlan::mostDays);
    plan.seed = numberOption(parser, "seed", 0, std::numeric_limits<qint64>::max());
    const qint64 account =
        accountNumberIn(parser.value(QStringLiteral("account")), QStringLiteral("--account"));
    const bool dryRun = parser.isSet(QStringLiteral("dry-run"));
    const QString project = parser.value(QStringLiteral("project")).toLower();
    Database database(databaseAddress(parser));
    if (dryRun)
        Migrations(database).requireCurrent();
    else
        makeReady(database);
    Store store(database);
    if (!store.projects.find(account, project))
        throw std::runtime_error(
            qPrintable(QStringLiteral("account %1 has no project %2.").arg(account).arg(project)));
    // It ends with the day that ended last.
    constexpr qint64 dayMs = 86'400'000;
    plan.beginsAt = (systemClock()() / dayMs - plan.days) * dayMs;
    const Deployment deployment{QUuid::createUuid().toString(QUuid::WithoutBraces), project,
                                QStringLiteral("Simulated audience %1").arg(plan.seed),
                                plan.beginsAt};
    if (dryRun) {
        const SimulatedCount would = countSimulated(plan);
        print(QStringLiteral("%1 participants, %2 registrants, %3 page views would be stored; "
                             "nothing was: this was a dry run.")
                  .arg(plan.participants)
                  .arg(would.registrants)
                  .arg(would.views));
        return ExitFine;
    }
    database.tx([&] { store.deployments.put(account, deployment); });
    ProgressLine line(isQuiet(parser));
    const SimulatedCount count =
        simulate(store.audience, store.deployments.find(account, deployment.guid).value(), plan,
                 line.progress());
    refreshPlans(database);
    line.clear();
    print(QStringLiteral("deployment %1: %2 participants, %3 registrants, %4 page views")
              .arg(deployment.guid)
              .arg(plan.participants)
              .arg(count.registrants)
              .arg(count.views));
    return ExitFine;
}

} // namespace Zel::Service
