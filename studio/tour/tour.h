// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Studio {

struct Options;

/// Walks through Studio with a scripted user and writes numbered pictures and an index.html into
/// `folder`: light and dark, at 100 % and 150 %, a process per scale, each in a home folder of its
/// own. Returns the exit code: 0 when every step came out.
int runTour(const QString &folder, const QString &serviceProgram);

/// One process of a tour, at the scale it was started with.
int runTourPart(const QString &folder, const Options &options);

} // namespace Studio
