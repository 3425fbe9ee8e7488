// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "testsupport/announcedwarnings.h"

#include <QStringList>

#include <array>

namespace ZelTest {

namespace {

struct Announced
{
    const char *pattern;
    const char *reason;
};

constexpr std::array announced{
    Announced{"This plugin does not support (propagateSizeHints|raise|createPlatformOpenGLContext|"
              "grabbing the keyboard)",
              "the offscreen platform has no window manager to pass hints to"},
    Announced{"QFontDatabase: Cannot find font directory",
              "minimal installations have no fonts folder of Qt's own; system fonts are used"},
};

} // namespace

QRegularExpression unannouncedWarnings()
{
    QStringList patterns;
    for (const Announced &entry : announced)
        patterns << QString::fromLatin1(entry.pattern);
    return QRegularExpression(QStringLiteral("^(?!(?:%1)).*").arg(patterns.join(QLatin1Char('|'))),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace ZelTest
