// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

/// Large files for the benchmarks that send them somewhere.
namespace Bench {

constexpr qint64 mebibyte = 1024 * 1024;

[[noreturn]] inline void fail(const QString &what)
{
    throw std::runtime_error(what.toStdString());
}

inline void writeOut(const QString &path)
{
    const int handle = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (handle < 0 || ::fsync(handle) != 0)
        fail(QStringLiteral("cannot write out ") + path);
    ::close(handle);
}

/// Bytes that nobody can store as less.
inline void makeFile(const QString &path, qint64 mebibytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        fail(QStringLiteral("cannot write ") + path);
    std::mt19937_64 random(20261121);
    std::vector<quint64> piece(mebibyte / sizeof(quint64));
    for (qint64 i = 0; i < mebibytes; ++i) {
        std::generate(piece.begin(), piece.end(), std::ref(random));
        if (file.write(reinterpret_cast<const char *>(piece.data()), mebibyte) != mebibyte)
            fail(QStringLiteral("no room for ") + path);
    }
    file.close();
    writeOut(path);
}

/// What the main function of a benchmark of a large file does: measures one of as many mebibytes as
/// its first argument says, 1024 unless it does, and returns the exit code.
inline int runWithSize(const char *name, int argc, char **argv, void (*measure)(qint64 mebibytes))
{
    try {
        measure(argc > 1 ? std::max(1, std::atoi(argv[1])) : 1024);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return 1;
    }
    return 0;
}

} // namespace Bench
