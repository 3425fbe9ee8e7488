// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/messageboxes.h"

#include "testsupport/messageboxdriver.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QTimer>

using ZelTest::MessageBoxDriver;

class TestMessageBoxes : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        TestCase::initTestCase();
        QGuiApplication::setApplicationDisplayName(QStringLiteral("Box Test"));
    }

    void informsWithAnOkButtonOnly()
    {
        MessageBoxDriver boxes;
        boxes.click(QMessageBox::Ok);
        Zel::informUser(nullptr, QStringLiteral("qxs not supplied"));
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().at(0).text, QStringLiteral("qxs not supplied"));
        QCOMPARE(boxes.shown().at(0).buttons, QMessageBox::Ok);
        QCOMPARE(boxes.unexpected(), 0);
    }

    void withoutATitleItBearsTheNameOfTheApplication()
    {
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Return);
        boxes.press(Qt::Key_Return);
        Zel::informUser(nullptr, QStringLiteral("text"));
        Zel::informUser(nullptr, QStringLiteral("text"), QStringLiteral("Delete folder"));
        QCOMPARE(boxes.shown().at(0).title, QStringLiteral("Box Test"));
        QCOMPARE(boxes.shown().at(1).title, QStringLiteral("Delete folder"));
    }

    void escapeClosesAMessage()
    {
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Escape);
        Zel::informUser(nullptr, QStringLiteral("text"));
        QCOMPARE(boxes.shown().size(), 1);
    }

    void markupIsShownAsItStands()
    {
        const QString text = QStringLiteral("<b>Tom & Jerry</b> &amp; \"co\"\nline 2");
        QString seen;
        QTimer::singleShot(0, this, [&] {
            QWidget *box = QApplication::activeModalWidget();
            const auto *label = box->findChild<QLabel *>(QStringLiteral("qt_msgbox_label"));
            seen = label->text();
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QTest::keyClick(box, Qt::Key_Escape);
        });
        Zel::informUser(nullptr, text);
        QCOMPARE(seen, text);
    }

    void isModalOverTheWindowOfItsOwner()
    {
        QWidget window;
        auto *owner = new QWidget(new QWidget(&window));
        bool looked = false;
        QTimer::singleShot(0, this, [&] {
            looked = true;
            QWidget *box = QApplication::activeModalWidget();
            QCOMPARE(box->parentWidget(), &window);
            QTest::keyClick(box, Qt::Key_Escape);
        });
        Zel::askUser(owner, QStringLiteral("Sure?"));
        QVERIFY(looked);
    }

    void yesIsYesAndNoIsNo()
    {
        MessageBoxDriver boxes;
        boxes.click(QMessageBox::Yes);
        boxes.click(QMessageBox::No);
        QVERIFY(Zel::askUser(nullptr, QStringLiteral("Sure?")));
        QVERIFY(!Zel::askUser(nullptr, QStringLiteral("Sure?")));
        QCOMPARE(boxes.shown().at(0).buttons, QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(boxes.shown().at(0).title, QStringLiteral("Box Test"));
        QCOMPARE(boxes.unexpected(), 0);
    }

    void noIsTheDefault()
    {
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Return);
        QVERIFY(!Zel::askUser(nullptr, QStringLiteral("Sure?")));
        QCOMPARE(boxes.shown().at(0).defaultButton, QMessageBox::No);
        QCOMPARE(boxes.unexpected(), 0);
    }

    void escapeMeansNo()
    {
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Escape);
        QVERIFY(!Zel::askUser(nullptr, QStringLiteral("Sure?")));
        QCOMPARE(boxes.unexpected(), 0);
    }

    void yesCanBeReachedByKeyboard()
    {
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Tab);
        boxes.press(Qt::Key_Return);
        QVERIFY(Zel::askUser(nullptr, QStringLiteral("Sure?")));
        QCOMPARE(boxes.shown().size(), 1);
    }

    void closingTheBoxMeansNo()
    {
        QTimer::singleShot(0, this, [] { QApplication::activeModalWidget()->close(); });
        QVERIFY(!Zel::askUser(nullptr, QStringLiteral("Sure?")));
    }

    void aBoxThatGoesWithItsWindowMeansNo()
    {
        auto *window = new QWidget;
        QTimer::singleShot(0, this, [&] { delete window; });
        QVERIFY(!Zel::askUser(window, QStringLiteral("Sure?")));
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }
};

ZEL_TEST_MAIN(TestMessageBoxes)
#include "tst_messageboxes.moc"
