// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "componentpages.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString page = QStringLiteral("schedule/page.html");

QString item(const char *start, const char *end, const char *title, const char *speaker = "")
{
    return QString::fromUtf8(
        QJsonDocument(QJsonObject{{QStringLiteral("start"), QString::fromUtf8(start)},
                                  {QStringLiteral("end"), QString::fromUtf8(end)},
                                  {QStringLiteral("title"), QString::fromUtf8(title)},
                                  {QStringLiteral("speaker"), QString::fromUtf8(speaker)}})
            .toJson(QJsonDocument::Compact));
}

QString schedule(const QStringList &items)
{
    return QLatin1Char('[') + items.join(QLatin1Char(',')) + QLatin1Char(']');
}

const QString day = schedule({item("09:00", "10:00", "A", "Ada"), item("10:00", "11:00", "B"),
                              item("13:00", "14:30", "C", "Teo")});

QString field(int line, const char *name)
{
    return QStringLiteral("tr:nth-child(%1) .%2").arg(line).arg(QLatin1String(name));
}

const QString lines = QStringLiteral(
    "[...document.querySelectorAll('#items tr')].map((one) => [...one.querySelectorAll('input')]"
    ".map((input) => input.value).join('|'))");

} // namespace

class SchedulePageTest : public ComponentPagesTest
{
    Q_OBJECT

private slots:
    void givesBackWhatNobodyTouched_data();
    void givesBackWhatNobodyTouched();
    void endsWithoutAResultWhenCancelled();
    void takesTimesInManyForms_data();
    void takesTimesInManyForms();
    void addsALineWhereTheLastOneEnds();
    void removesAndBringsBack();
    void sortsByTimeAndKeepsEqualOnesInOrder();
    void marksEndsThatAreNotAfterTheStart();
    void marksWhatOverlaps();
    void goesFromLineToLineByKeyboard();
    void keepsWhatItDoesNotKnow();
    void saysWhatItCannotEdit();
    void namesEveryControl();

private:
    QJsonArray planned() { return QJsonDocument::fromJson(result().toString().toUtf8()).array(); }

    void write(const QString &selector, const QString &text)
    {
        click(selector);
        press(Qt::Key_A, Qt::ControlModifier);
        if (text.isEmpty())
            press(Qt::Key_Delete);
        else
            type(text);
    }
};

void SchedulePageTest::givesBackWhatNobodyTouched_data()
{
    QTest::addColumn<QString>("value");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a day") << day;
    QTest::newRow("spaces and line breaks") << QStringLiteral("[ {\"start\" :\"9\"} ]\r\n");
    QTest::newRow("wrong times") << schedule({item("noon", "", "A"), item("10:00", "09:00", "B")});
    for (const char *value : {"no JSON", "{}", "[1]", "null"})
        QTest::newRow(value) << QString::fromLatin1(value);
}

void SchedulePageTest::givesBackWhatNobodyTouched()
{
    QFETCH(QString, value);
    open(page, value);
    click(QStringLiteral("#ok"));
    QCOMPARE(result(), QJsonValue(value));
}

void SchedulePageTest::endsWithoutAResultWhenCancelled()
{
    open(page, day);
    write(field(1, "title"), QStringLiteral("Other"));
    press(Qt::Key_Escape);
    QVERIFY(result().isUndefined());
}

void SchedulePageTest::takesTimesInManyForms_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("time");
    const auto row = [](const char *typed, const char *time) {
        QTest::newRow(typed) << QString::fromLatin1(typed) << QString::fromLatin1(time);
    };
    row("7:05", "07:05");
    row("7.05", "07:05");
    row("0705", "07:05");
    row("705", "07:05");
    row("7", "07:00");
    row("7h30", "07:30");
    row("7:05 am", "07:05");
    row("12 a.m.", "00:00");
    row("08:59", "08:59");
    row("noon", "");
    row("8:60", "");
    row("13 pm", "");
    row("25:00", "");
    row("24:01", "");
    row("-1", "");
    row("7:5", "");
}

