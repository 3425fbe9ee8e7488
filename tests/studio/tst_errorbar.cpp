// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "studio/errorbar.h"
#include "studio/errorcenter.h"
#include "tests/studio/studiotesting.h"
#include "testsupport/testcase.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

using Studio::ErrorBar;
using Studio::ErrorCenter;
using Studio::Problem;
using namespace StudioTesting;

namespace {

/// A window with a strip and a box that has the keyboard.
struct Window : QWidget
{
    Window()
    {
        auto *column = new QVBoxLayout(this);
        bar = new ErrorBar(errors, this);
        box = new QLineEdit(this);
        column->addWidget(bar);
        column->addWidget(box);
        column->addStretch();
        resize(640, 300);
        StudioTesting::show(*this);
        box->setFocus();
    }

    bool isShown(const char *name) const { return child(*this, name)->isVisible(); }

    ErrorCenter errors;
    ErrorBar *bar;
    QLineEdit *box;
};

Problem problem()
{
    Problem problem;
    problem.what = QStringLiteral("Nothing answers at 127.0.0.1:1.");
    problem.advice = QStringLiteral("Check the address & try again.");
    problem.details = QStringLiteral("Error 7\nGET http://127.0.0.1:1/v1");
    problem.canRetry = true;
    return problem;
}

} // namespace

