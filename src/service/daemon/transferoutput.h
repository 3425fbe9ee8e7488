// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "service/store/blobstore.h"
#include "service/store/workspacecopy.h"

#include <QString>

class QCommandLineParser;

namespace Zel::Service {

/// Prints each table with its rows and their checksum, and how many files there are.
void printReport(const CopyReport &report);

/// The kind of files that an option names; `usual` when it is not set. Throws `UsageError`.
BlobKind blobKindOption(const QCommandLineParser &parser, const QString &name, BlobKind usual);

} // namespace Zel::Service
