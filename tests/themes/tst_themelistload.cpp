// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/widgets/latebound.h"
#include "platform/widgets/twips.h"
#include "testsupport/testcase.h"
#include "themelistfixture.h"

#include <QDirIterator>
#include <QFile>

using QXSC::ServiceError;
using ZelTest::errorNumber;
using ZelWebServiceControls::HiddenTheme;
using ZelWebServiceControls::ThemeCompatibility;
using ZelWebServiceControls::ThemeList;

namespace {

QStringList namesOf(const QList<HiddenTheme> &hidden)
{
    QStringList names;
    for (const HiddenTheme &theme : hidden)
        names << theme.theme->name;
    return names;
}

} // namespace

/// Loading by Init, by a choice of scope and by LoadThemes: the calls, the lines, and what a
/// failure leaves.
class tst_ThemeListLoad : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void isEmptyBeforeInit();
    void initLoadsAllThemesOnce();
    void aSecondInitLoadsOnceAgain();
    void initTakesTheScopeBackToAll();
    void flagsMayBeLeftOut();
    void aScopeLoadsWhenItIsChosen_data();
    void aScopeLoadsWhenItIsChosen();
    void aScopeIsChosenByKeyboard();
    void theChosenScopeLoadsNotAgain();
    void loadThemesTakesAnyName();
    void showsNameAndDescriptionInTheServicesOrder();
    void linesCarryTheirRecords();
    void hidesWhatCannotBeUsed();
    void hidesDefinitionsOfEveryBadKind();
    void usesTheFlags();
    void tellsTheHostWhatIsHidden();
    void callsTheHandlerAfterEveryLoad();
    void selectsTheFirstLineAndChoosesNothing();
    void anAnswerOfNothingEmptiesTheList();
    void anEmptyAnswerEmptiesTheList();
    void failsWithoutAClient();
    void failsWhenTheClientIsGone();
    void passesErrorsOnToTheCaller();
    void reportsErrorsOfAChosenScope();
    void refusesAListWithANullRecord();
    void putsTheFormerPointerBack();
    void survivesBeingDestroyedInACall();
    void columnsAreAsWideAsTheyShould();
    void leavesTheClientAlone();
};

void tst_ThemeListLoad::isEmptyBeforeInit()
{
    ThemeListFixture f;
    QCOMPARE(f.list().count(), 0);
    QVERIFY(!f.list().emptyText().isEmpty());
    QVERIFY(!f.themes->getSelectedTheme().isValid());
    QVERIFY(f.themes->hiddenThemes().isEmpty());
    for (const char *name : {"accountOption", "allOption", "globalOption", "userOption"})
        QVERIFY(!f.option(name)->isChecked());
    QCOMPARE(f.trail, QStringList());
}

void tst_ThemeListLoad::initLoadsAllThemesOnce()
{
    ThemeListFixture f;
    f.themes->Init(&f.client, QStringLiteral("3.2.10"), QString());
    QCOMPARE(f.trail, QStringList{ThemeListFixture::fullCall});
    QVERIFY(f.option("allOption")->isChecked());
    QCOMPARE(f.list().count(), 3);
}

void tst_ThemeListLoad::aSecondInitLoadsOnceAgain()
{
    ThemeListFixture f;
    f.init();
    f.themes->Init(&f.client, QStringLiteral("3.2.10"), QString());
    QCOMPARE(f.trail, QStringList{ThemeListFixture::fullCall});
    // Another client, version and flags are kept: the next choice of a scope is by them.
    ZelTest::RecordingClient other;
    other.themeLists[QStringLiteral("getUserThemeList_Array")] =
        ZelTest::themeList({theme("Old", wizard("2.0.0")), theme("New", wizard("3.0.0"))});
    f.themes->Init(&other, QStringLiteral("2.9.9"), QString());
    f.clickOption("userOption");
    QCOMPARE(other.calls().size(), 2);
    QCOMPARE(f.client.calls().size(), 2);
    QCOMPARE(f.shown(), QStringList{QStringLiteral("Old")});
}

