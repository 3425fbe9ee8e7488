// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/logline.h"

#include "service/daemon/jsonwriter.h"

#include <QDateTime>
#include <QMutex>

#include <algorithm>

#include <climits>

#include <poll.h>
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

/// Whether standard error takes a line at once. One whose reader stands still must not make the
/// service stand still, too.
bool takesLine()
{
    pollfd output{STDERR_FILENO, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1 && (output.revents & POLLOUT) != 0;
}

/// Writes a line whole or not at all.
bool writeLine(const QByteArray &text)
{
    if (!takesLine())
        return false;
    QByteArray line =
        "time=" + QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1() + ' ' +
        text;
    // A pipe that takes anything takes this much in one piece.
    line.truncate(PIPE_BUF - 1);
    line += '\n';
    // Nothing can be done about a log that cannot be written.
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, line.constData(), static_cast<std::size_t>(line.size()));
    return true;
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
    static QMutex mutex;
    static quint64 lost = 0;
    const QByteArray line = formatLogLine(level, values);
    const QMutexLocker lock(&mutex);
    if (lost > 0 && writeLine(formatLogLine("warning", {{"lost", QString::number(lost)}})))
        lost = 0;
    if (!writeLine(line))
        ++lost;
}

} // namespace Zel::Service
