// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/systemcolor.h"
#include "testsupport/testcase.h"
#include "themelistfixture.h"

#include <QStyle>
#include <QStyleOptionViewItem>

namespace {

const QColor Grey(160, 160, 160);

QPalette darkPalette()
{
    QPalette palette(QColor(45, 45, 45), QColor(35, 35, 35));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::Text, QColor(230, 230, 230));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(120, 110, 130));
    return palette;
}

/// Each line as "name: description", with what is special about it.
QStringList lines(const Zel::ListView &list)
{
    QStringList lines;
    for (qsizetype row = 0; row < list.count(); ++row) {
        QString line = list.text(row, 0) + QStringLiteral(": ") + list.text(row, 1);
        if (!list.isChecked(row))
            line += QStringLiteral(", unchecked");
        if (list.isGhosted(row))
            line += QStringLiteral(", ghosted");
        lines << line;
    }
    return lines;
}

void clickCheckBox(const Zel::ListView &list, qsizetype row)
{
    const auto *view = list.view();
    QStyleOptionViewItem option;
    option.initFrom(view);
    option.rect = list.cellRect(row);
    option.features = QStyleOptionViewItem::HasCheckIndicator;
    const QRect box =
        view->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, view);
    // The contents of a cell are a little in from its edge.
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, box.center() + QPoint(2, 0));
}

/// Whether a cell shows a colour, apart from what smoothing mixes.
bool shows(const Zel::ListView &list, qsizetype row, int column, const QColor &colour)
{
    const QImage image = list.viewport()->grab(list.cellRect(row, column)).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = image.height(); x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return count > 3;
}

} // namespace

/// The templates of the chosen theme: what is asked for, what the lines show, what stays checked.
class tst_ThemeListTemplates : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void asksForEachByItsTwoKeys();
    void showsEachCheckedWithItsRecord();
    void skipsTheOnesTheServiceDoesNotHave();
    void anotherClickReplacesThem();
    void aThemeWithoutAnyShowsNone();
    void aFailureEndsTheClick();
    void aNullEntryEndsTheClick();
    void failsWhenTheClientIsGone();
    void putsTheFormerPointerBack();
    void survivesBeingDestroyedInACall();
    void goesOnWhenTheListChangesInACall();
    void requiredOnesAreGreyAndGhosted();
    void requiredOnesStayChecked();
    void theOthersCanBeUnchecked();
    void requiredOnesAreGreyOnLightPalettes();
    void requiredOnesHaveTheSameContrastOnDarkPalettes_data();
    void requiredOnesHaveTheSameContrastOnDarkPalettes();
    void requiredOnesFollowThePalette();
    void requiredOnesArePaintedSo();
};

void tst_ThemeListTemplates::asksForEachByItsTwoKeys()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.choose({entry("Home"), entry("Agenda", true)});
    QCOMPARE(f.trail,
             (QStringList{QStringLiteral("getTemplate(\"Home-key\", \"Home-version\")"),
                          QStringLiteral("getTemplate(\"Agenda-key\", \"Agenda-version\")"),
                          QStringLiteral("ThemeSelected Blue")}));
}

void tst_ThemeListTemplates::showsEachCheckedWithItsRecord()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.choose({entry("Home"), entry("Agenda", true)});
    QCOMPARE(lines(f.templates()), (QStringList{QStringLiteral("Home: makes Home"),
                                                QStringLiteral("Agenda: makes Agenda, ghosted")}));
    QVERIFY(f.templates().checkBoxes());
    QCOMPARE(f.templates().columnCaption(0), QStringLiteral("Template"));
    QCOMPARE(f.templates().columnCaption(1), QStringLiteral("Description"));
    // A click on a line reads its record from the tag; it is no event of the control.
    f.clickTab(1);
    f.trail.clear();
    QXSC::TemplateRecordPtr clicked;
    QObject::connect(&f.templates(), &Zel::ListView::lineClicked, [&](qsizetype row) {
        clicked = f.templates().tag(row).value<QXSC::TemplateRecordPtr>();
    });
    ListTesting::click(f.templates(), 1, 1);
    QVERIFY(clicked);
    QCOMPARE(clicked->name, QStringLiteral("Agenda"));
    QCOMPARE(f.trail, QStringList());
}

void tst_ThemeListTemplates::skipsTheOnesTheServiceDoesNotHave()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.choose({entry("Gone", true), entry("Home"), entry("Lost"), entry("Agenda", true)});
    QCOMPARE(f.trail.size(), 5);
    QCOMPARE(lines(f.templates()), (QStringList{QStringLiteral("Home: makes Home"),
                                                QStringLiteral("Agenda: makes Agenda, ghosted")}));
}

