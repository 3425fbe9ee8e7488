// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/core/collection.h"
#include "platform/core/runtimeerror.h"
#include "testsupport/testcase.h"

#include <QTest>

using Zel::Collection;
using Zel::RuntimeError;

class TestRuntimeError : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void standardTextsByNumber()
    {
        QCOMPARE(RuntimeError(6).description(), QStringLiteral("Overflow"));
        QCOMPARE(RuntimeError(91).description(),
                 QStringLiteral("Object variable or With block variable not set"));
        QCOMPARE(RuntimeError(4711).description(),
                 QStringLiteral("Application-defined or object-defined error"));
        QCOMPARE(QByteArray(RuntimeError(6).what()), QByteArray("Error 6: Overflow"));
    }

    void cloneAndRaiseKeepTheError()
    {
        const std::unique_ptr<RuntimeError> copy(RuntimeError(5, QStringLiteral("t")).clone());
        try {
            copy->raise();
        } catch (const RuntimeError &error) {
            QCOMPARE(error.number(), 5);
            QCOMPARE(error.description(), QStringLiteral("t"));
            return;
        }
        QFAIL("nothing was thrown");
    }
};

ZEL_TEST_MAIN(TestRuntimeError)
#include "tst_runtimeerror.moc"
