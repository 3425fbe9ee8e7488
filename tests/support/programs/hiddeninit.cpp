// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
// A test program that must fail: its init hides the one that watches for warnings.

#include "testsupport/testcase.h"

#include <QTest>

class HiddenInit : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void init() {}

    void isQuiet() { QVERIFY(true); }
};

ZEL_TEST_MAIN(HiddenInit)
#include "hiddeninit.moc"
