// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/latebound.h"
#include "projectlistfixture.h"
#include "testsupport/testcase.h"

#include <QSignalSpy>

using Zel::PropertyBag;
using ZelWebServiceControls::ProjectList;

namespace {

QString fromLatin(const char *name)
{
    return QString::fromLatin1(name);
}

PropertyBag bagWith(const char *name, bool value)
{
    PropertyBag bag;
    bag.write(fromLatin(name), value);
    return bag;
}

QList<double> widths(const ProjectList &list)
{
    const auto *view = list.findChild<Zel::ListView *>(QStringLiteral("projectList"));
    QList<double> result;
    for (int column = 0; column < view->columnCount(); ++column)
        result << view->columnWidth(column);
    return result;
}

const QList<double> asDesigned{4145, 3351, 3351, 2558, 3351, 1900};
const QList<double> asRead{4145, 3351, 1900, 1900, 1450, 1900};

} // namespace

/// The columns, the persisted properties, and the size of the list.
class tst_ProjectListProperties : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void theColumnsAreFixed();
    void aFirstPlacementHasTheDesignWidths();
    void anEmptyBagGivesTheWidthsOfTheDefaults();
    void aSwitchThatIsOffHidesItsColumn_data();
    void aSwitchThatIsOffHidesItsColumn();

    void aLetMovesNoColumnAndMarksAsChanged_data() { addSwitches(); }

    void aLetMovesNoColumnAndMarksAsChanged();

    void onlyDifferingValuesAreStored_data() { addSwitches(); }

    void onlyDifferingValuesAreStored();
    void readingMarksNothingAsChanged();
    void readingSetsWidthsAPersonDragged();
    void wrongTypesAreReportedAndOtherwiseRead();
    void theListFillsTheControl();
    void theListHasAName();

private:
    static void addSwitches();
};

void tst_ProjectListProperties::addSwitches()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("byDefault");
    for (const char *name : {"ShowEventDate", "ShowCreated", "ShowModiffied", "ShowCreatedBy"})
        QTest::newRow(name) << QByteArray(name) << true;
    QTest::newRow("ShowPublished") << QByteArray("ShowPublished") << false;
}

void tst_ProjectListProperties::theColumnsAreFixed()
{
    const ProjectList list;
    const auto *view = list.findChild<Zel::ListView *>(QStringLiteral("projectList"));
    const std::pair<const char *, const char *> columns[]{
        {"Name", ""},         {"Description", ""}, {"Created", "DATE"},
        {"Modified", "DATE"}, {"Created By", ""},  {"Event Date", "DATE"},
    };
    QCOMPARE(view->columnCount(), 6);
    QCOMPARE(view->viewMode(), Zel::ListView::ViewMode::Report);
    for (int column = 0; column < 6; ++column) {
        QCOMPARE(view->columnCaption(column), fromLatin(columns[column].first));
        QCOMPARE(view->columnTag(column), fromLatin(columns[column].second));
    }
}

void tst_ProjectListProperties::aFirstPlacementHasTheDesignWidths()
{
    const ProjectList list;
    QCOMPARE(widths(list), asDesigned);
    QVERIFY(list.ShowEventDate() && list.ShowCreated() && list.ShowModiffied());
    QVERIFY(list.ShowCreatedBy() && !list.ShowPublished());
    ProjectListFixture shown;
    shown.load();
    QCOMPARE(widths(*shown.list), asDesigned);
}

void tst_ProjectListProperties::anEmptyBagGivesTheWidthsOfTheDefaults()
{
    ProjectList list;
    list.readPropertyBag(PropertyBag());
    QCOMPARE(widths(list), asRead);
}

void tst_ProjectListProperties::aSwitchThatIsOffHidesItsColumn_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("column");
    QTest::newRow("ShowEventDate") << QByteArray("ShowEventDate") << int(EventDate);
    QTest::newRow("ShowCreated") << QByteArray("ShowCreated") << int(Created);
    QTest::newRow("ShowModiffied") << QByteArray("ShowModiffied") << int(Modified);
    QTest::newRow("ShowCreatedBy") << QByteArray("ShowCreatedBy") << int(CreatedBy);
}

