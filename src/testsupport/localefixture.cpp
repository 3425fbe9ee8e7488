// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/localefixture.h"

#include <ctime>

namespace ZelTest {

LocaleFixture::LocaleFixture(const QLocale &locale)
{
    QLocale::setDefault(locale);
}

LocaleFixture::~LocaleFixture()
{
    QLocale::setDefault(m_former);
}

TimeZoneFixture::TimeZoneFixture(const QByteArray &ianaName)
    : m_former(qgetenv("TZ"))
    , m_wasSet(qEnvironmentVariableIsSet("TZ"))
{
    qputenv("TZ", ianaName);
    tzset();
}

TimeZoneFixture::~TimeZoneFixture()
{
    if (m_wasSet)
        qputenv("TZ", m_former);
    else
        qunsetenv("TZ");
    tzset();
}

} // namespace ZelTest
