// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/errorreport.h"

#include "common/contract/serviceerror.h"
#include "platform/widgets/control.h"
#include "platform/widgets/form.h"
#include "testsupport/errornumber.h"
#include "testsupport/messageboxdriver.h"
#include "testsupport/testcase.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using QXSC::ServiceError;
using Zel::Control;
using Zel::RuntimeError;
using ZelTest::errorNumber;
using ZelTest::MessageBoxDriver;

namespace {

const ServiceError timedOut(ServiceError::Kind::TimedOut, QStringLiteral("No answer came."),
                            QStringLiteral("timeout"), QStringLiteral("req-7"));

/// The numbers of the errors that a control or form hands to its host.
template <typename Emitter>
std::shared_ptr<QList<int>> hear(const Emitter *emitter)
{
    auto numbers = std::make_shared<QList<int>>();
    QObject::connect(emitter, &Emitter::runtimeError, emitter,
                     [numbers](const RuntimeError &error) { *numbers << error.number(); });
    return numbers;
}

} // namespace

/// A control with one button; what the button does is up to the test.
class Desk : public Control
{
    Q_OBJECT

public:
    explicit Desk(QWidget *parent = nullptr)
        : Control(parent)
        , button(new QPushButton(this))
    {
        onUser(button, &QPushButton::clicked, &Desk::work);
    }

    /// The same work as the button's.
    void Work() { work(); }

    QPushButton *button;
    std::function<void()> task;

private:
    void work()
    {
        // A copy of its own: the task may destroy the control.
        const std::function<void()> current = task;
        current();
    }
};

class DeskForm : public Zel::Form
{
    Q_OBJECT

public:
    DeskForm()
        : desk(new Desk(this))
        , own(new QPushButton(this))
    {
        onUser(own, &QPushButton::clicked, &DeskForm::work);
    }

    Desk *desk;
    QPushButton *own;

private:
    void work() { throw RuntimeError(75); }
};