void tst_ThemeListTemplates::anotherClickReplacesThem()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    QXSC::ThemeRecord blue = theme("Blue");
    blue.templates = ZelTest::themeTemplates({entry("Home", true)});
    QXSC::ThemeRecord red = theme("Red");
    red.templates = ZelTest::themeTemplates({entry("Agenda")});
    f.load({blue, red});
    ListTesting::click(f.list(), 0);
    ListTesting::click(f.list(), 1);
    QCOMPARE(lines(f.templates()), QStringList{QStringLiteral("Agenda: makes Agenda")});
    // What was unchecked is checked again.
    f.clickTab(1);
    clickCheckBox(f.templates(), 0);
    QCOMPARE(f.templates().isChecked(0), false);
    ListTesting::click(f.list(), 1);
    QCOMPARE(f.templates().isChecked(0), true);
}

void tst_ThemeListTemplates::aThemeWithoutAnyShowsNone()
{
    ThemeListFixture f;
    f.addTemplates({"Home"});
    f.choose({entry("Home")});
    QXSC::ThemeRecord record = theme("Red");
    f.load({record});
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.templates().count(), 0);
    QVERIFY(!f.templates().emptyText().isEmpty());
    QCOMPARE(f.trail, QStringList{QStringLiteral("ThemeSelected Red")});
    // A host's own client may leave the collection out.
    auto bare = std::make_shared<QXSC::ThemeCollection>();
    bare->add(std::make_shared<QXSC::ThemeRecord>(theme("Bare")));
    f.client.themeLists[ThemeListFixture::full] = bare;
    f.init();
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.trail, QStringList{QStringLiteral("ThemeSelected Bare")});
}

void tst_ThemeListTemplates::aFailureEndsTheClick()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda", "Help"});
    f.atCall = [&f](const QString &call) {
        if (call.contains(QStringLiteral("Home")))
            f.client.failNext(QStringLiteral("getTemplate"), Zel::RuntimeError(6));
    };
    f.choose({entry("Agenda"), entry("Home"), entry("Help")});
    // failNext is taken after atCall, so the call for Home itself fails.
    QCOMPARE(f.trail,
             (QStringList{QStringLiteral("getTemplate(\"Agenda-key\", \"Agenda-version\")"),
                          QStringLiteral("getTemplate(\"Home-key\", \"Home-version\")"),
                          QStringLiteral("error 6")}));
    QCOMPARE(lines(f.templates()), QStringList{QStringLiteral("Agenda: makes Agenda")});
    // The theme was taken and its details shown before.
    QCOMPARE(f.selected(), QStringLiteral("Blue"));
    QCOMPARE(f.details().constFirst(), QStringLiteral("about Blue"));
    QVERIFY(!f.themes->testAttribute(Qt::WA_SetCursor));
    f.atCall = {};
    f.trail.clear();
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.templates().count(), 3);
    QCOMPARE(f.trail.constLast(), QStringLiteral("ThemeSelected Blue"));
}

void tst_ThemeListTemplates::aNullEntryEndsTheClick()
{
    ThemeListFixture f;
    QXSC::ThemeRecord record = theme("Blue");
    auto entries = std::make_shared<QXSC::ThemeTemplateCollection>();
    entries->add(nullptr);
    record.templates = entries;
    f.load({record});
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91")});
}

void tst_ThemeListTemplates::failsWhenTheClientIsGone()
{
    ThemeListFixture f;
    QXSC::ThemeRecord record = theme("Blue");
    record.templates = ZelTest::themeTemplates({entry("Home")});
    {
        ZelTest::RecordingClient shortLived;
        shortLived.themeLists[ThemeListFixture::full] =
            ZelTest::themeList({record, theme("Without")});
        f.themes->Init(&shortLived, QStringLiteral("3.2.10"));
    }
    ListTesting::click(f.list(), 0);
    QCOMPARE(f.takeTrail(), QStringList{QStringLiteral("error 91")});
    // A theme that asks for nothing needs no client.
    ListTesting::click(f.list(), 1);
    QCOMPARE(f.takeTrail(), QStringList{QStringLiteral("ThemeSelected Without")});
}

void tst_ThemeListTemplates::putsTheFormerPointerBack()
{
    ThemeListFixture f;
    f.addTemplates({"Home"});
    QList<Qt::CursorShape> during;
    f.atCall = [&](const QString &call) {
        if (call.startsWith(QStringLiteral("getTemplate")))
            during << f.themes->cursor().shape();
    };
    f.choose({entry("Home")});
    QCOMPARE(during, QList<Qt::CursorShape>{Qt::WaitCursor});
    QVERIFY(!f.themes->testAttribute(Qt::WA_SetCursor));
}

void tst_ThemeListTemplates::survivesBeingDestroyedInACall()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.atCall = [&](const QString &call) {
        if (call.startsWith(QStringLiteral("getTemplate")))
            delete f.themes;
    };
    QXSC::ThemeRecord record = theme("Blue");
    record.templates = ZelTest::themeTemplates({entry("Home"), entry("Agenda")});
    f.load({record});
    ListTesting::click(f.list(), 0);
    QVERIFY(!f.themes);
    QCOMPARE(f.trail.size(), 1); // one call, and no event of what is no more
}

