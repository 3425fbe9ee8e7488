// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/widgets/listview.h"
#include "stats/statscontrol.h"
#include "testsupport/errornumber.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/recordingclient.h"

#include "../platform/widgets/listtesting.h"

#include <QAbstractItemModelTester>
#include <QDateTimeEdit>
#include <QFrame>
#include <QGroupBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>

/// A moment on 9 January 2007.
inline QDateTime onNinth(int hour, int minute = 0, int second = 0)
{
    return QDateTime(QDate(2007, 1, 9), QTime(hour, minute, second));
}

/// A person with all texts made from a number: "u1", "First1", "Last1", "u1@example.org".
inline QXSC::StatsUserPtr person(int number)
{
    QXSC::StatsUser user;
    user.UserID = QStringLiteral("u%1").arg(number);
    user.FirstName = QStringLiteral("First%1").arg(number);
    user.LastName = QStringLiteral("Last%1").arg(number);
    user.Email = QStringLiteral("u%1@example.org").arg(number);
    user.DateRegistered = QDateTime(QDate(2006, 12, 1), QTime(8, number % 60));
    return std::make_shared<QXSC::StatsUser>(user);
}

inline QXSC::ParticipantRecord participant(const QXSC::StatsUserPtr &user, bool registered = false,
                                           qint32 seconds = 0, const QDateTime &first = {},
                                           const QDateTime &last = {})
{
    return {user, registered, seconds, first, last};
}

inline QXSC::RegistrantRecord registrant(const QXSC::StatsUserPtr &user, bool participated = false,
                                         qint32 seconds = 0, const QDateTime &first = {},
                                         const QDateTime &last = {})
{
    return {user, participated, first, last, seconds};
}

inline QXSC::PageViewRecord pageView(const QXSC::StatsUserPtr &user, qint32 seconds = 0,
                                     const QDateTime &when = {}, bool closed = false)
{
    return {user, when, seconds, closed};
}

inline QXSC::QuestionRecord question(const QString &guid, const QString &status = {})
{
    QXSC::QuestionRecord record;
    record.QuestionGuid = guid;
    record.Status = status;
    return record;
}

/// Tabs in their order.
enum Tab
{
    Participants,
    Registrants,
    PageViews,
    Questions,
    Polls,
    Surveys
};

/// A statistics control on a form of its own, not bound yet, and a trail of every service call and
/// error in order. Its range is 9 January 2007 from 8 to 18 o'clock once it is bound.
class StatsFixture
{
public:
    StatsFixture()
        : stats(new ZelWebServiceControls::StatsControl(&form))
    {
        using ZelWebServiceControls::StatsControl;
        client.atCall = [this](const QString &call) {
            trail << call;
            if (atCall)
                atCall(call);
        };
        QObject::connect(stats, &StatsControl::runtimeError, [this](const Zel::RuntimeError &e) {
            trail << QStringLiteral("error %1").arg(e.number());
        });
        for (const char *name : {"participantList", "registrantList", "pageViewList", "qaListView"})
            new QAbstractItemModelTester(list(name).model(),
                                         QAbstractItemModelTester::FailureReportingMode::QtTest,
                                         &list(name));
        form.resize(1400, 700);
        stats->resize(form.size());
        form.show();
        form.activateWindow();
    }

    ~StatsFixture()
    {
        // The trail must not be written to while the members go.
        delete stats;
    }

    Q_DISABLE_COPY_MOVE(StatsFixture)

    void init() { stats->Init(&client, QStringLiteral("d1"), onNinth(8), onNinth(18)); }

    /// Binds the control and waits for the first report.
    void load()
    {
        init();
        QTRY_VERIFY(!timer().isActive());
        takeTrail();
    }

    template <typename Widget>
    Widget &child(const char *name) const
    {
        auto *widget = stats->findChild<Widget *>(QLatin1String(name));
        Q_ASSERT(widget);
        return *widget;
    }

    Zel::ListView &list(const char *name) const { return child<Zel::ListView>(name); }

    QString box(const char *name) const { return child<QLineEdit>(name).text(); }

    QTimer &timer() const { return child<QTimer>("Timer1"); }

    QPushButton &run() const { return child<QPushButton>("runReportCmd"); }

    QTabBar &tabs() const { return child<QTabBar>("reportsTabs"); }

    QFrame &frame(int tab) const
    {
        return child<QFrame>(qPrintable(QStringLiteral("reportsTabFrame_%1").arg(tab)));
    }

    void click(QPushButton &button) const { QTest::mouseClick(&button, Qt::LeftButton); }

    void click(const char *button) const { click(child<QPushButton>(button)); }

    void clickTab(int tab) const
    {
        QTest::mouseClick(&tabs(), Qt::LeftButton, {}, tabs().tabRect(tab).center());
    }

    /// The tabs whose frames are shown.
    QList<int> shownFrames() const
    {
        QList<int> shown;
        for (int tab = 0; tab < 6; ++tab) {
            if (!frame(tab).isHidden())
                shown << tab;
        }
        return shown;
    }

    QStringList takeTrail() { return std::exchange(trail, {}); }

    /// The names of the operations called since, without arguments.
    QStringList takeOperations()
    {
        QStringList names;
        for (const QString &entry : takeTrail())
            names << entry.section(u'(', 0, 0);
        return names;
    }

    /// Does something in the next turn of the message loop.
    static void inTheYield(const std::function<void()> &act) { QTimer::singleShot(0, qApp, act); }

    ZelTest::RecordingClient client;
    std::function<void(const QString &)> atCall;
    ZelTest::MessageBoxDriver boxes;
    QWidget form;
    QPointer<ZelWebServiceControls::StatsControl> stats;
    QStringList trail;
};
