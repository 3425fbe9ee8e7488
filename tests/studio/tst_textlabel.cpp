// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/textlabel.h"
#include "testsupport/testcase.h"

#include <QTest>
#include <QVBoxLayout>

using Studio::TextLabel;

class TestTextLabel : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void leavesOrdinaryTextAlone_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("words") << QStringLiteral("Town hall, first quarter");
        QTest::newRow("a long word") << QStringLiteral("Barrierefreiheitsprüfung");
        QTest::newRow("lines and tabs") << QStringLiteral("one\ttwo\n three  four ");
        QTest::newRow("not markup") << QStringLiteral("<b>1 & 2</b>");
    }

    void leavesOrdinaryTextAlone()
    {
        QFETCH(const QString, text);
        TextLabel label("label", 100, nullptr);
        label.showText(text);
        QCOMPARE(label.text(), text);
        QCOMPARE(label.textFormat(), Qt::PlainText);
    }

    void shortensAtTheLimit()
    {
        QCOMPARE(Studio::shortened(QStringLiteral("abcd"), 4), QStringLiteral("abcd"));
        QCOMPARE(Studio::shortened(QStringLiteral("abcde"), 4), QStringLiteral("abcd…"));
        // Never half of a character.
        QCOMPARE(Studio::shortened(QStringLiteral("abc🎥de"), 4), QStringLiteral("abc…"));
        QCOMPARE(Studio::shortened(QStringLiteral("abc🎥de"), 5), QStringLiteral("abc🎥…"));
    }

    void breaksWordsTooLongForALine()
    {
        const QString word(40, QLatin1Char('x'));
        const QString broken = Studio::breakable(QStringLiteral("a %1 b").arg(word));
        QCOMPARE(broken.count(QChar(0x200b)), 4);
        QCOMPARE(QString(broken).remove(QChar(0x200b)), QStringLiteral("a %1 b").arg(word));
        QVERIFY(broken.startsWith(QLatin1String("a x")) && broken.endsWith(QLatin1String("x b")));
    }

    void doesNotBreakInsideACharacter()
    {
        QString word;
        for (int i = 0; i < 20; ++i)
            word += QStringLiteral("e\u0301🎥"); // a letter with a combining accent, a pair
        const QString broken = Studio::breakable(word);
        const QStringList pieces = broken.split(QChar(0x200b));
        QVERIFY(pieces.size() > 3);
        QCOMPARE(pieces.join(QString()), word);
        for (const QString &piece : pieces) {
            QVERIFY2(!piece.front().isLowSurrogate(), qPrintable(piece));
            QVERIFY2(piece.front() != QChar(0x0301), qPrintable(piece));
        }
    }

    void neverMakesAWindowWider()
    {
        QWidget window;
        auto *column = new QVBoxLayout(&window);
        auto *label = new TextLabel("label", 20000, &window);
        column->addWidget(label);
        label->showText(QString(10000, QLatin1Char('W')));
        QVERIFY2(window.minimumSizeHint().width() < 200,
                 qPrintable(QString::number(window.minimumSizeHint().width())));
        window.resize(300, 100);
        QVERIFY(label->heightForWidth(280) > 100 * label->fontMetrics().lineSpacing());
    }
};

ZEL_TEST_MAIN(TestTextLabel)
#include "tst_textlabel.moc"
