// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A small host of the project list: it chooses the columns, loads the list and hears what is
// chosen.

#include "projects/projectlist.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

using QXSC::ProjectRecordPtr;
using ZelWebServiceControls::ProjectList;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);

    // A client that plays a service with two projects; see the example "signin" for the real one.
    QXSC::ProjectRecord launch, town;
    launch.guid = QStringLiteral("launch");
    launch.name = QStringLiteral("Product launch");
    launch.hasEventDate = launch.published = true;
    launch.eventDate = QDateTime(QDate(2027, 3, 9), QTime(15, 0));
    town.guid = QStringLiteral("town");
    town.name = QStringLiteral("Town hall meeting");
    ZelTest::RecordingClient client;
    client.projects = ZelTest::projectList({launch, town});

    QWidget form;
    ProjectList list(&form);
    QLabel message(&form);
    QVBoxLayout column(&form);
    column.addWidget(&list);
    column.addWidget(&message);

    // Columns follow the switches when a property bag is read; a .ui file does just this.
    Zel::PropertyBag bag;
    bag.write(QStringLiteral("ShowModiffied"), false);
    bag.write(QStringLiteral("ShowPublished"), true);
    list.readPropertyBag(bag);

    QObject::connect(&list, &ProjectList::ProjectClick,
                     [&](const ProjectRecordPtr &pi) { message.setText(pi->name); });
    QObject::connect(&list, &ProjectList::ProjectDblClick, [&](const ProjectRecordPtr &pi) {
        message.setText(QStringLiteral("Open ") + pi->name);
    });

    form.show();
    list.Init(&client, QStringLiteral("webcast")); // throws Zel::RuntimeError when the call fails
    list.SelectProject(QStringLiteral("town"));
    if (QApplication::arguments().contains(QStringLiteral("--smoke")))
        QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}