void tst_ThemeListLoad::initTakesTheScopeBackToAll()
{
    ThemeListFixture f;
    f.init();
    f.clickOption("userOption");
    f.takeTrail();
    f.themes->Init(&f.client, QStringLiteral("3.2.10"), QString());
    QCOMPARE(f.trail, QStringList{ThemeListFixture::fullCall});
    QVERIFY(f.option("allOption")->isChecked());
    QVERIFY(!f.option("userOption")->isChecked());
    // And from there a person can go back.
    f.takeTrail();
    f.clickOption("userOption");
    QCOMPARE(f.trail.size(), 1);
}

void tst_ThemeListLoad::flagsMayBeLeftOut()
{
    ThemeListFixture f;
    f.themes->Init(&f.client, QStringLiteral("3.2.10"));
    const Zel::LateBound late(f.themes);
    late.call(QStringLiteral("Init"),
              {QVariant::fromValue<QObject *>(&f.client), QStringLiteral("0.9.0")});
    QCOMPARE(f.list().count(), 0);
    late.call(QStringLiteral("LoadThemes"), {QStringLiteral("getFullThemeList_Array")});
    QCOMPARE(f.client.calls().size(), 3);
    QVERIFY(!late.call(QStringLiteral("getSelectedTheme")).isValid());
}

void tst_ThemeListLoad::aScopeLoadsWhenItIsChosen_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("method");
    QTest::newRow("account") << QStringLiteral("accountOption")
                             << QStringLiteral("getAccountThemeList_Array");
    QTest::newRow("global") << QStringLiteral("globalOption")
                            << QStringLiteral("getGlobalThemeList_Array");
    QTest::newRow("user") << QStringLiteral("userOption")
                          << QStringLiteral("getUserThemeList_Array");
}

void tst_ThemeListLoad::aScopeLoadsWhenItIsChosen()
{
    QFETCH(QString, option);
    QFETCH(QString, method);
    ThemeListFixture f;
    f.init();
    f.client.themeLists[method] = ZelTest::themeList({theme("Special")});
    f.clickOption(qPrintable(option));
    QCOMPARE(f.takeTrail(),
             QStringList{QStringLiteral("callListMethod(\"Studio\", \"%1\")").arg(method)});
    QCOMPARE(f.shown(), QStringList{QStringLiteral("Special")});
    f.clickOption("allOption");
    QCOMPARE(f.takeTrail(), QStringList{ThemeListFixture::fullCall});
    QCOMPARE(f.list().count(), 3);
}

void tst_ThemeListLoad::aScopeIsChosenByKeyboard()
{
    ThemeListFixture f;
    f.init();
    f.option("allOption")->setFocus();
    QTest::keyClick(f.option("allOption"), Qt::Key_Right);
    QVERIFY(f.option("globalOption")->isChecked());
    QCOMPARE(f.trail, QStringList{QStringLiteral(
                          "callListMethod(\"Studio\", \"getGlobalThemeList_Array\")")});
}

void tst_ThemeListLoad::theChosenScopeLoadsNotAgain()
{
    ThemeListFixture f;
    f.init();
    f.clickOption("allOption");
    QCOMPARE(f.trail, QStringList());
}

void tst_ThemeListLoad::loadThemesTakesAnyName()
{
    ThemeListFixture f;
    f.init();
    f.client.themeLists[QStringLiteral("getUserThemeList_Array")] =
        ZelTest::themeList({theme("Mine")});
    f.themes->LoadThemes(QStringLiteral("getUserThemeList_Array"));
    QCOMPARE(f.shown(), QStringList{QStringLiteral("Mine")});
    QVERIFY(f.option("allOption")->isChecked());
    f.themes->LoadThemes(QStringLiteral("getSomething"));
    QCOMPARE(f.trail.constLast(), QStringLiteral("callListMethod(\"Studio\", \"getSomething\")"));
    QCOMPARE(f.list().count(), 0);
}

void tst_ThemeListLoad::showsNameAndDescriptionInTheServicesOrder()
{
    ThemeListFixture f;
    f.load({theme("b"), theme("C & D"), theme("a")});
    QCOMPARE(f.shown(),
             (QStringList{QStringLiteral("b"), QStringLiteral("C & D"), QStringLiteral("a")}));
    QCOMPARE(f.shown(1).at(1), QStringLiteral("about C & D"));
    QCOMPARE(f.list().columnCaption(0), QStringLiteral("Name"));
    QCOMPARE(f.list().columnCaption(1), QStringLiteral("Description"));
    QCOMPARE(f.list().columnCount(), 2);
}

