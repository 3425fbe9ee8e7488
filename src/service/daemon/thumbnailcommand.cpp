// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/exitcodes.h"
#include "service/daemon/program.h"
#include "service/daemon/thumbnailprocess.h"
#include "service/store/thumbnails.h"

#include <QFile>

#include <algorithm>
#include <cstdio>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Zel::Service {

namespace {

/// Enough for the largest picture that is read, turned upright, beside the program itself.
constexpr rlim_t memoryBytes = 768UL * 1024 * 1024;
constexpr rlim_t processorSeconds = 8;
/// Ends the process also where nobody waits for it any more.
constexpr unsigned lifeSeconds = 30;
constexpr rlim_t openFiles = 64;

void limit(__rlimit_resource_t resource, rlim_t most)
{
    struct rlimit current = {};
    getrlimit(resource, &current);
    const rlim_t value = std::min(most, current.rlim_max);
    const struct rlimit lower = {value, value};
    if (setrlimit(resource, &lower) != 0)
        throw std::runtime_error("a limit cannot be set.");
}

/// Before the first byte of the picture is looked at.
void giveUpEverything()
{
#if !defined(__SANITIZE_ADDRESS__)
    limit(RLIMIT_AS, memoryBytes); // the sanitizer reserves far more
#endif
    limit(RLIMIT_CPU, processorSeconds);
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_FSIZE, 0);
    limit(RLIMIT_NOFILE, openFiles);
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    alarm(lifeSeconds);
}

} // namespace

int thumbnailCommand(const QStringList &arguments)
{
    const QString first = arguments.value(0);
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        showHelp(QStringLiteral("thumbnail"),
                 QStringLiteral("Reads a picture from standard input and writes its thumbnails to "
                                "standard output, within narrow limits of memory and time. The "
                                "service runs this itself; it takes no options."));
        throw HelpShown();
    }
    if (!arguments.isEmpty())
        throw UsageError(QStringLiteral("thumbnail reads a picture from standard input and writes "
                                        "for the service; it takes no arguments."));
    giveUpEverything();
    QFile input;
    if (!input.open(STDIN_FILENO, QIODevice::ReadOnly))
        throw std::runtime_error("standard input cannot be read.");
    const QByteArrayList made = Thumbnails::decode(input.read(Thumbnails::longestFile + 1));
    if (made.isEmpty())
        throw std::runtime_error("this is no picture that can be read.");
    const QByteArray bytes = packedThumbnails(made);
    const auto count = static_cast<std::size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, count, stdout) != count || std::fflush(stdout) != 0)
        throw std::runtime_error("standard output cannot be written.");
    return ExitFine;
}

} // namespace Zel::Service
