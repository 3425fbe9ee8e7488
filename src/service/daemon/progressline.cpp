// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/progressline.h"

#include <QCommandLineParser>
#include <QLocale>

#include <chrono>
#include <cstdio>

#include <unistd.h>

namespace Zel::Service {

namespace {

ProgressLine::Outside standardError()
{
    return {[](const QByteArray &text) {
                std::fputs(text.constData(), stderr);
                std::fflush(stderr);
            },
            [] {
                return qint64(std::chrono::duration_cast<std::chrono::milliseconds>(
                                  std::chrono::steady_clock::now().time_since_epoch())
                                  .count());
            },
            isatty(STDERR_FILENO) != 0};
}

/// 1234567 as 1,234,567, whatever the locale: what a program writes to a pipe stays the same.
QString grouped(qint64 number)
{
    QLocale locale = QLocale::c();
    locale.setNumberOptions({}); // "C" itself groups nothing
    return locale.toString(number);
}

QString textOf(const QString &what, qint64 done, qint64 total)
{
    if (total <= 0)
        return QStringLiteral("%1: %2").arg(what, grouped(done));
    return QStringLiteral("%1: %2 of %3 (%4 %)")
        .arg(what, grouped(done), grouped(total))
        .arg(static_cast<int>(100.0 * static_cast<double>(done) / static_cast<double>(total)));
}

} // namespace

ProgressLine::ProgressLine(bool quiet)
    : ProgressLine(standardError(), quiet)
{
}

ProgressLine::ProgressLine(const Outside &outside, bool quiet)
    : m_outside(outside)
    , m_quiet(quiet)
    , m_shownAt(outside.now())
{
}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(const QString &what, qint64 done, qint64 total)
{
    if (m_quiet)
        return;
    const qint64 now = m_outside.now();
    if (now - m_shownAt < (m_outside.isTerminal ? terminalStepMs : pipeStepMs))
        return;
    m_shownAt = now;
    const QByteArray text = textOf(what, done, total).toUtf8();
    // Back to the beginning of the line, and whatever is left of the former text is removed.
    m_outside.write(m_outside.isTerminal ? "\r" + text + "\x1b[K" : text + '\n');
    m_isShown = m_outside.isTerminal;
}

void ProgressLine::clear()
{
    if (m_isShown)
        m_outside.write("\r\x1b[K");
    m_isShown = false;
}

Progress ProgressLine::progress()
{
    return [this](const QString &what, qint64 done, qint64 total) { show(what, done, total); };
}

void addQuietOption(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("quiet"),
                      QStringLiteral("Does not say how far it is; standard error then has only "
                                     "what went wrong.")});
}

bool isQuiet(const QCommandLineParser &parser)
{
    return parser.isSet(QStringLiteral("quiet"));
}

} // namespace Zel::Service
