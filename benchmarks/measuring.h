// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <malloc.h>
#include <unistd.h>
#include <vector>

/// What the benchmarks measure with.
namespace Bench {

template <typename Work>
double milliseconds(const Work &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Milliseconds of a pass of QXmlStreamReader over a text that keeps nothing of it.
inline double bareXmlPass(const QString &text)
{
    return milliseconds([&text] {
        QXmlStreamReader reader(text);
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            std::printf("the bare pass failed: %s\n", qPrintable(reader.errorString()));
    });
}

/// Bytes of memory the process has.
inline double residentBytes()
{
    malloc_trim(0);
    long pages = 0;
    if (FILE *const statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(statm);
    }
    return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// Bytes the main thread of the program holds on its heap.
inline double bytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

inline double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Prints how our figure stands to another one, and whether that is what we want.
inline void printGoal(const char *what, double ours, double theirs, const char *whose, double goal)
{
    const double ratio = ours / theirs;
    std::printf("%-32s %12.4f of %s, goal %.2f: %s\n", what, ratio, whose, goal,
                ratio <= goal ? "goal met" : "goal missed");
}

} // namespace Bench
