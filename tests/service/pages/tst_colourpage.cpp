// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "componentpages.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString page = QStringLiteral("colour/page.html");
const QString hexValue = QStringLiteral("document.getElementById('hex').value");
const QString gradient =
    QStringLiteral("linear-gradient(45deg, #102030 0%, rgba(1, 2, 3, 0.5) 40%, #ffffff 100%)");

} // namespace

class ColourPageTest : public ComponentPagesTest
{
    Q_OBJECT

private slots:
    void givesBackWhatNobodyTouched_data();
    void givesBackWhatNobodyTouched();
    void readsEveryFormOfAColour_data();
    void readsEveryFormOfAColour();
    void endsWithoutAResultWhenCancelled();
    void choosesByHexByKeyboard();
    void marksWhatIsNoColour();
    void choosesByMouseInTheArea();
    void movesInTheAreaByKeyboard();
    void choosesSwatchesByMouseAndKeyboard();
    void changesTheOpacity();
    void tellsHowWellTextCanBeRead();
    void makesAGradientOfAColour();
    void movesStopsByMouse();
    void movesStopsByKeyboardInOrder();
    void addsAndRemovesStops();
    void turnsTheGradient();
    void saysWhatItCannotEditAndReplacesItOnly();
    void namesEveryControl();
    void fillsWhateverRoomThereIs_data();
    void fillsWhateverRoomThereIs();
    void isStyledByTheSheetOfStudio();
    void runsNothingThatWasNotServed();
};

void ColourPageTest::givesBackWhatNobodyTouched_data()
{
    QTest::addColumn<QString>("value");
    for (const QString &value :
         {QString(), QStringLiteral("#ABC"), QStringLiteral("  red "), gradient,
          QStringLiteral("linear-gradient(to left, red, blue)"), QStringLiteral("rgb(1 2 3 / 50%)"),
          QStringLiteral("no colour \"<b>&amp;</b>\r\n\u2028"), QStringLiteral("url(x.png)"),
          QString::fromUtf8("😀")})
        QTest::newRow(qPrintable(QLatin1Char('"') + value + QLatin1Char('"'))) << value;
}

void ColourPageTest::givesBackWhatNobodyTouched()
{
    QFETCH(QString, value);
    open(page, value);
    click(QStringLiteral("#ok"));
    QCOMPARE(result(), QJsonValue(value));
}

void ColourPageTest::readsEveryFormOfAColour_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *value, const char *shown) {
        QTest::newRow(value) << QString::fromLatin1(value) << QString::fromLatin1(shown);
    };
    row("#1B5FB4", "#1b5fb4");
    row("#abc", "#aabbcc");
    row("#11223380", "rgba(17, 34, 51, 0.5)");
    row("rgba(12, 34, 56, 0.25)", "rgba(12, 34, 56, 0.25)");
    row("rgb(12 34 56)", "#0c2238");
    row("hsl(120, 100%, 25%)", "#008000");
    row("RebeccaPurple", "#663399");
    row("transparent", "rgba(0, 0, 0, 0)");
    row("black", "#000000");
}

void ColourPageTest::readsEveryFormOfAColour()
{
    QFETCH(QString, value);
    QFETCH(QString, shown);
    open(page, value);
    QVERIFY(becomes(hexValue, shown));
    QVERIFY(becomes(QStringLiteral("document.getElementById('notice').hidden"), true));
}

void ColourPageTest::endsWithoutAResultWhenCancelled()
{
    open(page, QStringLiteral("#102030"));
    click(QStringLiteral("[title='#c62828']"));
    click(QStringLiteral("#cancel"));
    QVERIFY(result().isUndefined());
    open(page, QStringLiteral("#102030"));
    press(Qt::Key_Escape);
    QVERIFY(result().isUndefined());
}

void ColourPageTest::choosesByHexByKeyboard()
{
    open(page, QStringLiteral("#102030"));
    click(QStringLiteral("#hex"));
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("fedcba")); // the sign may be left out
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(), QJsonValue(QStringLiteral("#fedcba")));
}

void ColourPageTest::marksWhatIsNoColour()
{
    open(page, QStringLiteral("#102030"));
    click(QStringLiteral("#hex"));
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("#12"));
    const QString invalid = QStringLiteral("document.getElementById('hex').ariaInvalid");
    QVERIFY(becomes(invalid, QStringLiteral("true")));
    QVERIFY(becomes(
        QStringLiteral("document.getElementById('hex-problem').textContent.startsWith('Write')"),
        true));
    press(Qt::Key_Tab);
    QVERIFY(becomes(hexValue, QStringLiteral("#102030")));
    QVERIFY(becomes(invalid, QStringLiteral("false")));
    click(QStringLiteral("#ok"));
    QCOMPARE(result(), QJsonValue(QStringLiteral("#102030")));
}

