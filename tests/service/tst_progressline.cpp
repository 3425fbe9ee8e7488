// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/progressline.h"
#include "testsupport/testcase.h"

#include <QTest>

using Zel::Service::ProgressLine;

class ProgressLineTest : public ZelTest::TestCase
{
    Q_OBJECT

private slots:
    void init();
    void rewritesOneLineAtATerminalAndTakesItAway();
    void writesALineNowAndThenIntoAPipe();
    void saysNothingOfQuickWork();
    void saysNothingWhenQuiet();
    void comesBackAfterItWasCleared();

private:
    ProgressLine::Outside outside(bool isTerminal)
    {
        return {[this](const QByteArray &text) { m_written += text; }, [this] { return m_now; },
                isTerminal};
    }

    QByteArray m_written;
    qint64 m_now = 0;
};

void ProgressLineTest::init()
{
    TestCase::init();
    m_written.clear();
    m_now = 1'000'000;
}

void ProgressLineTest::rewritesOneLineAtATerminalAndTakesItAway()
{
    {
        ProgressLine line(outside(true), false);
        const Zel::Progress progress = line.progress();
        m_now += ProgressLine::terminalStepMs;
        progress(QStringLiteral("page views"), 1'234'567, 2'000'000);
        progress(QStringLiteral("page views"), 1'234'568, 2'000'000); // too soon after
        QCOMPARE(m_written, QByteArray("\rpage views: 1,234,567 of 2,000,000 (61 %)\x1b[K"));
        m_written.clear();
        m_now += ProgressLine::terminalStepMs;
        progress(QStringLiteral("assets"), 3, 0);
        QCOMPARE(m_written, QByteArray("\rassets: 3\x1b[K"));
        m_written.clear();
    }
    QCOMPARE(m_written, QByteArray("\r\x1b[K"));
}

void ProgressLineTest::writesALineNowAndThenIntoAPipe()
{
    {
        ProgressLine line(outside(false), false);
        for (int second = 1; second <= 7; ++second) {
            m_now += 1000;
            line.show(QStringLiteral("votes"), second, 7);
        }
    }
    QCOMPARE(m_written, QByteArray("votes: 3 of 7 (42 %)\nvotes: 6 of 7 (85 %)\n"));
}

void ProgressLineTest::saysNothingOfQuickWork()
{
    for (const bool isTerminal : {false, true}) {
        ProgressLine line(outside(isTerminal), false);
        line.show(QStringLiteral("votes"), 1, 1);
    }
    QCOMPARE(m_written, QByteArray());
}

void ProgressLineTest::saysNothingWhenQuiet()
{
    {
        ProgressLine line(outside(true), true);
        m_now += 10 * ProgressLine::pipeStepMs;
        line.show(QStringLiteral("votes"), 1, 1);
    }
    QCOMPARE(m_written, QByteArray());
}

void ProgressLineTest::comesBackAfterItWasCleared()
{
    ProgressLine line(outside(true), false);
    m_now += ProgressLine::terminalStepMs;
    line.show(QStringLiteral("votes"), 1);
    line.clear();
    line.clear();
    m_now += ProgressLine::terminalStepMs;
    line.show(QStringLiteral("votes"), 2);
    QCOMPARE(m_written, QByteArray("\rvotes: 1\x1b[K\r\x1b[K\rvotes: 2\x1b[K"));
}

ZEL_TEST_MAIN(ProgressLineTest)
#include "tst_progressline.moc"
