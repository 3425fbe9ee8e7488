// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QObject>
#include <QTest>

// Qt waits for five seconds, which a busy machine may take to start what is waited for. Who waits
// in vain waits longer; nobody else does.
#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT(expr, 30'000)
#define QTRY_VERIFY2(expr, message) QTRY_VERIFY2_WITH_TIMEOUT(expr, message, 30'000)
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT(expr, expected, 30'000)

namespace ZelTest {

/// Base of every test: a test function fails on any Qt warning that it did not announce with
/// `QTest::ignoreMessage` and that is not on the list in announcedwarnings.cpp.
///
/// A test that needs its own `initTestCase` or `init` calls the one here first; `runTest` fails a
/// program that forgot.
class ZEL_EXPORT TestCase : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether `init` here has run before the test function.
    bool isArmed() const { return m_armed; }

protected slots:
    void initTestCase();
    void init();

private:
    bool m_armed = false;
};

/// Runs a test in a home folder of its own that is removed at the end, and returns the exit code of
/// the program. Use it through ZEL_TEST_MAIN.
ZEL_EXPORT int runTest(int argc, char **argv, TestCase *(*create)());

} // namespace ZelTest

/// The main function of a test program.
#define ZEL_TEST_MAIN(TestClass)                                                                   \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        return ZelTest::runTest(argc, argv,                                                        \
                                []() -> ZelTest::TestCase * { return new TestClass; });            \
    }
