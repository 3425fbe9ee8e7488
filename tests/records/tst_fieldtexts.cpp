// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "fieldtesting.h"
#include "records/editedfield.h"
#include "testsupport/testcase.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

using namespace FieldTesting;
using ZelWebServiceControls::EditedField;

namespace {

/// Texts that editors like to change.
QMap<QString, QString> awkwardTexts()
{
    // Every code unit that is no letter of some script: what is not there cannot be drawn.
    QString special;
    for (const auto &[first, last] : std::initializer_list<std::pair<int, int>>{{0x0000, 0x02ff},
                                                                                {0x2000, 0x206f},
                                                                                {0xd800, 0xdfff},
                                                                                {0xfdd0, 0xfdef},
                                                                                {0xfff0, 0xffff}})
        for (int unit = first; unit <= last; ++unit)
            special += QChar(unit);
    return {{"empty", ""},
            {"plain", "Spring launch"},
            {"line breaks of every kind", QString("a\r\nb\nc\rd\u2029e\u2028f\r\r\n\n\rg")},
            {"breaks at the ends", "\r\n\r\n"},
            {"no-break spaces", QString("1\u00a0000\u202f000")},
            {"tabs and control characters", QString("a\tb\x01\x1b\x7f") + QChar(0) + "c"},
            {"markup", "<b>bold</b> &amp; \"quotes\" 'single'"},
            {"right to left", QString::fromUtf8("שלום עולם \u200f123")},
            {"beyond the basic plane", QString::fromUtf8("🎬🎭")},
            {"lone surrogates", QString("x") + QChar(0xd83c) + "y" + QChar(0xdfad)},
            {"frame marks of text documents", QString("a") + QChar(0xfdd0) + "b" + QChar(0xfdd1)},
            {"object replacement", QString("a\ufffcb\ufeffc")},
            {"32,768 characters", QString(32768, u'x')},
            {"every special code unit", special},
            {"blanks", "  \t "}};
}

} // namespace