void ColourPageTest::choosesByMouseInTheArea()
{
    open(page, QStringLiteral("#ff0000"));
    const QPoint middle = placeOf(QStringLiteral("#area"));
    drag(middle, middle - QPoint(2000, 0)); // to the left edge and beyond: a grey
    QVERIFY(becomes(QStringLiteral("document.getElementById('area').ariaValueText"),
                    QStringLiteral("Saturation 0 %, brightness 50 %")));
    drag(middle, middle + QPoint(2000, -2000)); // the hue has been kept
    QVERIFY(becomes(hexValue, QStringLiteral("#ff0000")));
}

void ColourPageTest::movesInTheAreaByKeyboard()
{
    open(page, QStringLiteral("#ff0000"));
    read(QStringLiteral("document.getElementById('area').focus()"));
    for (int i = 0; i < 5; ++i)
        press(Qt::Key_Left, Qt::ShiftModifier);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    QVERIFY(becomes(QStringLiteral("document.getElementById('area').ariaValueText"),
                    QStringLiteral("Saturation 51 %, brightness 99 %")));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(), QJsonValue(QStringLiteral("#fc7c7c")));
}

void ColourPageTest::choosesSwatchesByMouseAndKeyboard()
{
    open(page, QStringLiteral("#123456"));
    click(QStringLiteral("[title='#7f1d1d']"));
    QVERIFY(becomes(hexValue, QStringLiteral("#7f1d1d")));
    press(Qt::Key_Right);
    QVERIFY(becomes(hexValue, QStringLiteral("#c62828")));
    press(Qt::Key_Down);
    press(Qt::Key_Left);
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(), QJsonValue(QStringLiteral("#1d3557")));
}

void ColourPageTest::changesTheOpacity()
{
    open(page, QStringLiteral("#112233"));
    read(QStringLiteral("document.getElementById('alpha').focus()"));
    press(Qt::Key_Home);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(), QJsonValue(QStringLiteral("rgba(17, 34, 51, 0.02)")));
}

void ColourPageTest::tellsHowWellTextCanBeRead()
{
    const QString verdicts = QStringLiteral(
        "[...document.querySelectorAll('.verdict')].map((one) => one.textContent).join('; ')");
    open(page, QStringLiteral("#000000"));
    QVERIFY(becomes(verdicts, QStringLiteral("21 : 1, very good; 1 : 1, too faint")));
    open(page, QStringLiteral("#767676"));
    QVERIFY(becomes(verdicts, QStringLiteral("4.5 : 1, good; 4.6 : 1, good")));
}

void ColourPageTest::makesAGradientOfAColour()
{
    open(page, QStringLiteral("#ff0000"));
    click(QStringLiteral("#kind-gradient"));
    QVERIFY(becomes(QStringLiteral("document.getElementById('stops').children.length"), 2));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(),
             QJsonValue(QStringLiteral("linear-gradient(90deg, #ff0000 0%, #730000 100%)")));
}

void ColourPageTest::movesStopsByMouse()
{
    open(page, gradient);
    const QPoint second = placeOf(QStringLiteral("#stops button:nth-child(2)"));
    drag(second, second - QPoint(3000, 0)); // past the first
    QVERIFY(
        becomes(QStringLiteral("document.getElementById('position').value"), QStringLiteral("0")));
    const QPoint last = placeOf(QStringLiteral("#stops button:nth-child(3)"));
    drag(last, last - QPoint(0, 300)); // up and down moves nothing
    click(QStringLiteral("#ok"));
    QCOMPARE(result(),
             QJsonValue(QStringLiteral("linear-gradient(45deg, #102030 0%, rgba(1, 2, 3, 0.5) 0%, "
                                       "#ffffff 100%)")));
}

void ColourPageTest::movesStopsByKeyboardInOrder()
{
    open(page, gradient);
    read(QStringLiteral("document.querySelector('#stops button').focus()"));
    for (int i = 0; i < 5; ++i)
        press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Left);
    const QString focused = QStringLiteral("document.activeElement.ariaLabel");
    QVERIFY(becomes(focused, QStringLiteral("Stop 2 of 3, #102030 at 49 %")));
    press(Qt::Key_PageUp);
    QVERIFY(becomes(focused, QStringLiteral("Stop 1 of 3, rgba(1, 2, 3, 0.5) at 40 %")));
    press(Qt::Key_End);
    // At the same place it stays on its side of the other one.
    QVERIFY(becomes(focused, QStringLiteral("Stop 2 of 3, rgba(1, 2, 3, 0.5) at 100 %")));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(), QJsonValue(QStringLiteral("linear-gradient(45deg, #102030 49%, "
                                                 "rgba(1, 2, 3, 0.5) 100%, #ffffff 100%)")));
}

