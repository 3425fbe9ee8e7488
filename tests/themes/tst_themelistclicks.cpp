// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/core/datetext.h"
#include "testsupport/testcase.h"
#include "themelistfixture.h"

#include <QScrollArea>
#include <QScrollBar>

#include <limits>

using ListTesting::click;

/// Choosing a theme by mouse and keyboard: what is chosen, what the details show, what is raised.
class tst_ThemeListClicks : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void aClickChooses();
    void everyClickCounts();
    void aClickOnEmptyGroundDoesNothing();
    void movingByKeyboardChooses();
    void enterChoosesTheLineALoadSelected();
    void aDoubleClickChoosesOnce();
    void theChoiceSurvivesReloads();
    void detailsStayUntilTheNextClick();
    void detailsShowTheTheme();
    void detailsShowTextAsItStands();
    void detailsOfAnotherThemeReplaceThem();
    void aLongDescriptionScrollsAndMovesNothing();
    void aDateThatIsNoneShowsNothing();
    void aListenerMayDestroyTheControl();
    void tabsShowOneFrame();
    void tabsAreChosenByKeyboard();
    void initShowsTheDetails();
    void theTabKeyGoesThroughAll();
};

void tst_ThemeListClicks::aClickChooses()
{
    ThemeListFixture f;
    f.init();
    click(f.list(), 1);
    QCOMPARE(f.trail, QStringList{QStringLiteral("ThemeSelected Green")});
    // The very record of the line, in a variant.
    QVERIFY(f.selectedRecord() == f.client.themeLists[ThemeListFixture::full]->item(2));
    QVERIFY(f.themes->getSelectedTheme().metaType() == QMetaType::fromType<QXSC::ThemeRecordPtr>());
}

void tst_ThemeListClicks::everyClickCounts()
{
    ThemeListFixture f;
    f.init();
    click(f.list(), 0);
    click(f.list(), 2, 1);
    click(f.list(), 2);
    QCOMPARE(f.trail,
             (QStringList{QStringLiteral("ThemeSelected Blue"), QStringLiteral("ThemeSelected Red"),
                          QStringLiteral("ThemeSelected Red")}));
}

void tst_ThemeListClicks::aClickOnEmptyGroundDoesNothing()
{
    ThemeListFixture f;
    f.init();
    click(f.list(), 1);
    ListTesting::clickGround(f.list());
    QCOMPARE(f.trail.size(), 1);
    QCOMPARE(f.selected(), QStringLiteral("Green"));
}

void tst_ThemeListClicks::movingByKeyboardChooses()
{
    ThemeListFixture f;
    f.init();
    f.list().setFocus();
    for (const int key : {Qt::Key_Down, Qt::Key_End, Qt::Key_End, Qt::Key_Up, Qt::Key_Home})
        QTest::keyClick(f.list().view(), Qt::Key(key));
    QCOMPARE(
        f.trail,
        (QStringList{QStringLiteral("ThemeSelected Green"), QStringLiteral("ThemeSelected Red"),
                     QStringLiteral("ThemeSelected Green"), QStringLiteral("ThemeSelected Blue")}));
}

void tst_ThemeListClicks::enterChoosesTheLineALoadSelected()
{
    ThemeListFixture f;
    f.load({theme("Only")});
    f.list().setFocus();
    QTest::keyClick(f.list().view(), Qt::Key_Return);
    QCOMPARE(f.trail, QStringList{QStringLiteral("ThemeSelected Only")});
    QTest::keyClick(f.list().view(), Qt::Key_Return);
    QCOMPARE(f.trail.size(), 1);
}

void tst_ThemeListClicks::aDoubleClickChoosesOnce()
{
    ThemeListFixture f;
    f.init();
    ListTesting::doubleClick(f.list(), 1);
    QCOMPARE(f.trail, QStringList{QStringLiteral("ThemeSelected Green")});
}

