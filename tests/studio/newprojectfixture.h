// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/studio/projectspagefixture.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>
#include <QTreeWidget>

/// A recording client that also keeps what projects were asked for, guids included.
class ProjectMaker : public ZelTest::RecordingClient
{
public:
    QXSC::ProjectRecordPtr createProject(const QXSC::NewProject &project) override
    {
        asked.append(project);
        const QXSC::ProjectRecordPtr made = RecordingClient::createProject(project);
        return answersNothing ? nullptr : made;
    }

    QList<QXSC::NewProject> asked;
    bool answersNothing = false;
};

inline QString definition(const QString &version, const QString &field, const QString &value)
{
    return QStringLiteral("<WIZARD studio_version=\"%1\"><CUSTOMFIELDS><FIELD name=\"%2\">%3"
                          "</FIELD></CUSTOMFIELDS></WIZARD>")
        .arg(version, field, value);
}

inline QXSC::ThemeRecord makeTheme(const QString &name, const QString &xml)
{
    QXSC::ThemeRecord theme;
    theme.guid = QStringLiteral("guid of ") + name;
    theme.name = name;
    theme.description = name + QStringLiteral(" described");
    theme.wizardXml = xml;
    return theme;
}

/// The projects page with two themes that can be used and five that cannot, each for a reason of
/// its own.
class NewProjectFixture
{
public:
    NewProjectFixture()
        : page(client, client, errors, settings, &window)
    {
        client.types = {{QStringLiteral("webcast"), QStringLiteral("Webcasts")},
                        {QStringLiteral("course"), QStringLiteral("Courses")}};
        client.projects =
            ZelTest::projectList({makeProject("g-1", "Delta"), makeProject("g-2", "Alpha")});
        QXSC::ThemeRecord stage = makeTheme("Stage", usable());
        stage.templates = ZelTest::themeTemplates({{"key", "version", true}});
        client.templates.insert({"key", "version"}, std::make_shared<QXSC::TemplateRecord>());
        client.themeLists[full()] =
            ZelTest::themeList({makeTheme("Plain", usable()), stage,
                                makeTheme("Late", definition("9.1.0", "type", "video")),
                                makeTheme("Odd", definition("soon", "type", "video")),
                                makeTheme("Bare", definition("0.0.1", "mood", "video")),
                                makeTheme("Slides", definition("0.0.1", "type", "slides")),
                                makeTheme("Broken", "<WIZARD"), makeTheme("Draft", {})});
        client.themeLists[QStringLiteral("getUserThemeList_Array")] =
            ZelTest::themeList({makeTheme("Mine", usable())});
        window.resize(1200, 800);
        page.resize(1200, 800);
        projects = page.findChild<Zel::ListView *>(QStringLiteral("projectList"));
        StudioTesting::show(window);
        errors.attempt([this] { page.open(); });
        page.setFocus();
        client.takeCalls();
    }

    static QString full() { return QStringLiteral("getFullThemeList_Array"); }

    static QString usable() { return definition("0.0.1", "type", "video"); }

    Zel::ListView &themes() const
    {
        return *StudioTesting::child<Zel::ListView>(page, "ThemeListView");
    }

    bool isShown(const char *name) const { return StudioTesting::child(page, name)->isVisible(); }

    QPushButton &button(const char *name) const
    {
        return *StudioTesting::child<QPushButton>(page, name);
    }

    QString text(const char *label) const
    {
        return StudioTesting::child<QLabel>(page, label)->text();
    }

    QString name() const { return StudioTesting::child<QLineEdit>(page, "newName")->text(); }

    void start() const { StudioTesting::click(page, "newProject"); }

    void clickTheme(qsizetype row) const
    {
        QTest::mouseClick(themes().viewport(), Qt::LeftButton, {}, themes().cellRect(row).center());
    }

    /// With a theme chosen and a name typed, in the second step.
    void fillIn() const
    {
        start();
        clickTheme(1);
        StudioTesting::click(page, "toProjectForm");
        StudioTesting::type(page, "newName", QStringLiteral("Spring"));
    }

    QString selectedProject() const
    {
        return projects->selectedRow() < 0 ? QString() : projects->text(projects->selectedRow());
    }

    Studio::Settings settings;
    Studio::ErrorCenter errors;
    ProjectMaker client;
    QWidget window;
    Studio::ProjectsPage page;
    Zel::ListView *projects;
};
