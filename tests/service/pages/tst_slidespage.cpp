// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "componentpages.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString page = QStringLiteral("slides/page.html");
const QString three = QStringLiteral(R"([{"title":"A","picture":"","guid":"g1"},)"
                                     R"({"title":"B","picture":"","guid":""},)"
                                     R"({"title":"C","picture":"","guid":"g3","later":[1]}])");
const QString titles =
    QStringLiteral("[...document.querySelectorAll('.title')].map((one) => one.value).join(' ')");

QJsonObject slide(const QByteArray &title, const QByteArray &picture, const QByteArray &guid)
{
    return {{QStringLiteral("title"), QString::fromUtf8(title)},
            {QStringLiteral("picture"), QString::fromUtf8(picture)},
            {QStringLiteral("guid"), QString::fromUtf8(guid)}};
}

} // namespace

class SlidesPageTest : public ComponentPagesTest
{
    Q_OBJECT

private slots:
    void givesBackWhatNobodyTouched_data();
    void givesBackWhatNobodyTouched();
    void endsWithoutAResultWhenCancelled();
    void arrangesByKeyboardAndSaysSo();
    void arrangesByButtons();
    void arrangesByMouse();
    void staysInOrderWhenDraggedOutOfTheWindow();
    void addsPicturesFromTheAssetPicker();
    void changesThePictureOfASlide();
    void changesNothingWhenNoPictureIsChosen();
    void renames();
    void removesAndBringsBack();
    void reportsEachPictureOnce();
    void showsPicturesOfTheServiceOnly();
    void saysWhatItCannotEdit();
    void keepsThousandsInOrder();
    void namesEveryControl();

private:
    /// The list and the dependencies of a result.
    std::pair<QJsonArray, QString> arranged()
    {
        const QJsonArray outer = result().toArray();
        return {QJsonDocument::fromJson(outer.at(0).toArray().at(0).toString().toUtf8()).array(),
                outer.at(1).toArray().at(1).toString()};
    }
};

void SlidesPageTest::givesBackWhatNobodyTouched_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QJsonValue>("result");
    const auto list = [](const QString &value, const QString &dependencies) {
        return QJsonValue(QJsonArray{QJsonArray{value}, QJsonArray{QString(), dependencies}});
    };
    const QString spaced = QStringLiteral("[ {\"title\" : \"A\\u00e9\" } ]\r\n");
    QTest::newRow("nothing") << QString() << list(QString(), QString());
    QTest::newRow("three") << three << list(three, QStringLiteral("g1,g3"));
    QTest::newRow("spaces and escapes") << spaced << list(spaced, QString());
    // Of what is no list nothing is known to depend on anything.
    for (const char *value : {"no JSON", "{}", "[1]", "[null]", "[[]]", "7"})
        QTest::newRow(value) << QString::fromLatin1(value)
                             << QJsonValue(QString::fromLatin1(value));
}

void SlidesPageTest::givesBackWhatNobodyTouched()
{
    QFETCH(QString, value);
    QFETCH(QJsonValue, result);
    open(page, value);
    click(QStringLiteral("#ok"));
    QCOMPARE(this->result(), result);
}

void SlidesPageTest::endsWithoutAResultWhenCancelled()
{
    open(page, three);
    click(QStringLiteral("li:nth-child(1) .remove"));
    click(QStringLiteral("#cancel"));
    QVERIFY(result().isUndefined());
}

void SlidesPageTest::arrangesByKeyboardAndSaysSo()
{
    open(page, three);
    click(QStringLiteral("li:nth-child(1) .title"));
    press(Qt::Key_Down, Qt::AltModifier);
    QVERIFY(says(QStringLiteral("A is now slide 2 of 3.")));
    press(Qt::Key_Down, Qt::AltModifier);
    QVERIFY(says(QStringLiteral("A is now slide 3 of 3.")));
    press(Qt::Key_Down, Qt::AltModifier);
    QVERIFY(says(QStringLiteral("This is the last slide already.")));
    QVERIFY(becomes(titles, QStringLiteral("B C A")));
    QVERIFY(becomes(QStringLiteral("document.activeElement.value"), QStringLiteral("A")));
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_Return, Qt::ControlModifier);
    const auto [list, dependencies] = arranged();
    QCOMPARE(list.at(1).toObject(), slide("A", "", "g1"));
    QCOMPARE(list.at(2).toObject().value(QLatin1String("later")).toArray(), QJsonArray{1});
    QCOMPARE(dependencies, QStringLiteral("g1,g3"));
}

