// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "stats/resultsfile.h"

class QIODevice;

namespace ZelWebServiceControls {

struct WorkbookLayout;

/// The formats of saveResults, each to a device. False when the device took not all of it.
bool writeXmlResults(const ResultsModels &models, const WorkbookLayout &layout, QIODevice &device);
bool writeXlsxResults(const ResultsModels &models, const WorkbookLayout &layout, QIODevice &device);
bool writeCsvResults(const ResultsModels &models, const WorkbookLayout &layout, QIODevice &device);

} // namespace ZelWebServiceControls
