// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"

#include <QByteArray>
#include <QLocale>

namespace ZelTest {

/// Another default locale while it lives.
class ZEL_EXPORT LocaleFixture
{
public:
    explicit LocaleFixture(const QLocale &locale);
    ~LocaleFixture();
    Q_DISABLE_COPY_MOVE(LocaleFixture)

private:
    QLocale m_former;
};

/// Another local time zone, by its IANA name, while it lives.
class ZEL_EXPORT TimeZoneFixture
{
public:
    explicit TimeZoneFixture(const QByteArray &ianaName);
    ~TimeZoneFixture();
    Q_DISABLE_COPY_MOVE(TimeZoneFixture)

private:
    QByteArray m_former;
    bool m_wasSet;
};

} // namespace ZelTest
