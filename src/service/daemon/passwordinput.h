// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Zel::Service {

/// The first line of a file. Throws `std::runtime_error` when it cannot be read.
QString passwordFromFile(const QString &path);

/// The first line of standard input; at a terminal it is asked for twice and not shown;
/// throws `std::runtime_error` when what was typed differs.
QString passwordFromStandardInput();

} // namespace Zel::Service
