// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listview.h"
#include "projects/projectlist.h"
#include "studio/errorcenter.h"
#include "studio/projectspage.h"
#include "studio/recorddrafts.h"
#include "studio/settings.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/recordingclient.h"

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>

inline QXSC::ProjectRecord makeProject(const QString &guid, const QString &name,
                                       const QString &description = {},
                                       const QString &author = QStringLiteral("Maja"),
                                       bool published = false)
{
    QXSC::ProjectRecord project;
    project.guid = guid;
    project.name = name;
    project.description = description;
    project.createdBy = author;
    project.published = published;
    project.hasCreated = true;
    project.created = QDateTime(QDate(2026, 3, 1), QTime(10, 0)).addDays(name.size());
    return project;
}

/// The projects page in a window of its own, over a recording client with two types and four
/// projects. The settings are those of this computer's (the test's) home.
class ProjectsPageFixture
{
public:
    ProjectsPageFixture()
        : page(client, client, errors, settings, drafts, &window)
    {
        client.types = {{QStringLiteral("webcast"), QStringLiteral("Webcasts")},
                        {QStringLiteral("course"), QStringLiteral("Courses")}};
        client.projects = ZelTest::projectList(
            {makeProject("g-1", "Delta", "A river mouth", "Tomas"),
             makeProject("g-2", "Alpha launch", "The first", "Maja", true),
             makeProject("g-3", "Beta", "Second try", "Maja"),
             makeProject("g-4", "Gamma rays", "From space, first light", "Ines")});
        window.resize(1200, 600);
        page.resize(1200, 600);
        list = page.findChild<Zel::ListView *>(QStringLiteral("projectList"));
        projects = page.findChild<ZelWebServiceControls::ProjectList *>(QStringLiteral("projects"));
        StudioTesting::show(window);
    }

    void open()
    {
        errors.attempt([this] { page.open(); });
        client.takeCalls();
    }

    /// The names as they stand on screen.
    QStringList names() const
    {
        QStringList shown;
        for (qsizetype position = 0; position < list->filteredCount(); ++position)
            shown << list->text(list->rowAt(position));
        return shown;
    }

    QString text(const char *label) const
    {
        return StudioTesting::child<QLabel>(page, label)->text();
    }

    void clickLine(qsizetype row) const
    {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->cellRect(row).center());
    }

    void clickHeader(int column) const
    {
        auto *header = list->findChild<QHeaderView *>();
        QTest::mouseClick(
            header->viewport(), Qt::LeftButton, {},
            QPoint(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                   header->height() / 2));
    }

    /// Drags the right edge of a column.
    void dragColumn(int column, int pixels) const
    {
        auto *header = list->findChild<QHeaderView *>();
        const QPoint edge(header->sectionViewportPosition(column) + header->sectionSize(column) - 1,
                          header->height() / 2);
        QTest::mousePress(header->viewport(), Qt::LeftButton, {}, edge);
        QTest::mouseMove(header->viewport(), edge + QPoint(pixels / 2, 0));
        QTest::mouseMove(header->viewport(), edge + QPoint(pixels, 0));
        QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, edge + QPoint(pixels, 0));
    }

    void chooseType(const QString &caption)
    {
        auto *box = StudioTesting::child<QComboBox>(page, "projectType");
        box->setFocus();
        QTest::keyClicks(box, caption.left(1));
    }

    QString typeShown() const
    {
        return StudioTesting::child<QComboBox>(page, "projectType")->currentText();
    }

    Studio::Settings settings;
    Studio::ErrorCenter errors;
    Studio::RecordDrafts drafts;
    ZelTest::RecordingClient client;
    QWidget window;
    Studio::ProjectsPage page;
    Zel::ListView *list;
    ZelWebServiceControls::ProjectList *projects;
};
