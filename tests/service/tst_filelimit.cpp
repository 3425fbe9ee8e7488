// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/filelimit.h"

#include "testsupport/testcase.h"

#include <QTest>

#include <sys/resource.h>

using namespace Zel::Service;

class FileLimitTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void leavesFilesForOtherThingsThanConnections();
    void liftsTheLimitAsFarAsItGoes();
};

void FileLimitTest::leavesFilesForOtherThingsThanConnections()
{
    QCOMPARE(connectionsWithin(1'000'000, 1024), 1024U);
    QCOMPARE(connectionsWithin(1280, 1024), 1024U);
    QCOMPARE(connectionsWithin(1279, 1024), 1023U);
    QCOMPARE(connectionsWithin(300, 1024), 44U);
    QCOMPARE(connectionsWithin(100, 1024), 16U); // better a few than none
    QCOMPARE(connectionsWithin(0, 3), 3U);
    QCOMPARE(connectionsWithin(1'000'000, 3), 3U);
}

void FileLimitTest::liftsTheLimitAsFarAsItGoes()
{
    struct rlimit limit = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = 256;
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    QCOMPARE(raiseFileLimit(), std::size_t(limit.rlim_max));
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    QCOMPARE(limit.rlim_cur, limit.rlim_max);
}

ZEL_TEST_MAIN(FileLimitTest)
#include "tst_filelimit.moc"
