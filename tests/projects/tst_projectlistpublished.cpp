// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "projectlistfixture.h"
#include "testsupport/testcase.h"

using QXSC::ServiceError;
using ZelTest::errorNumber;

namespace {

QList<QXSC::ProjectRecord> secondIsPublished()
{
    QList<QXSC::ProjectRecord> records = projectsNumbered({1, 2, 3});
    records[1].published = true;
    return records;
}

/// Counts the paint events of a widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget *widget) { widget->installEventFilter(this); }

    int count = 0;

    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

} // namespace

/// The marker of published projects.
class tst_ProjectListPublished : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isShownOnlyWhenSwitchedOn();
    void dependsOnTheSwitchAtTheLoad();
    void staysWithItsProjectThroughASort();
    void updateAsksForTheSelectedProject();
    void updateMarksAndUnmarks();
    void updateRepaintsAtOnce();
    void updateDoesNothingWhenSwitchedOff();
    void updateDoesNothingWithoutASelection();
    void updatePassesErrorsOn();
    void updateFailsOnceTheClientIsGone();
    void aLoadForgetsWhatAnUpdateSaid();

private:
    static QList<int> icons(const ProjectListFixture &f)
    {
        QList<int> result;
        for (int row = 0; row < f.view().count(); ++row)
            result << f.view().smallIcon(row);
        return result;
    }

    static QIcon icon(const ProjectListFixture &f, int row)
    {
        return f.view().indexOf(row).data(Qt::DecorationRole).value<QIcon>();
    }
};

void tst_ProjectListPublished::isShownOnlyWhenSwitchedOn()
{
    ProjectListFixture off;
    off.load(secondIsPublished());
    QCOMPARE(icons(off), QList<int>({0, 0, 0}));
    QVERIFY(icon(off, 1).isNull());

    ProjectListFixture on;
    on.list->setShowPublished(true);
    on.load(secondIsPublished());
    QCOMPARE(icons(on), QList<int>({0, 1, 0}));
    QVERIFY(icon(on, 0).isNull());
    const QImage marker = icon(on, 1).pixmap(16).toImage();
    QVERIFY(marker.pixelColor(8, 1).alpha() > 0);
    QVERIFY(marker.pixelColor(0, 0).alpha() == 0);
}

void tst_ProjectListPublished::dependsOnTheSwitchAtTheLoad()
{
    ProjectListFixture f;
    f.load(secondIsPublished());
    f.list->setShowPublished(true);
    QCOMPARE(icons(f), QList<int>({0, 0, 0}));
    f.list->Refresh();
    QCOMPARE(icons(f), QList<int>({0, 1, 0}));
    f.list->setShowPublished(false);
    QCOMPARE(icons(f), QList<int>({0, 1, 0}));
    f.list->Refresh();
    QCOMPARE(icons(f), QList<int>({0, 0, 0}));
}

void tst_ProjectListPublished::staysWithItsProjectThroughASort()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.client.published.insert(QStringLiteral("g1"), true);
    f.load(secondIsPublished());
    f.list->SelectProject(QStringLiteral("g1"));
    f.list->UpdateSelected();
    ListTesting::clickHeader(f.view(), 0);
    QCOMPARE(f.order(), QStringLiteral("g3 g2 g1"));
    QCOMPARE(icons(f), QList<int>({1, 1, 0}));
}

void tst_ProjectListPublished::updateAsksForTheSelectedProject()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.load(secondIsPublished());
    ListTesting::clickHeader(f.view(), 0);
    f.list->SelectProject(QStringLiteral("g3"));
    f.takeTrail();
    f.list->UpdateSelected();
    QCOMPARE(f.trail,
             QStringList{QStringLiteral("isProjectPublished(\"g3\", \"\") | arrow, 3 lines")});
    QCOMPARE(f.selected(), QStringLiteral("g3"));
}

void tst_ProjectListPublished::updateMarksAndUnmarks()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.load(secondIsPublished());
    f.client.published.insert(QStringLiteral("g3"), true);
    f.list->SelectProject(QStringLiteral("g3"));
    f.list->UpdateSelected();
    QCOMPARE(icons(f), QList<int>({0, 1, 1}));
    f.list->SelectProject(QStringLiteral("g2"));
    f.list->UpdateSelected();
    QCOMPARE(icons(f), QList<int>({0, 0, 1}));
}

void tst_ProjectListPublished::updateRepaintsAtOnce()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.load(secondIsPublished());
    f.list->SelectProject(QStringLiteral("g2"));
    QCoreApplication::processEvents();
    const PaintCounter paints(f.view().viewport());
    f.list->UpdateSelected();
    QVERIFY(paints.count > 0);
}

void tst_ProjectListPublished::updateDoesNothingWhenSwitchedOff()
{
    ProjectListFixture f;
    f.client.published.insert(QStringLiteral("g1"), true);
    f.load(secondIsPublished());
    f.list->SelectProject(QStringLiteral("g1"));
    f.takeTrail();
    f.list->UpdateSelected();
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(icons(f), QList<int>({0, 0, 0}));
}

void tst_ProjectListPublished::updateDoesNothingWithoutASelection()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.list->UpdateSelected();
    f.load(secondIsPublished());
    f.list->UpdateSelected();
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(icons(f), QList<int>({0, 1, 0}));
}

void tst_ProjectListPublished::updatePassesErrorsOn()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.load(secondIsPublished());
    f.list->SelectProject(QStringLiteral("g2"));
    f.takeTrail();
    f.client.failNext(QStringLiteral("isProjectPublished"),
                      ServiceError(ServiceError::Kind::Unavailable, QStringLiteral("Later.")));
    QVERIFY_THROWS_EXCEPTION(ServiceError, f.list->UpdateSelected());
    QCOMPARE(icons(f), QList<int>({0, 1, 0}));
    QCOMPARE(f.trail.size(), 1); // the call, and no error event
}

void tst_ProjectListPublished::updateFailsOnceTheClientIsGone()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    {
        ZelTest::RecordingClient shortLived;
        shortLived.projects = ZelTest::projectList(secondIsPublished());
        f.list->Init(&shortLived);
    }
    f.list->UpdateSelected(); // nothing is selected
    f.list->SelectProject(QStringLiteral("g2"));
    QCOMPARE(errorNumber([&f] { f.list->UpdateSelected(); }), 91);
    QCOMPARE(icons(f), QList<int>({0, 1, 0}));
}

void tst_ProjectListPublished::aLoadForgetsWhatAnUpdateSaid()
{
    ProjectListFixture f;
    f.list->setShowPublished(true);
    f.load(secondIsPublished());
    f.list->SelectProject(QStringLiteral("g2"));
    f.list->UpdateSelected();
    QCOMPARE(icons(f), QList<int>({0, 0, 0}));
    f.list->Refresh();
    QCOMPARE(icons(f), QList<int>({0, 1, 0}));
}

ZEL_TEST_MAIN(tst_ProjectListPublished)
#include "tst_projectlistpublished.moc"
