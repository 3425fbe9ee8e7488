// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/form.h"

#include "sharedform/sharedform.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

using ZelTest::errorNumber;

/// A form that asks for a name, empty at the start of every use.
class NameForm : public Zel::Form
{
    Q_OBJECT

public:
    NameForm()
        : name(new QLineEdit(this))
    {
    }

    QLineEdit *name;
    std::function<void()> whileLoading;
    int loads = 0;

protected:
    void load() override
    {
        ++loads;
        name->clear();
        if (whileLoading)
            whileLoading();
    }
};

class TestForm : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void everyUseStartsFresh()
    {
        NameForm form;
        for (int use = 1; use <= 2; ++use) {
            QString atStart = QStringLiteral("?");
            QTimer::singleShot(0, &form, [&] {
                atStart = form.name->text();
                QTest::keyClicks(form.name, QStringLiteral("Anna"));
                QTest::keyClick(form.name, Qt::Key_Escape);
            });
            form.showModal(nullptr);
            QCOMPARE(form.loads, use);
            QCOMPARE(atStart, QString());
            QCOMPARE(form.name->text(), QStringLiteral("Anna"));
        }
    }

    void whileShownItIsModalOverTheWindowOfItsCaller()
    {
        QWidget window;
        auto *caller = new QWidget(new QWidget(&window));
        NameForm form;
        bool looked = false;
        QTimer::singleShot(0, &form, [&] {
            looked = true;
            QCOMPARE(QApplication::activeModalWidget(), &form);
            QVERIFY(form.isModal());
            QVERIFY(form.isWindow());
            QCOMPARE(form.parentWidget(), &window);
            QCOMPARE(form.caller(), caller);
            form.reject();
        });
        form.showModal(caller);
        QVERIFY(looked);
        QCOMPARE(form.parentWidget(), nullptr);
        QCOMPARE(form.caller(), nullptr);
    }

    void escapeClosesIt()
    {
        NameForm form;
        int result = -1;
        connect(&form, &QDialog::finished, this, [&](int code) { result = code; });
        QTimer::singleShot(0, &form, [&] { QTest::keyClick(form.name, Qt::Key_Escape); });
        form.showModal(nullptr);
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!form.isVisible());
    }

    void anErrorOfLoadingReachesTheCallerAndNothingIsShown()
    {
        QWidget window;
        NameForm form;
        form.whileLoading = [] { throw Zel::RuntimeError(91); };
        bool shown = false;
        QTimer watch;
        connect(&watch, &QTimer::timeout, this, [&] {
            shown = true;
            form.reject();
        });
        watch.start(0);
        QCOMPARE(errorNumber([&] { form.showModal(&window); }), 91);
        QVERIFY(!shown);
        QVERIFY(!form.isVisible());
        QCOMPARE(form.caller(), nullptr);
        watch.stop();

        form.whileLoading = nullptr;
        QTimer::singleShot(0, &form, [&] { form.reject(); });
        form.showModal(&window);
        QCOMPARE(form.loads, 2);
    }

    void aSecondUseDuringTheFirstDoesNothing()
    {
        QWidget first;
        QWidget second;
        NameForm form;
        form.whileLoading = [&] { form.showModal(&second); };
        QTimer::singleShot(0, &form, [&] {
            QTest::keyClicks(form.name, QStringLiteral("Anna"));
            form.showModal(&second);
            QCOMPARE(form.name->text(), QStringLiteral("Anna"));
            QCOMPARE(form.caller(), &first);
            form.reject();
        });
        form.showModal(&first);
        QCOMPARE(form.loads, 1);
    }

    void theCallerMayGoWhileItIsOpen()
    {
        QWidget window;
        auto *caller = new QWidget(&window);
        NameForm form;
        QTimer::singleShot(0, &form, [&] {
            delete caller;
            QVERIFY(form.isVisible());
            QCOMPARE(form.caller(), nullptr);
            form.reject();
        });
        form.showModal(caller);
        QCOMPARE(form.parentWidget(), nullptr);
    }

    void itGoesWithTheWindowOfItsCaller()
    {
        auto *window = new QWidget;
        QPointer<NameForm> form(new NameForm);
        QTimer::singleShot(0, this, [&] { delete window; });
        form->showModal(window);
        QVERIFY(!form);
    }

    void itMayBeLostWhileLoading()
    {
        QPointer<NameForm> form(new NameForm);
        form->whileLoading = [&] { delete form; };
        form->showModal(nullptr);
        QVERIFY(!form);
    }

    void theSharedFormIsOneUntilTheApplicationQuits()
    {
        const QPointer<NameForm> form(&Zel::sharedForm<NameForm>());
        QCOMPARE(&Zel::sharedForm<NameForm>(), form.data());
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QApplication::exec();
        QVERIFY(!form);
        QCOMPARE(Zel::sharedForm<NameForm>().loads, 0);
        delete &Zel::sharedForm<NameForm>();
    }

    void librariesShareTheSharedForm()
    {
        QCOMPARE(&Zel::sharedForm<LibraryForm>(), libraryForm());
        delete libraryForm();
    }
};

ZEL_TEST_MAIN(TestForm)
#include "tst_form.moc"