void ColourPageTest::addsAndRemovesStops()
{
    open(page, QStringLiteral("linear-gradient(0deg, #000000 0%, #ffffff 100%)"));
    click(QStringLiteral("#add-stop"));
    QVERIFY(says(QStringLiteral("Stop added at 50 percent. 3 stops.")));
    QVERIFY(becomes(hexValue, QStringLiteral("#808080")));
    press(Qt::Key_Delete);
    QVERIFY(says(QStringLiteral("Stop removed. 2 stops.")));
    press(Qt::Key_Delete);
    QVERIFY(says(QStringLiteral("A gradient needs two stops.")));
    click(QStringLiteral("#track"));
    QVERIFY(becomes(QStringLiteral("document.getElementById('stops').children.length"), 3));
    for (int i = 0; i < 20; ++i)
        read(QStringLiteral("document.getElementById('add-stop').click()"));
    QVERIFY(becomes(QStringLiteral("document.getElementById('stops').children.length"), 12));
    QVERIFY(becomes(QStringLiteral("document.getElementById('add-stop').disabled"), true));
}

void ColourPageTest::turnsTheGradient()
{
    open(page, QStringLiteral("linear-gradient(to right, red, blue)"));
    click(QStringLiteral("#angle"));
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("405"));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(result(),
             QJsonValue(QStringLiteral("linear-gradient(45deg, #ff0000 0%, #0000ff 100%)")));
}

void ColourPageTest::saysWhatItCannotEditAndReplacesItOnly()
{
    const QString value = QStringLiteral("<img src=x onerror=alert(1)> url(a.png)");
    open(page, value);
    QVERIFY(becomes(
        QStringLiteral("document.getElementById('notice').textContent.endsWith('url(a.png)')"),
        true));
    QVERIFY(becomes(QStringLiteral("document.querySelectorAll('img').length"), 0));
    click(QStringLiteral("[title='#ffffff']"));
    click(QStringLiteral("#ok"));
    QCOMPARE(result(), QJsonValue(QStringLiteral("#ffffff")));
}

void ColourPageTest::namesEveryControl()
{
    open(page, gradient);
    const QString unnamed = QStringLiteral(
        "[...document.querySelectorAll('button, input, [tabindex]')].filter((one) => "
        "!(one.ariaLabel || one.textContent.trim() || one.labels?.length)).map((one) => one.id)");
    QCOMPARE(read(unnamed), QJsonValue(QJsonArray()));
}

void ColourPageTest::fillsWhateverRoomThereIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::newRow("a gradient") << page << gradient;
    QTest::newRow("slides") << QStringLiteral("slides/page.html")
                            << QStringLiteral(R"([{"title":"A"},{"title":"B"},{"title":"C"},{}])");
    QTest::newRow("a schedule") << QStringLiteral("schedule/page.html")
                                << QStringLiteral(R"([{"start":"9","end":"8","title":"A"},{},{}])");
    QTest::newRow("a long value") << page << QString(5000, QLatin1Char('x'));
}

void ColourPageTest::fillsWhateverRoomThereIs()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    for (const QSize &size : {QSize(800, 580), QSize(500, 380)}) {
        open(name, value, size);
        QVERIFY(becomes(QStringLiteral("document.documentElement.scrollWidth <= innerWidth && "
                                       "document.querySelector('main').scrollWidth <= innerWidth"),
                        true));
        QVERIFY(becomes(
            QStringLiteral("document.querySelector('footer').getBoundingClientRect().bottom"),
            size.height()));
        QVERIFY(becomes(QStringLiteral("[document.body.offsetWidth, document.body.offsetHeight]"),
                        QJsonArray{size.width(), size.height()}));
        // A dialog that were told of sizes would stop following its window.
        QCOMPARE(read(QStringLiteral("(window.onresize = () => 1, window.onresize)")),
                 QJsonValue(QJsonValue::Null));
    }
}

void ColourPageTest::isStyledByTheSheetOfStudio()
{
    open(page, QString());
    const QString sheet = QStringLiteral("document.querySelector('[data-studio]').href");
    QCOMPARE(read(sheet), QJsonValue(address(QStringLiteral("studio.css"))));
    QCOMPARE(read(QStringLiteral("getComputedStyle(document.querySelector('footer')).display")),
             QJsonValue(QStringLiteral("flex")));
    QCOMPARE(read(QStringLiteral("getComputedStyle(document.documentElement).colorScheme")),
             QJsonValue(QStringLiteral("light dark")));
}

void ColourPageTest::runsNothingThatWasNotServed()
{
    open(page, QString());
    read(QStringLiteral("document.body.append(Object.assign(document.createElement('script'), "
                        "{textContent: 'window.injected = 1'}))"));
    QCOMPARE(read(QStringLiteral("typeof injected")), QJsonValue(QStringLiteral("undefined")));
    QVERIFY(console.join(QLatin1Char('\n')).contains(QLatin1String("Content Security Policy")));
    console.clear();
}

ZEL_COMPONENT_PAGES_MAIN(ColourPageTest)
#include "tst_colourpage.moc"