void tst_ThemeListTemplates::goesOnWhenTheListChangesInACall()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.atCall = [&](const QString &call) {
        if (call.contains(QStringLiteral("Agenda")))
            f.templates().clear();
    };
    f.choose({entry("Home"), entry("Agenda")});
    QCOMPARE(f.templates().count(), 0);
    QCOMPARE(f.trail.constLast(), QStringLiteral("ThemeSelected Blue"));
}

void tst_ThemeListTemplates::requiredOnesAreGreyAndGhosted()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.choose({entry("Home"), entry("Agenda", true)});
    for (const int column : {0, 1}) {
        QVERIFY(!f.templates().colour(0, column).isValid());
        QCOMPARE(f.templates().colour(1, column), Grey);
    }
}

void tst_ThemeListTemplates::requiredOnesStayChecked()
{
    ThemeListFixture f;
    f.addTemplates({"Home"});
    f.choose({entry("Home", true)});
    f.clickTab(1);
    clickCheckBox(f.templates(), 0);
    QVERIFY(f.templates().isChecked(0));
    ListTesting::click(f.templates(), 0, 1);
    QTest::keyClick(f.templates().view(), Qt::Key_Space);
    QVERIFY(f.templates().isChecked(0));
    QVERIFY(f.templates().isGhosted(0));
}

void tst_ThemeListTemplates::theOthersCanBeUnchecked()
{
    ThemeListFixture f;
    f.addTemplates({"Home", "Agenda"});
    f.choose({entry("Home", true), entry("Agenda")});
    f.clickTab(1);
    clickCheckBox(f.templates(), 1);
    QVERIFY(!f.templates().isChecked(1));
    QVERIFY(f.templates().isChecked(0));
    ListTesting::click(f.templates(), 1, 1);
    QTest::keyClick(f.templates().view(), Qt::Key_Space);
    QVERIFY(f.templates().isChecked(1));
}

void tst_ThemeListTemplates::requiredOnesAreGreyOnLightPalettes()
{
    ThemeListFixture f;
    f.addTemplates({"Home"});
    for (const QColor &base : {QColor(Qt::white), QColor(250, 245, 235), QColor(255, 255, 200)}) {
        QPalette palette = f.themes->palette();
        palette.setColor(QPalette::Base, base);
        f.themes->setPalette(palette);
        f.choose({entry("Home", true)});
        QCOMPARE(f.templates().colour(0), Grey);
    }
}

void tst_ThemeListTemplates::requiredOnesHaveTheSameContrastOnDarkPalettes_data()
{
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QColor>("disabled");
    QTest::newRow("dark grey") << QColor(30, 30, 30) << QColor(120, 110, 130);
    QTest::newRow("black") << QColor(Qt::black) << QColor(200, 200, 200);
    QTest::newRow("disabled text nearly the ground's") << QColor(40, 44, 52) << QColor(50, 54, 62);
    QTest::newRow("blue") << QColor(0, 20, 60) << QColor(90, 110, 150);
}

void tst_ThemeListTemplates::requiredOnesHaveTheSameContrastOnDarkPalettes()
{
    QFETCH(QColor, base);
    QFETCH(QColor, disabled);
    ThemeListFixture f;
    f.addTemplates({"Home"});
    QPalette palette = darkPalette();
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Disabled, QPalette::Text, disabled);
    f.themes->setPalette(palette);
    f.choose({entry("Home", true)});
    const double wanted = Zel::contrastRatio(Grey, Qt::white);
    const double contrast = Zel::contrastRatio(f.templates().colour(0), base);
    QVERIFY2(qAbs(contrast - wanted) < 0.06, qPrintable(QString::number(contrast)));
    QVERIFY(f.templates().colour(0).lightness() > base.lightness());
}

void tst_ThemeListTemplates::requiredOnesFollowThePalette()
{
    ThemeListFixture f;
    f.addTemplates({"Home"});
    f.choose({entry("Home", true)});
    f.form.setPalette(darkPalette());
    const QColor dark = f.templates().colour(0);
    QVERIFY(dark != Grey);
    f.form.setPalette(QPalette());
    QCOMPARE(f.templates().colour(0), Grey);
}

void tst_ThemeListTemplates::requiredOnesArePaintedSo()
{
    ThemeListFixture f;
    f.addTemplates({"IIIIIIIIIIIIIIIIIIIIII", "HHHHHHHHHHHHHHHHHHHHHHHHH"});
    f.choose({entry("IIIIIIIIIIIIIIIIIIIIII"), entry("HHHHHHHHHHHHHHHHHHHHHHHHH", true)});
    f.clickTab(1);
    for (const int column : {0, 1}) {
        QVERIFY(!shows(f.templates(), 0, column, Grey));
        QVERIFY(shows(f.templates(), 1, column, Grey));
    }
    f.form.setPalette(darkPalette());
    const QColor dark = f.templates().colour(1);
    for (const int column : {0, 1}) {
        QVERIFY(!shows(f.templates(), 0, column, dark));
        QVERIFY(shows(f.templates(), 1, column, dark));
    }
}

ZEL_TEST_MAIN(tst_ThemeListTemplates)
#include "tst_themelisttemplates.moc"