void tst_ThemeListLoad::linesCarryTheirRecords()
{
    ThemeListFixture f;
    f.load({theme("Hidden", QString()), theme("Blue")});
    const auto record = f.list().tag(0).value<QXSC::ThemeRecordPtr>();
    QVERIFY(record);
    QVERIFY(record == f.client.themeLists[ThemeListFixture::full]->item(2));
}

void tst_ThemeListLoad::hidesWhatCannotBeUsed()
{
    ThemeListFixture f;
    f.load({theme("No definition", QString()), theme("Broken", QStringLiteral("<WIZARD>")),
            theme("Too new", wizard("3.2.11")), theme("Just right", wizard("3.2.10")),
            theme("Any version", QStringLiteral("<WIZARD/>")),
            theme("No numbers", wizard("three"))});
    QCOMPARE(f.shown(), (QStringList{QStringLiteral("Just right"), QStringLiteral("Any version")}));
    QCOMPARE(f.trail, QStringList());
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_ThemeListLoad::hidesDefinitionsOfEveryBadKind()
{
    QList<QXSC::ThemeRecord> records{theme("First")};
    QDirIterator files(QStringLiteral(ZEL_FIXTURES "/themes/definitions/unreadable"),
                       {QStringLiteral("*.xml")});
    while (files.hasNext()) {
        QFile file(files.next());
        QVERIFY(file.open(QFile::ReadOnly));
        records << theme("Bad", QString::fromUtf8(file.readAll()));
    }
    // A decoder takes one of two byte order marks away, and one is no fault.
    records.removeIf([](const QXSC::ThemeRecord &record) {
        return record.wizardXml.startsWith(QChar(QChar::ByteOrderMark));
    });
    QVERIFY(records.size() > 20);
    const QString deep = QStringLiteral("<WIZARD>").repeated(100'000) +
                         QStringLiteral("</WIZARD>").repeated(100'000);
    records << theme("Deep", deep);
    records << theme("Large", QStringLiteral("<WIZARD>") + QString(100'000'000, u'x') +
                                  QStringLiteral("</WIZARD>"));
    records << theme("Last");
    ThemeListFixture f;
    f.load(records);
    QCOMPARE(f.shown(), (QStringList{QStringLiteral("First"), QStringLiteral("Last")}));
    for (const HiddenTheme &hidden : f.themes->hiddenThemes())
        QVERIFY(hidden.why.reason == ThemeCompatibility::Reason::Unreadable);
}

void tst_ThemeListLoad::usesTheFlags()
{
    const auto typed = [](const char *type) {
        return QStringLiteral("<WIZARD><CUSTOMFIELDS><FIELD name='type'>%1</FIELD></CUSTOMFIELDS>"
                              "</WIZARD>")
            .arg(QLatin1String(type));
    };
    ThemeListFixture f;
    const QList<QXSC::ThemeRecord> records{theme("A video", typed("video")),
                                           theme("Slides", typed("slides")), theme("Neither")};
    f.load(records, QStringLiteral("type:video,audio"));
    QCOMPARE(f.shown(), QStringList{QStringLiteral("A video")});
    // Every load is by the flags of the last Init.
    f.themes->LoadThemes(ThemeListFixture::full);
    QCOMPARE(f.list().count(), 1);
    f.load(records);
    QCOMPARE(f.list().count(), 3);
}

void tst_ThemeListLoad::tellsTheHostWhatIsHidden()
{
    ThemeListFixture f;
    f.load({theme("Broken", QStringLiteral("<WIZARD>")), theme("Blue"),
            theme("Too new", wizard("4.0.0"))});
    const QList<HiddenTheme> hidden = f.themes->hiddenThemes();
    QCOMPARE(namesOf(hidden), (QStringList{QStringLiteral("Broken"), QStringLiteral("Too new")}));
    QVERIFY(hidden.at(0).why.reason == ThemeCompatibility::Reason::Unreadable);
    QVERIFY(hidden.at(1).why.reason == ThemeCompatibility::Reason::VersionNeeded);
    QCOMPARE(hidden.at(1).why.version, QStringLiteral("4.0.0"));
    // What a failed load would have hidden is not known; an answer of nothing hides nothing.
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    QCOMPARE(errorNumber([&f] { f.themes->LoadThemes(ThemeListFixture::full); }), 6);
    QCOMPARE(f.themes->hiddenThemes().size(), 2);
    f.clickOption("userOption");
    QCOMPARE(f.themes->hiddenThemes().size(), 0);
}

void tst_ThemeListLoad::callsTheHandlerAfterEveryLoad()
{
    ThemeListFixture f;
    QStringList seen;
    f.themes->setLoadHandler([&] {
        seen << QStringLiteral("%1 shown, %2 hidden")
                    .arg(f.list().count())
                    .arg(f.themes->hiddenThemes().size());
    });
    f.load({theme("Blue"), theme("Broken", QStringLiteral("?")), theme("Red")});
    f.clickOption("userOption");
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    f.clickOption("allOption");
    QCOMPARE(seen, (QStringList{QStringLiteral("2 shown, 1 hidden"),
                                QStringLiteral("0 shown, 0 hidden")}));
    f.themes->setLoadHandler({});
    f.init();
    QCOMPARE(seen.size(), 2);
    f.themes->setLoadHandler([&] { delete f.themes; });
    f.themes->Init(&f.client, QStringLiteral("3.2.10"));
    QVERIFY(!f.themes);
}

void tst_ThemeListLoad::selectsTheFirstLineAndChoosesNothing()
{
    ThemeListFixture f;
    QXSC::ThemeRecord record = theme("Blue");
    record.templates = ZelTest::themeTemplates({entry("Page")});
    record.previewUrl = QStringLiteral("http://127.0.0.1:9/preview.png");
    f.client.themeLists[ThemeListFixture::full] = ZelTest::themeList({record, theme("Red")});
    f.themes->Init(&f.client, QStringLiteral("3.2.10"));
    QCOMPARE(f.trail, QStringList{ThemeListFixture::fullCall});
    QCOMPARE(f.list().selectedRow(), 0);
    QCOMPARE(f.selected(), QStringLiteral("nothing"));
    QCOMPARE(f.details(), QStringList(5, QString()));
    QCOMPARE(f.templates().count(), 0);
    QCOMPARE(f.preview().Url(), QString());
}

void tst_ThemeListLoad::anAnswerOfNothingEmptiesTheList()
{
    ThemeListFixture f;
    f.init();
    f.client.themeLists.clear();
    f.themes->LoadThemes(ThemeListFixture::full);
    QCOMPARE(f.list().count(), 0);
    QCOMPARE(f.list().selectedRow(), -1);
}

void tst_ThemeListLoad::anEmptyAnswerEmptiesTheList()
{
    ThemeListFixture f;
    f.init();
    f.load({});
    QCOMPARE(f.list().count(), 0);
    f.load({theme("Hidden", QString())});
    QCOMPARE(f.list().count(), 0);
    QCOMPARE(f.list().selectedRow(), -1);
}

void tst_ThemeListLoad::failsWithoutAClient()
{
    ThemeListFixture f;
    QCOMPARE(errorNumber([&f] { f.themes->LoadThemes(ThemeListFixture::full); }), 91);
    QCOMPARE(errorNumber([&f] { f.themes->Init(nullptr, QStringLiteral("3.2.10")); }), 91);
    QCOMPARE(f.trail, QStringList());
    f.clickOption("userOption");
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91")});
    f.init();
    QCOMPARE(f.list().count(), 3);
}

void tst_ThemeListLoad::failsWhenTheClientIsGone()
{
    ThemeListFixture f;
    {
        ZelTest::RecordingClient shortLived;
        shortLived.themeLists = f.client.themeLists;
        f.themes->Init(&shortLived, QStringLiteral("3.2.10"));
    }
    f.clickOption("globalOption");
    QCOMPARE(f.trail, QStringList{QStringLiteral("error 91")});
    QCOMPARE(f.list().count(), 3);
}

void tst_ThemeListLoad::passesErrorsOnToTheCaller()
{
    ThemeListFixture f;
    f.init();
    f.client.failNext(QStringLiteral("callListMethod"),
                      ServiceError(ServiceError::Kind::SignedOut, QStringLiteral("Sign in again."),
                                   QStringLiteral("expired")));
    bool caught = false;
    try {
        f.themes->Init(&f.client, QStringLiteral("1.0.0"));
    } catch (const ServiceError &error) {
        caught = true;
        QCOMPARE(error.code(), QStringLiteral("expired"));
    }
    QVERIFY(caught);
    QCOMPARE(f.trail, QStringList{ThemeListFixture::fullCall}); // and no error event
    QCOMPARE(f.list().count(), 3);
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    QCOMPARE(errorNumber([&f] { f.themes->LoadThemes(ThemeListFixture::full); }), 6);
    QCOMPARE(f.boxes.shown().size(), 0);
}

void tst_ThemeListLoad::reportsErrorsOfAChosenScope()
{
    ThemeListFixture f;
    f.init();
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    f.clickOption("userOption");
    QCOMPARE(f.trail,
             (QStringList{QStringLiteral("callListMethod(\"Studio\", \"getUserThemeList_Array\")"),
                          QStringLiteral("error 6")}));
    QCOMPARE(f.list().count(), 3);
    QVERIFY(f.option("userOption")->isChecked());
}

void tst_ThemeListLoad::refusesAListWithANullRecord()
{
    ThemeListFixture f;
    f.init();
    auto broken = std::make_shared<QXSC::ThemeCollection>();
    broken->add(std::make_shared<QXSC::ThemeRecord>(theme("Blue")));
    broken->add(nullptr);
    f.client.themeLists[ThemeListFixture::full] = broken;
    QCOMPARE(errorNumber([&f] { f.themes->LoadThemes(ThemeListFixture::full); }), 91);
    QCOMPARE(f.list().count(), 0);
}

void tst_ThemeListLoad::putsTheFormerPointerBack()
{
    ThemeListFixture f;
    QList<Qt::CursorShape> during;
    f.atCall = [&](const QString &) { during << f.themes->cursor().shape(); };
    f.init();
    QVERIFY(!f.themes->testAttribute(Qt::WA_SetCursor));
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    QCOMPARE(errorNumber([&f] { f.init(); }), 6);
    QVERIFY(!f.themes->testAttribute(Qt::WA_SetCursor));
    f.themes->setCursor(Qt::CrossCursor);
    f.client.failNext(QStringLiteral("callListMethod"), Zel::RuntimeError(6));
    f.clickOption("userOption");
    QCOMPARE(f.themes->cursor().shape(), Qt::CrossCursor);
    QCOMPARE(during, QList<Qt::CursorShape>(3, Qt::WaitCursor));
}

void tst_ThemeListLoad::survivesBeingDestroyedInACall()
{
    ThemeListFixture f;
    f.init();
    f.atCall = [&](const QString &) { delete f.themes; };
    f.themes->LoadThemes(ThemeListFixture::full);
    QVERIFY(!f.themes);
}

void tst_ThemeListLoad::columnsAreAsWideAsTheyShould()
{
    ThemeListFixture f;
    QCOMPARE(f.list().columnWidth(0), 5468.0);
    QCOMPARE(f.templates().columnWidth(0), 4235.0);
    // The descriptions take the room that is left, down to a least width.
    const auto roomOf = [](const Zel::ListView &list) {
        return Zel::twipsFromPixels(list.viewport()->width(), Zel::logicalDpi(&list));
    };
    QVERIFY(roomOf(f.list()) > 5468 + 3700);
    QCOMPARE(f.list().columnWidth(1), roomOf(f.list()) - 5468);
    f.themes->resize(f.themes->width() + 200, f.themes->height());
    QTRY_COMPARE(f.list().columnWidth(1), roomOf(f.list()) - 5468);
    f.themes->resize(400, f.themes->height());
    QTRY_COMPARE(f.list().columnWidth(1), 3700.0);
}

void tst_ThemeListLoad::leavesTheClientAlone()
{
    ZelTest::RecordingClient client;
    {
        ThemeList themes;
        themes.Init(&client, QStringLiteral("3.2.10"));
        QCOMPARE(client.parent(), nullptr);
    }
    QCOMPARE(client.calls().size(), 1);
}

ZEL_TEST_MAIN(tst_ThemeListLoad)
#include "tst_themelistload.moc"
