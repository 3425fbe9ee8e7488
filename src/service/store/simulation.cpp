// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/store/simulation.h"

#include "service/store/audience.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace Zel {

namespace {

constexpr qint64 dayMs = 86'400'000;
constexpr qint64 minuteMs = 60'000;
constexpr qsizetype rowsAtOnce = 20'000;

/// Chance that is the same on every machine; the distributions of the standard library are not.
class Dice
{
public:
    explicit Dice(qint64 seed)
        : m_engine(static_cast<quint64>(seed))
    {
    }

    /// From 0 to below 1.
    double share() { return static_cast<double>(m_engine() >> 11) * 0x1.0p-53; }

    qint64 below(qint64 end) { return static_cast<qint64>(share() * static_cast<double>(end)); }

    /// Around 0, mostly between -1 and 1.
    double normal()
    {
        double sum = -6;
        for (int i = 0; i < 12; ++i)
            sum += share();
        return sum;
    }

    QByteArray id()
    {
        QByteArray bytes(16, 0);
        for (char &byte : bytes)
            byte = static_cast<char>(m_engine() >> 56);
        return bytes;
    }

    template <std::size_t Count>
    QString pick(const std::array<const char *, Count> &words)
    {
        return QString::fromLatin1(words.at(static_cast<std::size_t>(below(Count))));
    }

private:
    std::mt19937_64 m_engine;
};

constexpr std::array browsers{"IE", "IE", "IE", "NS", "FF", "FF"};
constexpr std::array versions{"1.3", "1.3", "1.5", "1.5", "1.2"};
constexpr std::array depths{"24", "24", "32", "32", "32", "16"};

/// Every day has its event at 15:00; two of three come for one, the others when they like.
qint64 arrivalOf(Dice &dice, const SimulationPlan &plan)
{
    const qint64 day = dice.below(plan.days) * dayMs;
    const double minutes =
        dice.share() < 0.66 ? 15 * 60 + dice.normal() * 14 : 13.5 * 60 + dice.normal() * 200;
    const qint64 at = day + static_cast<qint64>(minutes * minuteMs) + dice.below(minuteMs);
    return plan.beginsAt + std::clamp<qint64>(at, 0, plan.days * dayMs - 1);
}

QString userIdOf(qint64 number)
{
    return QStringLiteral("person-%1").arg(number);
}

void addViews(QList<PageView> &views, Dice &dice, const SimulationPlan &plan, qint64 person)
{
    PageView view;
    view.userId = userIdOf(person);
    view.browserType = dice.pick(browsers);
    view.jsVersion = dice.pick(versions);
    view.screenDepth = dice.pick(depths);
    view.at = arrivalOf(dice, plan);
    const qint64 last = plan.beginsAt + plan.days * dayMs - 1;
    for (qint64 left = 1 + dice.below(12); left > 0; --left) {
        view.id = dice.id();
        view.seconds = 2 + static_cast<qint64>(std::exp(dice.share() * 7));
        view.closed = dice.share() < 0.93;
        views << view;
        view.at = std::min(last, view.at + (view.seconds + dice.below(40)) * 1000);
    }
}

} // namespace

SimulatedCount countSimulated(const SimulationPlan &plan)
{
    Dice dice(plan.seed);
    SimulatedCount count{plan.registrants(), 0};
    for (qint64 person = 0; person < plan.participants; ++person) {
        QList<PageView> views;
        addViews(views, dice, plan, person);
        count.views += views.size();
    }
    return count;
}

SimulatedCount simulate(Audience &audience, const DeploymentRef &deployment,
                        const SimulationPlan &plan, const Progress &progress)
{
    SimulatedCount count;
    Dice dice(plan.seed);
    QList<PageView> views;
    for (qint64 person = 0; person < plan.participants; ++person) {
        addViews(views, dice, plan, person);
        tell(progress, QStringLiteral("participants"), person + 1, plan.participants);
        if (views.size() < rowsAtOnce && person + 1 < plan.participants)
            continue;
        count.views += audience.takeViews(deployment, views).added;
        views.clear();
    }
    // The last registrants are those who do not come.
    const qint64 registrants = plan.registrants();
    const qint64 first = plan.participants - plan.participants * 2 / 5;
    QList<Registration> rows;
    for (qint64 number = 0; number < registrants; ++number) {
        Registration row;
        row.id = dice.id();
        row.userId = userIdOf(first + number);
        row.firstName = QStringLiteral("First%1").arg(number);
        row.lastName = QStringLiteral("Last%1").arg(number);
        row.email = QStringLiteral("person%1@example.org").arg(number);
        row.at = plan.beginsAt - dice.below(20 * dayMs);
        rows << row;
        tell(progress, QStringLiteral("registrants"), number + 1, registrants);
        if (rows.size() < rowsAtOnce && number + 1 < registrants)
            continue;
        count.registrants += audience.takeRegistrations(deployment, rows).added;
        rows.clear();
    }
    return count;
}

} // namespace Zel