void tst_ThemeListClicks::theChoiceSurvivesReloads()
{
    ThemeListFixture f;
    f.init();
    click(f.list(), 1);
    const QXSC::ThemeRecordPtr chosen = f.selectedRecord();
    f.clickOption("userOption");
    QCOMPARE(f.list().count(), 0);
    QVERIFY(f.selectedRecord() == chosen);
    f.init();
    QCOMPARE(f.list().selectedRow(), 0);
    QVERIFY(f.selectedRecord() == chosen);
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    QCOMPARE(ZelTest::errorNumber([&f] { f.init(); }), 6);
    QVERIFY(f.selectedRecord() == chosen);
}

void tst_ThemeListClicks::detailsStayUntilTheNextClick()
{
    ThemeListFixture f;
    f.addTemplates({"Page"});
    f.choose({entry("Page")});
    const QStringList details = f.details();
    f.load({theme("Green"), theme("Red")});
    QCOMPARE(f.details(), details);
    QCOMPARE(f.templates().count(), 1);
    f.client.themeLists.clear();
    f.themes->LoadThemes(ThemeListFixture::full);
    QCOMPARE(f.details(), details);
}

void tst_ThemeListClicks::detailsShowTheTheme()
{
    ThemeListFixture f;
    QXSC::ThemeRecord record = theme("Blue");
    record.width = 1024;
    record.height = 768;
    record.created = QDateTime(QDate(2007, 1, 9), QTime(15, 4, 5));
    record.modified = QDateTime(QDate(2008, 2, 10), QTime(0, 0));
    f.load({record});
    click(f.list(), 0);
    QCOMPARE(f.details(), (QStringList{QStringLiteral("about Blue"), QStringLiteral("1024"),
                                       QStringLiteral("768"), Zel::generalDateText(record.created),
                                       Zel::generalDateText(record.modified)}));
    QVERIFY(!f.details().at(3).isEmpty());
    QCOMPARE(f.child<QLabel>("createdlabel")->text(), QStringLiteral("Created"));
    QCOMPARE(f.child<QLabel>("modifiedLabel")->text(), QStringLiteral("Modified"));
    QStringList captions;
    for (const QLabel *label : f.child<QGroupBox>("DetailsFrame")->findChildren<QLabel *>()) {
        if (label->buddy() == f.child<QLabel>("widthTxt") ||
            label->buddy() == f.child<QLabel>("heightTxt"))
            captions << label->text();
    }
    QCOMPARE(captions, (QStringList{QStringLiteral("Width"), QStringLiteral("Height")}));
    QCOMPARE(f.child<QGroupBox>("DetailsFrame")->title(), QStringLiteral("Details"));
    QCOMPARE(f.child<QGroupBox>("ThemeListFrame")->title(), QStringLiteral("Themes"));
}

void tst_ThemeListClicks::detailsShowTextAsItStands()
{
    ThemeListFixture f;
    QXSC::ThemeRecord record = theme("Blue");
    record.description = QStringLiteral("<b>R&D</b>\r\n& more\u00A0");
    record.width = std::numeric_limits<qint32>::min();
    record.height = std::numeric_limits<qint32>::max();
    f.load({record});
    click(f.list(), 0);
    QCOMPARE(f.details().first(3), (QStringList{record.description, QStringLiteral("-2147483648"),
                                                QStringLiteral("2147483647")}));
    QCOMPARE(f.child<QLabel>("descriptionTxt")->textFormat(), Qt::PlainText);
}

void tst_ThemeListClicks::detailsOfAnotherThemeReplaceThem()
{
    ThemeListFixture f;
    QXSC::ThemeRecord blue = theme("Blue");
    blue.created = QDateTime(QDate(2007, 1, 9), QTime(15, 4, 5));
    blue.width = 5;
    f.load({blue, theme("Red")});
    click(f.list(), 0);
    click(f.list(), 1);
    QCOMPARE(f.details(), (QStringList{QStringLiteral("about Red"), QStringLiteral("0"),
                                       QStringLiteral("0"), QString(), QString()}));
}

