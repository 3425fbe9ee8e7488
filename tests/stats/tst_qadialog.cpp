// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "stats/qadialog.h"
#include "testsupport/testcase.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using ZelWebServiceControls::QADialog;

/// The editor of a question and its answer.
class tst_QADialog : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void captionsAreThoseHostsKnow();
    void showsTheTextsAndTheSender();
    void givesTheEditedTextsAfterOk();
    void givesTheFormerTextsWhenClosedInAnotherWay_data();
    void givesTheFormerTextsWhenClosedInAnotherWay();
    void eachUseStartsFresh();
    void untouchedTextsComeBackAsTheyCame_data();
    void untouchedTextsComeBackAsTheyCame();
    void linesNotTouchedKeepTheirBreaks();
    void keepsAHugeTextWithMarkup();
    void textsAreNoMarkup();
    void aLongNameLeavesTheWidth();
    void theKeyboardReachesEverything();
    void theAnswerHasTheKeyboardFirst();
    void initDuringAUseIsNoConfirmation();

private:
    static QPlainTextEdit &question(const QADialog &form)
    {
        return *form.findChild<QPlainTextEdit *>(QStringLiteral("questionTxt"));
    }

    static QPlainTextEdit &answer(const QADialog &form)
    {
        return *form.findChild<QPlainTextEdit *>(QStringLiteral("answerTxt"));
    }

    static QLabel &label(const QADialog &form, const char *name)
    {
        return *form.findChild<QLabel *>(QLatin1String(name));
    }

    static QPushButton &button(const QADialog &form, const char *name)
    {
        return *form.findChild<QPushButton *>(QLatin1String(name));
    }

    static void click(const QADialog &form, const char *name)
    {
        QTest::mouseClick(&button(form, name), Qt::LeftButton);
    }

    template <typename Action>
    static void use(QADialog &form, Action action)
    {
        QTimer::singleShot(0, &form, [&] {
            QVERIFY(QTest::qWaitForWindowActive(&form));
            action();
        });
        form.showModal(nullptr);
    }
};

void tst_QADialog::captionsAreThoseHostsKnow()
{
    QADialog form;
    QCOMPARE(form.windowTitle(), QStringLiteral("Question and Answer Editor"));
    QCOMPARE(label(form, "Label1").text(), QStringLiteral("Question"));
    QCOMPARE(label(form, "Label2").text(), QStringLiteral("Answer"));
    QCOMPARE(label(form, "Label1").buddy(), &question(form));
    QCOMPARE(label(form, "Label2").buddy(), &answer(form));
    QCOMPARE(button(form, "OKButton").text(), QStringLiteral("OK"));
    QCOMPARE(button(form, "CancelButton").text(), QStringLiteral("Cancel"));
}

void tst_QADialog::showsTheTextsAndTheSender()
{
    QADialog form;
    form.Init(QStringLiteral("Why?\nWhen?"), QStringLiteral("Soon."), QStringLiteral("mira"));
    use(form, [&] {
        QCOMPARE(form.result(), qint16(2));
        QCOMPARE(question(form).toPlainText(), QStringLiteral("Why?\nWhen?"));
        QCOMPARE(answer(form).toPlainText(), QStringLiteral("Soon."));
        QCOMPARE(label(form, "userName").text(), QStringLiteral("from: mira"));
        form.close();
    });
}

void tst_QADialog::givesTheEditedTextsAfterOk()
{
    QADialog form;
    form.Init(QStringLiteral("Why?"), QString(), QStringLiteral("mira"));
    use(form, [&] {
        QTest::keyClicks(&answer(form), QStringLiteral("Because"));
        QTest::keyClick(&answer(form), Qt::Key_Return);
        QTest::keyClicks(&answer(form), QStringLiteral("of <it> & \"that\""));
        question(form).moveCursor(QTextCursor::End);
        QTest::keyClicks(&question(form), QStringLiteral("?"));
        // Until then the properties have the former texts.
        QCOMPARE(form.answer(), QString());
        click(form, "OKButton");
    });
    QCOMPARE(form.result(), qint16(1));
    QCOMPARE(form.property("result").toInt(), 1);
    QCOMPARE(form.property("question").toString(), QStringLiteral("Why??"));
    QCOMPARE(form.property("answer").toString(), QStringLiteral("Because\nof <it> & \"that\""));
}

void tst_QADialog::givesTheFormerTextsWhenClosedInAnotherWay_data()
{
    QTest::addColumn<QByteArray>("way");
    QTest::newRow("Cancel") << QByteArray("cancel");
    QTest::newRow("Esc") << QByteArray("escape");
    QTest::newRow("window closed") << QByteArray("close");
}

void tst_QADialog::givesTheFormerTextsWhenClosedInAnotherWay()
{
    QFETCH(QByteArray, way);
    QADialog form;
    form.Init(QStringLiteral("Why?"), QStringLiteral("So."), QStringLiteral("mira"));
    use(form, [&] {
        QTest::keyClicks(&answer(form), QStringLiteral("edited"));
        if (way == "cancel")
            click(form, "CancelButton");
        else if (way == "escape")
            QTest::keyClick(&form, Qt::Key_Escape);
        else
            form.close();
    });
    QCOMPARE(form.result(), qint16(2));
    QCOMPARE(form.question(), QStringLiteral("Why?"));
    QCOMPARE(form.answer(), QStringLiteral("So."));
}

