// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A small host of the statistics control: it shows one event and hears what went wrong.

#include "stats/statscontrol.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

using ZelWebServiceControls::StatsControl;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);

    // A client that plays a service with one viewer; see the example "signin" for the real one.
    QXSC::StatsUser mira;
    mira.UserID = QStringLiteral("mira");
    QXSC::ParticipantRecord participant;
    participant.User = std::make_shared<QXSC::StatsUser>(mira);
    participant.TimeSpent = 3725;
    participant.FirstViewed = QDateTime::currentDateTime().addSecs(-7200);
    participant.LastViewed = participant.FirstViewed.addSecs(4000);
    ZelTest::RecordingClient client;
    client.uniqueParticipants = 1;
    client.statistics = {{QStringLiteral("TotalPageHits"), 12},
                         {QStringLiteral("TotalPageViewTime"), 3725}};
    client.participants = ZelTest::recordList<QXSC::ParticipantRecord>({participant});

    QWidget form;
    auto *stats = new StatsControl(&form);
    auto *message = new QLabel(&form);
    auto *column = new QVBoxLayout(&form);
    column->addWidget(stats);
    column->addWidget(message);

    QObject::connect(stats, &StatsControl::runtimeError, [&](const Zel::RuntimeError &error) {
        message->setText(error.description());
        stats->Init(&client, QStringLiteral("launch")); // the way back after a failed report
    });

    form.show();
    stats->Init(&client, QStringLiteral("launch")); // the last day; the report follows by itself
    if (QApplication::arguments().contains(QStringLiteral("--smoke")))
        QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}
