// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// A small host of the theme list: it says what it can do, hears which theme is chosen, and reads
// the record behind a line of the control's list of templates.

#include "themes/themelist.h"
#include "platform/widgets/listview.h"
#include "testsupport/recordingclient.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

using ZelWebServiceControls::ThemeList;

int main(int argc, char **argv)
{
    QApplication app(argc, argv);

    // A client that plays a service with two themes; the second needs a later version than ours.
    QXSC::ThemeRecord blue, later;
    blue.name = QStringLiteral("Blue stage");
    blue.wizardXml = QStringLiteral("<WIZARD studio_version='3.0.0'><CUSTOMFIELDS>"
                                    "<FIELD name='type'>video</FIELD></CUSTOMFIELDS></WIZARD>");
    blue.templates = ZelTest::themeTemplates({{QStringLiteral("page"), QStringLiteral("1"), true}});
    later.name = QStringLiteral("Not shown");
    later.wizardXml = QStringLiteral("<WIZARD studio_version='4.0.0'/>");
    ZelTest::RecordingClient client;
    client.themeLists[QStringLiteral("getFullThemeList_Array")] = ZelTest::themeList({blue, later});
    client.templates[{QStringLiteral("page"), QStringLiteral("1")}] =
        std::make_shared<QXSC::TemplateRecord>(
            QXSC::TemplateRecord{QStringLiteral("Event page"), QStringLiteral("What guests see")});

    QWidget form;
    ThemeList themes(&form);
    QLabel message(&form);
    QVBoxLayout column(&form);
    column.addWidget(&themes);
    column.addWidget(&message);

    QObject::connect(&themes, &ThemeList::ThemeSelected, [&] {
        message.setText(themes.getSelectedTheme().value<QXSC::ThemeRecordPtr>()->name);
    });
    auto *templates = themes.findChild<Zel::ListView *>(QStringLiteral("TemplateListView"));
    QObject::connect(templates, &Zel::ListView::lineClicked, [&](qsizetype row) {
        message.setText(templates->tag(row).value<QXSC::TemplateRecordPtr>()->description);
    });

    form.show();
    themes.Init(&client, QStringLiteral("3.2.10"), QStringLiteral("type:video,audio"));
    if (QApplication::arguments().contains(QStringLiteral("--smoke")))
        QTimer::singleShot(0, &app, &QApplication::quit);
    return QApplication::exec();
}
