// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/taborder.h"

#include "testsupport/testcase.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

class TestTabOrder : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void theTabKeyGoesThroughTheWidgetsInThisOrder()
    {
        QWidget window;
        auto *last = new QLineEdit(&window);
        auto *frame = new QWidget(&window);
        auto *second = new QLineEdit(frame);
        auto *first = new QLineEdit(&window);
        auto *third = new QLineEdit(frame);
        Zel::setTabChain({first, second, third, last});
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        first->setFocus();
        for (QWidget *next : {second, third, last, first}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), next);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), last);
    }

    void aChainOfOneOrNoneChangesNothing()
    {
        QWidget window;
        auto *first = new QLineEdit(&window);
        auto *second = new QLineEdit(&window);
        Zel::setTabChain({});
        Zel::setTabChain({second});
        QCOMPARE(first->nextInFocusChain(), second);
    }
};

ZEL_TEST_MAIN(TestTabOrder)
#include "tst_taborder.moc"
