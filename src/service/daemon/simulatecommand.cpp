// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/store/simulation.h"
#include "service/store/store.h"

#include <QUuid>

#include <limits>
#include <stdexcept>

namespace Zel::Service {

namespace {

qint64 numberOf(const QCommandLineParser &parser, const char *name, qint64 least, qint64 most)
{
    bool ok = false;
    const qint64 number = parser.value(QLatin1String(name)).toLongLong(&ok);
    if (!ok || number < least || number > most)
        throw UsageError(QStringLiteral("--%1 is a whole number from %2 to %3.")
                             .arg(QLatin1String(name))
                             .arg(least)
                             .arg(most));
    return number;
}

void addNumber(QCommandLineParser &parser, const char *name, const QString &text, qint64 fallback)
{
    parser.addOption(
        {QLatin1String(name), text, QStringLiteral("number"), QString::number(fallback)});
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
    parseCommand(parser, QStringLiteral("simulate"),
                 QStringLiteral("Makes a deployment with a made-up audience, for trying things out "
                                "and measuring."),
                 arguments);
    plan.participants = numberOf(parser, "participants", 1, SimulationPlan::mostParticipants);
    plan.days = numberOf(parser, "days", 1, SimulationPlan::mostDays);
    plan.seed = numberOf(parser, "seed", 0, std::numeric_limits<qint64>::max());
    const qint64 account = numberOf(parser, "account", 1, std::numeric_limits<qint32>::max());
    const QString project = parser.value(QStringLiteral("project")).toLower();
    Database database(databaseAddress(parser));
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
    database.tx([&] { store.deployments.put(account, deployment); });
    const SimulatedCount count =
        simulate(store.audience, store.deployments.find(account, deployment.guid).value(), plan);
    print(QStringLiteral("deployment %1: %2 participants, %3 registrants, %4 page views")
              .arg(deployment.guid)
              .arg(plan.participants)
              .arg(count.registrants)
              .arg(count.views));
    return ExitFine;
}

} // namespace Zel::Service
