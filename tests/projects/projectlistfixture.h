// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listview.h"
#include "projects/projectlist.h"
#include "testsupport/errornumber.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"

#include "../platform/widgets/listtesting.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QTest>

/// A record with a guid and a name, "g1" and "Project 1".
inline QXSC::ProjectRecord project(int number)
{
    QXSC::ProjectRecord record;
    record.guid = QStringLiteral("g%1").arg(number);
    record.name = QStringLiteral("Project %1").arg(number);
    return record;
}

inline QList<QXSC::ProjectRecord> projectsNumbered(const QList<int> &numbers)
{
    QList<QXSC::ProjectRecord> records;
    for (const int number : numbers)
        records << project(number);
    return records;
}

/// The columns in their order.
enum Column
{
    Name,
    Description,
    Created,
    Modified,
    CreatedBy,
    EventDate
};

/// A record with a description.
inline QXSC::ProjectRecord described(int number, const QString &description)
{
    QXSC::ProjectRecord record = project(number);
    record.description = description;
    return record;
}

/// A record with a date of creation.
inline QXSC::ProjectRecord createdOn(int number, const QDateTime &created)
{
    QXSC::ProjectRecord record = project(number);
    record.hasCreated = created.isValid();
    record.created = created;
    return record;
}

/// A project list on a form of its own, not loaded yet, and a trail of what happens: every call,
/// event, error and unload request in order, each with the shape of the pointer over the control
/// and the number of lines at that moment.
class ProjectListFixture
{
public:
    ProjectListFixture()
        : list(new ZelWebServiceControls::ProjectList(&form))
        , m_modelTester(view().model(), QAbstractItemModelTester::FailureReportingMode::QtTest)
    {
        using ZelWebServiceControls::ProjectList;
        client.projects = ZelTest::projectList(projectsNumbered({1, 2, 3}));
        client.atCall = [this](const QString &call) { note(call); };
        QObject::connect(list, &ProjectList::ProjectClick,
                         [this](const QXSC::ProjectRecordPtr &pi) {
                             note(QStringLiteral("click ") + pi->guid);
                         });
        QObject::connect(list, &ProjectList::ProjectDblClick,
                         [this](const QXSC::ProjectRecordPtr &pi) {
                             note(QStringLiteral("double click ") + pi->guid);
                         });
        QObject::connect(list, &ProjectList::unloadRequested,
                         [this] { note(QStringLiteral("unload")); });
        QObject::connect(list, &ProjectList::runtimeError, [this](const Zel::RuntimeError &error) {
            note(QStringLiteral("error %1").arg(error.number()));
        });
        form.resize(1400, 400);
        list->resize(form.size());
        form.show();
        form.activateWindow();
    }

    ~ProjectListFixture()
    {
        // The trail must not be written to while the members go.
        delete list;
    }

    Q_DISABLE_COPY_MOVE(ProjectListFixture)

    void load() { list->Init(&client, QStringLiteral("webcast")); }

    void load(const QList<QXSC::ProjectRecord> &records)
    {
        client.projects = ZelTest::projectList(records);
        load();
        takeTrail();
    }

    Zel::ListView &view() const
    {
        return *list->findChild<Zel::ListView *>(QStringLiteral("projectList"));
    }

    /// A column's texts from top to bottom.
    QStringList shown(int column = 0) const { return ListTesting::shownTexts(view(), column); }

    /// The guids from top to bottom, in one text.
    QString order() const
    {
        QStringList guids;
        for (qsizetype position = 0; position < view().count(); ++position)
            guids << view().tag(view().rowAt(position)).value<QXSC::ProjectRecordPtr>()->guid;
        return guids.join(u' ');
    }

    QString selected() const
    {
        const QXSC::ProjectRecordPtr record = list->GetSelectedProject();
        return record ? record->guid : QStringLiteral("nothing");
    }

    QStringList takeTrail() { return std::exchange(trail, {}); }

    ZelTest::RecordingClient client;
    ZelTest::MessageBoxDriver boxes;
    QWidget form;
    QPointer<ZelWebServiceControls::ProjectList> list;
    QStringList trail;

private:
    void note(const QString &what)
    {
        const bool waits = list && list->cursor().shape() == Qt::WaitCursor;
        const QString pointer = waits ? QStringLiteral("hourglass") : QStringLiteral("arrow");
        trail << QStringLiteral("%1 | %2, %3 lines")
                     .arg(what, pointer)
                     .arg(list ? view().count() : -1);
    }

    QAbstractItemModelTester m_modelTester;
};