void tst_ProjectListProperties::aSwitchThatIsOffHidesItsColumn()
{
    QFETCH(QByteArray, name);
    QFETCH(int, column);
    ProjectListFixture f;
    f.list->readPropertyBag(bagWith(name.constData(), false));
    QList<double> expected = asRead;
    expected[column] = 0;
    QCOMPARE(widths(*f.list), expected);
    QVERIFY(ListTesting::header(f.view())->isSectionHidden(column));
    QCOMPARE(f.list->property(name.constData()), QVariant(false));
    // The column is still there.
    f.load();
    QCOMPARE(f.view().columnCount(), 6);
    f.list->readPropertyBag(PropertyBag());
    QCOMPARE(widths(*f.list), asRead);
    QVERIFY(!ListTesting::header(f.view())->isSectionHidden(column));
}

void tst_ProjectListProperties::aLetMovesNoColumnAndMarksAsChanged()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, byDefault);
    ProjectListFixture f;
    QSignalSpy changed(f.list, &ProjectList::changed);
    const Zel::LateBound list(f.list);
    for (const bool value : {!byDefault, byDefault, byDefault}) {
        list.let(QString::fromLatin1(name), value);
        QCOMPARE(list.get(QString::fromLatin1(name)), QVariant(value));
        QCOMPARE(changed.count(), 1);
        changed.clear();
        QCOMPARE(widths(*f.list), asDesigned);
    }
    f.list->readPropertyBag(PropertyBag());
    list.let(QString::fromLatin1(name), !byDefault);
    QCOMPARE(widths(*f.list), asRead);
    // The widths follow once the properties are read again.
    f.list->readPropertyBag(f.list->writePropertyBag());
    QCOMPARE(widths(*f.list) != asRead, byDefault);
}

void tst_ProjectListProperties::onlyDifferingValuesAreStored()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, byDefault);
    ProjectList list;
    QVERIFY(list.writePropertyBag().isEmpty());
    QVERIFY(list.setProperty(name.constData(), !byDefault));
    QVERIFY(list.writePropertyBag() == bagWith(name.constData(), !byDefault));
    QVERIFY(list.setProperty(name.constData(), byDefault));
    QVERIFY(list.writePropertyBag().isEmpty());
}

void tst_ProjectListProperties::readingMarksNothingAsChanged()
{
    ProjectList list;
    const QSignalSpy changed(&list, &ProjectList::changed);
    list.readPropertyBag(bagWith("ShowModiffied", false));
    list.setPropertyBagText(QString());
    QCOMPARE(changed.count(), 0);
    QVERIFY(list.ShowModiffied());
}

void tst_ProjectListProperties::readingSetsWidthsAPersonDragged()
{
    ProjectListFixture f;
    ListTesting::header(f.view())->resizeSection(Created, 300);
    ListTesting::header(f.view())->resizeSection(Name, 300);
    QCOMPARE(f.view().columnWidth(Created), 4500.0);
    f.list->setShowCreated(false);
    QCOMPARE(f.view().columnWidth(Created), 4500.0);
    f.list->readPropertyBag(PropertyBag());
    QCOMPARE(f.view().columnWidth(Created), 1900.0);
    QCOMPARE(f.view().columnWidth(Name), 4500.0);
}

void tst_ProjectListProperties::wrongTypesAreReportedAndOtherwiseRead()
{
    ProjectList list;
    PropertyBag bag;
    bag.write(QStringLiteral("ShowCreated"), QStringLiteral("perhaps"));
    bag.write(QStringLiteral("ShowCreatedBy"), QStringLiteral("False"));
    bag.write(QStringLiteral("ShowPublished"), -1);
    list.readPropertyBag(bag);
    QCOMPARE(list.propertyProblems().size(), 1);
    QVERIFY(list.ShowCreated());
    QVERIFY(!list.ShowCreatedBy());
    QVERIFY(list.ShowPublished());
}

void tst_ProjectListProperties::theListFillsTheControl()
{
    ProjectListFixture f;
    for (const QSize &size : {QSize(1000, 300), QSize(33, 17), QSize(1, 1), QSize(777, 555)}) {
        f.list->resize(size);
        QCOMPARE(f.view().geometry(), f.list->rect());
    }
    // Children on the edge of the control take its geometry in twips too.
    Zel::LateBound(f.list).let(QStringLiteral("Width"), 7777);
    QCOMPARE(f.view().geometry(), f.list->rect());
}

void tst_ProjectListProperties::theListHasAName()
{
    const ProjectList list;
    const auto *view = list.findChild<Zel::ListView *>(QStringLiteral("projectList"));
    QVERIFY(!view->accessibleName().isEmpty());
    QCOMPARE(view->view()->accessibleName(), view->accessibleName());
}

ZEL_TEST_MAIN(tst_ProjectListProperties)
#include "tst_projectlistproperties.moc"
