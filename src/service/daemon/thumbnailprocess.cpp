// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#include "service/daemon/thumbnailprocess.h"

#include "service/daemon/logline.h"
#include "service/store/blobstore.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QFile>
#include <QScopeGuard>

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Zel::Service {

namespace {

constexpr std::size_t readBytes = 64 * 1024;
constexpr auto streamVersion = QDataStream::Qt_6_4;

void report(const QString &what)
{
    logLine("error", {{"event", QStringLiteral("no thumbnail")}, {"cause", what}});
}

/// What a process is started with, from texts of Qt.
class Words
{
public:
    explicit Words(const QByteArrayList &words)
        : m_words(words)
    {
        for (QByteArray &word : m_words)
            m_pointers.push_back(word.data());
        m_pointers.push_back(nullptr);
    }

    char *const *data() const { return m_pointers.data(); }

private:
    QByteArrayList m_words;
    std::vector<char *> m_pointers;
};

/// Only what a program needs to find its libraries: where the database is, and its password, are
/// none of the picture's business.
QByteArrayList environment()
{
    QByteArrayList result{"LC_ALL=C.UTF-8"};
    for (const char *name :
         {"LD_LIBRARY_PATH", "QT_PLUGIN_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (qEnvironmentVariableIsSet(name))
            result << QByteArray(name) + '=' + qgetenv(name);
    }
    return result;
}

/// Starts a process that reads the one handle, writes to the other and has no further ones.
std::optional<pid_t> start(const QStringList &command, int input, int output)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    const auto cleanUp = qScopeGuard([&] {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    });
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    // The service blocks the signals it waits for, and passes over some.
    sigset_t none;
    sigemptyset(&none);
    sigset_t all;
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    QByteArrayList words;
    for (const QString &word : command)
        words << QFile::encodeName(word);
    pid_t pid = 0;
    const int error = posix_spawn(&pid, words.constFirst().constData(), &actions, &attributes,
                                  Words(words).data(), Words(environment()).data());
    if (error != 0) {
        report(QStringLiteral("cannot start %1: %2").arg(command.constFirst()).arg(error));
        return std::nullopt;
    }
    return pid;
}

/// Everything that comes until the other side closes the pipe; nothing when that is too much or
/// takes too long.
std::optional<QByteArray> readAll(int pipe, qint64 most, const QDeadlineTimer &deadline)
{
    QByteArray result;
    std::array<char, readBytes> piece;
    for (;;) {
        pollfd ready{pipe, POLLIN, 0};
        const int count = ::poll(&ready, 1, static_cast<int>(deadline.remainingTime()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            report(QStringLiteral("the time is over"));
            return std::nullopt;
        }
        const ssize_t got = ::read(pipe, piece.data(), piece.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            return result;
        result.append(piece.data(), got);
        if (result.size() > most) {
            report(QStringLiteral("too much came"));
            return std::nullopt;
        }
    }
}

/// Whether the process ended in order and in time; ends it where it does not.
bool hasEndedWell(pid_t pid, const QDeadlineTimer &deadline)
{
    const int handle = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0U));
    pollfd ended{handle, POLLIN, 0};
    if (handle < 0 || ::poll(&ended, 1, static_cast<int>(deadline.remainingTime())) != 1)
        ::kill(pid, SIGKILL);
    if (handle >= 0)
        ::close(handle);
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR)
            return false;
    }
    if (WIFSIGNALED(status))
        report(QStringLiteral("ended by signal %1").arg(WTERMSIG(status)));
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

QStringList ThumbnailProcess::ownCommand()
{
    return {QCoreApplication::applicationFilePath(), QStringLiteral("thumbnail")};
}

ThumbnailProcess::ThumbnailProcess(const QStringList &command, const ThumbnailLimits &limits)
    : m_command(command)
    , m_limits(limits)
    , m_free(limits.atOnce)
{
}

QByteArrayList ThumbnailProcess::make(const QString &path)
{
    const int picture = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (picture < 0)
        return {};
    const auto close = qScopeGuard([picture] { ::close(picture); });
    if (!m_free.tryAcquire(1, static_cast<int>(m_limits.time.count()))) {
        report(QStringLiteral("too many pictures at once"));
        return {};
    }
    const QSemaphoreReleaser release(m_free);
    return unpackedThumbnails(outputOf(picture));
}

/// Nothing when the process does not end well.
QByteArray ThumbnailProcess::outputOf(int picture) const
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        report(QStringLiteral("no pipe: %1").arg(errno));
        return {};
    }
    const QDeadlineTimer deadline(m_limits.time);
    const std::optional<pid_t> pid = start(m_command, picture, ends[1]);
    ::close(ends[1]);
    std::optional<QByteArray> output;
    if (pid) {
        output = readAll(ends[0], m_limits.outputBytes, deadline);
        if (!output)
            ::kill(*pid, SIGKILL);
    }
    ::close(ends[0]);
    if (!pid || !hasEndedWell(*pid, deadline) || !output)
        return {};
    return *output;
}

QByteArray packedThumbnails(const QByteArrayList &thumbnails)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    for (const QByteArray &thumbnail : thumbnails)
        stream << thumbnail;
    return bytes;
}

QByteArrayList unpackedThumbnails(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    QByteArrayList result;
    for (std::size_t i = 0; i < BlobStore::thumbnailSizes.size(); ++i) {
        QByteArray thumbnail;
        stream >> thumbnail;
        if (stream.status() != QDataStream::Ok || !thumbnail.startsWith("\x89PNG\r\n\x1a\n"))
            return {};
        result << thumbnail;
    }
    return stream.atEnd() ? result : QByteArrayList();
}

} // namespace Zel::Service
