// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/logline.h"

#include "service/daemon/jsonwriter.h"

#include <QDateTime>

#include <algorithm>

#include <unistd.h>

namespace Zel::Service {

namespace {

bool needsQuotes(const QString &value)
{
    return value.isEmpty() || std::any_of(value.begin(), value.end(), [](QChar c) {
               return c <= QLatin1Char(' ') || c == QLatin1Char('"') || c == QLatin1Char('=') ||
                      c == QLatin1Char('\\') || c == QChar(0x7f);
           });
}

} // namespace

QByteArray formatLogLine(const char *level,
                         std::initializer_list<std::pair<const char *, QString>> values)
{
    QByteArray line = QByteArrayLiteral("level=") + level;
    for (const auto &[key, value] : values) {
        line += ' ';
        line += key;
        line += '=';
        line += needsQuotes(value) ? JsonWriter().text(value).json() : value.toUtf8();
    }
    return line;
}

void logLine(const char *level, std::initializer_list<std::pair<const char *, QString>> values)
{
    const QByteArray line =
        "time=" + QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1() + ' ' +
        formatLogLine(level, values) + '\n';
    // One write keeps the line whole. Nothing can be done about a log that cannot be written.
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, line.constData(), static_cast<std::size_t>(line.size()));
}

} // namespace Zel::Service
