// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/signintour.h"

#include "studio/sampleworkspace.h"
#include "studio/tour/touractor.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace Studio {

namespace {

QString personWith(int accounts)
{
    const QString note = accounts == 0 ? QStringLiteral("no account") : QString::number(accounts);
    for (const SamplePerson &person : samplePeople(sampleFolder())) {
        if (person.note.startsWith(note))
            return QStringLiteral("samplePerson_") + person.userName;
    }
    throw TourFailure(QStringLiteral("the sample has nobody with %1 accounts").arg(accounts));
}

} // namespace

void tourSignIn(TourActor &actor)
{
    actor.waitFor(QStringLiteral("the service"), [&] {
        return actor.isShown(QStringLiteral("login")) || actor.isShown(QStringLiteral("errorBar"));
    });
    actor.expect(!actor.isShown(QStringLiteral("errorBar")),
                 QStringLiteral("the service on this computer to start"));
    actor.shoot(QStringLiteral("Sign in"));

    actor.type(QStringLiteral("qxPassword"), QStringLiteral("not the password"));
    actor.press(Qt::Key_Return);
    actor.waitFor(QStringLiteral("the refusal"), [&] {
        return actor.find<QLabel>(QStringLiteral("signInMessage"))
            .text()
            .contains(QLatin1String("did not accept"));
    });
    actor.shoot(QStringLiteral("Sign in refused"));

    actor.click(personWith(0));
    actor.click(QStringLiteral("login"));
    actor.expect(actor.find<QComboBox>(QStringLiteral("accountsList")).count() == 0,
                 QStringLiteral("an empty account list"));
    actor.shoot(QStringLiteral("Signed in without an account"));
    actor.click(QStringLiteral("signInBack"));

    actor.click(personWith(2));
    actor.click(QStringLiteral("login"));
    actor.expect(actor.find<QComboBox>(QStringLiteral("accountsList")).count() == 2,
                 QStringLiteral("two accounts to choose from"));
    actor.shoot(QStringLiteral("Choose an account"));
    actor.click(QStringLiteral("selectAccount"));
}

} // namespace Studio