class TestErrorBar : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void isNotThereWithoutAProblem()
    {
        Window window;
        QVERIFY(!window.bar->isVisible());
    }

    void tellsWhatHappenedAndWhatToDo()
    {
        Window window;
        window.errors.report(problem(), [] {});
        QVERIFY(window.bar->isVisible());
        QCOMPARE(child<QLabel>(window, "errorWhat")->text(), problem().what);
        QCOMPARE(child<QLabel>(window, "errorAdvice")->text(), problem().advice);
        QVERIFY(window.isShown("errorRetry"));
        QVERIFY(!window.isShown("errorSignIn"));
        QVERIFY(!window.isShown("errorDetails"));
        // It does not take the keyboard from whoever is typing.
        QCOMPARE(QApplication::focusWidget(), window.box);
    }

    void leavesOutWhatThereIsNot()
    {
        Window window;
        Problem bare;
        bare.what = QStringLiteral("It failed.");
        window.errors.report(bare, [] {});
        QVERIFY(window.isShown("errorWhat"));
        for (const char *name : {"errorAdvice", "errorDetailsButton", "errorRetry", "errorSignIn"})
            QVERIFY2(!window.isShown(name), name);
        click(window, "errorCopy");
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("It failed."));
    }

    void offersRetryOnlyWithSomethingToRetry()
    {
        Window window;
        window.errors.report(problem());
        QVERIFY(!window.isShown("errorRetry"));
    }

    void retryTriesAgainAndGoesOnSuccess()
    {
        Window window;
        int calls = 0;
        window.errors.report(problem(), [&] { ++calls; });
        click(window, "errorRetry");
        QCOMPARE(calls, 1);
        QVERIFY(!window.bar->isVisible());
    }

    void keepsTheKeyboardOnRetryWhenItFailsAgain()
    {
        Window window;
        window.errors.attempt(
            [] { throw Zel::RuntimeError(75, QStringLiteral("The file is locked.")); });
        auto *retry = child(window, "errorRetry");
        retry->setFocus();
        press(Qt::Key_Space);
        QVERIFY(window.bar->isVisible());
        QCOMPARE(QApplication::focusWidget(), retry);
    }

    void asksToSignInAgain()
    {
        Window window;
        Problem signedOut = problem();
        signedOut.needsSignIn = true;
        signedOut.canRetry = false;
        const QSignalSpy asked(window.bar, &ErrorBar::signInRequested);
        window.errors.report(signedOut, [] {});
        QVERIFY(!window.isShown("errorRetry"));
        click(window, "errorSignIn");
        QCOMPARE(asked.size(), 1);
        QVERIFY(!window.bar->isVisible());
        QVERIFY(!window.errors.hasProblem());
    }

    void closesByItsButton()
    {
        Window window;
        window.errors.report(problem(), [] {});
        click(window, "errorClose");
        QVERIFY(!window.bar->isVisible());
        QVERIFY(!window.errors.hasProblem());
    }

    void closesByEscFromEveryPartAndGivesTheKeyboardBack()
    {
        Window window;
        for (const char *name :
             {"errorRetry", "errorDetailsButton", "errorCopy", "errorClose", "errorDetails"}) {
            window.errors.report(problem(), [] {});
            child<QToolButton>(window, "errorDetailsButton")->setChecked(true);
            child(window, name)->setFocus();
            QCOMPARE(QApplication::focusWidget(), child(window, name));
            press(Qt::Key_Escape);
            QVERIFY2(!window.bar->isVisible(), name);
            QCOMPARE(QApplication::focusWidget(), window.box);
        }
    }

    void showsAndHidesDetails()
    {
        Window window;
        window.errors.report(problem(), [] {});
        click(window, "errorDetailsButton");
        QVERIFY(window.isShown("errorDetails"));
        QCOMPARE(child<QPlainTextEdit>(window, "errorDetails")->toPlainText(), problem().details);
        QVERIFY(child<QPlainTextEdit>(window, "errorDetails")->isReadOnly());
        click(window, "errorDetailsButton");
        QVERIFY(!window.isShown("errorDetails"));
        // The next problem starts with its details closed.
        click(window, "errorDetailsButton");
        window.errors.report(problem(), [] {});
        QVERIFY(!window.isShown("errorDetails"));
    }

    void copiesEverything()
    {
        Window window;
        window.errors.report(problem(), [] {});
        QApplication::clipboard()->clear();
        click(window, "errorCopy");
        QCOMPARE(
            QApplication::clipboard()->text(),
            QStringLiteral("%1\n%2\n%3").arg(problem().what, problem().advice, problem().details));
    }

    void isReachedAndUsedByKeyboardAlone()
    {
        Window window;
        int calls = 0;
        window.errors.report(problem(), [&] { ++calls; });
        QStringList visited;
        for (int i = 0; i < 6; ++i) {
            press(Qt::Key_Tab);
            visited << QApplication::focusWidget()->objectName();
        }
        for (const char *name : {"errorRetry", "errorDetailsButton", "errorCopy", "errorClose"})
            QVERIFY2(visited.contains(QLatin1String(name)), qPrintable(visited.join(u' ')));
        QTest::keyClick(&window, Qt::Key_R, Qt::AltModifier);
        QTRY_COMPARE(calls, 1);
    }

    void oneStripForEveryProblem()
    {
        Window window;
        window.errors.report(problem(), [] {});
        const int height = window.bar->sizeHint().height();
        Problem second = problem();
        second.what = QStringLiteral("Something else.");
        window.errors.report(second, [] {});
        QCOMPARE(child<QLabel>(window, "errorWhat")->text(), second.what);
        QCOMPARE(window.bar->sizeHint().height(), height);
        QCOMPARE(window.findChildren<ErrorBar *>().size(), 1);
        click(window, "errorClose");
        QVERIFY(!window.bar->isVisible());
    }

    void isAnAlertToAssistiveTechnology()
    {
        Window window;
        window.errors.report(problem(), [] {});
        QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(window.bar);
        QCOMPARE(bar->text(QAccessible::Name), problem().what);
        QCOMPARE(bar->text(QAccessible::Description), problem().advice);
        QCOMPARE(bar->role(), QAccessible::AlertMessage);
        for (const char *name : {"errorClose", "errorDetails"}) {
            auto *part = QAccessible::queryAccessibleInterface(child(window, name));
            QVERIFY2(!part->text(QAccessible::Name).isEmpty(), name);
        }
    }

    void wrapsLongTextsInsteadOfGrowing()
    {
        Window window;
        Problem longOne = problem();
        longOne.what = QString(5000, QLatin1Char('x'));
        longOne.advice = QStringLiteral("word ").repeated(1000);
        longOne.details = QString(5000, QLatin1Char('y'));
        window.errors.report(longOne, [] {});
        click(window, "errorDetailsButton");
        QVERIFY2(window.minimumSizeHint().width() <= 640,
                 qPrintable(QString::number(window.minimumSizeHint().width())));
        QCOMPARE(window.width(), 640);
        QVERIFY(window.bar->sizeHint().height() < 600);
        for (const char *name : {"errorRetry", "errorClose"}) {
            const QRect place(child(window, name)->mapTo(&window, QPoint()),
                              child(window, name)->size());
            QVERIFY2(window.rect().contains(place), name);
        }
        click(window, "errorCopy");
        QVERIFY(QApplication::clipboard()->text().startsWith(longOne.what));
    }

    void followsTheColoursOfTheApplication()
    {
        Window window;
        window.errors.report(problem(), [] {});
        const QPalette former = QApplication::palette();
        QPalette dark;
        dark.setColor(QPalette::Window, Qt::black);
        dark.setColor(QPalette::WindowText, Qt::white);
        QApplication::setPalette(dark);
        QCoreApplication::processEvents(); // palettes are handed down by events
        const QColor ground = window.bar->palette().color(QPalette::Window);
        const QColor text = child(window, "errorWhat")->palette().color(QPalette::WindowText);
        QApplication::setPalette(former);
        QVERIFY(ground.lightness() < 100);
        QCOMPARE(text, QColor(Qt::white));
    }
};

ZEL_TEST_MAIN(TestErrorBar)
#include "tst_errorbar.moc"