void SchedulePageTest::takesTimesInManyForms()
{
    QFETCH(QString, typed);
    QFETCH(QString, time);
    open(page, day);
    write(field(1, "start"), typed);
    press(Qt::Key_Tab);
    const QString value = QStringLiteral("document.querySelector('.start').value");
    const QString invalid = QStringLiteral("document.querySelector('.start').ariaInvalid");
    QVERIFY(becomes(value, time.isEmpty() ? typed : time));
    QVERIFY(becomes(invalid, time.isEmpty() ? QStringLiteral("true") : QStringLiteral("false")));
    click(QStringLiteral("#ok"));
    if (time.isEmpty()) {
        QVERIFY(becomes(QStringLiteral("document.getElementById('message').textContent"),
                        QStringLiteral("One time needs your attention.")));
        QVERIFY(becomes(QStringLiteral("document.activeElement.className"),
                        QStringLiteral("start time")));
        write(field(1, "start"), QStringLiteral("9"));
        press(Qt::Key_Return, Qt::ControlModifier);
        QCOMPARE(planned(), QJsonDocument::fromJson(day.toUtf8()).array());
    } else {
        QCOMPARE(planned().at(0).toObject().value(QLatin1String("start")).toString(), time);
    }
}

void SchedulePageTest::addsALineWhereTheLastOneEnds()
{
    open(page, day);
    click(QStringLiteral("#add"));
    QVERIFY(says(QStringLiteral("Line 4 added.")));
    type(QStringLiteral("Late \"show\""));
    press(Qt::Key_Tab);
    type(QStringLiteral("Zoe"));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(
        planned().at(3).toObject(),
        QJsonDocument::fromJson(item("14:30", "16:00", "Late \"show\"", "Zoe").toUtf8()).object());
    open(page, QString());
    QVERIFY(becomes(QStringLiteral("document.getElementById('empty').hidden"), false));
    click(QStringLiteral("#add"));
    QVERIFY(becomes(lines, QJsonArray{QStringLiteral("09:00|09:30||")}));
}

void SchedulePageTest::removesAndBringsBack()
{
    open(page, day);
    click(field(2, "remove"));
    QVERIFY(says(QStringLiteral("Line 2 removed. 2 left. Undo is at the foot of the page.")));
    QVERIFY(becomes(QStringLiteral("document.getElementById('message').textContent"),
                    QStringLiteral("Removed “B”.")));
    press(Qt::Key_Delete, Qt::AltModifier); // the line that the keyboard is in now
    QVERIFY(becomes(lines, QJsonArray{QStringLiteral("09:00|10:00|A|Ada")}));
    click(QStringLiteral("#undo"));
    click(QStringLiteral("#undo"));
    QVERIFY(becomes(QStringLiteral("document.getElementById('undo').hidden"), true));
    click(QStringLiteral("#ok"));
    QCOMPARE(planned(), QJsonDocument::fromJson(day.toUtf8()).array());
}

void SchedulePageTest::sortsByTimeAndKeepsEqualOnesInOrder()
{
    open(page, schedule({item("noon", "", "last"), item("10:00", "11:00", "c"),
                         item("9:30", "10:00", "b"), item("9:00", "9:30", "a1"),
                         item("09:00", "9:30", "a2"), item("09:00", "09:15", "a0")}));
    click(QStringLiteral("#sort"));
    QVERIFY(says(QStringLiteral("The schedule is sorted by time.")));
    QVERIFY(becomes(QStringLiteral("[...document.querySelectorAll('.title')].map((one) => "
                                   "one.value).join(' ')"),
                    QStringLiteral("a0 a1 a2 b c last")));
    click(QStringLiteral("#sort"));
    QVERIFY(says(QStringLiteral("The schedule is in order already.")));
}

