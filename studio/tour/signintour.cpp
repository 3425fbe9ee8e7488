// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/tour/signintour.h"

#include "studio/sampleworkspace.h"
#include "studio/tour/touractor.h"
#include "studio/trustedfile.h"

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

/// A service elsewhere may need a file of authorities: offered, chosen and given up.
void tourTrust(TourActor &actor)
{
    actor.type(QStringLiteral("qxUrl"), QStringLiteral("https://zel.example:8443"));
    actor.expect(actor.isShown(QStringLiteral("trustedFileButton")),
                 QStringLiteral("an offer to trust a certificate file"));
    actor.shoot(QStringLiteral("A service elsewhere"));
    actor.find<TrustedFile>(QStringLiteral("trustedFile"))
        .setFile(QStringLiteral("/etc/ssl/our company's own authorities of all its services.pem"));
    actor.shoot(QStringLiteral("A certificate file is trusted"));
    actor.click(QStringLiteral("trustedFileButton"));
    actor.type(QStringLiteral("qxUrl"), QString());
    actor.expect(!actor.isShown(QStringLiteral("trustedFileButton")),
                 QStringLiteral("nothing of certificates for this computer's own service"));
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
    tourTrust(actor);

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
