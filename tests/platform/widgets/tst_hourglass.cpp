// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/hourglass.h"

#include "platform/core/runtimeerror.h"
#include "testsupport/testcase.h"

#include <QTest>

#include <optional>

using Zel::Hourglass;

class TestHourglass : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void showsWhileItLives()
    {
        QWidget widget;
        {
            const Hourglass hourglass(&widget);
            QCOMPARE(widget.cursor().shape(), Qt::WaitCursor);
        }
        QCOMPARE(widget.cursor().shape(), Qt::ArrowCursor);
    }

    void aWidgetWithoutAPointerOfItsOwnGoesBackToThatAround()
    {
        QWidget form;
        QWidget widget(&form);
        {
            const Hourglass hourglass(&widget);
        }
        QVERIFY(!widget.testAttribute(Qt::WA_SetCursor));
        form.setCursor(Qt::CrossCursor);
        QCOMPARE(widget.cursor().shape(), Qt::CrossCursor);
    }

    void bringsThePointerOfTheWidgetBack()
    {
        QWidget widget;
        widget.setCursor(Qt::IBeamCursor);
        {
            const Hourglass hourglass(&widget);
            QCOMPARE(widget.cursor().shape(), Qt::WaitCursor);
        }
        QCOMPARE(widget.cursor().shape(), Qt::IBeamCursor);
        QVERIFY(widget.testAttribute(Qt::WA_SetCursor));
    }

    void theOuterOfTwoBringsItBack()
    {
        QWidget widget;
        widget.setCursor(Qt::IBeamCursor);
        {
            const Hourglass outer(&widget);
            {
                const Hourglass inner(&widget);
            }
            QCOMPARE(widget.cursor().shape(), Qt::WaitCursor);
        }
        QCOMPARE(widget.cursor().shape(), Qt::IBeamCursor);
    }

    void anErrorBringsItBackToo()
    {
        QWidget widget;
        widget.setCursor(Qt::IBeamCursor);
        try {
            const Hourglass hourglass(&widget);
            throw Zel::RuntimeError(91);
        } catch (const Zel::RuntimeError &) {
            QCOMPARE(widget.cursor().shape(), Qt::IBeamCursor);
            return;
        }
        QFAIL("nothing was thrown");
    }

    void survivesTheWidgetBeingDestroyed()
    {
        auto *widget = new QWidget;
        std::optional<Hourglass> hourglass(std::in_place, widget);
        delete widget;
        hourglass.reset();
        QVERIFY(!hourglass);
    }
};

ZEL_TEST_MAIN(TestHourglass)
#include "tst_hourglass.moc"