class TestErrorReport : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void anErrorOfAUserActionReachesTheHostOnceAndUnchanged()
    {
        Desk desk;
        desk.task = [] { throw timedOut; };
        int heard = 0;
        connect(&desk, &Control::runtimeError, this, [&](const RuntimeError &error) {
            ++heard;
            const auto *service = dynamic_cast<const ServiceError *>(&error);
            QVERIFY(service);
            QCOMPARE(service->kind(), ServiceError::Kind::TimedOut);
            QCOMPARE(service->details(), QStringLiteral("req-7"));
            QCOMPARE(service->description(), QStringLiteral("No answer came."));
            QCOMPARE(service->number(), timedOut.number());
        });
        MessageBoxDriver boxes;
        QTest::mouseClick(desk.button, Qt::LeftButton);
        QCOMPARE(heard, 1);
        QTest::keyClick(desk.button, Qt::Key_Space);
        QCOMPARE(heard, 2);
        QVERIFY(boxes.shown().isEmpty());
    }

    void anErrorOfAPublicCallReachesItsCallerAndNobodyElse()
    {
        Desk desk;
        desk.task = [] { throw RuntimeError(91); };
        const auto heard = hear(&desk);
        QCOMPARE(errorNumber([&] { desk.Work(); }), 91);
        QCOMPARE(*heard, QList<int>());
    }

    void anErrorNobodyHearsGoesToTheControlAround()
    {
        Desk outer;
        auto *between = new QWidget(&outer);
        Desk inner(between);
        inner.task = [] { throw RuntimeError(6); };
        const auto outside = hear(&outer);
        QTest::mouseClick(inner.button, Qt::LeftButton);
        QCOMPARE(*outside, QList<int>{6});

        const auto inside = hear(&inner);
        QTest::mouseClick(inner.button, Qt::LeftButton);
        QCOMPARE(*inside, QList<int>{6});
        QCOMPARE(*outside, QList<int>{6});
    }

    void aControlWithBlockedSignalsHearsNothing()
    {
        Desk outer;
        Desk inner(&outer);
        const auto inside = hear(&inner);
        const auto outside = hear(&outer);
        const QSignalBlocker blocker(&inner);
        Zel::reportRuntimeError(&inner, RuntimeError(5));
        QCOMPARE(*inside, QList<int>());
        QCOMPARE(*outside, QList<int>{5});
    }

    void anErrorInAFormGoesToTheControlThatOpenedIt()
    {
        QWidget window;
        Desk page(&window);
        const auto heard = hear(&page);
        DeskForm form;
        form.desk->task = [] { throw RuntimeError(9); };
        bool stayedOpen = false;
        QTimer::singleShot(0, &form, [&] {
            QTest::mouseClick(form.desk->button, Qt::LeftButton);
            QTest::mouseClick(form.own, Qt::LeftButton);
            stayedOpen = form.isVisible();
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        form.showModal(&page);
        QCOMPARE(*heard, (QList<int>{9, 75}));
        QVERIFY(stayedOpen);
    }

    void aFormThatIsListenedToKeepsItsErrors()
    {
        Desk page;
        const auto outside = hear(&page);
        DeskForm form;
        const auto inside = hear(&form);
        QTimer::singleShot(0, &form, [&] {
            QTest::mouseClick(form.own, Qt::LeftButton);
            form.reject();
        });
        form.showModal(&page);
        QCOMPARE(*inside, QList<int>{75});
        QCOMPARE(*outside, QList<int>());
    }

    void withNobodyListeningABoxShowsNumberAndText()
    {
        QGuiApplication::setApplicationDisplayName(QStringLiteral("Desk Test"));
        QWidget window;
        Desk desk(&window);
        desk.task = [] { throw RuntimeError(75, QStringLiteral("<b>100%1</b> & more")); };
        MessageBoxDriver boxes;
        boxes.click(QMessageBox::Ok);
        QTest::mouseClick(desk.button, Qt::LeftButton);
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().at(0).text, QStringLiteral("Error 75: <b>100%1</b> & more"));
        QCOMPARE(boxes.shown().at(0).title, QStringLiteral("Desk Test"));
        QCOMPARE(boxes.shown().at(0).buttons, QMessageBox::Ok);
        QCOMPARE(boxes.unexpected(), 0);
    }

    void aControlMayBeDestroyedByWhatItDoes()
    {
        QWidget window;
        auto *desk = new Desk(&window);
        QPointer<Desk> alive(desk);
        desk->task = [desk] { delete desk; };
        QTest::mouseClick(desk->button, Qt::LeftButton);
        QVERIFY(!alive);
    }

    void theErrorOfADestroyedControlGoesToTheOneAround()
    {
        Desk outer;
        const auto heard = hear(&outer);
        auto *inner = new Desk(&outer);
        QPointer<Desk> alive(inner);
        inner->task = [inner] {
            delete inner;
            throw timedOut;
        };
        QTest::mouseClick(inner->button, Qt::LeftButton);
        QVERIFY(!alive);
        QCOMPARE(*heard, QList<int>{timedOut.number()});
    }

    void theErrorOfADestroyedWindowIsShownAllTheSame()
    {
        auto *window = new QWidget;
        auto *desk = new Desk(window);
        MessageBoxDriver boxes;
        boxes.press(Qt::Key_Return);
        desk->task = [window] {
            delete window;
            throw RuntimeError(91);
        };
        QTest::mouseClick(desk->button, Qt::LeftButton);
        QCOMPARE(boxes.shown().size(), 1);
        QCOMPARE(boxes.shown().at(0).text,
                 QStringLiteral("Error 91: Object variable or With block variable not set"));
    }

    void theHostMayDestroyTheControlWhenItHearsOfTheError()
    {
        auto *desk = new Desk;
        desk->task = [] { throw RuntimeError(6); };
        QPointer<Desk> alive(desk);
        connect(desk, &Control::runtimeError, this, [desk] { desk->deleteLater(); });
        QTest::mouseClick(desk->button, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!alive);
    }

    void theHostHearsOfTheErrorAfterTheActionIsUnwound()
    {
        Desk desk;
        int open = 0;
        desk.task = [&] {
            const auto close = qScopeGuard([&] { --open; });
            ++open;
            throw RuntimeError(6);
        };
        int openWhenHeard = -1;
        connect(&desk, &Control::runtimeError, this, [&] {
            openWhenHeard = open;
            QVERIFY(!std::current_exception());
        });
        QTest::mouseClick(desk.button, Qt::LeftButton);
        QCOMPARE(openWhenHeard, 0);
    }

    void theUnloadRequestReachesTheContainer()
    {
        Desk desk;
        desk.task = [&] { emit desk.unloadRequested(); };
        const QSignalSpy requests(&desk, &Control::unloadRequested);
        QTest::mouseClick(desk.button, Qt::LeftButton);
        QCOMPARE(requests.size(), 1);
    }
};

ZEL_TEST_MAIN(TestErrorReport)
#include "tst_errorreport.moc"
