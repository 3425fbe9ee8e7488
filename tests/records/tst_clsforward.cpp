// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "records/clsforward.h"
#include "testsupport/errornumber.h"
#include "testsupport/testcase.h"

#include <QTest>

using ZelTest::errorNumber;
using ZelWebServiceControls::clsForward;

class Destination : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void ResizeCallback() { ++calls; }

    Q_INVOKABLE void Fail() { throw Zel::RuntimeError(5); }

    Q_INVOKABLE void Take(int) {}

    int calls = 0;
};

/// The object that passes a call on.
class tst_ClsForward : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void callsTheMember()
    {
        Destination destination;
        clsForward forward;
        forward.Set_Destination(&destination, "ResizeCallback");
        forward.My_Default_Method();
        QCOMPARE(destination.calls, 1);
        forward(); // as a function
        QCOMPARE(destination.calls, 2);
        QMetaObject::invokeMethod(&forward, "My_Default_Method");
        QCOMPARE(destination.calls, 3);
    }

    void goesToTheLatestDestination()
    {
        Destination first, second;
        clsForward forward;
        forward.Set_Destination(&first, "ResizeCallback");
        forward.Set_Destination(&second, "ResizeCallback");
        forward();
        QCOMPARE(first.calls, 0);
        QCOMPARE(second.calls, 1);
    }

    void saysWhatIsWrong()
    {
        clsForward forward;
        QCOMPARE(errorNumber([&] { forward(); }), 91);
        auto destination = std::make_unique<Destination>();
        forward.Set_Destination(destination.get(), "Nothing");
        QCOMPARE(errorNumber([&] { forward(); }), 438);
        forward.Set_Destination(destination.get(), "Take");
        QCOMPARE(errorNumber([&] { forward(); }), 450);
        forward.Set_Destination(destination.get(), "Fail");
        QCOMPARE(errorNumber([&] { forward(); }), 5);
        destination.reset();
        QCOMPARE(errorNumber([&] { forward(); }), 91);
    }

    void hasTheseMembersInThisOrder()
    {
        const QMetaObject &meta = clsForward::staticMetaObject;
        QStringList members;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            members << QString::fromLatin1(meta.method(i).methodSignature());
        QCOMPARE(members,
                 (QStringList{"Set_Destination(QObject*,QString)", "My_Default_Method()"}));
    }
};

ZEL_TEST_MAIN(tst_ClsForward)
#include "tst_clsforward.moc"
