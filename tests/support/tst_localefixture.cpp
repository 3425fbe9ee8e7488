// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "testsupport/localefixture.h"

#include "testsupport/testcase.h"

#include <QDateTime>
#include <QTest>

using ZelTest::LocaleFixture;
using ZelTest::TimeZoneFixture;

namespace {

/// The local hour at the start of the epoch.
int hourOfTheEpoch()
{
    return QDateTime::fromMSecsSinceEpoch(0).time().hour();
}

} // namespace

class TestLocaleFixture : public ZelTest::TestCase
{
    Q_OBJECT

private slots:

    void theLocaleIsAnotherWhileItLives()
    {
        const QLocale former;
        {
            const LocaleFixture german(QLocale(QLocale::German, QLocale::Germany));
            QCOMPARE(QLocale().toString(1.5), QStringLiteral("1,5"));
            {
                const LocaleFixture english(QLocale(QLocale::English, QLocale::UnitedStates));
                QCOMPARE(QLocale().toString(1.5), QStringLiteral("1.5"));
            }
            QCOMPARE(QLocale().toString(1.5), QStringLiteral("1,5"));
        }
        QCOMPARE(QLocale(), former);
    }

    void theTimeZoneIsAnotherWhileItLives()
    {
        const int former = hourOfTheEpoch();
        const QByteArray formerName = qgetenv("TZ");
        {
            const TimeZoneFixture tokyo("Asia/Tokyo");
            QCOMPARE(hourOfTheEpoch(), 9);
            {
                const TimeZoneFixture utc("UTC");
                QCOMPARE(hourOfTheEpoch(), 0);
            }
            QCOMPARE(hourOfTheEpoch(), 9);
        }
        QCOMPARE(hourOfTheEpoch(), former);
        QCOMPARE(qgetenv("TZ"), formerName);
    }

    void aTimeZoneThatWasNotSetIsNotSetAfterwards()
    {
        const TimeZoneFixture around("Asia/Tokyo");
        qunsetenv("TZ");
        {
            const TimeZoneFixture utc("UTC");
        }
        QVERIFY(!qEnvironmentVariableIsSet("TZ"));
    }
};

ZEL_TEST_MAIN(TestLocaleFixture)
#include "tst_localefixture.moc"
