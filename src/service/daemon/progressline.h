// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/core/export.h"
#include "service/store/progress.h"

#include <QByteArray>
#include <QString>

#include <functional>

class QCommandLineParser;

namespace Zel::Service {

/// Says how far a command is, on standard error: at a terminal in one line that is written over
/// and again, and is gone at the end; elsewhere in a line every few seconds. Work that is quick
/// says nothing.
class ZEL_EXPORT ProgressLine
{
public:
    /// Where the line goes and what time it is; standard error and the system's clock for people.
    struct Outside
    {
        std::function<void(const QByteArray &)> write;
        std::function<qint64()> now; ///< milliseconds that only grow
        bool isTerminal = false;
    };

    /// How often the line changes.
    static constexpr qint64 terminalStepMs = 100;
    static constexpr qint64 pipeStepMs = 3000;

    /// @param quiet says nothing at all
    explicit ProgressLine(bool quiet = false);
    ProgressLine(const Outside &outside, bool quiet);
    ~ProgressLine();
    ProgressLine(const ProgressLine &) = delete;
    ProgressLine &operator=(const ProgressLine &) = delete;

    void show(const QString &what, qint64 done, qint64 total = 0);
    /// Takes the line away, so that something else can be written; it comes back by itself.
    void clear();

    /// What calls `show`, for as long as this object lives.
    Progress progress();

private:
    Outside m_outside;
    bool m_quiet;
    bool m_isShown = false;
    qint64 m_shownAt;
};

/// Adds --quiet.
void addQuietOption(QCommandLineParser &parser);
bool isQuiet(const QCommandLineParser &parser);

} // namespace Zel::Service