void tst_QADialog::eachUseStartsFresh()
{
    QADialog form;
    form.Init(QStringLiteral("first"), QString(), QStringLiteral("mira"));
    use(form, [&] {
        QTest::keyClicks(&answer(form), QStringLiteral("typed"));
        click(form, "OKButton");
    });
    form.Init(QStringLiteral("second"), QStringLiteral("given"), QStringLiteral("odd"));
    QCOMPARE(form.result(), qint16(2));
    use(form, [&] {
        QCOMPARE(form.result(), qint16(2));
        QCOMPARE(question(form).toPlainText(), QStringLiteral("second"));
        QCOMPARE(answer(form).toPlainText(), QStringLiteral("given"));
        QVERIFY(!answer(form).document()->isUndoAvailable());
        QCOMPARE(label(form, "userName").text(), QStringLiteral("from: odd"));
        form.close();
    });
}

void tst_QADialog::untouchedTextsComeBackAsTheyCame_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("CR LF") << QStringLiteral("a\r\nb\r\n");
    QTest::newRow("CR") << QStringLiteral("a\rb");
    QTest::newRow("LF at both ends") << QStringLiteral("\na\n");
    QTest::newRow("mixed") << QStringLiteral("a\r\nb\nc\rd\r\r\n");
    QTest::newRow("separators") << QStringLiteral("a") + QChar(0x2028) + QStringLiteral("b") +
                                       QChar(0x2029) + QStringLiteral("c");
    QTest::newRow("blanks") << QStringLiteral("  a\u00a0b\t c  ");
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("\xf0\x9f\x8e\xa4 e\xcc\x81");
    QTest::newRow("half a pair") << QStringLiteral("a") + QChar(0xd83c);
}

void tst_QADialog::untouchedTextsComeBackAsTheyCame()
{
    QFETCH(QString, text);
    QADialog form;
    form.Init(text, text, QStringLiteral("mira"));
    use(form, [&] { click(form, "OKButton"); });
    QCOMPARE(form.result(), qint16(1));
    QCOMPARE(form.question(), text);
    QCOMPARE(form.answer(), text);
}

void tst_QADialog::linesNotTouchedKeepTheirBreaks()
{
    QADialog form;
    form.Init(QStringLiteral("one\r\ntwo\nthree"), QStringLiteral("a\r\nb"), QString());
    use(form, [&] {
        QTest::keyClick(&question(form), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClicks(&question(form), QStringLiteral("!"));
        QTest::keyClick(&answer(form), Qt::Key_End, Qt::ControlModifier);
        QTest::keyClick(&answer(form), Qt::Key_Return);
        click(form, "OKButton");
    });
    QCOMPARE(form.question(), QStringLiteral("one\r\ntwo\nthree!"));
    // A break that is typed is one of the kind the text has.
    QCOMPARE(form.answer(), QStringLiteral("a\r\nb\r\n"));
}

void tst_QADialog::keepsAHugeTextWithMarkup()
{
    const QString huge = QStringLiteral("<b>&amp; why</b>\r\n").repeated(6000);
    QVERIFY(huge.size() > 100'000);
    QADialog form;
    form.Init(huge, QString(), QStringLiteral("mira"));
    use(form, [&] {
        QTest::keyClicks(&answer(form), QStringLiteral("no"));
        click(form, "OKButton");
    });
    QCOMPARE(form.question(), huge);
    QCOMPARE(form.answer(), QStringLiteral("no"));
}

void tst_QADialog::textsAreNoMarkup()
{
    QADialog form;
    form.Init(QStringLiteral("<b>bold</b>"), QStringLiteral("&lt;"),
              QStringLiteral("<i>&mira</i>"));
    use(form, [&] {
        QCOMPARE(question(form).toPlainText(), QStringLiteral("<b>bold</b>"));
        QCOMPARE(answer(form).toPlainText(), QStringLiteral("&lt;"));
        QCOMPARE(label(form, "userName").text(), QStringLiteral("from: <i>&mira</i>"));
        QCOMPARE(label(form, "userName").textFormat(), Qt::PlainText);
        QVERIFY(!label(form, "userName").toolTip().contains(u'<'));
        form.close();
    });
}

void tst_QADialog::aLongNameLeavesTheWidth()
{
    QADialog form;
    form.Init(QString(), QString(), QStringLiteral("m"));
    const int width = form.sizeHint().width();
    form.Init(QString(), QString(), QString(10000, u'm'));
    use(form, [&] {
        QCOMPARE(form.sizeHint().width(), width);
        form.close();
    });
}

void tst_QADialog::theKeyboardReachesEverything()
{
    QADialog form;
    form.Init(QStringLiteral("Why?"), QString(), QString());
    use(form, [&] {
        QStringList reached;
        question(form).setFocus();
        for (int i = 0; i < 4; ++i) {
            reached << form.focusWidget()->objectName();
            QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(reached.join(u' '), QStringLiteral("questionTxt answerTxt OKButton CancelButton"));
        button(form, "OKButton").setFocus();
        QTest::keyClick(&button(form, "OKButton"), Qt::Key_Return);
    });
    QCOMPARE(form.result(), qint16(1));
    QCOMPARE(form.question(), QStringLiteral("Why?"));
}

void tst_QADialog::theAnswerHasTheKeyboardFirst()
{
    QADialog form;
    form.Init(QStringLiteral("Why?"), QString(), QString());
    use(form, [&] {
        QVERIFY(answer(form).hasFocus());
        form.close();
    });
}

void tst_QADialog::initDuringAUseIsNoConfirmation()
{
    QADialog form;
    form.Init(QStringLiteral("first"), QString(), QString());
    use(form, [&] {
        form.Init(QStringLiteral("second"), QString(), QString());
        form.showModal(nullptr); // returns at once
        QCOMPARE(form.result(), qint16(2));
        click(form, "OKButton");
    });
    QCOMPARE(form.result(), qint16(1));
    QCOMPARE(form.question(), QStringLiteral("first"));
}

ZEL_TEST_MAIN(tst_QADialog)
#include "tst_qadialog.moc"
