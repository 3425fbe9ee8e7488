// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/runtimeerror.h"
#include "platform/widgets/repaintfreeze.h"
#include "testsupport/testcase.h"

#include <QTest>

using namespace Zel;

class TestRepaintFreeze : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void holdsBackTheWidgetAndItsChildren()
    {
        QWidget widget;
        QWidget child(&widget);
        {
            const RepaintFreeze freeze(&widget);
            QVERIFY(!widget.updatesEnabled());
            QVERIFY(!child.updatesEnabled());
        }
        QVERIFY(widget.updatesEnabled());
        QVERIFY(child.updatesEnabled());
    }

    void endsWhenAnErrorPasses()
    {
        QWidget widget;
        const auto fail = [&widget] {
            const RepaintFreeze freeze(&widget);
            throw RuntimeError(5);
        };
        QVERIFY_THROWS_EXCEPTION(RuntimeError, fail());
        QVERIFY(widget.updatesEnabled());
    }

    void nestsAndLeavesAFreezeOfOthersAlone()
    {
        QWidget widget;
        const RepaintFreeze outer(&widget);
        {
            const RepaintFreeze inner(&widget);
        }
        QVERIFY(!widget.updatesEnabled());
    }

    void survivesTheWidget()
    {
        auto widget = std::make_unique<QWidget>();
        const RepaintFreeze freeze(widget.get());
        const RepaintFreeze nothing(nullptr);
        widget.reset();
    }
};

ZEL_TEST_MAIN(TestRepaintFreeze)
#include "tst_repaintfreeze.moc"
