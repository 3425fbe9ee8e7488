// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "assets/qxnewassetfolder.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/testcase.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using ZelWebServiceControls::QXNewAssetFolder;

/// The form that asks for the name of a new folder.
class tst_QXNewAssetFolder : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void givesTheNameTyped()
    {
        QXNewAssetFolder form;
        use(form, [&] {
            QVERIFY(!ok(form)->isEnabled());
            QVERIFY(name(form)->hasFocus());
            QTest::keyClicks(name(form), "Spring");
            QVERIFY(ok(form)->isEnabled());
            QTest::keyClick(name(form), Qt::Key_Return);
        });
        QCOMPARE(form.dialogResult(), qint16(1));
        QCOMPARE(form.folderName(), QString("Spring"));
        QCOMPARE(form.property("dialogResult").toInt(), 1);
    }

    void takesBlanksAsAName()
    {
        QXNewAssetFolder form;
        use(form, [&] {
            QTest::keyClicks(name(form), " ");
            QTest::mouseClick(ok(form), Qt::LeftButton);
        });
        QCOMPARE(form.dialogResult(), qint16(1));
        QCOMPARE(form.folderName(), QString(" "));
    }

    void disablesOkWhenTheNameIsEmptiedAgain()
    {
        QXNewAssetFolder form;
        use(form, [&] {
            QTest::keyClicks(name(form), "a");
            QTest::keyClick(name(form), Qt::Key_Backspace);
            QVERIFY(!ok(form)->isEnabled());
            form.close();
        });
        QCOMPARE(form.dialogResult(), qint16(0));
    }

    void givesNothingWhenCancelledOrClosed()
    {
        QXNewAssetFolder form;
        use(form, [&] {
            QTest::keyClicks(name(form), "first");
            QTest::mouseClick(ok(form), Qt::LeftButton);
        });
        use(form, [&] {
            QCOMPARE(name(form)->text(), QString());
            QTest::keyClicks(name(form), "second");
            QTest::mouseClick(form.findChild<QPushButton *>("cancelCmd"), Qt::LeftButton);
        });
        QCOMPARE(form.dialogResult(), qint16(0));
        QCOMPARE(form.folderName(), QString());
        use(form, [&] { form.close(); });
        QCOMPARE(form.dialogResult(), qint16(0));
        QCOMPARE(form.folderName(), QString());
    }

    void staysOpenWithoutAName()
    {
        QXNewAssetFolder form;
        ZelTest::MessageBoxDriver boxes;
        boxes.click(QMessageBox::Ok);
        use(form, [&] {
            ok(form)->setEnabled(true);
            QTest::mouseClick(ok(form), Qt::LeftButton);
            QVERIFY(form.isVisible());
            form.close();
        });
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().constFirst().text, QString("Please supply a folder name"));
        QCOMPARE(boxes.shown().constFirst().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(form.dialogResult(), qint16(0));
    }

private:
    static QPushButton *ok(const QXNewAssetFolder &form)
    {
        return form.findChild<QPushButton *>("okCmd");
    }

    static QLineEdit *name(const QXNewAssetFolder &form)
    {
        return form.findChild<QLineEdit *>("folderNameTxt");
    }

    template <typename Action>
    static void use(QXNewAssetFolder &form, Action action)
    {
        QTimer::singleShot(0, &form, [&] {
            QVERIFY(QTest::qWaitForWindowActive(&form));
            action();
        });
        form.showModal(nullptr);
    }
};

ZEL_TEST_MAIN(tst_QXNewAssetFolder)
#include "tst_qxnewassetfolder.moc"