/// What the fields give back, and what they make of what people type.
class tst_FieldTexts : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void labelsComeBack_data() { addTexts(); }

    void labelsComeBack()
    {
        QFETCH(QString, text);
        for (const char *name : {"TextWidget", "TextAreaWidget", "CheckboxWidget",
                                 "TextAssetWidget", "CustomWidget"}) {
            const auto field = make(name);
            call(field.get(), "SetLabel", {text});
            QVERIFY(::text(field.get(), "GetLabel") == text);
            QVERIFY(child<QLabel>(field.get(), "widgetLabel")->text() == text);
            field->grab(); // drawn without harm
        }
    }

    void labelsAreNoMarkup()
    {
        const auto field = make("TextWidget");
        auto *label = child<QLabel>(field.get(), "widgetLabel");
        call(field.get(), "SetLabel", {"<b>T</b> & &c"});
        QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(label->buddy(), nullptr); // or "&" would make a shortcut
        QCOMPARE(child(field.get(), "widgetValue")->accessibleName(), QString("<b>T</b> & &c"));
    }

    void valuesComeBack_data() { addTexts(); }

    void valuesComeBack()
    {
        QFETCH(QString, text);
        for (const char *name :
             {"TextWidget", "TextAreaWidget", "TextAssetWidget", "CustomWidget"}) {
            const auto field = make(name);
            call(field.get(), "setValue", {text});
            QVERIFY2(::text(field.get(), "GetValue") == text, name);
            field->grab();
            QVERIFY2(::text(field.get(), "GetValue") == text, name);
            call(field.get(), "setValue", {"another"});
            QCOMPARE(::text(field.get(), "GetValue"), QString("another"));
        }
    }

    void valuesBeyondAMegabyteComeBack()
    {
        QString lines;
        while (lines.size() < 1'100'000)
            lines += "A line of a schedule, \u00e9\u00e8, one of many\r\n";
        for (const char *name :
             {"TextWidget", "TextAreaWidget", "TextAssetWidget", "CustomWidget"}) {
            const auto field = make(name);
            call(field.get(), "setValue", {lines});
            QVERIFY2(::text(field.get(), "GetValue") == lines, name);
        }
    }

    void boxesShowTheValue()
    {
        for (const char *name : {"TextWidget", "TextAssetWidget"}) {
            const auto field = make(name);
            call(field.get(), "setValue", {"opening.png"});
            QCOMPARE(child<QLineEdit>(field.get(), "widgetValue")->text(), QString("opening.png"));
        }
        const auto area = make("TextAreaWidget");
        call(area.get(), "setValue", {"a\r\nb"});
        QCOMPARE(child<QPlainTextEdit>(area.get(), "widgetValue")->toPlainText(), QString("a\nb"));
    }

    void typedTextIsTheValue()
    {
        for (const char *name : {"TextWidget", "TextAreaWidget", "TextAssetWidget"}) {
            const auto field = make(name);
            call(field.get(), "setValue", {"one"});
            auto *box = child(field.get(), "widgetValue");
            QTest::keyClick(box, Qt::Key_End);
            QTest::keyClicks(box, " two");
            QCOMPARE(text(field.get(), "GetValue"), QString("one two"));
        }
    }

    void boxesOfOneLineKeepWhatIsNotTyped()
    {
        const auto field = make("TextWidget");
        const QString value = QString("a\r\nb\tc") + QChar(0) + "d\u00a0e";
        call(field.get(), "setValue", {value});
        auto *box = child<QLineEdit>(field.get(), "widgetValue");
        QTest::keyClick(box, Qt::Key_End);
        QTest::keyClicks(box, "!");
        QVERIFY(text(field.get(), "GetValue") == value + "!");
        QTest::keyClick(box, Qt::Key_Home);
        QTest::keyClicks(box, "?");
        QVERIFY(text(field.get(), "GetValue") == "?" + value + "!");
    }

    void areasKeepTheBreaksThatNobodyTouched_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("keys"); // "<" and ">" move, "-" deletes, "/" breaks the line
        QTest::addColumn<QString>("expected");
        QTest::newRow("letter at the end") << "a\r\nb\rc"
                                           << "$x"
                                           << "a\r\nb\rcx";
        QTest::newRow("letter at the beginning") << "a\r\nb\rc"
                                                 << "x"
                                                 << "xa\r\nb\rc";
        QTest::newRow("letter between") << "a\r\nb\rc\n"
                                        << ">>x"
                                        << "a\r\nxb\rc\n";
        QTest::newRow("a break of the kind there is") << "a\r\nb"
                                                      << "$/"
                                                      << "a\r\nb\r\n";
        QTest::newRow("a break of the first kind") << "a\rb\nc"
                                                   << "$/d"
                                                   << "a\rb\nc\rd";
        QTest::newRow("a first break") << "ab"
                                       << ">/"
                                       << "a\nb";
        QTest::newRow("a break deleted") << "a\r\nb\r\nc"
                                         << ">-"
                                         << "ab\r\nc";
        QTest::newRow("two places") << "a\rb\r\nc\nd"
                                    << "x$y"
                                    << "xa\rb\r\nc\ndy";
        QTest::newRow("no-break space stays")
            << QString("1\u00a02\r\n") << "$x" << QString("1\u00a02\r\nx");
        QTest::newRow("line separator stays")
            << QString("1\u20282\r\n") << "x" << QString("x1\u20282\r\n");
        QTest::newRow("paragraph separator stays")
            << QString("1\u20292") << "x" << QString("x1\u20292");
        QTest::newRow("all deleted") << "a\r\nb"
                                     << "*-"
                                     << "";
        QTest::newRow("all replaced") << "a\r\nb"
                                      << "*x/y"
                                      << "x\ny";
        QTest::newRow("breaks that come together") << "a\rx\nb"
                                                   << ">>-"
                                                   << "a\n\nb";
    }

    void areasKeepTheBreaksThatNobodyTouched()
    {
        QFETCH(QString, value);
        QFETCH(QString, keys);
        QFETCH(QString, expected);
        const auto field = make("TextAreaWidget");
        call(field.get(), "setValue", {value});
        press(child(field.get(), "widgetValue"), keys);
        QCOMPARE(text(field.get(), "GetValue"), expected);
    }

    void undoneEditsLeaveTheTextAsItCame()
    {
        const QString value = QString("a\r\nb\rc\u00a0\u2028d\n");
        const auto field = make("TextAreaWidget");
        call(field.get(), "setValue", {value});
        auto *box = child<QPlainTextEdit>(field.get(), "widgetValue");
        press(box, "*-");
        QCOMPARE(text(field.get(), "GetValue"), QString());
        QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(text(field.get(), "GetValue") == value);
    }

    void checkBoxes_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("expected");
        for (const char *on : {"TRUE", "true", "True", "tRuE"})
            QTest::newRow(on) << on << "True";
        for (const char *off : {"", "yes", "1", "-1", "FALSE", "false", " TRUE", "TRUE ", "on"})
            QTest::newRow(off) << off << "False";
    }

    void checkBoxes()
    {
        QFETCH(QString, value);
        QFETCH(QString, expected);
        const auto field = make("CheckboxWidget");
        auto *box = child<QCheckBox>(field.get(), "widgetValue");
        for (const bool before : {true, false}) {
            box->setChecked(before);
            call(field.get(), "setValue", {value});
            QCOMPARE(text(field.get(), "GetValue"), expected);
        }
    }

    void clicksCheckTheBox()
    {
        const auto field = make("CheckboxWidget");
        auto *box = child<QCheckBox>(field.get(), "widgetValue");
        QCOMPARE(text(field.get(), "GetValue"), QString("False"));
        field->show();
        QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
        QCOMPARE(text(field.get(), "GetValue"), QString("True"));
        QTest::keyClick(box, Qt::Key_Space);
        QCOMPARE(text(field.get(), "GetValue"), QString("False"));
    }

    void onlyPeopleEdit()
    {
        for (const char *name :
             {"TextWidget", "TextAreaWidget", "TextAssetWidget", "CheckboxWidget"}) {
            const auto field = make(name);
            int edits = 0;
            dynamic_cast<EditedField *>(field.get())->setEditedHandler([&edits] { ++edits; });
            call(field.get(), "setValue", {"TRUE"});
            QCOMPARE(edits, 0);
            QTest::keyClick(child(field.get(), "widgetValue"), Qt::Key_Space);
            QCOMPARE(edits, 1);
        }
    }

private:
    static void addTexts()
    {
        QTest::addColumn<QString>("text");
        const QMap<QString, QString> texts = awkwardTexts();
        for (auto it = texts.cbegin(); it != texts.cend(); ++it)
            QTest::newRow(qPrintable(it.key())) << it.value();
    }

    static void press(QWidget *box, const QString &keys)
    {
        for (const QChar key : keys) {
            switch (key.unicode()) {
            case u'>':
                QTest::keyClick(box, Qt::Key_Right);
                break;
            case u'$':
                QTest::keyClick(box, Qt::Key_End, Qt::ControlModifier);
                break;
            case u'*':
                QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
                break;
            case u'-':
                QTest::keyClick(box, Qt::Key_Delete);
                break;
            case u'/':
                QTest::keyClick(box, Qt::Key_Return);
                break;
            default:
                QTest::keyClicks(box, key);
            }
        }
    }
};

ZEL_TEST_MAIN(tst_FieldTexts)
#include "tst_fieldtexts.moc"