void tst_ThemeListClicks::aLongDescriptionScrollsAndMovesNothing()
{
    ThemeListFixture f;
    QXSC::ThemeRecord longer = theme("Long");
    longer.description = QStringLiteral("One line of a long story.\n").repeated(200);
    f.load({theme("Short"), longer, longer});
    const auto places = [&f] {
        QList<QRect> rects;
        for (const char *name : {"ThemeListFrame", "TabStrip1", "PreviewFrame"})
            rects << f.child<QWidget>(name)->geometry();
        const bool details = f.child<QWidget>("DetailsFrame")->isVisible();
        rects << f.child<QWidget>(details ? "DetailsFrame" : "TemplatesFrame")->geometry();
        return rects;
    };
    click(f.list(), 0);
    QCoreApplication::processEvents();
    const QList<QRect> before = places();
    click(f.list(), 1);
    QCoreApplication::processEvents();
    QCOMPARE(places(), before);
    auto *bar = f.child<QGroupBox>("DetailsFrame")->findChild<QScrollArea *>()->verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    click(f.list(), 2);
    QCOMPARE(bar->value(), 0);
    f.clickTab(1);
    QCoreApplication::processEvents();
    QCOMPARE(places(), before);
}

void tst_ThemeListClicks::aDateThatIsNoneShowsNothing()
{
    ThemeListFixture f;
    f.load({theme("Blue")});
    click(f.list(), 0);
    QCOMPARE(f.details().at(3), QString());
}

void tst_ThemeListClicks::aListenerMayDestroyTheControl()
{
    ThemeListFixture f;
    f.init();
    QObject::connect(f.themes, &ZelWebServiceControls::ThemeList::ThemeSelected,
                     [&f] { delete f.themes; });
    click(f.list(), 1);
    QVERIFY(!f.themes);
}

void tst_ThemeListClicks::tabsShowOneFrame()
{
    ThemeListFixture f;
    f.init();
    const auto *details = f.child<QGroupBox>("DetailsFrame");
    const auto *templates = f.child<QFrame>("TemplatesFrame");
    QCOMPARE(f.tabs().tabText(0), QStringLiteral("Details"));
    QCOMPARE(f.tabs().tabText(1), QStringLiteral("Templates"));
    QCOMPARE(f.tabs().count(), 2);
    QVERIFY(details->isVisible() && !templates->isVisible());
    f.clickTab(1);
    QVERIFY(!details->isVisible() && templates->isVisible());
    f.clickTab(0);
    QVERIFY(details->isVisible() && !templates->isVisible());
    QCOMPARE(f.trail, QStringList());
}

void tst_ThemeListClicks::tabsAreChosenByKeyboard()
{
    ThemeListFixture f;
    f.init();
    f.tabs().setFocus();
    QTest::keyClick(&f.tabs(), Qt::Key_Right);
    QVERIFY(f.child<QFrame>("TemplatesFrame")->isVisible());
}

void tst_ThemeListClicks::initShowsTheDetails()
{
    ThemeListFixture f;
    f.init();
    f.clickTab(1);
    f.init();
    QVERIFY(f.child<QGroupBox>("DetailsFrame")->isVisible());
    QVERIFY(!f.child<QFrame>("TemplatesFrame")->isVisible());
    QCOMPARE(f.tabs().currentIndex(), 0);
    // Also when the load fails.
    f.clickTab(1);
    QCOMPARE(ZelTest::errorNumber([&f] { f.themes->Init(nullptr, QString()); }), 91);
    QVERIFY(f.child<QGroupBox>("DetailsFrame")->isVisible());
}

void tst_ThemeListClicks::theTabKeyGoesThroughAll()
{
    for (const bool showsTemplates : {false, true}) {
        ThemeListFixture f;
        f.init();
        f.clickTab(showsTemplates ? 1 : 0);
        f.themes->setFocus();
        QStringList names;
        for (int i = 0; i < 4; ++i) {
            QWidget *widget = QApplication::focusWidget();
            while (widget && widget->objectName().isEmpty())
                widget = widget->parentWidget();
            names << (widget ? widget->objectName() : QString());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        const QString last =
            showsTemplates ? QStringLiteral("TemplateListView") : QStringLiteral("DetailsFrame");
        QCOMPARE(names, (QStringList{QStringLiteral("ThemeListView"), QStringLiteral("allOption"),
                                     QStringLiteral("TabStrip1"), last}));
    }
}

ZEL_TEST_MAIN(tst_ThemeListClicks)
#include "tst_themelistclicks.moc"