void SchedulePageTest::marksEndsThatAreNotAfterTheStart()
{
    open(page, day);
    write(field(1, "end"), QStringLiteral("9:00"));
    const QString note =
        QStringLiteral("document.querySelector('.end').nextElementSibling.textContent");
    QVERIFY(becomes(note, QStringLiteral("Too early")));
    QVERIFY(becomes(QStringLiteral("document.getElementById(document.querySelector('.end')"
                                   ".getAttribute('aria-describedby')).textContent"),
                    QStringLiteral("Too early")));
    press(Qt::Key_Return, Qt::ControlModifier);
    QVERIFY(
        becomes(QStringLiteral("document.activeElement.className"), QStringLiteral("end time")));
    write(field(1, "end"), QStringLiteral("9:01"));
    QVERIFY(becomes(note, QString()));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(planned().at(0).toObject().value(QLatin1String("end")).toString(),
             QStringLiteral("09:01"));
}

void SchedulePageTest::marksWhatOverlaps()
{
    open(page, day);
    const QString marked =
        QStringLiteral("[...document.querySelectorAll('tr.overlap .title')].map((one) => "
                       "one.value + ': ' + one.nextElementSibling.textContent)");
    QVERIFY(becomes(marked, QJsonArray()));
    write(field(2, "end"), QStringLiteral("13:01"));
    QVERIFY(becomes(marked, QJsonArray{QStringLiteral("B: At the same time as line 3"),
                                       QStringLiteral("C: At the same time as line 2")}));
    QVERIFY(becomes(QStringLiteral("document.getElementById('message').textContent"),
                    QStringLiteral("2 items overlap.")));
    // It may be meant so.
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(planned().size(), 3);
}

void SchedulePageTest::goesFromLineToLineByKeyboard()
{
    open(page, day);
    click(field(1, "speaker"));
    const QString focused = QStringLiteral("document.activeElement.ariaLabel");
    press(Qt::Key_Down);
    QVERIFY(becomes(focused, QStringLiteral("Speaker, line 2")));
    press(Qt::Key_Return);
    QVERIFY(becomes(focused, QStringLiteral("Speaker, line 3")));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    QVERIFY(becomes(focused, QStringLiteral("Speaker, line 1")));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QVERIFY(becomes(focused, QStringLiteral("Title, line 4")));
}

void SchedulePageTest::keepsWhatItDoesNotKnow()
{
    open(page, QStringLiteral(R"([{"start":"9","end":"10","room":{"a":[1,null]},"title":7}])"));
    write(field(1, "speaker"), QStringLiteral("Ada"));
    press(Qt::Key_Return, Qt::ControlModifier);
    const QJsonObject one = planned().at(0).toObject();
    QCOMPARE(one.value(QLatin1String("room")),
             QJsonValue(QJsonObject{{QStringLiteral("a"), QJsonArray{1, QJsonValue::Null}}}));
    QCOMPARE(one.value(QLatin1String("start")).toString(), QStringLiteral("09:00"));
    QCOMPARE(one.value(QLatin1String("title")).toString(), QString());
}

void SchedulePageTest::saysWhatItCannotEdit()
{
    open(page, QStringLiteral("<i>soon</i>"));
    QVERIFY(becomes(
        QStringLiteral("document.getElementById('notice').textContent.endsWith('<i>soon</i>')"),
        true));
    click(QStringLiteral("#add"));
    press(Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(planned().size(), 1);
}

void SchedulePageTest::namesEveryControl()
{
    open(page, day);
    const QString unnamed = QStringLiteral(
        "[...document.querySelectorAll('button, input')].filter((one) => "
        "!(one.ariaLabel || one.textContent.trim() || one.labels?.length)).map((one) => "
        "one.className)");
    QCOMPARE(read(unnamed), QJsonValue(QJsonArray()));
}

ZEL_COMPONENT_PAGES_MAIN(SchedulePageTest)
#include "tst_schedulepage.moc"