void SlidesPageTest::arrangesByButtons()
{
    open(page, three);
    click(QStringLiteral("li:nth-child(3) .up"));
    click(QStringLiteral("li:nth-child(2) .up"));
    QVERIFY(becomes(titles, QStringLiteral("C A B")));
    // Where there is nowhere to go the button stays in the keyboard's way and says so.
    press(Qt::Key_Space);
    QVERIFY(says(QStringLiteral("This is the first slide already.")));
    QVERIFY(
        becomes(QStringLiteral("document.activeElement.ariaLabel"), QStringLiteral("Move up: C")));
    QVERIFY(becomes(QStringLiteral("document.activeElement.ariaDisabled"), QStringLiteral("true")));
}

void SlidesPageTest::arrangesByMouse()
{
    open(page, three);
    const QPoint first = placeOf(QStringLiteral("li:nth-child(1) .handle"));
    const QPoint last = placeOf(QStringLiteral("li:nth-child(3) .handle"));
    drag(first, last);
    QVERIFY(becomes(titles, QStringLiteral("B C A")));
    drag(last, first);
    QVERIFY(becomes(titles, QStringLiteral("A B C")));
    QVERIFY(becomes(QStringLiteral("document.querySelectorAll('.dragged').length"), 0));
    QVERIFY(becomes(QStringLiteral("[...document.querySelectorAll('li')].map((one) => "
                                   "one.style.transform).join('')"),
                    QString()));
}

void SlidesPageTest::staysInOrderWhenDraggedOutOfTheWindow()
{
    open(page, three, QSize(500, 380));
    const QPoint first = placeOf(QStringLiteral("li:nth-child(1) .handle"));
    drag(first, first + QPoint(60, 2000));
    QVERIFY(becomes(titles, QStringLiteral("B C A")));
    const QPoint middle = placeOf(QStringLiteral("li:nth-child(2) .handle"));
    drag(middle, middle - QPoint(40, 2000));
    QVERIFY(becomes(titles, QStringLiteral("C B A")));
    click(QStringLiteral("#ok"));
    QCOMPARE(arranged().first.size(), 3);
}

void SlidesPageTest::addsPicturesFromTheAssetPicker()
{
    open(page, three);
    asset = {QString::fromUtf8("/a/77/Autumn_walk%20é.png?s=x"), QStringLiteral("g9")};
    click(QStringLiteral("#add-picture"));
    QVERIFY(says(QStringLiteral("Picture added as slide 4.")));
    QCOMPARE(pickerRequests, 1);
    QVERIFY(becomes(QStringLiteral("document.activeElement.value"),
                    QString::fromUtf8("Autumn walk é")));
    press(Qt::Key_Return, Qt::ControlModifier);
    const auto [list, dependencies] = arranged();
    QCOMPARE(list.size(), 4);
    QCOMPARE(list.at(3).toObject(), slide("Autumn walk é", "/a/77/Autumn_walk%20é.png?s=x", "g9"));
    QCOMPARE(dependencies, QStringLiteral("g1,g3,g9"));
}

void SlidesPageTest::changesThePictureOfASlide()
{
    open(page, three);
    asset = {QStringLiteral("/a/5/p.png"), QStringLiteral("g5")};
    click(QStringLiteral("li:nth-child(1) .thumbnail"));
    QVERIFY(says(QStringLiteral("Picture changed.")));
    click(QStringLiteral("#ok"));
    const auto [list, dependencies] = arranged();
    QCOMPARE(list.at(0).toObject(), slide("A", "/a/5/p.png", "g5"));
    QCOMPARE(dependencies, QStringLiteral("g5,g3"));
}

void SlidesPageTest::changesNothingWhenNoPictureIsChosen()
{
    open(page, three);
    click(QStringLiteral("#add-picture"));
    QVERIFY(becomes(QStringLiteral("childWindowType"), 0));
    QCOMPARE(pickerRequests, 1);
    click(QStringLiteral("#ok"));
    QCOMPARE(result().toArray().at(0).toArray().at(0).toString(), three);
}

void SlidesPageTest::renames()
{
    open(page, three);
    click(QStringLiteral("li:nth-child(2) .title"));
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("Say \"hello\" <b>"));
    QVERIFY(becomes(QStringLiteral("document.querySelector('li:nth-child(2) .remove').ariaLabel"),
                    QStringLiteral("Remove: Say \"hello\" <b>")));
    click(QStringLiteral("#ok"));
    QCOMPARE(arranged().first.at(1).toObject(), slide("Say \"hello\" <b>", "", ""));
}

void SlidesPageTest::removesAndBringsBack()
{
    open(page, three);
    click(QStringLiteral("li:nth-child(2) .remove"));
    QVERIFY(says(QStringLiteral("B removed. 2 left. Undo is at the foot of the page.")));
    QVERIFY(
        becomes(QStringLiteral("document.activeElement.ariaLabel"), QStringLiteral("Remove: C")));
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    QVERIFY(becomes(QStringLiteral("document.getElementById('empty').hidden"), false));
    QVERIFY(becomes(QStringLiteral("document.activeElement.id"), QStringLiteral("undo")));
    press(Qt::Key_Space);
    click(QStringLiteral("#undo"));
    click(QStringLiteral("#undo"));
    QVERIFY(becomes(titles, QStringLiteral("A B C")));
    QVERIFY(becomes(QStringLiteral("document.getElementById('undo').hidden"), true));
    click(QStringLiteral("#ok"));
    QCOMPARE(arranged().first.size(), 3);
}

void SlidesPageTest::reportsEachPictureOnce()
{
    open(page, QStringLiteral(R"([{"guid":"b"},{"guid":"a"},{"guid":"b"},{"guid":7}])"));
    click(QStringLiteral("#ok"));
    QCOMPARE(arranged().second, QStringLiteral("b,a"));
}

void SlidesPageTest::showsPicturesOfTheServiceOnly()
{
    const ZelTest::HttpReply list =
        api().call("GET", "/v1/themes?scope=full", api().token(QStringLiteral("maja"), 1001));
    const QString preview = list.json()
                                .value(QLatin1String("themes"))
                                .toObject()
                                .value(QLatin1String("rows"))
                                .toArray()
                                .at(0)
                                .toArray()
                                .at(8)
                                .toString();
    const QJsonArray slides{
        slide("whole", preview.toUtf8(), "a"),
        slide("relative", QUrl(preview).toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority), "b"),
        slide("elsewhere", "http://127.0.0.1:9/x.png", "c"),
        slide("script", "javascript:alert(1)", "d"), slide("none", "", "")};
    open(page, QString::fromUtf8(QJsonDocument(slides).toJson()));
    QVERIFY(becomes(QStringLiteral("[...document.querySelectorAll('.thumbnail img')].map((one) => "
                                   "one.complete && one.naturalWidth > 0)"),
                    QJsonArray{true, true}));
    QVERIFY(becomes(QStringLiteral("[...document.querySelectorAll('.thumbnail')].map((one) => "
                                   "one.textContent)"),
                    QJsonArray{QString(), QString(), QStringLiteral("Not shown"),
                               QStringLiteral("Not shown"), QStringLiteral("No picture")}));
}

void SlidesPageTest::saysWhatItCannotEdit()
{
    open(page, QStringLiteral("<b>old</b> slides"));
    QVERIFY(becomes(QStringLiteral("document.getElementById('notice').hidden"), false));
    click(QStringLiteral("#add-blank"));
    type(QStringLiteral("New"));
    click(QStringLiteral("#ok"));
    const auto [list, dependencies] = arranged();
    QCOMPARE(list, QJsonArray{slide("New", "", "")});
    QCOMPARE(dependencies, QString());
}

void SlidesPageTest::keepsThousandsInOrder()
{
    QJsonArray slides;
    for (int i = 0; i < 2000; ++i)
        slides.append(slide(QByteArray::number(i), "", ""));
    open(page, QString::fromUtf8(QJsonDocument(slides).toJson()));
    click(QStringLiteral("li:nth-child(2000) .title"));
    press(Qt::Key_Up, Qt::AltModifier);
    press(Qt::Key_Return, Qt::ControlModifier);
    const QJsonArray list = arranged().first;
    QCOMPARE(list.size(), 2000);
    QCOMPARE(list.at(1998).toObject(), slide("1999", "", ""));
    QCOMPARE(list.at(1999).toObject(), slide("1998", "", ""));
}

void SlidesPageTest::namesEveryControl()
{
    open(page, three);
    const QString unnamed = QStringLiteral(
        "[...document.querySelectorAll('button, input')].filter((one) => "
        "!(one.ariaLabel || one.textContent.trim() || one.labels?.length)).map((one) => "
        "one.className)");
    QCOMPARE(read(unnamed), QJsonValue(QJsonArray()));
}

ZEL_COMPONENT_PAGES_MAIN(SlidesPageTest)
#include "tst_slidespage.moc"
